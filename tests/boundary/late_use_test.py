#!/usr/bin/env python3
"""Shows that the library works until the program that is linked to it has destroyed its statics.

usage: late_use_test.py PROGRAM

The program looks up, calculates and traces in main and again in a static object's destructor.
"""

import hashlib
import os
import subprocess
import sys


def main(program):
    with open(program, "rb") as file:
        md5 = hashlib.md5(file.read()).hexdigest()
    done = subprocess.run([program, program], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          env={**os.environ, "QUIVER_DEBUG": "1"}, check=False)
    expected = f"early {md5} not found\nlate {md5} not found\n"
    traced = done.stderr.count("Nothing found")
    if (done.returncode, done.stdout, traced) == (0, expected, 2):
        return 0
    print(f"status {done.returncode}, {traced} lookups traced\n{done.stdout}{done.stderr}")
    return 1


if __name__ == "__main__":
    sys.exit(main(os.path.abspath(sys.argv[1])))
