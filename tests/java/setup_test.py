"""The sample setup as a user runs it, in whatever Java the machine has: setup_test.py SETUP_FILE"""

import re
import sys

from rows import Row, run
from wizard_test import CANCELLED, DONE, FAILED, GREETING, NO_FOLDER, OPTIONS, installed, question

NO_JVM = 69

# The launcher's own files lie in a folder in which nothing may be left.
TEMP = {"tmp/nothing-else": ""}
LEFT = ["tmp/nothing-else"]
TEMP_OPTION = ["-cv:tempdir", "{dir}/tmp"]

FOUND = """\
Textbox Setup
Initializing Textbox Setup...
Searching for Java(tm) Virtual Machine...
Running Textbox Setup...
"""

NOT_FOUND = """\
Textbox Setup
Initializing Textbox Setup...
Searching for Java(tm) Virtual Machine...
Textbox Setup needs Java 8 or later, and found none. Install one (on Debian and Ubuntu: apt install default-jre), or run the setup again with \
-cv:javahome and the folder of the Java that it is to use.
"""

UNKNOWN_JAVA = {
    "in.tag": "ACTION: RUN_INSTRUCTIONS\nSHOW_PROGRESS: 1\nSHOW_FAIL_MSG: 1\nJVM: java99.tag\n",
    "java99.tag": "DESC: Java 99\nJVM_EXE: bin/java\nCLASSPATH: \"-cp \"\nPATH_HINT: jre\n"
    "JVM_PROPERTIES: java.specification.version = 99\nPLATFORM_HINT: JAVA_HOME\n",
}


def clean(out):
    """Without the dots and the empty lines: there are more of them where more JVMs are tried."""
    return re.sub(r"\n+", "\n", re.sub(r"^\.+", "", out, flags=re.MULTILINE)).lstrip("\n")


def row(name, args, status, out, stdin="", before=None, after=()):
    return Row(name, TEMP_OPTION + args, status, stdin, clean(out),
               before={**TEMP, **(before or {})}, after=LEFT + list(after))


ROWS = [
    row("unattended", ["-silent", "-dest", "a"], DONE, "", after=installed("a")),
    row("unattended failure, only the status tells", ["-silent", "-dest", "tmp/nothing-else"],
        FAILED, ""),
    row("the wizard's error text is shown", ["-dest"], FAILED,
        FOUND + "-dest must be followed by a name.\n" + OPTIONS),
    row("a conversation", ["-console", "-dest", "a"], DONE, stdin="\n", after=installed("a"),
        out=FOUND + GREETING + question("a") + "Textbox was installed in {dir}/a\n"),
    row("arguments with blanks and quotes", ["-console", "-dest", "a \"b' c"], DONE, stdin="\n",
        after=installed("a \"b' c"), out=FOUND + GREETING + question("a \"b' c")
        + "Textbox was installed in {dir}/a \"b' c\n"),
    row("a conversation with a failure", ["-console", "-dest", "a"], CANCELLED, stdin="file\n",
        before={"file": ""}, after=["file"], out=FOUND + GREETING + question("a") + NO_FOLDER
        + question("a") + "Cancelled; nothing was installed.\n"),
    row("cancelled, which is no error", ["-console", "-dest", "a"], CANCELLED, stdin="q\n",
        out=FOUND + GREETING + question("a") + "Cancelled; nothing was installed.\n"),
    row("no suitable Java", ["-cv:in", "in.tag"], NO_JVM, NOT_FOUND,
        before=UNKNOWN_JAVA, after=UNKNOWN_JAVA),
    row("no suitable Java, and silent", ["-cv:in", "in.tag", "-silent"], NO_JVM, "Textbox Setup\n",
        before=UNKNOWN_JAVA, after=UNKNOWN_JAVA),
]

if __name__ == "__main__":
    run(sys.argv[1:], ROWS, clean)
