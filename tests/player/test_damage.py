"""Recordings with damaged values: replay may refuse them, and must end by itself in either case."""

import os
import random
import struct
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import BUILD, FOOTER_SIZE, HEADER_SIZE, NEBTRACE, ScratchTest  # noqa: E402

VALUES = (0, 1, 2, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF)
ROUNDS = 25
FIRST_WORDS = 16  # of a payload: arguments, counts and sizes rather than contents


def records(content):
    position = HEADER_SIZE
    while len(content) - position > FOOTER_SIZE:
        (size,) = struct.unpack_from("<I", content, position)
        yield position + 6, size
        position += 6 + size


def damaged(content, chance):
    """A copy in which some words of some records are others."""
    places = [place for place in records(content) if place[1] >= 8]
    copy = bytearray(content)
    for _ in range(chance.choice((1, 2, 5, 20))):
        start, size = chance.choice(places)
        word = chance.randrange(min(size // 4, FIRST_WORDS))
        value = chance.choice(VALUES + (chance.randrange(200), chance.getrandbits(32)))
        struct.pack_into("<I", copy, start + 4 * word, value)
    return bytes(copy)


class Damage(ScratchTest):
    # The driver trusts what it is told. Each seed is a case of its own, and comes out alike in every run.
    def test_no_damaged_record_brings_the_player_down(self):
        for number, name in enumerate(("cube", "client_arrays", "programs")):
            example = os.path.join(BUILD, "examples", name)
            self.record_well("--frames", "0-1", "--save-frames", "--", example, "--frames", "2", "--size", "48x32")
            with open(self.path("trace.nebt"), "rb") as file:
                content = file.read()
            for seed in range(ROUNDS):
                with self.subTest(example=name, seed=seed):
                    with open(self.path("damaged.nebt"), "wb") as file:
                        file.write(damaged(content, random.Random(1000 * number + seed)))
                    queries = ["--check-queries"] * (seed % 2)
                    done = self.run_command(NEBTRACE, "replay", "--verify", *queries, "damaged.nebt")
                    self.assertIn(done.returncode, (0, 1), done.stderr)
                    if done.returncode == 1 and "frames compared" not in done.stdout:
                        self.assertTrue(done.stderr.splitlines()[-1].startswith("nebtrace: damaged.nebt: "))
            os.remove(self.path("trace.nebt"))


if __name__ == "__main__":
    unittest.main()
