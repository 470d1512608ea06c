"""What the documents may leave unrun, and for what reasons."""

import re
import shlex
import subprocess

from markdown import BadMarkdown, blocks_of, commands_of, prose_of, spans_of

# A reason, and what a command is like that has it. A command that is like none of them is run.
REASONS = {
    "installs packages": r"(^|\s)(\./dev (setup|demo|test|arm|fuzz|bench|lint|tables)\b|apt(-get)? )",
    "builds for minutes": r"(^|\s)(\./dev [a-z]|cmake |ctest |ninja |\.ci/run|build/(tests|asan)/)",
    "needs a second machine": r"(^|\s)(ssh|scp|rsync) |\b192\.168\.|(^|\s)git clone ",
    "needs a device's toolchain": r"\bqemu-arm\b|\barmhf\b|--preset qnx\b|\bqnx",
    "needs a debugger": r"(^|\s)(gdb|coredumpctl|apitrace) ",
}
# What prepares a block's other commands, and is no reason by itself.
GLUE = re.compile(r"^(cd|export|mkdir|cat|unset|tar)\b|^[A-Z_]+=\S+$")
COMMAND_BLOCKS = ("sh", "console")
# A line outside of the blocks of commands that looks like one.
STRAY = re.compile(r"^(\$ |nebtrace [a-z]|\./dev )")


def _is_for(reason, command):
    return re.search(REASONS[reason], command.text, re.MULTILINE) is not None


def faults_of(text):
    """What is wrong with a document's blocks and marks, as texts."""
    try:
        blocks = blocks_of(text)
    except BadMarkdown as fault:
        return [str(fault)]
    faults = []
    for block in blocks:
        where = f"line {block.line}: "
        if block.kind not in COMMAND_BLOCKS:
            if block.not_run is not None or block.ends_with:
                faults.append(where + "a mark above a block that has no commands")
            faults += [f"line {number}: a command in a block that is not marked `sh` or `console`"
                       for number, line in enumerate(block.lines, block.line + 1) if STRAY.match(line)]
            continue
        try:
            faults += [where + fault for fault in _faults_of_commands(block, commands_of(block))]
        except BadMarkdown as fault:
            faults.append(str(fault))
    return faults


def _faults_of_commands(block, commands):
    if not commands:
        return ["a block of commands without one"]
    if block.not_run is None:
        return [f"`{command.text}` is not for a test: mark it `not run: {reason}`"
                for command in commands for reason in REASONS if _is_for(reason, command)]
    if block.not_run not in REASONS:
        return [f"no reason not to run it: {block.not_run}"]
    real = [command for command in commands if not GLUE.match(command.text)]
    if not real:
        return ["a mark that is not needed"]
    return [f"a mark that is not needed for `{command.text}`"
            for command in real if not _is_for(block.not_run, command)]


def commands_to_run(text):
    return [command for block in blocks_of(text) if block.kind in COMMAND_BLOCKS and block.not_run is None
            for command in commands_of(block)]


def mentioned_commands(text):
    """Command lines that no test runs: those of marked blocks, indented ones, and those in the prose."""
    marked = [command.text for block in blocks_of(text) if block.kind in COMMAND_BLOCKS and block.not_run is not None
              for command in commands_of(block)]
    indented = [line.strip() for line in prose_of(text).splitlines() if re.match(r" {4,}nebtrace [a-z]", line)]
    return marked + indented + [span for span in spans_of(text) if re.match(r"(nebtrace|\./dev) ", span)]


def words_of(command, name):
    """The words behind the program's name, up to where the application's begin."""
    match = re.search(rf"(?<!--target )(?:^|(?<=[\s/;|&(])){re.escape(name)}\s+([^|;&#]*)", command)
    if not match:
        return None
    try:
        words = shlex.split(match.group(1).replace("\\\n", " "))
    except ValueError:
        words = match.group(1).split()
    return words[: words.index("--")] if "--" in words else words


class Help:
    """What `nebtrace` says of its options."""

    def __init__(self, nebtrace):
        self.nebtrace = nebtrace
        self.known = {}

    def _text(self, *words):
        if words not in self.known:
            done = subprocess.run([self.nebtrace, *words, "--help"], stdout=subprocess.PIPE, text=True, timeout=60,
                                  check=False)
            self.known[words] = done.stdout if done.returncode == 0 else ""
        return self.known[words]

    def subcommands(self, *words):
        listed = self._text(*words).partition("Subcommands:\n")[2]
        return set(re.findall(r"^  ([a-z][a-z-]*)", listed, re.MULTILINE))

    def options(self, *words):
        listed = self._text(*words).partition("Options:\n")[2].partition("Subcommands:")[0]
        # Names and value, as "-o,--output FILE" or "-o, --output FILE"; what they are for is further to the right.
        heads = [re.split(r"\s{2,}", line)[0] for line in re.findall(r"^  (-.*)$", listed, re.MULTILINE)]
        return {option for head in heads for option in re.findall(r"(?<![\w-])--?[A-Za-z][\w-]*", head)}

    def fault_of(self, command):
        """What `nebtrace` would not take of a command line, or None."""
        words = words_of(command, "nebtrace")
        if words is None:
            return None
        if not words or words[0].startswith("-"):
            options = self.options()
        elif words[0] not in self.subcommands():
            return f"`{command}`: there is no nebtrace {words[0]}"
        else:
            options = self.options(words[0])
            for inner in self.subcommands(words[0]) & set(words[1:]):
                options |= self.options(words[0], "127.0.0.1", inner)
        given = {word.partition("=")[0] for word in words if re.match(r"--?[a-zA-Z]", word)}
        unknown = {option for option in given if option not in options
                   and not (re.fullmatch(r"-([a-z])\1+", option) and option[:2] in options)}
        return f"`{command}`: {', '.join(sorted(unknown))}: no such option" if unknown else None


def dev_fault_of(command, dev):
    """Whether ./dev has the command, by its own text."""
    words = words_of(command, "./dev")
    if not words or re.search(rf"^    {re.escape(words[0])}\)", dev, re.MULTILINE):
        return None
    return f"`{command}`: there is no ./dev {words[0]}"


def unknown_keys(text, keys):
    """Settings of `ini` blocks, and of here-documents, that the configuration does not know."""
    lines = [line for block in blocks_of(text) for line in block.lines
             if block.kind == "ini" or re.match(r"[A-Z][A-Za-z0-9]+ = ", line)]
    named = {match.group(1) for match in (re.match(r"\s*([A-Za-z0-9]+)\s*=", line) for line in lines) if match}
    return named - keys

