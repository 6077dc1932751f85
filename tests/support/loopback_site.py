"""A loopback HTTP site for the program tests: a dict of paths served on a free 127.0.0.1 port
by a thread of the test process."""

import http.server
import socketserver
import threading


class Site:
    """A loopback HTTP server over a dict of paths; a path in `stall` never answers until the
    server stops, and a path in `hold` answers once `release` is set."""

    def __init__(self, pages, stall=(), hold=()):
        site = self
        self.pages = dict(pages)
        self.stall = set(stall)
        self.hold = set(hold)
        self.release = threading.Event()

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                if self.path in site.stall:
                    site.release.wait(30)
                    return
                if self.path in site.hold:
                    site.release.wait(30)
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
