#!/usr/bin/env python3
"""Shows the messages of both stubs in many locales, and compares what a terminal of each would show.

Usage: locales_test.py [--show] [--root ROOT] BIN LOCALES PROJECT
       locales_test.py --list [--root ROOT]

BIN holds both stubs and corvane-pack. LOCALES is a folder of compiled locales (LOCPATH), or with
--root the word "installed": then the stubs, which must be static, run in that root, on the C library
and the locales of another system. --show prints what is seen; --list the locales to make (name,
source and charset). Status 77: nothing could be tried.

Run by scripts/locales.sh, which makes the locales and the roots, and as a test where they are there.
"""
import argparse
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

SKIPPED = 77

# (locale, its charset, the language that corvane-launcher-any speaks, and that of corvane-launcher
# where it differs)
ROWS = [
    ("bg_BG", "CP1251", "bg"), ("cs_CZ", "ISO-8859-2", "cs"), ("da_DK", "ISO-8859-1", "da"),
    ("de_DE", "ISO-8859-1", "de"), ("de_DE@euro", "ISO-8859-15", "de"),
    ("el_GR", "ISO-8859-7", "el"), ("en_US", "ISO-8859-1", "en"), ("es_ES", "ISO-8859-1", "es"),
    ("es_ES@euro", "ISO-8859-15", "es"), ("fi_FI", "ISO-8859-1", "fi"),
    ("fr_FR", "ISO-8859-1", "fr"), ("fr_FR@euro", "ISO-8859-15", "fr"),
    ("hr_HR", "ISO-8859-2", "hr"), ("hu_HU", "ISO-8859-2", "hu"), ("it_IT", "ISO-8859-1", "it"),
    ("ja_JP.EUC-JP", "EUC-JP", "ja"), ("ko_KR.EUC-KR", "EUC-KR", "ko"),
    ("nb_NO", "ISO-8859-1", "no"), ("nl_NL", "ISO-8859-1", "nl"), ("nn_NO", "ISO-8859-1", "no"),
    ("pl_PL", "ISO-8859-2", "pl"), ("pt_BR", "ISO-8859-1", "pt_BR"),
    ("pt_PT", "ISO-8859-1", "pt"), ("ro_RO", "ISO-8859-2", "ro"), ("ru_RU", "ISO-8859-5", "ru"),
    ("ru_RU.KOI8-R", "KOI8-R", "ru"), ("ru_RU.CP1251", "CP1251", "ru"),
    ("sk_SK", "ISO-8859-2", "sk"), ("sl_SI", "ISO-8859-2", "sl"), ("sv_SE", "ISO-8859-1", "sv"),
    ("tr_TR", "ISO-8859-9", "tr"), ("zh_CN", "GB2312", "zh"), ("zh_CN.GBK", "GBK", "zh"),
    ("zh_CN.GB18030", "GB18030", "zh"), ("zh_TW", "BIG5", "zh_TW"),
    ("zh_TW.EUC-TW", "EUC-TW", "zh_TW"), ("uk_UA.KOI8-U", "KOI8-U", "en"),
    ("bg_BG.UTF-8", "UTF-8", "bg"), ("cs_CZ.UTF-8", "UTF-8", "cs"), ("da_DK.UTF-8", "UTF-8", "da"),
    ("de_DE.UTF-8", "UTF-8", "de"), ("el_GR.UTF-8", "UTF-8", "el"), ("en_US.UTF-8", "UTF-8", "en"),
    ("es_ES.UTF-8", "UTF-8", "es"), ("fi_FI.UTF-8", "UTF-8", "fi"), ("fr_FR.UTF-8", "UTF-8", "fr"),
    ("hr_HR.UTF-8", "UTF-8", "hr"), ("hu_HU.UTF-8", "UTF-8", "hu"), ("it_IT.UTF-8", "UTF-8", "it"),
    ("ja_JP.UTF-8", "UTF-8", "ja"), ("ko_KR.UTF-8", "UTF-8", "ko"), ("nb_NO.UTF-8", "UTF-8", "no"),
    ("nl_NL.UTF-8", "UTF-8", "nl"), ("nn_NO.UTF-8", "UTF-8", "no"), ("pl_PL.UTF-8", "UTF-8", "pl"),
    ("pt_BR.UTF-8", "UTF-8", "pt_BR"), ("pt_PT.UTF-8", "UTF-8", "pt"),
    ("ro_RO.UTF-8", "UTF-8", "ro"), ("ru_RU.UTF-8", "UTF-8", "ru"), ("sk_SK.UTF-8", "UTF-8", "sk"),
    ("sl_SI.UTF-8", "UTF-8", "sl"), ("sv_SE.UTF-8", "UTF-8", "sv"), ("tr_TR.UTF-8", "UTF-8", "tr"),
    ("zh_CN.UTF-8", "UTF-8", "zh"), ("zh_TW.UTF-8", "UTF-8", "zh_TW"),
    ("zh_HK.UTF-8", "UTF-8", "en"), ("fil_PH.UTF-8", "UTF-8", "en", "fi"),
    ("kok_IN.UTF-8", "UTF-8", "en", "ko"), ("csb_PL.UTF-8", "UTF-8", "en", "cs"),
]
# In a foreign root a few will do: what its C library knows is the same everywhere.
IN_ROOTS = ("de_DE", "de_DE@euro", "en_US", "ja_JP.EUC-JP", "ru_RU.KOI8-R", "zh_TW", "ro_RO",
            "zh_CN.GB18030", "de_DE.UTF-8")
