#!/usr/bin/env python3
"""Breaks translations in every way that the catalogue's generator must notice.

Usage: generator_test.py MAKE_CATALOGUE MESSAGES

Each row of BROKEN changes a copy of MESSAGES; wanted are status 1, exactly these lines on standard
error (LINE stands for the line below the change's first), and no output. A row of HARMLESS must
give status 0 and silence.
"""
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile


class Change:
    """A change of one file's bytes: called with them, gives the new ones and the place."""

    def __init__(self, file, pattern, new):
        self.file, self.pattern = file, pattern
        self.new = new if isinstance(new, bytes) else new.encode()

    def apply(self, data):
        if self.pattern is None:
            return data + b"\n" + self.new, len(data) + 1
        found = re.findall(self.pattern.encode(), data, re.DOTALL)
        if len(found) != 1:
            raise ValueError(f"{self.file} holds {self.pattern!r} {len(found)} times")
        place = re.search(self.pattern.encode(), data, re.DOTALL).span()
        return data[:place[0]] + self.new + data[place[1]:], place[0]


def text(file, entry, new):
    """Gives an entry another msgstr, written as between the quotes of a PO file."""
    return Change(file, rf'(?<=\nmsgctxt "{entry}"\n)msgid "[^\n]*"\nmsgstr "[^\n]*"',
                  English.msgid(entry) + b'msgstr "' +
                  (new if isinstance(new, bytes) else new.encode()) + b'"')


def english(entry, new):
    return Change("corvane-launcher.pot", rf'(?<=\nmsgctxt "{entry}"\n)msgid "[^\n]*"',
                  f'msgid "{new}"')


def replace(file, old, new):
    return Change(file, re.escape(old), new)


def append(file, new):
    return Change(file, None, new)


class English:
    """The template, which the rows are made from."""

    template = pathlib.Path(sys.argv[2], "corvane-launcher.pot").read_bytes()

    @classmethod
    def msgid(cls, entry):
        return re.search(rb'\nmsgctxt "%d"\n(msgid "[^\n]*"\n)' % entry, cls.template).group(1)


THIRTEEN = 'msgctxt "13"\nmsgid "LauncherMain"\nmsgstr "LauncherMain"\n'
UNTRANSLATED = THIRTEEN.replace('msgstr "LauncherMain"', 'msgstr ""')
CHARSET = "Content-Type: text/plain; charset=UTF-8"
LOCALES = ("bg cs da de el es fi fr hr hu it ja ko nl no pl pt pt_BR ro ru sk sl sv tr zh "
           "zh_TW").split()
DE = "messages/de.po: de: "
POT = "messages/corvane-launcher.pot: en: "

