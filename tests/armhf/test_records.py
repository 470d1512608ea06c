"""Recordings of one program from a 32-bit device and from this machine: the same records, field by field."""

import os
import unittest

from emulated import BUILD, EmulatedTest, EXAMPLES

COMPARE = os.path.join(BUILD, "tests", "armhf", "compare_traces")


class Records(EmulatedTest):
    def check_same(self, frames, *layout):
        for name in EXAMPLES:
            with self.subTest(example=name):
                there = self.record_there(name, "there.nebt", frames, *layout)
                here = self.record_here(name, "here.nebt", frames, *layout)
                done = self.run_command(COMPARE, there, here)
                self.assertRegex(done.stdout, r"^[1-9]\d* records, [1-9]\d* fields compared: the same\n$")
                self.assertEqual(done.returncode, 0, done.stderr)

    # What is recorded does not depend on the machine: calls, payloads, and the pixels of each frame.
    def test_whole_runs_leave_the_same_records(self):
        self.check_same("0-2")

    # Nor does the state of a recording that begins in mid-run, whether it stands ahead of the frames or behind them.
    def test_the_middle_of_a_run_leaves_the_same_records(self):
        self.check_same("4-5")
        self.check_same("4-5", "--optimize")


if __name__ == "__main__":
    unittest.main()
