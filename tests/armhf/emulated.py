"""What the tests of recordings from a 32-bit device share: running its programs under the emulator."""

import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import BUILD, ScratchTest  # noqa: E402

ARMHF_BUILD = os.environ["NEBTRACE_ARMHF_BUILD"]
EMULATOR = ("qemu-arm", "-L", os.environ["NEBTRACE_ARMHF_SYSROOT"])

EXAMPLES = ("cube", "client_arrays", "cube_map", "programs", "stages", "lighting", "sprites", "stages_es1")
# Recorded or not, Mesa draws a few of its pixels otherwise on the one machine than on the other.
DRAWN_OTHERWISE = "render_target"


class EmulatedTest(ScratchTest):
    """On both machines Mesa draws without compiling code for it: that would take minutes under the emulator, and
    differ from one kind of processor to another."""

    def setUp(self):
        super().setUp()
        self.environment["GALLIUM_DRIVER"] = "softpipe"

    def emulated(self, *command):
        return self.run_command(*EMULATOR, os.path.join(ARMHF_BUILD, *command[0].split("/")), *command[1:])

    def record_there(self, name, trace, *options):
        """Records an example on the 32-bit device. The emulator runs no program that an emulated one starts, so it
        is named as the application."""
        done = self.emulated("tools/nebtrace", "record", *options, "-o", trace, "--", *EMULATOR,
                             *self.example(ARMHF_BUILD, name))
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return trace

    def record_here(self, name, trace, *options):
        self.record_well(*options, "-o", trace, "--", *self.example(BUILD, name))
        return trace

    @staticmethod
    def example(build, name):
        return (os.path.join(build, "examples", name), "--frames", "8", "--size", "64x48")
