"""The examples, recorded whole."""

import struct
import unittest

from support import CLIENT_ARRAYS, CUBE, ScratchTest


def draws_and_swaps(counts):
    return f"draws {counts['glDrawArrays'] + counts['glDrawElements']} swaps {counts['eglSwapBuffers']}"


class Examples(ScratchTest):
    # The program's own count of its draws and swaps is what the recording holds, up to the footer.
    def test_a_recording_holds_the_draws_and_swaps_that_the_example_counted(self):
        for example in (CUBE, CLIENT_ARRAYS):
            with self.subTest(example=example):
                printed = self.record_well("--frames", "0-6", "--", example, "--frames", "7", "--counts")
                trace = self.trace()
                self.assertTrue(trace.ends_with_footer())
                self.assertEqual(printed, draws_and_swaps(trace.counts()))
                self.assertEqual(trace.counts()["eglSwapBuffers"], 7)

    # A range leaves out what comes before and after it; each swap carries the number of the frame it ends.
    def test_a_range_of_frames_records_these_frames_only(self):
        self.record_well("--frames", "3-5", "--", CUBE, "--frames", "9", "--size", "64x64")
        trace = self.trace()
        self.assertTrue(trace.ends_with_footer())
        # Behind the error word, the result, the display and the surface.
        frames = [struct.unpack_from("<I", swap.payload, 16)[0] for swap in trace.of("eglSwapBuffers")]
        self.assertEqual(frames, [3, 4, 5])
        self.assertEqual(draws_and_swaps(trace.counts()), "draws 12 swaps 3")
        self.assertEqual(trace.counts()["glCompileShader"], 0)

    # Client-side arrays travel in the records of the draws that read them.
    def test_draws_from_client_arrays_carry_the_arrays(self):
        self.record_well("--frames", "0", "--", CLIENT_ARRAYS, "--frames", "1", "--size", "64x64")
        stem = self.trace().of("glDrawArrays")[0].payload
        # Error word, mode, first, count, then the one enabled array: index, pointer, size and four corners.
        corners = struct.pack("<8f", -0.035, -1.0, 0.035, -1.0, -0.02, -0.1, 0.02, -0.1)
        self.assertEqual(stem[:16], struct.pack("<4I", 0, 5, 0, 4))
        self.assertEqual(stem[-len(corners) :], corners)


if __name__ == "__main__":
    unittest.main()
