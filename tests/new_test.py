"""`corvane-pack new` as its users call it: new_test.py PROGRAM

What it makes is checked, packed and run, in stand-in Javas that load the verify class by its number.
"""

import os
import pathlib
import pty
import subprocess
import sys
import tempfile
import zipfile

PROGRAM = sys.argv[1]

# A Java that knows the class file version as a real one does, by the head of the class.
JAVA = """#!/bin/sh
for word; do
    case $word in
    -cp) jar=next ;;
    *) [ "${jar-}" = next ] && jar=$word ;;
    esac
    last=$word
done
case " $* " in
*" Verify "*)
    major=$("@PYTHON@" -c 'import sys, zipfile
print(int.from_bytes(zipfile.ZipFile(sys.argv[1]).read("Verify.class")[6:8], "big"))' "$jar")
    [ "$major" -le $((@CLASS@ + 44)) ] || exit 1
    echo 1739021872
    echo @NAME@
    echo @BITS@
    ;;
*) echo "ran in @NAME@ with $*" | sed 's/-cp [^ ]*/-cp JAR/'; exit 7 ;;
esac
"""

NO_JAVA = ("This setup needs Java 17 or later, and found none. Install one (on Debian and Ubuntu: "
           "apt install default-jre), or run the setup again with -cv:javahome and the folder of "
           "the Java that it is to use.")

FILES = ("manifest.json instructions.tag launch-script.tag jvm-message.tag no-java.tag {} verify.jar"
         "\nNow run: corvane-pack pack setup/manifest.json --output FILE\n")
ONE = "setup: " + FILES.format("java.tag")


def jar(path, class_name="com.example.Setup", version=17, main=True):
    with zipfile.ZipFile(path, "w") as made:
        if main:
            made.writestr("META-INF/MANIFEST.MF", f"Manifest-Version: 1.0\r\nMain-Class: {class_name}\r\n")
        made.writestr(class_name.replace(".", "/") + ".class",
                      b"\xca\xfe\xba\xbe\0\0" + (version + 44).to_bytes(2, "big"))


def fake_java(home, version, bits=64):
    (home / "bin").mkdir(parents=True)
    program = home / "bin" / "java"
    name = "1.8" if version == 8 else str(version)
    program.write_text(JAVA.replace("@CLASS@", str(version)).replace("@NAME@", name)
                       .replace("@BITS@", str(bits)).replace("@PYTHON@", sys.executable))
    program.chmod(0o755)


