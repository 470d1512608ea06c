"""What the end-to-end tests share: where the build's programs are, a scratch folder for each test, running the
recorder, a display, and a reading of trace files that owes nothing to the project's own reader."""

import collections
import fcntl
import glob
import os
import re
import shutil
import socket
import struct
import subprocess
import sys
import tempfile
import unittest

SOURCE = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
BUILD = os.environ["NEBTRACE_BUILD"]
NEBTRACE = os.path.join(BUILD, "tools", "nebtrace")
FRONT_ENDS = os.path.join(BUILD, "frontends")
CUBE = os.path.join(BUILD, "examples", "cube")
CLIENT_ARRAYS = os.path.join(BUILD, "examples", "client_arrays")
PROGRAMS = os.path.join(BUILD, "tests", "e2e")
LONGEST = 120  # seconds that any program here may take

HEADER_SIZE = 62
FOOTER_SIZE = 10
THREAD_CHANGE = 1
SWAP_BUFFERS = 1022


def program(name):
    return os.path.join(PROGRAMS, name)


def examples():
    """The paths of all examples."""
    with open(os.path.join(SOURCE, "examples", "CMakeLists.txt"), encoding="ascii") as lists:
        names = " ".join(re.findall(r"foreach\(example ([\w ]+)\)", lists.read())).split()
    assert {"cube", "sprites"} <= set(names), names
    return [os.path.join(BUILD, "examples", name) for name in names]


def api_names(table):
    """The functions of api/TABLE.def, from ID to name."""
    with open(os.path.join(SOURCE, "api", table + ".def"), encoding="ascii") as lines:
        found = re.findall(r"^\w+\((\d+), \w+, [^,]*, [^,]*, (\w+),", lines.read(), re.MULTILINE)
    return {int(number): name for number, name in found}


NAMES = {**api_names("es1"), **api_names("es2"), **api_names("egl")}

STATE_MARKERS = (2, 3, 4)  # of EGL, GLES1 and GLES2: each stands ahead of its state, and behind it

Record = collections.namedtuple("Record", "id name thread payload")


class Frame(collections.namedtuple("Frame", "number width height pixels")):
    """A frame's number in the run, and its RGBA pixels if they were saved."""

    @classmethod
    def of(cls, swap):
        # Error word, result, display, surface; number, width, height; pointer, size, pixels.
        number, width, height = struct.unpack_from("<3I", swap, 16)
        return cls(number, width, height, swap[36:])


class Trace:
    """A trace file, walked from its header to its footer. Anything out of place is an error."""

    def __init__(self, path):
        with open(path, "rb") as file:
            self.bytes = file.read()
        assert self.bytes[:8] == b"NEBTrace", "no magic"
        self.record_data = self.bytes[16]
        self.frame_buffer = self.bytes[17]
        self.thread_changes = []
        self.records = []
        self.state = []  # the calls that carry the state at the first frame
        end = self._walk()
        self.footer = self.bytes[end:]

    def _walk(self):
        position, thread, inside = HEADER_SIZE, None, None
        while len(self.bytes) - position > FOOTER_SIZE:
            size, number = struct.unpack_from("<IH", self.bytes, position)
            payload = self.bytes[position + 6 : position + 6 + size]
            assert len(payload) == size, f"a record at {position} goes past the end"
            if number == THREAD_CHANGE:
                (thread,) = struct.unpack("<Q", payload)
                self.thread_changes.append(thread)
            elif number in STATE_MARKERS:
                assert inside in (None, number), f"a state within another at {position}"
                inside = None if inside == number else number
            else:
                record = Record(number, NAMES[number], thread, payload)
                (self.state if inside else self.records).append(record)
            position += 6 + size
        return position

    def ends_with_footer(self):
        """Whether the walk ended right at a footer that gives no snapshot."""
        return self.footer == b"\x13\x10" + bytes(8)

    def counts(self):
        return collections.Counter(record.name for record in self.records)

    def names(self):
        return [record.name for record in self.records]

    def of(self, name):
        return [record for record in self.records if record.name == name]

    def frames(self):
        """What the swaps kept, bottom row first."""
        return [Frame.of(swap.payload) for swap in self.of("eglSwapBuffers")]

    def snapshot(self):
        """Where the footer says that the state begins; 0 if that is not behind the frames."""
        return struct.unpack_from("<Q", self.footer, 2)[0]


