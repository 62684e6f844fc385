"""How long a user waits for the answer which Java will do, and how many are started for it."""
import json
import os
import pathlib
import re
import shutil
import subprocess

import plot
from measure import compare, interleaved, java_starts

MOST_JAVAS = 8
SAMPLE = pathlib.Path(__file__).parent.parent / "examples" / "sample" / "manifest.json"
FIND = [("instructions", "INSTRUCTIONS:\nFIND_JVM 0 0\n/:\n")]
UNWANTED = ["90", "91", "92", "93"]
NO_JAVA_IN_PATH = ["PATH=/nonexistent"]  # so that the homes of the hints are the only ones
PARTS_OF_ROOT = ("bin", "lib", "lib64", "usr/bin", "usr/lib", "usr/lib64", "etc", "proc", "dev")


class Answers:
    def __init__(self):
        self.rows, self.growth = [], []

    def table(self):
        lines = ["| what is asked | starts before | now | ms before | now | ratio | rounds |",
                 "|---|---|---|---|---|---|---|"]
        for what, starts, (now, before, ratio, _), rounds in self.rows:
            lines.append(f"| {what} | {starts[0]} | {starts[1]} | {before:.0f} | {now:.0f} | {ratio:.2f} | {rounds} |")
        lines += ["", "| Javas | starts before | now | ms before | now | rounds |", "|---|---|---|---|---|---|"]
        for count, starts, (now, before, _, _), rounds in self.growth:
            lines.append(f"| {count} | {starts[0]} | {starts[1]} | {before:.0f} | {now:.0f} | {rounds} |")
        return "\n".join(lines) + "\n"

    def plot(self):
        return plot.lines("Processor time to the first suitable Java, five descriptions", "Javas", "ms", {
            "asked each time": [(count, result[1]) for count, _, result, _ in self.growth],
            "asked once": [(count, result[0]) for count, _, result, _ in self.growth]})


def version_of(home):
    text = subprocess.run([f"{home}/bin/java", "-XshowSettings:properties", "-version"],
                          capture_output=True, text=True, check=True).stderr
    return next(line.split("=")[1].strip() for line in text.splitlines()
                if "java.specification.version =" in line)


def homes_and_links(folder, homes):
    """Eight homes: what is installed, and links to it. The last one is an installed Java."""
    places = []
    for number in range(MOST_JAVAS - 1):
        link = folder / f"java{number}"
        link.symlink_to(homes[0] if number % 2 else homes[-1])
        places.append(link)
    return [*places, homes[0]]


def sample_parts(build):
    """The sample's verify archive, and its jvm files as if no Java here suited them: their hints for
    other homes are taken out, and they want a version that there is not."""
    files = json.loads(SAMPLE.read_text())["files"]
    archives = [("verify", build / "java" / entry["path"]) for entry in files if entry["type"] == "verify"]
    tags, wanted = [], 0
    for entry in (entry for entry in files if entry["type"] == "jvm"):
        text = re.sub(r"^PATH_HINT:.*?^/:\n", "", (SAMPLE.parent / entry["path"]).read_text(),
                      flags=re.DOTALL | re.MULTILINE)
        text, changes = re.subn(r"^( *java\.specification\.version *=).*", r"\1 none", text, flags=re.MULTILINE)
        wanted += changes
        tags.append(("jvm", text))
    if wanted == 0 or len(archives) != 1:
        raise SystemExit(f"{SAMPLE}: no jvm file there wants a java.specification.version, or there is not one "
                         "verify archive; bench/answers.py needs both.")
    return archives, tags


def make_root(folder, homes):
    """A root for a scan that finds eight Javas: bind mounts of what Java needs, and links to it."""
    for part in PARTS_OF_ROOT:
        source = pathlib.Path("/", part)
        if source.is_symlink():
            (folder / part).symlink_to(os.readlink(source))
        elif source.is_dir():
            (folder / part).mkdir(parents=True)
    for number in range(MOST_JAVAS - len(homes)):
        home = folder / f"opt/java{number}/bin"
        home.mkdir(parents=True)
        (home / "java").symlink_to(homes[number % len(homes)] / "bin/java")
    (folder / "tmp").mkdir()
    (folder / "search").write_text("ACTION: SEARCH_ALL\n")
    mounts = "".join(f"mount --rbind /{part} {folder}/{part} && " for part in PARTS_OF_ROOT
                     if not (folder / part).is_symlink() and (folder / part).is_dir())
    return ["unshare", "-m", "sh", "-c", f'{mounts} exec chroot {folder} "$@"', "sh"]


class Asker:
    """Asks a question with the stubs of before and now: the same files behind each."""

    def __init__(self, bench, before_stub):
        self.bench = bench
        self.stubs = {"now": "corvane-launcher", "before": before_stub}
        self.verify = [("verify", bench.build / "java" / "verify.jar")]

    def pack(self, name, tags, verify=None):
        return {when: self.bench.pack(f"{name}-{when}", verify or self.verify, tags + FIND, stub)
                for when, stub in self.stubs.items()}

    def compare(self, name, commands):
        starts = java_starts(commands["before"]), java_starts(commands["now"])
        if 0 in starts:
            raise SystemExit(f"{name}: no Java was started ({starts[0]} before, {starts[1]} now): "
                             + " ".join(commands["now"]))
        rounds = max(5, self.bench.rounds // 4)
        times = interleaved(commands, rounds)
        self.bench.tell(f"{name}: {starts[0]} starts, now {starts[1]}")
        return starts, compare(times, "now", "before"), rounds

    def ask(self, name, tags, environment, verify=None):
        setups = self.pack(name, tags, verify)
        return self.compare(name, {when: ["env", *environment, setup, "-cv:tempdir", str(self.bench.scratch)]
                                   for when, setup in setups.items()})

    def search_all(self, tags, homes):
        root = self.bench.scratch / "root"
        root.mkdir()
        inside = make_root(root, homes)
        setups = self.pack("all", tags)
        for when, setup in setups.items():
            shutil.move(setup, root / when)
        return self.compare("all", {when: [*inside, f"/{when}", "-cv:tempdir", "/tmp", "-cv:in", "/search"]
                             for when in setups})


def measure_answers(bench, homes, before_stub, jvm_tags):
    asker, answers = Asker(bench, before_stub), Answers()
    folder = bench.scratch / "homes"
    folder.mkdir()
    places = homes_and_links(folder, homes)
    suited = [*UNWANTED, version_of(homes[0])]
    for count in range(1, MOST_JAVAS + 1):
        chosen = places[MOST_JAVAS - count:]
        answers.growth.append((count, *asker.ask(f"grow{count}", jvm_tags(chosen, suited), NO_JAVA_IN_PATH)))
    verify, tags = sample_parts(bench.build)
    one_java = [f"JAVA_HOME={homes[0]}", f"PATH={homes[0]}/bin:/usr/bin:/bin"]
    answers.rows.append(("the sample, one Java that does not suit, by JAVA_HOME and PATH",
                         *asker.ask("sample", tags, one_java, verify)))
    none = jvm_tags(places, [*UNWANTED, "94"])
    answers.rows.append(("five jvm files, eight Javas, none suits", *asker.ask("none", none, NO_JAVA_IN_PATH)))
    if os.geteuid() == 0 and shutil.which("unshare"):
        answers.rows.append(("the same by SEARCH_ALL", *asker.search_all(jvm_tags([], [*UNWANTED, "94"]), homes)))
    return answers
