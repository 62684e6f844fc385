"""Runs the commands of docs/tutorial.md as they stand: tutorial_test.py PROGRAM PAGE"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

MOST_WORDS = 2500
# What the reader must have seen and got.
TEXTS = ["\nHello from Java ", "; accepted\n", "\nstatus 69\n", "java-installer: a Java of "]
FILES = ["hello", "hello.tar.gz.sha256"]
# What a packed Java is worth is seen where there is no other: in the script, FIND_JVM finds none.
WITHOUT_JAVA = """
sed -i 's/^  FIND_JVM 1 0$/  SET N1 = 0/' hello-setup/instructions.tag
corvane-pack pack --no-check hello-setup/manifest.json --output packed-java
./packed-java
"""


def main():
    program, page = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]).read_text()
    problems = []
    if len(page.split()) > MOST_WORDS:
        problems.append(f"the page has {len(page.split())} words; more than {MOST_WORDS} are too many")
    commands = "".join(re.findall(r"^```sh\n(.*?)^```$", page, re.MULTILINE | re.DOTALL))
    with tempfile.TemporaryDirectory() as folder:
        env = {"PATH": f"{program.parent}:{os.environ['PATH']}", "HOME": folder, "LC_ALL": "C.UTF-8"}

        def run(text):
            return subprocess.run(["sh", "-e", "-c", text], cwd=folder, env=env, text=True,
                                  stdin=subprocess.DEVNULL, capture_output=True)

        ran = run(commands)
        problems += [f"nothing says {text!r}" for text in TEXTS if text not in ran.stdout]
        problems += [f"there is no {name}" for name in FILES if not pathlib.Path(folder, name).exists()]
        without = run(WITHOUT_JAVA)
        if "\nPreparing Java(tm) Virtual Machine...\n" not in without.stdout or "\nHello from Java" not in without.stdout:
            problems.append(f"the packed Java does not run:\n{without.stdout}{without.stderr}")
    if ran.returncode != 0 or ran.stderr or problems:
        print("\n".join([*problems, f"status {ran.returncode}\n{ran.stdout}{ran.stderr}"]))
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