ROOT_PATH = "/usr/sbin:/usr/bin:/sbin:/bin"
OLDER = str.maketrans("ȘșȚț", "ŞşŢţ")


class Texts:
    def __init__(self, project):
        self.project = project
        rows = re.findall(r'^    \{"(\w+)", "([^"]+)", "[^"]+"\},$',
                          (project / "tools/catalogue/Locales.h").read_text(), re.MULTILINE)
        self.traditional = dict(rows)
        self.tables = {code: self.read(code) for code, _ in rows}

    def read(self, code):
        name, kind = ("corvane-launcher.pot", "msgid") if code == "en" else (f"{code}.po", "msgstr")
        text = (self.project / "messages" / name).read_text()
        entry = rf'^msgctxt "(\d+)"\nmsgid "(.*)"\nmsgstr "(.*)"$'
        group = 1 if kind == "msgid" else 2
        return {int(row[0]): row[group].replace("\\\\", "\\").replace('\\"', '"')
                for row in re.findall(entry, text, re.MULTILINE)}


def encode(text, charset):
    """As a terminal of the charset reads it back; Romanian commas as cedillas where it has none."""
    if charset == "EUC-TW":  # unknown to Python
        return subprocess.run(["iconv", "-f", "UTF-8", "-t", charset], input=text.encode(),
                              capture_output=True, check=True).stdout
    try:
        return text.encode(charset)
    except UnicodeEncodeError:
        return text.translate(OLDER).encode(charset)


def shown_part(title, charset):
    """What a title shows: the first letter that the charset lacks ends it."""
    for end in range(len(title), 0, -1):
        try:
            if charset == "EUC-TW" or title[:end].encode(charset):
                return title[:end]
        except UnicodeEncodeError:
            pass
    return ""


def decode(out, charset):
    return subprocess.run(["iconv", "-c", "-f", charset, "-t", "UTF-8"], input=out,
                          capture_output=True).stdout.decode(errors="replace")


class Setups:
    """One setup for each stub and title, packed when it is asked for."""

    def __init__(self, folder, programs):
        self.folder, self.programs = folder, programs
        (folder / "i.tag").write_text("INSTRUCTIONS:\nINITIALIZE_UI\nINSTALL_JVM 2\n/:\n")
        (folder / "install").write_text("#!/bin/sh\nexit 1\n")

    def of(self, stub, title, name):
        setup = self.folder / f"{name}-{stub}"
        if not setup.exists():
            escaped = "".join(c if c < "\x7f" else f"\\u{ord(c):04x}" for c in title)
            (self.folder / "l.tag").write_text(f"DESC: {escaped}\nCOMMAND: true\n")
            manifest = {"files": [{"type": "instructions", "path": "i.tag", "id": 1},
                                  {"type": "jvm-installer", "path": "install", "id": 2},
                                  {"type": "launchscript", "path": "l.tag", "id": 3}]}
            (self.folder / "m.json").write_text(json.dumps(manifest))
            subprocess.run([self.programs / "corvane-pack", "pack", self.folder / "m.json", "--stub",
                            self.programs / stub, "--output", setup], check=True,
                           stdout=subprocess.DEVNULL)
        return setup


