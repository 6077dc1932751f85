#!/usr/bin/env python3
"""Live design for real: the gallery and the updater on an X display (their own Xvfb unless
DISPLAY is set, with openbox as window manager when it is installed), switched on with the
"RuntimeDesignEnable" setting and caps lock, driven with xdotool as a designer would, and read
back through the test bridge (tvdriver.py). Exits 77 (skipped) without a display. Every wait is
bounded."""

import argparse
import ctypes
import ctypes.util
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "support"))
import gui_test  # noqa: E402
import png_reader  # noqa: E402
from loopback_site import Site  # noqa: E402

tvdriver = gui_test.load_driver()

ARGS = None
READOUT = "Runtime Design Readout Text"
READOUT_WINDOW = "Dynamic Layout"
PAGE = "Gallery Main Window|Gallery Page"
UPDATER = "Updater Main Window"
YELLOW = (255, 255, 0)
# Without window or key bindings: Alt-drags reach the program, as they do on many desktops.
OPENBOX_RC = "<openbox_config xmlns=\"http://openbox.org/3.4/rc\"><focus><focusNew>no</focusNew>" \
             "</focus><keyboard/><mouse/></openbox_config>"


class Design(unittest.TestCase):
    display = None

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="tv-design-gui.")

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder, ignore_errors=True)

    def setUp(self):
        self.work = tempfile.mkdtemp(prefix="run.", dir=self.folder)
        self.env = dict(os.environ, DISPLAY=self.display.name,
                        XDG_CONFIG_HOME=os.path.join(self.work, "config"),
                        XDG_DATA_HOME=os.path.join(self.work, "data"),
                        TV_TEST_AUTOMATION_MODULE=ARGS.module, SDL_AUDIODRIVER="dummy",
                        # Two clicks on one spot are two clicks, not a double click (which
                        # makes a guide), once this much time lies between them.
                        SDL_MOUSE_DOUBLE_CLICK_TIME="100")
        self.programs = []
        self.drivers = []
        # The Design Aid panel would cover the windows these tests press; its own test shows it.
        if type(self) is Design:
            self.setting("com.tavorin", "DesignAidVisible", "-bool", "false")

    def tearDown(self):
        self.caps(False)
        for d in self.drivers:
            d.close()
        for p in self.programs:
            p.kill()

    # ---- helpers

    def setting(self, domain, path, kind, value):
        subprocess.run([os.path.join(ARGS.bin, "tvdefaults"), "write", domain, path, kind,
                        value], env=self.env, check=True, timeout=10)

    def start(self, program, name, widget, env=None):
        p = gui_test.Program([os.path.join(ARGS.bin, program)], env or self.env,
                             os.path.join(self.work, "errors.txt"))
        self.programs.append(p)
        d = tvdriver.Driver.connect(timeout=20, name=name)
        self.drivers.append(d)
        d.wait_for_widget(widget, timeout=15)
        return p, d

    def key(self, *keys):
        gui_test.xdotool(self.display, "key", *keys)

    def caps_on(self):
        """Whether the X server's caps lock is on: bit 0 of the core keyboard's indicators."""
        x11 = ctypes.cdll.LoadLibrary(ctypes.util.find_library("X11"))
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XOpenDisplay.argtypes = [ctypes.c_char_p]
        x11.XkbGetIndicatorState.argtypes = [ctypes.c_void_p, ctypes.c_uint,
                                             ctypes.POINTER(ctypes.c_uint)]
        x11.XCloseDisplay.argtypes = [ctypes.c_void_p]
        connection = x11.XOpenDisplay(self.display.name.encode())
        state = ctypes.c_uint(0)
        try:
            x11.XkbGetIndicatorState(connection, 0x100, ctypes.byref(state))
        finally:
            x11.XCloseDisplay(connection)
        return bool(state.value & 1)

    def caps(self, on):
        if self.caps_on() != on:
            self.key("Caps_Lock")

    def window(self, title, timeout=10):
        """The X window of that title, also inside a window manager's frame; None after
        `timeout`."""
        deadline = time.monotonic() + timeout
        while True:
            run = subprocess.run(["xdotool", "search", "--onlyvisible", "--name",
                                  "^%s$" % title], env=gui_test.x_env(self.display),
                                 capture_output=True, text=True, timeout=20)
            if run.stdout.split():
                return int(run.stdout.split()[0])
            if time.monotonic() >= deadline:
                return None
            time.sleep(0.1)

    def focus(self, title):
        window = self.window(title)
        self.assertIsNotNone(window, title)
        gui_test.xdotool(self.display, "windowactivate", "--sync", window)
        # SDL learns the modifier state from keyboard input.
        self.key("shift")
        return window

    def type_into_field(self, d, title, path, text):
        """Clicks the field at `path` in the window titled `title` (which takes the keyboard
        first, so that the editor it opens keeps it), replaces the inline editor's text with
        `text` and presses Return."""
        self.focus(title)
        self.click(self.centre(d.widget_info(path)))
        editor = self.window("Inline Editor", timeout=5)
        self.assertIsNotNone(editor, path)
        # Mapped is not yet focused: the keys must reach the editor, not the field under it
        # (where Return would open the editor again).
        time.sleep(0.2)
        gui_test.xdotool(self.display, "windowfocus", "--sync", editor)
        self.key("ctrl+a")
        gui_test.xdotool(self.display, "type", "--delay", "30", text)
        self.key("Return")
        d.wait_until(lambda: self.window("Inline Editor", 0) is None, timeout=5)

    def centre(self, info):
        return (int(info["screenX"]) + int(info["width"]) // 2,
                int(info["screenY"]) + int(info["height"]) // 2)

    def body(self, info):
        """A point on the window itself, below its label and above its bottom handle."""
        return (int(info["screenX"]) + int(info["width"]) // 2,
                int(info["screenY"]) + int(info["height"]) - 6)

    def drag(self, start, end, modifiers=()):
        for m in modifiers:
            gui_test.xdotool(self.display, "keydown", m)
        gui_test.xdotool(self.display, "mousemove", start[0], start[1], "sleep", "0.05",
                         "mousedown", 1)
        if end != start:
            steps = 4
            for i in range(1, steps + 1):
                x = start[0] + (end[0] - start[0]) * i // steps
                y = start[1] + (end[1] - start[1]) * i // steps
                gui_test.xdotool(self.display, "mousemove", x, y, "sleep", "0.05")
        time.sleep(0.1)
        gui_test.xdotool(self.display, "mouseup", 1)
        for m in reversed(modifiers):
            gui_test.xdotool(self.display, "keyup", m)
        time.sleep(0.1)

    def click(self, point, modifiers=()):
        time.sleep(0.15)
        self.drag(point, point, modifiers)

    def wait_text(self, d, path, expected, key="text", timeout=5):
        """Waits until the widget's `key` is `expected` (a text or a test on it); the last
        value."""
        check = expected if callable(expected) else (lambda text: text == expected)
        last = [None]

        def ready():
            try:
                last[0] = d.widget_info(path)[key]
            except tvdriver.RequestError:
                return False
            return check(last[0])
        try:
            d.wait_until(ready, timeout=timeout)
        except tvdriver.DriverError:
            pass
        self.assertTrue(check(last[0]), "%s %r, wanted %r" % (path, last[0], expected))
        return last[0]

    def readout(self, d, expected, timeout=5):
        return self.wait_text(d, READOUT, expected, timeout=timeout)

    def rect(self, d, path):
        info = d.widget_info(path)
        return tuple(int(info[k]) for k in ("x", "y", "width", "height"))

    def screenshot(self, d, name):
        path = os.path.join(self.work, name + ".png")
        d.call("appAutomationRequest", req="SaveScreenShot|" + path)
        return png_reader.read_png(path)

    # ---- the gallery

    def test_without_the_setting_caps_lock_does_nothing(self):
        p, d = self.start("tv-gallery", "APP:Gallery", PAGE + "|About Button")
        self.focus("Gallery")
        self.caps(True)
        self.assertTrue(self.caps_on())
        self.assertIsNone(self.window(READOUT_WINDOW, timeout=1))
        self.click(self.centre(d.widget_info(PAGE + "|About Button")))
        d.wait_for_widget("About Gallery|Close Button", timeout=10)

    def test_the_gallery_is_designed_with_mouse_and_keys(self):
        self.setting("com.tavorin", "RuntimeDesignEnable", "-bool", "true")
        p, d = self.start("tv-gallery", "APP:Gallery", PAGE + "|About Button")
        self.focus("Gallery")
        self.caps(True)
        self.assertIsNotNone(self.window(READOUT_WINDOW, timeout=10))
        self.readout(d, "No windows selected")

        # A click selects and reaches no widget: the About box stays shut.
        button = PAGE + "|About Button"
        x, y, w, h = self.rect(d, button)
        # The deepest window under the mouse is the button's label; "P" selects its parent.
        self.click(self.centre(d.widget_info(button)))
        self.readout(d, "About Button Label Text [0,0 100x14]")
        self.key("p")
        self.readout(d, "About Button [%d,%d %dx%d]" % (x, y, w, h))
        self.assertIsNone(self.window("About Gallery", timeout=1))

        # Drag it; then a Shift-drag of its right handle makes the width a multiple of 10.
        cx, cy = self.body(d.widget_info(button))
        self.drag((cx, cy), (cx + 30, cy + 20))
        self.assertEqual((x + 30, y + 20, w, h), self.rect(d, button))
        info = d.widget_info(button)
        right = int(info["screenX"]) + w - 2
        self.drag((right, cy + 20), (right + 17, cy + 20), ("shift",))
        self.assertEqual((x + 30, y + 20, w + 20, h), self.rect(d, button))

        # Ctrl-click adds a window; the selection boxes are on the frame's pixels.
        name = PAGE + "|Name Edit"
        self.click(self.centre(d.widget_info(name)), ("ctrl",))
        self.readout(d, lambda t: t.startswith("2 windows ["))
        # Ctrl-click on a selected window without a drag takes it out again, and back in.
        self.click(self.centre(d.widget_info(name)), ("ctrl",))
        self.readout(d, lambda t: t.startswith("About Button ["))
        self.click(self.centre(d.widget_info(name)), ("ctrl",))
        self.readout(d, lambda t: t.startswith("2 windows ["))
        time.sleep(0.2)
        shot = self.screenshot(d, "selected")
        for path in (button, name):
            bx, by, bw, bh = self.rect(d, path)
            self.assertEqual(YELLOW, shot.pixel(bx - 1, by - 1)[:3], path)
            self.assertEqual(YELLOW, shot.pixel(bx + bw, by + bh)[:3], path)

        # Undo walks back through every press: the clicks, the resize, then the move.
        seen = []
        for _ in range(12):
            self.key("ctrl+z")
            time.sleep(0.1)
            seen.append(self.rect(d, button))
            if seen[-1] == (x, y, w, h):
                break
        self.assertEqual([(x + 30, y + 20, w, h), (x, y, w, h)], seen[-2:], seen)
        self.key("ctrl+shift+z")
        d.wait_until(lambda: self.rect(d, button) == (x + 30, y + 20, w, h), timeout=5)
        self.key("ctrl+z")

        # Space two edits vertically by a typed number; a bad number changes nothing.
        number = PAGE + "|Number Edit"
        self.click(self.centre(d.widget_info(name)))
        self.click(self.centre(d.widget_info(number)), ("shift",))
        before = self.rect(d, number)
        self.key("s", "y")
        time.sleep(0.5)
        gui_test.xdotool(self.display, "type", "abc")
        self.key("Return")
        time.sleep(0.3)
        self.assertEqual(before, self.rect(d, number))
        self.key("s", "y")
        time.sleep(0.5)
        gui_test.xdotool(self.display, "type", "10")
        self.key("Return")
        nx, ny, nw, nh = self.rect(d, name)
        d.wait_until(lambda: self.rect(d, number)[1] == ny + nh + 10, timeout=5)
        self.readout(d, "Spaced windows vertically by 10 pixels")

        # The Alt rubber band selects the page's children it touches.
        lx, ly, lw, lh = self.rect(d, PAGE + "|Left Label")
        page = d.widget_info(PAGE)
        origin = (int(page["screenX"]), int(page["screenY"]))
        self.drag((origin[0] + 4, origin[1] + ly - 4),
                  (origin[0] + lx + 40, origin[1] + ly + 45), ("alt",))
        self.readout(d, lambda t: t.startswith("3 windows ["))

        # The right-click menu lists the windows under the mouse, nested as in the tree; its
        # first letters open "Gallery Main Window", "Gallery Page" and choose "Left Label".
        label = PAGE + "|Left Label"
        point = self.centre(d.widget_info(label))
        time.sleep(0.15)
        gui_test.xdotool(self.display, "mousemove", point[0], point[1], "click", 3)
        self.assertIsNotNone(self.window("Popup Menu", timeout=5))
        for letter in "ggl":
            self.key(letter)
            time.sleep(0.1)
        self.readout(d, "Left Label [%d,%d %dx%d]" % self.rect(d, label))

        # Off again: the readout goes and the widgets take the mouse again.
        self.caps(False)
        d.wait_until(lambda: self.window(READOUT_WINDOW, 0) is None,
                     timeout=10)
        self.click(self.centre(d.widget_info(button)))
        d.wait_for_widget("About Gallery|Close Button", timeout=10)
        output = "\n".join(p.lines)
        self.assertNotIn("edited ", output)

    # ---- the updater: save to the layout file, see it on the next start, reload

    def test_the_updater_layout_is_saved_and_shown_on_the_next_start(self):
        site = Site({})
        self.addCleanup(site.stop)
        site.pages["/products/versions/versions.txt"] = b""
        override = os.path.join(self.work, "override")
        os.makedirs(os.path.join(override, "UI", "Layout"))
        self.setting("com.tavorin", "RuntimeDesignEnable", "-bool", "true")
        self.setting("com.tavorin", "ResourceOverridePath.Updater", "-string", override)
        env = dict(self.env, TV_UPDATE_HOST=site.host, TV_WEB_HOST=site.host)
        close = UPDATER + "|Close Button"
        p, d = self.start("tavorin-updater", "APP:Updater", close, env)
        x, y, w, h = self.rect(d, close)
        window = self.focus("Tavorin Updater")
        self.caps(True)
        self.assertIsNotNone(self.window(READOUT_WINDOW, timeout=10))
        # The button's label covers it: "1" makes the label unselectable, so that the press
        # takes the button.
        cx, cy = self.centre(d.widget_info(close))
        self.click((cx, cy))
        self.key("1")
        self.readout(d, "Toggled no-select state for selected windows")
        self.click((cx, cy))
        self.readout(d, "Close Button [%d,%d %dx%d]" % (x, y, w, h))
        self.drag((cx, cy), (cx - 20, cy - 10))
        self.assertEqual((x - 20, y - 10, w, h), self.rect(d, close))
        self.readout(d, "Close Button [%d,%d %dx%d]" % (x - 20, y - 10, w, h))
        self.key("shift+s")
        self.readout(d, "Saved layout to MainWindow.layout")
        with open(os.path.join(override, "UI", "Layout", "MainWindow.layout")) as f:
            self.assertIn('Name="Close Button" X="%d" Y="%d"' % (x - 20, y - 10), f.read())
        self.key("Left", "Left")
        d.wait_until(lambda: self.rect(d, close)[0] == x - 22, timeout=5)
        # Reloading twice is harmless, and SDL can miss a Ctrl that xdotool pressed right after
        # the arrows (its modifier state follows the keyboard focus): ask again if it did.
        for attempt in range(3):
            self.key("ctrl+l")
            try:
                self.readout(d, "Loaded layout from MainWindow.layout")
                break
            except AssertionError:
                if attempt == 2:
                    raise
        self.assertEqual((x - 20, y - 10, w, h), self.rect(d, close))
        self.caps(False)
        gui_test.request_close(self.display, window)
        self.assertIsNotNone(p.wait(15))

        # A fresh start reads the saved file from the override folder.
        p, d = self.start("tavorin-updater", "APP:Updater", close, env)
        self.assertEqual((x - 20, y - 10, w, h), self.rect(d, close))


def main(argv, test_class=None):
    """Runs the live design tests, or, for a script whose `test_class` builds on them, only the
    tests that class defines itself; --bin and --module name the programs."""
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", required=True)
    parser.add_argument("--module", required=True)
    ARGS, rest = parser.parse_known_args(argv)
    if test_class:
        own = sorted(name for name in vars(test_class) if name.startswith("test"))
        sys.modules["__main__"].load_tests = lambda loader, tests, pattern: unittest.TestSuite(
            test_class(name) for name in own)
    return gui_test.run_tests([test_class or Design], rest, wm_config=OPENBOX_RC)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
