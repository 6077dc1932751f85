#!/usr/bin/env python3
"""Test driver for programs that run the test automation bridge.

The program serves newline-delimited JSON-RPC 2.0 on 127.0.0.1, on the first free port of
54321 to 54325. This module connects to it, calls requests, waits for widgets and conditions
with time-outs and collects the notices the program pushes. Standard library only.

As a library:

    from tvdriver import Driver
    with Driver.connect(timeout=10) as d:
        info = d.wait_for_widget("Updater Main Window|Close Button", timeout=5)
        d.call("windowAutomationRequest", widget="Updater Main Window|Close Button",
               request="Click")
        notice = d.wait_for_notice(lambda n: n.kind == "Destroy", timeout=5)

On the command line:

    tvdriver.py getWidgetInfo "Updater Main Window|Close Button"
    tvdriver.py call windowAutomationRequest widget="Main|Panel" request=Show
    tvdriver.py wait "Updater Main Window|Close Button" --timeout 10
    tvdriver.py notices --timeout 5
"""

import argparse
import json
import socket
import sys
import time

FIRST_PORT = 54321
LAST_PORT = 54325
HOST = "127.0.0.1"

# Requests whose only argument is a widget path, so that the command line can take it bare.
WIDGET_REQUESTS = ("getWidgetInfo",)


class DriverError(Exception):
    """A failure of the connection or of the protocol."""


class RequestError(DriverError):
    """The program answered a request with an error; `message` is its error text."""

    def __init__(self, method, code, message):
        super().__init__("%s: %s" % (method, message))
        self.method = method
        self.code = code
        self.message = message


class Notice:
    """One notice: its kind ("Show", "MouseEvent"...) and its texts."""

    def __init__(self, kind, texts):
        self.kind = kind
        self.texts = list(texts)

    def __repr__(self):
        return "Notice(%r, %r)" % (self.kind, self.texts)

    def __eq__(self, other):
        return isinstance(other, Notice) and (self.kind, self.texts) == (other.kind, other.texts)


class Driver:
    """One connection to a program. Not thread-safe; every wait is bounded."""

    MAX_LINE = 64 * 1024 * 1024

    def __init__(self, sock, port):
        self.sock = sock
        self.port = port
        self.buffer = b""
        self.notices = []
        # Errors the program sent without an id: lines it could not read as requests.
        self.protocol_errors = []
        self.next_id = 1

    # ---- connecting

    @classmethod
    def connect(cls, timeout=10.0, ports=None, name=None, pid=None):
        """Connects to the first port that answers, trying them all until `timeout` passes.
        With `name`, only a server whose "getServerInfo" name equals it is taken; with `pid`,
        only the one that runs in that process, so that a test talks to the program it started
        and not to another one on the same machine."""
        ports = list(ports) if ports else list(range(FIRST_PORT, LAST_PORT + 1))
        deadline = time.monotonic() + timeout
        last_error = None
        while True:
            for port in ports:
                try:
                    sock = socket.create_connection((HOST, port), timeout=1.0)
                except OSError as error:
                    last_error = error
                    continue
                driver = cls(sock, port)
                if name is None and pid is None:
                    return driver
                try:
                    info = driver.call("getServerInfo", timeout=2.0)
                    if (name is None or info.get("name") == name) and \
                            (pid is None or info.get("pid") == str(pid)):
                        return driver
                except DriverError as error:
                    last_error = error
                driver.close()
            if time.monotonic() >= deadline:
                raise DriverError("no test automation server on ports %d-%d (%s)"
                                  % (ports[0], ports[-1], last_error))
            time.sleep(0.1)

    def close(self):
        if self.sock is not None:
            self.sock.close()
            self.sock = None

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        self.close()

    # ---- lines

    def _read_line(self, deadline):
        """The next line as parsed JSON, or None when `deadline` passes first."""
        while b"\n" not in self.buffer:
            remaining = deadline - time.monotonic()
            if remaining <= 0:
                return None
            if self.sock is None:
                raise DriverError("connection closed")
            self.sock.settimeout(remaining)
            try:
                chunk = self.sock.recv(65536)
            except socket.timeout:
                return None
            except OSError as error:
                raise DriverError("connection failed: %s" % error)
            if not chunk:
                self.close()
                raise DriverError("connection closed by the program")
            self.buffer += chunk
            if len(self.buffer) > self.MAX_LINE and b"\n" not in self.buffer:
                raise DriverError("line too long")
        line, self.buffer = self.buffer.split(b"\n", 1)
        try:
            return json.loads(line.decode("utf-8"))
        except ValueError as error:
            raise DriverError("bad line from the program: %s" % error)

    def _take_notice(self, message):
        """Keeps `message` when it is a notice; true then."""
        if message.get("method") != "notice" or "id" in message:
            return False
        params = message.get("params") or {}
        self.notices.append(Notice(params.get("kind", ""), params.get("texts", [])))
        return True

    # ---- requests

    def call(self, method, timeout=10.0, **params):
        """Calls `method` with `params` (values are sent as text) and returns the result, a dict
        of texts. Raises RequestError with the program's error text."""
        if self.sock is None:
            raise DriverError("not connected")
        request_id = self.next_id
        self.next_id += 1
        request = {"jsonrpc": "2.0", "id": request_id, "method": method,
                   "params": {k: str(v) for k, v in params.items()}}
        try:
            self.sock.sendall((json.dumps(request) + "\n").encode("utf-8"))
        except OSError as error:
            raise DriverError("send failed: %s" % error)
        deadline = time.monotonic() + timeout
        while True:
            message = self._read_line(deadline)
            if message is None:
                raise DriverError("%s: no reply within %.1f s" % (method, timeout))
            if self._take_notice(message):
                continue
            if message.get("id") is None and "error" in message:
                self.protocol_errors.append(message["error"] or {})
                continue
            if message.get("id") != request_id:
                continue
            if "error" in message:
                error = message["error"] or {}
                raise RequestError(method, error.get("code"), error.get("message", ""))
            return message.get("result") or {}

    def widget_info(self, path, timeout=10.0):
        return self.call("getWidgetInfo", timeout=timeout, widget=path)

    # ---- waiting

    def wait_until(self, condition, timeout=10.0, interval=0.1):
        """Calls `condition()` until it returns something true, and returns that. A
        RequestError counts as not yet. Raises DriverError on time-out."""
        deadline = time.monotonic() + timeout
        last = None
        while True:
            try:
                value = condition()
                if value:
                    return value
            except RequestError as error:
                last = error
            if time.monotonic() >= deadline:
                raise DriverError("condition not met within %.1f s (%s)" % (timeout, last))
            self.poll_notices(min(interval, max(0.0, deadline - time.monotonic())))

    def wait_for_widget(self, path, timeout=10.0, visible=True):
        """The info of the widget at `path` once it exists (and is visible, by default)."""
        def ready():
            info = self.widget_info(path, timeout=max(0.5, timeout))
            return info if (not visible or info.get("visible") == "true") else None
        return self.wait_until(ready, timeout)

    def poll_notices(self, wait=0.0):
        """Reads whatever notices arrive within `wait` seconds; returns all kept so far."""
        deadline = time.monotonic() + wait
        while True:
            message = self._read_line(deadline)
            if message is None:
                return self.notices
            self._take_notice(message)

    def wait_for_notice(self, predicate=None, timeout=10.0):
        """Removes and returns the first notice (already received or arriving) that matches
        `predicate`; raises DriverError on time-out."""
        deadline = time.monotonic() + timeout
        while True:
            for index, notice in enumerate(self.notices):
                if predicate is None or predicate(notice):
                    return self.notices.pop(index)
            remaining = deadline - time.monotonic()
            if remaining <= 0:
                raise DriverError("no matching notice within %.1f s" % timeout)
            message = self._read_line(deadline)
            if message is not None:
                self._take_notice(message)

    def take_notices(self):
        """The notices received so far, forgetting them."""
        taken, self.notices = self.notices, []
        return taken


