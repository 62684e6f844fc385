#!/usr/bin/env python3
"""Checks that every link in the pages leads to a file that exists, and to a heading that it has.

Usage: check_links.py [ROOT]

Prints each problem as FILE:LINE and ends with status 1 when there is any.
"""
import pathlib
import re
import sys

LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")
CODE = re.compile(r"`[^`]*`")
FOLDERS = (".", "docs", "examples/sample", "bench", "messages", "tests")


def lines_of(page):
    """The lines outside blocks of code, with their numbers."""
    in_block = False
    for number, line in enumerate(page.read_text().splitlines(), 1):
        if line.lstrip().startswith("```"):
            in_block = not in_block
        elif not in_block:
            yield number, line


def anchors_of(page):
    """The headings as links write them; the second of two equal ones ends with -1."""
    seen = {}
    for _, line in lines_of(page):
        if re.match(r"#+ ", line):
            name = re.sub(r"[^\w\- ]", "", line.lstrip("#").strip().lower()).replace(" ", "-")
            seen[name] = seen.get(name, -1) + 1
            yield f"{name}-{seen[name]}" if seen[name] else name


def problem_of(page, target):
    name, _, anchor = target.partition("#")
    path = (page.parent / name).resolve() if name else page
    if not path.exists():
        return f"there is no {name}"
    if anchor and anchor not in set(anchors_of(path)):
        return f"{path.name} has no heading #{anchor}"
    return ""


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent)
    pages = sorted(page for folder in FOLDERS for page in (root / folder).glob("*.md"))
    links = [(page, number, target) for page in pages for number, line in lines_of(page)
             for target in LINK.findall(CODE.sub("", line)) if not re.match(r"\w+:", target)]
    problems = [f"{page}:{number}: {problem}" for page, number, target in links
                if (problem := problem_of(page, target))]
    if len(links) < 20:
        problems.append(f"only {len(links)} links were found in {root}")
    print("\n".join(problems) or f"{len(links)} links in {len(pages)} pages, all good")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
