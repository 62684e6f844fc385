#!/usr/bin/env python3
"""Checks that docs/troubleshooting.md and the launcher's texts agree, corvane-launcher(1) and the
launcher's options, corvane-launcher-files(5) and the names in tag files.

Usage: docs_test.py PROJECT

Every text that the page explains, `**`text {place}`**`, must be made of string literals of src/ and
entries of the message catalogue; and every literal and entry that reads like words must stand on the
page. The manual page must name every option, that of the files every tag, command and function. Prints each
problem and ends with status 1 when there is any.
"""
import pathlib
import re
import sys

EXPLAINED = re.compile(r"\*\*`([^`]+)`\*\*")
PLACE = re.compile(r"\{\w+\}")
FORMAT = re.compile(r"%l?[sd]")
OPTION = re.compile(r'^ *\{"(-[a-z:]+)", (?:true|false),', re.MULTILINE)
CONSTANT = re.compile(r'constexpr const char\* k\w+ = "(\w+)";')
ROW = re.compile(r'^ *\{"(\w+)", (?:Command|Function)::', re.MULTILINE)
WORDS = re.compile(r"[A-Za-z]{2,} [A-Za-z]{2,}")
# A comment, or string literals that the compiler joins.
TOKEN = re.compile(r'//[^\n]*|"(?:[^"\\\n]|\\.)*"(?:\s*"(?:[^"\\\n]|\\.)*")*|\'(?:[^\'\\]|\\.)\'')
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
ESCAPES = {"n": "\n", "t": "\t", '"': '"', "\\": "\\"}


def unescape(text):
    return re.sub(r"\\(.)", lambda m: ESCAPES.get(m.group(1), m.group(0)), text)


def literals_of(source):
    for token in TOKEN.findall(source):
        if token.startswith('"'):
            yield unescape("".join(LITERAL.findall(token)))


def source_texts(root):
    return {text for path in sorted((root / "src").rglob("*.[ch]*"))
            for text in literals_of(path.read_text())}


def catalogue_texts(root):
    template = (root / "messages" / "corvane-launcher.pot").read_text()
    for entry in re.findall(r'^msgid ((?:"[^\n]*"\n)+)', template, re.MULTILINE):
        yield unescape("".join(LITERAL.findall(entry)))


def is_made_of(text, parts):
    """True when `text` is a sequence of parts; blanks at its two ends need not be there."""
    reached = {0}
    for position in range(len(text)):
        if position not in reached:
            continue
        for part in parts:
            forms = {part} | ({part.lstrip()} if position == 0 else set())
            for form in forms:
                if form and text.startswith(form, position):
                    reached.add(position + len(form))
                if form.rstrip() and text[position:] == form.rstrip():
                    return True
    return len(text) in reached


def options_that_the_manual_lacks(root):
    manual = (root / "docs" / "man" / "corvane-launcher.1.in").read_text().replace("\\-", "-")
    options = OPTION.findall((root / "src" / "launcher" / "LauncherCmdLine.cpp").read_text())
    if len(options) < 10:
        yield f"only {len(options)} options were found in src/launcher/LauncherCmdLine.cpp"
    for option in options:
        if not re.search(re.escape(option) + r"(?![\w:-])", manual):
            yield f"docs/man/corvane-launcher.1.in does not name the option {option}"


def names_that_the_page_of_files_lacks(root):
    manual = (root / "docs" / "man" / "corvane-launcher-files.5.in").read_text()
    rooms = {"tagfile/TagNames.h": CONSTANT, "instructions/ScriptGrammar.cpp": ROW,
             "launchscript/LaunchScriptGrammar.cpp": ROW}
    for room, pattern in rooms.items():
        names = pattern.findall((root / "src" / room).read_text())
        if len(names) < 9:
            yield f"only {len(names)} names were found in src/{room}"
        for name in names:
            if not re.search(rf"(?<!\w){name}(?!\w)", manual):
                yield f"docs/man/corvane-launcher-files.5.in does not name {name} of src/{room}"


def main():
    root = pathlib.Path(sys.argv[1])
    page = re.sub(r"\n\s*", " ", (root / "docs" / "troubleshooting.md").read_text())
    catalogue = set(catalogue_texts(root))
    texts = {part for text in source_texts(root) | catalogue for part in FORMAT.split(text) if part}
    problems = [*options_that_the_manual_lacks(root), *names_that_the_page_of_files_lacks(root)]
    for explained in EXPLAINED.findall(page):
        for piece in PLACE.split(explained):
            if piece.strip() and not is_made_of(piece, texts):
                problems.append(f"explained, but not a text of the launcher: {explained!r} at {piece!r}")
    for text in sorted(texts):
        for line in text.split("\n"):
            if WORDS.search(line) and line.strip() not in page:
                problems.append(f"not explained in docs/troubleshooting.md: {line!r}")
    if len(catalogue) < 40 or len(texts) < 100:
        problems.append(f"only {len(texts)} texts were found in src/ and messages/")
    print("\n".join(problems) or f"{len(texts)} texts, all explained")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
