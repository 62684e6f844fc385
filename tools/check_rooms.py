#!/usr/bin/env python3
"""Checks that includes between the rooms of src/ point one way: to a lower rank.

Usage: check_rooms.py [ROOT]

ROOT is the project's folder (default: the one above this script). tools/rooms.txt lists the rooms,
low rank first. Prints each violation as FILE:LINE and ends with status 1 when there is any.
"""
import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')


def read_ranks(root):
    lines = (root / "tools" / "rooms.txt").read_text().splitlines()
    rooms = [line.strip() for line in lines if line.strip() and not line.startswith("#")]
    doubled = sorted({room for room in rooms if rooms.count(room) > 1})
    return {room: rank for rank, room in enumerate(rooms)}, doubled


def check_file(path, src, ranks):
    room = path.relative_to(src).with_suffix("").as_posix()
    if room not in ranks:
        yield f"{path}:1: room '{room}' has no rank; add it to tools/rooms.txt"
        return
    for number, line in enumerate(path.read_text().splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        target = match.group(1)
        if not (src / target).is_file():
            yield f"{path}:{number}: include \"{target}\" is not written from src/"
            continue
        other = pathlib.PurePosixPath(target).with_suffix("").as_posix()
        if other != room and ranks.get(other, len(ranks)) >= ranks[room]:
            yield f"{path}:{number}: '{room}' includes '{other}', which has no lower rank"


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent)
    src = root / "src"
    ranks, doubled = read_ranks(root)
    problems = [f"tools/rooms.txt: room '{room}' stands twice" for room in doubled]
    files = sorted(p for p in src.rglob("*") if p.suffix in (".h", ".cpp"))
    for path in files:
        problems += check_file(path, src, ranks)
    present = {p.relative_to(src).with_suffix("").as_posix() for p in files}
    problems += [f"tools/rooms.txt: room '{room}' has no file" for room in ranks if room not in present]
    print("\n".join(problems) if problems else f"{len(files)} files, {len(ranks)} rooms: one way")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
