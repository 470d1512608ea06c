"""The exit codes that docs/exit-codes.md lists: the table and the code say the same, and each one is really given."""

import os
import re
import signal
import sys
import unittest

from support import CUBE, NEBTRACE, SOURCE, ScratchTest

ENDED = "import os, signal; os.kill(os.getpid(), signal.SIGKILL)"


class ExitCodes(ScratchTest):
    def nebtrace(self, *arguments):
        return self.run_command(NEBTRACE, *arguments).returncode

    def text(self):
        self.write("text", "no program, and no trace")
        return "text"

    # Each row of the table has an example here, and none but these codes stand in it.
    def test_each_documented_code_is_given(self):
        examples = {
            "0": lambda: self.nebtrace("info", "--help"),
            "1": lambda: self.nebtrace("info", self.text()),
            "2": lambda: self.nebtrace("info"),
            "126": lambda: self.nebtrace("record", "--", "./" + self.text()),
            "127": lambda: self.nebtrace("record", "--", "./missing"),
            "128 + n": lambda: self.nebtrace("record", "--", sys.executable, "-c", ENDED),
        }
        with open(os.path.join(SOURCE, "docs", "exit-codes.md"), encoding="utf-8") as file:
            documented = re.findall(r"^\| (\d[\d n+]*) \|", file.read(), re.MULTILINE)
        self.assertEqual(documented, list(examples))
        for code, run in examples.items():
            expected = 128 + signal.SIGKILL if code == "128 + n" else int(code)
            self.assertEqual(run(), expected, code)

    # The one table in the code is the documented one.
    def test_the_codes_table_is_the_documented_one(self):
        with open(os.path.join(SOURCE, "tools", "exit_codes.h"), encoding="utf-8") as file:
            codes = re.findall(r"kExit\w+ = (\d+)", file.read())
        self.assertEqual(codes, ["0", "1", "2", "126", "127", "128"])

    # What a comparison finds is told by the code as well.
    def test_a_frame_that_differs_gives_1(self):
        self.record_well("--frames", "0-1", "--save-frames", "--", CUBE, "--frames", "2", "--size", "40x30")
        self.assertEqual(self.nebtrace("replay", "--verify", "trace.nebt"), 0)
        with open(self.path("trace.nebt"), "r+b") as file:
            whole = file.read()
            file.seek(whole.index(self.trace().frames()[0].pixels))
            file.write(b"\x7f\x01\x02\x03")
        self.assertEqual(self.nebtrace("replay", "--verify", "trace.nebt"), 1)

    # The application's own code goes ahead of the recorder's.
    def test_record_gives_the_applications_code(self):
        self.assertEqual(self.nebtrace("record", "--", "sh", "-c", "exit 42"), 42)


if __name__ == "__main__":
    unittest.main()
