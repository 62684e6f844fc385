"""Measures the launcher beside its peers; see run.sh, which builds what this needs."""
import argparse
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

import plot
from answers import measure_answers
from measure import compare, interleaved

SIZES = (1000, 3000, 10000, 30000, 100000, 300000, 1000000)
PAYLOADS_MB = (1, 10, 100)
DOCS = pathlib.Path(__file__).parent.parent / "docs"
FILES_FOR_PAGE = 1000000
ABOUT = """Each command of a row runs in turn with the others, round by round; what counts is processor time.
Peers that are not installed are left out: find, bfs, fd, makeself, tar, unshare (for SEARCH_ALL, as root).
The tree of files lies in TMPDIR."""


def installed(*names):
    return next((name for name in names if shutil.which(name)), None)


class Bench:
    def __init__(self, build, rounds, scratch):
        self.build, self.rounds, self.scratch = build, rounds, scratch
        self.rows = []
        self.scans = []

    def program(self, name):
        return str(self.build / "bin" / name)

    def add(self, what, commands, rounds=None):
        """One row for each peer of the first command."""
        rounds = rounds or self.rounds
        times = interleaved(commands, rounds)
        ours, *peers = commands
        for peer in peers:
            self.rows.append((what, peer, *compare(times, ours, peer), rounds))
            self.tell(f"{what} / {peer}: {self.rows[-1][4]:.2f}")
        return times

    @staticmethod
    def tell(text):
        print(text, file=sys.stderr, flush=True)

    def pack(self, name, files, tags, stub="corvane-launcher"):
        """Packs a setup of `files` (type, path) and `tags` (type, text); returns its path."""
        folder = self.scratch / f"{name}.parts"
        folder.mkdir()
        entries = [{"type": kind, "path": str(path)} for kind, path in files]
        for number, (kind, text) in enumerate(tags):
            (folder / f"{number}.tag").write_text(text)
            entries.append({"type": kind, "path": f"{number}.tag"})
        manifest = folder / "manifest.json"
        manifest.write_text(json.dumps({"purpose": 0, "files": entries}))
        setup = self.scratch / name
        stub = stub if "/" in stub else self.program(stub)
        subprocess.run([self.program("corvane-pack"), "pack", str(manifest), "--no-check", "--stub", stub,
                        "--output", str(setup)], check=True, stdout=subprocess.DEVNULL)
        return str(setup)

    # --- What is measured ---

    def start(self):
        """Of copies: a file that was written at once lies in the cache in larger parts than one that a
        linker wrote here and there, and users have such files."""
        for name in ("corvane-launcher", "bench_floor"):
            shutil.copy(self.program(name), self.scratch / name)
        self.add("start", {"corvane-launcher -cv:version": [str(self.scratch / "corvane-launcher"), "-cv:version"],
                           "a static program of C": [str(self.scratch / "bench_floor")]}, self.rounds * 5)

    def scan(self, largest):
        tree = self.scratch / "tree"
        check_room(self.scratch, largest)
        made = 0
        for size in (size for size in SIZES if size <= largest):
            grow_tree(tree, made, size)
            made = size
            commands = {"corvane": [self.program("bench_scan"), str(tree)],
                        "find": ["find", str(tree), "-path", "*/bin/java"]}
            if bfs := installed("bfs"):
                commands["bfs"] = [bfs, str(tree), "-path", "*/bin/java"]
            if fd := installed("fdfind", "fd"):
                commands["fd"] = [fd, "-uu", "-p", "/bin/java$", str(tree)]
            rounds = max(5, min(self.rounds, self.rounds * 20000 // size))
            times = self.add(f"scan of {size:,} files", commands, rounds)
            self.scans.append((size, times))
        shutil.rmtree(tree)

    def unpack(self):
        home = self.scratch / "jdk"
        (home / "bin").mkdir(parents=True)
        shutil.copy(self.program("bench_java"), home / "bin" / "java")
        for megabytes in PAYLOADS_MB:
            folder = self.scratch / f"payload{megabytes}"
            folder.mkdir()
            (folder / "payload.jar").write_bytes(os.urandom(megabytes << 20))
            setup = self.pack(f"setup{megabytes}", [
                ("jar", folder / "payload.jar"), ("verify", self.build / "java" / "verify.jar")],
                jvm_tags([home], ["1"]) + wizard('exec "@JVM_HOME@/@JVM_EXE@" %CP%()'))
            commands = {"corvane": [setup, "-cv:tempdir", str(self.scratch)]}
            if installed("makeself"):
                archive = str(self.scratch / f"makeself{megabytes}")
                subprocess.run(["makeself", "--nocomp", "--nox11", str(folder), archive, "x",
                                str(home / "bin" / "java")], check=True, capture_output=True)
                commands["makeself"] = [archive, "--nox11"]
            tar = str(self.scratch / f"payload{megabytes}.tar")
            subprocess.run(["tar", "-C", str(folder), "-cf", tar, "."], check=True)
            there = str(self.scratch / "there")
            java = str(home / "bin" / "java")
            commands["tar, rm"] = [["mkdir", there], ["tar", "-C", there, "-xf", tar], [java], [java],
                                   ["rm", "-r", there]]
            self.add(f"unpack {megabytes} MB, run, remove", commands,
                     max(5, self.rounds // (2 if megabytes > 10 else 1)))

    def whole_run(self, java_home):
        verify = self.build / "java" / "verify.jar"
        words = ["-cp", str(verify), "Verify", "java.specification.version"]
        java = [f"{java_home}/bin/java", *words]
        setup = self.pack("whole", [("verify", verify)], jvm_tags([java_home], ["..."])
                          + wizard('exec "@JVM_HOME@/@JVM_EXE@" ' + " ".join(words)))
        self.add("a whole run", {"corvane": [setup, "-cv:tempdir", str(self.scratch)],
                                 "the two java commands": [java, java]}, self.rounds * 2)
        floor = self.pack("whole-floor", [("verify", verify)],
                          jvm_tags([self.scratch / "jdk"], ["..."])
                          + wizard('exec "@JVM_HOME@/@JVM_EXE@"'))
        java = [str(self.scratch / "jdk" / "bin" / "java")]
        self.add("the same with a static program as Java",
                 {"corvane": [floor, "-cv:tempdir", str(self.scratch)],
                  "its two commands": [java, java]}, self.rounds * 5)


def check_room(folder, files):
    """Fails before the work rather than in it."""
    free = os.statvfs(folder).f_favail
    if 0 < free < files * 1.1:
        raise SystemExit(f"{folder} has room for {free:,} files only: let TMPDIR name another disk, or say --files.")


def grow_tree(root, made, wanted):
    """Files in folders of ten folders each, about 17 a folder; four Javas among them."""
    folders = [root]
    for number in range(1, wanted // 17 + 1):
        folders.append(folders[(number - 1) // 10] / f"folder{number}")
    for folder in folders:
        folder.mkdir(exist_ok=True)
    places = [str(folder) for folder in folders]
    for number in range(made, wanted):
        os.close(os.open(f"{places[number % len(places)]}/some-file-{number}.txt", os.O_WRONLY | os.O_CREAT))
    for number in range(4):
        home = folders[len(folders) // 4 * number] / "bin"
        home.mkdir(exist_ok=True)
        (home / "java").touch()


def jvm_tags(homes, versions, extra=""):
    """Jvm files, each for one version of Java."""
    hints = "PATH_HINT:\n" + "".join(f"  {home}\n" for home in homes) + "/:\n"
    return [("jvm", f"DESC: Java {version}\nJVM_EXE: bin/java\n{hints}JVM_PROPERTIES:\n"
             f"  java.specification.version = {version}\n/:\nCLASSPATH: \"-cp \"\n"
             f"CLASSPATH_SEPARATOR: \":\"\n{extra}") for version in versions]


def wizard(command):
    return [("launchscript", f"COMMAND: {command}\n"),
            ("instructions", "INSTRUCTIONS:\nFIND_JVM 0 0\nLAUNCH @S2@ 0\n/:\n")]


def real_homes():
    homes = {path.parent.parent.resolve() for path in pathlib.Path("/usr/lib/jvm").glob("*/bin/java")}
    return sorted(homes)


def table(rows):
    lines = ["| what | peer | ours, ms | peer, ms | ratio | difference, ms | rounds |", "|---|---|---|---|---|---|---|"]
    for what, peer, ours, theirs, ratio, difference, rounds in rows:
        lines.append(f"| {what} | {peer} | {ours:.2f} | {theirs:.2f} | {ratio:.2f} | {difference:+.2f} | {rounds} |")
    return "\n".join(lines) + "\n"


class Page:
    """docs/performance.md: what is measured stands between marks, part by part. A part that is not measured stays."""

    def __init__(self, may_write):
        self.path, self.may_write = DOCS / "performance.md", may_write

    def write(self, part, table_text, plot_name, plot_svg):
        text = f"\n{table_text}\n![{plot_name.removeprefix('performance-').removesuffix('.svg')}]({plot_name})\n\n"
        print(text)
        if not self.may_write:
            return
        begin, end = f"<!-- bench/run.sh writes from here: {part} -->\n", "<!-- to here -->\n"
        before, found, rest = self.path.read_text().partition(begin)
        _, found_end, after = rest.partition(end)
        if not (found and found_end):
            raise SystemExit(f"{self.path}: the marks of the part \"{part}\" are missing.")
        self.path.write_text(before + begin + text + end + after)
        (DOCS / plot_name).write_text(plot_svg)

    def leave(self, part, reason):
        Bench.tell(f"{self.path}: the part \"{part}\" stays as it was: {reason}.")


def read_options():
    options = argparse.ArgumentParser(
        prog="bench/run.sh", formatter_class=argparse.RawDescriptionHelpFormatter, epilog=ABOUT,
        description="Measures the launcher beside its peers and writes docs/performance.md's tables and plots.")
    options.add_argument("build", type=pathlib.Path, nargs="?", help=argparse.SUPPRESS)
    options.add_argument("--rounds", type=int, default=40, metavar="N",
                         help="how often a command runs (default 40); short ones oftener, long ones less often")
    options.add_argument("--files", type=int, default=FILES_FOR_PAGE, metavar="N",
                         help=f"the largest tree to scan, 1,000 or more (default {FILES_FOR_PAGE:,}, as the page shows)")
    options.add_argument("--before", metavar="STUB", type=pathlib.Path,
                         help="a stub to compare answers with, in place of one that asks each time")
    options.add_argument("--without-answers", action="store_true",
                         help="leave out what starts a Java often; the page keeps that part")
    options.add_argument("--no-docs", action="store_true", help="print the tables only")
    options = options.parse_args()
    if options.rounds < 1 or options.files < SIZES[0]:
        raise SystemExit(f"bench/run.sh: --rounds must be 1 or more, and --files {SIZES[0]:,} or more.")
    return options


def main():
    options = read_options()
    page, homes = Page(not options.no_docs), real_homes()
    with tempfile.TemporaryDirectory(prefix="corvane-bench-") as scratch:
        bench = Bench(options.build.resolve(), options.rounds, pathlib.Path(scratch))
        bench.start()
        bench.unpack()
        if homes:
            bench.whole_run(homes[0])
        bench.scan(options.files)  # last: a disk is busy for long with a million files that went
        page.write("peers", table(bench.rows), "performance-scan.svg", plot.scans(bench.scans))
        if options.without_answers or not homes:
            page.leave("answers", "no Java is in /usr/lib/jvm" if not homes else "--without-answers")
        else:
            before = str(options.before.resolve()) if options.before else "bench_forgetful"
            answers = measure_answers(bench, homes, before, jvm_tags)
            page.write("answers", answers.table(), "performance-answer.svg", answers.plot())


if __name__ == "__main__":
    main()
