"""What long work shows while it lasts: on a terminal a line that is gone at the end, and nothing of it elsewhere."""

import os
import pty
import re
import subprocess
import sys
import unittest

from support import CUBE, LONGEST, NEBTRACE, ScratchTest


class Progress(ScratchTest):
    def setUp(self):
        super().setUp()
        self.record_well("--frames", "0-2", "--save-frames", "--", CUBE, "--frames", "3", "--size", "40x30")

    def on_terminal(self, *command, stdout=None):
        """Runs nebtrace with its standard error on a terminal, and its output too unless it goes elsewhere. Returns
        what it ended with, and what the terminal got."""
        ours, theirs = pty.openpty()
        process = subprocess.Popen([NEBTRACE, *command], cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL,
                                   stdout=stdout or theirs, stderr=theirs)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        os.close(theirs)
        shown = b""
        while True:
            try:
                part = os.read(ours, 65536)
            except OSError:  # the other end is closed
                part = b""
            if not part:
                break
            shown += part
        os.close(ours)
        return process.wait(LONGEST), shown.decode().replace("\r\n", "\n")

    def seen(self, shown):
        """What stays on the screen: without what was written over."""
        return re.sub(r"[^\n]*\r\x1b\[K", "", shown)

    def assert_shows(self, shown, pattern):
        self.assertRegex(shown, r"\r" + pattern + r"\x1b\[K")
        self.assertRegex(shown, r"\r\x1b\[K")

    # The frame that is replayed, of how many; the counts stand alone at the end.
    def test_replay(self):
        code, shown = self.on_terminal("replay", "--verify", "trace.nebt")
        self.assertEqual(code, 0)
        self.assert_shows(shown, r"replaying trace\.nebt: frame 1 of 3")
        self.assertRegex(self.seen(shown), r"^3 frames, \d+ calls replayed\n3 frames compared, 0 differ\n$")

    # Rounds and ranges are counted in.
    def test_replay_of_a_range_in_rounds(self):
        _, shown = self.on_terminal("replay", "--loop", "2", "--frames", "0-1", "trace.nebt")
        self.assert_shows(shown, r"replaying trace\.nebt: frame 1 of 2, round 1 of 2")

    # A line about a call begins on a line of its own.
    def test_other_lines_are_not_mixed_in(self):
        with open(self.path("trace.nebt"), "r+b") as file:
            whole = file.read()
            for frame in self.trace().frames():
                file.seek(whole.index(frame.pixels))
                file.write(b"\x7f\x01\x02\x03")
        code, shown = self.on_terminal("replay", "--verify", "trace.nebt")
        self.assertEqual(code, 1)
        self.assertRegex(self.seen(shown), r"^frame 0 differs: [^\n]+\n(frame \d differs: [^\n]+\n)*3 frames, ")

    # What is only read tells how far it is.
    def test_info_and_repair(self):
        for command in (("info", "trace.nebt"), ("repair", "trace.nebt", "-o", "out.nebt")):
            with self.subTest(command=command):
                code, shown = self.on_terminal(*command)
                self.assertEqual(code, 0)
                self.assert_shows(shown, r"reading trace\.nebt: \d+ %")
                self.assertNotIn("reading", self.seen(shown))

    # While an application runs the terminal is its own. What was recorded is read when it has ended.
    def test_record(self):
        code, shown = self.on_terminal("record", "-o", "new.nebt", "--", CUBE, "--frames", "2", "--size", "40x30")
        self.assertEqual(code, 0)
        path = re.escape(self.path("new.nebt"))
        self.assert_shows(shown, r"reading " + path + r": \d+ %")
        self.assertRegex(self.seen(shown), rf"nebtrace: recorded {path}: [^\n]+\n$")

    # Output that goes to a program has none of it, nor has the terminal's standard error less for that.
    def test_output_that_goes_elsewhere(self):
        with open(self.path("out"), "wb") as out:
            _, shown = self.on_terminal("replay", "trace.nebt", stdout=out)
        self.assert_shows(shown, r"replaying trace\.nebt: frame 1 of 3")
        self.assertRegex(self.read("out"), r"^3 frames, \d+ calls replayed\n$")

    # Where nobody looks on, nothing is shown.
    def test_nothing_without_a_terminal(self):
        for command in (("replay", "trace.nebt"), ("info", "trace.nebt"), ("repair", "trace.nebt", "-o", "out.nebt")):
            done = self.run_command(NEBTRACE, *command)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertNotIn("\x1b", done.stdout)
            self.assertNotIn("\r", done.stdout)

    # A narrow terminal has the beginning of the line: one that wraps could not be taken back.
    def test_a_narrow_terminal(self):
        name = "x" * 200 + ".nebt"
        os.rename(self.path("trace.nebt"), self.path(name))
        _, shown = self.on_terminal("replay", name)
        self.assertIn("\rreplaying " + "x" * 69 + "\x1b[K", shown)


if __name__ == "__main__":
    sys.exit(unittest.main())
