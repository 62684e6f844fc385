#!/usr/bin/env python3
"""Builds small libraries with planted upward calls and statics, and expects check_calls.py to find each.

Usage: calls_test.py PROJECT [--cxx=COMPILER] [--ar=AR] [--nm=NM]
"""
import pathlib
import shutil
import subprocess
import sys
import tempfile

ROOMS = ("below/Low", "below/Middle", "above/High")
LIBRARIES = {"libsetup_base.a": ROOMS[:2], "libsetup_app.a": ROOMS[2:]}
SOURCES = {
    "below/Low": "int low() { return 1; }\n",
    "below/Middle": "int low();\nint middle() { return low(); }\n",
    "above/High": "int middle();\nint high() { return middle(); }\ninline int everywhere() { return 2; }\n"
                  "int use() { return everywhere(); }\n",
}
UPWARD = "int high();\nint planted() { return high(); }\n"
CALL = "call below/Low -> above/High"

ROWS = [
    # (name, room, text added to it, lines of calls.txt, wanted status, wanted words)
    ("nothing planted", "below/Low", "", "", 0, "0 upward calls, all explained"),
    ("downward call", "above/High", "int low();\nint again() { return low(); }\n", "", 0, "0 upward calls"),
    ("upward call", "below/Low", UPWARD, "", 1, f"'{CALL}' is not listed (high())"),
    ("upward call into another library", "below/Middle", UPWARD, "", 1,
     "'call below/Middle -> above/High' is not listed (high())"),
    ("upward address", "below/Low", "int high();\nint (*const planted)() = high;\nint (*get())() { return planted; }\n",
     "", 1, f"'{CALL}' is not listed (high())"),
    ("permitted upward call", "below/Low", UPWARD, f"# why\n{CALL}\n    Because.\n", 0, "1 upward calls, all explained"),
    ("permitted for another room", "below/Low", UPWARD, "call below/Middle -> above/High\n", 1,
     f"'{CALL}' is not listed (high())"),
    ("permission no longer needed", "below/Low", "", f"{CALL}\n", 1, f"'{CALL}' is listed, but no longer there"),
    ("inline function of both", "below/Low", "inline int everywhere() { return 2; }\nint use2() { return everywhere(); }\n",
     "", 0, "0 upward calls"),
    ("static without a value", "below/Middle", "int g_count;\nint count() { return ++g_count; }\n", "", 1,
     "'static below/Middle g_count' is not listed (g_count)"),
    ("static with a value", "below/Middle", "namespace { int g_count = 7; }\nint count() { return ++g_count; }\n", "", 1,
     "'static below/Middle (anonymous namespace)::g_count' is not listed"),
    ("static of a function", "below/Middle", "int count() { static int n = 1; return ++n; }\n", "", 1,
     "'static below/Middle count()::n' is not listed"),
    ("permitted static", "below/Middle", "int g_count;\n", "static below/Middle g_count\n", 0, "0 upward calls"),
    ("constants", "below/Middle", 'extern const char* const kText;\nconst char* const kText = "x";\n', "", 0,
     "0 upward calls"),
]


def compile_room(tools, folder, room, text):
    source = folder / (pathlib.PurePosixPath(room).name + ".cpp")
    source.write_text(SOURCES[room] + text)
    subprocess.run([tools["cxx"], "-O0", "-c", source.name, "-o", f"{source.name}.o"], cwd=folder, check=True)


def build(folder, tools, room, text):
    """The two libraries of the objects in `folder`, with `text` added to `room`."""
    if text:
        compile_room(tools, folder, room, text)
    for library, rooms in LIBRARIES.items():
        objects = [f"{pathlib.PurePosixPath(name).name}.cpp.o" for name in rooms]
        subprocess.run([tools["ar"], "qc", library, *objects], cwd=folder, check=True)
    return [folder / library for library in LIBRARIES]


def run_row(project, tools, row, objects):
    name, room, text, listed, wanted_status, wanted = row
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        for file in objects.iterdir():
            shutil.copy(file, folder)
        (folder / "tools").mkdir()
        for script in ("check_calls.py", "check_rooms.py"):
            shutil.copy(project / "tools" / script, folder / "tools")
        (folder / "tools" / "rooms.txt").write_text("\n".join(ROOMS) + "\n")
        (folder / "tools" / "calls.txt").write_text(listed)
        libraries = build(folder, tools, room, text)
        result = subprocess.run([sys.executable, "-B", folder / "tools" / "check_calls.py", folder, *libraries,
                                 f"--nm={tools['nm']}"], capture_output=True, text=True)
    if result.returncode == wanted_status and wanted in result.stdout:
        return None
    return f"{name}: status {result.returncode}, output:\n{result.stdout}{result.stderr}"


def main():
    project = pathlib.Path(sys.argv[1]).resolve()
    tools = {"cxx": "c++", "ar": "ar", "nm": "nm"}
    tools.update(a[2:].split("=", 1) for a in sys.argv[2:])
    with tempfile.TemporaryDirectory() as objects:
        for room in ROOMS:
            compile_room(tools, pathlib.Path(objects), room, "")
        results = [run_row(project, tools, row, pathlib.Path(objects)) for row in ROWS]
    failures = [failure for failure in results if failure]
    print("\n".join(failures) if failures else f"{len(ROWS)} rows")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
