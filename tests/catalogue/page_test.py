#!/usr/bin/env python3
"""Checks that the pages on the messages say what the messages are.

Usage: page_test.py MAKE_CATALOGUE PROJECT

docs/messages-all.md must be what the generator writes now, and the table of encodings in
docs/messages.md must name those that the generator uses.
"""
import pathlib
import re
import subprocess
import sys
import tempfile


def generated_page(tool, project):
    with tempfile.TemporaryDirectory() as folder:
        page = pathlib.Path(folder, "page")
        subprocess.run([tool, "--page", project / "messages", page], check=True)
        return page.read_text()


def rows(text, pattern):
    """The locales with their encodings, in the order of the text."""
    return re.findall(pattern, text, re.MULTILINE)


def main():
    tool, project = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    problems = []
    if (project / "docs" / "messages-all.md").read_text() != generated_page(tool, project):
        problems.append("docs/messages-all.md is out of date: build the target messages_page")
    used = rows((project / "tools" / "catalogue" / "Locales.h").read_text(),
                r'^    \{"(\w+)", "([^"]+)", "([^"]+)"\},$')
    told = rows((project / "docs" / "messages.md").read_text(),
                r"^\| `(\w+)` \| ([^|]+) \| ([^|]+) \|$")
    if used != [(code, encoding, language) for code, language, encoding in told]:
        problems.append(f"docs/messages.md lists {told},\nused are {used}")
    print("\n".join(problems) if problems else f"{len(used)} locales: the pages are current")
    return 1 if problems or len(used) != 27 else 0


if __name__ == "__main__":
    sys.exit(main())
