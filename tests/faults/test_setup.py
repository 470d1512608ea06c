"""A configuration or a driver that is not there, or not as it should be."""

import os
import signal
import unittest

from faults import FaultTest, program
from support import BUILD

FAULTY = program("faulty")
FAKE = os.path.join(BUILD, "tests", "fakehost")


class Setup(FaultTest):
    def check_ended_without_configuration(self, done):
        """The design: a recorder that was asked for and not told what to do ends the process at load."""
        self.assertEqual(done.returncode, 255)
        told = done.stdout[done.stdout.index("NEBTRACE(W)") :]
        self.assertEqual(
            told,
            f"NEBTRACE(W) WARNING: Config file not found: {self.folder}/nebtrace.cfg\n\n"
            "NEBTRACE(W) WARNING: Config file not found: /etc/nebtrace.cfg\n\n"
            "NEBTRACE(W) WARNING: Recording Aborted.Exit\n",
        )
        self.assertEqual(done.stderr, "")

    # The process ends before the application's first line, and the log says why.
    def test_without_a_configuration_the_process_ends_at_load(self):
        self.check_ended_without_configuration(self.run_traced(FAULTY, "frames", "3"))

    # One that may not be read is as good as none.
    def test_an_unreadable_configuration_is_none(self):
        self.configure()
        os.chmod(self.path("nebtrace.cfg"), 0)
        command = (FAULTY, "frames", "3")
        if os.geteuid() == 0:  # who may read everything
            command = ("setpriv", "--bounding-set", "-dac_override,-dac_read_search", *command)
        self.check_ended_without_configuration(self.run_traced(*command))

    # A folder in its place opens like a file and has no lines: the recorder goes by its defaults.
    def test_a_folder_in_place_of_the_configuration_has_no_settings(self):
        os.mkdir(self.path("nebtrace.cfg"))
        done = self.run_traced(FAULTY, "nothing")
        self.assertEqual((done.returncode, done.stderr), (99, ""))
        self.assertIn(f"NEBTRACE(M) Config file found: {self.folder}/nebtrace.cfg\n", done.stdout)
        self.assertIn("NEBTRACE(M) Trace file Open in: trace.nebt\n", done.stdout)
        self.assertEqual(self.remains().calls, [])

    # Lines that mean nothing, and numbers that are none, never end an application.
    def test_a_configuration_of_rubbish_is_survived(self):
        self.configure()
        good = self.read("nebtrace.cfg")
        with open(self.path("nebtrace.cfg"), "wb") as file:
            file.write(good.encode() + b"EndFrame = x\n=\n = 3\n[\n" + bytes(range(256)) * 50 + b"\nDebugInfo")
        self.run_both(FAULTY, "frames", "3")
        self.assertEqual(self.trace().counts()["eglSwapBuffers"], 1)

    # A program that was started without standard streams: the file must not take the place of one, or the log would go
    # into it.
    def test_closed_standard_streams_leave_the_recording_alone(self):
        self.configure(DebugInfo=1)
        for closed in (">&-", "<&- >&-", "<&- >&- 2>&-"):
            with self.subTest(closed=closed):
                done = self.run_traced("sh", "-c", f"exec {FAULTY} frames 5 {closed}")
                self.assertEqual(done.returncode, 0, done.stderr)
                remains = self.remains()
                self.assertEqual(remains.rest, b"")
                self.assertEqual(remains.textures(), list(range(5)))

    # Without EGL no application of EGL can run, with the recorder or without: it ends at its first call.
    def test_a_missing_egl_library_is_said(self):
        self.configure(EglLibraryPath="/missing/libEGL.so.1")
        done = self.run_traced("stdbuf", "-oL", FAULTY, "frames", "3")
        self.assertEqual(done.returncode, -signal.SIGSEGV)
        for line in (
            "NEBTRACE(M) Loading Host library.... /missing/libEGL.so.1\n",
            "NEBTRACE(M) RECORD. Could not load Host library.... /missing/libEGL.so.1 Please check library paths in "
            "nebtrace.cfg\n",
            "NEBTRACE(M) Error loading library eglGetDisplay\n",
            "NEBTRACE(M) NEBTrace EGL - ERROR: failed to load entry points from host library\n"
            "Please check library paths in nebtrace.cfg\n\n",
            "NEBTRACE(M) \nNEBTrace - aborting\n\n",
        ):
            self.assertIn(line, done.stdout)
        self.assertEqual(self.remains().calls, [])

    # The same for OpenGL ES 2, behind the calls of EGL, which are in the recording.
    def test_a_missing_gles2_library_is_said(self):
        self.configure(Es2LibraryPath="/missing/libGLESv2.so.2")
        done = self.run_traced("stdbuf", "-oL", FAULTY, "frames", "3")
        self.assertEqual(done.returncode, -signal.SIGSEGV)
        self.assertIn("NEBTRACE(M) RECORD. Could not load Host library.... /missing/libGLESv2.so.2", done.stdout)
        self.assertIn("NEBTRACE(M) NEBTrace ES2 - ERROR: failed to load entry points from host library\n", done.stdout)
        self.assertEqual(self.remains().names()[-1], "eglMakeCurrent")

    # OpenGL ES 1 is not missed by an application that does not use it.
    def test_a_missing_gles1_library_is_no_harm(self):
        self.configure(Es1LibraryPath="/missing/libGLESv1_CM.so.1")
        self.run_both(FAULTY, "frames", "3")
        self.assertEqual(self.remains().textures(), [0, 1, 2])

    # A driver that lacks an entry is closed as a whole, and the entry is named.
    def test_a_driver_without_an_entry_is_said(self):
        self.configure(EglLibraryPath=f"{FAKE}/libfakeEGL_without_eglWaitGL.so")
        done = self.run_traced("stdbuf", "-oL", FAULTY, "frames", "3")
        self.assertIn("NEBTRACE(M) Error loading library eglWaitGL\n", done.stdout)
        self.assertIn("NEBTRACE(M) \nNEBTrace - aborting\n\n", done.stdout)
        self.assertLess(done.returncode, 0)
        self.assertEqual(self.remains().calls, [])


if __name__ == "__main__":
    unittest.main()
