"""Objects that come and go, ten thousand of each: the process keeps what it keeps without the recorder, and what the
shadow of the state is meant to keep."""

import os
import unittest

from faults import FaultTest, program
from support import BUILD

CHURN = program("churn")
NULL = os.path.join(BUILD, "tests", "faults", "null")
COUNT = 10000
SLACK = 512  # KiB by which two runs of the same program may differ
KEPT = {"tracked": 2560, "recorded": 256, "profiled": 4096}  # most bytes for each context and texture
NULL_HOSTS = {
    "EglLibraryPath": f"{NULL}/libEGL.so.1",
    "Es1LibraryPath": "/missing",
    "Es2LibraryPath": f"{NULL}/libGLESv2.so.2",
}
STATES = {"tracked": {"StartFrame": 1000000}, "recorded": {}, "profiled": {"Profile": 1}}


class Memory(FaultTest):
    def growth(self, run, count):
        """KiB by which the resident memory grows from a tenth of the way on."""
        done = run(CHURN, str(count))
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        warm, end = map(int, done.stderr.split())
        return end - warm

    def check_growth(self, count, most, **hosts):
        native = self.growth(self.run_native, count)
        told = {"native": native}
        for name, keys in STATES.items():
            with self.subTest(state=name):
                self.configure(**hosts, **keys)
                told[name] = self.growth(self.run_traced, count)
                self.assertLess(told[name], native + most[name])
        print(f"growth in KiB over {count * 9 // 10} contexts and textures: {told}")

    # Ahead of the range the shadow follows every object; with a driver that gives destroyed names out again, each new
    # object takes the place of an old one. The driver does nothing else: what grows is the recorder's.
    def test_memory_stays_flat(self):
        self.environment["LD_LIBRARY_PATH"] = NULL
        self.check_growth(COUNT, dict.fromkeys(STATES, SLACK), **NULL_HOSTS)

    # What the shadow is meant to keep: destroyed contexts and deleted textures stay in it, with the texture's last
    # image (of 1 KiB here), until their names come again. With names that never do, this is all that grows.
    def test_memory_grows_by_what_the_shadow_keeps(self):
        self.environment.update(LD_LIBRARY_PATH=NULL, NULL_NEW_NAMES="1")
        self.check_growth(COUNT, {name: COUNT * kept // 1024 for name, kept in KEPT.items()}, **NULL_HOSTS)

    # A real driver, which keeps something of its own.
    def test_memory_stays_flat_on_a_real_driver(self):
        self.check_growth(200, dict.fromkeys(STATES, 2048))


if __name__ == "__main__":
    unittest.main()
