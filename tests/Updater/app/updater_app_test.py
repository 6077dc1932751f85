#!/usr/bin/env python3
"""The updater end to end: real runs of tavorin-updater on an X display (its own Xvfb unless
DISPLAY is set) against a loopback HTTP site served from this process, with the settings in a
temp folder seeded through tvdefaults and the UI read through the test bridge (tvdriver.py).
Screenshots of each state are kept in the artifacts folder. Exits 77 (skipped) without a
display. Every wait is bounded."""

import argparse
import http.server
import importlib.util
import os
import plistlib
import shutil
import socket
import socketserver
import subprocess
import sys
import tempfile
import threading
import time
import unittest

ARGS = None
SKIP = 77
SOURCE = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))
DOMAIN = "com.tavorin.updater"
MAIN = "Updater Main Window"
ERROR_TEXT = ("An error occurred while checking for updates.  Please check your network "
              "connection or visit 127.0.0.1 to download all of the latest Tavorin updates.")


def load_driver():
    module_spec = importlib.util.spec_from_file_location(
        "tvdriver", os.path.join(SOURCE, "tools", "tvdriver.py"))
    module = importlib.util.module_from_spec(module_spec)
    module_spec.loader.exec_module(module)
    return module


tvdriver = load_driver()


sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "support"))
from xvfb_display import Display  # noqa: E402
class Site:
    """A loopback HTTP server over a dict of paths; a path in `stall` never answers until the
    server stops."""

    def __init__(self, pages, stall=()):
        site = self
        self.pages = dict(pages)
        self.stall = set(stall)
        self.release = threading.Event()

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                if self.path in site.stall:
                    site.release.wait(30)
                    return
                body = site.pages.get(self.path)
                if body is None:
                    self.send_error(404)
                    return
                self.send_response(200)
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *args):
                pass

        class Server(socketserver.ThreadingMixIn, http.server.HTTPServer):
            daemon_threads = True

        self.server = Server(("127.0.0.1", 0), Handler)
        self.port = self.server.server_address[1]
        self.host = "127.0.0.1:%d" % self.port
        self.thread = threading.Thread(target=self.server.serve_forever, daemon=True)
        self.thread.start()

    def url(self, path):
        return "http://%s%s" % (self.host, path)

    def stop(self):
        self.release.set()
        self.server.shutdown()
        self.server.server_close()


def closed_port():
    s = socket.socket()
    s.bind(("127.0.0.1", 0))
    port = s.getsockname()[1]
    s.close()
    return port


def versions(site, lines):
    return "".join("%s|%s|%s\n" % (name, version, site.url("/products/" + slug + "/"))
                   for name, version, slug in lines).encode()


