"""Holds the documents together: their blocks and marks, links and anchors, the options of commands that no test runs,
and the names of files and functions in those that lead through the code. And the reading of Markdown itself."""

import fnmatch
import functools
import glob
import os
import re
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
from support import NEBTRACE, SOURCE  # noqa: E402
from markdown import BadMarkdown, anchors_of, blocks_of, commands_of, is_as_shown, links_of, prose_of, spans_of  # noqa: E402
from rules import Help, commands_to_run, dev_fault_of, faults_of, mentioned_commands, unknown_keys  # noqa: E402

GUIDES = ("ARCHITECTURE.md", "CONTRIBUTING.md")  # they name functions, all of which must be there
FILE_NAME = re.compile(r"[\w./*-]+(\.(cpp|h|inc|def|py|txt|md|json|cmake|sh|supp|dict|map)|/)")
CODE_NAME = re.compile(r"~?[A-Za-z_]\w+(::~?\w+)*(?<!_)")
PARTS = "docs/man/"  # what manual pages are made of, which are not read as they are
NO_SOURCE = ("build", ".git")  # folders that are made


def documents():
    names = glob.glob("*.md", root_dir=SOURCE) + glob.glob("docs/**/*.md", root_dir=SOURCE, recursive=True)
    return {name: read(name) for name in sorted(names)}


def read(name):
    with open(os.path.join(SOURCE, name), encoding="utf-8") as file:
        return file.read()


@functools.lru_cache
def tree():
    """The files and folders of the tree, relative to its root; folders end with a slash."""
    found = []
    for folder, folders, files in os.walk(SOURCE):
        top = folder == SOURCE
        folders[:] = [name for name in folders if not (top and name.startswith(NO_SOURCE)) and name != "__pycache__"]
        place = os.path.relpath(folder, SOURCE)
        found += [os.path.normpath(os.path.join(place, name)) for name in files]
        found += [os.path.normpath(os.path.join(place, name)) + "/" for name in folders]
    return found


@functools.lru_cache
def words_of_code():
    """All words of the sources, so that a function that was renamed is missed."""
    words = set()
    for name in tree():
        if name.endswith((".cpp", ".h", ".inc", ".def", ".py", ".txt", ".cmake", ".json", ".supp", ".map", "dev")):
            words |= set(re.findall(r"\w+", read(name)))
    return words


def paths_of(name):
    """The files or folders of that name: by the path, or by the end of it where that is clear from the text."""
    return [path for path in tree() if fnmatch.fnmatchcase("/" + path, "*/" + name.lstrip("./"))]


def is_in(word, files):
    """Whether one of the files, in backticks, has the word."""
    return any(re.search(rf"\b{word}\b", read(path)) for file in re.findall(r"`([^`]+)`", files)
               for path in paths_of(file) if not path.endswith("/"))


class Documents(unittest.TestCase):
    maxDiff = None

    # A block of commands that no test runs says why, and no other does.
    def test_commands_are_run_or_say_why_not(self):
        for name, text in documents().items():
            self.assertEqual(faults_of(text), [], name)

    def test_commands_that_no_test_runs_have_options_that_there_are(self):
        helping, dev = Help(NEBTRACE), read("dev")
        for name, text in documents().items():
            faults = [helping.fault_of(command) or dev_fault_of(command, dev)
                      for command in mentioned_commands(text)]
            self.assertEqual([fault for fault in faults if fault], [], name)

    def test_links_lead_somewhere(self):
        texts = documents()
        for name, text in texts.items():
            for link in links_of(text):
                if re.match(r"[a-z]+:", link):
                    continue
                path, _, anchor = link.partition("#")
                target = os.path.normpath(os.path.join(os.path.dirname(name), path)) if path else name
                self.assertTrue(os.path.exists(os.path.join(SOURCE, target)), f"{name}: {link}")
                if anchor:
                    self.assertIn(anchor, anchors_of(texts[target]), f"{name}: {link}")

    # Every document can be found from the README.
    def test_every_document_is_reached_from_the_readme(self):
        texts, reached, ahead = documents(), set(), ["README.md"]
        while ahead:
            name = ahead.pop()
            if name in reached or name not in texts:
                continue
            reached.add(name)
            ahead += [os.path.normpath(os.path.join(os.path.dirname(name), link.partition("#")[0]))
                      for link in links_of(texts[name]) if not re.match(r"[a-z]+:|#", link)]
        self.assertEqual({name for name in texts if not name.startswith(PARTS)} - reached, set())

    def test_files_that_documents_name_are_there(self):
        for name, text in documents().items():
            missing = [span for span in spans_of(text) if FILE_NAME.fullmatch(span)
                       and not span.startswith(("/", "build/")) and not paths_of(span.replace("NAME", "*"))]
            self.assertEqual(missing, [], name)

    # Limits and oddities name the tests that pin them.
    def test_tests_that_documents_name_are_there(self):
        tests = "".join(read(path) for path in tree() if path.startswith("tests/") and path.endswith((".cpp", ".py")))
        known = {f"{suite}.{name}" for suite, name in re.findall(r"\bTEST(?:_F|_P)?\((\w+),\s*(\w+)\)", tests)}
        known |= set(re.findall(r"def (test_\w+)", tests))
        for document, text in documents().items():
            named = [span for span in spans_of(text) if re.fullmatch(r"[A-Z]\w+\.[A-Z]\w+|test_\w+", span)]
            self.assertEqual([name for name in named if name not in known], [], document)

    def test_functions_that_the_guides_name_are_there(self):
        for name in GUIDES:
            missing = [span for span in spans_of(read(name)) if CODE_NAME.fullmatch(span)
                       and not set(re.findall(r"\w+", span)) <= words_of_code()]
            self.assertEqual(missing, [], name)

    # A name with a file behind it, `CFrame` (`frame.h`), is in that file.
    def test_functions_are_in_the_files_that_the_guides_name(self):
        for name in GUIDES:
            pairs = re.findall(r"`([\w:]+)`\s+\((`[\w./*]+`(?:,\s+`[\w./*]+`)*)", prose_of(read(name)))
            self.assertTrue(pairs or name != GUIDES[0])
            wrong = [(function, files) for function, files in pairs
                     if CODE_NAME.fullmatch(function) and not is_in(function.rpartition(":")[2], files)]
            self.assertEqual(wrong, [], name)

    def test_settings_that_documents_show_are_known(self):
        keys = set(re.findall(r"^CONFIG_KEY\(\"\w+\", (\w+),", read("api/config_keys.def"), re.MULTILINE))
        self.assertIn("TraceFile", keys)
        for name, text in documents().items():
            self.assertEqual(unknown_keys(text, keys), set(), name)


