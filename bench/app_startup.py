#!/usr/bin/env python3
"""Start-up measurements of the windowed updater against the loopback demo site.

    python3 bench/app_startup.py --build build [--runs 7] [--idle-seconds 10] [--xvfb]

Serves demo/site on a free 127.0.0.1 port as scripts/demo does (the *.in templates filled in
with the site's address), registers the demo's five installed products through tvdefaults in a
throwaway XDG_CONFIG_HOME, and then runs tavorin-updater several times, each with a fresh copy
of those settings, on the user's display (DISPLAY) or on a private Xvfb (none set, or --xvfb).
For each run it measures:

  connecting   process start to the connecting window's first pixels on the screen
  main         process start to the main window shown with the check's result
  idle CPU     utime + stime (/proc/<pid>/stat) over --idle-seconds with the main window open
  peak RSS     ru_maxrss of the whole run, from os.wait4, once Ctrl+Q has ended it

The two times come from the SDL host's trace (TV_TRACE_PRESENT=1 prints "present <window name>
<ms>" on stderr the first time a shown window's pixels reach the screen, in CLOCK_MONOTONIC
milliseconds), compared with time.monotonic() (the same clock) taken right before the process
is spawned. The first run warms the caches and is not counted (--warmup). Prints the median and
the worst of each figure next to its aim. Python 3 standard library, Xvfb and xdotool.
"""

import argparse
import os
import queue
import shutil
import socket
import statistics
import subprocess
import sys
import tempfile
import threading
import time
import urllib.request

SOURCE = os.path.abspath(os.path.join(os.path.dirname(__file__), ".."))
sys.path.insert(0, os.path.join(SOURCE, "tests", "support"))
from xvfb_display import Display  # noqa: E402

DOMAIN = "com.tavorin.updater"
INSTALLED = [("Alpha Mixer", "3.0"), ("Beta Synth", "2.0"), ("Gamma Reverb", "1.9"),
             ("Delta Compressor", "4.0"), ("Echo Delay", "2.05")]
CONNECTING = "Contacting Host Window"
MAIN = "Updater Host Window"
CAPTION = "Tavorin Updater"
# Figures, their units and the aims they are held against.
AIMS = [("connecting", "ms", 150), ("main", "ms", 400), ("peak RSS", "MB", 40),
        ("idle CPU", "%", 1)]


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


class DemoSite:
    """demo/site copied into `work`, its templates filled in, served by python3 -m http.server."""

    def __init__(self, work):
        self.port = free_port()
        self.host = "127.0.0.1:%d" % self.port
        root = os.path.join(work, "site")
        shutil.copytree(os.path.join(SOURCE, "demo", "site"), root)
        for folder, _, files in os.walk(root):
            for name in files:
                if name.endswith(".in"):
                    template = os.path.join(folder, name)
                    with open(template) as f:
                        text = f.read().replace("@WEB@", "http://" + self.host)
                    with open(template[:-3], "w") as f:
                        f.write(text)
                    os.remove(template)
        self.log = open(os.path.join(work, "server.log"), "w")
        self.process = subprocess.Popen(
            [sys.executable, "-m", "http.server", "--bind", "127.0.0.1", "--directory", root,
             str(self.port)], stdout=self.log, stderr=subprocess.STDOUT)
        deadline = time.monotonic() + 10
        while True:
            try:
                urllib.request.urlopen(
                    "http://%s/products/versions/versions.txt" % self.host, timeout=1).read()
                return
            except OSError:
                if time.monotonic() > deadline or self.process.poll() is not None:
                    self.stop()
                    raise RuntimeError("the demo site did not come up on " + self.host)
                time.sleep(0.05)

    def stop(self):
        if self.process.poll() is None:
            self.process.terminate()
            self.process.wait(10)
        self.log.close()


