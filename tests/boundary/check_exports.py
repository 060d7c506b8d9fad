#!/usr/bin/env python3
"""Compares the names that the shared library gives out with exported_names.txt.

usage: check_exports.py NM LIBRARY
"""

import os
import subprocess
import sys

LIST = os.path.join(os.path.dirname(os.path.abspath(__file__)), "exported_names.txt")


def names_of(line):
    """Returns the names that a line of the list stands for."""
    kind, _, name = line.partition(" ")
    if kind not in ("type", "class"):
        return [line]
    names = [f"typeinfo for {name}", f"typeinfo name for {name}"]
    return names + [f"vtable for {name}"] if kind == "class" else names


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__.strip())
    command = [sys.argv[1], "--dynamic", "--demangle", "--defined-only", "--format=posix", sys.argv[2]]
    output = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    # "name type value size"; the name may hold blanks. A version's own symbol is of type A.
    rows = [line.rsplit(" ", 3) for line in output.splitlines()]
    actual = {row[0].partition("@")[0] for row in rows if row[1] != "A"}
    with open(LIST, encoding="utf-8") as file:
        lines = [line.strip() for line in file if line.strip() and not line.startswith("#")]
    expected = {name for line in lines for name in names_of(line)}
    problems = [f"missing: {name}" for name in sorted(expected - actual)]
    problems += [f"not in the list: {name}" for name in sorted(actual - expected)]
    print("\n".join(problems) if problems else f"{len(actual)} names are as listed")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
