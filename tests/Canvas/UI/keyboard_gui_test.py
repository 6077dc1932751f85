#!/usr/bin/env python3
"""The keyboard as a user has it, under a window manager (openbox) on a private display: Tab
walks the widgets with a visible ring around the focused one, Return and Space press the
focused button or link, and Return and Escape press a window's default and cancel buttons. One
session with the updater against a loopback site, one with the gallery; keys come from xdotool,
what happened is read through the test bridge (tools/tvdriver.py) and the screen. Exits 77
(skipped) without a display. Every wait is bounded."""

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
from loopback_site import Site  # noqa: E402

tvdriver = gui_test.load_driver()
ARGS = None
RING = (0x2A, 0x7B, 0xDE)  # the default theme's focus ring


def screen_pixel(display, x, y):
    return gui_test.screen_area(display, x, y, 1, 1)[0][0]


class Session(unittest.TestCase):
    display = None

    def setUp(self):
        self.work = tempfile.mkdtemp(prefix="tv-keyboard.")
        self.env = dict(gui_test.x_env(self.display),
                        XDG_CONFIG_HOME=os.path.join(self.work, "config"),
                        XDG_DATA_HOME=os.path.join(self.work, "data"),
                        TV_TEST_AUTOMATION_MODULE=ARGS.module, SDL_AUDIODRIVER="dummy")
        self.program = None
        self.driver = None

    def tearDown(self):
        if self.driver:
            self.driver.close()
        if self.program:
            self.program.kill()
        shutil.rmtree(self.work, ignore_errors=True)

    def start(self, command, name):
        self.program = gui_test.Program(command, self.env, os.path.join(self.work, "errors"))
        self.driver = tvdriver.Driver.connect(timeout=20, name=name,
                                              pid=self.program.process.pid)

    def activate(self, title, path):
        """Gives the keyboard to the program's window titled `title` once the widget `path`
        shows."""
        self.driver.wait_for_widget(path, timeout=15)
        found = subprocess.run(["timeout", "10", "xdotool", "search", "--sync", "--onlyvisible",
                                "--name", "^%s$" % title], env=gui_test.x_env(self.display),
                               capture_output=True, text=True).stdout.split()
        self.assertTrue(found, "no window %s" % title)
        try:
            gui_test.xdotool(self.display, "windowactivate", "--sync", found[0])
        except AssertionError:
            # No window manager came up in time on a busy machine: focus the window directly.
            gui_test.xdotool(self.display, "windowfocus", "--sync", found[0])

    def eventually(self, condition, timeout=5):
        """True once `condition()` holds, false after `timeout` seconds."""
        try:
            return bool(self.driver.wait_until(condition, timeout=timeout))
        except tvdriver.DriverError:
            return False

    def key(self, *keys):
        gui_test.xdotool(self.display, "key", "--delay", "60", *keys)

    def focused(self, path):
        return self.driver.widget_info(path)["focus"] == "true"

    def tab_to(self, path, limit=40):
        """Presses Tab until `path` has the focus; fails after `limit` presses."""
        for _ in range(limit):
            self.key("Tab")
            if self.eventually(lambda: self.focused(path), timeout=0.5):
                return
        self.fail("Tab never reached %s" % path)

    def ring_around(self, path):
        """True once the focus ring shows on the screen just left of the widget's middle."""
        info = self.driver.widget_info(path)
        x = int(info["screenX"]) - 3
        y = int(info["screenY"]) + int(info["height"]) // 2
        return self.eventually(lambda: screen_pixel(self.display, x, y) == RING)


class UpdaterKeyboard(Session):
    MAIN = "Updater Main Window"
    ROW = MAIN + "|Updates Panel|Updates ScrollView|Program Item: %s|Update Link"

    def test_tab_reaches_the_update_links_return_opens_one_escape_closes(self):
        site = Site({})
        self.addCleanup(site.stop)
        site.pages["/products/versions/versions.txt"] = "".join(
            "%s|%s|%s\n" % (name, "9.0", site.url("/products/%s/" % slug))
            for name, slug in (("Alpha Mixer", "alpha"), ("Gamma Reverb", "gamma"))).encode()
        for name in ("Alpha Mixer", "Gamma Reverb"):
            subprocess.run([os.path.join(ARGS.bin, "tvdefaults"), "write", "com.tavorin.updater",
                            "InstalledProducts/%s/CurrentVersion" % name, "1.0"],
                           env=self.env, check=True, timeout=10)
        opened = os.path.join(self.work, "opened.txt")
        stand_in = os.path.join(self.work, "path")
        os.makedirs(stand_in)
        with open(os.path.join(stand_in, "xdg-open"), "w") as f:
            f.write('#!/bin/sh\nprintf "%%s\\n" "$1" >> "%s"\n' % opened)
        os.chmod(os.path.join(stand_in, "xdg-open"), 0o755)
        self.env.update(TV_UPDATE_HOST=site.host, TV_WEB_HOST=site.host,
                        PATH=stand_in + os.pathsep + os.environ.get("PATH", ""))
        self.start([os.path.join(ARGS.bin, "tavorin-updater")], "APP:Updater")
        self.activate("Tavorin Updater", self.MAIN + "|Close Button")

        self.tab_to(self.ROW % "Gamma Reverb")
        self.assertTrue(self.ring_around(self.ROW % "Gamma Reverb"), "no focus ring on the link")
        self.key("shift+Tab")
        self.assertTrue(self.eventually(lambda: self.focused(self.ROW % "Alpha Mixer")))
        self.key("Tab", "Return")
        deadline = time.monotonic() + 10
        while not os.path.exists(opened) and time.monotonic() < deadline:
            time.sleep(0.05)
        with open(opened) as f:
            self.assertEqual(site.url("/products/gamma/"), f.read().strip())

        # Escape presses Close, whatever has the focus.
        self.key("Escape")
        self.assertEqual(0, self.program.wait(10))


class GalleryKeyboard(Session):
    PAGE = "Gallery Main Window|Gallery Page"

    def about_open(self):
        return bool(subprocess.run(["xdotool", "search", "--onlyvisible", "--name",
                                    "^About Gallery$"], env=gui_test.x_env(self.display),
                                   capture_output=True, text=True).stdout.split())

    def test_tab_return_and_escape_in_the_gallery_and_its_about_box(self):
        self.start([ARGS.gallery], "APP:Gallery")
        self.activate("Gallery", self.PAGE + "|About Button")
        self.tab_to(self.PAGE + "|Check Box")
        self.assertTrue(self.ring_around(self.PAGE + "|Check Box"), "no focus ring")
        self.key("space")
        self.assertTrue(self.program.wait_for_line("toggled Check Box: on", 10))
        self.key("shift+Tab")
        self.assertTrue(self.eventually(lambda: self.focused(self.PAGE + "|About Button")))

        for close_key in ("Escape", "Return"):
            self.key("Return")
            self.assertTrue(self.eventually(self.about_open), "no About box")
            self.activate("About Gallery", "About Gallery|Close Button")
            self.key(close_key)
            self.assertTrue(self.eventually(lambda: not self.about_open()),
                            "%s left the About box open" % close_key)
            self.activate("Gallery", self.PAGE + "|About Button")
        self.assertEqual(2, self.program.output(0).count("clicked About Button"))


def main():
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", required=True)
    parser.add_argument("--gallery", required=True)
    parser.add_argument("--module", required=True)
    ARGS, rest = parser.parse_known_args()
    return gui_test.run_tests([UpdaterKeyboard, GalleryKeyboard], rest)


if __name__ == "__main__":
    sys.exit(main())
