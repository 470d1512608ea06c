"""Recordings that a 32-bit device made, replayed there and on this machine: the same file, and the same pixels."""

import unittest

from emulated import BUILD, DRAWN_OTHERWISE, EmulatedTest, EXAMPLES


class Replay(EmulatedTest):
    def check_identical(self, done, frames):
        self.assertEqual(done.stderr, "")
        self.assertIn(f"{frames} frames compared, 0 differ\n", done.stdout)
        self.assertEqual(done.returncode, 0)

    def check_identical_everywhere(self, trace, frames):
        self.check_identical(self.emulated("tools/nebtrace", "replay", "--verify", trace), frames)
        self.check_identical(self.replay("--verify", trace), frames)

    # The middle of a run brings the state that its first frame began with, and a state written on a 32-bit device
    # is one that any machine can begin with.
    def test_frames_recorded_in_mid_run_are_replayed_identically_on_both_machines(self):
        for name in EXAMPLES:
            with self.subTest(example=name):
                trace = self.record_there(name, name + ".nebt", "--frames", "4-6", "--save-frames")
                self.check_identical_everywhere(trace, 3)

    # The same for a recording from the first call on.
    def test_whole_runs_are_replayed_identically_on_both_machines(self):
        for name in EXAMPLES:
            with self.subTest(example=name):
                trace = self.record_there(name, name + ".nebt", "--frames", "0-1", "--save-frames")
                self.check_identical_everywhere(trace, 2)

    # Where the driver itself draws otherwise, a replay draws what the program draws on the same machine.
    def test_a_replay_draws_as_the_program_does_on_the_same_machine(self):
        name = DRAWN_OTHERWISE
        trace = self.record_there(name, name + ".nebt", "--frames", "0-7", "--save-frames")
        self.check_identical(self.emulated("tools/nebtrace", "replay", "--verify", trace), 8)
        done = self.replay("--out", "out", "--frames", "7", trace)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        done = self.run_command(*self.example(BUILD, name), "--png", "last.png")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        with open(self.path("out/frame_00007.png"), "rb") as one, open(self.path("last.png"), "rb") as other:
            self.assertEqual(one.read(), other.read())


if __name__ == "__main__":
    unittest.main()
