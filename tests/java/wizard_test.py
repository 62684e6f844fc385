"""The sample's wizard by itself, without the launcher: wizard_test.py JAVA WIZARD_JAR"""

import sys

from rows import Row, run

DONE, FAILED, CANCELLED = 0, 3, 232

OPTIONS = """\
Options: -silent       install without questions
         -console      ask in the terminal, never in a window
         -dest DIR     the folder to install to, or to propose
         -record FILE  write the folder that was chosen into FILE
"""
GREETING = "\nThis sets up Textbox, which draws boxes around texts.\n"
NO_FOLDER = "Cannot make the folder {dir}/file: there is a file of that name\n"


def installed(folder):
    files = ("README.txt", "bin/textbox", "installed-files.txt", "uninstall")
    return [f"{folder}/{name}" for name in files]


def question(proposed):
    return f"\nFolder to install to (Enter for {{dir}}/{proposed}, q to cancel):\n> "


ROWS = [
    # Unattended
    Row("the folder proposed is below HOME", ["-silent"],
        out="Textbox was installed in {dir}/home/textbox\n", after=installed("home/textbox")),
    Row("a relative folder is the caller's", ["-silent", "-dest", "a/b"],
        out="Textbox was installed in {dir}/a/b\n", after=installed("a/b")),
    Row("blanks, quotes, letters beyond ASCII", ["-silent", "-dest", "a b/c'\"\u00fc"],
        out="Textbox was installed in {dir}/a b/c'\"\u00fc\n", after=installed("a b/c'\"\u00fc")),
    Row("silence wins over the console", ["-console", "-silent", "-dest", "a"],
        out="Textbox was installed in {dir}/a\n", after=installed("a")),
    Row("of two folders the last one counts", ["-silent", "-dest", "a", "-dest", "b"],
        out="Textbox was installed in {dir}/b\n", after=installed("b")),
    Row("over an earlier installation, others' files stay", ["-silent", "-dest", "a"],
        before={"a/README.txt": "old", "a/mine": ""},
        out="Textbox was installed in {dir}/a\n", after=installed("a") + ["a/mine"]),
    Row("the chosen folder is recorded", ["-silent", "-dest", "a", "-record", "chosen"],
        out="Textbox was installed in {dir}/a\n", after=installed("a") + ["chosen"]),
    # Failures
    Row("a file where the folder should be", ["-silent", "-dest", "file"], FAILED,
        before={"file": ""}, err=NO_FOLDER, after=["file"]),
    Row("a file above the folder", ["-silent", "-dest", "file/x"], FAILED,
        before={"file": ""}, err=NO_FOLDER, after=["file"]),
    Row("what was written before a failure is taken back", ["-silent", "-dest", "a"], FAILED,
        before={"a/uninstall/x": ""}, after=["a/uninstall/x"],
        err="Cannot write {dir}/a/uninstall: there is a folder of that name\n"),
    Row("a record that cannot be written", ["-silent", "-dest", "a", "-record", "no/file"], FAILED,
        err="Cannot write no/file: no such file or folder\n", after=installed("a")),
    Row("a name that the locale cannot write", ["-silent", "-dest", "\u00fc"], FAILED,
        env={"LC_ALL": "C"}, err="The name ?? cannot be used in this locale: "
        "Malformed input or input contains unmappable characters\n"),
    Row("an unknown option", ["-silent", "-x"], FAILED, err="Unknown option: -x\n" + OPTIONS),
    Row("a folder option without its folder", ["-dest"], FAILED,
        err="-dest must be followed by a name.\n" + OPTIONS),
    Row("an empty folder", ["-silent", "-dest", ""], FAILED,
        err="-dest must be followed by a name.\n" + OPTIONS),
    Row("a record option without its file", ["-record"], FAILED,
        err="-record must be followed by a name.\n" + OPTIONS),
    Row("nobody to ask", [], FAILED, err="There is neither a display nor a terminal to ask for the "
        "folder. Run the setup again with -silent.\n" + OPTIONS),
    # Conversations
    Row("Enter takes the folder proposed", ["-console", "-dest", "a"], stdin="\n",
        out=GREETING + question("a") + "Textbox was installed in {dir}/a\n", after=installed("a")),
    Row("another folder, below the home folder", ["-console", "-dest", "a"], stdin=" ~/b c \n",
        out=GREETING + question("a") + "Textbox was installed in {dir}/home/b c\n",
        after=installed("home/b c")),
    Row("q cancels", ["-console", "-dest", "a"], CANCELLED, stdin="q\n",
        out=GREETING + question("a") + "Cancelled; nothing was installed.\n"),
    Row("the end of the input cancels", ["-console", "-dest", "a"], CANCELLED,
        out=GREETING + question("a") + "Cancelled; nothing was installed.\n"),
    Row("asks again for a folder that will not do", ["-console", "-dest", "a"], stdin="file\n\n",
        before={"file": ""},
        out=GREETING + question("a") + NO_FOLDER + question("a")
        + "Textbox was installed in {dir}/a\n", after=installed("a") + ["file"]),
]

if __name__ == "__main__":
    java, jar = sys.argv[1:]
    run([java, "-Djava.awt.headless=true", "-cp", jar, "textbox.Setup"], ROWS)
