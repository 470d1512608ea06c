"""`nebtrace doctor`: what it finds on a machine that lacks one thing or the other. Ports and shared memory are the
script's own."""

import json
import os
import re
import shutil
import socket
import subprocess
import sys
import unittest

from support import BUILD, NEBTRACE, PROGRAMS, SOURCE, ScratchTest, enter_namespace

VERDICTS = ("ok", "warning", "problem")


class Doctor(ScratchTest):
    def doctor(self, *options, code=0):
        done = self.run_command(NEBTRACE, "doctor", *options)
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.returncode, code, done.stdout)
        return done.stdout

    def checks(self, code=0):
        return json.loads(self.doctor("--json", code=code))["checks"]

    def findings(self, check, code=0):
        """Verdict, what was found, and what to do next, for each finding of the name."""
        return [(each["verdict"], each["found"], each["next"]) for each in self.checks(code) if each["check"] == check]

    def the_finding(self, check, code=0):
        (found,) = self.findings(check, code)
        return found

    # A machine on which the tests run has all that it takes; each line begins with its verdict.
    def test_a_machine_with_everything(self):
        lines = self.doctor().splitlines()
        self.assertEqual(lines.pop(), "0 problems, 0 warnings")
        for line in lines:
            self.assertRegex(line, r"^ok       [^:]+: .")
        found = dict(line[9:].split(": ", 1) for line in lines)
        for library in ("libEGL.so.1", "libGLESv2.so.2", "libGLESv1_CM.so.1"):
            self.assertTrue(os.path.exists(found[library]), found[library])
        self.assertIn("OpenGL ES", found["OpenGL ES 2 context"])
        self.assertIn("OpenGL ES-CM 1.1", found["OpenGL ES 1 context"])
        self.assertEqual(found["libNEBTrace.so.1"], os.path.realpath(os.path.join(BUILD, "src", "libNEBTrace.so.1")))

    # The object has what the lines have, and the pieces by themselves.
    def test_json_has_the_same_facts(self):
        self.write("nebtrace.cfg", "nothing\nEglLibraryPath = /no/such.so\n")
        lines = self.doctor(code=1).splitlines()
        report = json.loads(self.doctor("--json", code=1))
        self.assertEqual(set(report), {"version", "problems", "warnings", "checks"})
        self.assertEqual(lines.pop(), f"{report['problems']} problem, {report['warnings']} warning")
        for line, check in zip(lines, report["checks"], strict=True):
            self.assertEqual(set(check), {"check", "verdict", "found", "next", "details"})
            self.assertIn(check["verdict"], VERDICTS)
            rest = f"; next: {check['next']}" if check["next"] else ""
            self.assertEqual(line, f"{check['verdict']:9}{check['check']}: {check['found']}{rest}")
        details = {check["check"]: check["details"] for check in report["checks"]}
        self.assertEqual(set(details["OpenGL ES 2 context"]),
                         {"egl_vendor", "egl_version", "vendor", "renderer", "version"})

    # What to install is named; OpenGL ES 1 is something that many machines do without.
    def test_missing_libraries_name_their_packages(self):
        self.hide_libraries("libEGL.so.1", "libEGL.so", "libGLESv1_CM.so.1", "libGLESv1_CM.so", "libGLES_CM.so",
                            "libGLESv2.so.2", "libGLESv2.so")
        for library, expected, package in (("libEGL.so.1", "problem", "libegl1"),
                                           ("libGLESv2.so.2", "problem", "libgles2"),
                                           ("libGLESv1_CM.so.1", "warning", "libgles1")):
            verdict, found, then = self.the_finding(library, code=1)
            self.assertEqual(verdict, expected)
            self.assertTrue(found.startswith("not found: "), found)
            self.assertTrue(then.startswith(f"install {package} "), then)
        self.assertEqual(self.the_finding("OpenGL ES 2 context", code=1)[0], "problem")

    # A driver that crashes is what the doctor has to tell, not what ends it.
    def test_a_crashing_driver_is_a_problem(self):
        self.environment["LD_LIBRARY_PATH"] = os.path.join(PROGRAMS, "crashing")
        self.assertEqual(self.the_finding("libEGL.so.1", code=1)[0], "ok")
        verdict, found, then = self.the_finding("OpenGL ES 2 context", code=1)
        self.assertEqual((verdict, found), ("problem", "the process that tried it crashed: Aborted"))
        self.assertIn("libegl-mesa0", then)
        self.assertIn("libgl1-mesa-dri", then)

    # Libraries without a driver behind them.
    def test_no_driver(self):
        self.environment["__EGL_VENDOR_LIBRARY_DIRS"] = self.folder
        verdict, found, then = self.the_finding("OpenGL ES 2 context", code=1)
        self.assertEqual(verdict, "problem")
        self.assertTrue(found.startswith("no EGL display can be opened"), found)
        self.assertTrue(then.startswith("install libegl-mesa0 and libgl1-mesa-dri "), then)

    # A library path that leads to the front ends is told once, and nothing is tried through them.
    def test_front_ends_on_the_library_path(self):
        self.environment["LD_LIBRARY_PATH"] = os.path.join(BUILD, "frontends")
        problems = [check for check in self.checks(code=1) if check["verdict"] != "ok"]
        self.assertEqual([check["check"] for check in problems], ["library path"])
        self.assertIn("LD_LIBRARY_PATH", problems[0]["next"])

    # A command without its libraries is half an installation.
    def test_missing_front_ends(self):
        os.mkdir(self.path("bin"))
        alone = shutil.copy(NEBTRACE, self.path("bin"))
        done = self.run_command(alone, "doctor")
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stdout, r"(?m)^problem  front ends: .*bin/nebtrace are missing.*next: install nebtrace")

    # A recorder of another version lacks what the front ends call.
    def test_a_recorder_that_does_not_fit(self):
        os.makedirs(self.path("other"))
        shutil.copy(os.path.join(PROGRAMS, "crashing", "libEGL.so.1"), self.path("other/libNEBTrace.so.1"))
        self.environment["LD_LIBRARY_PATH"] = self.path("other")
        verdict, found, then = self.the_finding("front ends", code=1)
        self.assertEqual(verdict, "problem")
        self.assertIn("undefined symbol", found)
        self.assertIn("install nebtrace again", then)

    # A recorder that comes from elsewhere may be any.
    def test_a_recorder_from_elsewhere(self):
        os.makedirs(self.path("other"))
        shutil.copy(os.path.join(BUILD, "src", "libNEBTrace.so.1"), self.path("other"))
        self.environment["LD_LIBRARY_PATH"] = self.path("other")
        verdict, found, _ = self.the_finding("libNEBTrace.so.1", code=1)
        self.assertEqual(verdict, "problem")
        self.assertIn(self.path("other"), found)

    def remarks(self, text, code=0):
        self.write("nebtrace.cfg", text)
        (verdict, found, _), *rest = self.findings("configuration", code)
        file = self.path("nebtrace.cfg")
        self.assertEqual((verdict, found.startswith(file + " is what the recorder reads here")), ("ok", True))
        return [(verdict, found.removeprefix(file + ": ")) for verdict, found, _ in rest]

    # The recorder passes over what it does not know, without a word.
    def test_lines_of_the_configuration_that_do_nothing(self):
        self.assertEqual(
            self.remarks("[record]\n# a comment\n' another\n\n  TraceFile = x.nebt\nEndframe = 3\nNonsense = 1\n"
                         "no setting\n" + "# " + "x" * 500 + "\n"),
            [("warning", "line 6: no key is called Endframe, but EndFrame is"),
             ("warning", "line 7: no key is called Nonsense, and the line does nothing"),
             ("warning", 'line 8: it has no "=", and does nothing: no setting'),
             ("warning", "line 9: it has more than 499 bytes, and the recorder takes it as several lines")])

    # Some lines do other than they look.
    def test_lines_of_the_configuration_that_surprise(self):
        self.assertEqual(
            self.remarks("Profile = no\nRecordData = 0\nStartFrame = five\nStartFrame = 5\nNetworkSendData = 1\n"),
            [("warning", "line 1: Profile = no means yes: only what begins with 0 means no"),
             ("warning", "line 2: contents are recorded all the same: only leaving RecordData out turns them off"),
             ("warning", "line 3: StartFrame is no whole number: five"),
             ("warning", "line 5: NetworkSendData does nothing ahead of a line that says Network = 1"),
             ("warning", "EndFrame is ahead of StartFrame, so that no frame is recorded")])

    # The recorder takes numbers without a sign.
    def test_a_last_frame_of_minus_one_is_the_last_of_all(self):
        self.assertEqual(self.remarks("StartFrame = 5\nEndFrame = -1\n"), [])

    # A driver that is not there would show in the application only.
    def test_a_host_library_that_is_not_there(self):
        self.assertEqual(self.remarks("Es2LibraryPath = /no/such.so\n", code=1),
                         [("problem", "Es2LibraryPath cannot be read: /no/such.so")])

    # The doctor's keys are the recorder's.
    def test_every_key_of_the_recorder_is_known(self):
        with open(os.path.join(SOURCE, "api", "config_keys.def"), encoding="utf-8") as file:
            keys = re.findall(r'^CONFIG_KEY\("\w+", (\w+),', file.read(), re.MULTILINE)
        self.assertGreater(len(keys), 20)
        values = {key: "/dev/null" if key.endswith("LibraryPath") else "1" for key in keys}
        self.assertEqual(self.remarks("".join(f"{key} = {value}\n" for key, value in values.items())), [])

    # What a killed run of nebtrace record left is in the way of the next.
    def test_what_a_killed_recording_left(self):
        self.write("nebtrace.cfg", "# Written by nebtrace record, which takes it away again at the end.\n")
        self.write("nebtrace.cfg.saved-12", "")
        nexts = [then for _, _, then in self.findings("configuration")[1:]]
        self.assertEqual(nexts, ["remove it, unless that run is still on",
                                 "move it back to nebtrace.cfg, unless that run is still on"])

    # Where nothing stands, the recording brings its own.
    def test_no_configuration(self):
        verdict, found, _ = self.the_finding("configuration")
        self.assertEqual(verdict, "ok")
        self.assertIn("nebtrace record places one", found)

    # A trace that cannot be written is no trace.
    def test_folders(self):
        verdict, found, _ = self.the_finding("working directory")
        self.assertEqual(verdict, "ok")
        self.assertRegex(found, re.escape(self.folder) + r", with room for [\d.]+ [MG]B$")
        self.write("nebtrace.cfg", "TraceFile = missing/x.nebt\n")
        verdict, found, then = self.the_finding("trace folder", code=1)
        self.assertEqual((verdict, found), ("problem", self.path("missing") +
                                            " cannot be written: No such file or directory"))
        self.assertIn("TraceFile", then)

    # Who has a port is named.
    def test_ports_that_are_taken(self):
        for check, kind, port in (("TCP port 54321", socket.SOCK_STREAM, 54321),
                                  ("UDP port 6522", socket.SOCK_DGRAM, 6522)):
            self.assertTrue(self.the_finding(check)[1].startswith("free for "))
            with socket.socket(socket.AF_INET, kind) as taken:
                taken.bind(("0.0.0.0", port))
                if kind == socket.SOCK_STREAM:
                    taken.listen()
                verdict, found, then = self.the_finding(check)
            self.assertEqual(verdict, "warning")
            self.assertRegex(found, rf"^taken by process {os.getpid()} \(python")
            self.assertIn("end that process", then)

    # Objects that nobody uses are told from those of a server that runs.
    def test_shared_memory_of_the_performance_server(self):
        self.assertEqual(self.the_finding("performance server")[:2], ("ok", "none runs, and none has left anything"))
        with open("/dev/shm/NEBPerfServerVsAppLib7U0d", "wb"):
            pass
        verdict, found, then = self.the_finding("performance server")
        self.assertEqual((verdict, found), ("warning", "1 objects of one are in shared memory, and none runs"))
        self.assertIn("nebtrace perf", then)
        server = subprocess.Popen([NEBTRACE, "perf"], cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL)
        self.addCleanup(server.wait)
        self.addCleanup(server.kill)
        while not os.path.exists("/dev/shm/NEBPerfServerVsAppLib0N0m"):
            self.assertIsNone(server.poll())
        verdict, found, _ = self.the_finding("performance server")
        self.assertEqual(verdict, "ok")
        self.assertTrue(found.startswith(f"process {server.pid} is one"), found)
        server.send_signal(2)
        server.wait()
        self.assertEqual(os.listdir("/dev/shm"), [])

    # Without room for objects there is no profiling.
    def test_shared_memory_that_takes_nothing(self):
        subprocess.run(["mount", "-o", "remount,ro", "/dev/shm"], check=True)
        self.addCleanup(subprocess.run, ["mount", "-o", "remount,rw", "/dev/shm"], check=True)
        verdict, found, then = self.the_finding("shared memory", code=1)
        self.assertEqual((verdict, found), ("problem", "no object can be made in /dev/shm: Read-only file system"))
        self.assertIn("tmpfs", then)

    # No display is a hint; one that the environment names and that is not there is a problem.
    def test_displays(self):
        verdict, found, _ = self.the_finding("default display")
        self.assertEqual(verdict, "ok")
        self.assertIn("EGL_PLATFORM=surfaceless", found)
        del self.environment["EGL_PLATFORM"]
        verdict, found, then = self.the_finding("default display")
        self.assertEqual(verdict, "warning")
        self.assertIn("neither DISPLAY nor WAYLAND_DISPLAY is set", found)
        self.assertIn("EGL_PLATFORM=surfaceless", then)
        self.assertIn("xvfb-run", then)
        for variable, value in (("DISPLAY", ":987"), ("WAYLAND_DISPLAY", self.path("socket"))):
            with self.subTest(variable=variable):
                self.environment[variable] = value
                verdict, found, then = self.the_finding(variable, code=1)
                self.assertEqual(verdict, "problem")
                self.assertTrue(found.startswith(value + ": "), found)
                self.assertEqual(then, f"start that display, or unset {variable}")
                del self.environment[variable]

    # One that is there is found.
    def test_an_x_display(self):
        self.start_display()
        self.assertEqual(self.the_finding("DISPLAY")[:2], ("ok", self.environment["DISPLAY"] + " answers"))
        self.assertEqual(self.the_finding("default display")[0], "ok")


if __name__ == "__main__":
    enter_namespace("mount", "net")
    sys.exit(unittest.main())
