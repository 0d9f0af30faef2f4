#!/usr/bin/env python3
"""check-texts passes the texts of the tree and finds each kind of planted fault."""
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]


class CheckTextsTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.copies = pathlib.Path(temporary.name)
        for name in "framework", "TessaroLibrary":
            shutil.copytree(ROOT / "resources" / name, self.copies / name)
            shutil.copy(ROOT / f"resources/{name}.used.toml", self.copies)
        self.take("framework")

    def take(self, name):
        self.folder = self.copies / name
        self.used = self.copies / f"{name}.used.toml"

    def check(self, code, *says):
        result = subprocess.run([ROOT / "scripts/check-texts", self.folder], capture_output=True, text=True)
        self.assertEqual(result.returncode, code, result.stdout + result.stderr)
        if code == 1:
            self.assertEqual(sorted(result.stdout.splitlines()), sorted(says))

    def edit(self, name, pattern, replacement):
        path = self.folder / name
        text, count = re.subn(pattern, replacement, path.read_text(encoding="utf-8"), count=1, flags=re.MULTILINE)
        self.assertEqual(count, 1, pattern)
        path.write_text(text, encoding="utf-8")

    def test_the_texts_as_they_are_and_one_of_the_longest_length_have_no_fault(self):
        self.edit("texts.fra.toml", "^64 = .*$", f'64 = "{"x" * 999}"')
        self.check(0)
        self.take("TessaroLibrary")
        self.check(0)

    def test_each_fault_is_found(self):
        emoji = "\N{SLIGHTLY SMILING FACE}"
        for name, pattern, replacement, says in [
            ("texts.rus.toml", "^64 = .*$", "", "strings.32710.64: missing"),
            ("texts.int.toml", "^64 = .*$", "", "strings.32710.64: missing"),
            ("texts.jap.toml", "^3 = .*$", "", "dialog.32755.3: missing"),
            ("texts.ger.toml", "^64 = .*$", '64 = " "', "strings.32710.64: empty"),
            ("texts.ger.toml", "^64 = .*$", "64 = 7", "strings.32710.64: not a text in quotes"),
            ("texts.spa.toml", "^64 = .*$", r"\g<0>" + '\n66 = "Nada"', "strings.32710.66: unused"),
            ("texts.fra.toml", "^64 = .*$", f'64 = "{emoji * 500}"', "strings.32710.64: 1000 units long, at most 999 fit"),
            ("texts.ita.toml", "^80 = .*$", '80 = "AddonName"', "strings.32710.80: lost the placeholder ADDONNAME"),
            ("texts.int.toml", "^82 = .*$", '82 = "None"', "strings.32710.82: lost the placeholder ADDONLIBNAME"),
            ("texts.ita.toml", "^64 = .*$", '64 = "ADDONNAME"',
             "strings.32710.64: has the placeholder ADDONNAME, which nothing replaces there"),
            ("TessaroLibrary/texts.jap.toml", "^title = .*$", "", "menu.32500.title: missing"),
            ("TessaroLibrary/texts.ita.toml", "^(9 = .*).n\"$", r'\1"',
             "strings.32530.9: does not end as the fallback language does (line break)"),
        ]:
            folder, name = ("framework/" + name).split("/")[-2:]
            self.take(folder)
            with self.subTest(says, file=name):
                sound = (self.folder / name).read_text(encoding="utf-8")
                self.edit(name, pattern, replacement)
                self.check(1, f"{name}: {says}")
                (self.folder / name).write_text(sound, encoding="utf-8")

    def test_a_text_that_the_code_asks_for_newly_is_missing_everywhere(self):
        self.used.write_text(self.used.read_text(encoding="utf-8").replace('"3"', '"3, 4"'), encoding="utf-8")
        languages = "ita int fra ger spa jap rus".split()
        self.check(1, *(f"texts.{language}.toml: dialog.32755.4: missing" for language in languages))

    def test_without_a_list_the_fallback_language_is_the_measure(self):
        self.used.unlink()
        self.check(0)
        self.edit("texts.int.toml", "^64 = .*$", "")
        self.check(1, *(f"texts.{language}.toml: strings.32710.64: unused"
                        for language in "ita fra ger spa jap rus".split()))

    def test_a_file_that_is_missing_or_broken_is_found(self):
        (self.folder / "texts.rus.toml").unlink()
        self.check(1, "texts.rus.toml: No such file or directory")
        (self.folder / "resources.toml").unlink()
        self.check(3)


if __name__ == "__main__":
    unittest.main()
