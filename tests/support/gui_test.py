"""What the Python GUI test scripts share: the test driver loaded from tools/tvdriver.py, a
program whose standard output is read line by line, the X tools that act as the user (pointer,
keys, the window manager's close request) and read the screen, and unittest's main on a private
display, managed by openbox as a user's desktop is, that exits 77 (skipped) when no display can
be had. Every wait is bounded.

A script puts this folder on its path and imports what it needs:

    sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "support"))
    import gui_test
"""

import importlib.util
import os
import re
import subprocess
import sys
import threading
import tempfile
import time
import unittest

import xlib_client
from xvfb_display import Display

SKIP = 77
SOURCE = os.path.abspath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))


def load_driver(path=None):
    """tools/tvdriver.py (or the file at `path`) as a module."""
    path = path or os.path.join(SOURCE, "tools", "tvdriver.py")
    module_spec = importlib.util.spec_from_file_location("tvdriver", path)
    module = importlib.util.module_from_spec(module_spec)
    module_spec.loader.exec_module(module)
    return module


def run_tests(test_classes, argv, wm_config=None):
    """Starts a display (our own Xvfb; the DISPLAY given only when Xvfb is missing), gives it
    to each class in `test_classes` as `display`, runs unittest's main with `argv` and returns
    the exit status: 0, 1 for failures, SKIP without a display. `wm_config` is an openbox configuration (XML
    text) for tests that need one, such as Alt-clicks that the default bindings would take."""
    display = Display(own=True)
    if not display.start():
        print("no X display and no Xvfb: skipped")
        return SKIP
    manager = None
    try:
        manager = start_window_manager(display, config=wm_config)
        for test_class in test_classes:
            test_class.display = display
        result = unittest.main(argv=[sys.argv[0]] + list(argv), exit=False, verbosity=2).result
    finally:
        # The manager we started goes with the tests, so that the next tests on a shared
        # display start one with their own configuration.
        if manager:
            manager.terminate()
            manager.wait(10)
        display.stop()
    return 0 if result.wasSuccessful() else 1


def window_manager_running(display):
    """True when a window manager that follows the desktop conventions manages `display`."""
    run = subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], env=x_env(display),
                         capture_output=True, text=True, timeout=20)
    return run.returncode == 0 and "window id" in run.stdout


def start_window_manager(display, timeout=60, config=None):
    """Starts openbox on `display` unless a window manager runs there already, and waits until
    it manages windows; the started process, or None when one was running. An openbox that
    does not take the display in time is ended, with a note on the error output, and the tests
    run without a window manager rather than not at all."""
    if window_manager_running(display):
        return None
    command = ["openbox", "--sm-disable"]
    if config:
        rc = tempfile.NamedTemporaryFile("w", prefix="tv-openbox-", suffix=".xml", delete=False)
        with rc:
            rc.write(config)
        command += ["--config-file", rc.name]
    manager = subprocess.Popen(command, env=x_env(display),
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               start_new_session=True)
    deadline = time.monotonic() + timeout
    # Announced is not yet managing: a window mapped meanwhile could wait for ever. A window of
    # our own, framed, tells that the manager has taken over.
    name = "tv-wm-probe-%d" % os.getpid()
    probe = None
    try:
        while not (window_manager_running(display) and _framed(display, name)):
            if manager.poll() is not None:
                # Another test on the same display may have started its own first: that one
                # serves. Otherwise ours failed to start: try again.
                if window_manager_running(display):
                    return None
                manager = subprocess.Popen(command, env=x_env(display),
                                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                           start_new_session=True)
            # A probe mapped while the manager was still starting stays unframed: try anew.
            if probe is not None and time.monotonic() - probe_started > 3:
                probe.kill()
                probe.wait()
            if window_manager_running(display) and (probe is None or probe.poll() is not None):
                probe = subprocess.Popen(["xev", "-geometry", "1x1+0+0", "-name", name],
                                         env=x_env(display), stdout=subprocess.DEVNULL,
                                         stderr=subprocess.DEVNULL)
                probe_started = time.monotonic()
            if time.monotonic() >= deadline:
                manager.kill()
                manager.wait()
                print("openbox did not manage %s in time: running without a window manager"
                      % display.name, file=sys.stderr)
                return None
            time.sleep(0.05)
    finally:
        if probe:
            probe.kill()
            probe.wait()
    return manager


