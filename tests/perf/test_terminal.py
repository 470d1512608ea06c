"""`nebtrace perf` on a terminal: what it shows, its keys, and the terminal afterwards."""

import fcntl
import os
import pty
import re
import signal
import struct
import subprocess
import sys
import termios
import unittest

sys.path.insert(0, os.path.dirname(__file__))
from perf_support import NEBTRACE, PerfTest, enter_namespace, shared_objects  # noqa: E402

LOCAL_FLAGS = 3


class Screen:
    """A program that has a terminal of its own."""

    def __init__(self, test, *command, size=(24, 90)):
        self.ours, self.theirs = pty.openpty()
        fcntl.ioctl(self.theirs, termios.TIOCSWINSZ, struct.pack("4H", *size, 0, 0))
        self.before = termios.tcgetattr(self.theirs)
        self.seen = b""
        self.process = subprocess.Popen(
            command, cwd=test.folder, env=test.environment, stdin=self.theirs, stdout=self.theirs, stderr=self.theirs,
            start_new_session=True, preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0))
        test.addCleanup(self.clean)

    def press(self, keys):
        os.write(self.ours, keys.encode())

    def wait_for(self, pattern):
        """Waits until something that was drawn from now on matches."""
        while not (found := re.search(pattern.encode(), self.seen, re.DOTALL)):
            part = os.read(self.ours, 65536)
            if not part:
                raise AssertionError(f"{pattern} was not shown: {self.seen!r}")
            self.seen += part
        shown, self.seen = self.seen[:found.end()], self.seen[found.end():]
        return shown.decode()

    def is_raw(self):
        return termios.tcgetattr(self.theirs)[LOCAL_FLAGS] & (termios.ICANON | termios.ECHO) == 0

    def is_restored(self):
        return termios.tcgetattr(self.theirs) == self.before

    def finish(self):
        """Waits for the end of the program; returns its code and what it drew last."""
        os.set_blocking(self.ours, False)
        while True:
            code = self.process.poll()
            try:
                self.seen += os.read(self.ours, 65536)
            except BlockingIOError:
                if code is not None:
                    return code, self.seen
                os.sched_yield()

    def clean(self):
        if self.process.returncode is None:
            self.process.kill()
            self.process.wait()
        os.close(self.ours)
        os.close(self.theirs)


