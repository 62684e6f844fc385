#!/usr/bin/env python3
"""Checks that no tag name is spelt out where src/tagfile/TagNames.h has a constant for it.

Usage: check_tags.py [ROOT]

A misspelt literal would read as an empty value. So src/ and authoring/ hold no literal that is the
name of a tag, and none at all where an operation of a tag file wants a name. Prints each problem as
FILE:LINE and ends with status 1 when there is any.
"""
import pathlib
import re
import sys

NAMES_FILE = "src/tagfile/TagNames.h"
CONSTANT = re.compile(r'constexpr const char\* k\w+ = "(\w+)";')
LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')
ASKED = re.compile(r'\b(?:(?:(?:get|set|append)(?:Bool)?Tag\w+|removeValue|tagValue)\(|firstValue\(\w+, )"')


def problems_of(path, names):
    for number, line in enumerate(path.read_text().splitlines(), 1):
        spelt = [text for text in LITERAL.findall(line) if text in names]
        if spelt or ASKED.search(line):
            what = spelt[0] if spelt else LITERAL.findall(line)[0]
            yield f"{path}:{number}: the name '{what}' is spelt out; use its constant in {NAMES_FILE}"


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent)
    names_file = root / NAMES_FILE
    text = names_file.read_text()
    names = set(CONSTANT.findall(text[:text.index("namespace actionname")]))
    files = sorted(p for folder in ("src", "authoring") for p in (root / folder).rglob("*")
                   if p.suffix in (".h", ".cpp") and p != names_file)
    problems = [problem for path in files for problem in problems_of(path, names)]
    print("\n".join(problems) if problems else f"{len(names)} names, each spelt once")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
