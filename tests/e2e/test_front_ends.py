"""The front ends as libraries, and where they are installed."""

import os
import shutil
import unittest

from support import BUILD, CUBE, FRONT_ENDS, ScratchTest, api_names

LIBRARIES = {"Egl": "libEGL.so.1", "Es1": "libGLESv1_CM.so.1", "Es2": "libGLESv2.so.2"}


class FrontEnds(ScratchTest):
    def exports(self, library):
        listing = self.run_command("nm", "-D", "--defined-only", "--format=posix", library)
        self.assertEqual(listing.returncode, 0, listing.stderr)
        names = {line.split()[0].split("@")[0] for line in listing.stdout.splitlines()}
        return {name for name in names if name.startswith(("egl", "gl"))}

    def host_libraries(self):
        """The machine's own libraries, as the recorder's configuration names them."""
        lines = self.record("--", "cat", "nebtrace.cfg").stdout.splitlines()
        settings = dict(line.split(" = ") for line in lines if " = " in line)
        return {name: settings[name + "LibraryPath"] for name in LIBRARIES}

    # A program that links a function of the machine's library must not fail to start under the recorder.
    def test_every_function_that_the_machines_libraries_export_is_exported(self):
        for name, host in self.host_libraries().items():
            with self.subTest(library=host):
                expected = self.exports(host)
                self.assertGreater(len(expected), 40)
                self.assertEqual(expected - self.exports(os.path.join(FRONT_ENDS, LIBRARIES[name])), set())

    # Extensions too have a plain name, so that a program can link any function that the recorder wraps.
    def test_every_wrapped_function_has_a_plain_name(self):
        for table, name in (("egl", "Egl"), ("es1", "Es1"), ("es2", "Es2")):
            exported = self.exports(os.path.join(FRONT_ENDS, LIBRARIES[name]))
            self.assertEqual(set(api_names(table).values()) - exported, set())

    # Nothing but API functions: a helper's symbol could take the place of an application's own.
    def test_the_front_ends_export_nothing_else(self):
        for library in LIBRARIES.values():
            path = os.path.join(FRONT_ENDS, library)
            listing = self.run_command("nm", "-D", "--defined-only", "--format=posix", path).stdout
            others = [line for line in listing.splitlines() if not line.startswith(("egl", "gl"))]
            self.assertEqual(others, [])

    # Applications find a library by its soname or by a plain name.
    def test_the_folder_has_the_versioned_and_the_plain_names(self):
        for name in ("libEGL.so", "libGLESv2.so", "libGLESv1_CM.so", "libGLES_CM.so", *LIBRARIES.values()):
            path = os.path.realpath(os.path.join(FRONT_ENDS, name))
            self.assertIn(os.path.basename(path), LIBRARIES.values())
        for library in LIBRARIES.values():
            dynamic = self.run_command("readelf", "-d", os.path.join(FRONT_ENDS, library)).stdout
            self.assertIn(f"soname: [{library}]", dynamic)

    # An installed tracer works from where it was installed to, and finds its own parts there.
    def test_an_installed_tracer_records(self):
        installed = self.run_command("cmake", "--install", BUILD, "--prefix", self.path("installed"))
        self.assertEqual(installed.returncode, 0, installed.stderr)
        shutil.move(self.path("installed"), self.path("moved"))
        done = self.run_command(
            self.path("moved/bin/nebtrace"), "record", "--frames", "0", "--", "sh", "-c",
            f"echo $LD_LIBRARY_PATH; exec {CUBE} --frames 2 --size 40x30",
        )  # fmt: skip
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(done.stdout.splitlines()[0], self.path("moved/lib/nebtrace/frontends"))
        self.assertTrue(self.trace().ends_with_footer())
        self.assertEqual(self.trace().counts()["eglSwapBuffers"], 1)


if __name__ == "__main__":
    unittest.main()
