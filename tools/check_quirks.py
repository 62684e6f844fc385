#!/usr/bin/env python3
"""Checks that every deliberate quirk marked in src/ has its test.

Usage: check_quirks.py [ROOT]

A quirk is marked `QUIRK(some-name): what is promised`. Its name must be unique in src/ and stand somewhere
below tests/ (as the name of a table row, or in a comment `QUIRK(some-name)` at the test). Prints
each problem as FILE:LINE and ends with status 1 when there is any.
"""
import pathlib
import re
import sys

MARK = re.compile(r"QUIRK\(([^)]*)\)(:?)")
NAME = re.compile(r"^[a-z0-9]+(-[a-z0-9]+)*$")
SUFFIXES = (".h", ".cpp")


def sources(folder):
    return sorted(p for p in folder.rglob("*") if p.suffix in SUFFIXES)


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent)
    tests = "\n".join(p.read_text(errors="replace") for p in sources(root / "tests"))
    first_place = {}
    problems = []
    for path in sources(root / "src"):
        for number, line in enumerate(path.read_text().splitlines(), 1):
            for name, colon in MARK.findall(line):
                place = f"{path}:{number}"
                if not NAME.match(name):
                    problems.append(f"{place}: quirk name '{name}' is not like first-line-label")
                elif not colon:
                    problems.append(f"{place}: quirk '{name}' promises nothing (write QUIRK({name}): what is promised)")
                elif name in first_place:
                    problems.append(f"{place}: quirk '{name}' is marked already at {first_place[name]}")
                elif not re.search(rf"(?<![\w-]){re.escape(name)}(?![\w-])", tests):
                    problems.append(f"{place}: quirk '{name}' has no test that names it")
                first_place.setdefault(name, place)
    print("\n".join(problems) if problems else f"{len(first_place)} quirks, each with its test")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