BROKEN = [
    # (name, change, wanted lines)
    # Characters
    ("letters of another language", text("de.po", 29, "Die JVM iść ungültig."),
     [DE + "entry 29: the character U+015B 'ś' does not exist in ISO-8859-1",
      DE + "entry 29: the character U+0107 'ć' does not exist in ISO-8859-1"]),
    ("a currency sign of later years", text("fr.po", 29, "La JVM coûte 1 €."),
     ["messages/fr.po: fr: entry 29: the character U+20AC '€' does not exist in ISO-8859-1"]),
    ("a grave accent on a Cyrillic letter", text("bg.po", 29, "ѝ"),
     ["messages/bg.po: bg: entry 29: the character U+045D 'ѝ' does not exist in ISO-8859-5"]),
    ("a Latin letter in Greek", text("el.po", 29, "é"),
     ["messages/el.po: el: entry 29: the character U+00E9 'é' does not exist in ISO-8859-7"]),
    ("an Icelandic letter in Turkish", text("tr.po", 29, "þ"),
     ["messages/tr.po: tr: entry 29: the character U+00FE 'þ' does not exist in ISO-8859-9"]),
    ("a Cyrillic letter of Ukrainian", text("ru.po", 29, "ґ"),
     ["messages/ru.po: ru: entry 29: the character U+0491 'ґ' does not exist in ISO-8859-5"]),
    ("an accented letter in Japanese", text("ja.po", 29, "ﾃ—"),
     ["messages/ja.po: ja: entry 29: the character U+2014 '—' does not exist in EUC-JP"]),
    ("a syllable of the larger Korean set", text("ko.po", 29, "똠방"),
     ["messages/ko.po: ko: entry 29: the character U+B620 '똠' does not exist in EUC-KR"]),
    ("a traditional sign in simplified text", text("zh.po", 29, "該"),
     ["messages/zh.po: zh: entry 29: the character U+8A72 '該' does not exist in GB2312"]),
    ("a simplified sign in traditional text", text("zh_TW.po", 29, "无"),
     ["messages/zh_TW.po: zh_TW: entry 29: the character U+65E0 '无' does not exist in Big5"]),
    ("a character of four bytes", text("de.po", 29, "\U0001F600"),
     [DE + "entry 29: the character U+1F600 '\U0001F600' does not exist in ISO-8859-1"]),
    ("a letter beyond ASCII in English", english(29, "Thé JVM"),
     [POT + "entry 29: the character U+00E9 'é' does not exist in ASCII"]),
    ("a bell", text("de.po", 29, r"\a"), [DE + "entry 29: holds the control character U+0007"]),
    ("the last of the low control characters", text("de.po", 29, "\x1f"),
     [DE + "entry 29: holds the control character U+001F"]),
    ("a delete", text("de.po", 29, "\x7f"), [DE + "entry 29: holds the control character U+007F"]),
    ("the last of the high control characters", text("de.po", 29, "\x9f"),
     [DE + "entry 29: holds the control character U+009F"]),
    ("a tab in English", english(29, r"The\tJVM"),
     [POT + "entry 29: holds the control character U+0009"]),
    ("bytes that are no UTF-8", text("de.po", 29, b"ung\xfcltig"),
     ["messages/de.po:LINE: de: invalid multibyte sequence"]),
    # Placeholders
    ("a lost placeholder", text("de.po", 5, "Kein Start."),
     [DE + 'entry 5: has 0 "%s", the English text 1']),
    ("an added placeholder", text("de.po", 29, "%s."),
     [DE + 'entry 29: has 1 "%s", the English text 0']),
    ("a doubled placeholder", text("de.po", 5, "%s%s."),
     [DE + 'entry 5: has 2 "%s", the English text 1']),
    ("another conversion", text("de.po", 5, "%d."),
     [DE + "entry 5: has a '%' other than in \"%s\"",
      DE + 'entry 5: has 0 "%s", the English text 1']),
    ("a numbered placeholder", text("de.po", 5, "%1$s."),
     [DE + "entry 5: has a '%' other than in \"%s\"",
      DE + 'entry 5: has 0 "%s", the English text 1']),
    ("a percent sign", text("de.po", 29, "Zu 100 % ungültig."),
     [DE + "entry 29: has a '%' other than in \"%s\""]),
    ("a percent sign before the placeholder", text("de.po", 5, "%%s."),
     [DE + "entry 5: has a '%' other than in \"%s\""]),
    ("a percent sign in the end", text("de.po", 5, "%s %"),
     [DE + "entry 5: has a '%' other than in \"%s\""]),
    ("two placeholders in English", english(3, "Verifying %s%s"),
     [POT + 'entry 3: has more than one "%s"']),
    ("a percent sign in English", english(3, "Verifying 5%"),
     [POT + "entry 3: has a '%' other than in \"%s\""]),
    # Blanks, line breaks, option names, fixed texts
    ("a lost blank at the end", text("de.po", 36, "Fehler ="),
     [DE + "entry 36: has 0 trailing blanks, the English text 1"]),
    ("a blank too many at the end", text("de.po", 36, "Fehler =  "),
     [DE + "entry 36: has 2 trailing blanks, the English text 1"]),
    ("a no-break space instead of the blank", text("de.po", 36, "Fehler =\u00a0"),
     [DE + "entry 36: has 0 trailing blanks, the English text 1"]),
    ("a wide space instead of the blank", text("ja.po", 36, "=\u3000"),
     ["messages/ja.po: ja: entry 36: has 0 trailing blanks, the English text 1"]),
    ("a blank where English has none", text("de.po", 29, "Ungültig. "),
     [DE + "entry 29: has 1 trailing blanks, the English text 0"]),
    ("a lost blank at the beginning", text("de.po", 37, "Platz: -cv:tempdir"),
     [DE + "entry 37: has 0 leading blanks, the English text 1"]),
    ("a blank too many at the beginning", text("de.po", 37, "  Platz: -cv:tempdir"),
     [DE + "entry 37: has 2 leading blanks, the English text 1"]),
    ("blanks alone", text("de.po", 29, "  "),
     [DE + "entry 29: has 2 leading blanks, the English text 0",
      DE + "entry 29: has 2 trailing blanks, the English text 0"]),
    ("a lost line break", text("de.po", 35, r"a\\nb"),
     [DE + r'entry 35: has 1 "\n", the English text 2']),
    ("a line break too many", text("de.po", 35, r"a\\nb\\nc\\n"),
     [DE + r'entry 35: has 3 "\n", the English text 2']),
    ("a line feed instead of the two characters", text("de.po", 35, r"a\\nb\nc"),
     [DE + "entry 35: holds the control character U+000A",
      DE + r'entry 35: has 1 "\n", the English text 2']),
    ("another backslash", text("de.po", 29, r"a\\t"),
     [DE + "entry 29: has a '\\' other than in \"\\n\""]),
    ("a backslash in the end", text("de.po", 29, "a\\\\"),
     [DE + "entry 29: has a '\\' other than in \"\\n\""]),
    ("a backslash in English", english(29, r"The\\JVM"),
     [POT + "entry 29: has a '\\' other than in \"\\n\""]),
    ("a translated option name", text("de.po", 25, "Option -protokoll"),
     [DE + "entry 25: lacks the option name -log"]),
    ("a lost hyphen of an option name", text("de.po", 30, "Option 'in'"),
     [DE + "entry 30: lacks the option name -in"]),
    ("a lost option name of the launcher's own", text("de.po", 31, "Option -javahome"),
     [DE + "entry 31: lacks the option name -cv:javahome"]),
    ("a changed option name of the launcher's own", text("de.po", 39, "%s: -cv:temp"),
     [DE + "entry 39: lacks the option name -cv:tempdir"]),
    ("a translated identifier", text("de.po", 13, "Hauptstarter"),
     [DE + "entry 13: is the same in every language"]),
    ("another dot", text("ja.po", 18, "。"),
     ["messages/ja.po: ja: entry 18: is the same in every language"]),
    # Entries
    ("a missing entry", replace("de.po", THIRTEEN, ""), [DE + "entry 13: missing"]),
    ("an empty entry", text("de.po", 13, ""), [DE + "entry 13: is not translated"]),
    ("a fuzzy entry", replace("de.po", THIRTEEN, "#, fuzzy\n" + THIRTEEN),
     [DE + "entry 13: is marked fuzzy"]),
    ("a doubled entry", append("de.po", THIRTEEN),
     ["messages/de.po:LINE: de: entry 13: duplicate message definition"]),
    ("a doubled index", append("de.po", THIRTEEN.replace("LauncherMain", "Main")),
     [DE + "entry 13: stands more than once"]),
    ("an entry behind the last", append("de.po", 'msgctxt "40"\nmsgid "a"\nmsgstr "b"\n'),
     [DE + 'entry "40": unknown; msgctxt is a number from 1 to 39']),
    ("an entry before the first", append("de.po", 'msgctxt "0"\nmsgid "en"\nmsgstr "de"\n'),
     [DE + 'entry "0": unknown; msgctxt is a number from 1 to 39']),
    ("an index below zero", append("de.po", 'msgctxt "-1"\nmsgid "a"\nmsgstr "b"\n'),
     [DE + 'entry "-1": unknown; msgctxt is a number from 1 to 39']),
    ("an index beyond all numbers",
     append("de.po", 'msgctxt "99999999999999999999999"\nmsgid "a"\nmsgstr "b"\n'),
     [DE + 'entry "99999999999999999999999": unknown; msgctxt is a number from 1 to 39']),
    ("an index in another writing", replace("de.po", 'msgctxt "5"', 'msgctxt "05"'),
     [DE + 'entry "05": unknown; msgctxt is a number from 1 to 39', DE + "entry 5: missing"]),
    ("an entry without an index", replace("de.po", 'msgctxt "13"\n', ""),
     [DE + 'entry "": unknown; msgctxt is a number from 1 to 39', DE + "entry 13: missing"]),
    ("a changed msgid", replace("de.po", 'msgid "The JVM is', 'msgid "The Jvm is'),
     [DE + 'entry 29: msgid differs from the template\'s: "The Jvm is not valid."']),
    ("a changed template", english(29, "The JVM is invalid."),
     [f"messages/{code}.po: {code}: entry 29: msgid differs from the template's: "
      '"The JVM is not valid."' for code in LOCALES]),
    ("a plural form",
     replace("de.po", THIRTEEN,
             THIRTEEN.replace("msgstr", 'msgid_plural "LauncherMains"\nmsgstr[0]')),
     [DE + "entry 13: has a plural form"]),
    ("a missing entry of the template", replace("corvane-launcher.pot", UNTRANSLATED, ""),
     [POT + "entry 13: missing"]),
    ("an unknown entry of the template",
     append("corvane-launcher.pot", 'msgctxt "40"\nmsgid "a"\nmsgstr ""\n'),
     [POT + 'entry "40": unknown; msgctxt is a number from 1 to 39']),
    # Headers and syntax
    ("another encoding in the header",
     replace("de.po", CHARSET, CHARSET.replace("UTF-8", "ISO-8859-1")),
     [DE + 'the header\'s Content-Type is "text/plain; charset=ISO-8859-1", '
      'not "text/plain; charset=UTF-8"']),
    ("no encoding in the header", replace("de.po", f'"{CHARSET}\\n"\n', ""),
     [DE + "Charset missing in header. Message conversion to user's charset will not work."]),
    ("another encoding in the template's header",
     replace("corvane-launcher.pot", CHARSET, CHARSET.replace("UTF-8", "ASCII")),
     [POT + 'the header\'s Content-Type is "text/plain; charset=ASCII", '
      'not "text/plain; charset=UTF-8"']),
    ("another language in the header", replace("pt.po", "Language: pt\\n", "Language: pt_BR\\n"),
     ['messages/pt.po: pt: the header\'s Language is "pt_BR", not the file\'s name']),
    ("a syntax error", replace("de.po", 'msgid "LauncherMain"', 'msgid "LauncherMain'),
     ["messages/de.po:LINE: de: end-of-line within string"]),
]

