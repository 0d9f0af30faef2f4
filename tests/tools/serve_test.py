#!/usr/bin/env python3
"""tessaro serve: what it answers and prints, how it ends, how it fails.

usage: serve_test.py TESSARO [unittest arguments]
"""
import http.client
import os
import pathlib
import re
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

TESSARO = sys.argv.pop(1)
SAMPLE = pathlib.Path(__file__).resolve().parents[2] / "samples" / "update-server"


class Server:
    def __init__(self, folder, *options):
        self.process = subprocess.Popen([TESSARO, "serve", folder, "--port", "0", *options],
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.greeting = self.process.stdout.readline()
        self.port = int(re.search(r":(\d+)/", self.greeting)[1])

    def request(self, target, method="GET"):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=10)
        connection.putrequest(method, target, skip_accept_encoding=True)
        connection.endheaders()
        answer = connection.getresponse()
        content = answer.read()
        connection.close()
        return answer.status, content

    def printed(self):
        return self.process.stdout.readline().rstrip("\n")

    def end(self, sent=signal.SIGTERM):
        self.process.send_signal(sent)
        rest, errors = self.process.communicate(timeout=10)
        return self.process.returncode, rest, errors


class ServeTest(unittest.TestCase):
    def start(self, folder, *options):
        server = Server(folder, *options)
        self.addCleanup(server.process.stderr.close)
        self.addCleanup(server.process.stdout.close)
        self.addCleanup(server.process.wait)
        self.addCleanup(server.process.kill)
        return server

    def test_serves_the_sample_folder_byte_for_byte(self):
        server = self.start(SAMPLE)
        self.assertIn(str(SAMPLE), server.greeting)
        files = [path for path in SAMPLE.rglob("*") if path.is_file()]
        names = {str(path.relative_to(SAMPLE)) for path in files}
        self.assertLessEqual({"update_plugins/versions16.txt", "update_plugins/versions_plus.txt",
                              "update_plugins/updates.htm", "update/update.html"}, names)
        for path in files:
            name = path.relative_to(SAMPLE)
            self.assertEqual(server.request(f"/{name}?acver=22&lang=1"), (200, path.read_bytes()))
            self.assertEqual(server.printed(),
                             f"GET /{name}?acver=22&lang=1 200 {path.stat().st_size} bytes to 127.0.0.1")
        self.assertEqual(server.end(), (0, "stopped\n", ""))

    def test_the_sample_folder_has_an_update_to_find(self):
        dates = []
        for line in (SAMPLE / "update_plugins/versions16.txt").read_text(encoding="ascii").splitlines():
            match = re.match(r"TessaroLibrary 22\.\d+\.\d+\.\d+ \(AC220\) (\d\d)/(\d\d)/(\d{4})( |$)", line)
            if match:
                dates.append(match[3] + match[2] + match[1])
        self.assertGreater(max(dates), "20180803")

    def test_what_is_not_in_the_folder_is_not_found(self):
        with tempfile.TemporaryDirectory() as folder:
            inside = pathlib.Path(folder, "inside")
            inside.mkdir()
            pathlib.Path(folder, "outside").write_text("secret")
            server = self.start(inside)
            for target in ["/missing", "/../outside", "/%2e%2e/outside", "/..%2foutside", "/a%0a%1b[31m", "/%ff"]:
                status, content = server.request(target)
                self.assertIn(status, (400, 404), target)
                self.assertNotIn(b"secret", content)
                self.assertRegex(server.printed(), r"^GET /[ -~]* 40[04] \d+ bytes to 127.0.0.1$")
            with socket.create_connection(("127.0.0.1", server.port), timeout=10) as raw:
                raw.sendall(b"GET /a\x1b[31m\xc3\xe2\x80\xae HTTP/1.1\r\nConnection: close\r\n\r\n")
                raw.recv(4096)
            self.assertRegex(server.printed(), r"^GET /a\\x1B\[31m\\xC3\\xE2\\x80\\xAE 40[04] \d+ bytes to 127.0.0.1$")
            code, _, errors = server.end()
            self.assertEqual(code, 0)
            self.assertEqual(errors.count("note: there is no update_plugins/versions"), 2)

    def test_ends_at_once_on_either_signal_also_with_a_silent_client(self):
        for sent in (signal.SIGINT, signal.SIGTERM):
            server = self.start(SAMPLE)
            with socket.create_connection(("127.0.0.1", server.port)):
                start = time.monotonic()
                code, _, _ = server.end(sent)
            self.assertEqual(code, 0)
            self.assertLess(time.monotonic() - start, 5)

    def test_fails_with_one_clear_line(self):
        taken = self.start(SAMPLE)
        with tempfile.NamedTemporaryFile() as file:
            for arguments, code, says in [
                (["/no/such/folder"], 3, "/no/such/folder: No such file or directory"),
                ([file.name], 3, "is not a folder"),
                ([SAMPLE, "--port", str(taken.port)], 3, f"port {taken.port}: Address already in use"),
                ([SAMPLE, "--address", "192.0.2.1"], 3, "192.0.2.1 port 8080: Cannot assign"),
                ([SAMPLE, "--port", "65536"], 2, "65536"),
                ([SAMPLE, "--port", "x"], 2, "x"),
                ([], 2, "folder is required"),
                ([SAMPLE, "--no-such-option"], 2, "no-such-option"),
            ]:
                result = subprocess.run([TESSARO, "serve", *arguments], capture_output=True, text=True, timeout=20)
                self.assertEqual(result.returncode, code, arguments)
                self.assertIn(says, result.stderr)
                self.assertEqual(result.stdout, "")
        with open("/dev/full", "wb") as full:
            result = subprocess.run([TESSARO, "serve", SAMPLE, "--port", "0"], stdout=full, timeout=20)
            self.assertEqual(result.returncode, 3)

    def test_other_commands_do_not_load_the_server_library(self):
        trace = subprocess.run([TESSARO, "--help"], env={**os.environ, "LD_DEBUG": "libs"}, capture_output=True,
                               text=True, timeout=20)
        self.assertEqual(trace.returncode, 0)
        for library in ("httplib", "libcurl"):
            self.assertNotIn(library, trace.stderr)


if __name__ == "__main__":
    unittest.main()
