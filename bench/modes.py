"""The ways in which a program is measured: without the tracer, under it in each of its modes, under another one."""
import contextlib
import ctypes
import dataclasses
import os
import pathlib
import shutil
import subprocess
import tempfile

LAST_FRAME = 2000000000
MAPPED = {"StartFrame": 0, "EndFrame": LAST_FRAME, "FileWindow": 8}
FLUSHED = {**MAPPED, "FileWindow": 0}
TRACKING = {"StartFrame": LAST_FRAME, "EndFrame": LAST_FRAME}
BEHIND = {"StartFrame": 1, "EndFrame": 1}  # what is made in frame 0 is tracked, and frame 2 is past the range
STREAMING = {"Network": 1, "NetworkSendData": 1, "SaveFileToDisk": 0, "OptimizeRS": 0}

APITRACE = ["apitrace", "trace", "-a", "egl", "-o"]
LEAST_ROOM = 4 << 30  # of a scratch folder: several times what one run leaves there
LONGEST = 120  # seconds of a run
LONGEST_CLIENT = 10  # behind the end of the application


@dataclasses.dataclass(frozen=True, eq=False)
class Mode:
    name: str
    settings: dict | None = None  # what goes into the configuration; none runs without the front ends
    objects: int = 10  # that live beside what is measured
    base: str = "native"  # the mode that this one is compared with
    writes: bool = False  # whether calls grow a file
    apitrace: bool = False

    @property
    def streams(self):
        return bool(self.settings and self.settings.get("Network"))


NATIVE = Mode("native")
RECORDING = Mode("recording, mapped", MAPPED, writes=True)
UNDER_APITRACE = Mode("apitrace", writes=True, apitrace=True)
NATIVE_CROWDED = Mode("native, 1,000 objects", objects=1000, base="native, 1,000 objects")
MODES = [
    NATIVE,
    NATIVE_CROWDED,
    Mode("loaded, not recording", BEHIND),
    Mode("loaded, not recording, 1,000 objects", BEHIND, 1000, NATIVE_CROWDED.name),
    Mode("tracking ahead of the range", TRACKING),
    Mode("tracking ahead of the range, 1,000 objects", TRACKING, 1000, NATIVE_CROWDED.name),
    Mode("recording, each write flushed", FLUSHED, writes=True),
    RECORDING,
    Mode("recording, mapped, state cut down", {**MAPPED, "OptimizeRS": 1}, writes=True),
    Mode("profiling, no server", {"Profile": 1}),
    Mode("streaming", STREAMING, writes=True),
    Mode("streaming, packets of 64 KiB", {**STREAMING, "NetworkBufferSize": 65536}, writes=True),
    UNDER_APITRACE,
]


class LinkMap(ctypes.Structure):
    _fields_ = [("addr", ctypes.c_void_p), ("name", ctypes.c_char_p)]


def host_library(soname):
    """The path of the machine's own library, as the dynamic linker finds it."""
    handle = ctypes.CDLL(soname)
    link_map = ctypes.POINTER(LinkMap)()
    ctypes.CDLL(None).dlinfo(ctypes.c_void_p(handle._handle), 2, ctypes.byref(link_map))
    return link_map.contents.name.decode()


@contextlib.contextmanager
def scratch_folder():
    """A folder for one run, in memory where there is room: the tracers are compared, not the disk."""
    memory = "/dev/shm"
    with contextlib.suppress(OSError):
        if shutil.disk_usage(memory).free < LEAST_ROOM:
            memory = None
    with tempfile.TemporaryDirectory(dir=memory if memory and os.path.isdir(memory) else None,
                                     prefix="nebtrace-bench-") as name:
        yield pathlib.Path(name)


class Bench:
    """What all tables are made with."""

    def __init__(self, build, runs, share):
        self.build = build.resolve()
        self.runs = runs
        self.share = share  # one of so many calls is made: 1 for numbers that count
        self.hosts = {"EglLibraryPath": host_library("libEGL.so.1"),
                      "Es1LibraryPath": host_library("libGLESv1_CM.so.1"),
                      "Es2LibraryPath": host_library("libGLESv2.so.2")}

    def program(self, name):
        return str(self.build / "bench" / f"bench_{name}")

    def interleaved(self, items, measure):
        """What `measure` gives for each item, as a list for each. The runs of all items take turns, so that what the
        machine does meanwhile hits them alike."""
        found = {item: [] for item in items}
        for _ in range(self.runs):
            for item, results in found.items():
                results.append(measure(item))
        return found

    def run(self, mode, command, **environment):
        """Runs `command` in `mode`; returns what it prints, and the size of the file that its calls went to."""
        with scratch_folder() as folder:
            recorded = folder / ("far.nebt" if mode.streams else "recorded")
            environment = {**os.environ, **environment}
            if mode.settings is not None:
                settings = {**self.hosts, "TraceFile": recorded, "RecordData": 1, "DebugInfo": 0, **mode.settings}
                (folder / "nebtrace.cfg").write_text("".join(f"{key} = {value}\n" for key, value in settings.items()))
                environment["LD_LIBRARY_PATH"] = str(self.build / "frontends")
            if mode.apitrace:
                command = [*APITRACE, str(recorded), *command]
            with self._client(folder, recorded) if mode.streams else contextlib.nullcontext():
                done = subprocess.run(command, cwd=folder, env=environment, timeout=LONGEST, check=False,
                                      stdin=subprocess.DEVNULL, capture_output=True, text=True)
            if done.returncode != 0:
                raise SystemExit(f"{mode.name}: {' '.join(command)}\n{done.stdout}{done.stderr}")
            return done.stdout, recorded.stat().st_size if mode.writes else 0

    @contextlib.contextmanager
    def _client(self, folder, recorded):
        """A client on this machine that keeps what is streamed, until the program ends."""
        command = [str(self.build / "tools/nebtrace"), "remote", "--wait", "127.0.0.1", "record", "-o", str(recorded)]
        client = subprocess.Popen(command, cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL)
        try:
            yield
            client.wait(LONGEST_CLIENT)
        finally:
            client.kill()
            client.wait()


@contextlib.contextmanager
def display():
    """An X server for as long as the programs run that need one. It does not begin anew when a client has gone."""
    reader, writer = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "640x480x24", "-nolisten", "tcp",
                               "-noreset"], pass_fds=[writer], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL)
    os.close(writer)
    try:
        with os.fdopen(reader) as ready:
            yield ":" + ready.readline().strip()
    finally:
        server.terminate()
        server.wait()

