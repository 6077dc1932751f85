#!/usr/bin/env python3
"""One session with the gallery under openbox, looking at it as a user does: the in-place editor
covers its field exactly, the number field refuses what is no number and reads a decimal comma,
the On/off button reacts, the splitter's panes fill their view after a drag, the radio buttons
are round and the text is antialiased. Driven through tools/tvdriver.py and xdotool; exits 77
(skipped) without a display."""

import argparse
import os
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "support"))
import gui_test  # noqa: E402

ARGS = None
PAGE = "Gallery Main Window|Gallery Page|"
BACKGROUND = (0xF2, 0xF2, 0xEE)


def window_geometry(display, name, wait=True):
    """(x, y, width, height) on the screen of the visible window named `name`, waiting for one
    (bounded) with `wait`; None when there is none."""
    sync = ["--sync"] if wait else []
    ids = subprocess.run(["timeout", "10", "xdotool", "search"] + sync + [
                          "--onlyvisible", "--name", "^%s$" % name],
                         env=gui_test.x_env(display), capture_output=True, text=True).stdout.split()
    if not ids:
        return None
    out = subprocess.run(["xwininfo", "-id", ids[0]], env=gui_test.x_env(display),
                         capture_output=True, text=True, timeout=20).stdout
    values = {}
    for line in out.splitlines():
        key, _, value = line.strip().partition(":")
        values[key] = value.strip()
    return tuple(int(values[k]) for k in ("Absolute upper-left X", "Absolute upper-left Y",
                                          "Width", "Height"))


class Showcase(unittest.TestCase):
    display = None

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="tv-gallery-showcase")
        env = gui_test.x_env(cls.display)
        env.update(XDG_CONFIG_HOME=os.path.join(cls.folder.name, "config"),
                   XDG_DATA_HOME=os.path.join(cls.folder.name, "data"),
                   TV_TEST_AUTOMATION_MODULE=ARGS.module, SDL_AUDIODRIVER="dummy")
        cls.program = gui_test.Program([ARGS.program], env,
                                       os.path.join(cls.folder.name, "errors.txt"))
        cls.driver = gui_test.load_driver(ARGS.driver).Driver.connect(
            timeout=15, name="APP:Gallery", pid=cls.program.process.pid)
        cls.driver.wait_for_widget(PAGE + "About Button", timeout=15)
        main = gui_test.wait_for_window(cls.display, "Gallery")
        gui_test.painted_picture(cls.display, main)

    @classmethod
    def tearDownClass(cls):
        cls.driver.close()
        cls.program.kill()
        cls.folder.cleanup()

    def info(self, name):
        return self.driver.widget_info(PAGE + name)

    def rect(self, name):
        info = self.info(name)
        return tuple(int(info[k]) for k in ("screenX", "screenY", "width", "height"))

    def edit(self, name, typed):
        """Opens the field's editor, checks that it lies over the field (a fifth wider, so long
        texts have room), types `typed` and presses Return."""
        x, y, w, h = self.rect(name)
        self.driver.take_notices()
        gui_test.click(self.display, x + w // 2, y + h // 2)
        self.assertEqual((x, y, int(w * 1.2 + 0.5), h),
                         window_geometry(self.display, "Inline Editor"))
        self.driver.wait_for_notice(
            lambda n: n.kind == "EditText" and n.texts[:1] == ["InLineEdit"], timeout=5)
        gui_test.xdotool(self.display, "type", "--delay", "20", "--", typed)
        gui_test.xdotool(self.display, "key", "Return")
        self.driver.wait_until(
            lambda: not window_geometry(self.display, "Inline Editor", wait=False), timeout=5)

    def test_number_field_in_its_editor(self):
        self.edit("Number Edit", "7,25")
        self.assertTrue(self.program.wait_for_line("edited Number Edit: 7.25", 10))
        self.edit("Number Edit", "abc")
        field = self.info("Number Edit")
        self.assertEqual(("SimpleEdit", "7.25", 7.25),
                         (field["classname"], field["text"], float(field["value"])))
        self.edit("Name Edit", "plain")
        self.assertTrue(self.program.wait_for_line("edited Name Edit: plain", 10))

    def test_on_off_button_reacts(self):
        x, y, w, h = self.rect("On Off Button")
        before = gui_test.screen_area(self.display, x, y, w, h)
        gui_test.click(self.display, x + 8, y + h // 2)
        self.assertTrue(self.program.wait_for_line("toggled On Off Button: on", 10))
        self.assertEqual(("true", "true"), (self.info("On Off Button")["isOn"],
                                            self.info("On Off Button")["isPressed"]))
        self.assertTrue(self.driver.wait_until(
            lambda: gui_test.screen_area(self.display, x, y, w, h) != before, timeout=5),
            "the button looks the same when on")

    def test_splitter_panes_fill_their_view(self):
        view = self.rect("Split Panes")
        bar = self.rect("Split Panes|Pane Splitter")
        for travel in (-80, 60):
            start = (bar[0] + 1, bar[1] + bar[3] // 2)
            gui_test.xdotool(self.display, "mousemove", "--sync", *start, "mousedown", "1")
            for step in (1, 2):
                gui_test.xdotool(self.display, "mousemove", "--sync",
                                 start[0] + travel * step // 2, start[1])
            gui_test.xdotool(self.display, "mouseup", "1")
            left = self.rect("Split Panes|Left Pane")
            right = self.rect("Split Panes|Right Pane")
            bar = self.rect("Split Panes|Pane Splitter")
            self.assertEqual(bar[0], left[0] + left[2])
            self.assertEqual((bar[0] + bar[2], view[0] + view[2]), (right[0], right[0] + right[2]))
        self.assertEqual(178 - 20, left[2])
        # The right pane's colour reaches the view's right edge.
        edge = gui_test.screen_area(self.display, view[0] + view[2] - 2,
                                    view[1] + view[3] // 2, 1, 1)
        self.assertEqual((0xE0, 0xF0, 0xE8), edge[0][0])

    def test_radio_buttons_are_round_and_text_is_antialiased(self):
        x, y, w, h = self.rect("Radio Small")
        ring = gui_test.screen_area(self.display, x, y, h, h)
        middle = h // 2
        # The ring's corners are the page, the middle of its sides are ink.
        for corner in (ring[0][0], ring[0][h - 1], ring[h - 1][0], ring[h - 1][h - 1]):
            self.assertLess(max(abs(a - b) for a, b in zip(BACKGROUND, corner)), 8, corner)
        for side in (ring[0][middle], ring[middle][0], ring[h - 1][middle], ring[middle][h - 1]):
            self.assertLess(max(side), 0x80)
        # Blended edge pixels between page and ink on the arc.
        self.assertTrue(any(0x40 < p[0] < 0xE0 for row in ring for p in row))
        # A label's pixels hold many grey levels between ink and page, not just the two.
        x, y, w, h = self.rect("Left Label")
        levels = {p for row in gui_test.screen_area(self.display, x, y, 80, h) for p in row}
        self.assertGreater(len(levels), 8, levels)


def main():
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--module", required=True)
    parser.add_argument("--driver", required=True)
    ARGS, rest = parser.parse_known_args()
    return gui_test.run_tests([Showcase], rest)


if __name__ == "__main__":
    sys.exit(main())
