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
PARTS = {
    "01 - Libreria Tessaro.pdf": "01-guida-utente.md",
    "02 - Libreria Tessaro.pdf": "02-libreria-installazione-assistenza.md",
}
FOLDER = pathlib.Path(sys.argv.pop(1))


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


class ManualTest(unittest.TestCase):
    def each_part(self):
        for document, source in PARTS.items():
            printed = unicodedata.normalize("NFKC", run("pdftotext", "-layout", FOLDER / document, "-"))
            pages = printed.split("\f")[:-1]
            yield FOLDER / document, (ROOT / "docs/manual" / source).read_text(encoding="utf-8"), pages

    def test_every_chapter_stands_on_the_page_that_the_contents_name(self):
        for _, source, pages in self.each_part():
            chapters = re.findall(r"^##+ (.+)$", source, re.MULTILINE)
            self.assertGreater(len(chapters), 5)
            for chapter in chapters:
                entry = re.search(rf"^\s*{re.escape(chapter)}\s+(\d+)$", pages[0], re.MULTILINE)
                self.assertTrue(entry, chapter)
                heading = re.compile(rf"^\s*{re.escape(chapter)}$", re.MULTILINE)
                self.assertTrue(heading.search(pages[int(entry.group(1)) - 1]), chapter)

    def test_every_page_carries_its_number(self):
        for _, _, pages in self.each_part():
            for number, page in enumerate(pages, 1):
                self.assertRegex(page.rstrip(), rf"\s{number} ?/ ?{len(pages)}$")

    def test_every_word_of_the_text_is_printed(self):
        for _, source, pages in self.each_part():
            text = re.sub(r"^!.*$|\]\([^)]*\)", " ", unicodedata.normalize("NFKC", source), flags=re.MULTILINE)
            printed = set(re.findall(r"\w+", " ".join(pages)))
            missing = [word for word in re.findall(r"\w+", text) if word not in printed]
            self.assertEqual(missing, [])

    def test_texts_of_the_dialogs_are_found(self):
        for _, _, pages in self.each_part():
            for page in pages:
                self.assertNotRegex(page, r"(?m)^\s*\?\s*$")

    def test_fonts_are_embedded_and_the_page_is_a4(self):
        for path, _, _ in self.each_part():
            fonts = run("pdffonts", path).splitlines()[2:]
            self.assertTrue(fonts)
            for font in fonts:
                self.assertRegex(font, r"\byes\s+(yes|no)\s+yes\b", font)
            self.assertIn("(A4)", run("pdfinfo", path))


if __name__ == "__main__":
    unittest.main()