class Place:
    """A folder with jars, in a closed environment."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        jar(self.folder / "app.jar")
        jar(self.folder / "plain.jar", main=False)
        jar(self.folder / "eight.jar", version=8)
        jar(self.folder / "nested.jar", class_name="com.example.Outer$Setup")
        (self.folder / "text.jar").write_text("no jar\n")
        jar(self.folder / "coloured.jar", class_name="a\x1b[31mb")
        jar(self.folder / "letters.jar", class_name="com.exämple.Größe")
        jar(self.folder / "two\nlines.jar")
        jar(self.folder / "verify.jar")
        jar(self.folder / "java21.tag")
        (self.folder / "sub").mkdir()
        jar(self.folder / "sub" / "app.jar")
        (self.folder / "full").mkdir()
        (self.folder / "full" / "mine").write_text("mine\n")
        (self.folder / "empty").mkdir()
        self.env = {"PATH": os.environ["PATH"], "HOME": folder, "LANG": "C", "LC_ALL": "C"}

    def run(self, *words, **more):
        # Without a terminal, also where the tests have one.
        return subprocess.run(words, cwd=self.folder, env={**self.env, **more}, text=True,
                              stdin=subprocess.DEVNULL, capture_output=True, start_new_session=True)

    def files(self):
        return sorted(str(p.relative_to(self.folder)) for p in self.folder.rglob("*"))


# name, arguments, status, standard output, standard error; what fails must leave nothing.
ROWS = [
    ("all from the jar", ["setup", "--jar", "app.jar"], 0, ONE, ""),
    ("into an empty folder", ["empty", "--jar", "app.jar"], 0, ONE.replace("setup", "empty"), ""),
    ("below new folders", ["a/b", "--jar", "app.jar"], 0, ONE.replace("setup", "a/b"), ""),
    ("several jars", ["setup", "--jar", "app.jar", "plain.jar", "--jar", "eight.jar"], 0, ONE, ""),
    ("a class in the second jar",
     ["setup", "--jar", "nested.jar", "plain.jar", "--main", "com.example.Setup"], 0, ONE, ""),
    ("a nested class", ["setup", "--jar", "nested.jar"], 0, ONE, ""),
    ("a range", ["setup", "--jar", "app.jar", "--java", "17..19"], 0,
     "setup: " + FILES.format("java19.tag java18.tag java17.tag"), ""),
    ("one Java", ["setup", "--jar", "app.jar", "--java", "21"], 0,
     "setup: " + FILES.format("java21.tag"), ""),
    ("64 bits", ["setup", "--jar", "app.jar", "--64-bit"], 0, ONE, ""),
    ("a folder with a blank", ["my setup", "--jar", "app.jar"], 0,
     ONE.replace("setup/manifest.json", "'my setup/manifest.json'").replace("setup: ", "my setup: "), ""),
    ("no jar", ["setup"], 1, "", "no jar is named; name your program's jars with --jar FILE"),
    ("a jar that is not there", ["setup", "--jar", "x.jar"], 1, "",
     "there is no file x.jar; build it first, or correct --jar"),
    ("a jar that is a folder", ["setup", "--jar", "sub"], 1, "",
     "there is no file sub; build it first, or correct --jar"),
    ("a jar that is none", ["setup", "--jar", "text.jar"], 1, "",
     "text.jar: this is no jar; a jar is a zip file"),
    ("two of a name", ["setup", "--jar", "app.jar", "sub/app.jar"], 1, "",
     "two jars are called app.jar; give each a name of its own"),
    ("no main class", ["setup", "--jar", "plain.jar"], 1, "",
     "plain.jar does not say which class it starts; name it with --main CLASS"),
    ("no such class", ["setup", "--jar", "app.jar", "--main", "com.example.Nothing"], 1, "",
     "none of the jars holds the class com.example.Nothing; name the right class with --main, or "
     "its jar with --jar"),
    ("a class with a slash", ["setup", "--jar", "app.jar", "--main", "com/example/Setup"], 1, "",
     '"com/example/Setup" is no name of a class; write it as in com.example.Setup'),
    ("a class for the shell", ["setup", "--jar", "app.jar", "--main", "a;reboot"], 1, "",
     '"a;reboot" is no name of a class; write it as in com.example.Setup'),
    ("a class of other letters", ["setup", "--jar", "letters.jar"], 0, ONE, ""),
    ("a class for the terminal", ["setup", "--jar", "coloured.jar"], 1, "",
     '"a\\x1B[31mb" is no name of a class; write it as in com.example.Setup'),
    ("a jar with the name of the verify archive", ["setup", "--jar", "verify.jar"], 1, "",
     "a file of the setup is called verify.jar, too; give the jar another name"),
    ("a jar with the name of a jvm file", ["setup", "--jar", "java21.tag", "--java", "21"], 1, "",
     "a file of the setup is called java21.tag, too; give the jar another name"),
    ("a jar of two lines", ["setup", "--jar", "two\nlines.jar"], 1, "",
     '"two\\x0Alines.jar" holds a newline, at which a launcher stops reading it; give the jar '
     "another name"),
] + [
    (f"an empty {option}", ["setup", "--jar", "app.jar", option, ""], 2, "",
     f"{option}: it is empty; leave it out for the default\nRun with --help for more information.")
    for option in ["--main", "--title", "--java"]
] + [
    ("a class that ends with a dot", ["setup", "--jar", "app.jar", "--main", "com."], 1, "",
     '"com." is no name of a class; write it as in com.example.Setup'),
    ("a Java older than the class", ["setup", "--jar", "app.jar", "--java", "11+"], 1, "",
     "com.example.Setup was compiled for Java 17 and does not run in Java 11; ask for a later Java "
     "with --java, or compile it with --release 11"),
    ("a title of nothing", ["setup", "--jar", "app.jar", "--title", "  "], 1, "",
     "the title is empty; write what users are to read"),
    ("a title of two lines", ["setup", "--jar", "app.jar", "--title", "a\nb"], 1, "",
     "the title holds a control character; write it on one line"),
    ("a title in no UTF-8", ["setup", "--jar", "app.jar", "--title", b"\xe4"], 1, "",
     "the title holds letters that a launcher cannot show; write others"),
    ("a full folder", ["full", "--jar", "app.jar"], 1, "",
     "full is not empty; name a new or an empty folder"),
    ("a file", ["app.jar", "--jar", "app.jar"], 1, "",
     "app.jar is a file; name a new or an empty folder"),
] + [
    (f"the range {text}", ["setup", "--jar", "eight.jar", "--java", text], 1, "", f'"{text}" {error}')
    for text, error in [
        ("x", "names no Java; write 17+ for 17 and later, 8..17 for all of these, or 21"),
        ("17-21", "names no Java; write 17+ for 17 and later, 8..17 for all of these, or 21"),
        (">=17", "names no Java; write 17+ for 17 and later, 8..17 for all of these, or 21"),
        ("1.8", "names no Java; write 17+ for 17 and later, 8..17 for all of these, or 21"),
        ("17..", "names no Java; write 17+ for 17 and later, 8..17 for all of these, or 21"),
        ("..17", "names no Java; write 17+ for 17 and later, 8..17 for all of these, or 21"),
        ("99999999999+", "names no Java; write 17+ for 17 and later, 8..17 for all of these, or 21"),
        ("7+", "begins too early; the oldest Java that can be asked for is 8"),
        ("17..11", "ends before it begins; write the older Java first"),
        ("8..48", "is a jvm file for each of too many Javas; write 8+ for all from the first on"),
    ]
]


def fails(name, got, wanted):
    if got == wanted:
        return False
    print(f"{name}:\n  wanted {wanted!r}\n  got    {got!r}")
    return True


def try_row(name, args, status, out, err):
    with tempfile.TemporaryDirectory() as folder:
        place = Place(folder)
        before = place.files()
        made = place.run(PROGRAM, "new", *args)
        error = f"corvane-pack: {err}\n" if err else ""
        if fails(name, (made.returncode, made.stdout, made.stderr), (status, out, error)):
            return False
        if status:
            return not fails(name + ", what is left", place.files(), before)
        # Twice the same files; check finds nothing, and it is packed.
        manifest = args[0] + "/manifest.json"
        again = ["again/" + args[0]] + args[1:]
        found = place.run(PROGRAM, "check", "--strict", manifest)
        packed = place.run(PROGRAM, "pack", manifest, "--output", "packed")
        place.run(PROGRAM, "new", *again)
        same = (place.folder / args[0] / "verify.jar").read_bytes() == (
            place.folder / "again" / args[0] / "verify.jar").read_bytes()
        return not fails(name + ", checked and packed",
                         (found.returncode, found.stdout, packed.returncode, packed.stderr, same),
                         (0, "", 0, "", True))


# name, further options, Java (version, bits), arguments, status, the end of the output
RUNS = [
    ("the oldest that will do", [], (17, 64), [], 7, "ran in 17 with -cp JAR com.example.Setup\n"),
    ("one that is not out yet", [], (99, 64), ["x"], 7, "ran in 99 with -cp JAR com.example.Setup x\n"),
    ("one too old", [], (16, 64), [], 69, NO_JAVA.replace("This setup", "setup") + "\n"),
    ("a very old one", [], (8, 64), [], 69, NO_JAVA.replace("This setup", "setup") + "\n"),
    ("one too old, and silent", [], (11, 64), ["-silent"], 69, ""),
    ("in a range", ["--java", "17..21"], (18, 64), [], 7, "ran in 18 with -cp JAR com.example.Setup\n"),
    ("behind a range", ["--java", "17..21"], (22, 64), [], 69,
     NO_JAVA.replace("This setup", "setup").replace("17 or later", "17 to 21") + "\n"),
    ("32 bits", ["--64-bit"], (17, 32), [], 69,
     NO_JAVA.replace("This setup", "setup").replace("Java 17", "a 64-bit Java 17", 1) + "\n"),
    ("64 bits", ["--64-bit"], (17, 64), [], 7, "ran in 17 with -cp JAR com.example.Setup\n"),
    ("8 and later", ["--jar", "eight.jar"], (8, 64), [], 7, "ran in 1.8 with -cp JAR com.example.Setup\n"),
    ("a nested class", ["--jar", "nested.jar"], (17, 64), [], 7,
     "ran in 17 with -cp JAR com.example.Outer$Setup\n"),
    ("a title with everything", ["--title", "\"A\" $HOME `b` \\u00e9 'c' @d@ #HOME# %e%() é"], (8, 64), [], 69,
     None),
]


def make_tools(place):
    """What the launcher's shell needs, where the Javas of this machine are not."""
    tools = place.folder / "tools"
    tools.mkdir()
    for tool in ["sh", "sed", "awk", "od", "unzip", "cat", "timeout"]:
        for folder in os.environ["PATH"].split(":"):
            if os.path.exists(f"{folder}/{tool}"):
                (tools / tool).symlink_to(f"{folder}/{tool}")
                break
    place.env["PATH"] = str(tools)
    place.env["TMPDIR"] = str(place.folder)
    return tools


