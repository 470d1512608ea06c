"""`nebtrace remote` against a server that plays a script: what it sends, and what it makes of what comes."""

import json
import os
import pty
import socket
import struct
import subprocess
import sys
import threading
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import NEBTRACE, ScratchTest  # noqa: E402

START, STOP, RESUME, PAUSE = 0x40, 0x41, 0x42, 0x43
WAITING, RECORDING, RUNNING, HELD = 0x50, 0x51, 0x52, 0x53


def data(payload):
    return b"\x08\x44\x31" + struct.pack("<H", len(payload) & 0xFFFF) + payload + b"\x25"


def status(state):
    return bytes((0x08, 0x44, 0x32, state, 0x01, 0x00))


def acknowledge(command):
    return bytes((0x08, 0x44, 0x21, command, 0x01, 0x00))


def record(number, payload=b""):
    return struct.pack("<IH", len(payload), number) + payload


TYPE_TABLE = bytes(b & 0xFF for b in (4, -4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 1, 4, -1, -2, -4, -4, 1, 2, 4, 4, 4,
                                      -4, -4, -4, -4, 0, -4, -4))
HEADER = b"NEBTrace" + struct.pack("<IIBBIB", 0xFFFE0100, 14, 1, 0, 1, 31) + TYPE_TABLE + bytes(8)
FLUSH = record(2046, bytes(4))
SWAP = record(1022, struct.pack("<9I", 0x3000, 1, 1, 2, 0, 0, 0, 0, 0))


def ending(offset):
    """The state and the footer of a recording that has this many bytes so far."""
    return record(2) + FLUSH + record(2) + b"\x13\x10" + struct.pack("<Q", offset)


class Server(threading.Thread):
    """Plays one script to one client. A script takes the server and uses expect and send."""

    def __init__(self, script):
        super().__init__()
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.listener.settimeout(60)
        self.port = self.listener.getsockname()[1]
        self.script = script
        self.failure = None
        self.client = None

    def run(self):
        try:
            self.client, _ = self.listener.accept()
            self.client.settimeout(60)
            with self.client:
                self.script(self)
        except Exception as failure:  # pylint: disable=broad-except
            self.failure = failure
        finally:
            self.listener.close()

    def send(self, *packets):
        self.client.sendall(b"".join(packets))

    def expect(self, command):
        came = b""
        while len(came) < 3:
            part = self.client.recv(3 - len(came))
            if not part:
                raise AssertionError(f"no command 0x{command:x}: the client is gone")
            came += part
        if came != bytes((0x08, 0x44, command)):
            raise AssertionError(f"{came.hex()} came for command 0x{command:x}")

    def expect_end(self):
        rest = self.client.recv(100)
        if rest:
            raise AssertionError(f"{rest.hex()} came where nothing should")


def one_frame(server):
    """A script: a recording of one frame."""
    server.send(status(RUNNING))
    server.expect(START)
    server.send(acknowledge(START), status(RECORDING), data(HEADER + SWAP))
    server.expect(STOP)
    server.send(acknowledge(STOP), data(ending(len(HEADER + SWAP))))


