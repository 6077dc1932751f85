"""A private X display for GUI tests: an Xvfb of our own, or the display we were given."""

import os
import shutil
import subprocess
import time


class Display:
    """An Xvfb of our own, or the display we were given. With `own`, an Xvfb of our own whenever
    Xvfb is installed, so that a window manager started for these tests serves them alone and
    ends with them without leaving other tests on a shared display without one."""

    def __init__(self, own=False):
        self.process = None
        self.name = os.environ.get("DISPLAY")
        if own and shutil.which("Xvfb"):
            self.name = None

    def start(self):
        if self.name:
            return True
        if not shutil.which("Xvfb"):
            return False
        read_end, write_end = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x1024x24",
             "-nolisten", "tcp"],
            pass_fds=(write_end,), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        number = b""
        deadline = time.monotonic() + 15
        while not number.endswith(b"\n") and time.monotonic() < deadline:
            chunk = os.read(read_end, 16)
            if not chunk:
                break
            number += chunk
        os.close(read_end)
        if not number.strip():
            self.stop()
            return False
        self.name = ":" + number.decode().strip()
        return True

    def stop(self):
        if self.process:
            self.process.terminate()
            try:
                self.process.wait(10)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
            self.process = None


