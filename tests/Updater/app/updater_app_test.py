#!/usr/bin/env python3
"""The updater end to end: real runs of tavorin-updater on an X display (its own Xvfb unless
DISPLAY is set) against a loopback HTTP site served from this process, with the settings in a
temp folder seeded through tvdefaults and the UI read through the test bridge (tvdriver.py).
Each state reached is proven on the screen: the program's X window at the frame's place is
grabbed and compared pixel for pixel with the frame's own bitmap, which the program writes on
the driver's request; both pictures, and a diff picture when they differ, are kept under
<artifacts>/updater. Exits 77 (skipped) without a display. Every wait is bounded."""

import argparse
import os
import plistlib
import re
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
import xlib_client  # noqa: E402
from loopback_site import Site  # noqa: E402

tvdriver = gui_test.load_driver()

ARGS = None
ARTIFACTS = None
SOURCE = gui_test.SOURCE
DOMAIN = "com.tavorin.updater"
MAIN = "Updater Main Window"
GEOMETRY = "HostWindowGeometry/Updater Host Window.Geometry"
ERROR_TEXT = ("An error occurred while checking for updates.  Please check your network "
              "connection or visit 127.0.0.1 to download all of the latest Tavorin updates.")


def closed_port():
    s = socket.socket()
    s.bind(("127.0.0.1", 0))
    port = s.getsockname()[1]
    s.close()
    return port


def versions(site, lines):
    return "".join("%s|%s|%s\n" % (name, version, site.url("/products/" + slug + "/"))
                   for name, version, slug in lines).encode()


def banner_page(site, alt):
    return ('<html><body><a href="%s"><img src="%s" width="446" height="64" alt="%s"></a>'
            '</body></html>' % (site.url("/products/"), site.url("/updater/banner.png"),
                                alt)).encode()


def banner_png():
    with open(os.path.join(SOURCE, "demo", "site", "updater", "banner.png"), "rb") as f:
        return f.read()


