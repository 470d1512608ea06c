"""A real recording read back by the tools, held against a walk of the file that shares no code with them."""

import json
import os
import unittest

from support import CUBE, NEBTRACE, ScratchTest


class Reading(ScratchTest):
    def setUp(self):
        super().setUp()
        self.record_well("--frames", "0-2", "--", CUBE, "--frames", "4", "--size", "40x30")
        self.recorded = self.trace()

    def dumped(self, *arguments):
        """What `nebtrace dump --json` prints, as objects, and its exit code and message."""
        done = self.run_command(NEBTRACE, "dump", "--json", *arguments)
        return [json.loads(line) for line in done.stdout.splitlines()], done.returncode, done.stderr

    # The totals that a user goes by.
    def test_info_counts_what_the_file_holds(self):
        done = self.run_command(NEBTRACE, "info", "--json", "trace.nebt")
        self.assertEqual(done.returncode, 0, done.stderr)
        info = json.loads(done.stdout)
        self.assertEqual(info["size"], len(self.recorded.bytes))
        self.assertEqual(info["calls"], len(self.recorded.records))
        self.assertEqual(info["frames"], 3)
        self.assertEqual({one["name"]: one["calls"] for one in info["functions"]}, self.recorded.counts())
        self.assertTrue(info["footer"])

    # Each call is there, by name and in order, with the thread that made it.
    def test_dump_prints_every_call_in_order(self):
        calls, code, _ = self.dumped("trace.nebt")
        self.assertEqual(code, 0)
        self.assertEqual(
            [(call["name"], call["thread"]) for call in calls],
            [(record.name, record.thread) for record in self.recorded.records],
        )

    # The text form reads as the application's calls.
    def test_dump_shows_arguments_by_name_and_enumerants_as_words(self):
        done = self.run_command(NEBTRACE, "dump", "--grep", "glBlendFunc|glDrawElements", "trace.nebt")
        lines = [line.split("  ")[-1].strip() for line in done.stdout.splitlines()]
        self.assertEqual(lines[0], "glBlendFunc(sfactor = GL_SRC_ALPHA, dfactor = GL_ONE_MINUS_SRC_ALPHA)")
        self.assertEqual(len(lines), 1 + self.recorded.counts()["glDrawElements"])
        self.assertIn("mode = GL_TRIANGLES, count = 36, type = GL_UNSIGNED_SHORT", lines[1])

    # A recording that was cut short still gives all of its whole records, then says where it ends.
    def test_a_truncated_recording_is_printed_up_to_its_last_whole_record(self):
        last = self.recorded.records[-1]
        whole = len(self.recorded.bytes) - len(self.recorded.footer) - len(last.payload) - 6
        os.truncate(self.path("trace.nebt"), whole + 9)
        calls, code, message = self.dumped("trace.nebt")
        self.assertEqual(code, 1)
        self.assertEqual([call["name"] for call in calls], self.recorded.names()[:-1])
        self.assertEqual(message.count("\n"), 1)
        self.assertIn(str(whole), message)


if __name__ == "__main__":
    unittest.main()
