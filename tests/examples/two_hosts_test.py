#!/usr/bin/env python3
"""Two hosts at once on one data folder: whoever reads finds settings and marker files whole.

usage: two_hosts_test.py TESSARO BUNDLES
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import time
import unittest

TESSARO, BUNDLES = sys.argv[1:3]
LANGUAGES = ["ita", "int", "fra", "ger", "spa", "jap"]
ROUNDS = 100


def exchanged(text):
    return bytes((byte << 4 | byte >> 4) & 255 for byte in text.encode())


SETTINGS = "TessaroPlugins.cfg"
MARKER = "TessaroParts_220_22.sui"
# What each file may hold at any moment.
WHOLE = {
    SETTINGS: {exchanged(f"$Language_str: {language}\n") for language in LANGUAGES},
    MARKER: {exchanged(f"$Tessaro Loaded: {value}\n") for value in ("TRUE", "FALSE")},
}


class TwoHostsTest(unittest.TestCase):
    def start(self, data, first):
        words = []
        for number in range(ROUNDS):
            row = (first + number) % len(LANGUAGES) + 1
            words += ["choose 4", f"select 3 {row}", "click 1", "reload"]
        script, output = tempfile.TemporaryFile("w+"), tempfile.TemporaryFile("w+")
        self.addCleanup(script.close)
        self.addCleanup(output.close)
        script.write("\n".join(words) + "\n")
        script.seek(0)
        host = subprocess.Popen([TESSARO, "run", "--bundle", f"{BUNDLES}/TessaroParts.bundle", "--data-dir", data],
                                stdin=script, stdout=output, stderr=subprocess.STDOUT)
        return host, output

    def test_files_are_whole_whenever_they_are_read(self):
        with tempfile.TemporaryDirectory() as data:
            hosts = [self.start(data, first) for first in (0, 3)]
            seen = {name: [] for name in WHOLE}
            deadline = time.monotonic() + 120
            while any(host.poll() is None for host, _ in hosts) and time.monotonic() < deadline:
                for name, contents in seen.items():
                    try:
                        content = pathlib.Path(data, name).read_bytes()
                    except FileNotFoundError:
                        content = b""
                    if contents[-1:] != [content]:
                        contents.append(content)
            for host, output in hosts:
                host.wait(timeout=60)
                output.seek(0)
                said = output.read()
                self.assertEqual(host.returncode, 0, said)
                self.assertNotIn("error:", said)
                self.assertEqual(said.count("closed by item 1"), ROUNDS)
            for name, contents in seen.items():
                self.assertLessEqual(set(contents), WHOLE[name] | {b""}, name)
                self.assertGreater(len(contents), 10, f"{name} was hardly seen")
            # A marker is deleted and written anew; settings are replaced, so that they are never gone.
            self.assertNotIn(b"", seen[SETTINGS][1:])
            self.assertEqual(set(os.listdir(data)), set(WHOLE))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
