"""A recording that was cut short, repaired: its frames are those that were kept, and replay shows it."""

import os
import unittest

from faults import FaultTest
from support import BUILD, NEBTRACE, Trace

SIZE = ("--size", "32x24")


def count(number, what):
    return f"{number} {what}" if number == 1 else f"{number} {what}s"


class Repair(FaultTest):
    def record_example(self, name, *options):
        self.record_well("--save-frames", *options, "--", os.path.join(BUILD, "examples", name), "--frames", "6", *SIZE)
        with open(self.path("trace.nebt"), "rb") as file:
            return file.read()

    def repair(self, content):
        with open(self.path("cut.nebt"), "wb") as file:
            file.write(content)
        done = self.run_command(NEBTRACE, "repair", "cut.nebt", "-o", "fixed.nebt")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def swap_ends(self, content):
        """The offsets behind each swap, from the file that was never cut."""
        ends, position = [], 62
        while len(content) - position > 10:
            size = int.from_bytes(content[position : position + 4], "little")
            number = int.from_bytes(content[position + 4 : position + 6], "little")
            position += 6 + size
            if number == 1022:
                ends.append(position)
        return ends

    # The frames that are whole in the cut file are whole in the repaired one, which ends in order: a reader has
    # nothing to complain of, and the frames look as they were recorded.
    def test_a_repaired_recording_replays_the_frames_that_were_kept(self):
        content = self.record_example("cube", "--frames", "1-4")
        ends = self.swap_ends(content)
        self.assertEqual(len(ends), 4)
        for frames in range(1, 4):
            for cut in (ends[frames - 1] + 1, (ends[frames - 1] + ends[frames]) // 2, ends[frames] - 1):
                with self.subTest(frames=frames, cut=cut):
                    said = self.repair(content[:cut])
                    fixed = Trace(self.path("fixed.nebt"))
                    self.assertTrue(fixed.ends_with_footer())
                    self.assertEqual(len(fixed.of("eglSwapBuffers")), frames)
                    kept = len(fixed.bytes) - 10
                    self.assertEqual(fixed.bytes[:kept], content[:kept])
                    self.assertIn(f" and {count(frames, 'frame')} kept, ", said)
                    if cut != kept:
                        self.assertIn(f"dropped {count(cut - kept, 'byte')} at offset {kept}: ", said)
                    done = self.replay("--verify", "fixed.nebt")
                    self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)
                    self.assertIn(f"{frames} frames compared, 0 differ", done.stdout)

    # A recording whose state stands behind its frames replays from it again once it is repaired, if the state is
    # whole; it is the file that was cut.
    def test_a_state_behind_the_frames_is_found_again(self):
        content = self.record_example("cube", "--frames", "2-3", "--optimize")
        for left in (0, 2, 9):
            with self.subTest(left=left):
                said = self.repair(content[: len(content) - 10 + left])
                self.assertIn("; the captured state stands at offset ", said)
                with open(self.path("fixed.nebt"), "rb") as file:
                    self.assertEqual(file.read(), content)
        done = self.replay("--verify", "fixed.nebt")
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertIn("2 frames compared, 0 differ", done.stdout)

    # A recording without a range never gets a footer: its repair adds one and drops nothing.
    def test_a_recording_of_everything_gets_its_footer(self):
        content = self.record_example("cube")
        self.assertIn("nothing dropped: only the footer was missing\n", self.repair(content))
        with open(self.path("fixed.nebt"), "rb") as file:
            self.assertEqual(file.read(), content + b"\x13\x10" + bytes(8))
        information = self.run_command(NEBTRACE, "info", "fixed.nebt").stdout
        self.assertIn("footer        yes\n", information)


if __name__ == "__main__":
    unittest.main()
