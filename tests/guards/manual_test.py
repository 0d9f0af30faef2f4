#!/usr/bin/env python3
"""The printed manual holds its text: chapters on the pages that its contents name, fonts inside, nothing unprinted.

usage: manual_test.py BUNDLES_FOLDER
"""
import pathlib
import re
import subprocess
import sys
import unicodedata
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDER = pathlib.Path(sys.argv.pop(1))


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def part(document, source):
    """The file, its text, and the printed pages."""
    printed = unicodedata.normalize("NFKC", run("pdftotext", "-layout", FOLDER / document, "-"))
    return FOLDER / document, (ROOT / "docs/manual" / source).read_text(encoding="utf-8"), printed.split("\f")[:-1]


MANUAL = [part("01 - Libreria Tessaro.pdf", "01-guida-utente.md"),
          part("02 - Libreria Tessaro.pdf", "02-libreria-installazione-assistenza.md")]


class ManualTest(unittest.TestCase):
    def test_every_chapter_stands_on_the_page_that_the_contents_name(self):
        for _, source, pages in MANUAL:
            chapters = re.findall(r"^##+ (.+)$", source, re.MULTILINE)
            self.assertGreater(len(chapters), 5)
            for chapter in chapters:
                entry = re.search(rf"^\s*{re.escape(chapter)}\s+(\d+)$", pages[0], re.MULTILINE)
                self.assertTrue(entry, chapter)
                self.assertRegex(pages[int(entry[1]) - 1], rf"(?m)^\s*{re.escape(chapter)}$")

    def test_every_page_carries_its_number_and_the_texts_of_the_dialogs(self):
        for _, _, pages in MANUAL:
            for number, page in enumerate(pages, 1):
                self.assertRegex(page.rstrip(), rf"\s{number} ?/ ?{len(pages)}$")
                self.assertNotRegex(page, r"(?m)^\s*\?\s*$", "a text that was not found")

    def test_every_word_of_the_text_is_printed(self):
        for _, source, pages in MANUAL:
            text = re.sub(r"^!.*$|\]\([^)]*\)", " ", unicodedata.normalize("NFKC", source), flags=re.MULTILINE)
            printed = re.findall(r"\w+", " ".join(pages))
            self.assertEqual(set(re.findall(r"\w+", text)) - set(printed), set())

    def test_fonts_are_embedded_and_the_page_is_a4(self):
        for path, _, _ in MANUAL:
            fonts = run("pdffonts", path).splitlines()[2:]
            self.assertTrue(fonts)
            for font in fonts:
                self.assertRegex(font, r"\byes\s+(yes|no)\s+yes\b", font)
            self.assertIn("(A4)", run("pdfinfo", path))


if __name__ == "__main__":
    unittest.main()
