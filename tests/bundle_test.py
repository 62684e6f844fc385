"""`corvane-pack bundle-java` as its users call it: bundle_test.py PROGRAM"""

import io
import os
import pathlib
import subprocess
import sys
import tarfile
import tempfile
import zipfile

PROGRAM = sys.argv[1]
JAVA = b"#!/bin/sh\necho \"ran $*\" >>\"$RECORD\"\nexit 5\n"
REFUSED = "would leave the folder; take an archive that you trust"
NO_JAVA = "holds no program bin/java; name the folder of a JDK, an image of jlink, or an archive of one"
WEIRD = "it's {B} $(touch x) \"q\" `b` ; ä"


def archive(path, members, cut=None):
    """members: name to bytes (a file), to "-> target" (a link), or to a type of tarfile."""
    with tarfile.open(path, "w:gz") as made:
        for name, content in members:
            info = tarfile.TarInfo(name)
            info.mode = 0o755
            if isinstance(content, str):
                info.type, info.linkname = (tarfile.LNKTYPE if content.startswith("=") else tarfile.SYMTYPE,
                                            content[3:])
            elif isinstance(content, bytes):
                info.size = len(content)
            if content is None:
                info.type = tarfile.FIFOTYPE
            made.addfile(info, io.BytesIO(content) if isinstance(content, bytes) else None)
    if cut:
        os.truncate(path, cut)


GOOD = [("jdk/bin/java", JAVA), ("jdk/lib/" + WEIRD, b"lib"), ("jdk/" + WEIRD, b"top"),
        ("jdk/lib/link", "-> " + WEIRD), ("jdk/release", b"JAVA_VERSION=\"21\"\n")]

# name, the archive's members, status, the error behind "java.tar.gz"
ROWS = [
    ("a Java in a folder", GOOD, 0, ""),
    ("a Java at the top", [("bin/java", JAVA)], 0, ""),
    ("as on macOS", [("jdk/Contents/Home/bin/java", JAVA)], 0, ""),
    ("a hard link", [("jdk/bin/java", JAVA), ("jdk/bin/other", "=> jdk/bin/java")], 0, ""),
    ("no Java", [("jdk/bin/javac", JAVA)], 1, " " + NO_JAVA),
    ("out by dots", GOOD + [("jdk/../../x", b"x")], 1, f': the entry "jdk/../../x" {REFUSED}'),
    ("out by a root", GOOD + [("/x", b"x")], 1, f': the entry "/x" {REFUSED}'),
    ("out by a link", GOOD + [("jdk/l", "-> ../../x")], 1, f': the entry "jdk/l" {REFUSED}'),
    ("out by a root's link", GOOD + [("jdk/l", "-> /etc")], 1, f': the entry "jdk/l" {REFUSED}'),
    ("out by a hard link", GOOD + [("jdk/l", "=> ../x")], 1, f': the entry "jdk/l" {REFUSED}'),
    ("a pipe", GOOD + [("jdk/p", None)], 1,
     ': the entry "jdk/p" is neither a file, a folder nor a link; take another archive'),
    ("our name", GOOD + [("jdk/jvm", b"x")], 1, None),
]


# The same for "java.zip"; None of a mode: as systems without modes write it.
ZIP_ROWS = [
    ("a zip", [("jdk/bin/java", JAVA, 0o100755), ("jdk/lib/" + WEIRD, b"lib", 0o100644),
               ("jdk/link", b"lib", 0o120777)], 0, ""),
    ("a zip without modes", [("jdk/bin/java", JAVA, None)], 1, " " + NO_JAVA),
    ("out of a zip", [("jdk/bin/java", JAVA, 0o100755), ("jdk/../../x", b"x", 0o100644)], 1,
     f': the entry "jdk/../../x" {REFUSED}'),
    ("out by a zip's link", [("jdk/bin/java", JAVA, 0o100755), ("jdk/l", b"/etc", 0o120777)], 1,
     f': the entry "jdk/l" {REFUSED}'),
    ("no archive", None, 1, None),
]


def run(folder, *words, given="", **env):
    return subprocess.run(words, cwd=folder, text=True, capture_output=True, input=given,
                          env={"PATH": os.environ["PATH"], "HOME": str(folder), "LC_ALL": "C.UTF-8", **env})


def check(name, got, wanted):
    if got != wanted:
        print(f"{name}:\n  wanted {wanted!r}\n  got    {got!r}")
    return got == wanted


def names(folder):
    return sorted(str(p.relative_to(folder)) for p in folder.rglob("*"))


def try_row(name, members, status, error):
    with tempfile.TemporaryDirectory() as place:
        place = pathlib.Path(place)
        archive(place / "java.tar.gz", members)
        made = run(place, PROGRAM, "bundle-java", "java.tar.gz", "--output", "out")
        wanted = f"corvane-pack: java.tar.gz{error}\n" if status else ""
        good = check(name, made.returncode, status)
        good &= error is None or check(name, made.stderr, wanted)
        if status:
            return good & check(name + ", left", names(place), ["java.tar.gz"])
        target = place / "target"
        target.mkdir()
        ran = run(target, "../out")
        good &= check(name + ", run", (ran.returncode, ran.stdout, ran.stderr), (0, "", ""))
        good &= check(name + ", java", (target / "bin/java").read_bytes(), JAVA)
        before = names(target)
        again = run(target, "../out")  # overwrites nothing
        good &= check(name + ", again", (again.returncode, names(target)), (1, before))
        if members is GOOD:
            wanted = ["bin", "bin/java", WEIRD, "jvm", "lib", "lib/" + WEIRD, "lib/link", "release"]
            good &= check(name + ", names", before, sorted(wanted))
        # The same from the folder; and half of it leaves nothing.
        (target / "jvm").unlink()
        run(place, PROGRAM, "bundle-java", "target", "--output", "out2")
        good &= check(name + ", same", (place / "out").read_bytes(), (place / "out2").read_bytes())
        os.truncate(place / "out2", (place / "out2").stat().st_size - 220)
        half = place / "half"
        half.mkdir()
        broken = run(half, "../out2")
        return good & check(name + ", half", (broken.returncode, names(half)), (1, []))


