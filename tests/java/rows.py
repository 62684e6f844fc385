"""Table tests of whole programs.

A row says what a program is given and everything that it must then show and leave behind; whole
texts are compared. The program runs in a folder of its own, with that folder's "home" as HOME,
without a terminal, and with nothing in its environment but what is needed to find programs.
"""

import dataclasses
import difflib
import os
import subprocess
import sys
import tempfile


@dataclasses.dataclass
class Row:
    """In args, err, out and env {dir} stands for the folder that the program runs in."""

    name: str
    args: list
    status: int = 0
    stdin: str = ""
    out: str = ""
    err: str = ""
    env: dict = dataclasses.field(default_factory=dict)
    before: dict = dataclasses.field(default_factory=dict)  # files that are there: name to text
    after: list = dataclasses.field(default_factory=list)  # all files that are there afterwards


def run(command, rows, clean=lambda out: out):
    """Runs all rows; ends the process with status 1 when one of them failed.

    clean takes out of the standard output what is another on each machine.
    """
    failed = [row.name for row in rows if not _passes(command, row, clean)]
    print(f"{len(rows) - len(failed)} rows passed, {len(failed)} failed")
    sys.exit(1 if failed else 0)


def _passes(command, row, clean):
    with tempfile.TemporaryDirectory(prefix="corvane test ") as folder:
        folder = os.path.realpath(folder)
        for name, text in row.before.items():
            _write(os.path.join(folder, name), text)
        result = subprocess.run(
            command + [arg.format(dir=folder) for arg in row.args],
            input=row.stdin,
            capture_output=True,
            encoding="utf-8",
            cwd=folder,
            env=_environment(folder, row.env),
            start_new_session=True,
            timeout=120,
            check=False,
        )
        wanted = _shown(
            row.status, row.out.format(dir=folder), row.err.format(dir=folder), sorted(row.after)
        )
        got = _shown(result.returncode, clean(result.stdout), result.stderr, _files(folder))
    if got == wanted:
        return True
    print(f"FAILED: {row.name}")
    print("\n".join(difflib.unified_diff(wanted, got, "wanted", "got", lineterm="")))
    return False


def _environment(folder, extra):
    environment = {
        "PATH": os.environ["PATH"],
        "LC_ALL": "C.UTF-8",
        "HOME": os.path.join(folder, "home"),
    }
    environment.update({name: text.format(dir=folder) for name, text in extra.items()})
    return environment


def _shown(status, out, err, files):
    parts = (("status", str(status)), ("out", out), ("err", err), ("files", "\n".join(files)))
    return [f"{title}: {line}" for title, text in parts for line in text.split("\n")]


def _write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def _files(folder):
    return sorted(
        os.path.relpath(os.path.join(parent, name), folder)
        for parent, _, names in os.walk(folder)
        for name in names
    )
