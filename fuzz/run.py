#!/usr/bin/env python3
"""Runs every fuzz target: run.py BUILD SECONDS. Fails when one of them has found something, and says where it is.

What a target has learned stays in BUILD/corpora for the next run.
"""
import concurrent.futures
import os
import pathlib
import re
import shlex
import subprocess
import sys

# An input that takes longer than this, in seconds, or more memory, in MiB, is a finding.
SLOWEST = 20
MOST_MEMORY = 4096
AT_A_TIME = min(2, os.cpu_count() or 1)
ROW = "{:<16} {:>12} {:>9} {:>15} {:>8}  {}"


class Outcome:
    """What came of one target, from the last lines of its log."""

    def __init__(self, name, log, failed, findings):
        self.name = name
        self.log = log
        self.failed = failed
        self.findings = findings
        text = log.read_text(errors="replace")
        edges = re.search(r"\((\d+) inline 8-bit counters\)", text)
        steps = re.findall(r"^#(\d+)\t\S+ +cov: (\d+) ft: \d+ corp: (\d+)/", text, re.M)
        self.edges = edges.group(1) if edges else "?"
        self.executions, self.reached, self.corpus = steps[-1] if steps else ("?", "?", "?")
        speed = re.search(r"^stat::average_exec_per_sec: +(\d+)", text, re.M)
        self.speed = speed.group(1) if speed else "?"

    def row(self):
        return ROW.format(self.name, self.executions, self.speed, f"{self.reached} of {self.edges}", self.corpus,
                          "FOUND" if self.failed else "nothing")


def run(build, name, seconds):
    source = pathlib.Path(__file__).parent
    corpus, findings, log = (build / folder / name for folder in ("corpora", "findings", "logs"))
    for folder in (corpus, findings, log.parent):
        folder.mkdir(parents=True, exist_ok=True)
    before = set(findings.iterdir())
    command = [build / "fuzz" / f"fuzz_{name}", f"-dict={source / 'dictionaries' / name}.dict",
               f"-max_total_time={seconds}", f"-timeout={SLOWEST}", f"-rss_limit_mb={MOST_MEMORY}",
               f"-artifact_prefix={findings}/", "-close_fd_mask=1", "-print_final_stats=1", corpus,
               build / "seeds" / name]
    with log.open("w") as output:
        code = subprocess.run(command, stdout=output, stderr=output, cwd=findings).returncode
    return Outcome(name, log, code != 0, sorted(set(findings.iterdir()) - before))


def report(outcome):
    print(f"\n{outcome.name} has found something; {outcome.log} tells what.")
    for finding in outcome.findings:
        print(f"  {finding}")
        print(f"  again: {shlex.quote(str(outcome.log.parents[1] / 'fuzz' / ('fuzz_' + outcome.name)))} "
              f"{shlex.quote(str(finding))}")
    print("".join(f"  {line}\n" for line in outcome.log.read_text(errors="replace").splitlines()
                  if re.search(r"ERROR|runtime error|does not hold|^SUMMARY|^ +#\d ", line)))


def main():
    build, seconds = pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2])
    names = sorted(path.name[len("fuzz_"):] for path in (build / "fuzz").glob("fuzz_*") if path.is_file())
    print(ROW.format("target", "executions", "a second", "edges reached", "corpus", "found"))
    outcomes = []
    with concurrent.futures.ThreadPoolExecutor(AT_A_TIME) as pool:
        for outcome in pool.map(lambda name: run(build, name, seconds), names):
            outcomes.append(outcome)
            print(outcome.row(), flush=True)
    failed = [outcome for outcome in outcomes if outcome.failed]
    for outcome in failed:
        report(outcome)
    print(f"\n{len(outcomes) - len(failed)} targets have found nothing, {len(failed)} something")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