MANIFEST = """{ "files": [
  { "type": "instructions", "path": "i.tag" }, { "type": "launchscript", "path": "l.tag" },
  { "type": "jvm-installer", "path": "out" } ] }"""
SCRIPT = """INSTRUCTIONS:
  // Installs.
  INSTALL_JVM {}
  JMP0 @N1@ failed
  LAUNCH @S1@ 1
  GOTO end
:failed
  ILAUNCH -1 0
:end
/:
"""


def try_zip(name, members, status, error):
    with tempfile.TemporaryDirectory() as place:
        place = pathlib.Path(place)
        if members is None:
            (place / "java.zip").write_text("no archive")
        else:
            with zipfile.ZipFile(place / "java.zip", "w") as made:
                for member, content, mode in members:
                    info = zipfile.ZipInfo(member)
                    info.create_system = 0 if mode is None else 3
                    info.external_attr = (mode or 0) << 16
                    made.writestr(info, content)
        ran = run(place, PROGRAM, "bundle-java", "java.zip", "--output", "out")
        good = check(name, ran.returncode, status)
        if status:
            good &= error is None or check(name, ran.stderr, f"corvane-pack: java.zip{error}\n")
            good &= check(name + ", told", ran.stderr.startswith("corvane-pack: java.zip"), True)
            return good & check(name + ", left", names(place), ["java.zip"])
        (place / "target").mkdir()
        ran = run(place / "target", "../out")
        wanted = ["bin", "bin/java", "jvm", "lib", "lib/" + WEIRD, "link"]
        return good & check(name + ", run", (ran.returncode, names(place / "target")), (0, wanted))


# name, what is in the user's folder, what he answers, status, whether the wizard ran, what is there then
PROMPT_ROWS = [
    ("the user's folder", [], "here", 5, True,
     ["bin", "bin/java", WEIRD, "jvm", "lib", "lib/" + WEIRD, "lib/link", "release"]),
    ("a folder with the user's own files", ["mine"], "here", 5, True,
     ["bin", "bin/java", WEIRD, "jvm", "lib", "lib/" + WEIRD, "lib/link", "mine", "release"]),
    ("a folder that has one of the names", ["release"], "here", 255, False, ["release"]),
    ("no answer", [], None, 255, False, []),
    ("a folder that is not there", [], "there", 255, False, []),
    ("an answer is one word", [], "here and now", 5, True,
     ["bin", "bin/java", WEIRD, "jvm", "lib", "lib/" + WEIRD, "lib/link", "release"]),
]


def try_prompt(name, before, answer, status, has_run, after):
    with prepared_setup(2) as place:
        place = pathlib.Path(place)
        folder = place / "here"
        folder.mkdir()
        for file in before:
            (folder / file).write_text("")
        given = f"{place / answer}\n" if answer else ""
        ran = run(place, "./setup", "-cv:tempdir", str(place / "tmp"), given=given,
                  RECORD=str(place / "record"))
        got = (ran.returncode, (place / "record").exists(), names(folder), names(place / "tmp"))
        return check(f"INSTALL_JVM 2, {name}", got, (status, has_run, sorted(after), []))


def prepared_setup(option):
    """A folder with a setup that installs its Java, and an empty one for temporary files."""
    made = tempfile.TemporaryDirectory()
    place = pathlib.Path(made.name)
    archive(place / "java.tar.gz", GOOD)
    (place / "m.json").write_text(MANIFEST)
    (place / "i.tag").write_text(SCRIPT.format(option))
    (place / "l.tag").write_text('DESC: x\nCOMMAND: exec "@JVM_HOME@/@JVM_EXE@" %CP%("a") Main\n')
    run(place, PROGRAM, "bundle-java", "java.tar.gz", "--output", "out")
    run(place, PROGRAM, "pack", "m.json", "--output", "setup")
    (place / "tmp").mkdir()
    return made


def try_setup(option):
    with prepared_setup(option) as place:
        place = pathlib.Path(place)
        ran = run(place, "./setup", "-cv:tempdir", str(place / "tmp"), RECORD=str(place / "record"))
        record = place / "record"
        got = (ran.returncode, record.read_text() if record.exists() else "", names(place / "tmp"))
        return check(f"INSTALL_JVM {option}", got, (5, "ran -cp a Main\n", []))


def main():
    results = [try_row(*row) for row in ROWS] + [try_zip(*row) for row in ZIP_ROWS]
    results += [try_setup(0), try_setup(1)] + [try_prompt(*row) for row in PROMPT_ROWS]
    print(f"{results.count(True)} rows passed, {results.count(False)} failed")
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
