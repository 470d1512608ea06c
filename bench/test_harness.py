"""The harness works: one run of each table that needs nothing but the build, with few calls. What it measures is not
looked at."""
import os
import pathlib
import subprocess
import sys
import unittest

BENCH = pathlib.Path(__file__).resolve().parent
BUILD = os.environ["NEBTRACE_BUILD"]
CALLS = ["ScalarCall", "UniformArray", "Bind", "DrawFromBuffers", "DrawFromClientArrays", "PlainDrawFromClientArrays",
         "TextureUpdate", "PlainTextureUpdate", "Swap"]
MODES = ["native", "native, 1,000 objects", "loaded, not recording", "loaded, not recording, 1,000 objects",
         "recording, each write flushed", "recording, mapped", "recording, mapped, state cut down"]


class Harness(unittest.TestCase):
    def rows(self, *options):
        done = subprocess.run([sys.executable, "-B", BENCH / "run.py", BUILD, "--runs=1", "--share=1000", *options],
                              check=False, capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)
        lines = [line for line in done.stdout.splitlines() if line.startswith("| ")]
        return [[cell.strip() for cell in line.strip("|").split("|")] for line in lines]

    # Each call stands in the table once for each mode, and a recording has bytes for it.
    def test_the_table_of_single_calls_has_every_row(self):
        rows = [row for row in self.rows("--only=calls", "--mode=native", "--mode=recording") if row[0] in CALLS]
        self.assertEqual([row[:2] for row in rows], [[call, mode] for call in CALLS for mode in MODES])
        for call, mode, time, _, _, size in rows:
            with self.subTest(call=call, mode=mode):
                self.assertRegex(time, r"^[\d.,]+ \([\d.,]+ to [\d.,]+\)$")
                self.assertRegex(size, r"^[1-9][\d.,]*$" if mode.startswith("recording") else "^–$")

    # Each size stands in the table of the state, and its target is judged.
    def test_the_table_of_the_state_has_every_row(self):
        rows = [row[0] for row in self.rows("--only=snapshot")]
        for start in ("10 of", "100 of", "1,000 of", "500 of", "capture of 500 of", "the same, written at once"):
            self.assertEqual(len([row for row in rows if row.startswith(start)]), 1, rows)


if __name__ == "__main__":
    unittest.main()
