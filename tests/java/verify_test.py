"""What the verify class prints: verify_test.py JAVA VERIFY_JAR"""

import sys

from rows import Row, run

MAGIC = "1739021872\n"

ROWS = [
    Row("nothing asked, only the magic line", ["Verify"], out=MAGIC),
    Row("one property", ["-Da=1", "Verify", "a"], out=MAGIC + "1\n"),
    Row("in the order of the arguments", ["-Da=1", "-Db=2", "Verify", "b", "a"], out=MAGIC + "2\n1\n"),
    Row("asked twice, told twice", ["-Da=1", "Verify", "a", "a"], out=MAGIC + "1\n1\n"),
    Row("an unknown property keeps its line", ["-Da=1", "Verify", "x.y", "a"], out=MAGIC + "\n1\n"),
    Row("an empty name keeps its line", ["-Da=1", "Verify", "", "a"], out=MAGIC + "\n1\n"),
    Row("an empty value", ["-Da=", "Verify", "a"], out=MAGIC + "\n"),
    Row("blanks are kept", ["-Da= 1 2 ", "Verify", "a"], out=MAGIC + " 1 2 \n"),
    Row("a line break would shift the lines behind it", ["-Da=1\n2\r3", "Verify", "a", "file.separator"],
        out=MAGIC + "1 2 3\n/\n"),
    Row("letters beyond ASCII", ["-Da=\u00e4", "Verify", "a"], out=MAGIC + "\u00e4\n"),
]

if __name__ == "__main__":
    java, jar = sys.argv[1:]
    run([java, "-cp", jar], ROWS)
