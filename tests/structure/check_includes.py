#!/usr/bin/env python3
"""Holds every include of the tree against the table of what may include what."""
import pathlib
import re
import sys

# A header may include its own room and the rooms named here. What declares wrappers stands apart, so that the
# shadow state and the core can call them without a circle of headers.
LOW = {"api", "support", "platform"}
HEADERS = {
    "api": set(),
    "support": set(),
    "platform": set(),
    "state": LOW,
    "net": LOW,
    "profiler": LOW | {"state"},
    "host": LOW | {"state"},
    "core": LOW | {"state", "net", "profiler"},
    "wrappers": LOW | {"state", "net", "profiler", "host", "core"},
    "trace": {"api"},
    "player": {"api", "trace"},
    "tools": {"api", "support", "profiler", "trace", "player"},
    "examples": set(),
}
# Sources of the library may reach across its rooms; nobody includes the rooms that are not named.
LIBRARY = {"api", "support", "platform", "state", "net", "profiler", "host", "core", "wrappers"}
SOURCES = {room: LIBRARY for room in LIBRARY}
SOURCES.update({room: HEADERS[room] for room in ("trace", "player", "tools", "examples")})
SOURCES["frontends"] = LIBRARY
HEADERS["frontends"] = LIBRARY
# Whatever reads bytes of others can be fuzzed.
SOURCES["fuzz"] = HEADERS["fuzz"] = LIBRARY | {"trace", "player", "tools"}
WRAPPER_DECLARATIONS = {"wrappers/egl.h", "wrappers/es1.h", "wrappers/es2.h"}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')


def room_of(path):
    """The room of a path relative to the root: src/core/x.h -> core, trace/x.h -> trace."""
    parts = path.parts
    return parts[1] if parts[0] == "src" else parts[0]


def target_room(root, source, name):
    """The room that an include names, or None when it is not a file of ours."""
    for base in (root / "src", root, source.parent):
        candidate = (base / name).resolve()
        if candidate.is_file() and root in candidate.parents:
            return room_of(candidate.relative_to(root))
    return None


def faults_of(root, source):
    path = source.relative_to(root)
    room = room_of(path)
    table = HEADERS if source.suffix in (".h", ".def") else SOURCES
    declares = "/".join(path.parts[1:]) in WRAPPER_DECLARATIONS
    for number, line in enumerate(source.read_text().splitlines(), 1):
        match = INCLUDE.match(line)
        target = target_room(root, source, match.group(1)) if match else None
        if target is None:
            continue
        allowed = {"api", "support"} if declares else table[room] | {room}
        if target not in allowed:
            yield f"{path}:{number}: {room} may not include {match.group(1)}"


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    sources = [f for room in SOURCES for place in (root / room, root / "src" / room)
               for f in sorted(place.rglob("*")) if f.suffix in (".h", ".cpp", ".def")]
    faults = [fault for source in sources for fault in faults_of(root, source)]
    print("\n".join(faults) or f"{len(sources)} files keep to the table")
    return 1 if faults or not sources else 0


if __name__ == "__main__":
    sys.exit(main())
