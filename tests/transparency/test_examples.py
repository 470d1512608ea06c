"""The examples, without the tracer and with it."""

import os
import unittest

from transparency import FRAMES, PROFILED, WAYS, WHOLE, TransparencyTest
from support import enter_namespace, examples


class Examples(TransparencyTest):
    # The driver's frames, and those that the example reads back itself and writes as pictures, what it counted, and
    # how it ended.
    def test_examples_draw_and_count_the_same(self):
        os.mkdir(self.path("pictures"))
        for example in examples():
            seen = self.check_ways(WAYS, example, "--frames", str(FRAMES), "--size", "200x150", "--counts",
                                   "--pictures", "pictures", beside=self.pictures)
            self.check_frames(seen.frames)
            self.assertRegex("\n".join(seen.output), rf"^draws \d+ swaps {FRAMES}$")
            self.assertEqual(seen.code, 0)

    def pictures(self):
        found = {}
        for name in os.listdir(self.path("pictures")):
            path = os.path.join(self.path("pictures"), name)
            with open(path, "rb") as file:
                found[name] = file.read()
            os.remove(path)
        self.assertEqual(len(found), FRAMES)
        return found

    # A program that finds no display ends as it would, and says why.
    def test_a_failing_example_fails_alike(self):
        self.environment["EGL_PLATFORM"] = "x11"
        for example in examples():
            alone = self.observe_alone(example)
            self.assertEqual(alone, (1, [], [f"{example}: no EGL display can be opened"], []))
            for way in (WHOLE, PROFILED):
                with self.subTest(example=example, way=way.options):
                    self.assertEqual(self.observe_traced(way, example), alone)


if __name__ == "__main__":
    enter_namespace("mount", "net")
    unittest.main()
