#!/usr/bin/env python3
"""Runs the clients of examples/calling against packed setups, and compares docs/calling.md with them.

Usage: calling_test.py PROJECT PROGRAM [JAVA CLIENT_JAR]

PROGRAM is corvane-pack. The Javas that are found are shell scripts. Prints each problem and ends with
status 1 when there is any.
"""
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

PROJECT, PROGRAM, *JAVA = sys.argv[1:]
CLIENT = pathlib.Path(PROJECT, "examples/calling/find-java.sh")
CLIENTS = {"shell": [str(CLIENT)]}
if JAVA:
    CLIENTS["java"] = [JAVA[0], "-Xint", "-Djava.io.tmpdir=FOLDER/tmp", "-cp", JAVA[1], "FindJava"]

ANSWERS = "#!/bin/sh\nprintf '1739021872\\n17.0.1\\n'\n"
OLD = "#!/bin/sh\nprintf '1739021872\\n1.8.0\\n'\n"
# The launcher is the parent of the shell that runs the command.
CANCELS = "#!/bin/sh\nkill -TERM $(cut -d' ' -f4 /proc/$PPID/stat)\nsleep 1\n"
WAITS = "#!/bin/sh\n: >\"$MARK\"\nexec sleep 60\n"
FILES = {
    "manifest.json": '{ "files": [ { "type": "instructions", "path": "i.tag" },'
                     ' { "type": "launchscript", "path": "l.tag" }, { "type": "jvm", "path": "java.tag" },'
                     ' { "type": "verify", "path": "verify.jar" } ] }',
    "verify.jar": "no Java reads it",
    "i.tag": "INSTRUCTIONS:\n  // Finds a Java.\n  INITIALIZE_UI\n  FIND_JVM 1 1\n/:\n",
    # The title would stand in front of the answer.
    "l.tag": "DESC: My Product\nCOMMAND: exec \"@JVM_HOME@/@JVM_EXE@\" -version\n",
    "java.tag": "DESC: Java 17\nJVM_EXE: bin/java\nJVM_PROPERTIES: java.version = 17...\n"
                "PLATFORM_HINT: MY_JAVA\nCLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: \":\"\n"
                "SYSTEM: -D\nSYSTEM_SEPARATOR: \"=\"\n",
}

# (name, java of the one home, setup, options, status, standard output, standard error)
ROWS = [
    ("found", ANSWERS, "setup", [], 0, "FOLDER/a java\n", ""),
    ("found where the user says", ANSWERS, "setup", ["-cv:javahome", "FOLDER/a java"], 0, "FOLDER/a java\n", ""),
    ("none", OLD, "setup", [], 1, "", ""),
    ("a bare launcher", ANSWERS, "bare", [], 1, "", ""),
    ("a damaged setup", ANSWERS, "damaged", [], 2, "",
     "find-java: FOLDER/damaged: status 255\n"
     "Unable to load the launcher file index. Invalid file index offset.\n"),
    ("a canceled search", CANCELS, "setup", [], 2, "",
     "find-java: FOLDER/setup: status 143\nCanceled by the user.\n"),
]

OWN = 'JVM: java.tag\nVERIFY_CLASSPATH: """verify.jar"""\nVERIFY_CLASS_NAME: Verify\n'
# What docs/calling.md says beyond the clients: (name, setup, options, tags, status, standard output).
DIALOGUES = [
    ("silent in front", "setup", ["-cv:silent"], "ACTION: SEARCH\n", 0, "1\nFOLDER/a java\ncvj#\n"),
    ("not silent", "setup", [], "ACTION: SEARCH\n", 0, "My Product\n1\nFOLDER/a java\ncvj#\n"),
    ("with progress", "setup", [], "ACTION: SEARCH\nSHOW_PROGRESS: 1\n", 0,
     "My Product\n\nSearching for Java(tm) Virtual Machine...\n........1\nFOLDER/a java\ncvj#\n\n"),
    ("the bare launcher", "bare", [], "ACTION: SEARCH\n" + OWN, 0, "1\nFOLDER/a java\ncvj#\n"),
    ("verify an answer", "setup", ["-cv:silent"],
     "ACTION: VERIFY_JVM\nVERIFY_JVM_FILE: ANSWER\nVERIFY_JVM_HOME: FOLDER/a java\n", 0, "1\n"),
    ("install", "setup", ["-cv:silent"],
     "ACTION: INSTALL_JVM\nINSTALL_JVM_EXE: echo busy; cp ../java.tag jvm\nINSTALL_JVM_DEST: FOLDER/a java\n", 0,
     "busy\nFOLDER/a java/jvm\n"),
    ("install nothing", "setup", ["-cv:silent"],
     "ACTION: INSTALL_JVM\nINSTALL_JVM_EXE: true\nINSTALL_JVM_DEST: FOLDER/temp\n", 255, ""),
    ("install nowhere", "setup", ["-cv:silent"],
     "ACTION: INSTALL_JVM\nINSTALL_JVM_EXE: true\nINSTALL_JVM_DEST: FOLDER/none\n", 255, ""),
    ("install without a folder", "setup", ["-cv:silent"], "ACTION: INSTALL_JVM\nINSTALL_JVM_EXE: true\n", 0, ""),
    ("a bad input file", "setup", [], "ACTION: FIND\n", 255,
     "My Product\n" + 2 * "Invalid action in input file: FIND\n"),
    ("what was extracted", "setup", ["-cv:silent"], "EXTRACTED", 0, "1\nFOLDER/a java\ncvj#\n"),
]


