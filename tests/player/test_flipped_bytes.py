"""Recordings in which bytes are other ones: whatever the commands make of them, they end by themselves."""

import os
import random
import re
import struct
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import BUILD, FOOTER_SIZE, HEADER_SIZE, NEBTRACE, ScratchTest  # noqa: E402

HEAD_SIZE = 6  # of a record
FIRST_BYTES = 48  # of a payload: arguments, counts and sizes rather than contents
CASES = 40  # for each recording
REPLAYS = (["--verify"], ["--check-queries"], ["--bench"], ["--verify", "--frames", "1-1"])
ACTIVE_TEXTURE = 3001  # of OpenGL ES 1


def records(content):
    """Where each record begins, its ID and the size of its payload."""
    position = HEADER_SIZE
    while len(content) - position > FOOTER_SIZE:
        size, number = struct.unpack_from("<IH", content, position)
        yield position, number, size
        position += HEAD_SIZE + size


def place_in(content, places, chance):
    """A byte of the header, of the footer, or of a record, most often of what decides how it is read."""
    kind = chance.random()
    if kind < 0.1:
        return chance.randrange(HEADER_SIZE)
    if kind < 0.15:
        return len(content) - 1 - chance.randrange(FOOTER_SIZE)
    start, _, size = chance.choice(places)
    return start + chance.randrange(HEAD_SIZE + (size if kind < 0.3 else min(size, FIRST_BYTES)))


def flipped(content, chance):
    """A copy with a few other bytes; of each tenth one the end is missing."""
    places = list(records(content))
    copy = bytearray(content)
    for _ in range(chance.choice((1, 1, 2, 4, 16))):
        at = place_in(content, places, chance)
        copy[at] = chance.choice((copy[at] ^ (1 << chance.randrange(8)), 0, 1, 255, chance.randrange(256)))
    return copy[: chance.randrange(len(copy))] if chance.random() < 0.1 else copy


class FlippedBytes(ScratchTest):
    def record_example(self, name, *layout):
        example = os.path.join(BUILD, "examples", name)
        self.record_well(*layout, "--save-frames", "--", example, "--frames", "4", "--size", "32x24")
        with open(self.path("trace.nebt"), "rb") as file:
            content = file.read()
        os.remove(self.path("trace.nebt"))
        return content

    def write_trace(self, content):
        with open(self.path("flipped.nebt"), "wb") as file:
            file.write(content)

    def check_ends(self, *command):
        done = self.run_command(NEBTRACE, *command, errors="replace")
        self.assertIn(done.returncode, (0, 1), (command, done.stderr))

    # Each seed is a case of its own, and comes out alike in every run.
    def check_cases(self, name, *layout):
        content = self.record_example(name, *layout)
        for seed in range(CASES):
            with self.subTest(seed=seed):
                self.write_trace(flipped(content, random.Random(f"{name} {layout} {seed}")))
                self.check_ends("replay", *REPLAYS[seed % len(REPLAYS)], "flipped.nebt")
                self.check_ends("dump", *(["--json"] if seed % 2 else []), "flipped.nebt")
                if seed % 4 == 0:
                    self.check_ends("frames", "flipped.nebt", "pictures")
                    self.check_ends("dump", "--extract", "parts", "flipped.nebt")

    # From the first call on: objects are made.
    def test_render_target(self):
        self.check_cases("render_target", "--frames", "0-1")

    # A state ahead of the frames.
    def test_cube_map(self):
        self.check_cases("cube_map", "--frames", "1-2")

    # A state behind them, which the footer gives the place of.
    def test_programs(self):
        self.check_cases("programs", "--frames", "1-2", "--optimize")

    # Arrays that the records of draws carry.
    def test_client_arrays(self):
        self.check_cases("client_arrays", "--frames", "0-1")

    # The fixed functions of OpenGL ES 1.
    def test_lighting(self):
        self.check_cases("lighting", "--frames", "0-1")

    # Mesa's driver takes a unit that OpenGL ES 1 lacks, and brings the process down at its matrix.
    def test_a_unit_that_the_driver_lacks(self):
        content = bytearray(self.record_example("lighting", "--frames", "0"))
        units = [start for start, number, _ in records(content) if number == ACTIVE_TEXTURE]
        for start in units:
            struct.pack_into("<I", content, start + HEAD_SIZE + 4, 0x84FF)  # behind the error word
        self.write_trace(content)
        done = self.replay("flipped.nebt")
        self.assertEqual(done.returncode, 0, done.stderr)
        named = r"(?m)^call \d+ glActiveTexture: not replayed: the driver has no such texture unit$"
        self.assertEqual(len(re.findall(named, done.stderr)), len(units))


if __name__ == "__main__":
    unittest.main()
