"""The picture in the README is what a replay draws."""

import os
import sys
import unittest

from PIL import Image, ImageChops, ImageStat

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import CUBE, SOURCE, ScratchTest  # noqa: E402

# Other versions of the rasteriser round otherwise.
CLOSE = 1.0


class Picture(ScratchTest):
    # What `./dev demo` records and replays; its last frame.
    def test_the_readmes_picture_is_a_replayed_frame(self):
        self.record_well("--frames", "10-19", "-o", "cube.nebt", "--", CUBE, "--frames", "21")
        done = self.replay("--frames", "9-9", "--out", "frames", "cube.nebt")
        self.assertEqual(done.returncode, 0, done.stderr)
        with Image.open(self.path("frames/frame_00009.png")) as replayed, \
                Image.open(os.path.join(SOURCE, "docs", "cube.png")) as shown:
            self.assertEqual(replayed.size, shown.size)
            difference = ImageChops.difference(replayed.convert("RGB"), shown.convert("RGB"))
        self.assertLess(max(ImageStat.Stat(difference).mean), CLOSE)


if __name__ == "__main__":
    unittest.main()