class TerminalTest(PerfTest):
    def screen(self, *options, **how):
        return Screen(self, NEBTRACE, "perf", *options, **how)

    # The view has the application, its counters of the last frame and its items, and is drawn in place.
    def test_the_view(self):
        screen = self.screen()
        screen.wait_for("waiting for an application")
        self.assertTrue(screen.is_raw())
        application = self.connected()
        self.frames(application, (1, 2, 3), (8, 102, 5))
        screen.wait_for("\x1b\\[H" + rf"> {application.pid} fake_applicatio: frame 1, [\d.]+ frames/s, "
                        "CPU driver time 100 us a frame\x1b\\[K\r+\n")
        shown = screen.wait_for("q: quit")
        self.assertRegex(shown, r"Draws +7 +1  Force zero viewport +off\x1b\[K\r+\n")
        self.assertRegex(shown, r"CPU driver time \(us\) +100 +2  Disable blending +off")
        self.assertRegex(shown, r"Uploads \(bytes\) +2 +3  Disable draw calls +off")
        self.assertRegex(shown, r" +m  Culling mode +App defined")
        self.end(application)
        screen.wait_for(f"{application.pid} fake_applicatio: ended after 1 frames")
        screen.press("q")
        code, drawn = screen.finish()
        self.assertEqual(code, 0)
        self.assertTrue(drawn.endswith(b"\x1b[?25h\x1b[?1049l"), drawn[-60:])
        self.assertTrue(screen.is_restored())
        self.assertEqual(shared_objects(), [])

    # Each key reaches the application, and the view shows what it did.
    def test_keys(self):
        screen = self.screen()
        application = self.connected()
        screen.wait_for("Culling mode")
        for key, change, shown in (
                ("1", r"0 \x01", r"1  Force zero viewport +on"),
                ("2", r"1 \x01", r"2  Disable blending +on"),
                ("3", r"2 \x01", r"3  Disable draw calls +on"),
                ("1", r"0 \x00", r"1  Force zero viewport +off"),
                ("m", r"3 1\x0aApp defined\x0aNone\x0aBack\x0aFront", r"m  Culling mode +None"),
                ("m", r"3 2\x0aApp defined\x0aNone\x0aBack\x0aFront", r"m  Culling mode +Back")):
            screen.press(key)
            self.assertEqual(application.ask("change", "^change"), "change " + change)
            screen.wait_for(shown)
        screen.press("0")
        changes = {application.ask("change", "^change") for _ in range(3)}
        self.assertEqual(changes, {r"change 1 \x00", r"change 2 \x00",
                                   r"change 3 0\x0aApp defined\x0aNone\x0aBack\x0aFront"})
        screen.press("mmm")
        self.assertEqual(application.ask("change", "^change 3 3"), r"change 3 3\x0aApp defined\x0aNone\x0aBack\x0aFront")
        screen.press("m")
        application.ask("change", "^change 3 0")
        screen.press("q")
        self.assertEqual(screen.finish()[0], 0)
        self.end(application)

    # Arrows, function keys and the like are no keys of the server's, though there are letters and digits in them.
    def test_keys_of_several_characters(self):
        screen = self.screen()
        application = self.connected()
        screen.wait_for("Culling mode")
        screen.press("\x1b[1;2m\x1bOm\x1b[15~\x1bq3")
        self.assertEqual(application.ask("change", "^change"), r"change 2 \x01")
        self.frames(application, (1, 1, 1))
        screen.press("q")
        self.assertEqual(screen.finish()[0], 0)
        application.tell("end")
        self.assertEqual(application.finish()[:2], (0, ""), "no other change reached it")

    # Tab goes from application to application, and keys are for the one that is shown.
    def test_tab_goes_round_the_applications(self):
        screen = self.screen()
        first = self.connected()
        screen.wait_for(f"> {first.pid} ")
        second = self.connected()
        screen.wait_for(f"> {second.pid} ")
        screen.press("1")
        second.ask("change", r"^change 0 \\x01$")
        screen.press("\t")
        screen.wait_for(f"> {first.pid} ")
        screen.press("2")
        first.ask("change", r"^change 1 \\x01$")
        screen.press("\t")
        screen.wait_for(f"> {second.pid} ")
        self.end(second)
        screen.wait_for(f"> {first.pid} ")
        screen.press("q")
        self.assertEqual(screen.finish()[0], 0)
        self.end(first)

    # However it is ended, the terminal is as before.
    def test_signals_give_the_terminal_back(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT):
            with self.subTest(signal=number):
                screen = self.screen()
                screen.wait_for("q: quit")
                self.assertTrue(screen.is_raw())
                screen.process.send_signal(number)
                self.assertEqual(screen.finish()[0], 0)
                self.assertTrue(screen.is_restored())
        screen = self.screen()
        screen.wait_for("q: quit")
        screen.press("\x03")
        self.assertEqual(screen.finish()[0], 0)
        self.assertTrue(screen.is_restored())

    # An error gives it back as well, and is there to be read afterwards.
    def test_an_error_gives_the_terminal_back(self):
        screen = self.screen("--set", "No such=1")
        application = self.connected()
        code, drawn = screen.finish()
        self.assertEqual(code, 1)
        self.assertIn(b"\x1b[?1049lnebtrace: --set No such: the application's items are", drawn)
        self.assertTrue(screen.is_restored())
        self.end(application)

    # Ctrl-Z gives the terminal to the shell, and the server takes it again when it goes on.
    def test_stop_and_continue(self):
        screen = Screen(self, "bash", "-c", f"set -m; {NEBTRACE} perf; echo put aside; read -r _; fg; echo done")
        screen.wait_for("q: quit")
        self.assertTrue(screen.is_raw())
        screen.press("\x1a")
        screen.wait_for("\x1b\\[\\?1049l.*put aside")
        self.assertTrue(screen.is_restored())
        screen.press("\n")
        screen.wait_for("\x1b\\[\\?1049h.*q: quit")
        self.assertTrue(screen.is_raw())
        screen.press("q")
        screen.wait_for("\x1b\\[\\?1049l.*done")
        self.assertEqual(screen.finish()[0], 0)
        self.assertTrue(screen.is_restored())

    # The view keeps to the size of the terminal.
    def test_a_small_terminal(self):
        screen = self.screen(size=(8, 30))
        screen.wait_for("waiting")
        application = self.connected()
        self.frames(application, (1, 2, 3), (8, 102, 5))
        screen.wait_for("> \\d+ fake")
        shown = screen.wait_for("\x1b\\[J")
        lines = shown.replace("\x1b[K", "").replace("\x1b[J", "").replace("\r", "").split("\n")
        self.assertLessEqual(len(lines), 8)
        self.assertLessEqual(max(len(line) for line in lines), 30)
        screen.press("q")
        self.assertEqual(screen.finish()[0], 0)
        self.end(application)


if __name__ == "__main__":
    enter_namespace()
    unittest.main()
