#!/usr/bin/env python3
"""End-to-end test of the test automation bridge: a real SDL program on an X display (its own
Xvfb unless DISPLAY is set), started with TV_TEST_AUTOMATION_MODULE pointing at the built
module and driven through tools/tvdriver.py. Exits 77 (skipped) when no display can be had.
Every wait is bounded."""

import argparse
import importlib.util
import os
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import unittest

ARGS = None
SKIP = 77


def load_driver(path):
    module_spec = importlib.util.spec_from_file_location("tvdriver", path)
    module = importlib.util.module_from_spec(module_spec)
    module_spec.loader.exec_module(module)
    return module


sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "support"))
from xvfb_display import Display  # noqa: E402
class Program:
    """The probe program with its standard output read line by line on a thread."""

    def __init__(self, env, errors, *extra):
        with open(errors, "w") as error_file:
            self.process = subprocess.Popen([ARGS.program] + list(extra), env=env,
                                            stdout=subprocess.PIPE, stderr=error_file,
                                            text=True)
        self.lines = []
        self.cond = threading.Condition()
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()

    def _read(self):
        with self.process.stdout:
            for line in self.process.stdout:
                with self.cond:
                    self.lines.append(line.rstrip("\n"))
                    self.cond.notify_all()
        with self.cond:
            self.lines.append(None)
            self.cond.notify_all()

    def wait_for_line(self, text, timeout=15):
        deadline = time.monotonic() + timeout
        with self.cond:
            while text not in self.lines:
                remaining = deadline - time.monotonic()
                if remaining <= 0 or None in self.lines:
                    return False
                self.cond.wait(remaining)
            return True

    def wait(self, timeout=15):
        try:
            return self.process.wait(timeout)
        except subprocess.TimeoutExpired:
            return None

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        self.reader.join(10)


