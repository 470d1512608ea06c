#!/usr/bin/env python3
"""Makes the seed corpora of the fuzz targets: seeds.py BUILD FOLDER.

Each example is recorded for a frame of 8 by 8 pixels; from the traces come the files, single records, packets and
shaders that the targets begin with. What no example shows is made by hand here.
"""
import os
import pathlib
import struct
import subprocess
import sys
import tempfile

EXAMPLES = ["client_arrays", "cube", "cube_map", "lighting", "programs", "render_target", "sprites", "stages",
            "stages_es1"]
LONGEST_FILE = 32768
LONGEST_RECORD = 2048
HEADER_SIZE = 62
FOOTER_SIZE = 10
SHADER_SOURCE = 2099
FIRST_SHARED_ID = 4000

CONFIGURATIONS = [
    "[host]\nEglLibraryPath = /usr/lib/libEGL.so\nEs1LibraryPath = a\nEs2LibraryPath = b\nEs3LibraryPath = c3.so\n",
    "[record]\nTraceFile = trace-%pid.nebt\nRecordData = 1\nSaveFrameBuffer = 0\nStartFrame = 3\nEndFrame = 4294967295\n"
    "OptimizeRS = 1\nDebugInfo = 2\nSwapInterval = -1\nExitOnLastFrame = 1\nProfile = 0\n",
    "Network = 1\nNetworkWait = 0\nNetworkBufferSize = 65536\nNetworkSendData = 1\nSaveFileToDisk = 0\n",
    "# a comment\n' another\n\n \t Key without value\n = value\nTraceFile=\nTraceFile==a=b\n\tProfile\t=\t1 \r\n",
    "ProcessNameExclude = a;b\nProcessNameExclude = c\nProcessNameWrite = d\n" + "TraceFile = " + "x" * 600,
]

SHADERS = [
    "void main() { if (a < 0.5) discard; gl_FragColor = c; }",
    "#version 100\n/* one */ varying vec2 uv; // two\nvoid main ()\n{\n\tdiscard ;\n}\n",
    "discard;/**/main(/*a*//**//b\n) discard\tmain\nmain2 xmain",
]


def words(*values):
    return struct.pack(f"<{len(values)}I", *values)


def text(value):
    return words(len(value)) + value.encode()


def block(identifier, payload=b"", info=None):
    """A block of the link to the performance server; some carry a value in place of a size."""
    return words(identifier << 24 | (len(payload) if info is None else info)) + payload


def packet(payload):
    return b"\x08\x44\x31" + struct.pack("<H", len(payload) & 0xFFFF) + payload + b"\x25"


def records(trace):
    """ID and payload of each record of a trace."""
    at = HEADER_SIZE
    while at + FOOTER_SIZE < len(trace):
        size, identifier = struct.unpack_from("<IH", trace, at)
        yield identifier, trace[at + 6:at + 6 + size]
        at += 6 + size


def record_example(build, name, folder):
    environment = {key: value for key, value in os.environ.items() if key not in ("DISPLAY", "WAYLAND_DISPLAY")}
    environment.update(LIBGL_ALWAYS_SOFTWARE="1", EGL_PLATFORM="surfaceless")
    trace = pathlib.Path(folder) / f"{name}.nebt"
    subprocess.run([build / "tools/nebtrace", "record", "--frames", "0-0", "--save-frames", "-o", trace, "--",
                    build / "examples" / name, "--frames", "1", "--size", "8x8"],
                   env=environment, check=True, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL, timeout=120)
    return trace.read_bytes()


