"""Programs that nobody here wrote, without the tracer and with it: all that the tests of replay record."""

import os
import sys
import unittest

from transparency import FRAMES, NETWORKED, PROFILED, WAYS, WHOLE, TransparencyTest
from support import enter_namespace, find_program

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "player"))
import test_scenes  # noqa: E402


class Applications(TransparencyTest, test_scenes.Scenes):
    """The scenes are those that are replayed, each of which comes through here instead."""

    def check_moving(self, seen):
        self.check_frames(seen.frames)
        self.assertGreater(len({frame.split(": ")[1] for frame in seen.frames}), 1, "nothing moved")

    def check_scenes(self, *scenes, compare=None):
        del compare  # is about replays
        glmark = find_program("glmark2-es2")
        size = "{}x{}".format(*self.size)
        for scene in scenes:
            seen = self.check_ways(WAYS, glmark, "-s", size, "-b", f"{scene}:nframes={FRAMES}")
            self.check_moving(seen)
            self.assertEqual(seen.code, 0)
            self.assertIn("FrameTime: 200.000 ms", "\n".join(seen.output))
        self.check_validation(glmark, scenes)

    def check_validation(self, glmark, scenes):
        """The program's own look at its pixels, which it reads back through the tracer."""
        benchmarks = [part for scene in scenes for part in ("-b", scene)]
        seen = self.check_ways([WHOLE, PROFILED, NETWORKED], glmark, "--validate", *benchmarks)
        self.assertEqual((seen.code, seen.frames), (0, []))
        found = [line for line in seen.output if "Validation: " in line]
        self.assertEqual(len(found), len(scenes))
        self.assertNotIn("Failure", "\n".join(found))

    def test_es2gears(self):
        self.environment["KEEP_FRAMES_ONLY"] = str(FRAMES)
        seen = self.check_ways(WAYS, find_program("es2gears_x11"))
        self.check_moving(seen)
        self.assertEqual(seen.code, 0)


if __name__ == "__main__":
    enter_namespace("mount", "net")
    unittest.main()