def make_setup(place, options):
    jars = [] if "--jar" in options else ["--jar", "app.jar"]
    made = place.run(PROGRAM, "new", "setup", *jars, *options)
    assert made.returncode == 0, made.stderr
    # Only what the test puts there.
    for tag in (place.folder / "setup").glob("java*.tag"):
        text = tag.read_text()
        begin = text.index("PATH_HINT:")
        tag.write_text(text[:begin] + "PATH_HINT: jre\n" + text[text.index("/:", begin) + 2:])
    packed = place.run(PROGRAM, "pack", "setup/manifest.json", "--output", "packed")
    assert packed.returncode == 0, packed.stderr


def try_run(name, options, java, args, status, end):
    with tempfile.TemporaryDirectory() as folder:
        place = Place(folder)
        make_setup(place, options)
        make_tools(place)
        fake_java(place.folder / "jre", *java)
        ran = place.run("./packed", "-cv:tempdir", folder, *args, "-cv:log", "log", LANG="C.UTF-8")
        log = (place.folder / "log").read_text(errors="replace")
        out = ran.stdout + "".join(line + "\n" for line in log.split("\n") if line.startswith("ran in"))
        good = ran.returncode == status and (end is None or out.endswith(end)) and "ERROR" not in ran.stdout
        if not good:
            print(f"{name}: {ran.returncode}\n{ran.stdout}\n{log}")
        return good


