"""Recordings of programs of OpenGL ES 1, replayed: every frame must come out as it was recorded."""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import BUILD, NEBTRACE, ScratchTest, api_names, program  # noqa: E402

EXAMPLES = ("lighting", "sprites", "stages_es1")
ES1_ONLY = set(api_names("es1").values()) - set(api_names("es2").values())


class Es1(ScratchTest):
    def record_example(self, name, frames, *layout):
        self.record_well("--frames", frames, "--save-frames", *layout, "-o", name + ".nebt", "--",
                         os.path.join(BUILD, "examples", name), "--frames", "12", "--size", "120x90")
        return name + ".nebt"

    def check_identical(self, trace, frames):
        done = self.replay("--verify", trace)
        self.assertEqual(done.stderr, "")
        self.assertIn(f"{frames} frames compared, 0 differ\n", done.stdout)
        self.assertEqual(done.returncode, 0)

    # The whole run, from nothing.
    def test_every_frame_of_every_example_is_replayed_identically(self):
        for name in EXAMPLES:
            for layout in ([], ["--optimize"]):
                with self.subTest(example=name, layout=layout):
                    self.check_identical(self.record_example(name, "0-4", *layout), 5)

    # A recording of the middle of a run brings the state that its first frame began with, at either end.
    def test_frames_recorded_in_mid_run_are_replayed_identically(self):
        for name in EXAMPLES:
            for layout in ([], ["--optimize"]):
                with self.subTest(example=name, layout=layout):
                    trace = self.record_example(name, "6-9", *layout)
                    self.assertEqual(self.trace(trace).snapshot() != 0, layout == ["--optimize"])
                    self.assertTrue(any(record.name == "glLightModelfv" for record in self.trace(trace).state))
                    self.check_identical(trace, 4)

    # What the queries of a program answer on the same driver is what they answered when it was recorded.
    def test_queries_answer_as_they_did(self):
        for name in EXAMPLES:
            with self.subTest(example=name):
                done = self.replay("--check-queries", self.record_example(name, "0-4"))
                self.assertEqual((done.returncode, done.stderr), (0, ""))

    # info and dump know the calls of the API by their own names.
    def test_info_and_dump_understand_the_calls(self):
        trace = self.record_example("lighting", "6-9")
        done = self.run_command(NEBTRACE, "info", trace)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertRegex(done.stdout, r"glRotatef")
        done = self.run_command(NEBTRACE, "dump", trace)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue("-- render state of es1\n" in done.stdout)
        self.assertTrue("es1  glTexEnvi(target = GL_TEXTURE_ENV, pname = GL_TEXTURE_ENV_MODE, " in done.stdout)

    # Where both APIs are used, both are recorded, but only the state of the newer one is captured.
    def test_a_program_of_both_apis_has_the_calls_of_both_and_the_state_of_one(self):
        for layout in ([], ["--optimize"]):
            with self.subTest(layout=layout):
                self.record_well("--frames", "4-7", "--save-frames", *layout, "--", program("both_apis"), "12")
                trace = self.trace()
                recorded, state = set(trace.names()), {record.name for record in trace.state}
                self.assertIn("glVertexPointer", recorded)
                self.assertIn("glScissor", recorded)
                self.assertEqual(state & ES1_ONLY, set())
                self.assertIn("glBlendColor", state)
                self.check_identical("trace.nebt", 4)


if __name__ == "__main__":
    unittest.main()