HARMLESS = [
    ("nothing", append("de.po", "")),
    ("an obsolete entry", append("de.po", '#~ msgctxt "40"\n#~ msgid "a"\n#~ msgstr "b"\n')),
    ("a translator's comment", replace("de.po", 'msgctxt "13"', '# kept\nmsgctxt "13"')),
    ("a text on several lines", text("de.po", 29, 'Die JVM "\n"ist "\n"ungültig.')),
    ("the last character of an encoding", text("de.po", 29, "ÿ")),
    ("a no-break space within a text", text("de.po", 29, "a\u00a0b")),
    ("the placeholder at another place", text("de.po", 5, "Kein Start: %s")),
    ("a sign whose second byte is a backslash", text("zh_TW.po", 29, "功")),
    ("a comma below, which old charsets have as a cedilla", text("ro.po", 24, "Acțiune: ")),
    ("a quoted word", text("de.po", 29, r"a \"b\" c")),
]


class Copy:
    """A scratch folder with a copy of the messages, and the generator run in it."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        shutil.copytree(sys.argv[2], self.folder / "messages")

    def change(self, change):
        """Returns the line below the change's first: there the PO library notices it."""
        path = self.folder / "messages" / change.file
        data, place = change.apply(path.read_bytes())
        path.write_bytes(data)
        return data[:place].count(b"\n") + 2

    def run(self, *arguments, **options):
        result = subprocess.run([pathlib.Path(sys.argv[1]).resolve(), *arguments], cwd=self.folder,
                                capture_output=True, **options)
        return result.returncode, (result.stdout + result.stderr).decode().splitlines()

    def has_output(self):
        return (self.folder / "output").exists()


