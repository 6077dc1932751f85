#!/usr/bin/env python3
"""The Debian package end to end: built once by CPack from this build, checked by lintian (no
errors) and `dpkg-deb` (contents, dependencies found from the libraries, stripped programs,
debug symbols in their own package), then extracted with `dpkg-deb -x` and its programs run
from there against loopback servers: tvcheck against a site, tavorin-updater -silent through a
proxy named by http_proxy (when an X display is there). Every wait is bounded."""

import argparse
import glob
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
from loopback_proxy import Proxy  # noqa: E402
from loopback_site import Site  # noqa: E402

ARGS = None
DOMAIN = "com.tavorin.updater"
PROGRAMS = ("tavorin-updater", "tvcheck", "tvdefaults")


def run(*command, timeout=120, **kwargs):
    return subprocess.run(list(command), stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          text=True, timeout=timeout, **kwargs)


class DebianPackage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.work = tempfile.mkdtemp(prefix="tv-package.")
        built = run(ARGS.cpack, "-G", "DEB", "-B", cls.work, cwd=ARGS.build, timeout=240)
        if built.returncode != 0:
            shutil.rmtree(cls.work, ignore_errors=True)
            raise AssertionError("cpack failed:\n" + built.stdout + built.stderr)
        debs = glob.glob(os.path.join(cls.work, "tavorin-updater_*.deb"))
        cls.deb = debs[0] if len(debs) == 1 else None
        cls.ddebs = glob.glob(os.path.join(cls.work, "tavorin-updater-dbgsym_*.ddeb"))
        cls.root = os.path.join(cls.work, "root")
        if cls.deb:
            run("dpkg-deb", "-x", cls.deb, cls.root)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.work, ignore_errors=True)

    def setUp(self):
        self.assertIsNotNone(self.deb, os.listdir(self.work))

    def test_lintian_finds_no_errors(self):
        result = run("lintian", "--no-tag-display-limit", self.deb, timeout=240)
        errors = [line for line in result.stdout.splitlines() if line.startswith("E:")]
        self.assertEqual([], errors, result.stdout + result.stderr)

    def test_contents_dependencies_and_debug_symbols(self):
        contents = run("dpkg-deb", "--contents", self.deb).stdout
        paths = [line.split()[-1].lstrip(".") for line in contents.splitlines()]
        for path in ["/usr/bin/" + p for p in PROGRAMS] + [
                "/usr/share/tavorin/resources.resembed",
                "/usr/share/applications/com.tavorin.Updater.desktop",
                "/usr/share/icons/hicolor/48x48/apps/com.tavorin.Updater.png",
                "/usr/share/metainfo/com.tavorin.Updater.metainfo.xml",
                "/etc/xdg/autostart/com.tavorin.Updater.desktop",
                "/usr/share/man/man1/tvcheck.1.gz"]:
            self.assertIn(path, paths)
        for left_out in ("tvresembed", "TestAutomation", "Resources/"):
            self.assertEqual([], [p for p in paths if left_out in p])
        depends = run("dpkg-deb", "-f", self.deb, "Depends").stdout
        for library in ("libcurl4", "libsdl2-2.0-0", "libplist3", "libfreetype6", "libc6"):
            self.assertIn(library, depends)
        self.assertIn("/etc/xdg/autostart/com.tavorin.Updater.desktop",
                      run("dpkg-deb", "-I", self.deb, "conffiles").stdout)
        for program in PROGRAMS:
            described = run("file", "-b", os.path.join(self.root, "usr", "bin", program)).stdout
            self.assertIn(", stripped", described, program)
        self.assertEqual(1, len(self.ddebs), os.listdir(self.work))
        self.assertIn("/usr/lib/debug/.build-id/", run("dpkg-deb", "--contents",
                                                       self.ddebs[0]).stdout)

    def test_extracted_programs_run(self):
        site = Site({})
        home = tempfile.mkdtemp(prefix="tv-package-home.", dir=self.work)
        env = {k: v for k, v in os.environ.items()
               if k.lower() not in ("http_proxy", "https_proxy", "no_proxy", "all_proxy",
                                    "tv_test_automation_module")}
        env.update(XDG_CONFIG_HOME=home, TV_UPDATE_HOST=site.host, TV_WEB_HOST=site.host)
        program = lambda name: os.path.join(self.root, "usr", "bin", name)  # noqa: E731
        try:
            site.pages["/products/versions/versions.txt"] = b"Alpha Mixer|3.2|http://a/\n"
            result = run(program("tvdefaults"), "write", DOMAIN,
                         "InstalledProducts/Alpha Mixer/CurrentVersion", "3.0", env=env)
            self.assertEqual(0, result.returncode, result.stderr)
            result = run(program("tvcheck"), "--timeout", "20", env=env)
            self.assertEqual((10, "Alpha Mixer\t3.0\t3.2\thttp://a/\n"),
                             (result.returncode, result.stdout), result.stderr)
            result = run(program("tavorin-updater"), "--version", env=env)
            self.assertEqual("tavorin-updater %s\n" % ARGS.version, result.stdout)

            if not env.get("DISPLAY"):
                self.skipTest("no X display for the updater")
            # The application's own requests honour the proxy variables too.
            proxy = Proxy(b"Alpha Mixer|3.0|http://a/\n")
            try:
                env.update(http_proxy=proxy.url, TV_UPDATE_HOST="updates.tavorin.invalid",
                           TV_WEB_HOST="www.tavorin.invalid")
                result = run(program("tavorin-updater"), "-silent", env=env, timeout=60)
                self.assertEqual(0, result.returncode, result.stderr)
                self.assertIn("http://updates.tavorin.invalid/products/versions/versions.txt",
                              proxy.seen)
            finally:
                proxy.stop()
        finally:
            site.stop()


def main():
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    parser.add_argument("--cpack", default="cpack")
    parser.add_argument("--version", required=True)
    ARGS, rest = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0]] + rest, verbosity=2)


if __name__ == "__main__":
    main()
