"""What `nebtrace perf` tells of an application's frames, and what it sets."""

import csv
import json
import os
import signal
import sys
import unittest

sys.path.insert(0, os.path.dirname(__file__))
from perf_support import PerfTest, enter_namespace, shared_objects  # noqa: E402

COUNTERS = ["Draws", "CPU driver time (us)", "Uploads (bytes)"]
NAMES = "Force zero viewport, Disable blending, Disable draw calls, Culling mode"


class Frames(PerfTest):
    # The first block is what the others are counted from; each further one is a frame: the differences, which
    # wrap as the counters do, and the counters themselves. --frames ends it.
    def test_json_lines_are_differences(self):
        server = self.perf("--json", "--frames", "3")
        application = self.connected()
        self.frames(application, (100, 5, 4294967290), (107, 6, 2), (107, 6, 2), (110, 106, 4))
        code, out, err = server.finish()
        self.assertEqual(code, 0)
        lines = self.objects(out)
        self.assertEqual([line["frame"] for line in lines], [1, 2, 3])
        self.assertEqual([line["counters"] for line in lines], [
            dict(zip(COUNTERS, values)) for values in ((7, 1, 8), (0, 0, 0), (3, 100, 2))])
        self.assertEqual([list(line["totals"].values()) for line in lines], [[107, 6, 2], [107, 6, 2], [110, 106, 4]])
        self.assertEqual({line["pid"] for line in lines}, {application.pid})
        self.assertEqual({line["name"] for line in lines}, {"fake_applicatio"}, "15 characters are the system's limit")
        times = [line["time_us"] for line in lines]
        self.assertEqual(times, sorted(times))
        self.assertEqual(lines[2]["time_us"] - lines[1]["time_us"], lines[2]["frame_us"])
        self.assertEqual(err, f"nebtrace: {application.pid} fake_applicatio: connected\n")
        application.ask("frame 1 1 1", "^lost$")
        self.end(application)

    # Every frame of an application that is much faster than any screen is there, in order.
    def test_no_frame_is_lost(self):
        server = self.perf("--json", "--frames", "49999")
        application = self.connected()
        application.tell("frames 50000")
        code, out, _ = server.finish()
        self.assertEqual(code, 0)
        numbers = [json.loads(line)["frame"] for line in out.splitlines()]
        self.assertEqual(numbers, list(range(1, 50000)))
        self.assertRegex(application.wait_for("^sent"), r"^sent (49999|50000)$")
        self.end(application)

    # The file has a header and a line for each frame.
    def test_csv(self):
        server = self.perf("--csv", "frames.csv", "--frames", "2")
        application = self.connected()
        self.frames(application, (1, 2, 3), (2, 4, 6), (12, 14, 16))
        code, out, _ = server.finish()
        self.assertEqual(code, 0)
        rows = list(csv.reader(self.read("frames.csv").splitlines()))
        self.assertEqual(rows[0], ["pid", "frame", "time_us", "frame_us", *COUNTERS])
        self.assertEqual([row[:2] + row[4:] for row in rows[1:]], [
            [str(application.pid), "1", "1", "2", "3"], [str(application.pid), "2", "10", "10", "10"]])
        self.assertRegex(out, rf"(?m)^{application.pid} fake_applicatio: frame 1: [\d.]+ frames/s, CPU driver time "
                              r"2 us a frame; Draws 1, CPU driver time \(us\) 2, Uploads \(bytes\) 3$")
        self.assertNotIn("\x1b", out)
        self.end(application)

    def test_a_csv_file_that_cannot_be_written(self):
        code, _, err = self.perf("--csv", "no/folder.csv").finish()
        self.assertEqual((code, err), (1, "nebtrace: cannot write no/folder.csv: No such file or directory\n"))
        self.assertEqual(shared_objects(), [])

    # A full disk ends the server, whatever is written there, and says so.
    def test_a_full_disk(self):
        for option, full, error in (("--json", True, "standard output"), ("--list", True, "standard output"),
                                    ("--csv=/dev/full", False, "cannot write /dev/full")):
            with self.subTest(option=option), open("/dev/full", "w", encoding="utf-8") as disk:
                server = self.perf(option, **({"stdout": disk} if full else {}))
                application = self.connected()
                application.tell("frames 3")
                code, _, err = server.finish()
                self.assertEqual((code, err.splitlines()[-1]), (1, f"nebtrace: {error}: No space left on device"))
                self.end(application)
                self.assertEqual(shared_objects(), [])

    # --set takes names with and without their beginning, in any case, and reaches the application.
    def test_settings_reach_the_application(self):
        server = self.perf("--json", "--set", "NEBTrace.Disable blending=1", "--set", "force ZERO viewport=on", "--set",
                           "culling mode=Back")
        application = self.connected()
        changes = set()
        while len(changes) < 3:
            changes.add(application.ask("change", "^change"))
        self.assertEqual(changes, {r"change 0 \x01", r"change 1 \x01",
                                   r"change 3 2\x0aApp defined\x0aNone\x0aBack\x0aFront"})
        self.assertEqual(self.stop(server)[0], 0)
        self.end(application)

    # A name or a value that the application does not have ends the server, and says what there is.
    def test_settings_that_are_wrong(self):
        for setting, error in (
                ("No such=1", f"--set No such: the application's items are {NAMES}"),
                ("Disable blending=2", "--set Disable blending=2: the values are 0, 1, off, on"),
                ("Culling mode=4", "--set Culling mode=4: the values are 0 (App defined), 1 (None), 2 (Back), 3 (Front)")):
            with self.subTest(setting=setting):
                server = self.perf("--set", "Force zero viewport=1", "--set", setting)
                application = self.connected()
                code, out, err = server.finish()
                self.assertEqual((code, out, err), (1, "", f"nebtrace: {error}\n"))
                application.ask("frame 1 1 1", "^lost$")
                application.tell("end")
                self.assertEqual(application.finish()[:2], (0, ""), "no change reached it")
                self.assertEqual(shared_objects(), [])
        for setting in ("Disable blending", "=1", "Disable blending="):
            code, _, err = self.perf("--set", setting).finish()
            self.assertEqual((code, err), (2, f"nebtrace: --set: a setting is NAME=VALUE: {setting}; nebtrace perf --help "
                                           "tells more\n"))

    # Only the first application tells that a setting is a mistake. One that comes later and lacks an item has the others.
    def test_a_setting_that_a_later_application_lacks(self):
        server = self.perf("--json", "--set", "Culling mode=Back", "--set", "Disable blending=1")
        first = self.connected()
        later = self.application()
        later.tell("items 3")
        later.ask("connect", "^connected$")
        self.assertEqual(
            server.wait_for_error("--set"), f"nebtrace: {later.pid} fake_applicatio: --set Culling mode: the application's "
                                            "items are Force zero viewport, Disable blending, Disable draw calls")
        self.assertEqual(later.ask("change", "^change"), r"change 1 \x01")
        self.frames(first, (1, 1, 1), (2, 2, 2))
        server.wait_for(f'"pid":{first.pid},.*"frame":1,')
        self.assertEqual(self.stop(server)[0], 0)
        self.end(first)
        self.end(later)

    # A value that has no room in a buffer of the link cannot be changed, and holds up no other change.
    def test_a_value_that_is_too_long(self):
        server = self.perf("--json", "--set", "Culling mode=Back", "--set", "Disable blending=1")
        application = self.application()
        application.tell("long")
        application.ask("connect", "^connected$")
        self.assertEqual(server.wait_for_error("too long"), f"nebtrace: {application.pid} fake_applicatio: the value of "
                                                            "Culling mode is too long to be changed")
        self.assertEqual(application.ask("change", "^change"), r"change 1 \x01")
        self.stop(server)
        self.end(application)

    # --list shows the items of the first application, and what they may be.
    def test_list(self):
        server = self.perf("--list")
        application = self.connected()
        self.assertEqual(server.finish()[:2], (0, "Force zero viewport = off\nDisable blending = off\nDisable draw calls = off\n"
                                                  "Culling mode = App defined (App defined, None, Back, Front)\n"))
        self.end(application)

    # The same for programs.
    def test_list_for_programs(self):
        server = self.perf("--list", "--json")
        application = self.connected()
        code, out, _ = server.finish()
        self.assertEqual(code, 0)
        items = json.loads(out)
        self.assertEqual(items[1], {"name": "Disable blending", "value": "off", "choices": None})
        self.assertEqual(items[3], {"name": "Culling mode", "value": "App defined",
                                    "choices": ["App defined", "None", "Back", "Front"]})
        self.end(application)

    # Without an application it gives up in time, and says what is missing.
    def test_timeout(self):
        code, _, err = self.perf("--timeout", "0.1").finish()
        self.assertEqual((code, err), (1, "nebtrace: no application; nebtrace record --profile -- APP starts one\n"))
        application = self.application()
        application.tell("connect")
        server = self.perf("--json", "--timeout", "2", "--frames", "5")
        application.wait_for("^connected$")
        self.frames(application, (1, 1, 1), (2, 2, 2))
        self.end(application)
        code, out, err = server.finish()
        self.assertEqual((code, len(out.splitlines())), (1, 1))
        self.assertIn("nebtrace: no application: 1 of 5 frames came; nebtrace record --profile ", err)

    # A reader that has seen enough closes the pipe: the server ends, and leaves nothing.
    def test_a_closed_pipe_ends_it(self):
        server = self.perf("--json")
        application = self.connected()
        self.frames(application, (1, 1, 1), (2, 2, 2))
        server.wait_for('"frame":1')
        server.process.stdout.close()
        self.frames(application, (3, 3, 3))
        self.assertEqual(server.process.wait(60), 128 + signal.SIGPIPE)
        self.end(application)
        self.assertEqual(shared_objects(), [])

    # A mark is told as it comes, without what could play with a terminal.
    def test_marks(self):
        server = self.perf("--json")
        application = self.connected()
        application.tell("mark level \x1b[2Jtwo")
        self.frames(application, (1, 1, 1))
        self.assertEqual(server.wait_for_error("mark"),
                         f"nebtrace: {application.pid} fake_applicatio: mark: level ?[2Jtwo")
        self.stop(server)


if __name__ == "__main__":
    enter_namespace()
    unittest.main()
