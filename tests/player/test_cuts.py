"""Recordings that were cut off, wherever it may be: each is replayed up to its last whole record, and the player says
that it was."""

import os
import struct
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import BUILD, FOOTER_SIZE, HEADER_SIZE, SWAP_BUFFERS, ScratchTest  # noqa: E402

UNCOUNTED = range(1, 5)  # thread changes and the marks around a state
HEAD_SIZE = 6  # of a record: the size of its payload, and its ID


class Walk:
    """Where the records of a whole trace end, and what stands up to there."""

    def __init__(self, content):
        self.ends = []  # offset, calls, frames
        position, calls, frames = HEADER_SIZE, 0, 0
        while len(content) - position > FOOTER_SIZE:
            size, number = struct.unpack_from("<IH", content, position)
            position += HEAD_SIZE + size
            calls += number not in UNCOUNTED
            frames += number == SWAP_BUFFERS
            self.ends.append((position, calls, frames))


class Cuts(ScratchTest):
    def record_example(self, name, *arguments):
        example = os.path.join(BUILD, "examples", name)
        self.record_well("--save-frames", *arguments, "--", example, "--frames", "6", "--size", "32x24")
        with open(self.path("trace.nebt"), "rb") as file:
            content = file.read()
        os.remove(self.path("trace.nebt"))
        return content

    def replay_cut(self, content, length):
        with open(self.path("cut.nebt"), "wb") as file:
            file.write(content[:length])
        return self.replay("cut.nebt")

    def check_whole_records(self, content, length, end, calls, frames):
        """A cut behind the record that ends at `end`: what is whole is replayed, and the end is told."""
        done = self.replay_cut(content, length)
        place = f"at offset {end}"
        told = f"cut.nebt: {place}: "
        if length == end:
            told = f"cut.nebt: the recording was not closed: there is no footer {place}; replaying up to there\n"
        self.assertTrue(done.stderr.startswith(told), done.stderr)
        self.assertEqual(done.stderr.count("\n"), 1, done.stderr)
        self.assertIn("replaying up to ", done.stderr)
        self.assertEqual(done.stdout, f"{frames} frames, {calls} calls replayed\n")
        self.assertEqual(done.returncode, 0)

    # In the header there is nothing to replay yet.
    def test_a_trace_without_its_header_is_refused(self):
        content = self.record_example("cube", "--frames", "0")
        for length in (0, 1, 7, 8, 16, 17, 18, 40, HEADER_SIZE - 1):
            with self.subTest(length=length):
                done = self.replay_cut(content, length)
                self.assertEqual(done.stdout, "")
                self.assertRegex(done.stderr, r"^nebtrace: cut.nebt: at offset \d+: [^\n]+\n$")
                self.assertEqual(done.returncode, 1)

    # A header alone is a recording of nothing.
    def test_a_header_alone_is_replayed(self):
        content = self.record_example("cube", "--frames", "0")
        self.check_whole_records(content, HEADER_SIZE, HEADER_SIZE, 0, 0)

    # At the end of a record, within the head of the next one, behind the head, and a byte short of its end: around
    # every swap, and here and there between them.
    def test_a_recording_is_replayed_up_to_its_last_whole_record(self):
        content = self.record_example("client_arrays", "--frames", "2-3")
        walk = Walk(content)
        for index, (end, calls, frames) in enumerate(walk.ends[:-1]):
            following, _, later = walk.ends[index + 1]
            if index % 25 != 0 and later == frames:
                continue
            lengths = {end, end + 1, end + 4, end + 5, end + HEAD_SIZE, (end + following) // 2, following - 1}
            for length in sorted(lengths - {following}):
                with self.subTest(record=index, length=length):
                    self.check_whole_records(content, length, end, calls, frames)

    # Of a footer, every byte counts: without the last one there is none.
    def test_a_cut_in_the_footer_loses_no_frame(self):
        content = self.record_example("cube", "--frames", "0-1")
        end, calls, frames = Walk(content).ends[-1]
        self.assertEqual(end, len(content) - FOOTER_SIZE)
        for length in range(end, len(content)):
            with self.subTest(length=length):
                self.check_whole_records(content, length, end, calls, frames)
        done = self.replay_cut(content, len(content))
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    # Where the state stands behind the frames, a cut takes the position of the state away, which only the footer
    # gives: the frames are replayed without it. That goes wrong in every way, and must end all the same.
    def test_frames_whose_state_was_cut_off_are_replayed_without_it(self):
        content = self.record_example("programs", "--frames", "2-3", "--optimize")
        walk = Walk(content)
        swaps = [index for index, end in enumerate(walk.ends) if end[2] == 2]
        for index in range(swaps[0], len(walk.ends), 20):
            with self.subTest(record=index):
                end, calls, frames = walk.ends[index]
                done = self.replay_cut(content, end)
                self.assertIn("there is no footer", done.stderr.splitlines()[0])
                self.assertTrue(done.stdout.startswith(f"{frames} frames, {calls} calls replayed\n"), done.stdout)
                self.assertEqual(done.returncode, 0, done.stderr)


if __name__ == "__main__":
    unittest.main()
