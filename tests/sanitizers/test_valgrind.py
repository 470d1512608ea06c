"""The examples and their replay under Valgrind, which sees what the optimiser made of the code: nothing reads memory that
was not written or is not there, in the recorder nor in the player."""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "e2e"))
from support import BUILD, NEBTRACE, ScratchTest, examples  # noqa: E402

SUPPRESSIONS = os.path.join(os.path.dirname(os.path.realpath(__file__)), "valgrind.supp")
VALGRIND = ["valgrind", "-q", f"--suppressions={SUPPRESSIONS}", "--log-file=valgrind.log", "--error-exitcode=99"]
SMALL = ["--frames", "2", "--size", "32x32"]
MID_RUN = ["--frames", "1-1", "--save-frames"]


def example(name):
    return os.path.join(BUILD, "examples", name)


class Valgrind(ScratchTest):
    def setUp(self):
        super().setUp()
        self.environment["GALLIUM_DRIVER"] = "softpipe"  # nothing that is compiled at run time

    def assert_clean(self, done):
        self.assertEqual(done.returncode, 0, self.read("valgrind.log") + done.stdout + done.stderr)
        self.assertEqual(self.read("valgrind.log"), "")

    def test_recorder(self):
        for path in examples():
            with self.subTest(example=path):
                self.assert_clean(self.record(*MID_RUN, "--", *VALGRIND, path, *SMALL))

    def test_recorder_in_other_ways(self):
        for name in ("stages", "stages_es1"):
            for options in ([*MID_RUN, "--optimize"], ["--profile"]):
                with self.subTest(example=name, options=options):
                    self.assert_clean(self.record(*options, "--", *VALGRIND, example(name), *SMALL))

    # Targets of draws are not in a captured state: the driver would clear what nobody has written.
    def test_player(self):
        for path in examples():
            with self.subTest(example=path):
                options = [] if path == example("render_target") else MID_RUN
                self.record_well(*options, "--", path, *SMALL)
                self.assert_clean(self.run_command(*VALGRIND, NEBTRACE, "replay", "trace.nebt"))

    # An error is one: a program that branches on what it never wrote.
    def test_what_is_found_is_told(self):
        done = self.run_command(*VALGRIND, os.path.join(BUILD, "tests", "sanitizers", "unwritten"))
        self.assertEqual(done.returncode, 99)
        self.assertIn("depends on uninitialised value", self.read("valgrind.log"))


if __name__ == "__main__":
    unittest.main()