class Folder:
    """Setups, a home, and the only places where anything may be left."""

    def __init__(self, path):
        self.path = pathlib.Path(path)
        for name, text in FILES.items():
            (self.path / name).write_text(text)
        subprocess.run([PROGRAM, "pack", "manifest.json", "--no-check", "--output", "setup"], cwd=path,
                       check=True, capture_output=True)
        packed = (self.path / "setup").read_bytes()
        for name, content in (("bare", packed[:-1]), ("damaged", packed[:-8] + b"\xff" + packed[-7:])):
            (self.path / name).write_bytes(content)
            (self.path / name).chmod(0o755)
        for name in ("a java/bin", "tmp", "temp"):
            (self.path / name).mkdir(parents=True)
        self.env = {"PATH": self.path_without_java(), "LC_ALL": "C.UTF-8", "MY_JAVA": f"{path}/a java",
                    "TMPDIR": f"{path}/tmp", "MARK": f"{path}/mark"}

    def path_without_java(self):
        place = self.path / "path"
        place.mkdir()
        for tool in ("sh", "mktemp", "rm", "cp", "cat", "sed", "cut", "sleep"):
            (place / tool).symlink_to(shutil.which(tool))
        return str(place)

    def java_says(self, script):
        java = self.path / "a java/bin/java"
        java.write_text(script)
        java.chmod(0o755)

    def command(self, client, setup, options):
        words = [*CLIENTS[client], f"FOLDER/{setup}", "-cv:tempdir", "FOLDER/temp", *options]
        return [word.replace("FOLDER", str(self.path)) for word in words]

    def left(self):
        return sorted(p.name for place in ("tmp", "temp") for p in (self.path / place).iterdir())


def compare(what, got, wanted):
    if got == wanted:
        return []
    return [f"{what}:\n  wanted {wanted!r}\n  got    {got!r}"]


def try_row(folder, client, row):
    name, script, setup, options, status, out, err = row
    folder.java_says(script)
    ran = subprocess.run(folder.command(client, setup, options), env=folder.env, text=True,
                         capture_output=True, stdin=subprocess.DEVNULL)
    errors = ran.stderr.removeprefix("Terminated\n")  # some shells tell it
    told = [text.replace(str(folder.path), "FOLDER") for text in (ran.stdout, errors)]
    return compare(f"{client}, {name}", (ran.returncode, *told, folder.left()), (status, out, err, []))


def extracted(folder):
    """The input file of -cv:extract, for a search."""
    parts = folder.path / "parts"
    parts.mkdir()
    subprocess.run([folder.path / "setup", "-cv:extract"], cwd=parts, check=True, capture_output=True)
    return "".join(f"{line}\n" for line in (parts / "input.tag").read_text().splitlines()
                   if not line.startswith("ACTION:")) + "ACTION: SEARCH\n", parts


def try_dialogue(folder, row, answers):
    name, setup, options, tags, status, out = row
    folder.java_says(ANSWERS)
    tags, cwd = extracted(folder) if tags == "EXTRACTED" else (tags, folder.path)
    kept = answers[-1] if answers else ""
    tags = tags.replace("FOLDER", str(folder.path)).replace("ANSWER", kept)
    (folder.path / "in.tag").write_text(tags)
    ran = subprocess.run([folder.path / setup, "-cv:tempdir", folder.path / "temp", *options, "-cv:in",
                          folder.path / "in.tag"], cwd=cwd, env=folder.env, text=True, capture_output=True,
                         stdin=subprocess.DEVNULL)
    told = ran.stdout.replace(str(folder.path), "FOLDER")
    answers += [f"{folder.path}/temp/{file}" for file in re.findall(r"^FOLDER/temp/(cvj.*)$", told, re.MULTILINE)]
    told = re.sub(r"^FOLDER/temp/cvj.*$", "cvj#", told, flags=re.MULTILINE)
    return compare(name, (ran.returncode, told, ran.stderr), (status, out, ""))


def try_interrupt(folder, client, number):
    """What the terminal sends goes to client and setup; both end, and nothing is left."""
    folder.java_says(WAITS)
    mark = folder.path / "mark"
    mark.unlink(missing_ok=True)
    started = subprocess.Popen(folder.command(client, "setup", []), env=folder.env,
                               start_new_session=True, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    while not mark.exists() and started.poll() is None:
        time.sleep(0.01)
    os.killpg(started.pid, number)
    out, _ = started.communicate()
    return compare(f"{client}, signal {number}", (started.returncode, out, folder.left()), (-number, b"", []))


def main():
    page = pathlib.Path(PROJECT, "docs/calling.md").read_text()
    problems = []
    if f"```sh\n{CLIENT.read_text()}```\n" not in page:
        problems.append(f"docs/calling.md does not show {CLIENT} as it is")
    with tempfile.TemporaryDirectory() as path:
        folder = Folder(path)
        for client in CLIENTS:
            for row in ROWS:
                problems += try_row(folder, client, row)
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            problems += try_interrupt(folder, "shell", number)
        answers = []  # the jvm files that were handed out
        for row in DIALOGUES:
            problems += try_dialogue(folder, row, answers)
        problems += compare("jvm files", sorted(f"{folder.path}/temp/{n}" for n in folder.left()), sorted(answers))
    print("\n".join(problems) or f"{len(CLIENTS)} clients, {len(ROWS)} rows, {len(DIALOGUES)} dialogues")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