def differing(wanted, found):
    return None if wanted == found else f"wanted {wanted}\n  found  {found}"


def check_broken(copy, change, lines):
    line = copy.change(change)
    lines = [wanted.replace("LINE", str(line)) for wanted in lines]
    found = copy.run("--utf8", "messages", "output")
    return differing((1, lines, False), (*found, copy.has_output()))


def check_harmless(copy, change):
    copy.change(change)
    found = copy.run("--traditional", "messages", "output")
    return differing((0, [], True), (*found, copy.has_output()))


def check_usage(copy):
    usage = "Usage: make_catalogue --traditional|--utf8|--charsets|--page MESSAGES OUTPUT"
    for arguments in ([], ["--utf8", "messages"], ["--utf16", "messages", "output"],
                      ["--utf8", "messages", "output", "more"]):
        problem = differing((2, [usage]), copy.run(*arguments))
        if problem:
            return f"{arguments}: {problem}"
    return None


def check_missing_file(copy):
    (copy.folder / "messages" / "ja.po").unlink()
    return differing((1, ["messages/ja.po: ja: No such file or directory"]),
                     copy.run("--utf8", "messages", "output"))


def check_missing_folder(copy):
    return differing((1, ["none/corvane-launcher.pot: en: No such file or directory"]),
                     copy.run("--utf8", "none", "output"))


