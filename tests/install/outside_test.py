#!/usr/bin/env python3
"""The framework from outside: installs it, builds add-ons against it, makes the Debian package and installs that.

Builds the release preset when it is not up to date. Leaves nothing behind but that build.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
RELEASE = PROJECT / "build/release"
SUITE = f"lib/{sys.implementation._multiarch}/tessaro"
sys.path.insert(0, str(PROJECT / "tests/host"))
import transcripts  # noqa: E402


def run(*command, cwd=PROJECT, says="", **options):
    """What the command prints. Fails the test when it fails."""
    result = subprocess.run([str(word) for word in command], cwd=cwd, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, text=True, errors="replace", timeout=1200, **options)
    if result.returncode != 0 or says not in result.stdout:
        raise AssertionError(f"{' '.join(map(str, command))}: exit {result.returncode}\n{result.stdout[-4000:]}")
    return result.stdout


def elf_files(folder):
    for path in sorted(folder.rglob("*")):
        if path.is_file() and not path.is_symlink() and path.read_bytes().startswith(b"\x7fELF"):
            yield path


def setUpModule():
    run("cmake", "--preset", "release", "-U", "CMAKE_INSTALL_LIBDIR")
    run("cmake", "--build", "--preset", "release")


class OutsideTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory(prefix="tessaro-outside-")
        cls.addClassCleanup(temporary.cleanup)
        cls.folder = pathlib.Path(temporary.name).resolve()
        # Installed at one place and moved to another: nothing may remember where it was.
        run("cmake", "--install", RELEASE, "--prefix", cls.folder / "first")
        cls.prefix = cls.folder / "a prefix"
        (cls.folder / "first").rename(cls.prefix)

    def session(self, program, words, *options):
        with tempfile.TemporaryDirectory() as data:
            return run(program, "run", *options, input="".join(word + "\n" for word in words),
                       env={"PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8", "TESSARO_DATA_DIR": data})

    def build(self, source, target, *options):
        run("cmake", "-S", source, "-B", target, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={self.prefix}", *options)
        run("cmake", "--build", target)
        return target / "bundles"

    def check_suite(self, prefix):
        """The installed host runs, with its add-on, documents and library."""
        program = prefix / "bin/tessaro"
        said = self.session(program, ["choose 1", "click 6", "click 7", "click 1",
                                      f'libraries add "{prefix}/{SUITE}/QRN_Library"', 'part "QRN Chair"'],
                            "--opener", "record")
        self.assertIn('menu 1 "Tessaro Library" (TessaroLibrary, 32501)', said)
        if (RELEASE / "bundles/01 - Libreria Tessaro.pdf").exists():
            for part in "01", "02":
                self.assertIn(f'opens the document "{prefix}/{SUITE}/{part} - Libreria Tessaro.pdf"', said)
        self.assertIn('part "QRN Chair" (7), object', said)
        run(program, "serve", "--help")

    def test_the_installed_tree_runs_wherever_it_lies(self):
        self.check_suite(self.prefix)
        for path in elf_files(self.prefix):
            for found in re.findall(r"\((?:RPATH|RUNPATH)\).*\[(.*)\]", run("readelf", "-d", path)):
                self.assertRegex(found, r"^\$ORIGIN(/\.\.)*(/lib/[^/]+/tessaro)?$", path)
            self.assertNotIn(str(PROJECT).encode(), path.read_bytes(), path)
        for path in self.prefix.rglob("*.cmake"):
            self.assertNotIn(str(PROJECT), path.read_text(), path)

    def test_the_documents_and_what_they_name_are_there(self):
        run(PROJECT / "scripts/check-links", self.prefix / "share/doc/tessaro", says="every link")
        run(self.prefix / "share/tessaro/scripts/check-texts", self.prefix / "share/tessaro/framework", says="texts in")

    def test_the_installed_headers_compile(self):
        include = self.prefix / "include/tessaro"
        headers = [path.relative_to(include) for path in sorted(include.rglob("*.h"))]
        self.assertGreater(len(headers), 40)
        run("g++", "-std=c++20", "-fsyntax-only", "-I", include, "-x", "c++", "-",
            input="".join(f'#include "{header}"\n' for header in headers))

    def test_the_example_is_built_and_answers_as_the_suite_when_asked_to(self):
        source = shutil.copytree(PROJECT / "examples/TessaroParts", self.folder / "parts")
        answers = {}
        for option in "OFF", "ON":
            bundles = self.build(source, self.folder / f"parts-{option}", f"-DTESSARO_PARTS_IS_SUITE={option}")
            said = self.session(self.prefix / "bin/tessaro", ["choose 1", "answer 1", "choose 3", "answer 1"],
                                "--bundle", bundles / "TessaroParts.bundle")
            self.assertIn("QRN Coat Stand", said)
            self.assertNotIn("problem:", said)
            answers[option] = said
            run(PROJECT / "scripts/check-exports", bundles / "TessaroParts.bundle/TessaroParts.so")
        self.assertIn("The suite is not present.", answers["OFF"])
        self.assertIn("The suite is present: its main module responds.", answers["ON"])

    def test_the_page_for_newcomers_leads_to_a_running_add_on(self):
        page = (PROJECT / "docs/your-first-add-on.md").read_text(encoding="utf-8")
        folder = self.folder / "newcomer"
        folder.mkdir()
        environment = dict(os.environ, CMAKE_PREFIX_PATH=str(self.prefix), LC_ALL="C.UTF-8",
                           PATH=f"{self.prefix}/bin:{os.environ['PATH']}", TESSARO_DATA_DIR=str(folder / "data"))
        files = commands = sessions = end = 0
        for block in re.finditer(r"^```(\w+)\n(.*?)^```$", page, re.DOTALL | re.MULTILINE):
            kind, text = block.groups()
            before, end = page[end:block.start()].strip().split("\n\n")[-1], block.end()
            if kind == "sh":
                commands += 1
                run("bash", "-e", "-c", text, cwd=folder, env=environment)
            elif kind == "console":
                sessions += 1
                for command, typed in transcripts.commands(text):
                    said = run("bash", "-c", command, cwd=folder, env=environment, input=typed)
                    self.assertEqual(f"$ {command}\n{said}", text)
            else:
                name = re.findall(r"`([\w./]+\.(?:txt|toml|cpp))`", before)[0]
                path = folder / name
                path.parent.mkdir(exist_ok=True)
                path.write_text(text, encoding="utf-8")
                files += 1
        self.assertEqual((files, commands, sessions), (5, 1, 1))

    def test_the_debian_package_installs_runs_and_goes_away(self):
        run("cpack", "-G", "DEB", "-B", self.folder / "package", cwd=RELEASE)
        package, = (self.folder / "package").glob("*.deb")
        self.assertRegex(package.name, r"^tessaro_22\.0\.4_\w+\.deb$")
        depends = run("dpkg-deb", "-f", package, "Depends")
        for library in "libc6", "libstdc++6", "libicu", "libcurl4", "libedit2":
            self.assertIn(library, depends)
        run("dpkg-deb", "-e", package, self.folder / "control")
        self.assertEqual({path.name for path in (self.folder / "control").iterdir()}, {"control", "md5sums"})
        contents = run("dpkg-deb", "--contents", package)
        self.assertEqual([line for line in contents.splitlines() if " root/root " not in line], [])
        for wanted in ("./usr/bin/tessaro", f"./usr/{SUITE}/TessaroLibrary.bundle/TessaroLibrary.so",
                       f"./usr/{SUITE}/QRN_Library/Furniture/QRN Chair.gsm",
                       "/cmake/Tessaro/TessaroConfig.cmake", "./usr/share/doc/tessaro/copyright",
                       "./usr/share/doc/tessaro/examples/TessaroParts/TessaroParts.cpp"):
            self.assertIn(wanted, contents)
        run("dpkg-deb", "-x", package, self.folder / "extracted")
        self.check_suite(self.folder / "extracted/usr")
        if os.geteuid() == 0:
            self.install_and_remove(package)

    def install_and_remove(self, package):
        """With a package database of its own: the machine's is not touched."""
        root = self.folder / "root"
        (root / "var/lib/dpkg/updates").mkdir(parents=True)
        (root / "var/lib/dpkg/info").mkdir()
        (root / "var/lib/dpkg/status").touch()
        dpkg = ["dpkg", f"--root={root}", "--force-depends", "--log=/dev/null"]
        run(*dpkg, "-i", package)
        run("dpkg-query", f"--admindir={root}/var/lib/dpkg", "-W", "tessaro", says="22.0.4")
        self.check_suite(root / "usr")
        run(*dpkg, "--purge", "tessaro")
        left = [path for path in root.rglob("*") if path.is_file() and "var/lib/dpkg" not in str(path)]
        self.assertEqual(left, [])
        self.assertFalse((root / "usr").exists())


if __name__ == "__main__":
    unittest.main()
