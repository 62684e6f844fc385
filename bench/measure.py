"""Processor time of commands, measured pair by pair, and real starts of Java, counted."""
import os
import re
import shutil
import statistics
import subprocess
import tempfile

DEVNULL = os.open(os.devnull, os.O_RDWR)


def processor_ms(command):
    """Milliseconds of the command and all that it started and waited for."""
    to_nowhere = [(os.POSIX_SPAWN_DUP2, DEVNULL, fd) for fd in (0, 1, 2)]
    pid = os.posix_spawnp(command[0], command, os.environ, file_actions=to_nowhere)
    _, status, usage = os.wait4(pid, 0)
    if status != 0:
        raise SystemExit(f"status {status}: {' '.join(command)}")
    return (usage.ru_utime + usage.ru_stime) * 1000


def interleaved(commands, rounds):
    """Median milliseconds by name. All commands run in turn, so that a busy time meets them all;
    the first round only warms the caches. A list of commands counts as one."""
    times = {name: [] for name in commands}
    for i in range(rounds + 1):
        for name, command in commands.items():
            parts = command if isinstance(command[0], list) else [command]
            took = sum(processor_ms(part) for part in parts)
            if i > 0:
                times[name].append(took)
    return times


def compare(times, ours, peer):
    """Medians of both, of their ratios and of their differences, round by round."""
    pairs = list(zip(times[ours], times[peer]))
    return (statistics.median(times[ours]), statistics.median(times[peer]),
            statistics.median(a / b for a, b in pairs), statistics.median(a - b for a, b in pairs))


def java_starts(command):
    """How often the command starts a program bin/java."""
    if shutil.which("strace") is None:
        raise SystemExit("strace counts the starts of Java: install it, or say --without-answers.")
    with tempfile.NamedTemporaryFile("r") as trace:
        subprocess.run(["strace", "-f", "-qq", "-e", "trace=execve", "-o", trace.name, *command],
                       stdin=DEVNULL, stdout=DEVNULL, stderr=DEVNULL, check=False)
        return sum(re.search(r'execve\("[^"]*/bin/java"', line) is not None and "= -1" not in line
                   for line in trace)
