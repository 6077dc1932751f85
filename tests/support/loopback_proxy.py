"""A loopback HTTP proxy for the tests of the network conventions: it answers every proxied
request itself, with the body it was given, and keeps the request targets it saw, so a test
can tell whether a program went through it."""

import http.server
import socketserver
import threading


class Proxy:
    def __init__(self, body):
        proxy = self
        self.body = body
        self.seen = []

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                # A request through a proxy names the whole URL, not just the path.
                proxy.seen.append(self.path)
                self.send_response(200)
                self.send_header("Content-Length", str(len(proxy.body)))
                self.end_headers()
                self.wfile.write(proxy.body)

            def log_message(self, *args):
                pass

        class Server(socketserver.ThreadingMixIn, http.server.HTTPServer):
            daemon_threads = True

        self.server = Server(("127.0.0.1", 0), Handler)
        self.url = "http://127.0.0.1:%d" % self.server.server_address[1]
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def stop(self):
        self.server.shutdown()
        self.server.server_close()
