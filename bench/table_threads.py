"""Several threads that make calls at once, each with a context of its own."""
import os
import re
import modes
import report
from table_calls import DRIVER

COUNTS = [1, 2, 4]
MODES = [modes.NATIVE, modes.RECORDING, modes.UNDER_APITRACE]
ROUNDS = 20000


class Threads:
    """Nanoseconds per call on each thread, by mode and number of threads."""

    def __init__(self, bench):
        pairs = [(mode, count) for mode in MODES for count in COUNTS]
        runs = bench.interleaved(pairs, lambda pair: self._time(bench, *pair))
        self.times = {mode.name: {count: report.Sample.of(runs[mode, count]) for count in COUNTS} for mode in MODES}

    @staticmethod
    def _time(bench, mode, count):
        printed, _ = bench.run(mode, [bench.program("threads"), f"--threads={count}",
                                      f"--rounds={ROUNDS // bench.share}"], **DRIVER)
        times = [float(text) for text in re.findall(r"nanoseconds per call: ([\d.]+)", printed)]
        return sum(times) / len(times)

    def to_one(self, mode, count):
        times = self.times[mode.name]
        return times[count].median / times[1].median

    def show(self):
        rows = [[mode.name, str(count), report.spread(sample), f"×{self.to_one(mode, count):.2f}",
                 report.number(sample.median / count)]
                for mode in MODES for count, sample in self.times[mode.name].items()]
        report.table("Several threads", ["mode", "threads", "ns per call of a thread (least to most)", "to one thread",
                                         "ns between calls of any"], rows,
                     f"Threads beyond the machine's {os.cpu_count()} cores share them.")