def banner_page(site, alt="Spring sale"):
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
        os.makedirs(ARGS.artifacts, exist_ok=True)

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

    def site(self, pages, stall=()):
        s = Site(pages, stall)
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

    def driver(self):
        d = tvdriver.Driver.connect(timeout=10, name="APP:Updater")
        self.drivers.append(d)
        return d

    def shot(self, name):
        subprocess.run(["import", "-window", "root",
                        os.path.join(ARGS.artifacts, name + ".png")],
                       env=self.env, timeout=20, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)

    def click(self, d, path):
        info = d.widget_info(path)
        x = int(info["screenX"]) + int(info["width"]) // 2
        y = int(info["screenY"]) + int(info["height"]) // 2
        subprocess.run(["xdotool", "mousemove", "--sync", str(x), str(y), "click", "1"],
                       env=self.env, check=True, timeout=10)

    def wait_exit(self, p, timeout=10):
        return p.wait(timeout)

    def main_shown(self, d):
        return d.wait_for_widget(MAIN + "|Close Button", timeout=10)

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
        p = self.start(site.host)
        d = self.driver()
        self.main_shown(d)
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
        # The connecting window is gone once the list shows.
        d.wait_until(lambda: d.widget_info(MAIN + "|Connecting Text").get("visible") != "true"
                     if self._exists(d, MAIN + "|Connecting Text") else True, timeout=5)
        self.shot("updates-listed")

        # A click on "Update" opens the row's page through xdg-open.
        self.click(d, row % "Gamma Reverb" + "|Update Link")
        deadline = time.monotonic() + 10
        while not os.path.exists(self.opened) and time.monotonic() < deadline:
            time.sleep(0.05)
        with open(self.opened) as f:
            self.assertEqual(site.url("/products/gamma-reverb/"), f.read().strip())

        # Close ends the program with status 0; the settings hold the check and the place.
        self.click(d, MAIN + "|Close Button")
        self.assertEqual(0, self.wait_exit(p))
        values = self.settings()
        self.assertEqual("", values.get("LastResult"))
        self.assertIn("LastUpdateCheckTime", values)
        # Settings keep "/" inside flat key names.
        self.assertIn("HostWindowGeometry/Updater Host Window.Geometry", values)

    def _exists(self, d, path):
        try:
            d.widget_info(path)
            return True
        except tvdriver.RequestError:
            return False

    def test_no_updates_shows_the_line_and_hides_the_headers(self):
        site = self.standard_site()
        self.install("Alpha Mixer", "3.2")
        p = self.start(site.host)
        d = self.driver()
        self.main_shown(d)
        info = d.wait_for_widget(MAIN + "|No Updates Text", timeout=5)
        self.assertEqual("No updates available.", info["text"])
        self.assertEqual("false", d.widget_info(MAIN + "|Product Name Header")["visible"])
        self.assertEqual("true", d.widget_info(MAIN + "|Information for user")["visible"])
        panel = d.widget_info(MAIN + "|Updates Panel")
        centre = int(panel["x"]) + int(panel["width"]) // 2
        self.assertLessEqual(abs(int(info["x"]) + int(info["width"]) // 2 - centre), 1)
        self.shot("no-updates")
        self.click(d, MAIN + "|Close Button")
        self.assertEqual(0, self.wait_exit(p))
        self.assertEqual("", self.settings().get("LastResult"))

    def test_server_down_shows_the_fixed_message(self):
        self.install("Alpha Mixer", "3.0")
        host = "127.0.0.1:%d" % closed_port()
        # A refused connection ends only at the request's time-out, which is a minute unless
        # shortened.
        self.env["TV_REQUEST_TIMEOUT_MS"] = "1500"
        p = self.start(host)
        d = self.driver()
        self.main_shown(d)
        info = d.wait_for_widget(MAIN + "|No Updates Text", timeout=5)
        self.assertEqual(ERROR_TEXT, info["text"])
        self.assertEqual(446 * 2 // 3, int(info["width"]))
        self.shot("error")
        self.click(d, MAIN + "|Close Button")
        self.assertEqual(0, self.wait_exit(p))
        values = self.settings()
        self.assertNotEqual("", values.get("LastResult", ""))
        self.assertIn("LastUpdateCheckTime", values)

    def test_cancel_during_a_stalled_check_ends_without_a_main_window(self):
        site = self.site({}, stall=["/products/versions/versions.txt"])
        p = self.start(site.host)
        d = self.driver()
        d.wait_for_widget(MAIN + "|Cancel Button", timeout=10)
        self.shot("connecting")
        d.take_notices()
        self.click(d, MAIN + "|Cancel Button")
        self.assertEqual(0, self.wait_exit(p))
        try:
            d.poll_notices(0.2)
        except tvdriver.DriverError:
            pass  # the program has gone, as it should
        shown = [n for n in d.notices
                 if n.kind == "Show" and n.texts[:1] == ["Updater Host Window"]]
        self.assertEqual([], shown)

    # ---- silent runs

    def test_silent_without_updates_exits_and_shows_nothing(self):
        site = self.standard_site()
        self.install("Alpha Mixer", "3.2")
        p = self.start(site.host, None, "-silent")
        self.assertEqual(0, self.wait_exit(p))
        self.assertIn("LastUpdateCheckTime", self.settings())
        listing = subprocess.run(["xdotool", "search", "--name", "Tavorin Updater"],
                                 env=self.env, stdout=subprocess.PIPE, text=True, timeout=10)
        self.assertEqual("", listing.stdout.strip())

    def test_silent_with_updates_starts_the_visible_copy(self):
        site = self.standard_site()
        self.install("Alpha Mixer", "3.0")
        p = self.start(site.host, None, "unknown", "-silent")
        self.assertEqual(0, self.wait_exit(p))
        d = self.driver()
        self.main_shown(d)
        d.widget_info(MAIN + "|Updates Panel|Updates ScrollView|Program Item: Alpha Mixer")
        self.click(d, MAIN + "|Close Button")

    # ---- the list and the banner

    def test_twenty_updates_scroll_inside_the_fixed_window(self):
        site = self.site({})
        names = [("Product %02d" % i, "2.0", "p%02d" % i) for i in range(20)]
        site.pages["/products/versions/versions.txt"] = versions(site, names)
        for name, _, _ in names:
            self.install(name, "1.0")
        p = self.start(site.host)
        d = self.driver()
        self.main_shown(d)
        view = d.widget_info(MAIN + "|Updates Panel|Updates ScrollView")
        last = d.widget_info(MAIN + "|Updates Panel|Updates ScrollView|Program Item: Product 19")
        self.assertEqual("false", last["visible"]) if "visible" in last else None
        self.assertEqual(358, int(d.widget_info(MAIN)["height"]))
        self.assertLess(int(view["height"]), 20 * 30)
        self.shot("twenty-updates")
        self.click(d, MAIN + "|Close Button")
        self.assertEqual(0, self.wait_exit(p))

    def test_banner_grows_the_window_and_carries_its_tool_tip(self):
        site = self.standard_site()
        site.pages["/updater/"] = banner_page(site, "Spring sale on every plug-in")
        site.pages["/updater/banner.png"] = banner_png()
        self.install("Alpha Mixer", "3.0")
        p = self.start(site.host)
        d = self.driver()
        self.main_shown(d)
        banner = d.wait_for_widget(MAIN + "|MessageButton", timeout=10)
        self.assertEqual(358, int(banner["y"]))
        self.assertEqual(64, int(banner["height"]))
        self.assertEqual(358 + 64, int(d.widget_info(MAIN)["height"]))
        self.shot("banner")
        self.click(d, MAIN + "|MessageButton")
        deadline = time.monotonic() + 10
        while not os.path.exists(self.opened) and time.monotonic() < deadline:
            time.sleep(0.05)
        with open(self.opened) as f:
            self.assertEqual(site.url("/products/"), f.read().strip())
        self.click(d, MAIN + "|Close Button")
        self.assertEqual(0, self.wait_exit(p))

    def test_window_geometry_is_remembered_across_runs(self):
        site = self.standard_site()
        self.install("Alpha Mixer", "3.0")
        p = self.start(site.host)
        d = self.driver()
        self.main_shown(d)
        subprocess.run(["xdotool", "search", "--sync", "--name", "Tavorin Updater",
                        "windowmove", "%@", "37", "41"], env=self.env, timeout=10)
        time.sleep(0.3)  # lets the window manager-less server deliver the move event
        self.click(d, MAIN + "|Close Button")
        self.assertEqual(0, self.wait_exit(p))
        saved = self.settings()["HostWindowGeometry/Updater Host Window.Geometry"]
        d.close()
        self.drivers.remove(d)
        p = self.start(site.host)
        d = self.driver()
        self.main_shown(d)
        again = self.settings()["HostWindowGeometry/Updater Host Window.Geometry"]
        self.assertEqual(saved, again)
        self.click(d, MAIN + "|Close Button")
        self.assertEqual(0, self.wait_exit(p))


def main():
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", required=True)
    parser.add_argument("--module", required=True)
    parser.add_argument("--artifacts", required=True)
    ARGS, rest = parser.parse_known_args()
    display = Display()
    if not display.start():
        print("no X display: skipped")
        return SKIP
    UpdaterRuns.display = display
    try:
        result = unittest.main(argv=[sys.argv[0]] + rest, exit=False, verbosity=2).result
    finally:
        display.stop()
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