class Place:
    """Where the setups run: on this machine with a folder of locales, or in a root."""

    def __init__(self, root, locales):
        self.root = root
        self.environment = {} if root else {"LOCPATH": locales}
        if root:
            listed = subprocess.run(enter(root, "/usr/bin/locale", "-a"), capture_output=True)
            names = listed.stdout.decode(errors="replace").split()
        else:
            names = os.listdir(locales)
        self.names = {plain(name) for name in names}

    def has(self, locale):
        return plain(locale) in self.names and (not self.root or locale in IN_ROOTS)

    def run(self, setup, locale):
        command = [setup]
        if self.root:
            shutil.copy(setup, pathlib.Path(self.root, "tmp"))
            command = enter(self.root, f"/tmp/{setup.name}")
        return subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True,
                              env={"LANG": locale, "PATH": ROOT_PATH, **self.environment})


def enter(root, *command):
    if os.getuid() == 0:
        return ["chroot", root, *command]
    return ["unshare", "--map-root-user", "chroot", root, *command]


def plain(name):
    head, _, charset = name.partition(".")
    return head + (("." + re.sub("[^a-z0-9]", "", charset.lower())) if charset else "")


def wanted_output(texts, title, charset, language, encoding):
    initializing, preparing, question = (texts.tables[language][i] for i in (1, 8, 17))
    shown = encode(shown_part(title, charset), charset)
    return (shown + b"\n\n" + encode(initializing, encoding).replace(b"%s", shown) + b"\n\n" +
            encode(preparing, encoding) + b"\n" + encode(question, encoding) + b"\n\n")


def look(texts, setups, place, show):
    """Runs both stubs in each locale that there is; returns the number of runs and of failures."""
    count = failures = 0
    for locale, charset, language, *prefix in filter(lambda row: place.has(row[0]), ROWS):
        title = texts.tables[language][34]
        for stub, speaks in (("corvane-launcher-any", language),
                             ("corvane-launcher", (prefix or [language])[0])):
            result = place.run(setups.of(stub, title, language), locale)
            encoding = charset if stub.endswith("-any") else texts.traditional[speaks]
            wanted = wanted_output(texts, title, charset, speaks, encoding)
            count += 1
            if show:
                lines = filter(None, decode(result.stdout, charset).split("\n"))
                print(f"{locale:15} {stub:21} " + " | ".join(lines))
            if (result.returncode, result.stdout) != (0, wanted):
                failures += 1
                print(f"{locale}, {stub}: status {result.returncode}\n  wanted {wanted}\n"
                      f"  found  {result.stdout}")
    return count, failures


def print_list(for_root):
    for locale, charset, *_ in ROWS:
        if not for_root or locale in IN_ROOTS:
            print(locale, locale.partition(".")[0], charset)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--show", action="store_true")
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--root")
    parser.add_argument("programs", type=pathlib.Path, nargs="?")
    parser.add_argument("locales", nargs="?")
    parser.add_argument("project", type=pathlib.Path, nargs="?")
    arguments = parser.parse_args()
    if arguments.list:
        print_list(arguments.root)
        return 0
    if not os.path.isdir(arguments.root or arguments.locales):
        print("no locales to try: scripts/locales.sh makes them")
        return SKIPPED
    place = Place(arguments.root, arguments.locales)
    with tempfile.TemporaryDirectory() as scratch:
        setups = Setups(pathlib.Path(scratch), arguments.programs.resolve())
        count, failures = look(Texts(arguments.project), setups, place, arguments.show)
    print(f"{count} runs, {failures} failed")
    return 1 if failures else 0 if count else SKIPPED


if __name__ == "__main__":
    sys.exit(main())
