#!/usr/bin/env python3
"""Holds a document that ./dev tables writes against what the program prints that writes it."""
import difflib
import pathlib
import subprocess
import sys

document, rows, *program = sys.argv[1:]
printed = subprocess.run(program, capture_output=True, text=True, check=True).stdout.splitlines()
written = pathlib.Path(document).read_text().splitlines()
faults = list(difflib.unified_diff(written, printed, document, "what the code says", lineterm="", n=0))
print("\n".join(faults[:40]))
if faults:
    sys.exit("the tables differ from the code: run ./dev tables")
if sum(line.startswith("| ") for line in written) < int(rows):
    sys.exit("the tables lack rows")