class EndToEnd(unittest.TestCase):
    display = None
    tvdriver = None

    def environment(self, module):
        env = dict(os.environ)
        env["DISPLAY"] = self.display.name
        env["XDG_CONFIG_HOME"] = os.path.join(self.folder.name, "config")
        env["XDG_DATA_HOME"] = os.path.join(self.folder.name, "data")
        env["TV_TEST_AUTOMATION_MODULE"] = module
        env.setdefault("SDL_AUDIODRIVER", "dummy")
        return env

    def errors(self):
        return os.path.join(self.folder.name, "stderr.txt")

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory(prefix="tv-ta-e2e")
        self.program = None

    def tearDown(self):
        if self.program:
            self.program.kill()
        # What the program said on its error output, for failures that end in a crash.
        errors = os.path.join(self.folder.name, "stderr.txt")
        if os.path.exists(errors):
            with open(errors) as text:
                said = text.read()
            if "ERROR" in said or "runtime error" in said:
                print("\n--- program error output ---\n" + said[-6000:], file=sys.stderr)
        self.folder.cleanup()

    def start_bridged(self):
        self.program = Program(self.environment(ARGS.module), self.errors())
        self.assertTrue(self.program.wait_for_line("bridge: on"), "the bridge did not start")
        driver = self.tvdriver.Driver.connect(timeout=10, name="APP:Probe")
        self.addCleanup(driver.close)
        driver.wait_for_widget("Probe Main Window|Close Button", timeout=10)
        return driver

    def test_without_the_module_the_program_runs_as_before(self):
        missing = os.path.join(self.folder.name, "no-such-module.so")
        self.program = Program(self.environment(missing), self.errors(), "--run-ms", "1500")
        self.assertTrue(self.program.wait_for_line("bridge: off"))
        self.assertEqual(0, self.program.wait(20))

    def test_widgets_are_found_by_nested_paths_with_indices(self):
        d = self.start_bridged()
        info = d.widget_info("Probe Main Window|Panel|Row[2]|Cell")
        self.assertEqual("Probe Main Window|Panel|Row[2]|Cell", info["hierarchy"])
        self.assertEqual("Text", info["classname"])
        self.assertEqual("Row 2", info["text"])
        self.assertEqual("true", info["visible"])
        # Labels take no input: they are disabled by design.
        self.assertEqual("false", info["enabled"])
        # Panel at (10, 10), third row 5 + 2 * 38 below it, the cell 8 further down.
        self.assertEqual(("21", "99"), (info["x"], info["y"]))
        self.assertEqual("Row 0", d.widget_info("Probe Main Window|Panel|Row|Cell")["text"])
        row = d.widget_info("Probe Main Window|Panel|Row[1]")
        self.assertEqual(("Box", "FFC0C8D0"), (row["classname"], row["color"]))
        self.assertEqual(("270", "34"), (row["width"], row["height"]))
        self.assertEqual("true", row["enabled"])

    def test_requests_answer_with_their_error_texts(self):
        d = self.start_bridged()
        cases = [
            ("getWidgetInfo", {"widget": "Probe Main Window|Panel|Row[3]"}, "Widget not found"),
            ("getWidgetInfo", {"widget": "Nobody"}, "Widget not found"),
            ("pluginAutomationRequest", {"req": "x"}, "No MainPluginWindow has been registered"),
            ("windowAutomationRequest", {"widget": "Probe Main Window"},
             'Missing argument "request"'),
        ]
        for method, params, text in cases:
            with self.assertRaises(self.tvdriver.RequestError) as caught:
                d.call(method, **params)
            self.assertEqual(text, caught.exception.message)
        # Settings through the application main window, and the console command.
        self.assertEqual({"Handled": "true", "value": "7"},
                         d.call("appAutomationRequest", req="SetConfigFileProperty|Depth|7"))
        self.assertEqual("7", d.call("appAutomationRequest",
                                     req="GetConfigFileProperty|Depth")["value"])
        self.assertEqual({}, d.call("executeConsoleCommand", command="hello"))
        self.assertTrue(self.program.wait_for_line("console hello", timeout=5))
        # Unknown methods and malformed lines leave the program serving.
        with self.assertRaises(self.tvdriver.RequestError) as caught:
            d.call("noSuchRequest")
        self.assertEqual(-32601, caught.exception.code)
        d.sock.sendall(b"{broken\n")
        self.assertEqual("APP:Probe", d.call("getServerInfo")["name"])
        self.assertEqual(1, len(d.protocol_errors))
        self.assertEqual(-32700, d.protocol_errors[0]["code"])

    def test_window_requests_open_and_close_a_window_with_notices(self):
        d = self.start_bridged()
        d.take_notices()
        self.assertEqual({"opened": "true", "hierarchy": "Probe Main Window"},
                         d.call("windowAutomationRequest", widget="Probe Main Window",
                                request="OpenDialog"))
        shown = d.wait_for_notice(lambda n: n.kind == "Show" and n.texts[:1] == ["Probe Dialog"],
                                  timeout=10)
        self.assertTrue(shown.texts[1].startswith("0x"))
        self.assertEqual("true", d.wait_for_widget("Probe Dialog", timeout=10)["visible"])
        d.call("windowAutomationRequest", widget="Probe Main Window", request="CloseDialog")
        d.wait_for_notice(lambda n: n.kind == "Destroy" and n.texts[:1] == ["Probe Dialog"],
                          timeout=10)
        with self.assertRaises(self.tvdriver.RequestError):
            d.widget_info("Probe Dialog")

    def test_real_clicks_come_back_as_mouse_notices(self):
        if not shutil.which("xdotool"):
            self.skipTest("xdotool is not installed")
        d = self.start_bridged()
        info = d.widget_info("Probe Main Window|Close Button")
        x = int(info["screenX"]) + int(info["width"]) // 2
        y = int(info["screenY"]) + int(info["height"]) // 2
        d.take_notices()
        env = dict(os.environ, DISPLAY=self.display.name)
        subprocess.run(["xdotool", "mousemove", "--sync", str(x), str(y), "click", "1"],
                       env=env, check=True, timeout=10)
        down = d.wait_for_notice(lambda n: n.kind == "MouseEvent" and
                                 n.texts[0].startswith("LeftDown("), timeout=10)
        self.assertEqual("LeftDown(%d,%d)" % (x - int(info["screenX"]) + int(info["x"]),
                                              y - int(info["screenY"]) + int(info["y"])),
                         down.texts[0])
        self.assertEqual("Probe Main Window", down.texts[2])
        d.wait_for_notice(lambda n: n.kind == "MouseEvent" and n.texts[0].startswith("LeftUp("),
                          timeout=10)
        self.assertTrue(self.program.wait_for_line("clicked Close Button", timeout=10))

    def test_the_driver_command_line_and_quitting(self):
        d = self.start_bridged()
        d.close()
        run = subprocess.run([sys.executable, ARGS.driver, "--name", "APP:Probe",
                              "getWidgetInfo", "Probe Main Window|Panel|Row[1]|Cell"],
                             capture_output=True, text=True, timeout=30)
        self.assertEqual(0, run.returncode, run.stderr)
        self.assertIn('"text": "Row 1"', run.stdout)
        run = subprocess.run([sys.executable, ARGS.driver, "--name", "APP:Probe",
                              "getWidgetInfo", "Probe Main Window|Nothing"],
                             capture_output=True, text=True, timeout=30)
        self.assertEqual(1, run.returncode)
        self.assertEqual("error: Widget not found", run.stderr.strip())
        run = subprocess.run([sys.executable, ARGS.driver, "--name", "APP:Probe", "call",
                              "windowAutomationRequest", "widget=Probe Main Window",
                              "request=Quit"], capture_output=True, text=True, timeout=30)
        self.assertEqual(0, run.returncode, run.stderr)
        self.assertEqual(0, self.program.wait(20))


def main():
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--module", required=True)
    parser.add_argument("--driver", required=True)
    ARGS, rest = parser.parse_known_args()
    EndToEnd.tvdriver = load_driver(ARGS.driver)
    display = Display()
    if not display.start():
        print("no X display and no Xvfb: skipped")
        return SKIP
    EndToEnd.display = display
    try:
        result = unittest.main(argv=[sys.argv[0]] + rest, exit=False, verbosity=2).result
    finally:
        display.stop()
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
