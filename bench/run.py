#!/usr/bin/env python3
"""Measures what the tracer costs: one run on one machine, as tables in Markdown on standard output."""
import argparse
import ctypes
import json
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile

FOREVER = 2000000000
# What a mode writes into the configuration; native runs without the front ends.
MODES = {
    "native": None,
    "loaded, not recording": {"StartFrame": 0, "EndFrame": 0},
    "tracking ahead of the range": {"StartFrame": FOREVER, "EndFrame": FOREVER},
    "recording, each write flushed": {"StartFrame": 0, "EndFrame": FOREVER},
    "recording, mapped": {"StartFrame": 0, "EndFrame": FOREVER, "FileWindow": 8},
    "profiling": {"Profile": 1},
}
SCENES = ["build:use-vbo=false", "build:use-vbo=true", "texture", "buffer:update-method=subdata"]
REPETITIONS = 9


class LinkMap(ctypes.Structure):
    _fields_ = [("addr", ctypes.c_void_p), ("name", ctypes.c_char_p)]


def host_library(soname):
    """The path of the machine's own library, as the dynamic linker finds it."""
    handle = ctypes.CDLL(soname)
    link_map = ctypes.POINTER(LinkMap)()
    ctypes.CDLL(None).dlinfo(ctypes.c_void_p(handle._handle), 2, ctypes.byref(link_map))
    return link_map.contents.name.decode()


def prepare(folder, build, mode):
    """The environment of a run in `folder`."""
    environment = dict(os.environ)
    if mode is None:
        return environment
    settings = {"EglLibraryPath": host_library("libEGL.so.1"), "Es1LibraryPath": host_library("libGLESv1_CM.so.1"),
                "Es2LibraryPath": host_library("libGLESv2.so.2"), "RecordData": 1, "DebugInfo": 0, **mode}
    (folder / "nebtrace.cfg").write_text("".join(f"{key} = {value}\n" for key, value in settings.items()))
    environment["LD_LIBRARY_PATH"] = str(build / "frontends")
    return environment


def in_mode(build, mode, command, **more_environment):
    with tempfile.TemporaryDirectory(dir=build, prefix="bench-") as name:
        folder = pathlib.Path(name)
        environment = {**prepare(folder, build, MODES[mode]), **more_environment}
        return subprocess.run(command, cwd=folder, env=environment, check=True, capture_output=True,
                              text=True).stdout


def measure_calls(build, mode):
    """Nanoseconds per call by benchmark: the median and the spread of the repetitions."""
    output = in_mode(build, mode, [str(build / "bench/bench_calls"), "--benchmark_format=json",
                                   f"--benchmark_repetitions={REPETITIONS}"],
                     GALLIUM_NOOP="true", EGL_PLATFORM="surfaceless")
    report = json.loads(output[output.index("\n{") if not output.startswith("{") else 0:])
    times = {}
    for run in report["benchmarks"]:
        if run["run_type"] == "iteration":
            times.setdefault(run["run_name"].split("/")[0], []).append(run["real_time"])
    return {name: (statistics.median(runs), min(runs), max(runs)) for name, runs in times.items()}


def measure_scene(build, mode, scene):
    """Frames per second of a whole program."""
    command = ["xvfb-run", "-a", "glmark2-es2", "--off-screen", "-s", "320x240", "-b", f"{scene}:duration=2.0"]
    if "=" in scene or ":" in scene:
        command[-1] = f"{scene}:duration=2.0"
    output = in_mode(build, mode, command, vblank_mode="0")
    return int(re.search(r"FPS: (\d+)", output).group(1))


def table(rows, header):
    print("| " + " | ".join(header) + " |")
    print("|" + "---|" * len(header))
    for row in rows:
        print("| " + " | ".join(row) + " |")
    print(flush=True)


def cell(value, native):
    median, low, high = value
    return f"{median:,.0f} ({low:,.0f} to {high:,.0f}), ×{median / native[0]:.2f}"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", type=pathlib.Path, help="the build folder")
    parser.add_argument("--no-programs", action="store_true", help="single calls only")
    arguments = parser.parse_args()
    build = arguments.build.resolve()

    calls = {mode: measure_calls(build, mode) for mode in MODES}
    print(f"Nanoseconds per call: median of {REPETITIONS} runs (least to most), and ratio to native\n")
    table([[name] + [cell(calls[mode][name], calls["native"][name]) for mode in MODES]
           for name in calls["native"]], ["call", *MODES])
    if arguments.no_programs or not shutil.which("glmark2-es2"):
        return 0
    print("Frames per second of glmark2-es2, software rasteriser, and ratio to native\n")
    rows = []
    for scene in SCENES:
        rates = {mode: measure_scene(build, mode, scene) for mode in MODES}
        rows.append([scene] + [f"{rate:,} (×{rate / max(rates['native'], 1):.2f})" for rate in rates.values()])
    table(rows, ["scene", *MODES])
    return 0


if __name__ == "__main__":
    sys.exit(main())