def _framed(display, name):
    """True when a window named `name` sits inside another window, not on the root."""
    run = subprocess.run(["xwininfo", "-root", "-tree"], env=x_env(display),
                         capture_output=True, text=True, timeout=20)
    # The root's children are indented by five blanks, their children by more.
    return any(re.match(r'\s{6,}0x[0-9a-f]+ "%s":' % re.escape(name), line)
               for line in run.stdout.splitlines())


class Program:
    """A started program whose standard output is collected line by line on a thread; its error
    output goes to the file `errors` (or is dropped)."""

    def __init__(self, command, env, errors=None):
        error_file = open(errors, "w") if errors else subprocess.DEVNULL
        try:
            self.process = subprocess.Popen(list(command), env=env, stdout=subprocess.PIPE,
                                            stderr=error_file, text=True)
        finally:
            if errors:
                error_file.close()
        self.lines = []
        self.ended = False
        self.cond = threading.Condition()
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()

    def _read(self):
        with self.process.stdout:
            for line in self.process.stdout:
                with self.cond:
                    self.lines.append(line.rstrip("\n"))
                    self.cond.notify_all()
        with self.cond:
            self.ended = True
            self.cond.notify_all()

    def wait_for_line(self, text, timeout=15):
        """True once a line equal to `text` was written; false when the output ends or
        `timeout` passes first."""
        deadline = time.monotonic() + timeout
        with self.cond:
            while text not in self.lines:
                remaining = deadline - time.monotonic()
                if remaining <= 0 or self.ended:
                    return False
                self.cond.wait(remaining)
            return True

    def wait_for_line_starting(self, start, timeout=15):
        """The first line that starts with `start`; None when the output ends or `timeout`
        passes first."""
        deadline = time.monotonic() + timeout
        with self.cond:
            while True:
                for line in self.lines:
                    if line.startswith(start):
                        return line
                remaining = deadline - time.monotonic()
                if remaining <= 0 or self.ended:
                    return None
                self.cond.wait(remaining)

    def output(self, timeout=15):
        """Every line written, once the output has ended (or `timeout` passed)."""
        self.reader.join(timeout)
        with self.cond:
            return list(self.lines)

    def wait(self, timeout=15):
        """The exit status; None when the program is still running after `timeout`."""
        try:
            return self.process.wait(timeout)
        except subprocess.TimeoutExpired:
            return None

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        self.reader.join(10)


# ---- the X tools


def x_env(display):
    return dict(os.environ, DISPLAY=display.name)


def xdotool(display, *args):
    """Runs xdotool with `args`; its output."""
    run = subprocess.run(["xdotool"] + [str(a) for a in args], env=x_env(display),
                         capture_output=True, text=True, timeout=20)
    if run.returncode != 0:
        raise AssertionError("xdotool %s: %s" % (" ".join(map(str, args)), run.stderr.strip()))
    return run.stdout


def click(display, x, y, button=1):
    """Moves the real pointer to (`x`, `y`) on the screen and clicks."""
    xdotool(display, "mousemove", "--sync", x, y, "click", button)


def click_widget(display, driver, path):
    """Clicks the middle of the widget at `path`, placed on the screen through the driver."""
    info = driver.widget_info(path)
    x = int(info["screenX"]) + int(info["width"]) // 2
    y = int(info["screenY"]) + int(info["height"]) // 2
    click(display, x, y)
    return x, y


