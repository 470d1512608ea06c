"""An application that ends in mid-recording by a signal: what it had done up to then is in the file."""

import os
import random
import re
import signal
import struct
import unittest

from faults import FaultTest, program
from support import HEADER_SIZE, LONGEST, NEBTRACE, Trace

FAULTY = program("faulty")
RUNS = 100
RANGE_RUNS = 20
FIRST, LAST = 3, 6  # the frames of the range
LATEST = 60  # frames that a run may finish before it is killed


class Killed(FaultTest):
    def run_and_kill(self, finished):
        """Kills an application at some moment behind so many frames; returns how many it had told of."""
        with self.endless_frames() as (process, reports):
            self.assertEqual(len(reports.read(4 * finished)), 4 * finished)
            process.kill()
            told = reports.read()
            self.assertEqual(process.wait(LONGEST), -signal.SIGKILL)
        numbers = struct.unpack(f"<{len(told) // 4}I", told)
        self.assertEqual(numbers, tuple(range(finished, finished + len(numbers))))
        return finished + len(numbers)

    def check_remains(self, told):
        """All that was finished is in the file, in whole records, and every reader agrees on where they end."""
        remains = self.remains()
        frames = len(remains.of("eglSwapBuffers"))
        self.assertGreaterEqual(frames, told)
        self.assertLessEqual(frames, told + 1)
        self.assertIn(len(remains.textures()), (frames, frames + 1))
        self.assertEqual(remains.textures(), list(range(len(remains.textures()))))
        repaired = self.run_command(NEBTRACE, "repair", "trace.nebt", "-o", "fixed.nebt")
        self.assertEqual((repaired.returncode, repaired.stderr), (0, ""))
        with open(self.path("fixed.nebt"), "rb") as file:
            self.assertEqual(file.read(), remains.bytes[: remains.end] + b"\x13\x10" + bytes(8))
        return len(remains.rest)

    # Whatever the moment, no finished call is missing, and at most one record is not whole.
    def test_no_moment_of_a_kill_loses_a_finished_call(self):
        self.configure()
        choice = random.Random()
        cuts = 0
        for run in range(RUNS):
            finished = choice.randint(1, LATEST)
            with self.subTest(run=run, finished=finished):
                cuts += self.check_remains(self.run_and_kill(finished)) != 0
        print(f"{RUNS} runs, {cuts} of them cut within a record")

    # Around a range of frames with a state ahead of them or behind them, too: a state behind the frames that is whole
    # is found by the repair, and one that is not is never pointed at.
    def test_kills_around_a_captured_state_leave_whole_records(self):
        choice = random.Random()
        for run in range(RANGE_RUNS):
            optimized = run % 2
            self.configure(StartFrame=FIRST, EndFrame=LAST, OptimizeRS=optimized)
            finished = choice.randint(FIRST - 1, LAST + 2)
            with self.subTest(run=run, finished=finished, optimized=optimized):
                told = self.run_and_kill(finished)
                self.check_range(told, optimized)

    def check_range(self, told, optimized):
        with open(self.path("trace.nebt"), "rb") as file:
            content = file.read()
        repaired = self.run_command(NEBTRACE, "repair", "trace.nebt", "-o", "fixed.nebt")
        self.assertEqual((repaired.returncode, repaired.stderr), (0, ""))
        fixed = Trace(self.path("fixed.nebt"))
        kept = len(fixed.bytes) - len(fixed.footer)
        self.assertEqual(fixed.bytes[:kept], content[:kept])
        # The frames that the application had finished, less those ahead of the range, and none behind it.
        frames = len(fixed.of("eglSwapBuffers"))
        self.assertGreaterEqual(frames, min(max(told - FIRST, 0), LAST - FIRST + 1))
        self.assertLessEqual(frames, min(max(told + 1 - FIRST, 0), LAST - FIRST + 1))
        # Past the range the file is whole as it is.
        if told > LAST + 1:
            self.assertEqual(fixed.bytes, content)
        # With a state behind the frames, an application that came past the range has written it.
        if optimized and told > LAST + 1:
            self.assertGreater(fixed.snapshot(), HEADER_SIZE)
            self.assertGreater(len(fixed.state), 10)
        if not optimized or told <= LAST:
            self.assertEqual(fixed.snapshot(), 0)

    # The same for the application's own end: its code passes, and each call up to its last is in the file.
    def test_a_crash_of_the_application_is_its_own(self):
        for way, code, last in (
            ("segv", -signal.SIGSEGV, "eglSwapBuffers"),
            ("segv_in_a_call", -signal.SIGSEGV, "eglSwapBuffers"),
            ("abort", -signal.SIGABRT, "eglSwapBuffers"),
        ):
            with self.subTest(way=way):
                self.configure()
                self.assertEqual(self.run_both(FAULTY, way).returncode, code)
                remains = self.remains()
                self.assertEqual(remains.rest, b"")
                self.assertEqual(remains.textures(), list(range(5)))
                self.assertEqual(remains.names()[-1], last)

    # A profiled application that crashes does so as ever.
    def test_a_crash_under_the_profiler_is_the_applications(self):
        self.configure(Profile=1)
        for way in ("segv", "abort"):
            with self.subTest(way=way):
                self.run_both(FAULTY, way)


class KilledInAWindow(Killed):
    """The same while the file is written through a mapping."""

    keys = {"FileWindow": 1}

    # The recorder's command, which maps the file unless it is told not to, says what is to be done.
    def test_the_command_tells_of_room_that_was_not_used(self):
        done = self.record("--", FAULTY, "abort")
        self.assertEqual(done.returncode, 128 + signal.SIGABRT)
        told = re.search(r"recorded \S+: (\d+) bytes, \d+ frames, \d+ calls; of these (\d+) unused at the end, which "
                         r"nebtrace repair takes away\n", done.stderr)
        self.assertTrue(told, done.stderr)
        size, unused = map(int, told.groups())
        self.assertEqual(size % os.sysconf("SC_PAGE_SIZE"), 0)
        self.assertLess(0, unused)
        self.assertLess(unused, size)
        done = self.record("--flush-each-write", "--", FAULTY, "abort")
        self.assertRegex(done.stderr, r"recorded \S+: \d{4} bytes, \d+ frames, \d+ calls\n")


if __name__ == "__main__":
    unittest.main()
