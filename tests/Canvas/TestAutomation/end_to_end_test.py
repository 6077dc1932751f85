#!/usr/bin/env python3
"""End-to-end test of the test automation bridge on the gallery example: tv-gallery on an X
display (its own Xvfb unless DISPLAY is set), started with TV_TEST_AUTOMATION_MODULE naming the
built module (or a missing file, or the refused version-3 module) and driven through
tools/tvdriver.py, with xdotool acting as the user. Exits 77 (skipped) when no display can be
had. Every wait is bounded."""

import argparse
import os
import shutil
import socket
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "support"))
import gui_test  # noqa: E402
import png_reader  # noqa: E402

ARGS = None
NAME = "APP:Gallery"
MAIN = "Gallery Main Window"
PAGE = MAIN + "|Gallery Page"
LIST = PAGE + "|Row List"
ABOUT = "About Gallery"
# The list's rows are this high, one under the other from the list's top (Scrolling.cpp).
ROW_HEIGHT = 20
# Where the gallery places the About box from its own top left corner, and its size
# (MainWindow.cpp).
ABOUT_OFFSET = (240, 160)
ABOUT_SIZE = (320, 124)
FIRST_PORT = 54321
LAST_PORT = 54325
VERSION_MESSAGE = ("TvTestAutomation Error",
                   "Unsupported TvTestAutomation DLL version: 3.  Requires 4 or higher\n")
PORTS_MESSAGE = ("TvTestAutomation Message", "Failed to start server!")


