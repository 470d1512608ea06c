"""What an application can notice of the tracer: docs/limits.md lists it."""

import os
import unittest

from transparency import PROFILED, WHOLE, Observed, TransparencyTest
from support import BUILD, enter_namespace

NOTICE = os.path.join(BUILD, "tests", "transparency", "notice")
ALONE = [
    "eglGetError 0x3008",  # EGL_BAD_DISPLAY
    "glGetError 0x0500",  # GL_INVALID_ENUM
    "glGetAttribLocation of no program -1",
    "glGetError 0x0501",  # GL_INVALID_VALUE
    "glGenFencesNV is not exported",
    "eglBindAPI(0x433) 0",
]
TRACED = [
    "eglGetError 0x3000",  # EGL_SUCCESS
    "glGetError 0x0000",  # GL_NO_ERROR
    "glGetAttribLocation of no program -1",
    "glGetError 0x0000",
    "glGenFencesNV is exported",
    "eglBindAPI(0x433) 1",
]


class Noticed(TransparencyTest):
    # Errors are gone, wrapped functions are there whether the driver has them or not, and a value that no API has is
    # the tracer's. Results are the driver's.
    def test_what_an_application_notices(self):
        self.assertEqual(self.observe_alone(NOTICE), Observed(0, ALONE, [], []))
        for way in (WHOLE, PROFILED):
            with self.subTest(way=way.options):
                self.assertEqual(self.observe_traced(way, NOTICE), Observed(0, TRACED, [], []))


if __name__ == "__main__":
    enter_namespace("mount", "net")
    unittest.main()
