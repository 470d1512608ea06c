"""Runs the command lines of one document in their order, in a folder that looks like a fresh checkout with its build,
and compares what they print with what the document shows. Ports, shared memory and the folder are the test's own.

    test_commands.py DOCUMENT [--show]    with --show, prints what each command printed, for whoever writes it down
"""

import os
import signal
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import BUILD, SOURCE, enter_namespace  # noqa: E402
from markdown import is_as_shown  # noqa: E402
from rules import commands_to_run, faults_of  # noqa: E402

LONGEST = 240  # seconds for one document, on a machine that has much else to do
PROGRAMS = [os.path.join(BUILD, folder) for folder in ("tools", "examples")]
# What a reader's shell may have and a test's must not, or the other way round.
UNSET = ("DISPLAY", "WAYLAND_DISPLAY", "LD_LIBRARY_PATH", "EGL_PLATFORM", "LIBGL_ALWAYS_SOFTWARE", "OLDPWD")


def link_all(source, folder):
    for name in os.listdir(source):
        os.symlink(os.path.join(source, name), os.path.join(folder, name))


def make_checkout(folder):
    """Links to all of the tree. What commands make in build/ or beside it stays in the scratch folder."""
    link_all(SOURCE, folder)
    build = os.path.join(folder, "build")
    if os.path.lexists(build):
        os.unlink(build)
    os.mkdir(build)
    link_all(BUILD, build)


def script_of(commands, folder):
    """One shell for the whole document, so that folders, variables and jobs carry over."""
    lines = ["trap 'kill $(jobs -p) 2>/dev/null' EXIT"]
    for number, command in enumerate(commands):
        place = os.path.join(folder, str(number))
        lines.append(f"{{\n{command.text}\n}} >{place}.out 2>&1\necho $? >{place}.code")
    return "\n".join(lines) + "\n"


def run(commands, checkout, folder):
    script = os.path.join(folder, "script")
    with open(script, "w", encoding="utf-8") as file:
        file.write(script_of(commands, folder))
    environment = {name: value for name, value in os.environ.items()
                   if name not in UNSET and not name.startswith("NEBTRACE_")}
    environment["PATH"] = os.pathsep.join(PROGRAMS + [environment["PATH"]])
    shell = subprocess.Popen(["bash", script], cwd=checkout, env=environment, stdin=subprocess.DEVNULL,
                             start_new_session=True)
    try:
        shell.wait(LONGEST)
    except subprocess.TimeoutExpired:
        print(f"not at its end after {LONGEST} s")
    for how in (signal.SIGTERM, signal.SIGKILL):
        try:
            os.killpg(shell.pid, how)
        except ProcessLookupError:
            break
    shell.wait()


def read(path):
    try:
        with open(path, encoding="utf-8", errors="replace") as file:
            return file.read()
    except FileNotFoundError:
        return None


def report(document, command, what, output):
    print(f"{document}:{command.line}: {what}\n    $ {command.text}\n  It printed:\n"
          + "".join(f"    {line}\n" for line in output.splitlines()))
    if command.output:
        print("  The document shows:\n" + "".join(f"    {line}\n" for line in command.output))


def show(command, place, home):
    output = (read(place + ".out") or "").replace(home, "/home/me")
    print("$ " + command.text, output, sep="\n", end="")


def check(document, command, place, home):
    """Whether a command ended and printed as the document says."""
    output, code = read(place + ".out"), read(place + ".code")
    if code is None:
        report(document, command, "did not come to its end", output or "")
        return False
    if int(code) != command.ends_with:
        report(document, command, f"ended with {int(code)} instead of {command.ends_with}", output)
        return False
    shown = list(command.output)
    while shown and not shown[-1].strip():
        shown.pop()
    if shown and not is_as_shown(shown, output, home):
        report(document, command, "printed something else", output)
        return False
    return True


def main(document, showing):
    with open(os.path.join(SOURCE, document), encoding="utf-8") as file:
        text = file.read()
    faults = faults_of(text)
    if faults:
        sys.exit("\n".join(f"{document}: {fault}" for fault in faults))
    commands = commands_to_run(text)
    if not commands:
        print(f"{document} has no commands to run")
        return
    enter_namespace("mount", "net")
    with tempfile.TemporaryDirectory(prefix="nebtrace-docs-") as folder:
        folder = os.path.realpath(folder)
        checkout, results = os.path.join(folder, "nebtrace"), os.path.join(folder, "results")
        os.mkdir(checkout)
        os.mkdir(results)
        make_checkout(checkout)
        run(commands, checkout, results)
        places = [os.path.join(results, str(number)) for number in range(len(commands))]
        if showing:
            for command, place in zip(commands, places):
                show(command, place, folder)
        good = [check(document, command, place, folder) for command, place in zip(commands, places)]
    print(f"{document}: {sum(good)} of {len(good)} commands do what it says")
    sys.exit(not all(good))


if __name__ == "__main__":
    main(sys.argv[1], "--show" in sys.argv)
