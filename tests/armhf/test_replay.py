"""Recordings that a 32-bit device made, replayed there and on this machine: the same file, and the same pixels."""

import unittest

from emulated import EmulatedTest, EXAMPLES, MID_RUN_EXAMPLES


class Replay(EmulatedTest):
    def check_identical_everywhere(self, trace, frames):
        for done in (self.emulated("tools/nebtrace", "replay", "--verify", trace), self.replay("--verify", trace)):
            self.assertEqual(done.stderr, "")
            self.assertIn(f"{frames} frames compared, 0 differ\n", done.stdout)
            self.assertEqual(done.returncode, 0)

    # The middle of a run brings the state that its first frame began with, and a state written on a 32-bit device
    # is one that any machine can begin with.
    def test_frames_recorded_in_mid_run_are_replayed_identically_on_both_machines(self):
        for name in MID_RUN_EXAMPLES:
            with self.subTest(example=name):
                self.check_identical_everywhere(self.record_there(name, name + ".nebt", "4-6"), 3)

    # The same for a recording from the first call on.
    def test_whole_runs_are_replayed_identically_on_both_machines(self):
        for name in EXAMPLES:
            with self.subTest(example=name):
                self.check_identical_everywhere(self.record_there(name, name + ".nebt", "0-1"), 2)


if __name__ == "__main__":
    unittest.main()