class Client(ScratchTest):
    def remote(self, script, *arguments, before=()):
        server = Server(script)
        server.start()
        try:
            done = self.run_command(NEBTRACE, "remote", *before, f"127.0.0.1:{server.port}", *arguments)
        finally:
            server.join(60)
        self.assertIsNone(server.failure)
        return done

    def content(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    # One command at a time, the next only when the last is acknowledged; the file is the payloads put together.
    def test_a_recording_is_what_came_between_start_and_footer(self):
        frames = HEADER + FLUSH + SWAP + FLUSH + SWAP
        end = ending(len(frames))

        def script(server):
            server.send(status(RUNNING))
            server.expect(START)
            server.send(acknowledge(START), data(frames[:70]), status(RECORDING), data(frames[70:]))
            server.expect(STOP)
            server.send(acknowledge(STOP), data(end[:9]), data(end[9:]), status(RUNNING))
            server.expect_end()

        done = self.remote(script, "record", "--frames", "2", "-o", "far.nebt")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(self.content("far.nebt"), frames + end)
        self.assertIn("recorded far.nebt: ", done.stdout)
        self.assertIn("2 frames", done.stdout)

    # For programs there are objects alone, and no progress.
    def test_json(self):
        done = self.remote(one_frame, "record", "--frames", "1", "-o", "far.nebt", "--json")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        recorded = json.loads(done.stdout)
        self.assertEqual(list(recorded), ["file", "bytes", "frames", "calls", "trailing_zeros", "end", "end_offset"])
        self.assertEqual((recorded["file"], recorded["bytes"], recorded["end"]),
                         ("far.nebt", len(self.content("far.nebt")), "footer"))

        def script(server):
            server.send(status(HELD))
            server.expect_end()

        done = self.remote(script, "status", "--json")
        state = json.loads(done.stdout)
        self.assertEqual((list(state), state["state"]), (["address", "state"], "held"))

    # Progress is plain lines where there is no terminal: the state, the bytes, the rate.
    def test_progress_on_a_pipe_is_plain_lines(self):
        done = self.remote(one_frame, "record", "--frames", "1", "-o", "far.nebt")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertRegex(done.stdout, r"(?m)^far.nebt: recording, \d+ frames, [\d.]+ (bytes|kB), [\d.]+ \w+/s$")
        self.assertNotIn("\r", done.stdout)

    # On a terminal the progress is one line, written over.
    def test_progress_on_a_terminal_is_one_line(self):
        server = Server(one_frame)
        server.start()
        ours, theirs = pty.openpty()
        with subprocess.Popen([NEBTRACE, "remote", f"127.0.0.1:{server.port}", "record", "--frames", "1"],
                              cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL, stdout=theirs) as client:
            os.close(theirs)
            shown = b""
            try:
                while part := os.read(ours, 4096):
                    shown += part
            except OSError:  # the terminal's other side is closed
                pass
            self.assertEqual(client.wait(60), 0)
        os.close(ours)
        server.join(60)
        self.assertIsNone(server.failure)
        self.assertRegex(shown, rb"\rtrace\.nebt: recording, \d+ frames, [^\n]*/s\x1b\[K")
        self.assertIn(b"\nrecorded trace.nebt: ", shown.replace(b"\r", b""))

    # --until-enter ends with a line of input, or with the input.
    def test_enter_ends_a_recording(self):
        frames = HEADER + SWAP
        for text in ("\n", ""):
            with self.subTest(input=text):
                recording = threading.Event()

                def script(server, recording=recording):
                    server.send(status(RUNNING))
                    server.expect(START)
                    server.send(acknowledge(START), data(frames), status(RECORDING))
                    recording.set()
                    server.expect(STOP)
                    server.send(acknowledge(STOP), data(ending(len(frames))))

                server = Server(script)
                server.start()
                with subprocess.Popen(
                        [NEBTRACE, "remote", f"127.0.0.1:{server.port}", "record", "--until-enter", "-o", "far.nebt"],
                        cwd=self.folder, env=self.environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                        text=True) as client:
                    self.assertTrue(recording.wait(60))
                    printed, _ = client.communicate(text, timeout=60)
                server.join(60)
                self.assertIsNone(server.failure)
                self.assertEqual(client.returncode, 0, printed)
                self.assertEqual(self.content("far.nebt"), frames + ending(len(frames)))

    # --wait tries until there is somebody, and then waits for a first word for as long as it takes.
    def test_wait_tries_until_the_application_is_up(self):
        with socket.socket() as held:
            held.bind(("127.0.0.1", 0))  # bound, and not yet listening: connections are refused
            port = held.getsockname()[1]
            with subprocess.Popen([NEBTRACE, "remote", "--wait", "--timeout", "1", f"127.0.0.1:{port}", "status"],
                                  cwd=self.folder, env=self.environment, stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE, text=True) as client:
                with self.assertRaises(subprocess.TimeoutExpired):
                    client.wait(0.5)
                held.listen()
                held.settimeout(60)
                connection, _ = held.accept()
                with connection:
                    with self.assertRaises(subprocess.TimeoutExpired):
                        client.wait(1.5)
                    connection.sendall(status(RUNNING))
                    self.assertEqual(client.communicate(timeout=60)[0], f"127.0.0.1:{port}: running\n")
                self.assertEqual(client.returncode, 0)

    # A held application takes no start: it is let go on first.
    def test_a_held_application_is_released_ahead_of_the_start(self):
        frames = HEADER + SWAP

        def script(server):
            server.send(status(WAITING))
            server.expect(RESUME)
            server.send(acknowledge(RESUME))
            server.expect(START)
            server.send(acknowledge(START), data(frames))
            server.expect(STOP)
            server.send(acknowledge(STOP), data(ending(len(frames))))

        self.assertEqual(self.remote(script, "record", "--frames", "1").returncode, 0)

    # What another client began has no beginning here: it is ended, and none of it is in the file.
    def test_a_recording_that_is_already_on_is_stopped_and_dropped(self):
        frames = HEADER + SWAP

        def script(server):
            server.send(status(RECORDING), data(SWAP + FLUSH))
            server.expect(STOP)
            server.send(acknowledge(STOP), data(ending(1000)), status(RUNNING))
            server.expect(START)
            server.send(acknowledge(START), data(frames))
            server.expect(STOP)
            server.send(acknowledge(STOP), data(ending(len(frames))))

        done = self.remote(script, "record", "--frames", "1", "-o", "far.nebt")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("another client began", done.stdout)
        self.assertEqual(self.content("far.nebt"), frames + ending(len(frames)))

    # What other threads wrote behind the end of the last recording comes ahead of the next one's header. It is not this
    # recording's: that is begun anew, once, and the file has none of it.
    def test_what_the_last_recording_left_is_not_in_the_next(self):
        frames = HEADER + FLUSH + SWAP

        def script(server):
            server.send(status(RUNNING))
            server.expect(START)
            server.send(acknowledge(START), data(FLUSH + HEADER + SWAP))
            server.expect(STOP)
            server.send(acknowledge(STOP), data(ending(500)), status(RECORDING), status(RUNNING))
            server.expect(STOP)
            server.send(data(FLUSH), acknowledge(STOP))
            server.expect(START)
            server.send(acknowledge(START), data(frames))
            server.expect(STOP)
            server.send(acknowledge(STOP), data(ending(len(frames))))

        done = self.remote(script, "record", "--frames", "1", "-o", "far.nebt")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(self.content("far.nebt"), frames + ending(len(frames)))
        self.assertEqual(done.stdout.count("recorded far.nebt: "), 1)

    # A stream that never begins is not tried for ever.
    def test_a_recording_without_a_beginning_is_begun_anew_only_once(self):
        def script(server):
            server.send(status(RUNNING))
            for attempt in range(2):
                if attempt > 0:
                    server.expect(STOP)
                    server.send(acknowledge(STOP))
                server.expect(START)
                server.send(acknowledge(START), data(FLUSH + HEADER + SWAP))
                server.expect(STOP)
                server.send(acknowledge(STOP), data(ending(500)), status(RECORDING), status(RUNNING))
            server.expect_end()

        done = self.remote(script, "record", "--frames", "1", "-o", "far.nebt")
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr, "nebtrace: far.nebt: the beginning of the trace is missing; record again\n")

    # Each recording of one connection has a file of its own, without what threads wrote behind the end of the last.
    def test_a_second_recording_goes_to_a_second_file(self):
        first, second = HEADER + SWAP, HEADER + FLUSH + SWAP

        def script(server):
            server.send(status(RUNNING))
            for frames in (first, second):
                if frames is second:
                    server.expect(STOP)
                    server.send(data(FLUSH), acknowledge(STOP), status(RUNNING))
                server.expect(START)
                server.send(acknowledge(START), status(RECORDING), data(frames))
                server.expect(STOP)
                server.send(acknowledge(STOP), data(ending(len(frames))))
                server.send(status(RUNNING))

        done = self.remote(script, "record", "--frames", "1", "--times", "2", "-o", "far.nebt")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(self.content("far.nebt"), first + ending(len(first)))
        self.assertEqual(self.content("far-2.nebt"), second + ending(len(second)))

    # A lost connection leaves what came, and the client says what that is.
    def test_a_lost_connection_leaves_a_file_that_is_described(self):
        def script(server):
            server.send(status(RUNNING))
            server.expect(START)
            server.send(acknowledge(START), data(HEADER + FLUSH + SWAP + FLUSH))

        done = self.remote(script, "record", "-o", "far.nebt")
        self.assertEqual(done.returncode, 1)
        self.assertIn("connection lost: the application closed the connection\n", done.stdout)
        self.assertIn("1 frame, 3 calls", done.stdout)
        self.assertEqual(done.stderr, "nebtrace: far.nebt has no end: it holds what came until then, and nebtrace "
                         "repair gives it one\n")
        self.assertEqual(self.content("far.nebt"), HEADER + FLUSH + SWAP + FLUSH)

    # An application that ends in order closes the recording itself: nothing is missing.
    def test_an_application_that_ends_in_order_leaves_a_whole_file(self):
        frames = HEADER + FLUSH + SWAP

        def script(server):
            server.send(status(RUNNING))
            server.expect(START)
            server.send(acknowledge(START), data(frames), data(ending(len(frames))))

        done = self.remote(script, "record", "-o", "far.nebt")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(self.content("far.nebt"), frames + ending(len(frames)))

    # Bytes that are missing in the middle are noticed when they are missing, and the file is kept.
    def test_a_gap_ends_the_recording_and_is_named(self):
        def script(server):
            server.send(status(RUNNING))
            server.expect(START)
            server.send(acknowledge(START), data(HEADER + FLUSH + SWAP[:20]), data(FLUSH[2:] + SWAP * 3))
            server.expect(STOP)
            server.send(acknowledge(STOP), data(ending(500)), status(RUNNING), status(RUNNING))

        done = self.remote(script, "record", "-o", "far.nebt")
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stderr, r"^nebtrace: far\.nebt: bytes are missing ahead of offset \d+; record again\n$")
        self.assertTrue(self.content("far.nebt").startswith(HEADER + FLUSH))

    # A packet that the sender broke off comes again whole: the file is as if it had not.
    def test_a_packet_that_was_sent_twice_is_taken_once(self):
        frames = HEADER + FLUSH * 50 + SWAP
        packet = data(frames)

        def script(server):
            server.send(status(RUNNING))
            server.expect(START)
            server.send(acknowledge(START), packet[:333], packet)
            server.expect(STOP)
            server.send(acknowledge(STOP), data(ending(len(frames))))

        done = self.remote(script, "record", "--frames", "1", "-o", "far.nebt")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("1 packets were cut off and sent again\n", done.stdout)
        self.assertEqual(self.content("far.nebt"), frames + ending(len(frames)))

    # An answer that is no packet of ours is said so; the port may be somebody else's.
    def test_a_server_of_another_kind_is_named(self):
        done = self.remote(lambda server: server.send(b"SSH-2.0-OpenSSH_9.2\r\n"), "status")
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr,
                         "nebtrace: the stream has lost its step: no packet begins with 0x53 0x53\n")

    # A connection alone is no answer: an application that makes no calls gives none.
    def test_silence_is_reported(self):
        done = self.remote(lambda server: server.expect_end(), "status", before=("--timeout", "1"))
        self.assertEqual(done.returncode, 1)
        self.assertIn("no word from the application within 1 s", done.stderr)

    # status only listens.
    def test_status_tells_each_state(self):
        names = {WAITING: "waiting for its client", RECORDING: "recording", RUNNING: "running", HELD: "held"}
        for state, name in names.items():
            def script(server, state=state):
                server.send(status(state))
                server.expect_end()

            done = self.remote(script, "status")
            self.assertRegex(done.stdout, rf"^127\.0\.0\.1:\d+: {name}\n$")
            self.assertEqual(done.returncode, 0, done.stderr)

    # pause holds for as long as it runs, and lets go at its end.
    def test_pause_holds_and_lets_go(self):
        def script(server):
            server.send(status(RUNNING))
            server.expect(PAUSE)
            server.send(acknowledge(PAUSE), status(HELD))
            server.expect(RESUME)
            server.send(acknowledge(RESUME))
            server.expect_end()

        done = self.remote(script, "pause", "--seconds", "0.2")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertRegex(done.stdout, r": held\n.*: goes on\n$")

    # stop ends what another client has left on, and refuses where nothing is.
    def test_stop_ends_a_recording_that_is_on(self):
        def script(server):
            server.send(status(RECORDING))
            server.expect(STOP)
            server.send(acknowledge(STOP), data(ending(100)), status(RUNNING))

        self.assertEqual(self.remote(script, "stop").returncode, 0)
        done = self.remote(lambda server: (server.send(status(RUNNING)), server.expect_end()), "stop")
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr, "nebtrace: no recording is on: the application is running\n")

    # resume releases an application that waits.
    def test_resume_releases(self):
        def script(server):
            server.send(status(WAITING))
            server.expect(RESUME)
            server.send(acknowledge(RESUME))

        self.assertEqual(self.remote(script, "resume").returncode, 0)

    # A resume that was read on the way into the hold is acknowledged and lost. What the application says next tells:
    # the first word may be from before the command, the second is not.
    def test_a_resume_that_was_lost_is_sent_again(self):
        def script(server):
            server.send(status(WAITING))
            server.expect(RESUME)
            server.send(acknowledge(RESUME), status(WAITING), status(WAITING))
            for command in (PAUSE, RESUME):
                server.expect(command)
                server.send(acknowledge(command))
            server.send(status(WAITING), status(RUNNING))
            server.expect_end()

        done = self.remote(script, "resume")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertRegex(done.stdout, r": goes on\n$")

    # An application that stays held is not called free.
    def test_an_application_that_does_not_go_on_is_an_error(self):
        def script(server):
            server.send(status(WAITING))
            for command in (RESUME, PAUSE, RESUME, RESUME):
                server.expect(command)
                server.send(acknowledge(command))
                if command == RESUME:
                    server.send(status(WAITING), status(HELD))
            server.expect_end()

        done = self.remote(script, "resume")
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr, "nebtrace: the application was told to go on, and does not; nebtrace remote "
                         "ADDRESS resume tries again\n")

    # Where nobody listens, that is the answer, unless it is asked to wait.
    def test_nobody_there_is_an_error(self):
        with socket.create_server(("127.0.0.1", 0)) as free:
            port = free.getsockname()[1]
        done = self.run_command(NEBTRACE, "remote", f"127.0.0.1:{port}", "status")
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr, f"nebtrace: cannot connect to 127.0.0.1:{port}: Connection refused; --wait "
                         "tries again until an "
                         "application of nebtrace record --network is there\n")

    # Addresses are checked before anything is tried.
    def test_a_malformed_address_is_a_usage_error(self):
        for address in ("localhost:", ":54321", "localhost:99999", "localhost:x"):
            done = self.run_command(NEBTRACE, "remote", address, "status")
            self.assertEqual(done.returncode, 2, address)
            self.assertIn(f"an address is HOST or HOST:PORT: {address}; nebtrace remote --help tells more\n", done.stderr)


if __name__ == "__main__":
    unittest.main()
