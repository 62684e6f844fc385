#!/usr/bin/env python3
"""Checks that a test leaves no process and no folder behind, however it ends.

Usage: guard_test.py GUARDED     (the program of tests/support/guarded.cpp)
"""
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time

GUARDED = sys.argv[1]
PATIENCE = 20

# Makes a folder that cannot be entered, starts a process in a session of its own that ignores
# signals, and prints its id.
LITTER = """
mkdir -p "$TMPDIR/a/b" && chmod 0 "$TMPDIR/a"
setsid sh -c 'trap "" HUP INT TERM; echo $$; while :; do sleep 0.05; done' &
"""

ENDINGS = [
    # (name, what the test does after that, signal sent to what was started, wait status)
    ("ends well", "sleep 0.2; exit 0", None, 0),
    ("fails", "sleep 0.2; exit 3", None, 3),
    ("crashes", "sleep 0.2; kill -SEGV $$", None, -signal.SIGSEGV),
    ("is killed", "exec sleep 60", signal.SIGKILL, -signal.SIGKILL),
    ("is interrupted", "exec sleep 60", signal.SIGINT, -signal.SIGINT),
]


def is_alive(pid):
    try:
        state = pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()[0]
        return state != "Z"
    except FileNotFoundError:
        return False


def wait_until(done):
    end = time.monotonic() + PATIENCE
    while not done() and time.monotonic() < end:
        time.sleep(0.01)
    return done()


def run(row, scratch):
    name, rest, number, wanted = row
    test = subprocess.Popen([GUARDED, "sh", "-c", LITTER + rest], stdout=subprocess.PIPE, text=True,
                            env=dict(os.environ, TMPDIR=scratch))
    litter = int(test.stdout.readline())
    if number is not None:
        test.send_signal(number)
    status = test.wait(PATIENCE)
    if status != wanted:
        yield f"{name}: status {status}, wanted {wanted}"
    if not wait_until(lambda: not is_alive(litter)):
        yield f"{name}: the process {litter} is left"
    if not wait_until(lambda: not os.listdir(scratch)):
        yield f"{name}: {os.listdir(scratch)} is left"


def surroundings(scratch):
    command = ["sh", "-c", "umask; echo \"$LANG$LANGUAGE$LC_TIME-$LC_ALL\""]
    output = subprocess.run([GUARDED, *command], capture_output=True, text=True, umask=0o077, env=dict(
        os.environ, TMPDIR=scratch, LANG="fr_FR.UTF-8", LANGUAGE="fr", LC_TIME="de_DE")).stdout
    if output != "0022\n-C.UTF-8\n":
        yield f"the surroundings are {output!r}"


def main():
    with tempfile.TemporaryDirectory() as scratch:
        failures = [failure for row in ENDINGS for failure in run(row, scratch)]
        failures += surroundings(scratch)
    print("\n".join(failures) if failures else f"nothing left by {len(ENDINGS)} endings")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
