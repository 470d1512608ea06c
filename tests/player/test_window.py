"""Replays that are to be seen: a window on an X display of the test's own, whose screen the test reads."""

import os
import struct
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import CUBE, LONGEST, NEBTRACE, ScratchTest, find_program  # noqa: E402

WIDTH, HEIGHT = 120, 90
NO_DISPLAY = "nebtrace: there is no X display to show a window on: set DISPLAY, leave --window out, or start this under xvfb-run\n"


class Screen:
    """The framebuffer file of Xvfb: a header of big-endian words, colours, rows of blue, green, red and padding."""

    def __init__(self, path):
        self.path = path

    def corner(self, width, height):
        """The upper left corner, top row first, as red, green and blue."""
        with open(self.path, "rb") as file:
            content = file.read()
        header = struct.unpack_from(">25I", content)
        row_size, colours = header[12], header[19]
        assert header[11] == 32 and header[7] == 0, "not 32 bits a pixel, lowest byte first"
        start = header[0] + 12 * colours
        rows = []
        for y in range(height):
            row = content[start + y * row_size :][: 4 * width]
            rows.append(b"".join(row[i : i + 3][::-1] for i in range(0, len(row), 4)))
        return rows


def rows_of(frame):
    """A recorded frame in the order of the screen."""
    row_size = frame.width * 4
    rows = [frame.pixels[i : i + row_size] for i in range(0, len(frame.pixels), row_size)]
    return [b"".join(row[i : i + 3] for i in range(0, row_size, 4)) for row in reversed(rows)]


def different(rows, others):
    """In how many pixels two pictures of the same size differ."""
    count = 0
    for row, other in zip(rows, others):
        if row != other:
            count += sum(row[i : i + 3] != other[i : i + 3] for i in range(0, len(row), 3))
    return count


class Window(ScratchTest):
    def record_cube(self, *arguments):
        self.record_well("--save-frames", *arguments, "--", CUBE, "--frames", "8", "--size", f"{WIDTH}x{HEIGHT}")

    def start_screen(self):
        os.mkdir(self.path("screen"))
        self.start_display("-fbdir", self.path("screen"))
        return Screen(self.path("screen/Xvfb_screen0"))

    def check_screen(self, screen, wanted, most):
        """The server draws what it is sent when it comes to it: looks until the screen is as wanted."""
        end = time.monotonic() + LONGEST
        while different(screen.corner(WIDTH, HEIGHT), wanted) > most:
            self.assertLess(time.monotonic(), end, "the frame has not come to the screen")

    def check_frames_on_the_screen(self, screen, most=0):
        """Replays the trace, and holds the player at each frame: it writes its frames into pipes, and when one is
        through waits for somebody to open the next. By then it has swapped."""
        frames = self.trace().frames()
        out = tempfile.mkdtemp(dir=self.folder)
        pipes = [os.path.join(out, f"frame_{number:05}.png") for number in range(len(frames))]
        for pipe in pipes:
            os.mkfifo(pipe)
        player = self.start_command(NEBTRACE, "replay", "--window", "--out", out, "trace.nebt")
        for pipe, frame in zip(pipes, frames):
            with open(pipe, "rb") as file:
                self.assertEqual(file.read()[:8], b"\x89PNG\r\n\x1a\n")
            if pipe != pipes[-1]:
                self.check_screen(screen, rows_of(frame), most)
        self.assertEqual(player.wait(LONGEST), 0)

    # What is drawn in the window is what was recorded, from the first frame on and from the middle: the program's
    # own surface is none that could be seen.
    def test_frames_are_drawn_in_the_window_as_they_were_recorded(self):
        self.start_display()
        for frames in ("0-4", "3-6"):
            with self.subTest(frames=frames):
                self.record_cube("--frames", frames)
                done = self.replay("--window", "--verify", "trace.nebt")
                self.assertEqual(done.stderr, "")
                self.assertRegex(done.stdout, r"\n[45] frames compared, 0 differ\n$")
                self.assertEqual(done.returncode, 0)

    # The window is on the screen, in the size of the recorded one, and each swap shows its frame there.
    def test_the_screen_shows_each_frame_of_a_window(self):
        screen = self.start_screen()
        program = (find_program("glmark2-es2"), "-s", f"{WIDTH}x{HEIGHT}", "-b", "build:nframes=6")
        self.record_well("--frames", "1-4", "--save-frames", "--", *program)
        self.check_frames_on_the_screen(screen)

    # What a program drew without a window is shown in one as well. The cube is multisampled: the screen has smooth
    # edges, where the recorded pixels are of one sample. Two frames that follow each other differ in ten times more.
    def test_the_screen_shows_each_frame_of_a_program_without_a_window(self):
        screen = self.start_screen()
        self.record_cube("--frames", "3-6")
        self.check_frames_on_the_screen(screen, most=400)

    # Without a display there is one line that says so; so there is with one that nobody serves.
    def test_a_missing_display_is_told(self):
        self.record_cube("--frames", "0")
        for display in (None, ":77777"):
            if display:
                self.environment["DISPLAY"] = display
            done = self.replay("--window", "trace.nebt")
            self.assertEqual((done.returncode, done.stdout, done.stderr), (1, "", NO_DISPLAY))


if __name__ == "__main__":
    unittest.main()
