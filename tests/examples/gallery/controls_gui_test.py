#!/usr/bin/env python3
"""The gallery's "Controls" page driven as a user drives it: xdotool drags, Alt-clicks, the
context menu, wheels, keys, double clicks and typing on the knob, the slider and the scrub text,
and the colour picker's live changes, Cancel and OK; every value read back through the test
automation bridge's getWidgetInfo. One gallery serves the whole run, on a private display with
openbox as the window manager when it is installed. Exits 77 (skipped) without a display."""

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
MAIN = "Gallery Main Window"
PAGE = "Gallery Controls"
PICKER = "Color Picker"
# SDL's double-click time, with a margin.
DOUBLE_CLICK_TIME = 0.6
# openbox without its mouse bindings, so that Alt with a click reaches the program.
OPENBOX_RC = """<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc"><focus><focusNew>yes</focusNew></focus>
<mouse/><keyboard/></openbox_config>
"""


class Controls(unittest.TestCase):
    display = None
    tvdriver = None
    last_press = 0.0

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="tv-controls-gui")
        env = gui_test.x_env(cls.display)
        env["XDG_CONFIG_HOME"] = os.path.join(cls.folder.name, "config")
        env["XDG_DATA_HOME"] = os.path.join(cls.folder.name, "data")
        env["TV_TEST_AUTOMATION_MODULE"] = ARGS.module
        env.setdefault("SDL_AUDIODRIVER", "dummy")
        cls.program = gui_test.Program([ARGS.program], env,
                                       os.path.join(cls.folder.name, "errors.txt"))
        try:
            cls.d = cls.tvdriver.Driver.connect(timeout=15, name="APP:Gallery")
        except Exception:
            cls.tearDownClass()
            raise
        cls.d.wait_for_widget(MAIN + "|Gallery Page|Controls Button", timeout=15)
        # The page's own button opens it, as the user would.
        x, y = cls.centre_of(MAIN + "|Gallery Page|Controls Button")
        gui_test.click(cls.display, x, y)
        cls.d.wait_for_widget(PAGE + "|Gain Knob", timeout=15)
        cls.window = cls.find_window(PAGE)
        cls.wm = gui_test.window_manager_running(cls.display)

    @classmethod
    def tearDownClass(cls):
        if getattr(cls, "d", None):
            cls.d.close()
        cls.program.kill()
        # What the program said on its error output, for failures that end in a crash.
        with open(os.path.join(cls.folder.name, "errors.txt")) as text:
            said = text.read()
        if said.strip():
            print("\n--- gallery error output ---\n" + said[-6000:], file=sys.stderr)
        cls.folder.cleanup()

    # ---- helpers

    @classmethod
    def find_window(cls, name):
        """The id of the visible window named `name`; under a window manager it is not at the
        top of the tree, so xdotool searches for it."""
        found = gui_test.xdotool(cls.display, "search", "--sync", "--onlyvisible", "--name",
                                 "^%s$" % name)
        return int(found.split()[0])

    @classmethod
    def centre_of(cls, path):
        info = cls.d.widget_info(path)
        return (int(info["screenX"]) + int(info["width"]) // 2,
                int(info["screenY"]) + int(info["height"]) // 2)

    def info(self, name, root=PAGE):
        return self.d.widget_info(root + "|" + name)

    def value(self, name):
        return float(self.info(name)["value"])

    def position(self, name):
        return int(self.info(name)["position"])

    def x(self, *args):
        if args[:2] == ("mousemove", "--sync"):
            # A move to where the pointer already is would wait for a motion that never comes.
            here = self.x("getmouselocation").split()[:2]
            if here == ["x:%d" % args[2], "y:%d" % args[3]]:
                args = args[4:]
            if not args:
                return ""
        return gui_test.xdotool(self.display, *args)

    def press(self, *args):
        """Runs xdotool with `args`, which press the left button, once the double-click time
        has passed since the last press: two presses closer than that are a double click, which
        opens the value for typing."""
        wait = Controls.last_press + DOUBLE_CLICK_TIME - time.monotonic()
        if wait > 0:
            time.sleep(wait)
        self.x(*args)
        Controls.last_press = time.monotonic()

    def focus(self, window):
        """Gives `window` the keyboard focus unless it has it, and waits until it has, so that
        keys sent next reach it. A window manager is asked: setting the focus behind its back
        would have it set the focus back later, in the middle of a drag."""
        if self.x("getwindowfocus").strip() == str(window):
            return
        if not self.wm:
            self.x("windowfocus", "--sync", window)
            return
        self.x("windowactivate", "--sync", window)
        deadline = time.monotonic() + 5
        while self.x("getwindowfocus").strip() != str(window):
            self.assertLess(time.monotonic(), deadline, "the window manager gave no focus")
            time.sleep(0.05)

    def focus_page(self):
        self.focus(self.window)

    def hold(self, modifier):
        """Presses `modifier` and waits until the program sees it: keys pass through the input
        method on their own way in, so a click sent right after could arrive first."""
        self.x("keydown", modifier)
        deadline = time.monotonic() + 5
        while time.monotonic() < deadline:
            state = self.d.call("windowAutomationRequest", widget=MAIN, request="GetModifiers")
            if state.get(modifier) == "true":
                return
            time.sleep(0.05)
        self.fail("the program never saw %s held" % modifier)

    def alt_click(self, x, y):
        self.focus_page()
        self.x("mousemove", "--sync", x, y)
        self.hold("alt")
        self.press("click", "1", "keyup", "alt")

    def drag(self, x, y, dx, dy):
        """A press at (x, y), a move in ten steps by (dx, dy), a release. (Drags with Ctrl held
        are checked in process: in a slow build the modifier state that SDL keeps still misses
        Ctrl for the first moves of a real drag, although the program saw it held before the
        press.)"""
        self.focus_page()
        self.x("mousemove", "--sync", x, y)
        args = ["mousedown", "1"]
        for step in range(1, 11):
            args += ["mousemove", "--sync", x + dx * step // 10, y + dy * step // 10]
        args += ["mouseup", "1"]
        self.press(*args)

    def menu(self, x, y, letter):
        """A right click at (x, y), and the context menu's item that starts with `letter`
        chosen by its letter; returns once the menu has gone."""
        self.focus_page()
        self.x("mousemove", "--sync", x, y)
        self.press("click", "3")
        self.find_window("Popup Menu")
        self.x("key", letter)
        gui_test.wait_visible(self.display, "Popup Menu", False, timeout=5)

    def settle(self, name, key, want, timeout=5):
        """The widget's `key` once it equals `want` (bounded wait for the program to catch up)."""
        deadline = time.monotonic() + timeout
        while True:
            got = self.info(name).get(key)
            if got == want or time.monotonic() >= deadline:
                return got
            time.sleep(0.05)

    def settle_value(self, name, want, timeout=5):
        deadline = time.monotonic() + timeout
        while True:
            got = self.value(name)
            if abs(got - want) < 1e-4 or time.monotonic() >= deadline:
                return got
            time.sleep(0.05)

    def double_click_and_type(self, name, text):
        """A double click on the control, then `text` and Return typed into the inline editor
        that it opens."""
        x, y = self.centre_of(PAGE + "|" + name)
        self.focus_page()
        self.press("mousemove", "--sync", x, y, "click", "--repeat", "2", "--delay", "80", "1")
        editor = self.find_window("Inline Editor")
        # The editor takes the focus itself; setting it from outside as well could race the
        # editor's end.
        deadline = time.monotonic() + 5
        while self.x("getwindowfocus").strip() != str(editor):
            self.assertLess(time.monotonic(), deadline, "the inline editor has no focus")
            time.sleep(0.05)
        self.x("type", "--delay", "30", "--", text)
        self.x("key", "Return")

    # ---- the knob: 0 to 100 % over 100 positions, default 50

    def test_knob(self):
        knob = "Gain Knob"
        info = self.info(knob)
        self.assertEqual(("Knob", "Tavorin_Audio_KnobValue", "Gain", "%"),
                         (info["classname"], info["role"], info["label"], info["unit"]))
        self.assertEqual((0.0, 100.0), (float(info["min"]), float(info["max"])))
        x, y = self.centre_of(PAGE + "|" + knob)
        start = self.value(knob)
        # 20 pixels up: a fifth of the range.
        self.drag(x, y, 0, -20)
        self.assertEqual(start + 20, self.settle_value(knob, start + 20))
        # Down again, past the bottom: clamped at 0.
        self.drag(x, y, 0, 150)
        self.assertEqual(0.0, self.settle_value(knob, 0.0))
        # Alt with a click restores the default.
        self.alt_click(x, y)
        self.assertEqual(50.0, self.settle_value(knob, 50.0))
        # The context menu: copy 70, reset to the default, paste the 70 back.
        self.drag(x, y, 0, -20)
        self.assertEqual(70.0, self.settle_value(knob, 70.0))
        self.menu(x, y, "c")
        self.menu(x, y, "r")
        self.assertEqual(50.0, self.settle_value(knob, 50.0))
        self.menu(x, y, "p")
        self.assertEqual(70.0, self.settle_value(knob, 70.0))
        self.alt_click(x, y)
        self.assertEqual(50.0, self.settle_value(knob, 50.0))
        # Wheel notches up and down, one position each.
        self.x("mousemove", "--sync", x, y)
        for button, want in [("4", 51.0), ("4", 52.0), ("4", 53.0), ("5", 52.0)]:
            self.x("click", button)
            self.assertEqual(want, self.settle_value(knob, want))
        # Keys while focused (the click gave it the focus): arrows one, Page a tenth, Home, End.
        self.assertEqual("true", self.settle(knob, "focus", "true"))
        steps = [("Up", 53.0), ("Down", 52.0), ("Page_Up", 62.0), ("Page_Down", 52.0),
                 ("End", 100.0), ("Home", 0.0)]
        for key, want in steps:
            self.focus_page()
            self.x("key", key)
            self.assertEqual(want, self.settle_value(knob, want), key)
        # A double click opens the value for typing; the readouts follow.
        self.double_click_and_type(knob, "42.5")
        self.assertEqual(42.5, self.settle_value(knob, 42.5))
        self.assertEqual("42.50%", self.settle(knob + " Readout", "text", "42.50%"))
        self.assertEqual("42.5", self.info(knob + "|" + knob + " Readout Text")["text"])
        # A text that is no number leaves the value alone; one past the top is clamped.
        self.double_click_and_type(knob, "1-2")
        self.assertEqual(42.5, self.settle_value(knob, 42.5))
        self.double_click_and_type(knob, "500")
        self.assertEqual(100.0, self.settle_value(knob, 100.0))

    # ---- the slider: 0 to 10 over 100 positions, default 5, readout 48 pixels on the right

    def test_slider(self):
        slider = "Level Slider"
        info = self.info(slider)
        left, top = int(info["screenX"]), int(info["screenY"])
        width, height = int(info["width"]), int(info["height"])
        middle = top + height // 2
        self.assertEqual(5.0, self.value(slider))
        # A press on the track jumps there: the far left end.
        self.focus_page()
        self.press("mousemove", "--sync", left + 2, middle, "click", "1")
        self.assertEqual(0.0, self.settle_value(slider, 0.0))
        # The thumb, grabbed at the left end, dragged right by its whole travel: the top.
        travel = width - 48 - 4 - 10
        self.drag(left + 5, middle, travel, 0)
        self.assertEqual(10.0, self.settle_value(slider, 10.0))
        # Wheel, keys, Alt-click, typing.
        x, y = self.centre_of(PAGE + "|" + slider)
        self.press("mousemove", "--sync", left + 2, middle, "click", "1")
        self.assertEqual(0.0, self.settle_value(slider, 0.0))
        self.x("mousemove", "--sync", x, y)
        for want in [0.1, 0.2, 0.3]:
            self.x("click", "4")
            self.assertEqual(want, round(self.settle_value(slider, want), 4))
        self.focus_page()
        self.x("key", "Right", "key", "Page_Up")
        self.assertEqual(1.4, round(self.settle_value(slider, 1.4), 4))
        self.alt_click(x, y)
        self.assertEqual(5.0, self.settle_value(slider, 5.0))
        self.double_click_and_type(slider, "7.25")
        self.assertEqual(7.25, self.settle_value(slider, 7.25))
        self.assertEqual("7.25", self.settle(slider + " Readout", "text", "7.25"))
        self.double_click_and_type(slider, "-3")
        self.assertEqual(0.0, self.settle_value(slider, 0.0))

    # ---- the scrub text: 20 Hz to 20 kHz on a log taper, 1000 positions, 2.5 a pixel

    def test_scrub_text(self):
        scrub = "Frequency Scrub"
        info = self.info(scrub)
        self.assertEqual(("ScrubText", "Tavorin_Audio_ScrubTextValue"),
                         (info["classname"], info["role"]))
        x, y = self.centre_of(PAGE + "|" + scrub)
        start = self.position(scrub)
        # 40 pixels up: 100 positions; the value rises on the log taper.
        self.drag(x, y, 0, -40)
        self.assertEqual(str(start + 100), self.settle(scrub, "position", str(start + 100)))
        self.assertGreater(self.value(scrub), 1000.0)
        # A wheel notch is four pixels of drag: ten positions.
        now = self.position(scrub)
        self.x("mousemove", "--sync", x, y)
        self.x("click", "4")
        self.assertEqual(str(now + 10), self.settle(scrub, "position", str(now + 10)))
        # Typing: exact, left alone, or clamped.
        self.double_click_and_type(scrub, "440")
        self.assertEqual(440.0, self.settle_value(scrub, 440.0))
        self.assertEqual("440.00 Hz", self.settle(scrub + " Readout", "text", "440.00 Hz"))
        self.double_click_and_type(scrub, "..")
        self.assertEqual(440.0, self.settle_value(scrub, 440.0))
        self.double_click_and_type(scrub, "1e9")
        self.assertEqual(20000.0, self.settle_value(scrub, 20000.0))
        self.alt_click(x, y)
        self.assertEqual(1000.0, self.settle_value(scrub, 1000.0))

    # ---- slider groups and RGBA sliders answer with their keys

    def test_groups_answer_their_keys(self):
        ratio = self.info("Ratio Group")
        self.assertEqual(("SimpleSliderGroup", "Ratio", "1.00x"),
                         (ratio["classname"], ratio["label"], ratio["text"]))
        self.assertEqual((0.25, 4.0), (float(ratio["min"]), float(ratio["max"])))
        # The ratio taper puts 1.0 in the middle of the slider.
        self.assertEqual("50", self.info("Ratio Group|Ratio Group Slider")["position"])
        self.assertEqual("FF4080C0", self.info("Tint Sliders")["color"])
        self.assertEqual("192", self.info("Tint Sliders|Blue Slider")["text"])

    # ---- the colour picker: live changes, Cancel restores, OK keeps

    def open_picker(self):
        x, y = self.centre_of(PAGE + "|Pick Colour Button")
        self.focus_page()
        self.press("mousemove", "--sync", x, y, "click", "1")
        self.d.wait_for_widget(PICKER + "|RGBA Sliders|Red Slider", timeout=10)
        self.find_window(PICKER)

    def click_in_picker(self, path, dx=None):
        info = self.d.widget_info(PICKER + "|" + path)
        x = int(info["screenX"]) + (int(info["width"]) // 2 if dx is None else dx)
        y = int(info["screenY"]) + int(info["height"]) // 2
        self.focus(self.find_window(PICKER))
        self.press("mousemove", "--sync", x, y, "click", "1")

    def test_colour_picker(self):
        original = self.info("Colour Swatch")["color"]
        self.assertEqual("FFC04020", original)
        self.open_picker()
        self.assertEqual(original, self.d.widget_info(PICKER)["original"])
        # The red slider's left end: red goes to 0, and the page's swatch follows at once.
        self.click_in_picker("RGBA Sliders|Red Slider", dx=2)
        self.assertEqual("FF004020", self.settle("Colour Swatch", "color", "FF004020"))
        self.assertEqual("#004020", self.info("Colour Readout")["text"])
        self.assertEqual("FF004020", self.d.widget_info(PICKER + "|New Swatch")["color"])
        self.assertEqual(original, self.d.widget_info(PICKER + "|Old Swatch")["color"])
        self.click_in_picker("Cancel Button")
        self.assertTrue(self.program.wait_for_line("picker rejected", timeout=10))
        self.assertEqual(original, self.settle("Colour Swatch", "color", original))

        self.open_picker()
        self.click_in_picker("RGBA Sliders|Blue Slider", dx=2)
        self.assertEqual("FFC04000", self.settle("Colour Swatch", "color", "FFC04000"))
        self.click_in_picker("OK Button")
        self.assertTrue(self.program.wait_for_line("picker accepted", timeout=10))
        self.assertEqual("FFC04000", self.settle("Colour Swatch", "color", "FFC04000"))
        self.assertEqual("#C04000", self.info("Colour Readout")["text"])


def main():
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--module", required=True)
    parser.add_argument("--driver", required=True)
    ARGS, rest = parser.parse_known_args()
    Controls.tvdriver = gui_test.load_driver(ARGS.driver)
    if not shutil.which("xdotool"):
        print("no xdotool: skipped")
        return gui_test.SKIP
    return gui_test.run_tests([Controls], rest, wm_config=OPENBOX_RC)


if __name__ == "__main__":
    sys.exit(main())
