"""Draws from memory of the program's own: what the recording holds is what the program had there."""

import json
import struct
import unittest

from support import CLIENT_ARRAYS, NEBTRACE, ScratchTest

FRAMES = 3
DRAWS = 5  # in each frame


class Walk:
    """The words and bytes of a record, from its beginning."""

    def __init__(self, payload):
        self.payload = payload
        self.position = 0

    def word(self):
        return struct.unpack("<I", self.bytes(4))[0]

    def bytes(self, count):
        self.position += count
        assert self.position <= len(self.payload), "the record ends early"
        return self.payload[self.position - count : self.position]

    def at_end(self):
        return self.position == len(self.payload)


def recorded(draw):
    """What a draw's record holds, in the form of the program's own account."""
    walk = Walk(draw.payload)
    indices = b""
    walk.bytes(16)  # error word, mode, first and count, or count and type
    if draw.name == "glDrawElements":
        walk.word()  # the pointer
        indices = walk.bytes(walk.word())
        walk.word()  # the argument again
    arrays = []
    while not walk.at_end():
        index = walk.word()
        walk.word()  # the pointer
        arrays.append({"index": index, "bytes": walk.bytes(walk.word()).hex()})
    return {"call": draw.name, "indices": indices.hex(), "arrays": arrays}


class ClientArrays(ScratchTest):
    def setUp(self):
        super().setUp()
        self.record_well(
            "--frames", f"0-{FRAMES - 1}", "--", CLIENT_ARRAYS, "--frames", str(FRAMES), "--size", "64x48",
            "--dump-arrays", "arrays.jsonl",
        )
        self.had = [json.loads(line) for line in self.read("arrays.jsonl").splitlines()]
        self.draws = [r for r in self.trace().records if r.name in ("glDrawArrays", "glDrawElements")]
        self.assertEqual(len(self.had), FRAMES * DRAWS)

    # Tight and strided arrays, without indices, with those of one byte and of two, and with a buffer's: every byte
    # that the draw can touch, and no other.
    def test_the_recording_holds_what_the_program_had_in_memory(self):
        self.assertEqual([recorded(draw) for draw in self.draws], self.had)

    # The program's own account is that of all the paths: a path that it no longer takes would go unnoticed.
    def test_every_path_of_a_draw_is_taken(self):
        paths = [
            (one["call"], len(one["indices"]) // 2, [array["index"] for array in one["arrays"]])
            for one in self.had[:DRAWS]
        ]
        self.assertEqual(
            paths,
            [
                ("glDrawArrays", 0, [0]),  # tight
                ("glDrawElements", 0, [0, 1]),  # strided, indices in a buffer
                ("glDrawElements", 108, [0, 1]),  # strided, 54 indices of two bytes
                ("glDrawElements", 18, [0, 1]),  # tight, 18 indices of one byte
                ("glDrawArrays", 0, [0, 1]),  # strided
            ],
        )

    # A tight array is recorded where it stood, and its pointer is the one that glVertexAttribPointer was given; a
    # strided one is recorded from a copy.
    def test_tight_arrays_keep_their_pointers(self):
        records = self.trace().records
        given = [struct.unpack_from("<I", r.payload, 21)[0] for r in records if r.name == "glVertexAttribPointer"]
        stem, _, _, heart, seeds = self.draws[:DRAWS]
        self.assertEqual(struct.unpack_from("<I", stem.payload, 20)[0], given[0])
        self.assertEqual(struct.unpack_from("<I", heart.payload, 16 + 8 + 18 + 4 + 4)[0], given[5])
        self.assertNotEqual(struct.unpack_from("<I", seeds.payload, 20)[0], given[7])

    # Indices in a buffer leave three empty words: no pointer, no size, offset 0.
    def test_indices_in_a_buffer_are_not_recorded_again(self):
        leaves = self.draws[1].payload
        self.assertEqual(struct.unpack_from("<7I", leaves, 0), (0, 4, 12, 0x1403, 0, 0, 0))
        upload = self.trace().of("glBufferData")[0].payload
        self.assertEqual(upload[-4 - 24 : -4], struct.pack("<12H", 0, 1, 2, 2, 1, 3, 4, 5, 6, 6, 5, 7))

    # The reader gives the same entries: as many, with the same attributes and sizes.
    def test_dump_decodes_the_arrays(self):
        done = self.run_command(NEBTRACE, "dump", "--json", "--grep", "glDrawArrays|glDrawElements", "trace.nebt")
        self.assertEqual(done.returncode, 0, done.stderr)
        draws = [json.loads(line) for line in done.stdout.splitlines()]
        self.assertEqual([draw["name"] for draw in draws], [one["call"] for one in self.had])
        self.assertEqual(
            [[(array["index"], array["size"]) for array in draw["args"]["arrays"]] for draw in draws],
            [[(array["index"], len(array["bytes"]) // 2) for array in one["arrays"]] for one in self.had],
        )


if __name__ == "__main__":
    unittest.main()
