"""Unusual ends: forks, exits from within, libraries that are closed, and an application without a context."""

import os
import unittest

from faults import FaultTest, Remains, program
from support import BUILD

FAULTY = program("faulty")
RELOAD = program("reload")
RECORDER = os.path.join(BUILD, "src", "libNEBTrace.so.1")
SCENES = {"recorded": {}, "ahead of the range": {"StartFrame": 1000000}, "profiled": {"Profile": 1}}


class Endings(FaultTest):
    # The child's calls are in no file; the parent's recording goes on, whole, through the child's life and end.
    def test_a_fork_leaves_the_recording_to_the_parent(self):
        self.configure()
        self.run_both(FAULTY, "fork")
        remains = self.remains()
        self.assertEqual(remains.rest, b"")
        self.assertEqual(remains.textures(), list(range(10)))
        self.assertEqual(remains.of("glLineWidth"), [])
        self.assertEqual(len({call.thread for call in remains.calls}), 1)

    # The same in every other state of the recorder.
    def test_a_fork_is_survived_in_every_state(self):
        for name, keys in SCENES.items():
            with self.subTest(state=name):
                self.configure(**keys)
                self.run_both(FAULTY, "fork")

    # A program that forks itself into the background before it draws is recorded there.
    def test_a_program_in_the_background_is_recorded(self):
        self.configure()
        self.assertEqual(self.run_both(FAULTY, "daemon").returncode, 3)
        remains = self.remains()
        self.assertEqual(remains.rest, b"")
        self.assertEqual(remains.textures(), list(range(5)))

    # A program that the child becomes has a recorder of its own, and a file if the name tells them apart.
    def test_a_child_that_becomes_another_program_has_a_recording_of_its_own(self):
        for name, keys in SCENES.items():
            with self.subTest(state=name):
                self.configure(TraceFile="trace_%pid.nebt", **keys)
                self.run_both(FAULTY, "fork_exec", FAULTY, "frames", "2")
                files = sorted(file for file in os.listdir(self.folder) if file.endswith(".nebt"))
                self.assertEqual(len(files), 0 if name == "profiled" else 2)
                if name == "recorded":
                    found = [self.remains(file).textures() for file in files]
                    self.assertEqual(sorted(found, key=len), [list(range(2)), list(range(10))])
                for file in files:
                    os.remove(self.path(file))

    # One that has nothing to do with graphics does no harm to its parent's recording.
    def test_a_child_that_becomes_a_program_without_graphics_does_no_harm(self):
        self.configure()
        self.run_both(FAULTY, "fork_exec", "/bin/true")
        self.assertEqual(self.remains().textures(), list(range(10)))

    # The driver calls the application back, and that ends the process: a call that is never finished is in no
    # record, all others are.
    def test_an_exit_from_inside_a_call_is_an_exit(self):
        self.configure()
        self.assertEqual(self.run_both(FAULTY, "exit_in_a_call").returncode, 6)
        remains = self.remains()
        self.assertEqual(remains.rest, b"")
        self.assertEqual(remains.textures(), list(range(5)))
        self.assertEqual(remains.names()[-1], "glDebugMessageCallback")

    # Calls that an application makes while it ends reach the driver, and are recorded while the recorder is there.
    def test_calls_of_exit_handlers_are_recorded(self):
        self.configure()
        for way, code in (("exit_and_draw", 4), ("exit_in_a_handler", 9)):
            with self.subTest(way=way):
                self.assertEqual(self.run_both(FAULTY, way).returncode, code)
                remains = self.remains()
                self.assertEqual(remains.rest, b"")
                self.assertEqual(remains.textures(), [0, 1, 2, 3, 4, 0, 1])

    # The same in every other state of the recorder.
    def test_exits_are_survived_in_every_state(self):
        for name, keys in SCENES.items():
            for way in ("exit_in_a_call", "exit_and_draw", "exit_in_a_handler"):
                with self.subTest(state=name, way=way):
                    self.configure(**keys)
                    self.run_both(FAULTY, way)

    # Front ends that an application opens and closes stay: the recording goes on when they are opened again.
    def test_front_ends_that_are_closed_go_on_recording(self):
        self.configure()
        self.run_both(RELOAD, "front_ends")
        remains = self.remains()
        self.assertEqual(len(remains.of("eglSwapBuffers")), 3)
        self.assertEqual(remains.names()[-1], "eglTerminate")

    # The recorder itself, closed by a front end that does not stay, is gone without a trace in the process, and
    # starts anew with a new file when it comes back. A thread that it knew may outlive it.
    def test_a_recorder_that_is_closed_starts_anew(self):
        for name, keys in SCENES.items():
            with self.subTest(state=name):
                self.configure(**keys)
                done = self.run_native(RELOAD, "library", RECORDER)
                self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)
                self.assertEqual(done.stdout.count("NEBTRACE(M) The current working directory is"), 3)
                if name == "recorded":
                    self.assertEqual(self.remains().names(), ["glGetError", "glGetError"])

    # Without a current context the driver answers as ever, whether the calls are recorded, tracked, or captured.
    def test_an_application_without_a_context_sees_no_difference(self):
        for keys in ({}, {"StartFrame": 2}, {"StartFrame": 2, "EndFrame": 3, "OptimizeRS": 1}, {"Profile": 1}):
            with self.subTest(keys=keys):
                self.configure(**keys)
                self.run_both(FAULTY, "never_current")
                if "Profile" not in keys:
                    frames = keys.get("EndFrame", 4) - keys.get("StartFrame", 0) + 1
                    remains = Remains(self.path("trace.nebt"))
                    self.assertEqual(len(remains.of("eglSwapBuffers")), frames)


class EndingsInAWindow(Endings):
    """The same while the file is written through a mapping."""

    keys = {"FileWindow": 1}


if __name__ == "__main__":
    unittest.main()
