"""Examples under the recorder's server, recorded by `nebtrace remote`. The server's port is fixed, so that these tests
run in a network namespace of their own."""

import os
import re
import signal
import socket
import struct
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import BUILD, LONGEST, NEBTRACE, ScratchTest, enter_namespace  # noqa: E402

PORT = 54321
ANNOUNCEMENT_PORT = 6522
SIZE = ("--size", "100x75")


class Background:
    """A program that runs beside the test; its lines can be waited for."""

    def __init__(self, test, *command):
        self.process = subprocess.Popen(
            command, cwd=test.folder, env=test.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, text=True, start_new_session=True)
        test.addCleanup(self.end)
        self.lines = []

    def wait_for(self, pattern):
        for line in self.process.stdout:
            self.lines.append(line)
            if re.search(pattern, line):
                return line
        raise AssertionError(f"no line matches {pattern}:\n{''.join(self.lines)}")

    def end(self, how=signal.SIGTERM):
        if self.process.returncode is None:
            os.killpg(self.process.pid, how)
            self.process.wait(LONGEST)
        self.process.stdout.close()


class RoundTrip(ScratchTest):
    def start(self, *options, example="cube_map", frames=1000000):
        """An example under the recorder's server, which draws until it is ended. The state is captured in the middle of
        a frame, and what the rest of that frame puts back (the winding that `cube` turns for its mirror, say) is in no
        record: `cube_map` leaves nothing to be put back, so that its first frame is right wherever the capture falls.
        """
        return Background(self, NEBTRACE, "record", "--network", "--save-frames", *options, "--",
                          os.path.join(BUILD, "examples", example), "--frames", str(frames), *SIZE)

    def remote(self, *arguments):
        return self.run_command(NEBTRACE, "remote", "--wait", "127.0.0.1", *arguments)

    def record_remotely(self, *arguments):
        done = self.remote("record", *arguments)
        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)
        return done.stdout

    def check_replay(self, name, at_least):
        done = self.replay("--verify", name)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        frames = int(re.search(r"(\d+) frames compared, 0 differ\n", done.stdout).group(1))
        self.assertGreaterEqual(frames, at_least)

    def content(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    # The whole road: the middle of a run, over the network, with the state at the file's end. What comes over the
    # network is what the recorder writes on the device, byte for byte.
    def test_a_remote_recording_is_the_file_on_the_device_and_replays(self):
        for example in ("cube_map", "lighting"):
            with self.subTest(example=example):
                application = self.start("-o", "device.nebt", "--force", example=example)
                self.record_remotely("--frames", "5", "-o", "far.nebt")
                application.end()
                self.assertEqual(self.content("far.nebt"), self.content("device.nebt"))
                self.assertNotEqual(self.trace("far.nebt").snapshot(), 0)
                self.check_replay("far.nebt", 5)

    # The second recording of a process begins anew, with a header and a state of its own.
    def test_two_recordings_of_one_connection_both_replay(self):
        self.start()
        printed = self.record_remotely("--frames", "3", "--times", "2", "-o", "far.nebt")
        self.assertNotIn("another client", printed)
        self.check_replay("far.nebt", 3)
        self.check_replay("far-2.nebt", 3)
        self.assertFalse(os.path.exists(self.path("trace.nebt")))

    # An application that waits for its client makes no call before one lets it go on.
    def test_an_application_that_waits_is_let_go_and_recorded(self):
        self.start("--wait")
        done = self.remote("status")
        self.assertEqual(done.stdout, "127.0.0.1:54321: waiting for its client\n")
        self.record_remotely("--seconds", "0.5", "-o", "far.nebt")
        self.check_replay("far.nebt", 1)

    # A client that dies leaves the recording on; the next one ends it and begins its own.
    def test_a_client_that_was_killed_can_come_back(self):
        self.start()
        first = Background(self, NEBTRACE, "remote", "--wait", "127.0.0.1", "record", "-o", "lost.nebt")
        first.wait_for(r"recording, [1-9]\d* frames")
        first.end(signal.SIGKILL)
        self.record_remotely("--frames", "3", "-o", "far.nebt")
        self.check_replay("far.nebt", 3)

    # The application gives up on a client that does not read, and sends the packet again when it does.
    def test_a_client_that_stops_reading_for_a_while_loses_nothing(self):
        application = self.start("-o", "device.nebt")
        client = Background(self, NEBTRACE, "remote", "--wait", "127.0.0.1", "record", "-o", "far.nebt")
        client.wait_for(r"recording, [1-9]\d* frames")
        os.kill(client.process.pid, signal.SIGSTOP)
        # Until the recorder is stuck: its file on the device does not grow any more.
        sizes = [-1, -2]
        while len(set(sizes[-2:])) > 1 or sizes[-1] <= 0:
            self.run_command("sleep", "0.5")
            sizes.append(os.path.getsize(self.path("device.nebt")))
        os.kill(client.process.pid, signal.SIGCONT)
        client.wait_for(r"recording, [1-9]\d* frames")
        os.kill(client.process.pid, signal.SIGINT)
        client.wait_for(r"^recorded far\.nebt")
        application.end()
        self.assertEqual(self.content("far.nebt"), self.content("device.nebt"))
        self.check_replay("far.nebt", 1)

    # Who cannot listen does not record, and the application runs all the same.
    def test_a_port_that_is_taken_leaves_the_application_alone(self):
        with socket.create_server(("0.0.0.0", PORT)):
            done = self.record("--network", "--", os.path.join(BUILD, "examples", "cube"), "--frames", "3", *SIZE)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("InitServer has failed. Network option no available. Record disabed.", done.stdout)

    # An application that ends in the middle of a recording takes its state along: the calls are there, and nothing
    # says more than that.
    def test_an_application_that_ends_leaves_its_calls(self):
        self.start("--wait", frames=2000)
        done = self.remote("record", "-o", "far.nebt")
        self.assertRegex(done.stdout, r"recorded far\.nebt: \d+ bytes, [1-9]\d* frames, \d+ calls\n")
        self.assertEqual(self.trace("far.nebt").state, [])

    # Addresses are printed once each, as they announce themselves.
    def test_discover_prints_who_announces_itself(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as announcer:
            listener = Background(self, NEBTRACE, "discover", "--count", "1")
            while listener.process.poll() is None:
                announcer.sendto(b"something else", ("127.0.0.1", ANNOUNCEMENT_PORT))
                announcer.sendto(b"hello", ("127.0.0.1", ANNOUNCEMENT_PORT))
                try:
                    listener.process.wait(0.05)
                except subprocess.TimeoutExpired:
                    pass
        self.assertEqual(listener.process.stdout.read(), "127.0.0.1\n")
        self.assertEqual(listener.process.wait(LONGEST), 0)

    # The same for programs.
    def test_discover_prints_objects(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as announcer:
            listener = Background(self, NEBTRACE, "discover", "--count", "1", "--json")
            while listener.process.poll() is None:
                announcer.sendto(b"hello", ("127.0.0.1", ANNOUNCEMENT_PORT))
                try:
                    listener.process.wait(0.05)
                except subprocess.TimeoutExpired:
                    pass
        self.assertEqual(listener.process.stdout.read(), '{"address":"127.0.0.1"}\n')

    # Silence is an answer too.
    def test_discover_says_when_nobody_announces_itself(self):
        done = self.run_command(NEBTRACE, "discover", "--seconds", "0.1")
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr,
                         "nebtrace: nobody announced itself; nebtrace remote takes an address that you know\n")

    # Who has the port is named.
    def test_discover_names_who_has_its_port(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as taken:
            taken.bind(("0.0.0.0", ANNOUNCEMENT_PORT))
            done = self.run_command(NEBTRACE, "discover", "--seconds", "0.1")
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stderr, r"^nebtrace: cannot listen on UDP port 6522: Address already in use; "
                         rf"end process {os.getpid()} \(python.* first\n$")


if __name__ == "__main__":
    enter_namespace("net")
    unittest.main()
