"""The state that a recording in mid-run begins with: how long its capture holds the application, and its writing."""
import dataclasses
import re
import modes
import report

FIRST, LAST, FRAMES = 3, 4, 6
RANGE = {"StartFrame": FIRST, "EndFrame": LAST, "FileWindow": 8}
# The state is written at the end of the range with OptimizeRS, and otherwise in the call that captures it.
APART = modes.Mode("apart", {**RANGE, "OptimizeRS": 1}, writes=True)
AT_ONCE = modes.Mode("at once", {**RANGE, "OptimizeRS": 0}, writes=True)
DRIVER = {"EGL_PLATFORM": "surfaceless", "LIBGL_ALWAYS_SOFTWARE": "1"}


@dataclasses.dataclass(frozen=True)
class Size:
    textures: int
    width: int = 64
    height: int = 64

    def __str__(self):
        bytes_in_all = self.textures * self.width * self.height * 4
        return f"{self.textures:,} of {self.width}×{self.height}, {bytes_in_all / (1 << 20):.1f} MiB"


FULL = Size(500, 256, 132)
SIZES = [Size(10), Size(100), Size(1000), FULL]


class Snapshot:
    """Milliseconds by size: of the capture, of the writing, and of both in one call; and bytes."""

    def __init__(self, bench):
        runs = bench.interleaved(SIZES, lambda size: self._measure(bench, size))
        self.pauses = {size: [report.Sample.of(values) for values in zip(*found)] for size, found in runs.items()}

    @staticmethod
    def _first_calls(bench, mode, size):
        """Milliseconds of each frame's first call, and the size of the file."""
        printed, written = bench.run(mode, [bench.program("snapshot"), f"--textures={size.textures}",
                                            f"--width={size.width}", f"--height={size.height}", f"--frames={FRAMES}"],
                                     **DRIVER)
        return [int(text) / 1e6 for text in re.findall(r"frame \d+: (\d+) \d+", printed)], written

    def _measure(self, bench, size):
        apart, written = self._first_calls(bench, APART, size)
        at_once, _ = self._first_calls(bench, AT_ONCE, size)
        return apart[FIRST], apart[LAST + 1], at_once[FIRST], written / 1e6

    def capture(self):
        """At the size that the target is stated for: apart, and with the writing."""
        pauses = self.pauses[FULL]
        return pauses[0].median, pauses[2].median

    def show(self):
        rows = [[str(size), *(report.spread(pause) for pause in pauses[:3]), report.number(pauses[3].median)]
                for size, pauses in self.pauses.items()]
        report.table("The state at the beginning",
                     ["textures", "capture, ms (least to most)", "writing at the end, ms",
                      "capture and writing at once, ms", "MB in the file"], rows)
