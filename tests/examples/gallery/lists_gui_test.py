#!/usr/bin/env python3
"""The gallery's list family used the way a user would, on an X display with openbox (when
installed) as window manager: xdotool presses, keys and typing; the results read back through
the test automation bridge (tools/tvdriver.py) and the gallery's report lines. One session
covers the list box, the combo box, the tree and its search, the popup menu with its submenu,
and the file dialog through a stand-in zenity; a second one the path prompt when there is no
chooser program. Exits 77 (skipped) when no display can be had. Every wait is bounded."""

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
PAGE = "Lists Page"
LIST = PAGE + "|Rows List"
COMBO = PAGE + "|Fruit ComboBox"
TREE = PAGE + "|Tree"
CELL = 18  # the list's and the tree's row height


class Lists(unittest.TestCase):
    display = None
    tvdriver = None

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory(prefix="tv-lists-gui")
        self.addCleanup(self.folder.cleanup)
        self.wm = None
        if shutil.which("openbox"):
            self.wm = subprocess.Popen(["openbox"], env=gui_test.x_env(self.display),
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            self.addCleanup(self.stop_wm)
            time.sleep(0.5)

    def stop_wm(self):
        self.wm.terminate()
        self.wm.wait(10)

    def start(self, path):
        """The gallery with PATH set to `path` alone; its driver."""
        env = dict(gui_test.x_env(self.display), PATH=path, HOME=self.folder.name,
                   XDG_CONFIG_HOME=os.path.join(self.folder.name, "config"),
                   TV_TEST_AUTOMATION_MODULE=ARGS.module, SDL_AUDIODRIVER="dummy")
        self.program = gui_test.Program([ARGS.program], env,
                                        os.path.join(self.folder.name, "errors.txt"))
        self.addCleanup(self.program.kill)
        driver = self.tvdriver.Driver.connect(timeout=15, name="APP:Gallery")
        self.addCleanup(driver.close)
        driver.wait_for_widget(LIST, timeout=15)
        self.driver = driver
        return driver

    # ---- acting

    def xdo(self, *args):
        gui_test.xdotool(self.display, *args)

    def at(self, path, x, y):
        """The screen point (`x`, `y`) of the widget at `path`."""
        info = self.driver.widget_info(path)
        return int(info["screenX"]) + x, int(info["screenY"]) + y

    def press_row(self, path, row, modifier=None, x=60, button=1):
        sx, sy = self.at(path, x, row * CELL + CELL // 2)
        self.xdo("mousemove", "--sync", sx, sy)
        if modifier:
            self.xdo("keydown", modifier, "click", button, "keyup", modifier)
        else:
            self.xdo("click", button)

    def line(self, text):
        self.assertTrue(self.program.wait_for_line(text, timeout=10),
                        "no line %r in %r" % (text, self.program.lines[-8:]))
        self.program.lines.remove(text)

    def info(self, path, key):
        return self.driver.widget_info(path)[key]

    # ---- the session

    def test_lists_in_use(self):
        zenity = os.path.join(self.folder.name, "bin")
        os.mkdir(zenity)
        chosen = os.path.join(self.folder.name, "chosen.png")
        with open(os.path.join(zenity, "zenity"), "w") as script:
            script.write("#!/bin/sh\nprintf '%%s\\n' '%s'\n" % chosen)
        os.chmod(os.path.join(zenity, "zenity"), 0o755)
        d = self.start(zenity)
        self.assertEqual("<no item selected>", self.info(LIST, "selectedItem"))

        # The list box: a press, Ctrl and Shift presses, keys.
        self.press_row(LIST, 2)
        self.line("list selected 2")
        self.assertEqual(("Row 2", "2"), (self.info(LIST, "selectedItem"),
                                          self.info(LIST, "selectedItems")))
        self.press_row(LIST, 4, "ctrl")
        self.assertEqual("2,4", self.info(LIST, "selectedItems"))
        self.press_row(LIST, 6, "shift")
        self.line("list selected 4 5 6")
        self.assertEqual("4,5,6", self.info(LIST, "selectedItems"))
        self.xdo("key", "--delay", "50", "Down")
        self.line("list selected 7")
        self.xdo("key", "--delay", "50", "shift+Down", "shift+Down")
        self.line("list selected 7 8 9")
        self.xdo("key", "--delay", "50", "End")
        self.line("list selected 9999")
        self.assertEqual(("Row 9999", "9999"), (self.info(LIST, "selectedItem"),
                                                self.info(LIST, "item")))
        # Only the rows in view have windows, named after their rows.
        self.assertEqual("true", self.info(LIST + "|Scroll View|ListBoxItem 9999", "visible"))
        with self.assertRaises(self.tvdriver.RequestError):
            d.widget_info(LIST + "|Scroll View|ListBoxItem 2")

        # The combo box: opened with a press, chosen with keys.
        combo = d.widget_info(COMBO)
        self.xdo("mousemove", "--sync", int(combo["screenX"]) + int(combo["width"]) - 30,
                 int(combo["screenY"]) + 10, "click", 1)
        gui_test.wait_visible(self.display, "ComboBox Popup Host Window")
        self.xdo("key", "--delay", "80", "Down", "Down", "Return")
        self.line("combo chose Cherry")
        gui_test.wait_visible(self.display, "ComboBox Popup Host Window", False)
        self.assertEqual("Cherry", self.info(COMBO, "selectedItem"))
        # Opened again and left with Escape: nothing changes.
        self.xdo("click", 1)
        gui_test.wait_visible(self.display, "ComboBox Popup Host Window")
        self.xdo("key", "Escape")
        gui_test.wait_visible(self.display, "ComboBox Popup Host Window", False)
        self.assertEqual("Cherry", self.info(COMBO, "selectedItem"))

        # The tree: "Group 1" opened on its triangle, its first item selected, then a search.
        self.assertEqual("10", self.info(TREE, "visibleRows"))
        self.press_row(TREE, 1, x=7)
        d.wait_until(lambda: self.info(TREE, "visibleRows") == "19")
        self.press_row(TREE, 2, x=80)
        self.line("tree selected Item 1.0")
        self.assertEqual("Item 1.0", self.info(TREE, "selectedItem"))
        self.xdo("mousemove", "--sync", *self.at(PAGE + "|Tree Search Edit", 40, 10))
        self.xdo("click", 1)
        gui_test.wait_visible(self.display, "Inline Editor")
        self.xdo("type", "--delay", "40", "Leaf 3.4")
        self.xdo("key", "Return")
        # "Group 3", "Item 3.4" and its ten leaves.
        self.line("tree shows 12 rows")

        # The popup menu: into the submenu with the keys, past the disabled item.
        page = d.widget_info(PAGE)
        spot = (int(page["screenX"]) + 60, int(page["screenY"]) + int(page["height"]) - 20)
        self.xdo("mousemove", "--sync", *spot)
        self.xdo("click", 3)
        gui_test.wait_visible(self.display, "Popup Menu")
        self.xdo("key", "--delay", "80", "Down", "Down", "Right", "Down", "Return")
        self.line("menu chose 12")
        notice = d.wait_for_notice(lambda n: n.kind == "EVNT Done" and n.texts[:1] == ["PopupMenu"])
        self.assertEqual(["PopupMenu", "Show", "Copy|Paste||Colour|Help", "12"], notice.texts)
        gui_test.wait_visible(self.display, "Popup Menu", False)
        # Escape leaves the submenu first, then the menu.
        self.xdo("click", 3)
        gui_test.wait_visible(self.display, "Popup Menu")
        self.xdo("key", "--delay", "80", "c", "Escape", "Escape")
        self.line("menu dismissed")
        # A press outside the menu, on the list, dismisses it and selects nothing.
        self.xdo("click", 3)
        gui_test.wait_visible(self.display, "Popup Menu")
        self.press_row(LIST, 1)
        self.line("menu dismissed")
        self.assertEqual("Row 9999", self.info(LIST, "selectedItem"))

        # The file dialog through the stand-in zenity.
        self.xdo("mousemove", "--sync", *self.at(PAGE + "|Open File Button", 50, 12))
        self.xdo("click", 1)
        self.line("file " + chosen)

    def test_the_path_prompt_without_a_chooser(self):
        empty = os.path.join(self.folder.name, "empty")
        os.mkdir(empty)
        self.start(empty)
        self.xdo("mousemove", "--sync", *self.at(PAGE + "|Save File Button", 50, 12))
        self.xdo("click", 1)
        gui_test.wait_visible(self.display, "Inline Editor")
        self.xdo("type", "--delay", "40", "/tmp/typed")
        self.xdo("key", "Return")
        self.line("file /tmp/typed.png")
        self.xdo("mousemove", "--sync", *self.at(PAGE + "|Open Folder Button", 50, 12))
        self.xdo("click", 1)
        gui_test.wait_visible(self.display, "Inline Editor")
        self.xdo("key", "Escape")
        self.line("file cancelled")


def main():
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--module", required=True)
    parser.add_argument("--driver", required=True)
    ARGS, rest = parser.parse_known_args()
    Lists.tvdriver = gui_test.load_driver(ARGS.driver)
    return gui_test.run_tests([Lists], rest)


if __name__ == "__main__":
    sys.exit(main())
