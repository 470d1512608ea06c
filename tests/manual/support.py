"""The command's own words: its subcommands and their options, as --help prints them."""
import os
import pathlib
import re
import subprocess

BUILD = pathlib.Path(os.environ["NEBTRACE_BUILD"])
SOURCE = pathlib.Path(os.environ["NEBTRACE_SOURCE"])
MANUAL = BUILD / "manual"
ENTRY = re.compile(r"^  (\S.*?)(?:  +|\n +)(\S.*)$", re.MULTILINE)


def help_of(*command):
    command = ["remote", "device", *command[1:]] if len(command) > 1 else command
    done = subprocess.run([BUILD / "tools/nebtrace", *command, "--help"], capture_output=True, text=True, check=True)
    return done.stdout


def entries(text, title):
    """Name and description of each entry under a title of a help text."""
    _, _, rest = text.partition(f"\n{title}:\n")
    return ENTRY.findall(rest.partition("\n\n")[0])


def subcommands(*command):
    return [name for name, _ in entries(help_of(*command), "Subcommands")]


def options(*command):
    """Names and description of each option: (["-o", "--output"], "FILE", "The trace file")."""
    found = []
    for term, text in entries(help_of(*command), "Options"):
        names = re.findall(r"(?<![\w-])--?[\w-]+", term)
        value = term.split(names[-1], 1)[1].strip()
        found.append((names, value, text))
    return found