def top_windows(display):
    """The (id, name) of every named window in the screen's tree: the programs' own top-level
    windows, whether at the top or inside a window manager's frame. Read with xwininfo, which
    also knows names given only as UTF-8 (as SDL's message boxes give theirs)."""
    run = subprocess.run(["xwininfo", "-root", "-tree"], env=x_env(display),
                         capture_output=True, text=True, timeout=20)
    found = []
    for line in run.stdout.splitlines():
        match = re.match(r'\s+(0x[0-9a-f]+) "(.*)":', line)
        if match:
            found.append((int(match.group(1), 16), match.group(2)))
    return found


def visible_windows(display, name):
    """The ids of the visible windows named `name` (under a window manager, inside its frame)."""
    run = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^%s$" % name],
                         env=x_env(display), capture_output=True, text=True, timeout=20)
    return run.stdout.split()


def wait_visible(display, name, present=True, timeout=10):
    """The ids of the visible windows named `name` once there is one (with `present` false, once
    there is none); fails after `timeout`."""
    deadline = time.monotonic() + timeout
    while bool(visible_windows(display, name)) != present:
        if time.monotonic() >= deadline:
            raise AssertionError("window %s %s" % (name, "never shows" if present else "stays"))
        time.sleep(0.05)
    return visible_windows(display, name)


def wait_for_window(display, name, timeout=15):
    """The id of a top window named `name` once there is one; None after `timeout`."""
    deadline = time.monotonic() + timeout
    while True:
        for window, window_name in top_windows(display):
            if window_name == name:
                return window
        if time.monotonic() >= deadline:
            return None
        time.sleep(0.1)


def process_with_environment(entry, exclude=()):
    """The id of a running process whose environment holds `entry` ("NAME=value"), other than
    those in `exclude`; None when there is none. Finds the copies a program started itself."""
    for pid in os.listdir("/proc"):
        if not pid.isdigit() or int(pid) in exclude:
            continue
        try:
            with open("/proc/%s/environ" % pid, "rb") as f:
                if entry.encode() + b"\0" in f.read():
                    return int(pid)
        except OSError:
            pass
    return None


def screen_area(display, x, y, width, height):
    """The screen's pixels in the rectangle, as rows of (r, g, b)."""
    ppm = subprocess.run(["import", "-window", "root", "-depth", "8", "-crop",
                          "%dx%d+%d+%d" % (width, height, x, y), "ppm:-"],
                         env=x_env(display), capture_output=True, check=True,
                         timeout=30).stdout
    data = ppm.split(maxsplit=4)[4]
    return [[tuple(data[(r * width + c) * 3:(r * width + c) * 3 + 3]) for c in range(width)]
            for r in range(height)]


def picture(display, window):
    """The window's pixels as a binary PPM."""
    return subprocess.run(["import", "-window", str(window), "ppm:-"], env=x_env(display),
                          capture_output=True, check=True, timeout=30).stdout


def painted_picture(display, window, timeout=15):
    """The window's pixels once two pictures in a row are the same and show more than one
    colour, so that the program has painted; None when that does not happen in time."""
    deadline = time.monotonic() + timeout
    last = None
    while time.monotonic() < deadline:
        try:
            now = picture(display, window)
        except subprocess.CalledProcessError:
            # Not viewable yet: the window manager maps its frame after the window itself.
            last = None
            time.sleep(0.05)
            continue
        if now == last and not _one_colour(now):
            return now
        last = now
    return None


def _one_colour(ppm):
    """True for a PPM ("P6 width height 255" and RGB bytes) of a single colour."""
    parts = ppm.split(maxsplit=4)
    pixels = parts[4] if len(parts) == 5 else b""
    return pixels[:3] * (len(pixels) // 3) == pixels


def request_close(display, window):
    """Asks the window to close as a window manager does when the user presses its close box:
    the client message WM_DELETE_WINDOW."""
    with xlib_client.Connection(display.name) as connection:
        connection.request_close(window)
