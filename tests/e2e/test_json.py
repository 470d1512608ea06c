"""What commands print for programs, and that docs/json.md tells of every key and of no other."""

import json
import os
import re
import sys
import unittest

from support import CUBE, NEBTRACE, SOURCE, ScratchTest

QUICK = (CUBE, "--frames", "3", "--size", "40x30")


def documented(command):
    """The keys that docs/json.md has for a command."""
    with open(os.path.join(SOURCE, "docs", "json.md"), encoding="utf-8") as file:
        section = re.search(rf"^## {command}\n(.*?)(?=^## |\Z)", file.read(), re.MULTILINE | re.DOTALL).group(1)
    rows = re.findall(r"^\| (`[^|]+`) \|", section, re.MULTILINE)
    return [key for row in rows for key in re.findall(r"`(\w+)`", row)]


class Json(ScratchTest):
    def object_of(self, command, *arguments, code=0):
        done = self.run_command(NEBTRACE, command, "--json", *arguments)
        self.assertEqual(done.returncode, code, done.stderr)
        found = json.loads(done.stdout)
        self.assertEqual(sorted(found), sorted(documented(command)))
        return found

    def recorded(self, *arguments, code=0):
        done = self.record("--json", "run.json", *arguments)
        self.assertEqual(done.returncode, code, done.stderr)
        found = json.loads(self.read("run.json"))
        self.assertEqual(list(found), documented("record"))
        self.assertEqual(found["exit_code"], code)
        return found

    # What a recording left, in a file: standard output is the application's.
    def test_record(self):
        found = self.recorded("--frames", "0-1", "--", *QUICK)
        self.assertEqual(found["command"], list(QUICK))
        self.assertIsNone(found["nothing"])
        (trace,) = found["traces"]
        self.assertEqual(list(trace), documented("remote record"))
        recorded = self.trace()
        self.assertEqual((trace["file"], trace["bytes"], trace["frames"], trace["calls"], trace["end"]),
                         (self.path("trace.nebt"), len(recorded.bytes), 2, len(recorded.records) + len(recorded.state),
                          "footer"))
        self.assertEqual(sorted(os.listdir(self.folder)), ["run.json", "trace.nebt"])

    # A run without a recording says why, and one that never was says that.
    def test_record_of_nothing(self):
        found = self.recorded("--", "sh", "-c", "exit 3", code=3)
        self.assertEqual(found["traces"], [])
        self.assertIn("nothing was recorded: sh loaded neither EGL nor GLES", found["nothing"])
        found = self.recorded("--", "./missing", code=127)
        self.assertEqual((found["pid"], found["nothing"]), (None, "the application cannot be started"))

    # On standard output it comes behind what the application writes.
    def test_record_to_standard_output(self):
        done = self.record("--json", "-", "--", "echo", "mine")
        first, rest = done.stdout.split("\n", 1)
        self.assertEqual(first, "mine")
        self.assertEqual(json.loads(rest)["exit_code"], 0)

    # A name that cannot be written is told before the application runs.
    def test_record_into_no_folder(self):
        done = self.record("--json", "missing/run.json", "--", "touch", "started")
        self.assertEqual(done.returncode, 1)
        self.assertEqual(os.listdir(self.folder), [])

    # A comparison, frame by frame; nothing else is on standard output.
    def test_replay(self):
        self.record_well("--save-frames", "--", *QUICK)
        found = self.object_of("replay", "--verify", "trace.nebt")
        self.assertEqual((found["frames"], found["compared"], found["different"]), (3, 3, []))
        self.assertEqual((found["times"], found["failure"]), (None, None))
        with open(self.path("trace.nebt"), "r+b") as file:
            whole = file.read()
            file.seek(whole.index(self.trace().frames()[1].pixels))
            file.write(b"\x7f\x01\x02\x03")
        found = self.object_of("replay", "--verify", "trace.nebt", code=1)
        (different,) = found["different"]
        self.assertEqual((different["frame"], different["pixels"]), (1, 1))
        times = self.object_of("replay", "--bench", "trace.nebt")["times"]
        self.assertEqual(list(times), ["min_ms", "median_ms", "p99_ms", "calls_per_second"])
        self.assertLessEqual(times["min_ms"], times["median_ms"])

    # A replay that ends early still tells what it did.
    def test_replay_on_a_machine_without_gles1(self):
        self.record_well("--", os.path.join(os.path.dirname(CUBE), "sprites"), *QUICK[1:])
        self.hide_libraries("libGLESv1_CM.so.1")
        found = self.object_of("replay", "trace.nebt", code=1)
        self.assertIn("libGLESv1_CM.so.1 cannot be opened", found["failure"])
        self.assertIn("install libgles1", found["failure"])

    # What was kept and what was dropped.
    def test_repair(self):
        self.record_well("--frames", "0-1", "--", *QUICK)
        found = self.object_of("repair", "trace.nebt", "-o", "out.nebt")
        self.assertEqual((found["whole"], found["frames"], found["dropped_bytes"]), (True, 2, 0))
        self.assertEqual((found["dropped"], found["state_dropped"]), (None, False))
        whole = self.trace().bytes
        with open(self.path("cut.nebt"), "wb") as file:
            file.write(whole[:100])
        found = self.object_of("repair", "cut.nebt", "-o", "out.nebt")
        self.assertEqual((found["whole"], found["output"]), (False, "out.nebt"))
        self.assertEqual(found["dropped_offset"] + found["dropped_bytes"], 100)
        self.assertTrue(found["dropped"].startswith("the beginning of "), found)

    # How many pictures were written, and where.
    def test_frames(self):
        self.record_well("--save-frames", "--", *QUICK)
        self.assertEqual(self.object_of("frames", "trace.nebt", "pictures"),
                         {"file": "trace.nebt", "folder": "pictures", "written": 3})

    # The keys of the others are the documented ones.
    def test_info_and_doctor(self):
        self.record_well("--", *QUICK)
        self.assertEqual(self.object_of("info", "trace.nebt")["frames"], 3)
        self.object_of("doctor")


if __name__ == "__main__":
    sys.exit(unittest.main())