class Gallery(unittest.TestCase):
    display = None
    tvdriver = None

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory(prefix="tv-ta-e2e")
        self.programs = []
        self.runs = 0

    def tearDown(self):
        for program in self.programs:
            program.kill()
        # What the programs said on their error output, for failures that end in a crash.
        for run in range(self.runs):
            with open(self.errors(run)) as text:
                said = text.read()
            if "ERROR" in said or "runtime error" in said:
                print("\n--- gallery error output ---\n" + said[-6000:], file=sys.stderr)
        self.folder.cleanup()

    # ---- helpers

    def errors(self, run):
        return os.path.join(self.folder.name, "stderr-%d.txt" % run)

    def environment(self, module, display=True):
        """The gallery's environment with fresh settings: `module` in TV_TEST_AUTOMATION_MODULE,
        or no such variable for None; without `display` on SDL's off-screen video driver."""
        env = dict(os.environ)
        env["XDG_CONFIG_HOME"] = os.path.join(self.folder.name, "config-%d" % self.runs)
        env["XDG_DATA_HOME"] = os.path.join(self.folder.name, "data")
        env.setdefault("SDL_AUDIODRIVER", "dummy")
        env.pop("TV_TEST_AUTOMATION_MODULE", None)
        if module is not None:
            env["TV_TEST_AUTOMATION_MODULE"] = module
        if display:
            env["DISPLAY"] = self.display.name
        else:
            env.pop("DISPLAY", None)
            env["SDL_VIDEODRIVER"] = "offscreen"
        return env

    def start(self, module, *args, display=True):
        """Starts the gallery; returns the program and the file of its error output."""
        env = self.environment(module, display)
        errors = self.errors(self.runs)
        self.runs += 1
        program = gui_test.Program([ARGS.program] + list(args), env, errors)
        self.programs.append(program)
        return program, errors

    def start_bridged(self):
        self.program, _ = self.start(ARGS.module)
        driver = self.tvdriver.Driver.connect(timeout=15, name=NAME,
                                              pid=self.program.process.pid)
        self.addCleanup(driver.close)
        driver.wait_for_widget(PAGE + "|About Button", timeout=15)
        return driver

    def assert_error(self, driver, text, method, **params):
        with self.assertRaises(self.tvdriver.RequestError) as caught:
            driver.call(method, **params)
        self.assertEqual(text, caught.exception.message, (method, params))

    def quit_by_key(self, window):
        """Ctrl+Q, the host's Quit shortcut, typed into the gallery's window. A window that is
        named but not yet mapped can't take the focus (BadMatch): ask again for a while."""
        for attempt in range(50):
            try:
                gui_test.xdotool(self.display, "windowfocus", "--sync", window, "key", "ctrl+q")
                return
            except AssertionError:
                if attempt == 49:
                    raise
                time.sleep(0.1)

    def read(self, path):
        with open(path) as text:
            return text.read()

    def test_one_bridged_session_finds_answers_opens_clicks_and_quits(self):
        """One start of the gallery with the bridge, checked step by step; the last step quits
        it."""
        d = self.start_bridged()
        self.widgets_are_found_by_nested_paths_with_indices(d)
        self.requests_answer_with_their_error_texts(d)
        self.window_requests_open_and_close_the_about_box_with_notices(d)
        if shutil.which("xdotool"):
            self.the_user_clicks_and_closes_with_notices(d)
        self.the_driver_command_line_and_quitting(d)

    # ---- finding widgets

    def widgets_are_found_by_nested_paths_with_indices(self, d):
        main = d.widget_info(MAIN)
        self.assertEqual(("MainWindow", MAIN), (main["classname"], main["hierarchy"]))
        page = d.widget_info(PAGE)
        self.assertEqual(("0", "0", "Page"), (page["x"], page["y"], page["classname"]))
        self.assertEqual((main["width"], main["height"]), (page["width"], page["height"]))
        self.assertEqual("800", page["width"])

        # The list in the second column, 360 by 200, and its rows from its top down.
        rows = d.widget_info(LIST)
        self.assertEqual(("ScrollView", "420", "360", "200"),
                         (rows["classname"], rows["x"], rows["width"], rows["height"]))
        top = int(rows["y"])
        row = d.widget_info(LIST + "|Row 3")
        self.assertEqual(LIST + "|Row 3", row["hierarchy"])
        self.assertEqual(("Text", "Row 3", "true"), (row["classname"], row["text"], row["visible"]))
        # Labels take no input: they are disabled by design.
        self.assertEqual(("false", "false"), (row["enabled"], row["focus"]))
        self.assertEqual(("420", str(top + 2 * ROW_HEIGHT), str(ROW_HEIGHT)),
                         (row["x"], row["y"], row["height"]))
        self.assertEqual(int(row["screenX"]) - int(rows["screenX"]), 0)
        self.assertEqual(int(row["screenY"]) - int(rows["screenY"]), 2 * ROW_HEIGHT)
        # The last of 300 rows lies far below the view: there, but not shown.
        last = d.widget_info(LIST + "|Row 300")
        self.assertEqual(("Row 300", "false"), (last["text"], last["visible"]))

        # "[n]" counts among siblings of the same name, from 0; the path comes back as asked.
        self.assertEqual(LIST + "|Row 3[0]", d.widget_info(LIST + "|Row 3[0]")["hierarchy"])
        self.assert_error(d, "Widget not found", "getWidgetInfo", widget=LIST + "|Row 3[1]")
        self.assertEqual(PAGE + "[0]|Row List", d.widget_info(PAGE + "[0]|Row List")["hierarchy"])
        d.call("windowAutomationRequest", widget=MAIN, request="OpenAbout")
        d.wait_for_widget(ABOUT + "|Close Button", timeout=10)
        lines = [d.widget_info(ABOUT + "|Line"), d.widget_info(ABOUT + "|Line[0]"),
                 d.widget_info(ABOUT + "|Line[1]")]
        self.assertEqual(["Every widget of the toolkit in one window."] * 2 +
                         ["Each reports its use on the standard output."],
                         [line["text"] for line in lines])
        self.assertEqual([("16", "40"), ("16", "40"), ("16", "58")],
                         [(line["x"], line["y"]) for line in lines])
        self.assertEqual(ABOUT + "|Line[1]", lines[2]["hierarchy"])
        self.assert_error(d, "Widget not found", "getWidgetInfo", widget=ABOUT + "|Line[2]")

        # Widgets add their own keys: the swatches tell their colour.
        pane = d.widget_info(PAGE + "|Split Panes|Left Pane")
        self.assertEqual(("Swatch", "FFF8F0E0"), (pane["classname"], pane["color"]))
        self.assertEqual("Drag the bar",
                         d.widget_info(PAGE + "|Split Panes|Left Pane|Left Pane Text")["text"])
        button = d.widget_info(PAGE + "|About Button")
        self.assertEqual(("SimplePushButton", "true", "248", "100", "22"),
                         (button["classname"], button["enabled"], button["x"], button["width"],
                          button["height"]))
        self.assertEqual("Click to edit", d.widget_info(PAGE + "|Name Edit")["text"])
        d.call("windowAutomationRequest", widget=MAIN, request="CloseAbout")
        d.wait_for_notice(lambda n: n.kind == "Destroy" and n.texts[:1] == [ABOUT], timeout=10)

    # ---- errors

    def requests_answer_with_their_error_texts(self, d):
        cases = [
            ("Widget not found", "getWidgetInfo", {"widget": LIST + "|Row 301"}),
            ("Widget not found", "getWidgetInfo", {"widget": "Nobody"}),
            ("Widget not found", "getWidgetInfo", {"widget": PAGE + "|Row List|Row 1|Deeper"}),
            ('Missing argument "widget"', "getWidgetInfo", {}),
            ('Missing argument "request"', "windowAutomationRequest", {"widget": MAIN}),
            ('Missing argument "widget"', "windowAutomationRequest", {"request": "OpenAbout"}),
            ("Widget not found", "windowAutomationRequest",
             {"widget": ABOUT, "request": "CloseAbout"}),
            ('Missing argument "req"', "appAutomationRequest", {}),
            ('Missing argument "command"', "executeConsoleCommand", {}),
            ("No MainPluginWindow has been registered", "pluginAutomationRequest", {"req": "x"}),
            ("fileExplorerViewEnsureVis could not find the right control",
             "fileExplorerViewEnsureVis", {"widget": LIST, "item": "Row 1"}),
        ]
        for text, method, params in cases:
            self.assert_error(d, text, method, **params)
        # A window that does not know the request says so.
        self.assertEqual({"hierarchy": LIST, "Handled": "false"},
                         d.call("windowAutomationRequest", widget=LIST, request="OpenAbout"))
        # Settings through the application main window, and the console command.
        self.assertEqual({"Handled": "true", "value": "7"},
                         d.call("appAutomationRequest", req="SetConfigFileProperty|Depth|7"))
        self.assertEqual("7", d.call("appAutomationRequest",
                                     req="GetConfigFileProperty|Depth")["value"])
        self.assertEqual({"Handled": "false"}, d.call("appAutomationRequest", req="Dance"))
        self.assertEqual({}, d.call("executeConsoleCommand", command="hello"))
        self.assertTrue(self.program.wait_for_line("console hello", timeout=5))
        # Unknown methods and malformed lines leave the program serving.
        with self.assertRaises(self.tvdriver.RequestError) as caught:
            d.call("noSuchRequest")
        self.assertEqual(-32601, caught.exception.code)
        d.sock.sendall(b"{broken\n")
        self.assertEqual(NAME, d.call("getServerInfo")["name"])
        self.assertEqual(1, len(d.protocol_errors))
        self.assertEqual(-32700, d.protocol_errors[0]["code"])

    # ---- window requests and notices

    def window_requests_open_and_close_the_about_box_with_notices(self, d):
        d.take_notices()
        self.assertEqual({"opened": "true", "hierarchy": MAIN},
                         d.call("windowAutomationRequest", widget=MAIN, request="OpenAbout"))
        shown = d.wait_for_notice(lambda n: n.kind == "Show" and n.texts[:1] == [ABOUT],
                                  timeout=10)
        self.assertTrue(shown.texts[1].startswith("0x"), shown)
        box = d.wait_for_widget(ABOUT, timeout=10)
        self.assertEqual(("true", str(ABOUT_SIZE[0]), str(ABOUT_SIZE[1])),
                         (box["visible"], box["width"], box["height"]))
        main = d.widget_info(MAIN)
        self.assertEqual(ABOUT_OFFSET, (int(box["screenX"]) - int(main["screenX"]),
                                        int(box["screenY"]) - int(main["screenY"])))
        close = d.widget_info(ABOUT + "|Close Button")
        self.assertEqual(("224", "86", "80", "22"),
                         (close["x"], close["y"], close["width"], close["height"]))
        # Every main window saves a frame's bitmap on request: here the About box's, named by
        # a widget path in it.
        shot = os.path.join(self.folder.name, "about.png")
        self.assertEqual({"Handled": "true", "path": shot,
                          "hierarchy": ABOUT + "|Close Button"},
                         d.call("appAutomationRequest",
                                req="SaveScreenShot|%s|%s|Close Button" % (shot, ABOUT)))
        picture = png_reader.read_png(shot)
        self.assertEqual(ABOUT_SIZE, (picture.width, picture.height))
        # A second request leaves the open box as it is.
        self.assertEqual("true", d.call("windowAutomationRequest", widget=MAIN,
                                        request="OpenAbout")["opened"])

        self.assertEqual({"closed": "true", "hierarchy": MAIN},
                         d.call("windowAutomationRequest", widget=MAIN, request="CloseAbout"))
        d.wait_for_notice(lambda n: n.kind == "Destroy" and n.texts[:1] == [ABOUT], timeout=10)
        self.assert_error(d, "Widget not found", "getWidgetInfo", widget=ABOUT)
        self.assertEqual("false", d.call("windowAutomationRequest", widget=MAIN,
                                         request="CloseAbout")["closed"])
        # The box was shown once: the second request showed nothing new.
        self.assertEqual([], [n for n in d.take_notices()
                              if n.kind == "Show" and n.texts[:1] == [ABOUT]])

        # The same texts as application requests and as console commands.
        self.assertEqual({"Handled": "true", "opened": "true"},
                         d.call("appAutomationRequest", req="OpenAbout"))
        d.wait_for_notice(lambda n: n.kind == "Show" and n.texts[:1] == [ABOUT], timeout=10)
        self.assertEqual({}, d.call("executeConsoleCommand", command="CloseAbout"))
        d.wait_for_notice(lambda n: n.kind == "Destroy" and n.texts[:1] == [ABOUT], timeout=10)
        self.assertTrue(self.program.wait_for_line("console CloseAbout", timeout=5))

    def the_user_clicks_and_closes_with_notices(self, d):
        # A push button: the pointer's press and release come back in the main window's view,
        # and the gallery reports the click.
        info = d.widget_info(PAGE + "|Push Button")
        d.take_notices()
        x, y = gui_test.click_widget(self.display, d, PAGE + "|Push Button")
        down = d.wait_for_notice(lambda n: n.kind == "MouseEvent" and
                                 n.texts[0].startswith("LeftDown("), timeout=10)
        self.assertEqual("LeftDown(%d,%d)" % (x - int(info["screenX"]) + int(info["x"]),
                                              y - int(info["screenY"]) + int(info["y"])),
                         down.texts[0])
        self.assertEqual(MAIN, down.texts[2])
        d.wait_for_notice(lambda n: n.kind == "MouseEvent" and n.texts[0].startswith("LeftUp("),
                          timeout=10)
        self.assertTrue(self.program.wait_for_line("clicked Push Button", timeout=10))

        # The wheel over the list scrolls it: the gallery reports where to, and the rows move
        # up by as much.
        before = d.widget_info(LIST + "|Row 3")
        rows = d.widget_info(LIST)
        gui_test.xdotool(self.display, "mousemove", "--sync", int(rows["screenX"]) + 100,
                         int(rows["screenY"]) + 100, "click", 5)
        wheel = d.wait_for_notice(lambda n: n.kind == "MouseEvent" and
                                  n.texts[0].startswith("Wheel("), timeout=10)
        self.assertEqual(MAIN, wheel.texts[2])
        scrolled = self.program.wait_for_line_starting("scrolled ", timeout=10)
        self.assertIsNotNone(scrolled)
        step = int(scrolled.split()[2])
        self.assertGreater(step, 0)
        after = d.widget_info(LIST + "|Row 3")
        self.assertEqual(int(before["y"]) - step, int(after["y"]))

        # "About…" opens the About box; its Close button closes it.
        gui_test.click_widget(self.display, d, PAGE + "|About Button")
        self.assertTrue(self.program.wait_for_line("clicked About Button", timeout=10))
        d.wait_for_notice(lambda n: n.kind == "Show" and n.texts[:1] == [ABOUT], timeout=10)
        d.wait_for_widget(ABOUT + "|Close Button", timeout=10)
        d.take_notices()
        gui_test.click_widget(self.display, d, ABOUT + "|Close Button")
        up = d.wait_for_notice(lambda n: n.kind == "MouseEvent" and
                               n.texts[0].startswith("LeftUp("), timeout=10)
        self.assertEqual(ABOUT, up.texts[2])
        d.wait_for_notice(lambda n: n.kind == "Destroy" and n.texts[:1] == [ABOUT], timeout=10)
        self.assert_error(d, "Widget not found", "getWidgetInfo", widget=ABOUT)

        # Opened again, it goes when its close box is pressed (the window manager's request).
        gui_test.click_widget(self.display, d, PAGE + "|About Button")
        d.wait_for_notice(lambda n: n.kind == "Show" and n.texts[:1] == [ABOUT], timeout=10)
        window = gui_test.wait_for_window(self.display, ABOUT, timeout=10)
        self.assertIsNotNone(window)
        # Only the notices of this close count.
        d.take_notices()
        gui_test.request_close(self.display, window)
        d.wait_for_notice(lambda n: n.kind == "Destroy" and n.texts[:1] == [ABOUT], timeout=10)
        self.assert_error(d, "Widget not found", "getWidgetInfo", widget=ABOUT)
        # The gallery goes on serving.
        self.assertEqual("true", d.widget_info(PAGE + "|About Button")["visible"])

    # ---- the driver's command line

    def the_driver_command_line_and_quitting(self, d):
        d.close()

        def driver(*args):
            return subprocess.run([sys.executable, ARGS.driver, "--name", NAME] + list(args),
                                  capture_output=True, text=True, timeout=60)

        run = driver("getWidgetInfo", LIST + "|Row 2")
        self.assertEqual(0, run.returncode, run.stderr)
        self.assertIn('"text": "Row 2"', run.stdout)
        run = driver("getWidgetInfo", MAIN + "|Nothing")
        self.assertEqual(1, run.returncode)
        self.assertEqual("error: Widget not found", run.stderr.strip())
        run = driver("wait", PAGE + "|Tab Strip|Tab About", "--timeout", "10")
        self.assertEqual(0, run.returncode, run.stderr)
        self.assertIn('"classname": "Tab"', run.stdout)
        run = driver("getServerInfo")
        self.assertEqual(0, run.returncode, run.stderr)
        self.assertIn('"name": "%s"' % NAME, run.stdout)
        # Quitting with the About box open takes both windows down cleanly.
        run = driver("call", "appAutomationRequest", "req=OpenAbout")
        self.assertEqual(0, run.returncode, run.stderr)
        self.assertIn('"opened": "true"', run.stdout)
        run = driver("call", "windowAutomationRequest", "widget=" + MAIN, "request=Quit")
        self.assertEqual(0, run.returncode, run.stderr)
        self.assertEqual(0, self.program.wait(20))
        run = subprocess.run([sys.executable, ARGS.driver, "--timeout", "1", "--name", NAME,
                              "getServerInfo"], capture_output=True, text=True, timeout=60)
        self.assertEqual(2, run.returncode, run.stdout)

    # ---- without the bridge

    def test_without_the_module_the_gallery_runs_as_before(self):
        if not shutil.which("xdotool") or not shutil.which("import"):
            self.skipTest("xdotool or ImageMagick's import is not installed")
        missing = os.path.join(self.folder.name, "no-such-module.so")
        runs = []
        button = None
        for module in (ARGS.module, None, missing):
            # The pointer rests off the window, so that nothing is hovered.
            gui_test.xdotool(self.display, "mousemove", "--sync", 1020, 760)
            program, errors = self.start(module)
            window = gui_test.wait_for_window(self.display, "Gallery", timeout=15)
            self.assertIsNotNone(window, module)
            if not button:
                # Where the push button is, as the bridged run tells.
                with self.tvdriver.Driver.connect(timeout=15, name=NAME,
                                                  pid=program.process.pid) as d:
                    info = d.wait_for_widget(PAGE + "|Push Button", timeout=15)
                button = (int(info["x"]) + int(info["width"]) // 2,
                          int(info["y"]) + int(info["height"]) // 2)
            picture = gui_test.painted_picture(self.display, window, timeout=15)
            self.assertIsNotNone(picture, module)
            gui_test.xdotool(self.display, "mousemove", "--window", window, button[0], button[1],
                             "click", 1)
            self.assertTrue(program.wait_for_line("clicked Push Button", timeout=10), module)
            self.quit_by_key(window)
            self.assertEqual(0, program.wait(20), module)
            runs.append((program.output(), picture, self.read(errors)))
        bridged, plain, missing_module = runs
        self.assertEqual(["clicked Push Button"], plain[0])
        self.assertEqual(plain[0], missing_module[0])
        self.assertTrue(plain[1] == missing_module[1], "the window's pixels differ")
        self.assertEqual(plain[2], missing_module[2])
        # With the bridge too, the gallery looks and reports the same.
        self.assertEqual(plain[0], bridged[0])
        self.assertTrue(plain[1] == bridged[1], "the bridge changed the window's pixels")

        # Painted and gone by itself, with nothing more said than by a run without the variable.
        program, errors = self.start(missing, "--exit-after-paint")
        self.assertEqual(0, program.wait(30))
        self.assertEqual([], program.output())
        self.assertEqual(plain[2], self.read(errors))

    def test_a_refused_module_and_taken_ports_give_their_message_once(self):
        if not shutil.which("xdotool"):
            self.skipTest("xdotool is not installed")
        held = []
        self.addCleanup(lambda: [s.close() for s in held])

        def hold_ports():
            # Listening, as another program's server would; connections that earlier tests
            # left waiting to expire on these ports do not stand in the way. A port that can't
            # be taken is already someone else's, which is as good.
            for port in range(FIRST_PORT, LAST_PORT + 1):
                s = socket.socket()
                s.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
                try:
                    s.bind(("127.0.0.1", port))
                    s.listen(1)
                    held.append(s)
                except OSError:
                    s.close()

        for module, (title, text), prepare in ((ARGS.module_v3, VERSION_MESSAGE, None),
                                               (ARGS.module, PORTS_MESSAGE, hold_ports)):
            if prepare:
                prepare()
            # On the display the message is a message box: there once, the gallery waits for
            # its OK, then shows its window.
            program, errors = self.start(module)
            box = gui_test.wait_for_window(self.display, title, timeout=15)
            self.assertIsNotNone(box, title)
            self.assertEqual([box], [w for w, n in gui_test.top_windows(self.display)
                                     if n == title])
            gui_test.xdotool(self.display, "windowfocus", "--sync", box, "key", "Return")
            window = gui_test.wait_for_window(self.display, "Gallery", timeout=15)
            self.assertIsNotNone(window, title)
            self.assertEqual([], [w for w, n in gui_test.top_windows(self.display)
                                  if n == title])
            if not prepare:
                # No server of the gallery's answers (the held ports would only keep a driver
                # waiting).
                with self.assertRaises(self.tvdriver.DriverError):
                    self.tvdriver.Driver.connect(timeout=1, name=NAME,
                                                 pid=program.process.pid)
            self.quit_by_key(window)
            self.assertEqual(0, program.wait(20), title)
            self.assertNotIn(title, self.read(errors))

            # Where no message box can be shown the text goes to the error output, once, and
            # the gallery paints its window and ends as asked.
            program, errors = self.start(module, "--exit-after-paint", display=False)
            self.assertEqual(0, program.wait(30), title)
            said = self.read(errors)
            self.assertEqual(1, said.count("%s: %s\n" % (title, text)), said)
            self.assertEqual(1, said.count(title), said)
            self.assertEqual([], program.output())


def main():
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--module", required=True)
    parser.add_argument("--module-v3", required=True)
    parser.add_argument("--driver", required=True)
    ARGS, rest = parser.parse_known_args()
    Gallery.tvdriver = gui_test.load_driver(ARGS.driver)
    return gui_test.run_tests([Gallery], rest)


if __name__ == "__main__":
    sys.exit(main())