class UpdaterRuns(unittest.TestCase):
    """Each test starts the program with fresh settings against its own site."""

    display = None

    @classmethod
    def setUpClass(cls):
        os.makedirs(ARTIFACTS, exist_ok=True)
        # Frames are 8 bits a channel: only a 24-bit screen can show them without loss.
        root = subprocess.run(["xwininfo", "-root"],
                              env=dict(os.environ, DISPLAY=cls.display.name),
                              stdout=subprocess.PIPE, text=True, timeout=10).stdout
        if "Depth: 24" not in root:
            raise RuntimeError("display %s is not 24-bit: the screen can't be compared with "
                               "the frames exactly" % cls.display.name)

    def setUp(self):
        self.work = tempfile.mkdtemp(prefix="tv-updater-e2e.")
        self.config = os.path.join(self.work, "config")
        self.opened = os.path.join(self.work, "opened.txt")
        stand_in = os.path.join(self.work, "path")
        os.makedirs(stand_in)
        # An xdg-open that records what it was asked to open.
        with open(os.path.join(stand_in, "xdg-open"), "w") as f:
            f.write('#!/bin/sh\nprintf "%%s\\n" "$1" >> "%s"\n' % self.opened)
        os.chmod(os.path.join(stand_in, "xdg-open"), 0o755)
        self.env = dict(os.environ, DISPLAY=self.display.name, XDG_CONFIG_HOME=self.config,
                        TV_TEST_AUTOMATION_MODULE=ARGS.module,
                        PATH=stand_in + os.pathsep + os.environ.get("PATH", ""))
        self.sites = []
        self.processes = []
        self.drivers = []

    def tearDown(self):
        for d in self.drivers:
            d.close()
        for p in self.processes:
            if p.poll() is None:
                p.kill()
                p.wait(10)
        self.kill_strays()
        for s in self.sites:
            s.stop()
        shutil.rmtree(self.work, ignore_errors=True)

    def kill_strays(self):
        """Ends visible copies started by a silent run, found by their settings folder."""
        for pid in os.listdir("/proc"):
            if not pid.isdigit():
                continue
            try:
                with open("/proc/%s/environ" % pid, "rb") as f:
                    if ("XDG_CONFIG_HOME=" + self.config).encode() + b"\0" in f.read():
                        os.kill(int(pid), 9)
            except OSError:
                pass

    # ---- helpers

    def site(self, pages, stall=(), hold=()):
        s = Site(pages, stall, hold)
        self.sites.append(s)
        return s

    def install(self, name, version):
        subprocess.run([os.path.join(ARGS.bin, "tvdefaults"), "write", DOMAIN,
                        "InstalledProducts/%s/CurrentVersion" % name, version],
                       env=self.env, check=True, timeout=10)

    def settings(self):
        path = os.path.join(self.config, "tavorin", DOMAIN + ".plist")
        out = {}
        for candidate in [path] + [os.path.join(self.config, "tavorin", "ByHost", n)
                                   for n in os.listdir(os.path.join(self.config, "tavorin",
                                                                    "ByHost"))
                                   if n.startswith(DOMAIN) and n.endswith(".plist")] \
                if os.path.isdir(os.path.join(self.config, "tavorin", "ByHost")) else [path]:
            if os.path.exists(candidate):
                with open(candidate, "rb") as f:
                    out.update(plistlib.load(f))
        return out

    def start(self, update_host, web_host=None, *args):
        env = dict(self.env, TV_UPDATE_HOST=update_host, TV_WEB_HOST=web_host or update_host)
        p = subprocess.Popen([os.path.join(ARGS.bin, "tavorin-updater")] + list(args), env=env,
                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.processes.append(p)
        return p

    def driver(self, p):
        """The bridge of the program `p` (a process, or its id), and of no other one that may
        run on the machine."""
        # A sanitizer build on a busy machine may take this long to start its bridge.
        d = tvdriver.Driver.connect(timeout=20, name="APP:Updater",
                                    pid=getattr(p, "pid", p))
        self.drivers.append(d)
        return d

    def wait_for_file(self, path, timeout=10):
        """The text of the file at `path` once it exists."""
        deadline = time.monotonic() + timeout
        while not os.path.exists(path) and time.monotonic() < deadline:
            time.sleep(0.05)
        with open(path) as f:
            return f.read()

    def stand_in_path(self, name, script):
        """A folder holding only the program `name` running `script`, to stand alone on
        PATH."""
        folder = os.path.join(self.work, "only-" + name)
        os.makedirs(folder)
        with open(os.path.join(folder, name), "w") as f:
            f.write("#!/bin/sh\n" + script)
        os.chmod(os.path.join(folder, name), 0o755)
        return folder

    # ---- what reached the screen

    def mapped_windows(self, p):
        """The program's mapped X windows: id -> (x, y, width, height) on the screen."""
        # A search that finds nothing fails, so its status is not looked at.
        search = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid",
                                 str(getattr(p, "pid", p))],
                                env=gui_test.x_env(self.display), stdout=subprocess.PIPE,
                                stderr=subprocess.DEVNULL, text=True, timeout=10)
        out = {}
        for window in search.stdout.split():
            # xwininfo, as xdotool counts a window manager's frame twice in the position.
            info = subprocess.run(["xwininfo", "-id", window], env=gui_test.x_env(self.display),
                                  stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                                  timeout=10).stdout
            values = dict(re.findall(r"^\s*(Absolute upper-left [XY]|Width|Height):\s+(-?\d+)",
                                     info, re.MULTILINE))
            if len(values) == 4:  # else gone since the search
                out[int(window)] = tuple(int(values[k]) for k in (
                    "Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        return out

    def x_window_of(self, d, p, widget):
        """The one mapped X window of the program that stands exactly where the frame of the
        top-level window `widget` is on the screen."""
        info = d.widget_info(widget)
        place = (int(info["screenX"]), int(info["screenY"]), int(info["width"]),
                 int(info["height"]))

        def found():
            windows = self.mapped_windows(p)
            return windows, [w for w, rect in windows.items() if rect == place]

        # The window manager shows its frame, and so the window, a moment after the program
        # showed the window.
        deadline = time.monotonic() + 5
        windows, matches = found()
        while not matches and time.monotonic() < deadline:
            time.sleep(0.05)
            windows, matches = found()
        self.assertEqual(1, len(matches), "no single window at %s among %s" % (place, windows))
        return matches[0]

    def save_frame(self, d, widget, path):
        """Has the program write the bitmap of `widget`'s frame. The main window's path goes
        through the application request alone, which the program answers with the frame that
        is on the screen (the connecting window's or the main window's)."""
        request = "SaveScreenShot|" + path + ("" if widget == MAIN else "|" + widget)
        result = d.call("appAutomationRequest", req=request)
        self.assertEqual(("true", path), (result.get("Handled"), result.get("path")))

    def capture(self, d, p, name, widget=MAIN):
        """The frame's bitmap and the X window's pixels, read back from the two PNG files kept
        as artefacts. A frame that changed while the screen was grabbed is grabbed again."""
        frame_file = os.path.join(ARTIFACTS, name + "-frame.png")
        screen_file = os.path.join(ARTIFACTS, name + "-screen.png")
        again_file = os.path.join(self.work, name + "-frame-again.png")
        for _ in range(5):
            window = self.x_window_of(d, p, widget)
            self.save_frame(d, widget, frame_file)
            # 24-bit Xvfb: the grab has no alpha, like the frame's bitmap.
            subprocess.run(["import", "-window", str(window), "PNG24:" + screen_file],
                           env=self.env, check=True, timeout=20, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
            self.save_frame(d, widget, again_file)
            with open(frame_file, "rb") as a, open(again_file, "rb") as b:
                if a.read() == b.read():
                    break
        else:
            self.fail("the frame of %s kept changing while its window was grabbed" % widget)
        frame = png_reader.read_png(frame_file)
        screen = png_reader.read_png(screen_file)
        # Both are opaque pictures, so all four channels must agree.
        self.assertTrue(frame.opaque() and screen.opaque())
        return frame, screen, window

    def difference(self, name, frame, screen):
        """Compares; a difference keeps its picture as <name>-diff.png."""
        self.assertEqual((frame.width, frame.height), (screen.width, screen.height),
                         "the window and the frame differ in size")
        diff = png_reader.compare(frame, screen)
        if diff.count:
            png_reader.write_png(os.path.join(ARTIFACTS, name + "-diff.png"), diff.picture)
        return diff

    def assert_on_screen(self, d, p, name, widget=MAIN):
        """Proves that the program's window shows exactly what its frame painted."""
        frame, screen, window = self.capture(d, p, name, widget)
        diff = self.difference(name, frame, screen)
        self.assertEqual(0, diff.count, "%s: %s (see %s-*.png in %s)" % (name, diff, name,
                                                                        ARTIFACTS))
        return frame, window

    def click(self, d, path):
        gui_test.click_widget(self.display, d, path)

    def move_pointer(self, x, y):
        """As a mouse moves it, through XTEST. Outside its own windows the program learns where
        the pointer is from the server's raw motion events, which a warp of the pointer
        (`xdotool mousemove`) doesn't make."""
        with xlib_client.Connection(self.display.name) as connection:
            connection.move_pointer(x, y)

    def wait_exit(self, p, timeout=10):
        return p.wait(timeout)

    def main_shown(self, d, p):
        """The Close button's info once the main window is on the screen, framed by the window
        manager, so that clicks reach it."""
        info = d.wait_for_widget(MAIN + "|Close Button", timeout=10)
        self.x_window_of(d, p, MAIN)
        return info

    def standard_site(self):
        site = self.site({})
        site.pages["/products/versions/versions.txt"] = versions(site, [
            ("Alpha Mixer", "3.2", "alpha-mixer"), ("Beta Synth", "2.0", "beta-synth"),
            ("Gamma Reverb", "1.10", "gamma-reverb")])
        return site

    # ---- the result states

    def test_updates_are_listed_with_their_versions_and_links(self):
        site = self.standard_site()
        self.install("Alpha Mixer", "3.0")
        self.install("Beta Synth", "2.0")
        self.install("Gamma Reverb", "1.05")
        started = int(time.time())
        p = self.start(site.host)
        d = self.driver(p)
        self.main_shown(d, p)
        row = MAIN + "|Updates Panel|Updates ScrollView|Program Item: %s"
        self.assertEqual("Alpha Mixer", d.widget_info(row % "Alpha Mixer" +
                                                      "|Product Name Text")["text"])
        self.assertEqual("3.0", d.widget_info(row % "Alpha Mixer" +
                                              "|Installed Version Text")["text"])
        self.assertEqual("3.2", d.widget_info(row % "Alpha Mixer" +
                                              "|Available Version Text")["text"])
        self.assertEqual("1.10", d.widget_info(row % "Gamma Reverb" +
                                               "|Available Version Text")["text"])
        with self.assertRaises(tvdriver.RequestError):
            d.widget_info(row % "Beta Synth")
        self.assertEqual("true", d.widget_info(MAIN + "|Product Name Header")["visible"])
        with self.assertRaises(tvdriver.RequestError):
            d.widget_info(MAIN + "|No Updates Text")
        _, window = self.assert_on_screen(d, p, "updates-listed")
        # The connecting window is gone once the list shows.
        self.assertEqual([window], list(self.mapped_windows(p)))

        # A click on "Update" opens the row's page through xdg-open.
        self.click(d, row % "Gamma Reverb" + "|Update Link")
        self.assertEqual(site.url("/products/gamma-reverb/") + "\n",
                         self.wait_for_file(self.opened))

        self.assertIsNone(p.poll())

        # Close ends the program with status 0; the settings hold the check and the place.
        self.click(d, MAIN + "|Close Button")
        self.assertEqual(0, self.wait_exit(p))
        values = self.settings()
        self.assertEqual("", values.get("LastResult"))
        # Seconds since 1970, taken when the check started.
        self.assertLessEqual(started, values["LastUpdateCheckTime"])
        self.assertLessEqual(values["LastUpdateCheckTime"], time.time())
        # Settings keep "/" inside flat key names.
        self.assertIn(GEOMETRY, values)

    def test_links_open_through_gio_or_show_their_address(self):
        site = self.standard_site()
        self.install("Alpha Mixer", "3.0")
        link = MAIN + "|Updates Panel|Updates ScrollView|Program Item: Alpha Mixer|Update Link"
        # Without the desktop utilities, GLib's opener serves.
        self.env["PATH"] = self.stand_in_path("gio", 'printf "%%s\\n" "$*" >> "%s"\n'
                                              % self.opened)
        p = self.start(site.host)
        d = self.driver(p)
        self.main_shown(d, p)
        self.click(d, link)
        self.assertEqual("open %s\n" % site.url("/products/alpha-mixer/"),
                         self.wait_for_file(self.opened))
        # Ctrl+Q, the Quit of this host, in the main window ends the run as Close does.
        window = self.x_window_of(d, p, MAIN)
        gui_test.xdotool(self.display, "windowfocus", "--sync", window, "key", "ctrl+q")
        self.assertEqual(0, self.wait_exit(p))
        self.assertIn(GEOMETRY, self.settings())

        # With no opener at all, a message box gives the address instead, and the program
        # runs on once it is dismissed.
        subprocess.run([os.path.join(ARGS.bin, "tvdefaults"), "delete", DOMAIN, GEOMETRY],
                       env=self.env, check=True, timeout=10)
        self.env["PATH"] = self.stand_in_path("true", "exit 0\n")
        p = self.start(site.host)
        d = self.driver(p)
        self.main_shown(d, p)
        self.click(d, link)
        box = gui_test.wait_for_window(self.display, "Cannot Open Link", timeout=10)
        self.assertIsNotNone(box, "no message box")
        gui_test.xdotool(self.display, "windowfocus", "--sync", box, "key", "Return")
        d.wait_until(lambda: not [w for w, n in gui_test.top_windows(self.display)
                                  if n == "Cannot Open Link"], timeout=10)
        self.assertIsNone(p.poll())
        # The main window's close box ends the program like Close.
        self.close_box(d, p)
        self.assertEqual(0, self.wait_exit(p))
        values = self.settings()
        self.assertEqual("", values.get("LastResult"))
        self.assertIn(GEOMETRY, values)

    def _visible_tip(self, d):
        """The tool tip's info while it shows; None otherwise."""
        info = d.widget_info("ToolTip")
        return info if info.get("visible") == "true" else None

    def test_no_updates_shows_the_line_and_hides_the_headers(self):
        site = self.standard_site()
        self.install("Alpha Mixer", "3.2")
        p = self.start(site.host)
        d = self.driver(p)
        self.main_shown(d, p)
        info = d.wait_for_widget(MAIN + "|No Updates Text", timeout=5)
        self.assertEqual("No updates available.", info["text"])
        self.assertEqual("false", d.widget_info(MAIN + "|Product Name Header")["visible"])
        self.assertEqual("true", d.widget_info(MAIN + "|Information for user")["visible"])
        panel = d.widget_info(MAIN + "|Updates Panel")
        self.assertEqual(
            (int(panel["x"]) + int(panel["width"]) // 2 - int(info["width"]) // 2,
             int(panel["y"]) + int(panel["height"]) // 2 - int(info["height"]) // 2),
            (int(info["x"]), int(info["y"])))
        frame, window = self.assert_on_screen(d, p, "no-updates")

        # Pixels the frame never painted are caught: another client paints a 3 x 2 block into
        # the window, and the same comparison now finds exactly those six pixels.
        self.assertNotEqual((255, 0, 255, 255), frame.pixel(10, 20))
        with xlib_client.Connection(self.display.name) as x:
            x.fill_rectangle(window, 10, 20, 3, 2, 0xFF00FF)
        frame, screen, _ = self.capture(d, p, "painted-over")
        diff = self.difference("painted-over", frame, screen)
        self.assertEqual((6, (10, 20), (10, 20, 12, 21)), (diff.count, diff.first, diff.bounds))
        self.assertEqual((255, 0, 255, 255), screen.pixel(12, 21))
        self.assertTrue(os.path.exists(os.path.join(ARTIFACTS, "painted-over-diff.png")))

        self.click(d, MAIN + "|Close Button")
        self.assertEqual(0, self.wait_exit(p))
        values = self.settings()
        self.assertEqual("", values.get("LastResult"))
        self.assertIn("LastUpdateCheckTime", values)

    def test_server_down_shows_the_fixed_message(self):
        self.install("Alpha Mixer", "3.0")
        host = "127.0.0.1:%d" % closed_port()
        # A refused connection ends only at the request's time-out, which is a minute unless
        # shortened.
        self.env["TV_REQUEST_TIMEOUT_MS"] = "1500"
        p = self.start(host)
        d = self.driver(p)
        self.main_shown(d, p)
        info = d.wait_for_widget(MAIN + "|No Updates Text", timeout=5)
        self.assertEqual(ERROR_TEXT, info["text"])
        self.assertEqual(446 * 2 // 3, int(info["width"]))
        self.assert_on_screen(d, p, "error")
        self.click(d, MAIN + "|Close Button")
        self.assertEqual(0, self.wait_exit(p))
        values = self.settings()
        self.assertNotEqual("", values.get("LastResult", ""))
        self.assertIn("LastUpdateCheckTime", values)

    def test_cancel_during_a_stalled_check_ends_without_a_main_window(self):
        site = self.site({}, stall=["/products/versions/versions.txt"])
        p = self.start(site.host)
        d = self.driver(p)
        d.wait_for_widget(MAIN + "|Cancel Button", timeout=10)
        _, window = self.assert_on_screen(d, p, "connecting")
        self.assertEqual([window], list(self.mapped_windows(p)))
        self.click(d, MAIN + "|Cancel Button")
        self.assertEqual(0, self.wait_exit(p))
        # A canceled check counts as a check but reports nothing.
        values = self.settings()
        self.assertIn("LastUpdateCheckTime", values)
        self.assertNotIn("LastResult", values)

    # ---- the close boxes

    def close_box(self, d, p, widget=MAIN):
        """Clicks the close box of the window whose frame holds `widget`, as a window manager
        passes that click on: WM_DELETE_WINDOW to the program, which decides what happens."""
        window = self.x_window_of(d, p, widget)
        gui_test.request_close(self.display, window)
        return window

    def test_connecting_close_box_quits(self):
        # With no menu bar, the connecting window's close box is the only way out while the
        # check runs: it quits, though the check goes on.
        site = self.standard_site()
        site.hold.add("/products/versions/versions.txt")
        self.install("Alpha Mixer", "3.0")
        p = self.start(site.host)
        d = self.driver(p)
        d.wait_for_widget(MAIN + "|Cancel Button", timeout=10)
        self.close_box(d, p)
        self.assertEqual(0, self.wait_exit(p))

    # ---- silent runs

    def test_silent_runs_show_nothing_or_start_the_visible_copy(self):
        site = self.standard_site()
        self.install("Alpha Mixer", "3.2")
        p = self.start(site.host, None, "-silent")
        self.assertEqual(0, self.wait_exit(p))
        self.assertIn("LastUpdateCheckTime", self.settings())
        listing = subprocess.run(["xdotool", "search", "--name", "Tavorin Updater"],
                                 env=self.env, stdout=subprocess.PIPE, text=True, timeout=10)
        self.assertEqual("", listing.stdout.strip())

        # With an update, the silent run starts the visible copy.
        self.install("Alpha Mixer", "3.0")
        p = self.start(site.host, None, "unknown", "-silent")
        self.assertEqual(0, self.wait_exit(p))
        copy = gui_test.process_with_environment("XDG_CONFIG_HOME=" + self.config, {p.pid})
        self.assertIsNotNone(copy, "the silent run started no visible copy")
        d = self.driver(copy)
        self.main_shown(d, copy)
        d.widget_info(MAIN + "|Updates Panel|Updates ScrollView|Program Item: Alpha Mixer")
        self.click(d, MAIN + "|Close Button")

    # ---- the list and the banner

    def test_many_updates_scroll_by_bar_and_keys_inside_the_fixed_window(self):
        site = self.site({})
        names = [("Product %02d" % i, "2.0", "p%02d" % i) for i in range(25)]
        site.pages["/products/versions/versions.txt"] = versions(site, names)
        for name, _, _ in names:
            self.install(name, "1.0")
        p = self.start(site.host)
        d = self.driver(p)
        self.main_shown(d, p)
        view_path = MAIN + "|Updates Panel|Updates ScrollView"
        row = view_path + "|Program Item: Product %02d"

        def shown_rows():
            return [i for i in range(25) if d.widget_info(row % i)["visible"] == "true"]

        # The window keeps its size; the rows that fit show, the rest wait below.
        _, _, _, height = self.mapped_windows(p)[self.x_window_of(d, p, MAIN)]
        self.assertEqual(358, height)
        view = d.widget_info(view_path)
        rows_in_view = -(-int(view["height"]) // 30)
        self.assertEqual(list(range(rows_in_view)), shown_rows())
        self.assertLess(rows_in_view, 25)

        # The bar is painted where it takes clicks: its thumb in the handle colour at the top
        # of the track, and the screen shows what the frame painted.
        bar = d.widget_info(view_path + "|Updates ScrollView Vertical ScrollBar")
        self.assertEqual("true", bar["visible"])
        frame, _ = self.assert_on_screen(d, p, "many-updates")
        x = int(bar["x"]) + int(bar["width"]) // 2
        y = int(bar["y"]) + 15 + 2 + 5
        self.assertEqual((0x7F, 0x7F, 0x7F, 255), frame.pixel(x, y))

        # The keys scroll: End shows the last rows, Page Up goes back a page, Home to the top.
        window = self.x_window_of(d, p, MAIN)
        gui_test.xdotool(self.display, "windowfocus", "--sync", window, "key", "End")
        d.wait_until(lambda: 24 in shown_rows(), timeout=5)
        self.assertNotIn(0, shown_rows())
        self.assert_on_screen(d, p, "many-updates-end")
        gui_test.xdotool(self.display, "key", "Prior")
        d.wait_until(lambda: 24 not in shown_rows(), timeout=5)
        gui_test.xdotool(self.display, "key", "Home")
        d.wait_until(lambda: shown_rows() == list(range(rows_in_view)), timeout=5)
        self.click(d, MAIN + "|Close Button")
        self.assertEqual(0, self.wait_exit(p))

    def check_banner(self, d, p, site):
        """The banner grows the window and carries its tool tip; a click opens its page."""
        banner = d.widget_info(MAIN + "|MessageButton")
        self.assertEqual(358, int(banner["y"]))
        self.assertEqual(64, int(banner["height"]))
        self.assertEqual(358 + 64, int(d.widget_info(MAIN)["height"]))
        self.assert_on_screen(d, p, "banner")

        # Resting on the banner brings its tip: a window of its own at the pointer, showing
        # what the tip's frame painted, gone again once the pointer leaves the program.
        self.assertFalse(self._visible_tip(d))
        x = int(banner["screenX"]) + int(banner["width"]) // 2
        y = int(banner["screenY"]) + int(banner["height"]) // 2
        self.move_pointer(x, y)
        tip = d.wait_until(lambda: self._visible_tip(d), timeout=5)
        self.assertEqual("Spring sale on every plug-in", tip["text"])
        self.assertEqual((x, y), (int(tip["screenX"]), int(tip["screenY"])))
        frame, tip_window = self.assert_on_screen(d, p, "tool-tip", "ToolTip")
        self.assertEqual((int(tip["width"]), int(tip["height"])), (frame.width, frame.height))
        # The main window lies under the tip: the tip is not drawn into its frame.
        main_window = self.x_window_of(d, p, MAIN)
        self.assertNotEqual(main_window, tip_window)
        self.move_pointer(2, 2)
        d.wait_until(lambda: not self._visible_tip(d), timeout=5)
        d.wait_until(lambda: tip_window not in self.mapped_windows(p), timeout=5)
        self.assert_on_screen(d, p, "banner-after-tip")

        self.click(d, MAIN + "|MessageButton")
        self.assertEqual(site.url("/products/") + "\n", self.wait_for_file(self.opened))

    def test_banner_and_window_geometry_across_runs(self):
        # The window is moved in the first run; every later one, with the banner growing the
        # window and a silent run in between, shows it at that same place and size, and the
        # settings keep the one rectangle.
        site = self.standard_site()
        site.pages["/updater/"] = banner_page(site, "Spring sale on every plug-in")
        site.pages["/updater/banner.png"] = banner_png()
        self.install("Alpha Mixer", "3.0")
        places = []
        saved = []
        for run in range(5):
            if run == 3:
                self.assertEqual(0, self.wait_exit(self.start(site.host, None, "-silent")))
                self.assertEqual(saved[-1], self.settings()[GEOMETRY])
                # Its visible copy ends unseen, saving nothing.
                self.kill_strays()
            p = self.start(site.host)
            d = self.driver(p)
            self.main_shown(d, p)
            d.wait_for_widget(MAIN + "|MessageButton", timeout=10)
            window = self.x_window_of(d, p, MAIN)
            if run == 0:
                self.check_banner(d, p, site)
                before = self.mapped_windows(p)[window]
                gui_test.xdotool(self.display, "windowmove", window, 37, 41)
                d.wait_until(lambda: self.mapped_windows(p)[window] != before, timeout=5)
                # The program learns of the move from the X server's event.
                d.wait_until(lambda: int(d.widget_info(MAIN)["screenX"]) !=
                             before[0], timeout=5)
            places.append(self.mapped_windows(p)[window])
            self.click(d, MAIN + "|Close Button")
            self.assertEqual(0, self.wait_exit(p))
            saved.append(self.settings()[GEOMETRY])
            d.close()
            self.drivers.remove(d)
        self.assertEqual([places[0]] * 5, places)
        self.assertEqual([saved[0]] * 5, saved)
        # The banner is not kept: the window's height is the list's and the banner's.
        self.assertEqual(358 + 64, places[0][3])


def main():
    global ARGS, ARTIFACTS
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", required=True)
    parser.add_argument("--module", required=True)
    parser.add_argument("--artifacts", required=True)
    ARGS, rest = parser.parse_known_args()
    ARTIFACTS = os.path.join(os.path.abspath(ARGS.artifacts), "updater")
    return gui_test.run_tests([UpdaterRuns], rest)


if __name__ == "__main__":
    sys.exit(main())
