#!/usr/bin/env python3
"""tvcheck and tvdefaults as administrators script them, run as programs against loopback
servers (a site and a proxy) with settings in temp folders: the failure words and statuses,
--json failures, --list, --explain, the proxy variables, --system, deleting a whole product,
type messages and --version. Every wait is bounded."""

import argparse
import http.server
import json
import os
import shutil
import socket
import ssl
import subprocess
import sys
import tempfile
import threading
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
from loopback_proxy import Proxy  # noqa: E402
from loopback_site import Site  # noqa: E402

ARGS = None
DOMAIN = "com.tavorin.updater"
VERSIONS = "/products/versions/versions.txt"


def closed_port():
    s = socket.socket()
    s.bind(("127.0.0.1", 0))
    port = s.getsockname()[1]
    s.close()
    return port


class AdminTools(unittest.TestCase):
    def setUp(self):
        self.work = tempfile.mkdtemp(prefix="tv-admin.")
        self.site = Site({"/html": b"<html><body>Not here</body></html>\n", "/empty": b""})
        self.env = {k: v for k, v in os.environ.items()
                    if k.lower() not in ("http_proxy", "https_proxy", "no_proxy", "all_proxy")}
        self.env.update(XDG_CONFIG_HOME=os.path.join(self.work, "user"),
                        XDG_CONFIG_DIRS=os.path.join(self.work, "system"),
                        TV_UPDATE_HOST=self.site.host)

    def tearDown(self):
        self.site.stop()
        shutil.rmtree(self.work, ignore_errors=True)

    def run_tool(self, *args):
        return subprocess.run([os.path.join(ARGS.bin, args[0])] + list(args[1:]), env=self.env,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                              timeout=60)

    def defaults(self, *args, status=0):
        result = self.run_tool("tvdefaults", *args)
        self.assertEqual(status, result.returncode, result.stderr)
        return result

    def register(self, product, version, *scope):
        self.defaults(*scope, "write", DOMAIN, "InstalledProducts/%s/CurrentVersion" % product,
                      version)

    def offer(self, text):
        self.site.pages[VERSIONS] = text.encode()

    def test_failures_say_why_in_words_and_exit_1(self):
        port = closed_port()
        cases = [
            ("http://127.0.0.1:%d/v.txt" % port,
             "cannot connect to 127.0.0.1:%d: connection refused" % port),
            (self.site.url("/missing"), "HTTP 404 from " + self.site.url("/missing")),
            (self.site.url("/html"), "the answer is not a versions file (no line reads "
                                     "product|version|link) from " + self.site.url("/html")),
            (self.site.url("/empty"), "the answer is empty from " + self.site.url("/empty")),
            ("ftp://127.0.0.1/v.txt", "cannot fetch ftp://127.0.0.1/v.txt: not an http or "
                                      "https URL"),
        ]
        for url, reason in cases:
            with self.subTest(url=url):
                plain = self.run_tool("tvcheck", "--url", url, "--timeout", "10")
                self.assertEqual((1, "", "tvcheck: %s\n" % reason),
                                 (plain.returncode, plain.stdout, plain.stderr))
                as_json = self.run_tool("tvcheck", "--json", "--url", url, "--timeout", "10")
                self.assertEqual(1, as_json.returncode)
                self.assertEqual({"error": reason}, json.loads(as_json.stdout))

    def test_https_is_verified_against_the_system_certificates(self):
        # A self-signed certificate is in no system store, so the check must refuse it.
        cert, key = (os.path.join(self.work, name) for name in ("cert.pem", "key.pem"))
        made = subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes",
                               "-days", "1", "-subj", "/CN=127.0.0.1", "-keyout", key, "-out",
                               cert], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        if made.returncode != 0:
            self.skipTest("openssl could not make a test certificate")
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(cert, key)
        server = http.server.HTTPServer(("127.0.0.1", 0), http.server.BaseHTTPRequestHandler)
        server.socket = context.wrap_socket(server.socket, server_side=True)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        try:
            port = server.server_address[1]
            check = self.run_tool("tvcheck", "--url", "https://127.0.0.1:%d/v.txt" % port)
            self.assertEqual(1, check.returncode)
            self.assertTrue(check.stderr.startswith(
                "tvcheck: cannot verify the certificate of 127.0.0.1:%d: " % port), check.stderr)
        finally:
            server.shutdown()
            server.server_close()

    def test_list_says_where_each_product_comes_from(self):
        self.register("Alpha Mixer", "3.0")
        self.register("Beta Synth", "2.0", "--system")
        self.register("Alpha Mixer", "1.0", "--system")
        listing = self.run_tool("tvcheck", "--list")
        self.assertEqual(0, listing.returncode, listing.stderr)
        self.assertEqual(["Alpha Mixer\t3.0\tuser", "Beta Synth\t2.0\tsystem"],
                         sorted(listing.stdout.splitlines()))

    def test_explain_gives_decisions_reasons_and_skipped_lines(self):
        for product, version in (("Alpha Mixer", "1.9"), ("Beta Synth", "1.10"),
                                 ("Gamma Reverb", "2.0"), ("Delta", "1.0")):
            self.register(product, version)
        self.offer("Alpha Mixer|1.10|http://a/\n"
                   "Beta Synth|1.9|http://b/\n"
                   "Gamma Reverb|3.0.1|http://g/\n"
                   "Zeta Tuner|1.0\n"
                   "Omega|2.0|http://o/\n")
        explain = self.run_tool("tvcheck", "--explain")
        self.assertEqual(10, explain.returncode, explain.stderr)
        self.assertEqual(sorted(
            "Alpha Mixer: no update: available 1.10 reads as 1.1, not newer than installed 1.9 "
            "(line 1)\n"
            "Beta Synth: update offered: available 1.9, newer than installed 1.10 reads as 1.1 "
            "(line 2)\n"
            "Gamma Reverb: no update: the available version \"3.0.1\" is not a number (a version "
            "is one decimal number, with at most one point) (line 3)\n"
            "Delta: no update: not in the versions file\n"
            "line 4 skipped: fewer than three fields: \"Zeta Tuner|1.0\"\n"
            "line 5: \"Omega\" is not installed\n"
            "line 6 skipped: empty (after the last line break)\n".splitlines()),
            sorted(explain.stdout.splitlines()))

    def test_proxy_variables_are_honoured(self):
        proxy = Proxy(b"Alpha Mixer|9.0|http://via-proxy/\n")
        try:
            self.register("Alpha Mixer", "1.0")
            self.offer("Alpha Mixer|2.0|http://direct/\n")
            far = "http://updates.tavorin.invalid" + VERSIONS
            cases = [
                # (environment, url, expected link, proxied targets)
                ({"http_proxy": proxy.url}, far, "http://via-proxy/", [far]),
                ({"http_proxy": proxy.url, "no_proxy": "127.0.0.1"}, self.site.url(VERSIONS),
                 "http://direct/", []),
                ({}, self.site.url(VERSIONS), "http://direct/", []),
            ]
            for extra, url, link, seen in cases:
                with self.subTest(environment=extra):
                    proxy.seen.clear()
                    self.env.update(extra)
                    check = self.run_tool("tvcheck", "--url", url)
                    for name in extra:
                        del self.env[name]
                    self.assertEqual(10, check.returncode, check.stderr)
                    self.assertEqual(link, check.stdout.strip().split("\t")[3])
                    self.assertEqual(seen, proxy.seen)
        finally:
            proxy.stop()

    def test_tvdefaults_system_scope_subtrees_and_types(self):
        product = "InstalledProducts/Alpha Mixer/"
        self.defaults("--system", "write", DOMAIN, product + "CurrentVersion", "3.0")
        system_file = os.path.join(self.work, "system", "tavorin", DOMAIN + ".plist")
        self.assertEqual(0o644, os.stat(system_file).st_mode & 0o777)
        self.assertEqual(0o755, os.stat(os.path.dirname(system_file)).st_mode & 0o777)
        self.assertFalse(os.path.exists(os.path.join(self.work, "user", "tavorin",
                                                     DOMAIN + ".plist")))
        self.assertEqual("3.0\n", self.defaults("read", DOMAIN, product + "CurrentVersion").stdout)

        self.defaults("write", DOMAIN, product + "CurrentVersion", "3.1")
        self.defaults("write", DOMAIN, product + "Count", "-int", "4")
        cases = [
            (("read", DOMAIN, product + "Count", "-string"),
             "has a value of type int (or bool)"),
            (("read", DOMAIN, product + "CurrentVersion", "-int"), "has a value of type string"),
            (("read", DOMAIN, product + "Nothing"), "no value " + product + "Nothing"),
        ]
        for args, words in cases:
            with self.subTest(args=args):
                self.assertIn(words, self.defaults(*args, status=1).stderr)

        # Deleting the product's key takes the whole product from the user's settings; what is
        # left is every user's, which only --system deletes.
        self.defaults("delete", DOMAIN, "InstalledProducts/Alpha Mixer")
        self.assertEqual("", self.defaults("values", DOMAIN, "InstalledProducts/Alpha Mixer")
                         .stdout.replace("CurrentVersion\n", ""))
        self.assertIn("has a value only in the system scope",
                      self.defaults("delete", DOMAIN, "InstalledProducts/Alpha Mixer",
                                    status=1).stderr)
        self.defaults("--system", "delete", DOMAIN, "InstalledProducts/Alpha Mixer")
        self.assertEqual("", self.defaults("keys", DOMAIN, "InstalledProducts").stdout)

    def test_every_program_answers_version_and_help(self):
        for program in ("tavorin-updater", "tvcheck", "tvdefaults"):
            for switch, words in (("--version", program + " "), ("--help", "sage")):
                with self.subTest(program=program, switch=switch):
                    result = self.run_tool(program, switch)
                    self.assertEqual(0, result.returncode, result.stderr)
                    self.assertIn(words, result.stdout)
        # Among other arguments the switches are ignored, as every unknown argument is: this
        # is a silent check (failing fast on a closed port), which prints nothing.
        self.env.update(TV_UPDATE_HOST="127.0.0.1:%d" % closed_port(),
                        TV_WEB_HOST="127.0.0.1:%d" % closed_port(), TV_REQUEST_TIMEOUT_MS="300")
        result = self.run_tool("tavorin-updater", "--help", "-silent")
        self.assertEqual((0, ""), (result.returncode, result.stdout), result.stderr)


def main():
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", required=True)
    ARGS, rest = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0]] + rest, verbosity=2)


if __name__ == "__main__":
    main()
