"""Whole programs: scenes of glmark2 on the software rasteriser, with a display that nobody sees."""
import re
import modes
import report

SCENES = ["build:use-vbo=false", "buffer:update-method=subdata", "texture", "jellyfish"]
MODES = [modes.NATIVE, modes.RECORDING, modes.UNDER_APITRACE]
SECONDS = 2.0


class Programs:
    """Frames per second by scene and mode."""

    def __init__(self, bench):
        with modes.display() as name:
            pairs = [(scene, mode) for scene in SCENES for mode in MODES]
            runs = bench.interleaved(pairs, lambda pair: self._rate(bench, name, *pair))
        self.rates = {scene: {mode.name: report.Sample.of(runs[scene, mode]) for mode in MODES} for scene in SCENES}

    @staticmethod
    def _rate(bench, name, scene, mode):
        printed, _ = bench.run(mode, ["glmark2-es2", "--off-screen", "-s", "320x240", "-b",
                                      f"{scene}:duration={SECONDS}"],
                               DISPLAY=name, EGL_PLATFORM="x11", LIBGL_ALWAYS_SOFTWARE="1", vblank_mode="0")
        found = re.search(r"FPS: (\d+)", printed)
        if not found:
            raise SystemExit(f"{mode.name}: no frame rate of {scene}:\n{printed}")
        return int(found.group(1))

    def kept(self, scene, mode):
        """The share of the native frame rate that is left."""
        return self.rates[scene][mode.name].median / self.rates[scene][modes.NATIVE.name].median

    def show(self):
        rows = [[scene, *(report.spread(rates[mode.name]) + ("" if mode is modes.NATIVE else
                                                             f", {self.kept(scene, mode):.0%}") for mode in MODES)]
                for scene, rates in self.rates.items()]
        report.table("Whole programs", ["frames per second of glmark2-es2", *(mode.name for mode in MODES)], rows)
