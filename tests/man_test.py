#!/usr/bin/env python3
"""Checks that the manual pages of corvane-pack tell all of its commands and options, and no others.

Usage: man_test.py PROGRAM PAGES

PAGES holds the built pages. Where there is groff, it must read them without a warning. Prints each
problem and ends with status 1 when there is any.
"""
import pathlib
import re
import shutil
import subprocess
import sys


def help_of(program, *command):
    return subprocess.run([program, *command, "--help"], capture_output=True, text=True,
                          check=True).stdout


def options_of(text):
    return set(re.findall(r"(?<![\w-])--[a-z][a-z-]*", text))


def commands_of(text):
    return re.findall(r"^  (\w[\w-]*)", text.split("Subcommands:")[1], re.MULTILINE)


def page_options(page):
    text = page.read_text().replace("\\-", "-").replace("\\fB", "").replace("\\fR", "")
    section = re.split(r"^\.SH OPTIONS\n", text, flags=re.MULTILINE)
    return options_of(re.split(r"^\.SH ", section[1], flags=re.MULTILINE)[0]) if len(section) > 1 else set()


def check_page(page, wanted):
    if not page.is_file():
        yield f"there is no page {page.name}"
        return
    told = page_options(page)
    for option in sorted(wanted - told):
        yield f"{page.name}: {option} is missing under OPTIONS"
    for option in sorted(told - wanted):
        yield f"{page.name}: {option} is no option of that command"
    if shutil.which("groff"):
        result = subprocess.run(["groff", "-ww", "-man", "-Tutf8", "-z", page], capture_output=True,
                                text=True)
        yield from result.stderr.splitlines()


def main():
    program, pages = sys.argv[1], pathlib.Path(sys.argv[2])
    top = help_of(program)
    problems = list(check_page(pages / "corvane-pack.1", options_of(top)))
    main_page = (pages / "corvane-pack.1").read_text()
    for command in commands_of(top):
        problems += check_page(pages / f"corvane-pack-{command}.1", options_of(help_of(program, command)))
        if f"\n.B {command}\n" not in main_page:
            problems.append(f"corvane-pack.1: the command {command} is missing")
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