def cpu_seconds(pid):
    """utime + stime of a live process, in seconds."""
    with open("/proc/%d/stat" % pid) as f:
        # The command name may hold blanks; the fields after it are plain.
        fields = f.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


class Run:
    """One run of the updater, its stderr read on a thread into a queue of trace lines."""

    def __init__(self, program, env):
        self.lines = queue.Queue()
        self.errors = []
        self.start = time.monotonic()
        self.process = subprocess.Popen([program], env=env, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.PIPE, text=True)
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()
        self.presented = {}

    def _read(self):
        for line in self.process.stderr:
            self.lines.put(line.rstrip("\n"))
        self.lines.put(None)

    def wait_present(self, window, timeout):
        """Milliseconds from the spawn to the window's first pixels; None when they never came."""
        deadline = time.monotonic() + timeout
        while window not in self.presented:
            left = deadline - time.monotonic()
            if left <= 0:
                return None
            try:
                line = self.lines.get(timeout=left)
            except queue.Empty:
                return None
            if line is None:
                return None
            name, _, stamp = line.rpartition(" ")
            if name.startswith("present "):
                self.presented[name[len("present "):]] = float(stamp) / 1000.0
            else:
                self.errors.append(line)
        return (self.presented[window] - self.start) * 1000.0

    def finish(self, env, timeout):
        """Ends the run as a user would, with Ctrl+Q on its window; returns the peak RSS in MB
        and how it ended."""
        how = "Ctrl+Q"
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid",
                                str(self.process.pid), "--name", CAPTION],
                               env=env, stdout=subprocess.PIPE, text=True, timeout=10)
        windows = found.stdout.split()
        if windows:
            subprocess.run(["xdotool", "windowfocus", "--sync", windows[-1], "key",
                            "--clearmodifiers", "ctrl+q"], env=env, timeout=10,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        deadline = time.monotonic() + timeout
        status = None
        while status is None:
            pid, code, usage = os.wait4(self.process.pid, os.WNOHANG)
            if pid:
                status = code
            elif time.monotonic() > deadline:
                how = "killed: Ctrl+Q did not end it"
                self.process.kill()
                pid, code, usage = os.wait4(self.process.pid, 0)
                status = code
            else:
                time.sleep(0.02)
        self.process.returncode = os.waitstatus_to_exitcode(status)
        self.reader.join(5)
        if self.process.returncode != 0 and how == "Ctrl+Q":
            how = "exit status %d" % self.process.returncode
        return usage.ru_maxrss / 1024.0, how


def measure(bin_dir, env, idle_seconds, settle_seconds):
    run = Run(os.path.join(bin_dir, "tavorin-updater"), env)
    try:
        connecting = run.wait_present(CONNECTING, 15)
        main = run.wait_present(MAIN, 15)
        idle = None
        if main is not None:
            # The banner arrives on its own worker; let it land before the window counts as idle.
            time.sleep(settle_seconds)
            before, since = cpu_seconds(run.process.pid), time.monotonic()
            time.sleep(idle_seconds)
            idle = 100.0 * (cpu_seconds(run.process.pid) - before) / (time.monotonic() - since)
    finally:
        if run.process.returncode is None:
            rss, how = run.finish(env, 10)
    while not run.lines.empty():
        line = run.lines.get()
        if line and not line.startswith("present "):
            run.errors.append(line)
    return {"connecting": connecting, "main": main, "peak RSS": rss, "idle CPU": idle,
            "ended": how, "errors": run.errors}


def report(results):
    print()
    print("%-11s %10s %10s %8s   %s" % ("", "median", "worst", "aim", "runs"))
    missed = []
    for name, unit, aim in AIMS:
        values = [r[name] for r in results if r[name] is not None]
        absent = len(results) - len(values)
        if not values:
            print("%-11s %10s %10s %8s   never measured" % (name, "-", "-", "< %g %s" %
                                                            (aim, unit)))
            missed.append(name)
            continue
        median, worst = statistics.median(values), max(values)
        runs = " ".join("%.1f" % v for v in values)
        if absent:
            runs += "  (%d runs without a value)" % absent
        print("%-11s %7.1f %-2s %7.1f %-2s %8s   %s" % (name, median, unit, worst, unit,
                                                        "< %g %s" % (aim, unit), runs))
        if median >= aim or absent:
            missed.append(name)
    return missed


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--build", default=os.path.join(SOURCE, "build"),
                        help="build folder holding bin/tavorin-updater and bin/tvdefaults")
    parser.add_argument("--runs", type=int, default=7, help="measured runs")
    parser.add_argument("--warmup", type=int, default=1, help="runs before, not counted")
    parser.add_argument("--idle-seconds", type=float, default=10.0)
    parser.add_argument("--settle-seconds", type=float, default=1.0,
                        help="wait after the main window shows before the idle measurement")
    parser.add_argument("--xvfb", action="store_true",
                        help="use a private Xvfb even when DISPLAY is set")
    args = parser.parse_args()

    bin_dir = os.path.join(os.path.abspath(args.build), "bin")
    for program in ("tavorin-updater", "tvdefaults"):
        if not os.access(os.path.join(bin_dir, program), os.X_OK):
            sys.exit("%s is not built in %s" % (program, bin_dir))
    for tool in ("xdotool",) + (() if os.environ.get("DISPLAY") and not args.xvfb
                                else ("Xvfb",)):
        if not shutil.which(tool):
            sys.exit("%s is needed" % tool)

    display = Display()
    if args.xvfb:
        display.name = None
    if not display.start():
        sys.exit("no display: set DISPLAY or install Xvfb")
    work = tempfile.mkdtemp(prefix="tv-app-startup.")
    site = None
    try:
        site = DemoSite(work)
        env = {k: v for k, v in os.environ.items() if k != "TV_TEST_AUTOMATION_MODULE"}
        env.update(DISPLAY=display.name, TV_UPDATE_HOST=site.host, TV_WEB_HOST=site.host,
                   TV_TRACE_PRESENT="1")
        seeded = os.path.join(work, "seeded")
        for name, version in INSTALLED:
            subprocess.run([os.path.join(bin_dir, "tvdefaults"), "write", DOMAIN,
                            "InstalledProducts/%s/CurrentVersion" % name, version],
                           env=dict(env, XDG_CONFIG_HOME=seeded), check=True, timeout=10)
        print("tavorin-updater from %s on display %s%s against http://%s/" %
              (bin_dir, display.name, " (private Xvfb)" if display.process else "", site.host))
        print("%d measured runs after %d warm-up run(s); idle CPU over %g s" %
              (args.runs, args.warmup, args.idle_seconds))
        results = []
        for i in range(args.warmup + args.runs):
            config = os.path.join(work, "config-%d" % i)
            shutil.copytree(seeded, config)
            result = measure(bin_dir, dict(env, XDG_CONFIG_HOME=config), args.idle_seconds,
                             args.settle_seconds)
            counted = i >= args.warmup
            print("run %d%s: connecting %s ms, main %s ms, peak RSS %.1f MB, idle CPU %s %%, "
                  "ended by %s" % (
                      i + 1, "" if counted else " (warm-up)",
                      "%.1f" % result["connecting"] if result["connecting"] is not None
                      else "-",
                      "%.1f" % result["main"] if result["main"] is not None else "-",
                      result["peak RSS"],
                      "%.2f" % result["idle CPU"] if result["idle CPU"] is not None else "-",
                      result["ended"]))
            for line in result["errors"]:
                print("    stderr: " + line)
            if counted:
                results.append(result)
        missed = report(results)
        print()
        print("all aims met" if not missed else "missed: " + ", ".join(missed))
    finally:
        if site:
            site.stop()
        display.stop()
        shutil.rmtree(work, ignore_errors=True)


if __name__ == "__main__":
    main()
