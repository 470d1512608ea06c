"""Reads the project's Markdown: its command lines with the output that is shown below them, the marks of what is not
run, links, headings, and names in backticks."""

import dataclasses
import re

FENCE = re.compile(r"^( *)(`{3,})\s*(\S*)\s*$")
MARK = re.compile(r"^ *<!-- (not run|ends with): (.*) -->$")
PROMPT = "$ "
HEREDOC = re.compile(r"<<-?\s*['\"]?(\w+)['\"]?")


@dataclasses.dataclass
class Block:
    """What stands between two fences."""
    kind: str  # what the opening fence says: sh, console, ini, or nothing
    line: int  # of the opening fence, counted from 1
    lines: list
    not_run: str = None  # the reason that a mark above gives
    ends_with: int = 0  # the exit code of the last command


@dataclasses.dataclass
class Command:
    text: str
    line: int
    output: list  # the lines that are shown below it
    ends_with: int = 0


class BadMarkdown(Exception):
    pass


def blocks_of(text):
    """The fenced blocks of a document, each with the marks that stand right above it."""
    blocks, marks, block, indentation, fence = [], {}, None, "", None
    for number, line in enumerate(text.splitlines(), 1):
        if block is not None:
            if line.strip() == fence:
                blocks.append(block)
                block = None
            else:
                block.lines.append(line.removeprefix(indentation))
            continue
        opening, mark = FENCE.match(line), MARK.match(line)
        if opening:
            indentation, fence, kind = opening.groups()
            block = Block(kind, number, [], marks.pop("not run", None), int(marks.pop("ends with", 0)))
        elif mark:
            marks[mark.group(1)] = mark.group(2)
        elif marks:
            raise BadMarkdown(f"line {number}: a mark that is not right above a block of commands")
    if block is not None or marks:
        raise BadMarkdown("a block that does not end, or a mark at the end")
    return blocks


def _whole_command(lines):
    """Takes one command off the front: with the lines that it is continued on, and its here-document."""
    taken = [lines.pop(0)]
    while taken[-1].endswith("\\") and lines:
        taken.append(lines.pop(0))
    heredoc = HEREDOC.search("\n".join(taken))
    while heredoc and lines and taken[-1].strip() != heredoc.group(1):
        taken.append(lines.pop(0))
    return taken


def commands_of(block):
    """The commands of a block of the kinds "sh", all of whose lines are commands, and "console"."""
    commands, lines = [], list(block.lines)
    while lines:
        number = block.line + 1 + len(block.lines) - len(lines)
        prompted = lines[0].startswith(PROMPT)
        if block.kind == "sh" and (not lines[0].strip() or lines[0].startswith("#")):
            lines.pop(0)
        elif block.kind == "sh" or prompted:
            taken = _whole_command(lines)
            if prompted:
                taken[0] = taken[0][len(PROMPT):]
            commands.append(Command("\n".join(taken), number, []))
        elif commands:
            commands[-1].output.append(lines.pop(0))
        else:
            raise BadMarkdown(f"line {number}: output ahead of the first command")
    if commands:
        commands[-1].ends_with = block.ends_with
    return commands


def prose_of(text):
    """The text without its fenced blocks, line by line, so that numbers of lines stay."""
    lines, inside = [], None
    for line in text.splitlines():
        opening = FENCE.match(line)
        if inside is None and opening:
            inside = opening.group(2)
            lines.append("")
        elif inside is not None:
            inside = None if line.strip() == inside else inside
            lines.append("")
        else:
            lines.append(line)
    return "\n".join(lines)


def spans_of(text):
    """What stands in backticks in the prose. A span can go on in the next line."""
    return [" ".join(span.split()) for span in re.findall(r"(?<!`)`([^`]+)`(?!`)", prose_of(text))]


def links_of(text):
    prose = re.sub(r"(?<!`)`[^`]+`(?!`)", "", prose_of(text))
    return re.findall(r"\]\(([^)\s]+)\)", prose)


def anchors_of(text):
    """The names that headings can be linked by."""
    anchors = set()
    for heading in re.findall(r"^#+\s+(.*?)\s*$", prose_of(text), re.MULTILINE):
        name = re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")
        anchors.add(name)
    return anchors


def _without_numbers(line, home):
    """A line of output as far as it is the same in every run: 0 is 0, any other number is any other number."""
    line = line.replace(home, "/home/me") if home else line
    line = re.sub(r"0x[0-9a-f]+", "0x#", line)
    line = re.sub(r"(?<![A-Za-z_])\d+(\.\d+)*", lambda number: "0" if number.group() == "0" else "#", line)
    return " ".join(line.split())


def output_pattern(shown):
    """What output may look like of which a document shows these lines."""
    parts = []
    for line in shown:
        if line.strip() == "...":
            parts.append(r"(?:[^\n]*\n)*?")
        else:
            pieces = _without_numbers(line, None).split("...")
            parts.append("[^\n]*".join(re.escape(piece) for piece in pieces) + r"\n")
    return "".join(parts)


def is_as_shown(shown, output, home=None):
    """Whether a command's output is what the document shows, whose `...` stands for any lines, or any text in one."""
    lines = [_without_numbers(line, home) for line in output.splitlines()]
    while lines and not lines[-1]:
        lines.pop()
    return re.fullmatch(output_pattern(shown), "".join(line + "\n" for line in lines)) is not None
