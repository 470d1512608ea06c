"""Recordings of the examples, replayed: every frame must come out as it was recorded."""

import os
import struct
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import BUILD, NEBTRACE, ScratchTest  # noqa: E402

EXAMPLES = ("cube", "client_arrays", "render_target", "cube_map", "programs", "stages")


def example(name):
    return os.path.join(BUILD, "examples", name)


class Replay(ScratchTest):
    def record_frames(self, name, *arguments):
        self.record_well("--frames", "0-4", "--save-frames", "-o", name + ".nebt", "--", example(name),
                         "--frames", "5", "--size", "120x90", *arguments)
        return name + ".nebt"

    def record_middle(self, name, *layout):
        self.record_well("--frames", "5-8", "--save-frames", *layout, "-o", name + ".nebt", "--", example(name),
                         "--frames", "10", "--size", "120x90")
        return name + ".nebt"

    # The proof that a recording holds all that a program drew with: an empty context, and the same pixels.
    def test_every_frame_of_every_example_is_replayed_identically(self):
        for name in EXAMPLES:
            with self.subTest(example=name):
                done = self.replay("--verify", self.record_frames(name))
                self.assertEqual(done.stderr, "")
                self.assertIn("5 frames compared, 0 differ\n", done.stdout)
                self.assertEqual(done.returncode, 0)

    # A recording of the middle of a run brings the state that its first frame began with, at either end.
    def test_frames_recorded_in_mid_run_are_replayed_identically(self):
        for name in ("cube", "client_arrays", "cube_map", "programs", "stages"):
            for layout in ([], ["--optimize"]):
                if (name, layout) == ("programs", ["--optimize"]):
                    continue  # see below
                with self.subTest(example=name, layout=layout):
                    done = self.replay("--verify", self.record_middle(name, *layout))
                    self.assertEqual(done.stderr, "")
                    self.assertIn("4 frames compared, 0 differ\n", done.stdout)
                    self.assertEqual(done.returncode, 0)

    # A state that was cut down lacks the buffers of array objects that were only bound in the recorded frames: the
    # two draws of each frame that read them are left out, and named, and nothing else is.
    def test_draws_whose_buffers_are_not_in_the_state_are_named(self):
        done = self.replay("--verify", self.record_middle("programs", "--optimize"))
        lines = done.stderr.splitlines()
        self.assertEqual(len(lines), 2 * 4)
        for line in lines:
            reason = "not replayed: it reads attribute 0 past the end of its buffer"
            self.assertRegex(line, r"^call \d+ glDrawArrays: " + reason + "$")
        self.assertIn("4 frames compared, 4 differ\n", done.stdout)
        self.assertEqual(done.returncode, 1)

    # A captured framebuffer has its depth and no colour texture: what was drawn into the texture stays away.
    def test_a_render_target_made_before_the_recording_stays_empty(self):
        for layout in ([], ["--optimize"]):
            with self.subTest(layout=layout):
                done = self.replay("--verify", self.record_middle("render_target", *layout))
                self.assertEqual(done.stderr, "")
                self.assertIn("4 frames compared, 4 differ\n", done.stdout)

    # What the queries of a program answer on the same driver is what they answered when it was recorded.
    def test_queries_answer_as_they_did(self):
        for name in EXAMPLES:
            with self.subTest(example=name):
                done = self.replay("--check-queries", self.record_frames(name))
                self.assertEqual(done.stderr, "")
                self.assertEqual(done.returncode, 0)

    # The recorded frames are the pictures that the program itself reads back.
    def test_frames_writes_what_the_example_wrote(self):
        trace = self.record_frames("cube", "--png", "last.png")
        done = self.run_command(NEBTRACE, "frames", trace, "pictures")
        self.assertEqual(done.stdout, "5 frames written to pictures\n")
        self.assertEqual(sorted(os.listdir(self.path("pictures"))), [f"frame_0000{i}.png" for i in range(5)])
        with open(self.path("pictures/frame_00004.png"), "rb") as one, open(self.path("last.png"), "rb") as other:
            self.assertEqual(one.read(), other.read())

    # Replayed frames come out as files; of frames that do not differ, --diff writes nothing.
    def test_replayed_frames_are_written_and_differences_only_where_there_are_any(self):
        trace = self.record_frames("client_arrays", "--png", "last.png")
        done = self.replay("--out", "out", "--diff", "differences", "--frames", "3-4", trace)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(sorted(os.listdir(self.path("out"))), ["frame_00003.png", "frame_00004.png"])
        self.assertEqual(os.listdir(self.path("differences")), [])
        with open(self.path("out/frame_00004.png"), "rb") as one, open(self.path("last.png"), "rb") as other:
            self.assertEqual(one.read(), other.read())

    # A frame that was tampered with is shown from all three sides.
    def test_a_frame_that_differs_is_written_with_its_difference(self):
        trace = self.record_frames("cube")
        with open(self.path(trace), "rb") as file:
            content = bytearray(file.read())
        # The last swap's width and height; behind them a pointer, the size and the pixels.
        size = content.rindex(struct.pack("<2I", 120, 90))
        content[size + 16 + 5000] ^= 0x40
        with open(self.path(trace), "wb") as file:
            file.write(content)
        done = self.replay("--verify", "--diff", "differences", trace)
        self.assertEqual(done.returncode, 1)
        self.assertIn("frame 4 differs: 1 pixels, largest channel difference 64\n", done.stdout)
        written = [f"frame_00004_{what}.png" for what in ("difference", "recorded", "replayed")]
        self.assertEqual(sorted(os.listdir(self.path("differences"))), written)

    # Each round begins with an empty context and so draws the same.
    def test_loops_repeat_the_whole_replay(self):
        done = self.replay("--verify", "--loop", "3", self.record_frames("programs"))
        self.assertIn("15 frames compared, 0 differ\n", done.stdout)
        self.assertEqual(done.returncode, 0, done.stderr)

    # The times of all frames in the range, of all rounds.
    def test_bench_prints_times_and_calls_per_second(self):
        done = self.replay("--bench", "--loop", "2", self.record_frames("render_target"))
        self.assertRegex(done.stdout, r"frame time: min \d+\.\d+ ms, median \d+\.\d+ ms, p99 \d+\.\d+ ms\n")
        self.assertRegex(done.stdout, r"\n[1-9]\d* calls per second\n")

    # A machine that cannot replay is told what it lacks.
    def test_what_a_machine_lacks_is_named(self):
        recording = self.record_frames("cube")
        self.environment["__EGL_VENDOR_LIBRARY_DIRS"] = self.folder  # no driver behind the libraries
        done = self.replay(recording)
        self.assertEqual(done.returncode, 1)
        self.assertIn("no EGL display can be opened; nebtrace doctor tells what this machine lacks", done.stderr)
        self.hide_libraries("libEGL.so.1")
        done = self.replay(recording)
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stderr, r"^nebtrace: .*libEGL\.so\.1.*; install libegl1 \(so Debian calls the package\)\n$")

    # Frames that were recorded without pixels are no pictures.
    def test_frames_without_pixels_are_told(self):
        self.record_well("--frames", "0", "--", example("cube"), "--frames", "1", "--size", "40x30")
        done = self.run_command(NEBTRACE, "frames", "trace.nebt", "pictures")
        self.assertEqual(done.returncode, 1)
        self.assertIn("was recorded with its pixels, as nebtrace record --save-frames does\n", done.stderr)


if __name__ == "__main__":
    unittest.main()
