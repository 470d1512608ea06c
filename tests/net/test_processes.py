"""A program under the recorder in network mode, and a client of the test's own. The recorder's port is a free one
and its clock fast: see free_port.cpp."""

import os
import select
import signal
import socket
import struct
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "e2e"))
from support import BUILD, LONGEST, NEBTRACE, ScratchTest, Trace  # noqa: E402

START, STOP, RESUME, PAUSE = 0x40, 0x41, 0x42, 0x43
WAITING, RECORDING, RUNNING = 0x50, 0x51, 0x52
NETWORK = "Network = 1\nNetworkSendData = 1\n"


class Client:
    """Reads packets; what it is not asked about it keeps."""

    def __init__(self, port):
        self.socket = socket.create_connection(("127.0.0.1", port), timeout=LONGEST)
        self.payload = b""

    def exactly(self, size):
        data = b""
        while len(data) < size:
            piece = self.socket.recv(size - len(data))
            if not piece:
                raise EOFError
            data += piece
        return data

    def packet(self):
        """The kind of the next packet, and its byte."""
        mark, kind, byte = struct.unpack("<HBB", self.exactly(4))
        assert mark == 0x4408, hex(mark)
        if kind != 0x31:
            assert self.exactly(2) == b"\x01\x00"
            return kind, byte
        size = byte | self.exactly(1)[0] << 8
        self.payload += self.exactly(size or 65536)
        assert self.exactly(1) == b"\x25"
        return kind, None

    def until(self, kind, byte):
        while self.packet() != (kind, byte):
            pass

    def until_state(self, state):
        self.until(0x32, state)

    def command(self, number):
        self.socket.sendall(bytes((0x08, 0x44, number)))
        self.until(0x21, number)

    def until_end(self):
        try:
            while True:
                self.packet()
        except EOFError:
            pass

    def close(self):
        self.socket.close()


class Processes(ScratchTest):
    def start(self, settings=""):
        """Starts the program; returns the recorder's port."""
        self.write("base", NETWORK + "DebugInfo = 0\n" + settings)
        pipe = self.path("port")
        os.mkfifo(pipe)
        reader = os.open(pipe, os.O_RDONLY | os.O_NONBLOCK)
        self.addCleanup(os.close, reader)
        self.program = subprocess.Popen(
            [NEBTRACE, "record", "--config", "base", "--", os.path.join(BUILD, "tests", "net", "frames")],
            cwd=self.folder,
            env=dict(
                self.environment,
                LD_PRELOAD=os.path.join(BUILD, "tests", "net", "libfree_port.so"),
                NEBTRACE_TEST_PORT_PIPE=pipe,
            ),
            stdin=subprocess.PIPE,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            start_new_session=True,
        )
        self.addCleanup(self.end_program)
        self.assertTrue(select.select([reader], [], [], LONGEST)[0], "the recorder did not listen")
        return int(os.read(reader, 16))

    def end_program(self):
        if self.program.poll() is None:
            os.killpg(self.program.pid, signal.SIGKILL)
        self.program.wait()
        self.program.stdin.close()

    def finish(self):
        """Lets the program end by itself; returns its exit code."""
        self.program.stdin.close()
        return self.program.wait(LONGEST)

    def connect(self, port, state=RUNNING):
        """A client that has been told the state: a start that comes ahead of that gets no header."""
        client = Client(port)
        self.addCleanup(client.close)
        client.until_state(state)
        return client

    def record(self, client):
        """A short recording; returns its bytes."""
        begin = len(client.payload)
        client.command(START)
        while len(client.payload) < begin + 5000:
            client.packet()
        client.command(STOP)
        client.until_state(RUNNING)
        return client.payload[begin:]

    def contents(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    # Two recordings in mid-run: what went over the wire is what the device wrote, and a reader can walk it.
    def test_what_is_sent_is_what_is_in_the_files(self):
        client = self.connect(self.start())
        first = self.record(client)
        second = self.record(client)
        self.assertEqual(self.finish(), 0)
        self.assertEqual(first, self.contents("trace.nebt"))
        self.assertEqual(second, self.contents("trace_1.nebt"))
        for name in ("trace.nebt", "trace_1.nebt"):
            trace = Trace(self.path(name))
            self.assertEqual(trace.bytes[trace.snapshot() :][:6], struct.pack("<IH", 0, 2))
            self.assertEqual(trace.names()[0], "glClearColor", "a recording begins with a frame")
            self.assertGreater(trace.counts()["eglSwapBuffers"], 0)

    # The first call is held until a client lets it go, so that a recording can have the whole run.
    def test_a_program_can_wait_for_its_client(self):
        client = self.connect(self.start("NetworkWait = 1\n"), WAITING)
        client.command(RESUME)
        client.until_state(RUNNING)
        self.record(client)
        self.assertEqual(self.finish(), 0)

    # A client that is killed in a recording takes nothing along: the program runs on, and the next client records.
    def test_a_killed_client_is_replaced(self):
        port = self.start()
        client = self.connect(port)
        client.command(START)
        while len(client.payload) < 5000:
            client.packet()
        client.socket.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        client.close()
        client = self.connect(port, RECORDING)
        client.command(STOP)
        client.until_state(RUNNING)
        client.payload = b""
        self.assertEqual(self.record(client)[:8], b"NEBTrace")
        self.assertEqual(self.finish(), 0)

    # A program that ends in a recording sends all that it has, and closes the connection in order.
    def test_the_end_of_the_program_sends_the_rest(self):
        client = self.connect(self.start())
        client.command(START)
        client.until_state(RECORDING)
        self.program.stdin.close()
        client.until_end()
        self.assertEqual(self.program.wait(LONGEST), 0)
        self.assertEqual(client.payload, self.contents("trace.nebt"))

    # One that ends while its client has gone is not held up.
    def test_a_program_ends_without_its_client(self):
        client = self.connect(self.start())
        client.command(START)
        while len(client.payload) < 5000:
            client.packet()
        client.close()
        self.assertEqual(self.finish(), 0)


if __name__ == "__main__":
    unittest.main()