# Which of the programs are there, the environment, arguments; the one that shows the window.
WINDOWS = [
    ("zenity first", ["xmessage", "kdialog", "zenity"], {"DISPLAY": ":9"}, [],
     f"zenity --error --timeout=600 --text={NO_JAVA}\n"),
    ("then kdialog", ["xmessage", "kdialog"], {"WAYLAND_DISPLAY": "w"}, [], f"kdialog --error {NO_JAVA}\n"),
    ("then xmessage", ["xmessage"], {"DISPLAY": ":9"}, [], f"xmessage -center -timeout 600 {NO_JAVA}\n"),
    ("none of them", [], {"DISPLAY": ":9"}, [], ""),
    ("no screen", ["zenity"], {}, [], ""),
    ("silent", ["zenity"], {"DISPLAY": ":9"}, ["-silent"], ""),
    ("other arguments", ["zenity"], {"DISPLAY": ":9"}, ["-silently", "a'b\"c"],
     f"zenity --error --timeout=600 --text={NO_JAVA}\n"),
]


def try_window(name, programs, env, args, shown):
    with tempfile.TemporaryDirectory() as folder:
        place = Place(folder)
        make_setup(place, [])
        tools = make_tools(place)
        for program in programs:
            (tools / program).write_text(f'#!/bin/sh\necho "{program} $*" >>"{folder}/shown"\n')
            (tools / program).chmod(0o755)
        ran = place.run("./packed", "-cv:tempdir", folder, *args, **env)
        record = place.folder / "shown"
        got = (ran.returncode, record.read_text() if record.exists() else "")
        return not fails("window, " + name, got, (69, shown))


# What is typed, and the status; then the class, the Java and the title in the files.
TALKS = [
    ("all proposals", "app.jar\n\n\n\n\n", 0, ["com.example.Setup", "Java 17 or later", "DESC: setup\n"]),
    ("own answers", " app.jar \nplain.jar\n\ncom.example.Setup\n21\nMine\n", 0,
     ["com.example.Setup", "DESC: Java 21\n", "DESC: Mine\n"]),
    ("wrong answers", "x.jar\napp.jar\napp.jar\n\nno.Class\ncom.example.Setup\n8+\n21+\n\n", 0,
     ["com.example.Setup", "Java 21 or later", "DESC: setup\n"]),
    ("the end of the input", "app.jar\n\n\x04", 1, []),
]


def try_talk(name, typed, status, texts):
    with tempfile.TemporaryDirectory() as folder:
        place = Place(folder)
        child, terminal = pty.fork()
        if child == 0:
            os.chdir(folder)
            os.execv(PROGRAM, [PROGRAM, "new", "setup"])
        os.write(terminal, typed.encode())
        shown = b""
        try:
            while piece := os.read(terminal, 4096):
                shown += piece
        except OSError:
            pass  # the end
        got = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
        made = "".join(p.read_text() for p in place.folder.glob("setup/*.tag"))
        missing = [text for text in texts if text not in made]
        if got != status or missing or (status and (place.folder / "setup").exists()):
            print(f"talk, {name}: {got}, without {missing}\n{shown.decode()}")
            return False
        return True


# What the sample shares with a new setup must not fall behind it.
SAMPLE = pathlib.Path(__file__).parent.parent / "examples" / "sample"


def try_sample():
    with tempfile.TemporaryDirectory() as folder:
        place = Place(folder)
        jar(place.folder / "textbox.jar", class_name="textbox.Setup", version=8)
        place.run(PROGRAM, "new", "setup", "--jar", "textbox.jar", "--title", "Textbox Setup")
        made = {p.name: p.read_text() for p in (place.folder / "setup").glob("*.tag")}
        sample = {p.name: p.read_text() for p in SAMPLE.glob("*.tag")}
        return not fails("the sample", sample, made)


def main():
    results = [try_row(*row) for row in ROWS] + [try_run(*row) for row in RUNS]
    results += [try_window(*row) for row in WINDOWS] + [try_talk(*row) for row in TALKS]
    results.append(try_sample())
    print(f"{results.count(True)} rows passed, {results.count(False)} failed")
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
