#!/usr/bin/env python3
"""Each guard passes a sound tree and finds a planted fault."""
import json
import pathlib
import subprocess
import tempfile
import unittest

SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"


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


if __name__ == "__main__":
    unittest.main()
