"""What the tests of faults share: a program run with the recorder and without it, and the reading of a recording
that ends anywhere."""

import contextlib
import fcntl
import os
import re
import struct
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import BUILD, FRONT_ENDS, HEADER_SIZE, LONGEST, NAMES, NEBTRACE, Record, ScratchTest  # noqa: E402

HEAD_SIZE = 6  # of a record: the size of its payload, and its ID
UNREAD = 2048
LONGEST_RECORD = 16384  # that these programs make
THREAD_CHANGE, FIRST_CALL = 1, 1000
ALL_FRAMES = {"RecordData": 1, "StartFrame": 0, "EndFrame": 2147483646, "DebugInfo": 0}


def program(name):
    return os.path.join(BUILD, "tests", "faults", name)


def without_ids(text):
    """What a sanitizer says of a process has numbers of it."""
    return re.sub(r"^==\d+==.*", lambda line: re.sub(r"\d+", "N", line[0]), text, flags=re.MULTILINE)


class Remains:
    """The whole records of a recording that ended anywhere, and where the last of them ends."""

    def __init__(self, path):
        with open(path, "rb") as file:
            self.bytes = file.read()
        assert self.bytes[:8] == b"NEBTrace", "no magic"
        assert len(self.bytes) >= HEADER_SIZE, "no whole header"
        self.calls = []
        self.end, thread = HEADER_SIZE, None
        while len(self.bytes) - self.end >= HEAD_SIZE:
            size, number = struct.unpack_from("<IH", self.bytes, self.end)
            payload = self.bytes[self.end + HEAD_SIZE : self.end + HEAD_SIZE + size]
            if number not in NAMES and number not in range(1, 5) or len(payload) < size:
                break
            if number == THREAD_CHANGE:
                (thread,) = struct.unpack("<Q", payload)
            elif number > FIRST_CALL:
                self.calls.append(Record(number, NAMES[number], thread, payload))
            self.end += HEAD_SIZE + size
        self.rest = self.bytes[self.end :].rstrip(b"\0")  # zeros at the end are room that was never used

    def is_cut_in_a_record(self):
        """Whether what stands behind the whole records can only be the beginning of one more, or nothing."""
        if len(self.rest) < HEAD_SIZE:
            return True
        size, number = struct.unpack_from("<IH", self.rest)
        if number == 0:  # written through a mapping: the head comes last, and its ID at the very end
            return len(self.rest) < LONGEST_RECORD
        return (number in NAMES or number == THREAD_CHANGE) and len(self.rest) < HEAD_SIZE + size

    def names(self):
        return [call.name for call in self.calls]

    def of(self, name):
        return [call for call in self.calls if call.name == name]

    def textures(self):
        """The number that each frame of the scene was filled with; the texels must all be that."""
        numbers = []
        for upload in self.of("glTexImage2D"):
            # Error word, nine arguments of which the last is the pointer, the size, the texels, the alignment.
            texels = struct.unpack_from("<256I", upload.payload, len(upload.payload) - 4 - 1024)
            assert len(set(texels)) == 1, "a frame's texels differ"
            numbers.append(texels[0])
        return numbers


class FaultTest(ScratchTest):
    hosts = None
    keys = {}  # of the configuration, in all tests of a class

    def setUp(self):
        super().setUp()
        self.environment["LP_NUM_THREADS"] = "0"  # Mesa's own threads do not survive a fork
        if FaultTest.hosts is None:
            text = self.run_command(NEBTRACE, "record", "--", "cat", "nebtrace.cfg").stdout
            lines = [line for line in text.splitlines() if "LibraryPath = " in line]
            FaultTest.hosts = dict(line.split(" = ", 1) for line in lines)
            self.assertEqual(len(FaultTest.hosts), 3)

    @contextlib.contextmanager
    def endless_frames(self, **options):
        """A recorded application that draws until it is killed, and its reports: the number of each frame that it
        has finished, as 4 bytes. It is at most UNREAD of them ahead of who reads them."""
        reader, writer = os.pipe()
        fcntl.fcntl(writer, fcntl.F_SETPIPE_SZ, 4 * UNREAD // 2)  # as much as the reader's buffer
        with subprocess.Popen(
            [program("faulty"), "frames", "1000000", str(writer)],
            cwd=self.folder,
            env=self.traced(),
            pass_fds=[writer],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            **options,
        ) as process:
            os.close(writer)
            with os.fdopen(reader, "rb", 4 * UNREAD // 2) as reports:
                yield process, reports

    def configure(self, **keys):
        """The recorder's configuration: the machine's libraries, all frames, and these keys."""
        settings = {**FaultTest.hosts, **ALL_FRAMES, "TraceFile": "trace.nebt", **self.keys, **keys}
        self.write("nebtrace.cfg", "".join(f"{key} = {value}\n" for key, value in settings.items()))

    def traced(self):
        """The environment in which a program finds the recorder's libraries ahead of the machine's."""
        return dict(self.environment, LD_LIBRARY_PATH=FRONT_ENDS)

    def run_in(self, environment, *command, **options):
        options = {"cwd": self.folder, "timeout": LONGEST, **options}
        return subprocess.run(
            command, env=environment, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False, **options
        )

    def run_native(self, *command, **options):
        return self.run_in(self.environment, *command, **options)

    def run_traced(self, *command, **options):
        return self.run_in(self.traced(), *command, **options)

    def run_both(self, *command, **options):
        """Runs the program without and with the recorder. It must end alike, and say the same on standard error."""
        native = self.run_native(*command, **options)
        traced = self.run_traced(*command, **options)
        self.assertEqual(traced.returncode, native.returncode, traced.stdout + traced.stderr + native.stderr)
        self.assertEqual(without_ids(traced.stderr), without_ids(native.stderr))
        return traced

    def remains(self, name="trace.nebt"):
        remains = Remains(self.path(name))
        self.assertTrue(remains.is_cut_in_a_record(), f"the walk is lost at {remains.end}")
        return remains