# ---- command line

def _parse_params(items):
    params = {}
    for item in items:
        if "=" not in item:
            raise SystemExit("argument %r is not key=value" % item)
        key, value = item.split("=", 1)
        params[key] = value
    return params


def main(argv=None):
    parser = argparse.ArgumentParser(
        description="Drive a program through its test automation bridge.")
    parser.add_argument("--timeout", type=float, default=10.0,
                        help="seconds to wait for the program and for replies")
    parser.add_argument("--port", type=int, help="only this port")
    parser.add_argument("--name", help="only a server of this name, such as APP:Updater")
    parser.add_argument("--pid", type=int, help="only the server of this process")
    parser.add_argument("command", help="a request name, or call, wait or notices")
    parser.add_argument("args", nargs="*",
                        help="key=value arguments; a bare widget path for getWidgetInfo")
    options = parser.parse_args(argv)

    try:
        driver = Driver.connect(options.timeout, [options.port] if options.port else None,
                                options.name, options.pid)
    except DriverError as error:
        print("tvdriver: %s" % error, file=sys.stderr)
        return 2
    with driver:
        try:
            if options.command == "notices":
                for notice in driver.poll_notices(options.timeout):
                    print(json.dumps({"kind": notice.kind, "texts": notice.texts}))
                return 0
            if options.command == "wait":
                if len(options.args) != 1:
                    raise SystemExit("wait takes one widget path")
                result = driver.wait_for_widget(options.args[0], options.timeout)
            else:
                method, args = options.command, options.args
                if method == "call":
                    if not args:
                        raise SystemExit("call needs a request name")
                    method, args = args[0], args[1:]
                if method in WIDGET_REQUESTS and len(args) == 1 and "=" not in args[0]:
                    params = {"widget": args[0]}
                else:
                    params = _parse_params(args)
                result = driver.call(method, timeout=options.timeout, **params)
        except RequestError as error:
            print("error: %s" % error.message, file=sys.stderr)
            return 1
        except DriverError as error:
            print("tvdriver: %s" % error, file=sys.stderr)
            return 2
        print(json.dumps(result, indent=2, sort_keys=True))
        return 0


if __name__ == "__main__":
    sys.exit(main())
