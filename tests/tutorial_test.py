"""Runs the commands of docs/tutorial.md as they stand: tutorial_test.py PROGRAM PAGE"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

MOST_WORDS = 2500


def main():
    program, page = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]).read_text()
    if len(page.split()) > MOST_WORDS:
        print(f"the page has {len(page.split())} words; more than {MOST_WORDS} are too many")
        return 1
    commands = "".join(re.findall(r"^```sh\n(.*?)^```$", page, re.MULTILINE | re.DOTALL))
    with tempfile.TemporaryDirectory() as folder:
        env = {"PATH": f"{program.parent}:{os.environ['PATH']}", "HOME": folder, "LC_ALL": "C.UTF-8"}
        ran = subprocess.run(["sh", "-e", "-c", commands], cwd=folder, env=env, text=True,
                             stdin=subprocess.DEVNULL, capture_output=True)
        shipped = pathlib.Path(folder, "hello.tar.gz.sha256").exists()
    if ran.returncode != 0 or "\nHello from Java " not in ran.stdout or not shipped or ran.stderr:
        print(f"status {ran.returncode}\n{ran.stdout}{ran.stderr}")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
