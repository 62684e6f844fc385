#!/usr/bin/env python3
"""Checks that every promise of docs/promises.md names tests, and that the tests exist.

Usage: check_promises.py [ROOT]

A promise is a list item that begins in bold; it ends with "Proved by `Suite.Test`, ...". Prints each
problem as FILE:LINE and ends with status 1 when there is any.
"""
import pathlib
import re
import sys

PAGE = "docs/promises.md"
PROMISE = re.compile(r"^- \*\*.*(?:\n(?!\n|- |#).*)*", re.MULTILINE)
PROOF = re.compile(r"Proved\s+by\s+(.*)", re.DOTALL)
TEST_NAME = re.compile(r"`([^`]*)`")
TEST = re.compile(r"^TEST(?:_F|_P)?\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.MULTILINE)


def tests_of(root):
    return {".".join(names) for path in (root / "tests").rglob("*.cpp")
            for names in TEST.findall(path.read_text(errors="replace"))}


def problems_of(promise, tests):
    proof = PROOF.search(promise)
    named = TEST_NAME.findall(proof[1]) if proof else []
    if not named:
        yield "a promise is proved by no test (end it with: Proved by `Suite.Test`.)"
    for name in named:
        if name not in tests:
            yield f"there is no test '{name}'"


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent)
    page = (root / PAGE).read_text()
    tests = tests_of(root)
    promises = list(PROMISE.finditer(page))
    problems = [f"{PAGE}:{page.count(chr(10), 0, match.start()) + 1}: {problem}"
                for match in promises for problem in problems_of(match[0], tests)]
    if not promises:
        problems.append(f"{PAGE}: no promise was found")
    print("\n".join(problems) or f"{len(promises)} promises, each with its tests")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
