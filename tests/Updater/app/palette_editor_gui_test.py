#!/usr/bin/env python3
"""The palette editor on the running updater, as a designer uses it: opened through the bridge's
console command (twice: one window), searched, a colour set with the picker and seen on the
screen at once, reset, grabbed and found with the eyedropper over the updater's own window and
over the bare desktop, the palette copied as source text with Ctrl+Shift+Alt and a right click
(and not without them), saved, and found again after a restart. On an X display (its own Xvfb
unless DISPLAY is set) with openbox as window manager when installed; xdotool acts as the user.
Exits 77 (skipped) without a display. Every wait is bounded."""

import argparse
import os
import plistlib
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "support"))
import gui_test  # noqa: E402
import xlib_client  # noqa: E402
from loopback_site import Site  # noqa: E402

tvdriver = gui_test.load_driver()

ARGS = None
MAIN = "Updater Main Window"
EDITOR = "PaletteEditor"
LIST = EDITOR + "|Color ListBox"
PICKER = "Color Picker"
CELL = 18
# openbox without its mouse and key bindings, so that Alt with a click reaches the program.
OPENBOX_RC = """<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc"><focus><focusNew>yes</focusNew></focus>
<mouse/><keyboard/></openbox_config>
"""


class PaletteEditorSession(unittest.TestCase):
    display = None

    def setUp(self):
        self.work = tempfile.mkdtemp(prefix="tv-palette.")
        self.addCleanup(shutil.rmtree, self.work, True)
        self.config = os.path.join(self.work, "config")
        self.env = dict(gui_test.x_env(self.display), XDG_CONFIG_HOME=self.config,
                        TV_TEST_AUTOMATION_MODULE=ARGS.module, SDL_AUDIODRIVER="dummy")
        if shutil.which("openbox"):
            rc = os.path.join(self.work, "rc.xml")
            with open(rc, "w") as f:
                f.write(OPENBOX_RC)
            wm = subprocess.Popen(["openbox", "--config-file", rc], env=self.env,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            self.addCleanup(lambda: (wm.terminate(), wm.wait(10)))
            time.sleep(0.5)
        self.site = Site({})
        self.addCleanup(self.site.stop)
        self.site.pages["/products/versions/versions.txt"] = (
            "Alpha Mixer|3.2|%s\n" % self.site.url("/products/alpha/")).encode()
        subprocess.run([os.path.join(ARGS.bin, "tvdefaults"), "write", "com.tavorin.updater",
                        "InstalledProducts/Alpha Mixer/CurrentVersion", "3.0"],
                       env=self.env, check=True, timeout=10)

    # ---- the program

    def start(self):
        env = dict(self.env, TV_UPDATE_HOST=self.site.host, TV_WEB_HOST=self.site.host)
        command = [os.path.join(ARGS.bin, "tavorin-updater")]
        out = open("/tmp/palette-gdb.txt", "w") if os.environ.get("TV_DEBUG_GDB") else None
        p = subprocess.Popen(command, env=env, stdout=out or subprocess.DEVNULL,
                             stderr=out or subprocess.DEVNULL)
        self.addCleanup(lambda: p.poll() is None and (p.kill(), p.wait(10)))
        d = tvdriver.Driver.connect(timeout=20, name="APP:Updater")
        self.addCleanup(d.close)
        d.wait_for_widget(MAIN + "|Close Button", timeout=10)
        self.p, self.d = p, d
        return d

    def quit(self):
        self.click(MAIN + "|Close Button")
        self.assertEqual(0, self.p.wait(10))
        self.d.close()

    def toolkit_settings(self):
        with open(os.path.join(self.config, "tavorin", "com.tavorin.plist"), "rb") as f:
            return plistlib.load(f)

    # ---- the user

    def x(self, *args):
        return gui_test.xdotool(self.display, *args)

    def at(self, path, dx=None, dy=None):
        info = self.d.widget_info(path)
        return (int(info["screenX"]) + (int(info["width"]) // 2 if dx is None else dx),
                int(info["screenY"]) + (int(info["height"]) // 2 if dy is None else dy))

    def click(self, path, dx=None, dy=None, button=1):
        x, y = self.at(path, dx, dy)
        self.x("mousemove", "--sync", x, y, "click", button)

    def screen_pixel(self, x, y):
        """The screen's colour at (x, y) as "RRGGBB"."""
        run = subprocess.run(["import", "-window", "root", "-crop", "1x1+%d+%d" % (x, y),
                              "-depth", "8", "txt:-"], env=self.env, capture_output=True,
                             text=True, timeout=20, check=True)
        # "0,0: (179,179,179)  #B3B3B3  ..." below the header line.
        return run.stdout.splitlines()[1].split("#")[1][:6].upper()

    def settle_pixel(self, point, want):
        return self.d.wait_until(lambda: self.screen_pixel(*point) == want and want,
                                 timeout=10)

    def text(self, name):
        return self.d.widget_info(EDITOR + "|" + name)["text"]

    def row(self, index):
        return LIST + "|Scroll View|ListBoxItem %d" % index

    def clipboard(self):
        run = subprocess.run(["xclip", "-selection", "clipboard", "-o"], env=self.env,
                             capture_output=True, text=True, timeout=10)
        return run.stdout

    def sample(self, button, point):
        """Presses `button` of the editor, drags to `point` and answers what the eyedropper
        shows there; then lets go."""
        self.x("mousemove", "--sync", *self.at(EDITOR + "|" + button), "mousedown", 1)
        with xlib_client.Connection(self.display.name) as c:
            c.move_pointer(point[0] + 3, point[1] + 3)
            c.move_pointer(*point)
        shown = self.d.wait_until(lambda: self.text("Eyedropper Color Text"), timeout=10)
        swatch = self.d.widget_info(EDITOR + "|Eyedropper Swatch")["visible"]
        self.x("mouseup", 1)
        self.d.wait_until(lambda: not self.text("Eyedropper Color Text"), timeout=10)
        return shown, swatch

    # ---- the session

    def test_designer_recolours_the_updater(self):
        d = self.start()
        # Opened twice: one window, brought to the front.
        for _ in range(2):
            self.assertEqual({}, d.call("executeConsoleCommand", command="editpalette"))
            d.wait_for_widget(LIST, timeout=10)
        editor_window = gui_test.wait_visible(self.display, "Palette Editor")[0]
        self.assertEqual([editor_window], gui_test.visible_windows(self.display, "Palette Editor"))
        editor = d.widget_info(EDITOR)
        self.assertEqual((410, 400), (int(editor["width"]), int(editor["height"])))
        self.assertEqual("6", d.widget_info(LIST)["itemCount"])

        # The search ignores case.
        self.click(EDITOR + "|Search Edit")
        gui_test.wait_visible(self.display, "Inline Editor")
        self.x("type", "--delay", "30", "BUTTON")
        self.x("key", "Return")
        d.wait_until(lambda: d.widget_info(LIST)["itemCount"] == "4", timeout=10)

        # The Close button's fill is "ButtonOffFillColor", the first row.
        close = self.at(MAIN + "|Close Button", 4, 4)
        self.assertEqual("B3B3B3", self.screen_pixel(*close))
        self.click(self.row(0))
        self.assertEqual("ButtonOffFillColor", d.widget_info(LIST)["selectedItem"])
        self.assertEqual("1 colors selected", self.text("Num Colors Label"))

        # The picker recolours the updater live; Cancel puts the colour back, OK keeps it.
        for button, want in (("Cancel Button", "B3B3B3"), ("OK Button", "00B3B3")):
            self.click(EDITOR + "|Color Set PushButton")
            d.wait_for_widget(PICKER + "|RGBA Sliders|Red Slider", timeout=10)
            self.focus_window(PICKER)
            self.click(PICKER + "|RGBA Sliders|Red Slider", dx=2)
            self.assertTrue(self.settle_pixel(close, "00B3B3"))
            self.click(PICKER + "|" + button)
            self.assertTrue(self.settle_pixel(close, want))
        self.click(EDITOR + "|Color Reset PushButton")
        self.assertTrue(self.settle_pixel(close, "B3B3B3"))
        self.click(EDITOR + "|Color Set PushButton")
        d.wait_for_widget(PICKER + "|RGBA Sliders|Red Slider", timeout=10)
        self.focus_window(PICKER)
        self.click(PICKER + "|RGBA Sliders|Red Slider", dx=2)
        self.click(PICKER + "|OK Button")
        self.assertTrue(self.settle_pixel(close, "00B3B3"))

        # Find over the updater's Close button selects the entry of its colour.
        self.click(self.row(3), dx=20)  # ButtonTextColor
        self.assertEqual("ButtonTextColor", d.widget_info(LIST)["selectedItem"])
        self.assertEqual(("0x00B3B3", "true"), self.sample("Color Find PushButton", close))
        self.assertEqual("0", d.widget_info(LIST)["selectedItems"])

        # Grab over the bare desktop (read from the X root window) sets the selected entry.
        root = subprocess.run(["xwininfo", "-root"], env=self.env, capture_output=True,
                              text=True, timeout=10).stdout.split("Window id:")[1].split()[0]
        with xlib_client.Connection(self.display.name) as c:
            c.fill_rectangle(int(root, 16), 0, 0, 40, 40, 0x123456)
        self.click(self.row(3), dx=20)
        self.assertEqual(("0x123456", "true"), self.sample("Color Grab PushButton", (20, 20)))

        # Saved, and loaded on the next start.
        self.click(EDITOR + "|Save PushButton")
        self.quit()
        saved = self.toolkit_settings()
        self.assertTrue(saved["Palette/CustomPaletteEnable"])
        self.assertEqual("#00B3B3", saved["Palette/Color.ButtonOffFillColor"])
        self.assertIn("HostWindowGeometry/PaletteEditor Host Window.Geometry", saved)
        d = self.start()
        self.assertTrue(self.settle_pixel(self.at(MAIN + "|Close Button", 4, 4), "00B3B3"))
        d.call("executeConsoleCommand", command="editpalette")
        d.wait_for_widget(LIST, timeout=10)

        # The palette as source text: only with Ctrl, Shift and Alt held.
        subprocess.run(["xclip", "-selection", "clipboard", "-i"], input="before", text=True,
                       env=self.env, timeout=10, check=True)
        self.focus_window("Palette Editor")
        save = self.at(EDITOR + "|Save PushButton")
        self.x("mousemove", "--sync", *save, "click", 3)
        for partial in ("ctrl+shift", "ctrl+alt", "shift+alt"):
            self.x("keydown", partial, "click", 3, "keyup", partial)
        time.sleep(0.3)
        self.assertEqual("before", self.clipboard())
        self.x("keydown", "ctrl+shift+alt", "click", 3, "keyup", "ctrl+shift+alt")
        d.wait_until(lambda: self.clipboard() != "before", timeout=10)
        pasted = self.clipboard()
        self.assertTrue(pasted.startswith("\t//- " + "-" * 73 + ";\n\t//\tBegin pasted code"))
        self.assertIn('\tSetColor( "ButtonOffFillColor", MakePixel(0x00,0xB3,0xB3,255) );\n',
                      pasted)
        self.assertIn('\tSetColor( "ButtonTextColor", MakePixel(0x12,0x34,0x56,255) );\n',
                      pasted)

        self.quit()

    def focus_window(self, name):
        window = gui_test.wait_visible(self.display, name)[0]
        self.x("windowactivate", "--sync", window)


def main():
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", required=True)
    parser.add_argument("--module", required=True)
    ARGS, rest = parser.parse_known_args()
    if not shutil.which("xclip"):
        print("xclip is missing: skipped")
        return gui_test.SKIP
    return gui_test.run_tests([PaletteEditorSession], rest)


if __name__ == "__main__":
    sys.exit(main())
