#!/usr/bin/env python3
"""One session with the gallery under a window manager (openbox, when installed), as a user has
it: in-place edits, repaints after them, tool tips and the widgets' answers to the bridge.
Driven through tools/tvdriver.py and xdotool; exits 77 (skipped) without a display."""

import argparse
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "support"))
import gui_test  # noqa: E402

ARGS = None
PAGE = "Gallery Main Window|Gallery Page"


def screen_pixel(display, x, y):
    """The screen's colour at (`x`, `y`) as (r, g, b)."""
    ppm = subprocess.run(["import", "-window", "root", "-crop", "1x1+%d+%d" % (x, y), "ppm:-"],
                         env=gui_test.x_env(display), capture_output=True, check=True,
                         timeout=30).stdout
    return tuple(ppm.split(maxsplit=4)[4][:3])


def find_window(display, name, timeout=10):
    """The ids of the windows named `name` (inside a window manager's frame or not), once there
    is one; [] after `timeout`."""
    run = subprocess.run(["timeout", str(timeout), "xdotool", "search", "--sync", "--name",
                          "^%s$" % name], env=gui_test.x_env(display), capture_output=True,
                         text=True)
    return run.stdout.split()


def window_state(display, name):
    """The _NET_WM_STATE and _NET_WM_WINDOW_TYPE of the top window `name`, as xprop says them;
    "" when there is no such window."""
    found = gui_test.top_windows(display)
    # Under a window manager the program's window sits inside the manager's frame.
    ids = subprocess.run(["xdotool", "search", "--name", "^%s$" % name],
                         env=gui_test.x_env(display), capture_output=True, text=True,
                         timeout=20).stdout.split()
    ids = ids or [str(w) for w, n in found if n == name]
    return "".join(subprocess.run(["xprop", "-id", i, "_NET_WM_STATE", "_NET_WM_WINDOW_TYPE"],
                                  env=gui_test.x_env(display), capture_output=True, text=True,
                                  timeout=20).stdout for i in ids)


class GallerySession(unittest.TestCase):
    display = None

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="tv-gallery-session")
        cls.manager = None
        if shutil.which("openbox"):
            cls.manager = subprocess.Popen(["openbox"], env=gui_test.x_env(cls.display),
                                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            time.sleep(0.5)
        env = gui_test.x_env(cls.display)
        env.update(XDG_CONFIG_HOME=os.path.join(cls.folder.name, "config"),
                   XDG_DATA_HOME=os.path.join(cls.folder.name, "data"),
                   TV_TEST_AUTOMATION_MODULE=ARGS.module, SDL_AUDIODRIVER="dummy")
        cls.program = gui_test.Program([ARGS.program], env,
                                       os.path.join(cls.folder.name, "errors.txt"))
        tvdriver = gui_test.load_driver(ARGS.driver)
        cls.driver = tvdriver.Driver.connect(timeout=15, name="APP:Gallery")
        cls.driver.wait_for_widget(PAGE + "|About Button", timeout=15)

    @classmethod
    def tearDownClass(cls):
        cls.driver.close()
        cls.program.kill()
        if cls.manager:
            cls.manager.terminate()
            cls.manager.wait(10)
        cls.folder.cleanup()

    def centre(self, name):
        info = self.driver.widget_info(PAGE + "|" + name)
        return (int(info["screenX"]) + int(info["width"]) // 2,
                int(info["screenY"]) + int(info["height"]) // 2)

    def test_1_the_window_repaints_after_an_in_place_edit(self):
        gui_test.click(self.display, *self.centre("Name Edit"))
        self.assertTrue(find_window(self.display, "Inline Editor"), "no inline editor")
        gui_test.xdotool(self.display, "type", "--delay", "20", "abc")
        gui_test.xdotool(self.display, "key", "Return")
        self.assertTrue(self.program.wait_for_line("edited Name Edit: abc", 10))
        # The check box's square, left in its window, turns dark once it is on.
        info = self.driver.widget_info(PAGE + "|Check Box")
        box = (int(info["screenX"]) + 7, int(info["screenY"]) + 8)
        before = screen_pixel(self.display, *box)
        gui_test.click(self.display, *self.centre("Check Box"))
        self.assertTrue(self.program.wait_for_line("toggled Check Box: on", 10))
        self.assertTrue(self.driver.wait_until(
            lambda: screen_pixel(self.display, *box) != before, timeout=5),
            "the check box shows no change after an in-place edit")

    def tip_shown(self):
        return bool(gui_test.visible_windows(self.display, "ToolTip HostWindow"))

    def rest_on_tip_target(self):
        x, y = self.centre("ToolTip Target")
        gui_test.xdotool(self.display, "mousemove", "--sync", x + 5, y)
        gui_test.xdotool(self.display, "mousemove", "--sync", x, y)
        return self.driver.wait_until(self.tip_shown, timeout=10)

    def test_2_tool_tips_take_no_focus_and_come_back_after_a_click(self):
        main = find_window(self.display, "Gallery")[0]
        gui_test.xdotool(self.display, "windowactivate", "--sync", main)
        for round in range(2):
            self.driver.take_notices()
            self.assertTrue(self.rest_on_tip_target(), "no tool tip in round %d" % round)
            # The host window tells the bridge about its showing, with its native handle.
            shown = self.driver.wait_for_notice(
                lambda n: n.kind == "Show" and n.texts[:1] == ["ToolTip HostWindow"], timeout=5)
            self.assertTrue(shown.texts[1].startswith("0x"), shown)
            state = window_state(self.display, "ToolTip HostWindow")
            self.assertIn("_NET_WM_WINDOW_TYPE_TOOLTIP", state)
            self.assertIn("_NET_WM_STATE_SKIP_TASKBAR", state)
            self.assertEqual(main, gui_test.xdotool(self.display, "getwindowfocus").strip())
            # A click on a button, then back to the target: the tip shows again.
            gui_test.click(self.display, *self.centre("Push Button"))
            self.assertTrue(self.program.wait_for_line("clicked Push Button", 10))
            self.driver.wait_until(lambda: not self.tip_shown(), timeout=10)
            self.driver.wait_for_notice(
                lambda n: n.kind == "Hide" and n.texts[:1] == ["ToolTip HostWindow"], timeout=5)

    def test_3_the_about_box_belongs_to_its_parent_and_closes_on_escape(self):
        self.driver.take_notices()
        self.driver.call("windowAutomationRequest", widget="Gallery Main Window",
                         request="OpenAbout")
        self.driver.wait_for_notice(
            lambda n: n.kind == "Show" and n.texts[:1] == ["About Gallery"], timeout=10)
        box = find_window(self.display, "About Gallery")
        self.assertTrue(box)
        main = find_window(self.display, "Gallery")[0]
        transient = subprocess.run(["xprop", "-id", box[0], "WM_TRANSIENT_FOR"],
                                   env=gui_test.x_env(self.display), capture_output=True,
                                   text=True, timeout=20).stdout
        self.assertIn(hex(int(main)), transient)
        gui_test.xdotool(self.display, "windowactivate", "--sync", box[0])
        gui_test.xdotool(self.display, "key", "Escape")
        self.driver.wait_for_notice(
            lambda n: n.kind == "Destroy" and n.texts[:1] == ["About Gallery"], timeout=10)


def main():
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--module", required=True)
    parser.add_argument("--driver", required=True)
    ARGS, rest = parser.parse_known_args()
    return gui_test.run_tests([GallerySession], rest)


if __name__ == "__main__":
    sys.exit(main())