def check_stray_file(copy):
    for name in ("xx.po", "en.po", "de.po~"):
        shutil.copy(copy.folder / "messages" / "de.po", copy.folder / "messages" / name)
    return differing((1, ["messages/en.po: no translation goes by this name",
                          "messages/xx.po: no translation goes by this name"]),
                     copy.run("--utf8", "messages", "output"))


def check_all_problems_at_once(copy):
    copy.change(text("de.po", 5, ""))
    copy.change(text("fr.po", 13, ""))
    return differing((1, [DE + "entry 5: is not translated",
                          "messages/fr.po: fr: entry 13: is not translated"]),
                     copy.run("--utf8", "messages", "output"))


def check_closed_output(copy):
    return differing((1, ["none/output: No such file or directory"]),
                     copy.run("--utf8", "messages", "none/output"))


def small_files_only():
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000))


def check_full_disk(copy):
    found = copy.run("--utf8", "messages", "output", preexec_fn=small_files_only)
    return differing((1, ["output: File too large"], False), (*found, copy.has_output()))


def cases():
    for name, change, lines in BROKEN:
        yield name, lambda copy, change=change, lines=lines: check_broken(copy, change, lines)
    for name, change in HARMLESS:
        yield name, lambda copy, change=change: check_harmless(copy, change)
    for check in (check_usage, check_missing_file, check_missing_folder, check_stray_file,
                  check_all_problems_at_once, check_closed_output, check_full_disk):
        yield check.__name__, check


def main():
    count = failures = 0
    for name, check in cases():
        with tempfile.TemporaryDirectory() as folder:
            problem = check(Copy(folder))
        count += 1
        if problem:
            failures += 1
            print(f"{name}:\n  {problem}")
    print(f"{count} cases, {failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
