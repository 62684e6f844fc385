#!/usr/bin/env python3
"""Plants violations of the rules of the house and expects the checks to find each.

Usage: rules_test.py PROJECT
"""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

PROJECT = pathlib.Path(sys.argv[1]).resolve()
VERSION = re.search(r"project\(\S+ VERSION (\S+)", (PROJECT / "CMakeLists.txt").read_text())[1]

PLANTS = [
    # (what is planted, file below the project, text added to it or made of it, check, words wanted)
    ("upward include", "src/util/SString.cpp", '#include "launcher/Launcher.h"\n', "rooms",
     "'util/SString' includes 'launcher/Launcher', which has no lower rank"),
    ("circle through a header", "src/tagfile/TextUtils.h", '#include "tagfile/TagFile.h"\n', "rooms",
     "'tagfile/TextUtils' includes 'tagfile/TagFile', which has no lower rank"),
    ("room without a rank", "src/util/Newcomer.h", "\n", "rooms", "room 'util/Newcomer' has no rank"),
    ("include from beside", "src/util/SString.cpp", '#include "SString.h"\n', "rooms",
     'include "SString.h" is not written from src/'),
    ("quirk without a test", "src/util/SString.cpp", "// QUIRK(planted-here): no test\n", "quirks",
     "quirk 'planted-here' has no test"),
    ("quirk without a promise", "src/util/SString.cpp", "// QUIRK(planted-here)\n", "quirks",
     "quirk 'planted-here' promises nothing"),
    ("tag name spelt out", "src/jvm/JVMFile.cpp", '// "SEARCH_ALL"\n', "tags",
     "the name 'SEARCH_ALL' is spelt out"),
    ("tag asked for by a literal", "authoring/SetupCheck.cpp", '// getTagValue("DSEC", 0)\n', "tags",
     "the name 'DSEC' is spelt out"),
    ("second place of the version", "messages/de.po", f"# {VERSION}\n", "version",
     "the version stands here, too"),
    ("release without its entry", "CHANGELOG.md", lambda old: "## 0.1\n" + old, "version",
     "the newest entry is not that of"),
    ("promise without a proof", "docs/promises.md", "\n- **Planted.** So it is.\n", "promises",
     "a promise is proved by no test"),
    ("promise whose test is gone", "docs/promises.md",
     "\n- **Planted.** So it is.\n  Proved by `Planted.Gone`.\n", "promises",
     "there is no test 'Planted.Gone'"),
    ("link to nothing", "docs/formats.md", "\n[x](none.md)\n", "links", "there is no none.md"),
    ("link to no heading", "docs/formats.md", "\n[x](jvm-file.md#none)\n", "links",
     "jvm-file.md has no heading #none"),
    ("page without promises", "docs/promises.md", lambda old: "", "promises", "no promise was found"),
]


def run_check(project, name):
    script = project / "tools" / f"check_{name}.py"
    result = subprocess.run([sys.executable, script, project], capture_output=True, text=True)
    return result.returncode, result.stdout


def plant(row):
    what, file, change, check, wanted = row
    with tempfile.TemporaryDirectory() as scratch:
        copy = pathlib.Path(scratch) / "project"
        for part in ("src", "authoring", "tools", "messages", "docs"):
            shutil.copytree(PROJECT / part, copy / part)
        shutil.copytree(PROJECT / "tests", copy / "tests", ignore=shutil.ignore_patterns(
            "corpus", "rules_test.py"))
        for part in ("CMakeLists.txt", "CHANGELOG.md"):
            shutil.copy(PROJECT / part, copy)
        old = (copy / file).read_text() if (copy / file).exists() else ""
        (copy / file).write_text(old + change if isinstance(change, str) else change(old))
        status, output = run_check(copy, check)
        if status != 1 or wanted not in output:
            return f"{what}: status {status}, output:\n{output}"
    return None


def main():
    failures = [failure for failure in (plant(row) for row in PLANTS) if failure]
    for check in ("rooms", "quirks", "tags", "version", "promises", "links"):
        status, output = run_check(PROJECT, check)
        if status != 0:
            failures.append(f"the tree itself fails check_{check}:\n{output}")
    print("\n".join(failures) if failures else f"{len(PLANTS)} planted violations found")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
