"""What the options of `nebtrace record` change in a recording."""

import struct
import unittest

from support import CUBE, ScratchTest

WIDTH, HEIGHT = 40, 30
PICTURE = WIDTH * HEIGHT * 4


class Settings(ScratchTest):
    def record_cube(self, *options):
        self.record_well(
            *options, "--frames", "0-1", "--", CUBE, "--frames", "2", "--size", "40x30", "--png", "last.png"
        )
        trace = self.trace()
        self.assertTrue(trace.ends_with_footer())
        return trace

    # The key's mere presence turns the contents of arrays on, so that without data it must be absent.
    def test_no_data_leaves_the_contents_of_arrays_out(self):
        trace = self.record_cube("--no-data")
        self.assertEqual(trace.record_data, 0)
        # The error word and the four arguments, the data as a bare pointer.
        self.assertEqual({len(record.payload) for record in trace.of("glBufferData")}, {20})

    # By default a recording is complete: the buffers' contents stand in the records.
    def test_a_recording_has_the_contents_of_arrays_by_default(self):
        trace = self.record_cube()
        self.assertEqual(trace.record_data, 1)
        square = struct.pack("<8f", -1, -1, 1, -1, -1, 1, 1, 1)
        self.assertTrue(any(square in record.payload for record in trace.of("glBufferData")))

    # Saved pixels are those of the frame that the swap ends: the same that the program read back itself.
    def test_save_frames_puts_the_pixels_of_each_frame_into_its_swap(self):
        trace = self.record_cube("--save-frames")
        self.assertEqual(trace.frame_buffer, 1)
        swaps = trace.of("eglSwapBuffers")
        for swap in swaps:
            # Error, result, display, surface, frame, then width, height, pointer, byte size, pixels.
            width, height, _, size = struct.unpack_from("<4I", swap.payload, 20)
            self.assertEqual((width, height, size), (WIDTH, HEIGHT, PICTURE))
            self.assertEqual(len(swap.payload), 36 + PICTURE)
        pixels = [swap.payload[36:] for swap in swaps]
        self.assertNotEqual(pixels[0], pixels[1])
        self.assertIn(pixels[1], trace.of("glReadPixels")[0].payload)

    # Without the option a swap costs no read-back and carries no pixels.
    def test_swaps_carry_no_pixels_by_default(self):
        trace = self.record_cube()
        self.assertEqual(trace.frame_buffer, 0)
        self.assertEqual([len(swap.payload) for swap in trace.of("eglSwapBuffers")], [36, 36])

    # Without a range everything up to the end of the program is recorded; such a recording has no footer,
    # since the range never ended.
    def test_without_a_range_every_frame_is_recorded(self):
        self.record_well("--", CUBE, "--frames", "4", "--size", "40x30")
        trace = self.trace()
        self.assertEqual(trace.counts()["eglSwapBuffers"], 4)
        self.assertEqual(trace.names()[-1], "eglTerminate")

    # A configuration of one's own is the base, and an option wins over its key.
    def test_options_override_the_keys_of_a_given_configuration(self):
        self.write("base", "[record]\nRecordData = 1\nStartFrame = 1\nEndFrame = 1\nTraceFile = elsewhere.nebt\n")
        self.record_well("--config", "base", "--frames", "2-3", "--", CUBE, "--frames", "5", "--size", "40x30")
        self.assertEqual(self.trace("elsewhere.nebt").counts()["eglSwapBuffers"], 2)

    # The keys that no option names stay as the file has them.
    def test_a_given_configuration_keeps_its_other_keys(self):
        self.write("base", "StartFrame = 1\nEndFrame = 1\nExitOnLastFrame = 1\n")
        done = self.record("--config", "base", "--", CUBE, "--frames", "5", "--size", "40x30", "--counts")
        self.assertEqual(done.returncode, 1)
        trace = self.trace()
        self.assertEqual(trace.record_data, 0)
        self.assertEqual(trace.counts()["eglSwapBuffers"], 1)
        self.assertNotIn("draws", done.stdout)

    # %pid stands for the process, and the summary names the file that was made.
    def test_pid_in_the_name_becomes_the_process_id(self):
        done = self.record("-o", "cube_%pid.nebt", "--frames", "0", "--", "sh", "-c", f"echo pid $$; exec {CUBE} --frames 2")
        pid = done.stdout.split("pid ")[1].split()[0]
        name = f"cube_{pid}.nebt"
        self.assertEqual(self.trace(name).counts()["eglSwapBuffers"], 1)
        self.assertIn(self.path(name), done.stderr)

    # Profiling takes the place of recording, and the user is told that no file is to be expected.
    def test_profiling_records_nothing_and_says_so(self):
        done = self.record("--profile", "--", CUBE, "--frames", "2", "--size", "40x30")
        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stderr, "nebtrace: profiling, so nothing was recorded\n")

    # The file is mapped unless it is said otherwise, by an option or by a configuration of one's own.
    def test_the_file_is_mapped_by_default(self):
        self.write("base", "FileWindow = 3\n")
        for options, size in (((), 8), (("--flush-each-write",), 0), (("--config", "base"), 3),
                              (("--config", "base", "--flush-each-write"), 0)):
            with self.subTest(options=options):
                done = self.record(*options, "--", "cat", "nebtrace.cfg")
                self.assertRegex(done.stdout, rf"(?m)^FileWindow = {size}$")

    # -v is the recorder's DebugInfo: silent on frames without it, progress with one, each call with two.
    def test_verbosity_reaches_the_recorder(self):
        arguments = ("--frames", "0-1", "--", CUBE, "--frames", "3", "--size", "40x30")
        self.assertNotIn("Recording... Current Frame", self.record(*arguments).stdout)
        self.assertIn("Recording... Current Frame: 1", self.record("-v", *arguments).stdout)
        self.assertGreater(self.record("-vv", *arguments).stdout.count("\n"), 100)


if __name__ == "__main__":
    unittest.main()
