#!/usr/bin/env python3
"""The installation end to end: `cmake --install` of a build into a temp folder (the user's
installation, then the test bridge component into the same prefix), then the installed programs
run from there. tvcheck checks against a loopback HTTP server with settings registered through
the installed tvdefaults; tavorin-updater runs silent without updates, and windowed with the
test bridge found under its own prefix, where its main window must be placed by the layout
packed in the installed resources (which proves it finds them in share/tavorin). The desktop
files, metainfo and manual pages are checked by the system's own validators. Uses nothing but
the build folder, temp folders, an X display (its own Xvfb unless DISPLAY is set; the windowed
cases are skipped without one) and xdotool. Every wait is bounded."""

import argparse
import filecmp
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

ARGS = None
DOMAIN = "com.tavorin.updater"
MAIN = "Updater Main Window"
PROGRAMS = ("tavorin-updater", "tvdefaults", "tvcheck")
RESOURCES = os.path.join("share", "tavorin", "resources.resembed")
MODULE = os.path.join("lib", "tavorin", "TestAutomation", "libTvTestAutomation.so")

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import gui_test  # noqa: E402
from loopback_site import Site  # noqa: E402
from xvfb_display import Display  # noqa: E402

tvdriver = gui_test.load_driver()


class InstalledPrograms(unittest.TestCase):
    """One installation into a temp prefix for all cases; each case has its own settings."""

    display = None

    @classmethod
    def setUpClass(cls):
        cls.prefix = tempfile.mkdtemp(prefix="tv-install.")
        cls.bin = os.path.join(cls.prefix, "bin")
        # The user's installation alone first, to see what it leaves out.
        cls.install()
        cls.user_files = sorted(os.path.relpath(os.path.join(d, f), cls.prefix)
                                for d, _, files in os.walk(cls.prefix) for f in files)
        cls.install("--component", "TestAutomation")

    @classmethod
    def install(cls, *extra):
        result = subprocess.run([ARGS.cmake, "--install", ARGS.build, "--prefix", cls.prefix]
                                + list(extra), stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                text=True, timeout=120)
        if result.returncode != 0:
            shutil.rmtree(cls.prefix, ignore_errors=True)
            raise AssertionError("cmake --install failed:\n" + result.stdout)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.prefix, ignore_errors=True)

    def setUp(self):
        self.work = tempfile.mkdtemp(prefix="tv-install-run.")
        self.env = {k: v for k, v in os.environ.items()
                    if k not in ("TV_TEST_AUTOMATION_MODULE", "TV_TRACE_PRESENT")}
        self.env["XDG_CONFIG_HOME"] = os.path.join(self.work, "config")
        self.site = Site({})
        self.env["TV_UPDATE_HOST"] = self.site.host
        self.env["TV_WEB_HOST"] = self.site.host
        self.processes = []

    def tearDown(self):
        for p in self.processes:
            if p.poll() is None:
                p.kill()
                p.wait(10)
        self.site.stop()
        shutil.rmtree(self.work, ignore_errors=True)

    # ---- helpers

    def installed(self, program):
        return os.path.join(self.bin, program)

    def run_installed(self, *args, timeout=30):
        return subprocess.run([self.installed(args[0])] + list(args[1:]), env=self.env,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                              timeout=timeout)

    def register(self, product, version):
        result = self.run_installed("tvdefaults", "write", DOMAIN,
                                    "InstalledProducts/%s/CurrentVersion" % product, version)
        self.assertEqual(0, result.returncode, result.stderr)

    def offer(self, *lines):
        self.site.pages["/products/versions/versions.txt"] = "".join(
            "%s|%s|%s\n" % (name, version, self.site.url("/products/%s/" % slug))
            for name, version, slug in lines).encode()

    def need_display(self):
        if not self.display or not self.display.name:
            self.skipTest("no X display")
        self.env["DISPLAY"] = self.display.name

    def start_updater(self, *args):
        err = open(os.path.join(self.work, "updater.err"), "w")
        p = subprocess.Popen([self.installed("tavorin-updater")] + list(args), env=self.env,
                             stdout=subprocess.DEVNULL, stderr=err)
        err.close()
        self.processes.append(p)
        return p

    def updater_stderr(self):
        with open(os.path.join(self.work, "updater.err")) as f:
            return f.read()

    def layout(self, name):
        """The children of a layout packed in the installed resources: name -> (x, y, w, h)."""
        result = subprocess.run([os.path.join(ARGS.build, "bin", "tvresembed"), "extract",
                                 os.path.join(self.prefix, RESOURCES),
                                 "UI/Layout/%s.layout" % name],
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                timeout=30)
        self.assertEqual(0, result.returncode, result.stderr)
        root = ElementTree.fromstring(result.stdout)
        return {c.get("Name"): tuple(int(c.get(k)) for k in ("X", "Y", "Width", "Height"))
                for c in root.iter("Child")}

    # ---- the files

    def test_the_users_installation_is_fhs_without_developer_parts(self):
        for program in PROGRAMS:
            path = self.installed(program)
            self.assertTrue(os.path.isfile(path), path)
            self.assertTrue(os.access(path, os.X_OK), path)
        self.assertTrue(filecmp.cmp(os.path.join(ARGS.build, "bin", "Resources",
                                                 "resources.resembed"),
                                    os.path.join(self.prefix, RESOURCES), shallow=False))
        expected = [
            "bin/tavorin-updater", "bin/tvcheck", "bin/tvdefaults",
            "etc/xdg/autostart/com.tavorin.Updater.desktop",
            "share/applications/com.tavorin.Updater.desktop",
            "share/bash-completion/completions/tvcheck",
            "share/bash-completion/completions/tvdefaults",
            "share/doc/tavorin-updater/changelog.gz", "share/doc/tavorin-updater/copyright",
            "share/icons/hicolor/scalable/apps/com.tavorin.Updater.svg",
            "share/man/man1/tavorin-updater.1.gz", "share/man/man1/tvcheck.1.gz",
            "share/man/man1/tvdefaults.1.gz",
            "share/metainfo/com.tavorin.Updater.metainfo.xml", RESOURCES,
        ] + ["share/icons/hicolor/%dx%d/apps/com.tavorin.Updater.png" % (s, s)
             for s in (16, 32, 48, 64, 128, 256)]
        self.assertEqual(sorted(expected), self.user_files)
        self.assertTrue(os.path.isfile(os.path.join(self.prefix, MODULE)))

    def test_desktop_files_metainfo_and_manuals_pass_the_system_checks(self):
        def at(path):
            return os.path.join(self.prefix, path)
        checks = [
            ["desktop-file-validate", at("share/applications/com.tavorin.Updater.desktop")],
            ["desktop-file-validate", at("etc/xdg/autostart/com.tavorin.Updater.desktop")],
            ["appstreamcli", "validate", "--no-net",
             at("share/metainfo/com.tavorin.Updater.metainfo.xml")],
        ] + [["man", "--warnings", "-l", at("share/man/man1/%s.1.gz" % page)]
             for page in PROGRAMS]
        env = dict(os.environ, MANPAGER="cat", MANWIDTH="80", LC_ALL="C.UTF-8")
        for command in checks:
            with self.subTest(command=command[0], file=os.path.basename(command[-1])):
                result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                        text=True, timeout=60, env=env)
                self.assertEqual(0, result.returncode, result.stdout + result.stderr)
                if command[0] == "man":
                    self.assertEqual("", result.stderr)
                    self.assertIn(os.path.basename(command[-1])[:-5], result.stdout)
        with open(at("etc/xdg/autostart/com.tavorin.Updater.desktop")) as f:
            self.assertIn("\nExec=tavorin-updater -silent\n", f.read())

    # ---- tvcheck and tvdefaults

    def test_tvcheck_checks_the_local_site_against_registered_products(self):
        self.offer(("Alpha Mixer", "3.2", "alpha-mixer"), ("Beta Synth", "2.0", "beta-synth"))
        self.register("Alpha Mixer", "3.0")
        self.register("Beta Synth", "2.0")
        read = self.run_installed("tvdefaults", "read", DOMAIN,
                                  "InstalledProducts/Alpha Mixer/CurrentVersion")
        self.assertEqual((0, "3.0"), (read.returncode, read.stdout.strip()))

        check = self.run_installed("tvcheck", "--timeout", "20")
        self.assertEqual(10, check.returncode, check.stderr)
        self.assertEqual("Alpha Mixer\t3.0\t3.2\t%s\n" % self.site.url("/products/alpha-mixer/"),
                         check.stdout)

        self.register("Alpha Mixer", "3.2")
        check = self.run_installed("tvcheck", "--timeout", "20")
        self.assertEqual((0, ""), (check.returncode, check.stdout), check.stderr)

    def test_bash_completions_offer_options_and_registered_keys(self):
        self.register("Alpha Mixer", "3.0")
        completions = os.path.join(self.prefix, "share", "bash-completion", "completions")
        env = dict(self.env, PATH=self.bin + os.pathsep + self.env.get("PATH", ""))
        cases = [
            ("tvcheck", ["tvcheck", "--ex"], ["--explain"]),
            ("tvdefaults", ["tvdefaults", "--system", "de"], ["delete"]),
            ("tvdefaults", ["tvdefaults", "read", DOMAIN, "-i"], ["-int"]),
            ("tvdefaults", ["tvdefaults", "read", DOMAIN, "InstalledProducts/Al"],
             ["InstalledProducts/Alpha Mixer/"]),
        ]
        for program, words, offered in cases:
            with self.subTest(words=words):
                script = ('source "$1"; COMP_WORDS=("${@:2}"); COMP_CWORD=$(($# - 2)); '
                          '_%s; printf "%%s\\n" "${COMPREPLY[@]}"' % program)
                result = subprocess.run(["bash", "-c", script, "bash",
                                         os.path.join(completions, program)] + words,
                                        env=env, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True, timeout=30)
                self.assertEqual(offered, result.stdout.splitlines(), result.stderr)

    # ---- the updater

    def test_silent_updater_without_updates_exits_0_and_shows_nothing(self):
        self.need_display()
        self.offer(("Alpha Mixer", "3.2", "alpha-mixer"))
        self.register("Alpha Mixer", "3.2")
        self.env["TV_TRACE_PRESENT"] = "1"
        p = self.start_updater("-silent")
        self.assertEqual(0, p.wait(30))
        # No window ever reached the screen.
        self.assertNotIn("present ", self.updater_stderr())

    def test_windowed_updater_is_laid_out_by_its_installed_resources(self):
        self.need_display()
        self.offer(("Alpha Mixer", "3.2", "alpha-mixer"))
        self.register("Alpha Mixer", "3.0")
        # No TV_TEST_AUTOMATION_MODULE: the bridge is the component installed in the prefix.
        self.env["TV_TRACE_PRESENT"] = "1"
        expected = self.layout("MainWindow")
        p = self.start_updater()
        with tvdriver.Driver.connect(timeout=10, name="APP:Updater", pid=p.pid) as d:
            d.wait_for_widget(MAIN + "|Close Button", timeout=15)
            d.widget_info(MAIN + "|Updates Panel|Updates ScrollView|Program Item: Alpha Mixer")
            for name, (x, y, width, height) in expected.items():
                info = d.widget_info(MAIN + "|" + name)
                self.assertEqual((x, y), (int(info["x"]), int(info["y"])), name)
                # Texts size themselves to their words; the rest keeps the layout's size.
                if info["classname"] not in ("Text", "MultiText"):
                    self.assertEqual((width, height), (int(info["width"]), int(info["height"])),
                                     name)
            gui_test.click_widget(self.display, d, MAIN + "|Close Button")
            self.assertEqual(0, p.wait(15))
        self.assertIn("present Updater Host Window ", self.updater_stderr())

    def test_without_its_resources_the_updater_says_so_and_fails(self):
        bare = os.path.join(self.work, "bare", "bin")
        os.makedirs(bare)
        shutil.copy2(self.installed("tavorin-updater"), bare)
        for args in ([], ["-silent"]):
            with self.subTest(args=args):
                result = subprocess.run([os.path.join(bare, "tavorin-updater")] + args,
                                        env=self.env, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True, timeout=30)
                self.assertEqual(1, result.returncode)
                self.assertIn("tavorin-updater: cannot start: its resources are missing",
                              result.stderr)
                self.assertIn(os.path.join(bare, "..", "share", "tavorin"), result.stderr)


def main():
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True, help="the build folder to install from")
    parser.add_argument("--cmake", default="cmake")
    ARGS, rest = parser.parse_known_args()
    ARGS.build = os.path.abspath(ARGS.build)
    display = Display()
    InstalledPrograms.display = display if display.start() else None
    try:
        program = unittest.main(argv=[sys.argv[0]] + rest, exit=False, verbosity=2)
    finally:
        display.stop()
    sys.exit(0 if program.result.wasSuccessful() else 1)


if __name__ == "__main__":
    main()
