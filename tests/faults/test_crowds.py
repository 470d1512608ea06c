"""Many threads: they come and go, the process ends or forks in their midst, and the recording stays whole."""

import collections
import struct
import unittest

from faults import FaultTest, program

CROWD = program("crowd")
THREADS = 200
CALLS = 20
REPEATS = 10
STATES = ({}, {"StartFrame": 1000000}, {"Profile": 1})
WORKERS = 0.5  # the blue of the threads' calls


class Crowds(FaultTest):
    def calls_by_number(self, remains):
        """Each thread's calls in the order of the file; a number that stands under two threads is an error."""
        calls, threads = collections.defaultdict(list), {}
        for record in remains.of("glClearColor"):
            number, call, blue, _ = struct.unpack_from("<4f", record.payload, 4)
            if blue != WORKERS:
                continue  # of the scene
            number = int(number)
            self.assertEqual(threads.setdefault(number, record.thread), record.thread)
            calls[number].append(int(call))
        return calls

    # Each of two hundred threads has all of its calls in the recording, in its order, and so have those that called
    # all the while.
    def test_threads_that_come_and_go_are_recorded_whole(self):
        self.configure()
        done = self.run_traced(CROWD, "come_and_go", str(THREADS), str(CALLS))
        self.assertEqual(done.returncode, 0, done.stderr)
        remains = self.remains()
        self.assertEqual(remains.rest, b"")
        calls = self.calls_by_number(remains)
        for number in range(2, THREADS + 2):
            self.assertEqual(calls[number], list(range(CALLS)), number)
        for line in done.stderr.splitlines():
            number, count = map(int, line.split())
            self.assertEqual(calls[number], list(range(count)))

    # The same calls without a recording, and profiled, end as well as without the recorder.
    def test_threads_that_come_and_go_do_no_harm_in_any_state(self):
        for keys in ({"StartFrame": 1000000}, {"Profile": 1}):
            with self.subTest(keys=keys):
                self.configure(**keys)
                done = self.run_traced(CROWD, "come_and_go", "50", str(CALLS))
                self.assertEqual(done.returncode, 0, done.stderr)

    # One thread ends the process while others are in their calls, in every state of the recorder.
    def test_an_exit_in_the_midst_of_calls_is_an_exit(self):
        for keys in STATES:
            self.configure(**keys)
            for run in range(REPEATS):
                with self.subTest(keys=keys, run=run):
                    self.assertEqual(self.run_both(CROWD, "exit").returncode, 7)
                    if not keys:
                        self.remains()

    # The recorder ends the process behind the range, from a call of whichever thread comes first: once, in order.
    def test_the_last_frame_ends_a_process_of_many_threads(self):
        self.configure(EndFrame=0, ExitOnLastFrame=1)
        for run in range(REPEATS):
            with self.subTest(run=run):
                done = self.run_traced(CROWD, "exit")
                self.assertEqual((done.returncode, done.stderr), (1, ""))
                self.assertTrue(self.trace().ends_with_footer())

    # A thread that is cancelled in a call leaves no lock behind, and no part of a record.
    def test_cancelled_threads_leave_nothing_locked(self):
        for keys in STATES:
            with self.subTest(keys=keys):
                self.configure(**keys)
                self.assertEqual(self.run_both(CROWD, "cancel", "50").returncode, 0)
                if not keys:
                    remains = self.remains()
                    self.assertEqual(remains.rest, b"")
                    self.assertEqual(len(remains.of("eglSwapBuffers")), 2)
                    for calls in self.calls_by_number(remains).values():
                        self.assertEqual(calls, list(range(len(calls))))

    # Threads with the least stack that there can be have enough for the recorder.
    def test_small_stacks_suffice(self):
        for keys in STATES:
            with self.subTest(keys=keys):
                self.configure(**keys)
                self.assertEqual(self.run_both(CROWD, "small_stacks", "10").returncode, 0)
                if not keys:
                    self.assertEqual(len(self.remains().of("eglGetCurrentContext")), 1000)

    # One thread forks while others are in their calls: no child finds a lock that nobody will open.
    def test_forks_in_the_midst_of_calls_find_nothing_locked(self):
        for keys in STATES:
            with self.subTest(keys=keys):
                self.configure(**keys)
                self.assertEqual(self.run_both(CROWD, "fork", "20").returncode, 8)
                if not keys:
                    remains = self.remains()
                    self.assertEqual(remains.of("glLineWidth"), [])
                    self.assertEqual(len(remains.of("eglSwapBuffers")), 2)


if __name__ == "__main__":
    unittest.main()
