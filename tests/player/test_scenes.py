"""Programs that nobody here wrote, recorded in mid-run and replayed: what they draw must come out as it was recorded.

Each scene is a test of its own, so that they can run at the same time."""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import ScratchTest, find_program  # noqa: E402

FIRST, LAST = 20, 24
SMALL, LARGE = (160, 120), (640, 480)
ALL_SAME = ["5 frames compared, 0 differ"]
# What replay prints ahead of its totals where the frame that the recording began with is another, and no other is.
FIRST_DIFFERS = r"frame 0 differs: [1-9]\d* pixels, largest channel difference [1-9]\d*"


class Scenes(ScratchTest):
    size = SMALL

    def setUp(self):
        super().setUp()
        self.start_display()

    def check_recording(self, optimize):
        """What must hold for the replay to prove anything: pictures of the frames in the middle, and their state."""
        trace = self.trace()
        frames = trace.frames()
        self.assertEqual([frame.number for frame in frames], list(range(FIRST, LAST + 1)))
        for frame in frames:
            self.assertEqual((frame.width, frame.height), self.size)
            self.assertEqual(len(frame.pixels), frame.width * frame.height * 4)
            colours = {frame.pixels[i : i + 4] for i in range(0, len(frame.pixels), 4)}
            self.assertGreater(len(colours), 2, "the program drew next to nothing")
        self.assertIn("glLinkProgram", [call.name for call in trace.state])
        self.assertNotIn("glLinkProgram", trace.names())
        self.assertEqual(trace.snapshot() != 0, optimize)

    def check_replay(self, optimize, compare):
        self.check_recording(optimize)
        done = self.replay("--verify", "trace.nebt")
        self.assertEqual(done.stderr, "")
        lines = done.stdout.splitlines()
        self.assertRegex(lines.pop(-2), r"^5 frames, \d+ calls replayed$")
        compare(done.returncode, lines)
        os.remove(self.path("trace.nebt"))

    def all_same(self, code, lines):
        self.assertEqual(lines, ALL_SAME)
        self.assertEqual(code, 0)

    def first_differs(self, code, lines):
        self.assertEqual(lines[1:], ["5 frames compared, 1 differ"])
        self.assertRegex(lines[0], f"^{FIRST_DIFFERS}$")
        self.assertEqual(code, 1)

    def check_layouts(self, ends_with, compare, *command):
        for layout in ([], ["--optimize"]):
            with self.subTest(program=command[-1], layout=layout):
                done = self.record("--frames", f"{FIRST}-{LAST}", "--save-frames", *layout, *command)
                self.assertEqual(done.returncode, ends_with, done.stdout + done.stderr)
                self.check_replay(bool(layout), compare)

    def check_scenes(self, *scenes, compare=None):
        size = "{}x{}".format(*self.size)
        for scene in scenes:
            program = (find_program("glmark2-es2"), "-s", size, "-b", f"{scene}:nframes={LAST + 2}")
            self.check_layouts(0, compare or self.all_same, "--", *program)

    # A program that links EGL and GLES, and has no end of its own: the recorder ends it behind the range.
    def test_es2gears(self):
        self.write("base", "RecordData = 1\nExitOnLastFrame = 1\n")
        self.size = (300, 300)
        self.check_layouts(1, self.all_same, "--config", "base", "--", find_program("es2gears_x11"))

    # Models from buffer objects, apart and interleaved, and from client arrays.
    def test_build(self):
        self.check_scenes("build", "build:interleave=true", "build:use-vbo=false")

    # Images, and mipmaps that were generated ahead of the range.
    def test_texture(self):
        self.check_scenes("texture", "texture:texture-filter=mipmap")

    # Programs with many uniforms.
    def test_shading(self):
        self.check_scenes("shading", "shading:shading=phong", "shading:shading=cel")

    # More than one texture, and attributes that were bound to locations.
    def test_bump(self):
        self.check_scenes("bump", "bump:bump-render=normals", "bump:bump-render=height")

    # Buffers that are changed through glMapBufferOES alone. What was written ahead of the first recorded frame is in
    # no record: this frame is drawn from the upload that made the buffers. Each later one follows a recorded unmap.
    def test_buffer(self):
        self.check_scenes("buffer", "buffer:interleave=true", compare=self.first_differs)

    # The same scene through glBufferSubData: these contents are followed from the program's first call on.
    def test_buffer_subdata(self):
        parts = "update-fraction=0.5:update-dispersion=0.9:buffer-usage=stream"
        self.check_scenes("buffer:update-method=subdata", f"buffer:update-method=subdata:{parts}")

    # Several draws a frame, with other uniforms each. The quads turn by the clock, from being seen edge-on: where
    # frames pass too quickly there is nothing to be seen in the first of them.
    def test_pulsar(self):
        self.size = LARGE
        self.check_scenes("pulsar", "pulsar:light=true:texture=true:quads=20")

    # Shaders with branches.
    def test_conditionals(self):
        self.check_scenes("conditionals", "conditionals:fragment-steps=5:vertex-steps=0")

    # Shaders with functions.
    def test_function(self):
        self.check_scenes("function", "function:fragment-complexity=medium:fragment-steps=5")

    # Shaders with loops, and their counts in uniforms.
    def test_loop(self):
        self.check_scenes("loop", "loop:fragment-steps=5:fragment-uniform=false:vertex-steps=5")


if __name__ == "__main__":
    unittest.main()
