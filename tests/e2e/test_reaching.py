"""Programs reach the API in four ways, and through functions that the recorder does not wrap."""

import unittest

from support import ScratchTest, program

FRAME = [
    "eglGetDisplay",
    "eglInitialize",
    "eglBindAPI",
    "eglChooseConfig",
    "eglCreateContext",
    "eglCreatePbufferSurface",
    "eglMakeCurrent",
    "glClearColor",
    "glClear",
    "glReadPixels",
    "eglSwapBuffers",
]


class Reaching(ScratchTest):
    def record_frame(self, *command):
        self.record_well("--frames", "0", "--", *command)
        trace = self.trace()
        self.assertTrue(trace.ends_with_footer())
        return trace

    # The ordinary way.
    def test_a_linked_program_is_recorded(self):
        self.assertEqual(self.record_frame(program("reach_linked")).names(), FRAME)

    # Some programs open the unversioned names first and would pass the recorder by.
    def test_a_program_that_opens_the_libraries_is_recorded_under_both_names(self):
        for names in (("libEGL.so.1", "libGLESv2.so.2"), ("libEGL.so", "libGLESv2.so")):
            with self.subTest(names=names):
                self.assertEqual(self.record_frame(program("reach_loaded"), "global", *names).names(), FRAME)

    # Libraries opened locally are in nobody's global scope; the front ends must not rely on being there.
    def test_a_program_that_opens_the_libraries_locally_is_recorded(self):
        for names in (("libEGL.so.1", "libGLESv2.so.2"), ("libEGL.so", "libGLESv2.so")):
            with self.subTest(names=names):
                self.assertEqual(self.record_frame(program("reach_loaded"), "local", *names).names(), FRAME)

    # eglGetProcAddress answers with the wrappers also for core functions.
    def test_a_program_that_asks_egl_for_every_function_is_recorded(self):
        trace = self.record_frame(program("reach_loaded"), "procaddress", "libEGL.so.1", "-")
        self.assertEqual([name for name in trace.names() if name != "eglGetProcAddress"], FRAME)
        self.assertEqual(trace.counts()["eglGetProcAddress"], 12)

    # Any program that runs without the recorder runs with it: newer functions go straight to the host. The
    # program checks their results itself.
    def test_a_program_that_links_newer_functions_runs_and_the_older_ones_are_recorded(self):
        trace = self.record_frame(program("newer_api"))
        self.assertEqual(
            trace.names()[-5:], ["glGenBuffers", "glBindBuffer", "glBufferData", "glGetError", "eglSwapBuffers"]
        )

    # An extension function that is linked, not asked for, has its host entry filled before its first call.
    def test_linked_extension_functions_reach_the_host_and_are_recorded(self):
        trace = self.record_frame(program("linked_extension"))
        self.assertEqual(
            trace.names()[-5:],
            ["glGenVertexArraysOES", "glBindVertexArrayOES", "glIsVertexArrayOES", "glGetError", "eglSwapBuffers"],
        )

    # OpenGL ES 1 has a library and wrappers of its own.
    def test_a_gles1_program_is_recorded(self):
        trace = self.record_frame(program("es1"))
        numbers = {record.name: record.id for record in trace.records}
        self.assertIn("glVertexPointer", numbers)
        self.assertTrue(all(3000 <= number < 4000 for name, number in numbers.items() if name.startswith("gl")))


if __name__ == "__main__":
    unittest.main()
