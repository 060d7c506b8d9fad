#!/usr/bin/env python3
"""Compares the tables of operations and the object layouts of the public headers with the lists.

usage: check_layout.py operations|layouts CLANG INCLUDE_FOLDER
"""

import os
import re
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
NAMESPACE = "QV_2_9::"


def read_list(name):
    """Returns {head line: [(number, word)]} of a list file, in its order."""
    blocks, block = {}, None
    with open(os.path.join(HERE, name), encoding="utf-8") as file:
        for line in file:
            if line.startswith("#") or not line.strip():
                continue
            if not line.startswith(" "):
                block = blocks.setdefault(line.strip(), [])
            else:
                number, word = line.split()
                block.append((int(number), word))
    return blocks


def probe():
    """Returns the probe's text with every listed class in it."""
    with open(os.path.join(HERE, "boundary_probe.cpp"), encoding="utf-8") as file:
        text = file.read()
    for name in (head.partition(" : ")[0] for head in read_list("operation_tables.txt")):
        if not re.search(rf"(Derived<|Derived|^){name}\b", text, re.MULTILINE):
            text += f"template struct Derived<{name}>;\n"
    return text


def dump(clang, include, flag):
    command = [clang, "--target=i686-pc-windows-msvc", "-std=c++20", "-S", "-emit-llvm",
               "-o", os.devnull, "-I", include, "-Xclang", flag, "-x", "c++", "-"]
    result = subprocess.run(command, input=probe(), capture_output=True, text=True)
    if result.returncode != 0:
        sys.exit(f"the probe does not compile:\n{result.stderr}")
    return result.stdout.replace(NAMESPACE, "")


# ---------------------------------------------------------------------------------------------------

def operation_of(entry):
    """void ILock::lock() [pure] -> lock"""
    name = re.search(r"([~\w]+)\(", entry).group(1)
    return "destructor" if name.startswith("~") else name


def actual_operations(text):
    """Returns {class: [operations]} from the compiler's dump; the first table of a class counts."""
    tables, operations = {}, None
    for line in text.splitlines():
        if head := re.match(r"VFTable for (.*) \(\d+ entr", line):
            name = re.findall(r"'([^']+)'", head.group(1))[-1]
            operations = [] if name not in tables else None
            tables.setdefault(name, operations)
        elif entry := re.match(r" *\d+ \| (.*)", line):
            if operations is not None and not entry.group(1).endswith(" RTTI"):
                operations.append(operation_of(entry.group(1)))
        else:
            operations = None
    return tables


def expected_operations():
    tables = {}
    for head, rows in read_list("operation_tables.txt").items():
        name, _, base = head.partition(" : ")
        table = list(tables[base]) if base else []
        for place, operation in rows:
            if place != len(table):
                sys.exit(f"operation_tables.txt: {name}: {place} {operation} is out of order")
            table.append(operation)
        tables[name] = table
    return tables


def declared_classes(include):
    """Returns the names of classes with operations of their own in the public headers."""
    names = set()
    folder = os.path.join(include, "quiver")
    for header in sorted(os.listdir(folder)):
        with open(os.path.join(folder, header), encoding="utf-8") as file:
            text = re.sub(r"//[^\n]*", "", file.read())
        for match in re.finditer(r"\b(?:class|struct)\s+(?:QV_\w+(?:\([^)]*\))?\s+)?(\w+)"
                                 r"(?:\s+final)?\s*(?::[^:;{][^;{]*)?\{", text):
            body = text[match.end():text.index("\n};", match.end())]
            if re.search(r"\b(virtual|override)\b", body):
                names.add(match.group(1))
    return names


def check_operations(clang, include):
    expected = expected_operations()
    actual = actual_operations(dump(clang, include, "-fdump-vtable-layouts"))
    listed = {name.split("::")[-1] for name in expected}
    problems = [f"{name} is declared in a public header and not listed"
                for name in sorted(declared_classes(include) - listed)]
    for name, table in expected.items():
        if len(set(table)) != len(table):
            problems.append(f"{name}: an overloaded operation has no certain place")
        if name not in actual:
            problems.append(f"{name} is listed and not in the probe")
        elif actual[name] != table:
            problems.append(f"{name}:\n  listed {table}\n  is     {actual[name]}")
    return problems, f"{len(expected)} tables of operations"


# ---------------------------------------------------------------------------------------------------

def part_of(text):
    if text.endswith("vftable pointer)"):
        return "table"
    base = re.match(r"(?:class|struct) (\S+) \((?:primary )?base\)", text)
    return base.group(1) if base else text.split()[-1]


def actual_layouts(text):
    """Returns {class: (size, [(offset, part)])} from the compiler's dump."""
    layouts = {}
    for block in text.split("*** Dumping AST Record Layout\n")[1:]:
        head = re.match(r" *0 \| (?:class|struct) (.+)", block)
        size = re.search(r"\[sizeof=(\d+)", block)
        if not head or not size:
            continue
        parts = [(int(offset), part_of(part))
                 for offset, part in re.findall(r"^ *(\d+) \|   (\S.*)$", block, re.MULTILINE)]
        name = re.sub(r"\b(class|struct) |( \(empty\))", "", head.group(1))
        layouts[name] = (int(size.group(1)), parts)
    return layouts


def check_layouts(clang, include):
    actual = actual_layouts(dump(clang, include, "-fdump-record-layouts"))
    expected = read_list("object_layouts.txt")
    problems = []
    for head, parts in expected.items():
        name, size = head.rsplit(" ", 1)
        if name not in actual:
            problems.append(f"{name} is listed and not in the probe")
        elif actual[name] != (int(size), parts):
            problems.append(f"{name}:\n  listed {int(size)}, {parts}\n  is     {actual[name][0]}, "
                            f"{actual[name][1]}")
    return problems, f"{len(expected)} object layouts"


def main():
    if len(sys.argv) != 4 or sys.argv[1] not in ("operations", "layouts"):
        sys.exit(__doc__.strip())
    check = check_operations if sys.argv[1] == "operations" else check_layouts
    problems, what = check(sys.argv[2], sys.argv[3])
    print("\n".join(problems) if problems else f"{what} are as listed")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
