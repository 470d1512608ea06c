"""Programs that nobody here wrote, recorded whole: each call that they make is in the recording."""

import os
import unittest

from support import FRONT_ENDS, PROGRAMS, ScratchTest, api_names, find_program

COUNTING = os.path.join(PROGRAMS, "counting")
WRAPPED = set(api_names("egl").values()) | set(api_names("es2").values())
FRAMES = 12


class Programs(ScratchTest):
    def setUp(self):
        super().setUp()
        self.start_display()
        # The recorder ends the program at the end of the range: these programs have no end of their own.
        self.write("base", f"RecordData = 1\nStartFrame = 0\nEndFrame = {FRAMES - 1}\nExitOnLastFrame = 1\n")
        self.environment.update(
            COUNT_FRONT_ENDS=FRONT_ENDS, COUNT_SWAPS=str(FRAMES), COUNT_FILE=self.path("counts")
        )

    def record_counted(self, *command):
        """Records a program whose calls are counted on their way to the front ends; returns both sides."""
        front = f"LD_LIBRARY_PATH={COUNTING}:{FRONT_ENDS}"
        done = self.record("--config", "base", "--", "env", front, *command)
        self.assertEqual(done.returncode, 1, done.stdout + done.stderr)
        lines = [line.split() for line in self.read("counts").splitlines()]
        counted = {name: int(calls) for name, calls in lines if name in WRAPPED}
        trace = self.trace()
        self.assertTrue(trace.ends_with_footer())
        return counted, trace.counts()

    # A program that links EGL and GLES.
    def test_es2gears_is_recorded_call_by_call(self):
        counted, recorded = self.record_counted(find_program("es2gears_x11"))
        self.assertEqual(recorded, counted)
        self.assertEqual(recorded["eglSwapBuffers"], FRAMES)
        self.assertEqual(recorded["glDrawArrays"] % FRAMES, 0)
        self.assertGreater(recorded["glDrawArrays"], FRAMES)

    # A program that opens EGL at run time and asks it for everything.
    def test_glmark2_is_recorded_call_by_call(self):
        counted, recorded = self.record_counted(
            find_program("glmark2-es2"), "-s", "120x90", "-b", "build:nframes=20", "-b", "shading:nframes=20"
        )
        self.assertEqual(recorded, counted)
        self.assertEqual(recorded["eglSwapBuffers"], FRAMES)
        self.assertGreater(recorded["eglGetProcAddress"], 100)

    # The program's own frames are the recording's: it draws its model once in each.
    def test_glmark2_runs_to_its_end_under_the_recorder(self):
        printed = self.record_well(
            "--frames", "0-9", "--", find_program("glmark2-es2"), "-s", "120x90", "-b", "build:nframes=12"
        )
        self.assertIn("glmark2 Score:", printed)
        trace = self.trace()
        self.assertTrue(trace.ends_with_footer())
        self.assertEqual(trace.counts()["eglSwapBuffers"], 10)
        self.assertEqual(trace.counts()["glDrawArrays"], 10)


if __name__ == "__main__":
    unittest.main()
