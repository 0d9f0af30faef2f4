#!/usr/bin/env python3
"""Each guard passes a sound tree and finds each kind of planted fault."""
import json
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"
RESOURCES = SCRIPTS.parent / "resources"


class GuardTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return path

    def check(self, code, says, guard, *arguments):
        result = subprocess.run([SCRIPTS / guard, *map(str, arguments)], capture_output=True, text=True)
        self.assertEqual(result.returncode, code, result.stdout + result.stderr)
        self.assertIn(says, result.stdout)
        return result.stdout


class TreeTest(GuardTest):

    def test_guards_of_the_sources(self):
        for guard, passes, sound, planted in [
            ("check-includes", "downward",
             {"files/B.cpp": '#include "files/B.h"\n#include "foundation/KW_String.h"\n#include <map>\n'},
             [("files/A.cpp", '#include "settings/A.h"\n', 'files/ may not include "settings/A.h"'),
              ("files/A.cpp", "#include <unicode/ustring.h>\n", "not of the standard library"),
              ("files/A.cpp", '#include "B.h"\n', "not written from the root"),
              ("files/A.cpp", '#include "platform/host/Presenter.h"\n', "may not include"),
              ("platform/Text.h", "#include <unicode/ustring.h>\n", "in an interface header")]),
            ("check-links", "2 documents",
             {"docs/page.md": "# A page\n## With `code`, too\n",
              "README.md": "[a](docs/page.md) [b](docs/page.md#with-code-too) [c](https://x.example/y)\n"},
             [("README.md", f"[a]({link})\n", f"README.md: {link}") for link in ("docs/none.md", "docs/page.md#none")]),
            ("check-format", "1 files",
             {"files/A.cpp": "const int kOne = 1;\n", ".clang-format": (SCRIPTS.parent / ".clang-format").read_text()},
             [("files/A.cpp", "int const kOne = 1;\n", "")]),
            ("check-headers", "1 headers compile alone",
             {"foundation/Sound.h": "#include <string>\ninline std::string f() { return {}; }\n"},
             [("foundation/Planted.h", "inline std::string g() { return {}; }\n", "foundation/Planted.h")]),
        ]:
            with self.subTest(guard):
                root = self.root / guard
                for name, text in sound.items():
                    self.write(root / name, text)
                self.check(0, passes, guard, root)
                for name, text, says in planted:
                    self.write(root / name, text)
                    self.check(1, says, guard, root)

    def test_a_test_file_outside_the_build_is_found(self):
        built = self.write("tests/files/A_test.cpp", "")
        commands = self.write("compile_commands.json",
                              json.dumps([{"directory": str(self.root), "file": str(built), "command": ""}]))
        self.check(0, "all 1", "check-tests-built", commands, self.root)
        self.write("tests/files/Planted_test.cpp", "")
        self.check(1, "tests/files/Planted_test.cpp", "check-tests-built", commands, self.root)

    def build_module(self, source, *flags, name="module.so"):
        module = self.root / name
        subprocess.run(["g++", "-shared", "-fPIC", f"-Wl,-soname,{name}", "-o", module,
                        self.write("module.cpp", source), *flags], check=True)
        return module

    def test_only_the_two_functions_are_exported(self):
        sound = 'extern "C" { void GetExportedFuncAddrs() {} int SetImportedFuncAddrs() { return 0; } }\n'
        self.check(0, "nothing else", "check-exports", self.build_module(sound))
        self.check(1, "should not be: extra", "check-exports",
                   self.build_module(sound + 'extern "C" void extra() {}\n'))
        self.check(1, "not exported: SetImportedFuncAddrs", "check-exports",
                   self.build_module('extern "C" void GetExportedFuncAddrs() {}\n'))
        planted = self.build_module("void planted() {}\n", name="libplanted.so")
        self.check(1, "direct dependency: libplanted.so", "check-exports",
                   self.build_module(sound, "-Wl,--no-as-needed", planted))
        self.check(3, "", "check-exports", self.root / "missing.so")


class CheckTextsTest(GuardTest):
    """The texts of the tree, copied."""

    def setUp(self):
        super().setUp()
        for name in "framework", "TessaroLibrary":
            shutil.copytree(RESOURCES / name, self.root / name)
            shutil.copy(RESOURCES / f"{name}.used.toml", self.root)
        self.folder = self.root / "framework"

    def check_texts(self, code, *says):
        printed = self.check(code, "", "check-texts", self.folder)
        if code == 1:
            self.assertEqual(sorted(printed.splitlines()), sorted(says))

    def edit(self, name, pattern, replacement):
        path = self.folder / name
        text, count = re.subn(pattern, replacement, path.read_text(encoding="utf-8"), count=1, flags=re.MULTILINE)
        self.assertEqual(count, 1, pattern)
        path.write_text(text, encoding="utf-8")

    def test_the_texts_as_they_are_and_one_of_the_longest_length_have_no_fault(self):
        self.edit("texts.fra.toml", "^64 = .*$", f'64 = "{"x" * 999}"')
        self.check_texts(0)
        self.folder = self.root / "TessaroLibrary"
        self.check_texts(0)

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
            self.folder = self.root / folder
            with self.subTest(says, file=name):
                sound = (self.folder / name).read_text(encoding="utf-8")
                self.edit(name, pattern, replacement)
                self.check_texts(1, f"{name}: {says}")
                (self.folder / name).write_text(sound, encoding="utf-8")

    def test_a_text_that_the_code_asks_for_newly_is_missing_everywhere(self):
        self.edit("../framework.used.toml", '"3"', '"3, 4"')
        languages = "ita int fra ger spa jap rus".split()
        self.check_texts(1, *(f"texts.{language}.toml: dialog.32755.4: missing" for language in languages))

    def test_without_a_list_the_fallback_language_is_the_measure(self):
        (self.root / "framework.used.toml").unlink()
        self.check_texts(0)
        self.edit("texts.int.toml", "^64 = .*$", "")
        self.check_texts(1, *(f"texts.{language}.toml: strings.32710.64: unused"
                        for language in "ita fra ger spa jap rus".split()))

    def test_a_file_that_is_missing_or_broken_is_found(self):
        (self.folder / "texts.rus.toml").unlink()
        self.check_texts(1, "texts.rus.toml: No such file or directory")
        (self.folder / "resources.toml").unlink()
        self.check_texts(3)


if __name__ == "__main__":
    unittest.main()
