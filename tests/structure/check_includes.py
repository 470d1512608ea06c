#!/usr/bin/env python3
"""Holds every include of the tree against the table of what may include what, and that table against the one in
ARCHITECTURE.md."""
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
    "bench": set(),
}
# Sources of the library may reach across its rooms; nobody includes the rooms that are not named.
LIBRARY = {"api", "support", "platform", "state", "net", "profiler", "host", "core", "wrappers"}
SOURCES = {room: LIBRARY for room in LIBRARY}
SOURCES.update({room: HEADERS[room] for room in ("trace", "player", "tools", "examples", "bench")})
SOURCES["frontends"] = LIBRARY
HEADERS["frontends"] = LIBRARY
# Whatever reads bytes of others can be fuzzed.
SOURCES["fuzz"] = HEADERS["fuzz"] = LIBRARY | {"trace", "player", "tools"}
# These know nothing of GL, neither its headers nor what stands for them.
WITHOUT_GL = {"platform", "support", "net", "core", "trace"}
GL = re.compile(r'^\s*#\s*include\s+(<(EGL|GLES|GLES2|GLES3|KHR)/|"api/types\.h"|"api/es1_enums\.h")')
# What holds all of this in place, and may include whatever it likes.
FREE = {"tests"}
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
    table = HEADERS if source.suffix in (".h", ".inc", ".def") else SOURCES
    declares = "/".join(path.parts[1:]) in WRAPPER_DECLARATIONS
    for number, line in enumerate(source.read_text().splitlines(), 1):
        if room in WITHOUT_GL and GL.match(line):
            yield f"{path}:{number}: {room} knows no GL"
        match = INCLUDE.match(line)
        target = target_room(root, source, match.group(1)) if match else None
        if target is None:
            continue
        allowed = {"api", "support"} if declares else table[room] | {room}
        if target not in allowed:
            yield f"{path}:{number}: {room} may not include {match.group(1)}"


def is_source(path):
    return path.suffix in (".h", ".cpp", ".inc", ".def")


def unknown_rooms(root):
    """Folders with sources that no table names."""
    known = set(SOURCES) | FREE | {"src"}
    folders = [folder for top in (root, root / "src") for folder in top.iterdir()
               if folder.is_dir() and not folder.name.startswith((".", "build"))]
    return [f"{folder.relative_to(root)}: no table says what it may include" for folder in folders
            if folder.name not in known and any(is_source(path) for path in folder.rglob("*"))]


def told_rooms(root):
    """The table of ARCHITECTURE.md: each room with those that its headers may include."""
    text = (root / "ARCHITECTURE.md").read_text()
    rows = re.findall(r"^\| `(?:src/)?(\w+)/` \|.*\| ([^|]*) \|$", text, re.MULTILINE)
    return {room: set() if told == "nothing" else set(told.split(", ")) for room, told in rows if told != "anything"}


def faults_of_table(root):
    told = told_rooms(root)
    for room in sorted(set(told) | set(HEADERS)):
        if told.get(room) != HEADERS.get(room, set()) - {room}:
            yield f"ARCHITECTURE.md: {room}: told {told.get(room)}, held {HEADERS.get(room)}"


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    sources = [f for room in SOURCES for place in (root / room, root / "src" / room)
               for f in sorted(place.rglob("*")) if is_source(f)]
    faults = [fault for source in sources for fault in faults_of(root, source)]
    faults += [*unknown_rooms(root), *faults_of_table(root)]
    print("\n".join(faults) or f"{len(sources)} files keep to the table")
    return 1 if faults or not sources else 0


if __name__ == "__main__":
    sys.exit(main())
