#!/usr/bin/env python3
"""Compares the names that the shared library gives out with exported_names.txt.

usage: check_exports.py linux NM LIBRARY
       check_exports.py windows OBJDUMP LIBRARY
"""

import os
import re
import subprocess
import sys

LIST = os.path.join(os.path.dirname(os.path.abspath(__file__)), "exported_names.txt")


def output_of(*command, text=None):
    return subprocess.run(command, check=True, capture_output=True, text=True, input=text).stdout


def linux_names(nm, library):
    output = output_of(nm, "--dynamic", "--demangle", "--defined-only", "--format=posix", library)
    # "name type value size"; the name may hold blanks. A version's own symbol is of type A.
    rows = [line.rsplit(" ", 3) for line in output.splitlines()]
    return {row[0].partition("@")[0] for row in rows if row[1] != "A"}


def windows_names(objdump, library):
    output = output_of(objdump, "-p", library)
    table = output.partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
    names = re.findall(r"\[ *\d+\] (\S+)$", table, re.MULTILINE)
    # A 64-bit integer is called "long" on Linux.
    return set(output_of("c++filt", text="\n".join(names)).replace("long long", "long").splitlines())


def expected_names(line, system):
    """Returns the names that a line of the list stands for."""
    kind, _, name = line.partition(" ")
    if kind == "windows":
        return [name] if system == "windows" else []
    if kind == "type" and system == "windows":
        return []
    if kind not in ("type", "class"):
        return [line]
    names = [f"typeinfo for {name}"]
    if system == "linux":
        names.append(f"typeinfo name for {name}")
    return names + [f"vtable for {name}"] if kind == "class" else names


def main():
    if len(sys.argv) != 4 or sys.argv[1] not in ("linux", "windows"):
        sys.exit(__doc__.strip())
    system, tool, library = sys.argv[1:]
    actual = linux_names(tool, library) if system == "linux" else windows_names(tool, library)
    with open(LIST, encoding="utf-8") as file:
        lines = [line.strip() for line in file if line.strip() and not line.startswith("#")]
    expected = {name for line in lines for name in expected_names(line, system)}
    problems = [f"missing: {name}" for name in sorted(expected - actual)]
    problems += [f"not in the list: {name}" for name in sorted(actual - expected)]
    print("\n".join(problems) if problems else f"{len(actual)} names are as listed")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
