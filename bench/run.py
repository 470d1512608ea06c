#!/usr/bin/env python3
"""Measures what the tracer costs: one run on one machine, as tables in Markdown on standard output."""
import argparse
import fcntl
import os
import pathlib
import platform
import re
import shutil
import socket
import struct
import subprocess
import sys
import modes
import targets
from table_calls import Calls
from table_programs import Programs
from table_snapshot import Snapshot
from table_threads import Threads

TABLES = ["calls", "programs", "threads", "snapshot"]
NEEDS = {"calls": ["apitrace"], "programs": ["apitrace", "glmark2-es2", "Xvfb"], "threads": ["apitrace"],
         "snapshot": []}
BUSY = 0.5
OWN_NAMESPACE = "NEBTRACE_BENCH_NAMESPACE"


def enter_own_network():
    """Runs the script anew where nobody else has the port that the tracer's server listens on, if that may be."""
    enter = ["unshare", "--net"] + ([] if os.geteuid() == 0 else ["--map-root-user"])
    if OWN_NAMESPACE not in os.environ:
        if not shutil.which("unshare") or subprocess.run([*enter, "true"], check=False, capture_output=True).returncode:
            return
        os.environ[OWN_NAMESPACE] = "1"
        os.execvp(enter[0], [*enter, sys.executable, "-B", *sys.argv])
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as any_socket:
        loopback_up = struct.pack("16sH14s", b"lo", 1, b"")  # IFF_UP
        fcntl.ioctl(any_socket, 0x8914, loopback_up)  # SIOCSIFFLAGS


def version(package):
    done = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package], check=False, capture_output=True,
                          text=True)
    return done.stdout or "?"


def describe_machine(runs):
    found = re.search(r"model name\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text())
    processor = found.group(1) if found else platform.machine()
    print(f"Medians of {runs} runs on {os.cpu_count()} cores ({processor}), Linux {platform.release()}, "
          f"Mesa {version('libgl1-mesa-dri')}, apitrace {version('apitrace')}, glmark2 {version('glmark2-es2-x11')}; "
          f"load {os.getloadavg()[0]:.2f} at the start.\n")
    if os.getloadavg()[0] > BUSY:
        print(f"**The machine was not idle: its load was above {BUSY} at the start.**\n")
    sys.stdout.flush()


def make(name, bench, chosen):
    if name == "calls":
        return Calls(bench, chosen)
    return {"programs": Programs, "threads": Threads, "snapshot": Snapshot}[name](bench)


def parse():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", type=pathlib.Path, help="the build folder")
    parser.add_argument("--runs", type=int, default=9, help="of each program in each mode (default %(default)s)")
    parser.add_argument("--only", action="append", choices=TABLES, help="this table only; can be repeated")
    parser.add_argument("--mode", action="append", metavar="TEXT",
                        help="of single calls, only the modes whose name has this text; can be repeated")
    parser.add_argument("--share", type=int, default=1,
                        help="makes one of so many calls: whether all works, not what it costs")
    return parser.parse_args()


def main():
    arguments = parse()
    enter_own_network()
    chosen = [mode for mode in modes.MODES if any(text in mode.name for text in arguments.mode or [""])]
    names = arguments.only or TABLES
    without_apitrace = not any(mode.apitrace for mode in chosen)
    for program in {program for name in names for program in NEEDS[name]}:
        if not shutil.which(program) and not (program == "apitrace" and names == ["calls"] and without_apitrace):
            raise SystemExit(f"{program} is missing: ./dev bench installs it")
    bench = modes.Bench(arguments.build, arguments.runs, arguments.share)
    describe_machine(arguments.runs)
    made = {}
    for name in names:
        made[name] = make(name, bench, chosen)
        made[name].show()
    targets.show(made)
    return 0


if __name__ == "__main__":
    sys.exit(main())
