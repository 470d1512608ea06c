#!/usr/bin/env python3
"""Holds docs/trace-records.md against the layouts that the reader decodes by."""
import difflib
import pathlib
import subprocess
import sys

program, document = sys.argv[1:]
printed = subprocess.run([program], capture_output=True, text=True, check=True).stdout.splitlines()
written = pathlib.Path(document).read_text().splitlines()
faults = list(difflib.unified_diff(written, printed, document, "the reader's layouts", lineterm="", n=0))
print("\n".join(faults[:40]))
if faults:
    sys.exit("the tables differ from the layouts: run ./dev tables")
if sum(line.startswith("| ") and line[2].isdigit() for line in written) < 600:
    sys.exit("the tables lack records")
