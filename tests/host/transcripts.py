#!/usr/bin/env python3
"""Replays console transcripts and compares what comes.

usage: transcripts.py [--update] BIN_DIR BUNDLES_DIR... -- FILE...

A transcript is the text of a terminal: a line "$ COMMAND" is run by the shell, the lines "> LINE" after it (or the JSON
events of the same meaning) are what is typed into it, everything else is what it prints. A command that ends with
another exit code than 0 is followed by "[exit CODE]". In a .md file the fenced blocks marked "console" are transcripts.

Each file (each block) starts in an empty folder in which the built bundles and the project's samples lie; "data" is the
data folder; "exchange-halves" makes text of a settings file and the other way round. Names of folders of this machine
are shown as TMP and BUNDLES. --update writes what came into the files.
"""
import difflib
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile


PROJECT = pathlib.Path(__file__).resolve().parents[2]


EXCHANGE_HALVES = """#!/usr/bin/env python3
import sys
sys.stdout.buffer.write(bytes((byte << 4 | byte >> 4) & 255 for byte in sys.stdin.buffer.read()))
"""


class Replayer:
    def __init__(self, bin_dir, bundle_dirs):
        self.bin_dir = pathlib.Path(bin_dir).resolve()
        self.bundle_dirs = [pathlib.Path(name).resolve() for name in bundle_dirs]

    def run(self, transcript):
        """Each command of the transcript, what it prints today, and its exit code."""
        with tempfile.TemporaryDirectory(prefix="tessaro-") as name:
            folder = pathlib.Path(name).resolve()
            for bundle in (bundle for bundles in self.bundle_dirs for bundle in bundles.glob("*.bundle")):
                (folder / bundle.name).symlink_to(bundle)
            (folder / "samples").symlink_to(PROJECT / "samples")
            (folder / "bin").mkdir()
            (folder / "bin/exchange-halves").write_text(EXCHANGE_HALVES)
            (folder / "bin/exchange-halves").chmod(0o755)
            environment = dict(os.environ, PATH=f"{self.bin_dir}:{folder}/bin:{os.environ['PATH']}", LC_ALL="C.UTF-8",
                               TESSARO_DATA_DIR=str(folder / "data"))
            for command, typed in commands(transcript):
                ran = subprocess.run(["bash", "-c", command], cwd=folder, env=environment, input=typed.encode(),
                                     stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=100)
                text = ran.stdout.decode("utf-8", "replace").replace(str(folder), "TMP")
                for bundles in self.bundle_dirs:
                    text = text.replace(str(bundles), "BUNDLES")
                yield command, text, ran.returncode

    def replay(self, transcript):
        """The transcript as it comes out today."""
        return "".join(f"$ {command}\n{text}" + (f"[exit {code}]\n" if code else "")
                       for command, text, code in self.run(transcript))


def commands(transcript):
    """Each command of a transcript with what is typed into it."""
    found = []
    for line in transcript.splitlines():
        if line.startswith("$ "):
            found.append((line[2:], []))
        elif line.startswith("> ") and found:
            found[-1][1].append(line[2:])
        elif line.startswith("{") and found and json.loads(line).get("event") == "command":
            found[-1][1].append(json.loads(line)["text"])
    return [(command, "".join(line + "\n" for line in typed)) for command, typed in found]


FENCED = re.compile(r"(?<=^```console\n)(.*?)(?=^```$)", re.MULTILINE | re.DOTALL)
WHOLE = re.compile(r"\A(.*)\Z", re.DOTALL)


def blocks_of(path):
    """What a transcript in this file looks like."""
    return FENCED if path.suffix == ".md" else WHOLE


def main():
    arguments = sys.argv[1:]
    update = arguments[:1] == ["--update"]
    arguments = arguments[update:]
    if "--" not in arguments[2:-1]:
        print(__doc__)
        return 2
    split = arguments.index("--")
    replayer = Replayer(arguments[0], arguments[1:split])
    differing = 0
    for name in arguments[split + 1:]:
        path = pathlib.Path(name)
        expected = path.read_text(encoding="utf-8")
        actual = blocks_of(path).sub(lambda block: replayer.replay(block.group(1)), expected)
        if "$ " not in expected:
            print(f"{path}: no transcript in it")
            differing += 1
        if update:
            path.write_text(actual, encoding="utf-8")
        elif expected != actual:
            differing += 1
            sys.stdout.writelines(difflib.unified_diff(expected.splitlines(True), actual.splitlines(True), str(path),
                                                   "what came"))
    return 1 if differing else 0


if __name__ == "__main__":
    sys.exit(main())