class ScratchTest(unittest.TestCase):
    """A test in a folder of its own, without a display, on Mesa's software rasteriser."""

    maxDiff = None

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="nebtrace-")
        self.addCleanup(shutil.rmtree, self.folder)
        self.environment = dict(os.environ, LIBGL_ALWAYS_SOFTWARE="1", EGL_PLATFORM="surfaceless")
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "LD_LIBRARY_PATH"):
            self.environment.pop(name, None)

    def path(self, name):
        return os.path.join(self.folder, name)

    def run_command(self, *command, **options):
        return subprocess.run(
            command,
            cwd=self.folder,
            env=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
            timeout=LONGEST,
            check=False,
            **options,
        )

    def start_command(self, *command):
        """The same for a program that is to run beside the test, which must wait for it."""
        process = subprocess.Popen(command, cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def record(self, *arguments):
        """Runs `nebtrace record ARGUMENTS`."""
        return self.run_command(NEBTRACE, "record", *arguments)

    def record_well(self, *arguments):
        """The same for a run that must end well; returns what it printed without the recorder's own lines."""
        done = self.record(*arguments)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return "\n".join(line for line in done.stdout.splitlines() if line and not line.startswith("NEBTRACE("))

    def replay(self, *arguments):
        return self.run_command(NEBTRACE, "replay", *arguments)

    def trace(self, name="trace.nebt"):
        return Trace(self.path(name))

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)

    def read(self, name):
        with open(self.path(name), encoding="utf-8") as file:
            return file.read()

    def hide_libraries(self, *names):
        """Lets the dynamic linker find nothing usable under these names."""
        os.mkdir(self.path("broken"))
        for name in names:
            self.write(os.path.join("broken", name), "no library")
        self.environment["LD_LIBRARY_PATH"] = self.path("broken")

    def start_display(self, *arguments):
        """An X server on a free display, for as long as the test runs. It does not begin anew when its last client has
        gone: one that comes in that moment would wait for ever."""
        reader, writer = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", "640x480x24", "-nolisten", "tcp", "-noreset",
             *arguments],
            pass_fds=[writer],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)
        os.close(writer)
        with os.fdopen(reader) as ready:
            number = ready.readline().strip()
        self.assertTrue(number, "Xvfb gave no display")
        self.environment["DISPLAY"] = ":" + number
        self.environment["EGL_PLATFORM"] = "x11"


def enter_namespace(*kinds):
    """Runs the script anew where what is fixed by name is its own: shared memory ("mount"), ports ("net")."""
    if "NEBTRACE_NAMESPACE" not in os.environ:
        os.environ["NEBTRACE_NAMESPACE"] = "1"
        options = [f"--{kind}" for kind in kinds] + ([] if os.geteuid() == 0 else ["--map-root-user"])
        os.execvp("unshare", ["unshare", *options, sys.executable, "-B", *sys.argv])
    if "mount" in kinds:
        subprocess.run(["mount", "-t", "tmpfs", "tmpfs", "/dev/shm"], check=True)
    if "net" in kinds:
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as any_socket:
            loopback_up = struct.pack("16sH14s", b"lo", 1, b"")  # IFF_UP
            fcntl.ioctl(any_socket, 0x8914, loopback_up)  # SIOCSIFFLAGS


def find_program(name):
    """A program of the machine's; Debian gives some the architecture as an ending."""
    found = shutil.which(name) or next(iter(glob.glob(f"/usr/bin/{name}.*")), None)
    if not found:
        sys.exit(f"{name} is missing: ./dev setup installs it")
    return found