class Reading(unittest.TestCase):
    def commands(self, text):
        return [(command.text, command.output) for command in commands_to_run(text)]

    def test_a_console_block_has_prompts_and_output(self):
        text = "```console\n$ nebtrace info a\nsize 3\n$ ls \\\n    b\n```\n"
        self.assertEqual(self.commands(text), [("nebtrace info a", ["size 3"]), ("ls \\\n    b", [])])

    def test_every_line_of_a_shell_block_is_a_command(self):
        text = "```sh\n# first\ncd x\ncat >f <<END\nKey = 1\nEND\nls\n```\n"
        self.assertEqual([command for command, _ in self.commands(text)], ["cd x", "cat >f <<END\nKey = 1\nEND", "ls"])

    def test_output_ahead_of_a_command_is_refused(self):
        with self.assertRaises(BadMarkdown):
            commands_of(blocks_of("```console\nsize 3\n```\n")[0])

    def test_what_a_test_cannot_run_is_marked(self):
        self.assertEqual(faults_of("<!-- not run: builds for minutes -->\n```sh\n./dev build\n```\n"), [])
        for text, fault in (
                ("```sh\n./dev build\n```\n", "is not for a test"),
                ("<!-- not run: builds for minutes -->\n```sh\nnebtrace info a\n```\n", "not needed"),
                ("<!-- not run: builds for minutes -->\n```sh\n./dev build\nnebtrace info a\n```\n", "not needed"),
                ("<!-- not run: builds for minutes -->\n```sh\ncd x\n```\n", "not needed"),
                ("<!-- not run: I do not like it -->\n```sh\nnebtrace info a\n```\n", "no reason"),
                ("<!-- not run: builds for minutes -->\n```ini\nDebugInfo = 1\n```\n", "no commands"),
                ("<!-- not run: builds for minutes -->\n\n```sh\n./dev build\n```\n", "not right above"),
                ("```\n$ nebtrace info a\n```\n", "not marked `sh` or `console`"),
                ("```sh\n```\n", "without one")):
            faults = faults_of(text)
            self.assertEqual(len(faults), 1, f"{text}{faults}")
            self.assertIn(fault, faults[0])

    def test_output_is_compared_but_for_numbers_and_what_is_left_out(self):
        output = "recorded /tmp/x/a.nebt: 120 bytes\ncube  0x1f   1234.5 fps\n0 differ\n"
        for shown in (["recorded /home/me/a.nebt: 7 bytes", "cube 0x3 9 fps", "0 differ"],
                      ["...", "0 differ"], ["recorded ...", "...", "0 differ"], ["...", "cube ... fps", "..."],
                      ["recorded /home/me/a.nebt: 7 bytes", "..."]):
            self.assertTrue(is_as_shown(shown, output, "/tmp/x"), shown)
        for shown in (["0 differ"], ["...", "3 differ"], ["...", "cube ...", "cube ...", "..."],
                      ["recorded /home/me/b.nebt: 7 bytes", "..."], ["recorded /home/me/a.nebt: 0 bytes", "..."]):
            self.assertFalse(is_as_shown(shown, output, "/tmp/x"), shown)

    def test_commands_are_found_in_prose_and_in_indented_lines(self):
        text = "Run `nebtrace info FILE`\nor `ls`:\n\n    nebtrace dump --json a\n    ls a\n"
        self.assertEqual(mentioned_commands(text), ["nebtrace dump --json a", "nebtrace info FILE"])

    def test_options_are_looked_up_in_the_help(self):
        helping = Help(NEBTRACE)
        for command in ("nebtrace record --frames 1-2 -o a -- app --unheard-of", "nebtrace --version", "ls --all",
                        "nebtrace remote --wait 10.0.0.1 record --times 2", "nebtrace record -vv -- app"):
            self.assertIsNone(helping.fault_of(command), command)
        for command in ("nebtrace record --unheard-of -- app", "nebtrace unheard-of", "nebtrace remote a status --times 2",
                        "ssh device nebtrace info --unheard-of a | less"):
            self.assertIsNotNone(helping.fault_of(command), command)

    def test_settings_are_found_in_files_and_here_documents(self):
        text = "```ini\nNetwok = 1\nProfile=1\n```\n```sh\ncat >f <<END\nTraceFlie = x\nEND\n```\n"
        self.assertEqual(unknown_keys(text, {"Profile"}), {"Netwok", "TraceFlie"})


if __name__ == "__main__":
    unittest.main()
