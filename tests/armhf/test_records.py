"""Recordings of one program from a 32-bit device and from this machine: the same records, field by field."""

import os
import unittest

from emulated import BUILD, DRAWN_OTHERWISE, EmulatedTest, EXAMPLES

COMPARE = os.path.join(BUILD, "tests", "armhf", "compare_traces")


class Records(EmulatedTest):
    def check_same(self, name, *options):
        with self.subTest(example=name, options=options):
            there = self.record_there(name, "there.nebt", *options)
            here = self.record_here(name, "here.nebt", *options)
            done = self.run_command(COMPARE, there, here)
            self.assertRegex(done.stdout, r"^[1-9]\d* records, [1-9]\d* fields compared: the same\n$")
            self.assertEqual(done.returncode, 0, done.stderr)

    # What is recorded does not depend on the machine: calls, payloads, and the pixels of each frame.
    def test_whole_runs_leave_the_same_records(self):
        for name in EXAMPLES:
            self.check_same(name, "--frames", "0-2", "--save-frames")
        self.check_same(DRAWN_OTHERWISE, "--frames", "0-2")

    # Nor does the state of a recording that begins in mid-run, whether it stands ahead of the frames or behind them.
    def test_the_middle_of_a_run_leaves_the_same_records(self):
        for layout in ([], ["--optimize"]):
            for name in EXAMPLES:
                self.check_same(name, "--frames", "4-5", "--save-frames", *layout)
            self.check_same(DRAWN_OTHERWISE, "--frames", "4-5", *layout)


if __name__ == "__main__":
    unittest.main()
