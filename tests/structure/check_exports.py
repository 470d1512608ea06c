#!/usr/bin/env python3
"""Holds what the library exports against the function tables and the list of its other names."""
import pathlib
import re
import subprocess
import sys

NAMESPACES = {"egl": "Egl", "es1": "Es1", "es2": "Es2"}
# What the compiler adds for an exported class with virtual operations.
OF_CLASSES = re.compile(r"^(typeinfo|typeinfo name|vtable) for \w+$")


def wrappers(root):
    for table, namespace in NAMESPACES.items():
        text = (root / "api" / f"{table}.def").read_text()
        for name in re.findall(r"^\w+\(\d+, \w+, \d, [\w\* ]+?, (\w+),", text, re.M):
            yield f"{namespace}::_{name}"


def exported(library):
    lines = subprocess.run(["nm", "-DC", "--defined-only", library], check=True, capture_output=True,
                           text=True).stdout.splitlines()
    for line in lines:
        name = re.sub(r"(?<!operator)\(.*", "", line.split(maxsplit=2)[2])
        if not OF_CLASSES.match(name):
            yield name


def main():
    root, library = pathlib.Path(sys.argv[1]), sys.argv[2]
    listed = set((root / "tests/structure/exports.txt").read_text().split("\n")) - {""}
    expected = listed | set(wrappers(root))
    actual = set(exported(library))
    faults = [f"not exported: {name}" for name in sorted(expected - actual)]
    faults += [f"exported, but not listed: {name}" for name in sorted(actual - expected)]
    print("\n".join(faults) or f"{len(actual)} names are exported as listed")
    return 1 if faults or len(expected) < 635 else 0


if __name__ == "__main__":
    sys.exit(main())
