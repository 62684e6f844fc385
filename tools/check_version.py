#!/usr/bin/env python3
"""Checks that the version stands in one place, the call of project() in CMakeLists.txt.

Usage: check_version.py [ROOT]

No file of the folders below may hold the number (code and tests write CORVANE_VERSION, pages that
are configured @PROJECT_VERSION@), and the newest version that CHANGELOG.md names must be this one.
Prints each problem as FILE:LINE and ends with status 1 when there is any.
"""
import pathlib
import re
import sys

PROJECT = re.compile(r"\bproject\([^)]*\bVERSION\s+([0-9.]+)")
RELEASE = re.compile(r"^## ([0-9.]+)", re.MULTILINE)
FOLDERS = ("src", "authoring", "bench", "cmake", "docs", "java", "messages", "tests", "tools")
DATA = ("corpus", "__pycache__")


def texts(root):
    for folder in FOLDERS:
        for path in sorted((root / folder).rglob("*")):
            if path.is_file() and not any(part in DATA for part in path.parts):
                yield path


def copies(path, version):
    number = re.compile(rf"(?<![\w.]){re.escape(version)}(?![\w]|\.\d)")
    for line, text in enumerate(path.read_text(errors="replace").splitlines(), 1):
        if number.search(text):
            yield f"{path}:{line}: the version stands here, too; write CORVANE_VERSION"


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent)
    found = PROJECT.search((root / "CMakeLists.txt").read_text())
    if not found:
        print(f"{root / 'CMakeLists.txt'}:1: project() names no VERSION")
        return 1
    version = found.group(1)
    problems = [problem for path in texts(root) for problem in copies(path, version)]
    newest = RELEASE.search((root / "CHANGELOG.md").read_text())
    if not newest or newest.group(1) != version:
        problems.append(f"{root / 'CHANGELOG.md'}:1: the newest entry is not that of {version}")
    print("\n".join(problems) if problems else f"{version}, in one place")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
