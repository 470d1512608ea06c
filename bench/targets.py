"""What the tracer is to keep to, held against the tables of the same run."""
import modes
import report
import table_snapshot

LOADED = ["loaded, not recording", "loaded, not recording, 1,000 objects"]
TRACKING = ["tracking ahead of the range", "tracking ahead of the range, 1,000 objects"]
# What recording mapped adds, of what apitrace adds.
OF_APITRACE = {"ScalarCall": 0.5, "Bind": 0.5, "DrawFromClientArrays": 0.5,
               "PlainDrawFromClientArrays": 0.5, "TextureUpdate": 1.0, "PlainTextureUpdate": 1.0}


def at_most(what, value, limit, unit):
    return [what, f"{report.number(value)} {unit}".strip(), f"at most {report.number(limit)} {unit}".strip(),
            "met" if value <= limit else "missed"]


def at_least(what, value, limit):
    return [what, f"{value:.0%}", f"at least {limit:.0%}", "met" if value >= limit else "missed"]


def of_calls(calls):
    recording, other = modes.RECORDING.name, modes.UNDER_APITRACE.name
    if calls.has(modes.NATIVE.name, recording, other):
        for call, limit in OF_APITRACE.items():
            share = calls.added(recording, call) / calls.added(other, call)
            yield at_most(f"{call} recorded, of what apitrace adds", share, limit, "times")
    for mode in LOADED + TRACKING:
        if not calls.has(mode, modes.NATIVE.name, modes.NATIVE_CROWDED.name):
            continue
        yield at_most(f"ScalarCall, {mode}: added", calls.added(mode, "ScalarCall"), 40, "ns")
        worst = max(calls.calls, key=lambda call: calls.added(mode, call))
        yield at_most(f"the call with most added, {mode}: {worst}", calls.added(mode, worst), 40, "ns")


def of_programs(programs):
    yield at_least("build:use-vbo=false recorded, of its native frame rate",
                   programs.kept("build:use-vbo=false", modes.RECORDING), 0.85)


def of_threads(threads):
    yield at_most("two threads that record, per call, of one", threads.to_one(modes.RECORDING, 2), 1.5, "times")


def of_snapshot(snapshot):
    apart, at_once = snapshot.capture()
    yield at_most(f"capture of {table_snapshot.FULL}", apart, 16, "ms")
    yield at_most("the same, written at once", at_once, 16, "ms")


def show(tables):
    judges = {"calls": of_calls, "programs": of_programs, "threads": of_threads, "snapshot": of_snapshot}
    report.table("Targets", ["what", "measured", "target", ""],
                 [row for name, made in tables.items() for row in judges[name](made)])
