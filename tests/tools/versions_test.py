#!/usr/bin/env python3
"""tessaro versions lint: which rules a versions file breaks, and how the command ends.

usage: versions_test.py TESSARO [unittest arguments]
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

TESSARO = sys.argv.pop(1)
GOOD = "TessaroLibrary 22.0.4.2200 (AC220) 03/08/2018 ita int\n# A text\n\nTessaro 01/10/2018\n"
FINDINGS = {
    "": ["nothing-published"],
    GOOD: [],
    GOOD.replace("\n", "\r\n"): [],
    "\ufeff" + GOOD: [],
    GOOD.replace("ita", "ITA"): ["language-case 1:47"],
    GOOD.replace(".2200", ""): ["stray-text 2:1", "version-numbers 1:16"],
    GOOD.replace("2200", "99999"): ["version-numbers 1:16"],
    GOOD.replace("03/08/2018", "3/8/2018"): ["date-format 1:36", "stray-text 2:1"],
    GOOD.replace("03/08/2018", "31/02/2018"): ["date-impossible 1:36"],
    GOOD.replace("(AC220)", "(AC22)"): ["host-tag 1:28"],
    GOOD.replace("int", "nosuite"): ["unknown-marker 1:51"],
    "  # lost\n" + GOOD: ["empty-name 1:1"],
    "# lost\n" + GOOD: ["stray-text 1:1"],
    "lost\n" + GOOD: ["stray-line 1:1"],
    "MESSAGE 01/13/2018 02/01/2018\n# Text\n" + GOOD: ["notice-date 1:9"],
    "MESSAGES 01/01/2018 02/01/2018\n# Text\n" + GOOD: ["notice-name 1:1"],
    GOOD.replace("# A", "#A"): ["text-mark 2:2"],
    GOOD + "Tessaro 01/10/2017\n": ["superseded 5:1"],
    (GOOD + "Citt\xe0 01/10/2018\n").encode("latin-1"): ["encoding-differs", "nothing-published", "undecodable"],
}


def lint(*arguments):
    return subprocess.run([TESSARO, "versions", "lint", *arguments], capture_output=True, text=True, timeout=20)


class LintTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.file = pathlib.Path(temporary.name) / "versions.txt"

    def test_each_rule_finds_its_fault_and_nothing_else(self):
        self.maxDiff = None
        for content, expected in FINDINGS.items():
            self.file.write_bytes(content if isinstance(content, bytes) else content.encode())
            result = lint("--json", self.file)
            findings = json.loads(result.stdout)["findings"]
            found = [each["rule"] + (f" {each['line']}:{each['column']}" if each["line"] else "") for each in findings]
            self.assertEqual(sorted(found), expected, content)
            bad = any(each["severity"] != "note" for each in findings)
            self.assertEqual(result.returncode, 1 if bad else 0, content)
            for each in findings:
                self.assertIn(each["rule"], lint("--explain", each["rule"]).stdout)

    def test_the_entries_are_those_that_the_reader_finds(self):
        self.file.write_text(GOOD)
        self.assertEqual(json.loads(lint("--json", self.file).stdout)["entries"], [
            {"line": 1, "kind": "addon", "name": "TessaroLibrary", "version": "22.0.4.2200", "host": 22,
             "date": "20180803"},
            {"line": 4, "kind": "library", "name": "Tessaro", "version": None, "host": None, "date": "20181001"}])

    def test_what_is_no_versions_file_is_one_line(self):
        os.mkfifo(self.file.with_name("pipe"))
        with open(self.file, "wb") as large:
            large.truncate((16 << 20) + 1)
        for arguments, code in ([self.file], 4), ([self.file.with_name("pipe")], 3), ([self.file.with_name("no")], 3), \
                ([], 2), (["--explain", "no-rule"], 2):
            result = lint(*arguments)
            self.assertEqual((result.returncode, result.stdout, result.stderr.count("\n")), (code, "", 1), arguments)


unittest.main()
