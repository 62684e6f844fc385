#!/usr/bin/env python3
"""Checks what the linker sees of src/: calls point to a lower rank, and the process's state is three values.

Usage: check_calls.py [ROOT [LIBRARY...]] [--nm=NM]

The LIBRARYs are what the build makes of src/ (default: those in ROOT/build/debug, when they are built). Rooms and
ranks are those of tools/rooms.txt; tools/calls.txt lists, with a reason each, the upward calls that are permitted and
the statics that may be written. Prints each call or static that is not listed, and each line there that is no longer
needed, and ends with status 1 when there is any.
"""
import pathlib
import subprocess
import sys

from check_rooms import read_ranks

LISTED = "tools/calls.txt"


def read_listed(root):
    """The lines of tools/calls.txt, without their reasons, which are indented below them."""
    lines = (root / LISTED).read_text().splitlines()
    return {line for line in lines if line.strip() and not line.startswith(("#", " "))}


def read_symbols(nm, libraries, rooms):
    """Yields (room, name, section, type, letter) for each symbol; section "*UND*" is one that is defined elsewhere."""
    room_of = {room.rpartition("/")[2]: room for room in rooms}
    output = subprocess.run([nm, "-A", "-C", "--format=sysv", *libraries], capture_output=True, text=True,
                            check=True).stdout
    for line in output.splitlines():
        place, *fields = line.split("|")
        if len(fields) < 6:
            continue
        file, name = place.split(":", 2)[1:]
        room = room_of.get(file.partition(".")[0])
        if room is not None:
            yield room, name.strip(), fields[-1].strip(), fields[-4].strip(), fields[1].strip()


def is_writable(section):
    return section.startswith((".data", ".bss", ".tdata", ".tbss")) and not section.startswith(".data.rel.ro")


def find_arrows(symbols, ranks):
    """{line of calls.txt: what is called}: upward calls."""
    # A weak symbol (an inline function) is in every object that uses it.
    home = {name: room for room, name, section, _, letter in symbols if section != "*UND*" and letter not in "vVwW"}
    arrows = {}
    for room, name, section, _, _ in symbols:
        target = home.get(name)
        if section == "*UND*" and target is not None and ranks[target] > ranks[room]:
            arrows.setdefault(f"call {room} -> {target}", []).append(name)
    return arrows


def find_statics(symbols):
    """{line of calls.txt: the static's name}"""
    return {f"static {room} {name}": [name] for room, name, section, _, letter in symbols
            if letter in "bBdD" and is_writable(section) and not name.startswith("guard variable")}


def main():
    arguments = [a for a in sys.argv[1:] if not a.startswith("--nm=")]
    nm = next((a[5:] for a in sys.argv[1:] if a.startswith("--nm=")), "nm")
    root = pathlib.Path(arguments[0] if arguments else pathlib.Path(__file__).parent.parent)
    libraries = arguments[1:] or sorted((root / "build" / "debug").glob("libsetup_*.a"))
    if not libraries:
        print("no library is built: calls are not checked")
        return 0
    ranks, _ = read_ranks(root)
    symbols = list(read_symbols(nm, libraries, ranks))
    arrows = find_arrows(symbols, ranks)
    found = arrows | find_statics(symbols)
    listed = read_listed(root)
    problems = [f"{LISTED}: '{line}' is not listed ({', '.join(found[line])})" for line in sorted(found.keys() - listed)]
    problems += [f"{LISTED}: '{line}' is listed, but no longer there" for line in sorted(listed - found.keys())]
    print("\n".join(problems) if problems else f"{len(symbols)} symbols: {len(arrows)} upward calls, all explained")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
