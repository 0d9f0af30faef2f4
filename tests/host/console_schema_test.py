#!/usr/bin/env python3
"""Checks that what the console prints as JSON is what docs/console.md describes.

usage: console_schema_test.py BIN_DIR BUNDLES_DIR... -- DOCS_FILE TRANSCRIPT...

Runs the sessions of the transcripts with --json added. Each line must be an object with the schema version, an event
that the table in the documentation names, and that event's fields, no other. Every event of the table must occur. Every word that
"help" lists must be in the table of commands.
"""
import json
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import transcripts  # noqa: E402  (beside this file)

def documented_events(text):
    """Event name -> (fields that are always there, fields that may be)."""
    events = {}
    table = text[text.index("\n## JSON\n"):]
    for name, fields in re.findall(r"^\| `(\w+)` \|(.*?)\|", table, re.MULTILINE):
        always = set(re.findall(r"`(\w+)`(?!\?)", fields))
        events[name] = (always, set(re.findall(r"`(\w+)`\?", fields)))
    return events


def fault(line, events, words, seen):
    """What is wrong with a printed line, or nothing."""
    printed = json.loads(line)
    schema, name = printed.pop("schema"), printed.pop("event")
    seen.add(name)
    if schema != 1 or name not in events or name == "help" and printed["usage"].split()[0] not in words:
        return "the schema version, the event or the word is not documented"
    always, optional = events[name]
    if not always <= printed.keys() <= always | optional:
        return f"documented fields are {sorted(always)} and perhaps {sorted(optional)}"
    return None


def main():
    split = sys.argv.index("--")
    bin_dir, *bundle_dirs = sys.argv[1:split]
    docs, *files = sys.argv[split + 1:]
    text = pathlib.Path(docs).read_text(encoding="utf-8")
    events = documented_events(text)
    words = set(re.findall(r"^\| `(\w+)", text[text.index("\n## Commands\n"):], re.MULTILINE))
    replayer = transcripts.Replayer(bin_dir, bundle_dirs)
    seen = set()
    faults = []
    for path in map(pathlib.Path, [docs, *files]):
        for block in transcripts.blocks_of(path).findall(path.read_text(encoding="utf-8")):
            with_json = re.sub(r"^\$ tessaro run(?: --json)?", "$ tessaro run --json", block, flags=re.MULTILINE)
            for command, printed, _ in replayer.run(with_json):
                if not command.startswith("tessaro run"):
                    continue
                for line in printed.splitlines():
                    wrong = None if line.startswith("tessaro: ") else fault(line, events, words, seen)
                    faults += [f"{path.name}: {wrong}: {line}"] if wrong else []
    faults += [f"event {name} is documented and never printed" for name in sorted(set(events) - seen)]
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
