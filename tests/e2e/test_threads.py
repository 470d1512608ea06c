"""Several threads record at once."""

import collections
import struct
import unittest

from support import ScratchTest, program

THREADS = 6
CALLS = 2000


class Threads(ScratchTest):
    # Each record is whole, stands behind the right thread change, and each thread's calls are all there in its
    # own order. The walk itself checks that no record's length is torn.
    def test_records_of_many_threads_are_whole_and_in_each_threads_order(self):
        self.record_well("--frames", "0", "--", program("threads"), str(THREADS), str(CALLS))
        trace = self.trace()
        self.assertTrue(trace.ends_with_footer())
        calls = collections.defaultdict(list)
        for record in trace.of("glClearColor"):
            # The error word, which threads share, then the thread's number and the call's.
            self.assertEqual(len(record.payload), 20)
            thread, call = struct.unpack_from("<2f", record.payload, 4)
            calls[record.thread, int(thread)].append(int(call))
        self.assertEqual(sorted(number for _, number in calls), list(range(THREADS)))
        self.assertEqual(len({thread for thread, _ in calls}), THREADS)
        for numbers in calls.values():
            self.assertEqual(numbers, list(range(CALLS)))
        # Error word, count, pointer, number of elements, three elements.
        self.assertEqual({len(record.payload) for record in trace.of("glDeleteTextures")}, {28})
        self.assertEqual(trace.counts()["glDeleteTextures"], THREADS * CALLS)

    # A thread change stands only where the thread changes, and the threads did run side by side.
    def test_thread_changes_stand_only_where_the_thread_changes(self):
        self.record_well("--frames", "0", "--", program("threads"), str(THREADS), str(CALLS))
        changes = self.trace().thread_changes
        self.assertTrue(all(one != other for one, other in zip(changes, changes[1:])))
        self.assertGreater(len(changes), 2 * THREADS)


if __name__ == "__main__":
    unittest.main()
