#!/usr/bin/env python3
"""The manual pages: without a mistake in their markup, and with all that --help and the parser of settings say."""
import re
import subprocess
import unittest

from support import MANUAL, SOURCE, help_of, options, subcommands


def rendered(page):
    """The page as a reader sees it, each run of blanks as one."""
    done = subprocess.run(["groff", "-man", "-ww", "-Tascii", "-P-cbou", "-rLL=200n", page],
                          capture_output=True, text=True, check=True)
    return done.stderr, re.sub(r"\s+", " ", done.stdout)


class ManPages(unittest.TestCase):
    def assert_tells(self, text, wanted):
        self.assertIn(re.sub(r"\s+", " ", wanted), text)

    def test_every_subcommand_has_a_page_and_the_configuration_has_one(self):
        expected = {"nebtrace.1", "nebtrace.cfg.5"} | {f"nebtrace-{name}.1" for name in subcommands()}
        self.assertGreaterEqual(len(expected), 11)
        self.assertEqual({page.name for page in MANUAL.glob("man?/*")}, expected)

    # A file that belongs to no page would be told to nobody.
    def test_all_prose_belongs_to_a_page(self):
        pages = {page.stem for page in MANUAL.glob("man?/*")}
        self.assertLessEqual({prose.stem for prose in (SOURCE / "docs/man").glob("*.md")}, pages)

    def test_the_markup_is_without_warnings(self):
        for page in sorted(MANUAL.glob("man?/*")):
            with self.subTest(page=page.name):
                warnings, text = rendered(page)
                self.assertEqual(warnings, "")
                for section in ("NAME", "DESCRIPTION", "SEE ALSO"):
                    self.assertIn(f" {section} ", text)

    def test_every_option_is_told_as_help_tells_it(self):
        for name in subcommands():
            _, text = rendered(MANUAL / f"man1/nebtrace-{name}.1")
            commands = [[name], *([name, sub] for sub in subcommands(name))]
            for command in commands:
                with self.subTest(command=command):
                    self.assertTrue(options(*command))
                    for names, value, description in options(*command):
                        self.assert_tells(text, f"{', '.join(names)} {value} {description}")

    def test_every_page_of_a_command_tells_its_usage_and_its_exit_codes(self):
        for name in subcommands():
            with self.subTest(name=name):
                _, text = rendered(MANUAL / f"man1/nebtrace-{name}.1")
                usage = re.search(r"^Usage: (.*?)( SUBCOMMAND \.\.\.)?$", help_of(name), re.MULTILINE).group(1)
                self.assert_tells(text, f"SYNOPSIS {usage}")
                self.assert_tells(text, "EXIT STATUS")
                self.assert_tells(text, "2 A mistake on the command line.")

    # What the parser takes is the table's keys, and the document is held against these as well.
    def test_every_key_of_the_configuration_is_told(self):
        document = (SOURCE / "docs/configuration-keys.md").read_text()
        keys = re.findall(r"^\| \w+ \| `(\w+)` \| (\w+) \| (\S+) \| (.*) \|$", document, re.MULTILINE)
        self.assertGreaterEqual(len(keys), 22)
        _, text = rendered(MANUAL / "man5/nebtrace.cfg.5")
        for name, value, initial, effect in keys:
            default = "" if initial == "none" else f", default {initial.strip('`')}"
            self.assert_tells(text, f"{name} = {value}{default} {effect}")


if __name__ == "__main__":
    unittest.main()
