"""Single calls: the same program in each mode."""
import json
import modes
import report

DRIVER = {"GALLIUM_NOOP": "true", "EGL_PLATFORM": "surfaceless"}


def command(bench, mode, *options):
    grown = ["--grown=far.nebt"] if mode.streams else []
    return [bench.program("calls"), f"--objects={mode.objects}", f"--share={bench.share}",
            "--benchmark_format=json", *grown, *options]


class Calls:
    """Nanoseconds and bytes per call, by mode and call."""

    def __init__(self, bench, chosen):
        self.modes = chosen
        runs = bench.interleaved(chosen, lambda mode: self._times(bench, mode))
        self.calls = list(runs[chosen[0]][0])
        self.times = {mode.name: {call: report.Sample.of([run[call] for run in runs[mode]]) for call in self.calls}
                      for mode in chosen}
        self.bytes = {mode.name: self._bytes(bench, mode) for mode in chosen if mode.writes}

    def _times(self, bench, mode):
        printed, _ = bench.run(mode, command(bench, mode), **DRIVER)
        # The tracer's own lines may stand around it.
        runs = json.loads(printed[printed.index("{\n"):printed.rindex("}") + 1])["benchmarks"]
        self.iterations = {run["run_name"].split("/")[0]: run["iterations"] for run in runs}
        return {run["run_name"].split("/")[0]: run["real_time"] for run in runs}

    def _bytes(self, bench, mode):
        """By what a run grows that makes one kind of call only; what such a run sets up is small beside it."""
        sizes = {call: bench.run(mode, command(bench, mode, f"--benchmark_filter=^{call}/"), **DRIVER)[1]
                 for call in ["none", *self.calls]}
        return {call: max(sizes[call] - sizes["none"], 0) / self.iterations[call] for call in self.calls}

    def added(self, mode, call):
        """Nanoseconds that the mode named so adds to a call."""
        base = next(known.base for known in modes.MODES if known.name == mode)
        return self.times[mode][call].median - self.times[base][call].median

    def has(self, *names):
        return all(name in self.times for name in names)

    def rows(self):
        for call in self.calls:
            for mode in self.modes:
                sample = self.times[mode.name][call]
                base = self.times.get(mode.base, {}).get(call)
                size = report.number(self.bytes[mode.name][call]) if mode.writes else "–"
                yield [call, mode.name, report.spread(sample),
                       report.ratio(sample.median, base.median if base else 0),
                       report.number(sample.median - base.median) if base and mode.base != mode.name else "–", size]

    def show(self):
        report.table("Single calls", ["call", "mode", "ns per call (least to most)", "to native", "ns added",
                                      "bytes per call"], self.rows())