def decoder_seeds(traces):
    """The shortest record of each ID."""
    shortest = {}
    for trace in traces:
        for identifier, payload in records(trace):
            known = shortest.get(identifier)
            if len(payload) <= LONGEST_RECORD and (known is None or len(payload) < len(known)):
                shortest[identifier] = payload
    hints = {1: 0, 2: 2, 3: 3, 4: 2}
    return [struct.pack("<HB", identifier, hints.get(identifier // 1000, 0)) + payload
            for identifier, payload in sorted(shortest.items())]


def packet_seeds(traces):
    """A recording as its client sees it, with each kind of packet; broken off and sent once more, too."""
    status, acknowledge = b"\x08\x44\x32\x51\x01\x00", b"\x08\x44\x21\x40\x01\x00"
    seeds = [b"\x03" + status + acknowledge]
    for trace in traces:
        pieces = [packet(trace[at:at + 1024]) for at in range(0, len(trace), 1024)]
        seeds.append(b"\x1f" + status + acknowledge + b"".join(pieces) + status)
        seeds.append(b"\x00" + pieces[0][:40] + pieces[0][:3] + pieces[0])
    return seeds


def server_seeds():
    """Steps of fuzz/server_commands.cpp."""
    def say(content):
        return bytes([0, len(content)]) + content
    come, later, leave, flush, stop = b"\x03", b"\x04\xe9\x03", b"\x02", b"\x05", b"\x07\x05"
    record = b"\x01\x00\x10"
    start = come + later + later
    commands = [start + say(bytes([0x08, 0x44, command])) + later + record + flush + later
                for command in (0x40, 0x41, 0x42, 0x43, 0x45, 0x44)]
    return commands + [
        start + say(b"\x08\x44\x40\x08\x44\x43") + later + say(b"\x08") + later + later,
        start + b"\x06\x00\x01\x00\x00" + record + stop + record + flush,
        record + start + leave + later + come + b"\x04\x11\x27" + later + flush,
    ]


def library_seeds():
    """What the performance server sends: descriptions asked for, items changed, an end, blocks of no use."""
    change = block(112, words(0) + b"\x01")
    return [b"\x0f" + block(64, info=0), b"\x0f" + change + block(112, words(1) + b"1\nAll\nBack"),
            b"\x00" + change + block(112, words(2)) + block(144, info=0) + block(64, info=0),
            b"\x02" + block(80, b"abcd" * 8) + block(112, words(9)) + block(112, b"ab")]


def server_block_seeds():
    """What an application sends to the performance server."""
    greeting = words(14, 4711)
    items = words(2) + text("Switch") + words(4) + text("\0") + text("List") + words(3) + text("0\na\nb")
    counters = words(1000, 2) + text("Draws") + text("CPU")
    described = (greeting + block(80, text("NEBTrace")) + block(100, items) + block(132, counters))
    frame = block(136, words(2000, 5, 6)) + block(136, words(3000, 7, 6))
    return [bytes((31, 120, 50)) + described + frame + block(184, words(1) + b"mark") + block(144, info=0),
            bytes((0, 80, 24)) + greeting + block(32, info=7) + block(36, info=3) + block(177, words(*range(11))) +
            block(180, words(*range(8))) + block(188, words(1)) + block(192, words(1, 2, 3)) +
            block(200, words(*range(15)))]


def shader_seeds(traces):
    sources = set(SHADERS)
    for trace in traces:
        for identifier, payload in records(trace):
            if identifier == SHADER_SOURCE:
                begin = payload.find(b"void main")
                sources.add(payload[max(begin - 200, 0):begin + 800].decode("latin-1"))
    return [source.encode("latin-1") for source in sorted(sources)]


def write(folder, target, seeds):
    corpus = folder / target
    corpus.mkdir(parents=True, exist_ok=True)
    for number, seed in enumerate(seeds):
        (corpus / f"seed-{number:03}").write_bytes(seed)


def main():
    build, folder = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    with tempfile.TemporaryDirectory() as scratch:
        traces = [record_example(build, name, scratch) for name in EXAMPLES]
    small = [trace for trace in traces if len(trace) <= LONGEST_FILE]
    cut = [trace[:2000] for trace in traces]
    write(folder, "trace_reader", small + cut)
    write(folder, "player", small + cut)
    write(folder, "trace_decoder", decoder_seeds(traces))
    write(folder, "client_packets", packet_seeds([trace for trace in small if len(trace) < 8192]))
    write(folder, "server_commands", server_seeds())
    write(folder, "configuration", [configuration.encode() for configuration in CONFIGURATIONS])
    write(folder, "comms_library", library_seeds())
    write(folder, "comms_server", server_block_seeds())
    write(folder, "shader_rewrite", shader_seeds(traces))


if __name__ == "__main__":
    main()
