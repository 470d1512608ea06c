"""What the tests of transparency share: an application run without the tracer and in each way of being traced, and
what it shows and says observed alike in all of them, below the tracer and by its own end."""

import collections
import json
import os
import re
import sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import BUILD, ScratchTest, find_program  # noqa: E402

DRIVER = os.path.join(BUILD, "tests", "transparency", "libkeep_frames.so")
FIRST, LAST = 20, 24  # of the range, where only a range is recorded
FRAMES = LAST + 2

# What `nebtrace record` is told, and what it says at the end: that it was indeed this that happened.
Way = collections.namedtuple("Way", "options report")
RECORDED = r"nebtrace: recorded \S+: \d+ bytes, {} frames?, \d+ calls"
RANGE = ("--frames", f"{FIRST}-{LAST}")
WHOLE = Way((), RECORDED.format("%d"))
PROFILED = Way(("--profile",), "nebtrace: profiling, so nothing was recorded")
NETWORKED = Way(("--network",), "nebtrace: recording is up to a client: nebtrace remote ADDRESS record")
WAYS = [
    WHOLE,
    Way(RANGE, RECORDED.format(LAST - FIRST + 1)),
    Way((*RANGE, "--optimize", "--save-frames"), RECORDED.format(LAST - FIRST + 1)),
    PROFILED,
    NETWORKED,
]

Observed = collections.namedtuple("Observed", "code output errors frames")


def without_the_log(text):
    """The recorder's lines go to the application's standard output, and can begin and end in mid-line of its own. A
    message may have line ends of its own on either side."""
    return [line for line in re.sub(r"NEBTRACE\(\w\) \n?[^\n]*\n+", "", text).splitlines() if line]


class TransparencyTest(ScratchTest):
    """The application's clock, and with it the recorder's, goes on by a fifth of a second with each frame's glClear and
    stands still otherwise, so that every run draws the same."""

    def setUp(self):
        super().setUp()
        self.write("driver.json", json.dumps({"file_format_version": "1.0.0", "ICD": {"library_path": DRIVER}}))
        self.environment["__EGL_VENDOR_LIBRARY_FILENAMES"] = self.path("driver.json")
        self.environment["KEEP_FRAMES"] = self.path("frames")
        self.environment["FAKETIME_NO_CACHE"] = "1"
        self.clock = (find_program("faketime"), "-f", "2020-01-01 00:00:00.0")

    def observe(self, done):
        frames = []
        if os.path.exists(self.path("frames")):
            frames = self.read("frames").splitlines()
            os.remove(self.path("frames"))
        return Observed(done.returncode, without_the_log(done.stdout), done.stderr.splitlines(), frames)

    def observe_alone(self, *command):
        done = self.run_command(*self.clock, *command)
        self.assertNotIn("NEBTRACE", done.stdout)
        return self.observe(done)

    def observe_traced(self, way, *command):
        done = self.record(*way.options, "--", *self.clock, *command)
        self.assertIn("NEBTRACE(M) Loading Host library.... ", done.stdout)
        seen = self.observe(done)
        if way is NETWORKED:
            self.assertIn("NEBTRACE(M) NetworkControl(I): Enabled", done.stdout)
            self.assertNotIn("InitServer has failed", done.stdout)
        if way is NETWORKED and seen.frames:  # without, no second passes in which it would look
            self.assertIn("NEBTRACE(M) Client Disconnected... fail to connect", done.stdout)
        own = [line for line in seen.errors if line.startswith("nebtrace: ")]
        self.assertEqual(len(own), 1, done.stderr)
        self.assertRegex(own[0], "^" + way.report.replace("%d", str(len(seen.frames))) + "$")
        return seen._replace(errors=[line for line in seen.errors if line not in own])

    def check_frames(self, frames):
        """What must hold for frames to prove anything: all are there, and pictures of something."""
        self.assertEqual(len(frames), FRAMES)
        for frame in frames:
            self.assertRegex(frame, r"^\d+: \d+x\d+, framebuffer 0, \d+ unlike the first, [0-9a-f]{16}$")
        self.assertTrue([frame for frame in frames if ", 0 unlike" not in frame], "nothing was drawn")

    def check_ways(self, ways, *command, beside=lambda: None):
        """Runs the command in each way. It must show and say what it does alone, and leave the same beside that."""
        alone = self.observe_alone(*command)
        left = beside()
        for way in ways:
            with self.subTest(command=command, way=way.options):
                self.assertEqual(self.observe_traced(way, *command), alone)
                self.assertEqual(beside(), left)
        return alone
