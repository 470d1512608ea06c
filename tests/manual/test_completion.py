#!/usr/bin/env python3
"""What shells offer at a place in the command line."""
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

from support import MANUAL, options, subcommands

# As bash calls the function: the line's words, "=" being one of its own, and the number of the one at the cursor.
ASK = """
source "$1"
shift
complete -p nebtrace >/dev/null || exit 1
COMP_WORDS=("$@")
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
_nebtrace 2>/dev/null
printf '%s\\n' "${COMPREPLY[@]}"
"""


class Bash(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        for name in ("trace.nebt", "two words.nebt"):
            (self.folder / name).touch()
        (self.folder / "tables").mkdir()

    def offered(self, *words):
        done = subprocess.run(["bash", "--norc", "-c", ASK, "bash", MANUAL / "nebtrace.bash", "nebtrace", *words],
                              cwd=self.folder, capture_output=True, text=True, check=True)
        self.assertEqual(done.stderr, "")
        return [line for line in done.stdout.split("\n") if line]

    def test_subcommands_come_first(self):
        self.assertEqual(self.offered(""), subcommands())
        self.assertEqual(self.offered("rep"), ["replay", "repair"])

    def test_every_option_of_every_subcommand_is_offered(self):
        for command in [[name] for name in subcommands()] + [["remote", name] for name in subcommands("remote")]:
            with self.subTest(command=command):
                line = command if command[0] != "remote" else ["remote", "device", *command[1:]]
                offered = self.offered(*line, "-")
                for names, _, _ in options(*command):
                    self.assertLessEqual(set(names), set(offered))

    def test_options_of_remote_also_stand_behind_its_subcommands(self):
        self.assertIn("--timeout", self.offered("remote", "device", "record", "--t"))

    def test_an_argument_is_a_file(self):
        self.assertEqual(sorted(self.offered("info", "t")), ["tables", "trace.nebt", "two words.nebt"])
        self.assertEqual(self.offered("dump", "--json", "tr"), ["trace.nebt"])

    def test_the_second_argument_is_what_it_is(self):
        self.assertEqual(self.offered("frames", "trace.nebt", "t"), ["tables"])

    def test_the_value_of_an_option_is_what_it_is(self):
        self.assertEqual(self.offered("record", "-o", "tw"), ["two words.nebt"])
        self.assertEqual(self.offered("replay", "--out", "t"), ["tables"])
        self.assertEqual(self.offered("record", "--frames", ""), [])

    def test_a_value_may_stand_behind_an_equals_sign(self):
        self.assertEqual(self.offered("record", "--output", "=", "tr"), ["trace.nebt"])
        self.assertEqual(self.offered("replay", "--out", "="), ["tables"])
        self.assertEqual(self.offered("replay", "--out", "=", "tables", "tr"), ["trace.nebt"])

    def test_a_value_is_no_argument(self):
        self.assertEqual(self.offered("frames", "--frames", "1-2", "trace.nebt", "t"), ["tables"])

    # Only behind the address: the address itself may be anything.
    def test_subcommands_of_remote_stand_behind_its_address(self):
        self.assertEqual(self.offered("remote", "--wait", "10.0.0.1", ""), subcommands("remote"))
        self.assertIn("--until-enter", self.offered("remote", "10.0.0.1", "record", "--u"))

    def test_what_follows_two_dashes_is_the_applications(self):
        self.assertIn("--", self.offered("record", "-"))
        self.assertIn("bash", self.offered("record", "--no-data", "--", "bas"))
        self.assertEqual(self.offered("record", "--", "bash", "tr"), ["trace.nebt"])
        self.assertEqual(self.offered("record", "--", "bash", "--no-d"), [])


class Zsh(unittest.TestCase):
    def setUp(self):
        self.text = (MANUAL / "_nebtrace").read_text()

    def function(self, name):
        return re.search(rf"^{name}\(\)\n{{\n(.*?)^}}$", self.text, re.MULTILINE | re.DOTALL).group(1)

    def test_the_script_is_for_the_command(self):
        self.assertTrue(self.text.startswith("#compdef nebtrace\n"))
        self.assertTrue(self.text.endswith('\n_nebtrace "$@"\n'))

    @unittest.skipUnless(shutil.which("zsh"), "there is no zsh")
    def test_zsh_can_read_it(self):
        subprocess.run(["zsh", "-n", MANUAL / "_nebtrace"], check=True)

    def test_every_subcommand_has_its_function_with_every_option(self):
        for command in [[name] for name in subcommands()] + [["remote", name] for name in subcommands("remote")]:
            with self.subTest(command=command):
                above, name = "_".join(["_nebtrace", *command[:-1]]), "_".join(["_nebtrace", *command])
                self.assertIn(f"        {command[-1]}) {name} && result=0 ;;\n", self.function(above))
                for names, value, _ in options(*command):
                    for option in names:
                        assign = ("=" if option.startswith("--") else "+") if value else ""
                        self.assertIn(f"{option}{assign}[", self.function(name))

    # Each specification is one word in single quotes, whatever its text has in it.
    def test_quotes_are_whole(self):
        for line in self.text.splitlines():
            if line.startswith("        '"):
                self.assertRegex(line, r"^        ('([^']|'\\'')*' )+\\$", line)


if __name__ == "__main__":
    unittest.main()
