"""`nebtrace perf` and applications that come and go, in order or not."""

import os
import signal
import sys
import unittest

sys.path.insert(0, os.path.dirname(__file__))
from perf_support import OF_SERVER, SHARED_MEMORY, PerfTest, enter_namespace, rings_of, shared_objects  # noqa: E402


class Applications(PerfTest):
    def wait_for_frame(self, server, application, number):
        return server.wait_for(f'^{{"pid":{application.pid},"name":"[^"]*","frame":{number},')

    def died(self, server, application, frames):
        """Waits until the server has noticed an end that was not announced."""
        self.assertEqual(
            server.wait_for_error(f"{application.pid} .*gone"),
            f"nebtrace: {application.pid} fake_applicatio: gone without a word after {frames} frames: "
            "it was killed, or crashed")

    # One application after another under one server; each end is told.
    def test_one_after_another(self):
        server = self.perf("--json")
        for ticket in (1, 2, 3):
            application = self.connected()
            self.assertEqual(shared_objects(), sorted(OF_SERVER + rings_of(ticket)))
            self.frames(application, (1, 2, 3), (2, 4, 6))
            self.wait_for_frame(server, application, 1)
            self.end(application)
            self.assertEqual(server.wait_for_error("ended"),
                             f"nebtrace: {application.pid} fake_applicatio: ended after 1 frames")
            self.assertEqual(shared_objects(), OF_SERVER)
        self.assertEqual(self.stop(server)[0], 0)
        self.assertEqual(shared_objects(), [])

    # Several at once: each has its own counts, and settings go to all of them.
    def test_several_at_once(self):
        server = self.perf("--json", "--set", "Disable draw calls=1")
        first, second, third = (self.connected() for _ in range(3))
        for application in (first, second, third):
            application.ask("change", r"^change 2 \\x01$")
        self.frames(first, (1, 1, 1), (3, 1, 1))
        self.frames(second, (10, 1, 1), (15, 1, 1))
        self.frames(first, (4, 1, 1))
        self.end(third)
        self.assertIn('"counters":{"Draws":2,', self.wait_for_frame(server, first, 1))
        self.frames(second, (26, 1, 1))
        self.assertIn('"counters":{"Draws":11,', self.wait_for_frame(server, second, 2))
        code, _, err = self.stop(server)
        self.assertEqual(code, 0)
        self.assertIn(f"{third.pid} fake_applicatio: ended after 0 frames", err)
        self.end(first)
        self.end(second)
        self.assertEqual(shared_objects(), [])

    # One that has taken a ticket and then makes no call holds up nobody, and is not worth a word. Its rings are its own.
    def test_a_silent_one_holds_up_nobody(self):
        silent = self.application()
        server = self.perf("--json")
        while rings_of(1)[0] not in shared_objects():
            silent.ask("knock", "^knocked$")
        application = self.connected()
        self.frames(application, (1, 1, 1), (2, 2, 2))
        self.wait_for_frame(server, application, 1)
        code, _, err = self.stop(server)
        self.assertEqual((code, err), (0, f"nebtrace: {application.pid} fake_applicatio: connected\n"))
        self.assertTrue(set(rings_of(1)) <= set(shared_objects()), "another process's own")
        self.end(application)
        self.end(silent)
        self.assertEqual(shared_objects(), [])

    # An application that is killed is missed, and what it left in shared memory removed. It need not be waited for.
    def test_a_killed_one_is_noticed(self):
        server = self.perf("--json")
        application, other = self.connected(), self.connected()
        self.frames(application, (1, 1, 1), (2, 2, 2))
        application.signal(signal.SIGKILL)
        self.died(server, application, 1)
        self.assertEqual(shared_objects(), sorted(OF_SERVER + rings_of(2)))
        self.frames(other, (1, 1, 1), (2, 2, 2))
        self.wait_for_frame(server, other, 1)
        self.end(other)
        self.stop(server)
        self.assertEqual(shared_objects(), [])

    # So is one that never spoke.
    def test_a_silent_one_that_is_killed(self):
        server = self.perf("--json")
        silent = self.application()
        while rings_of(1)[0] not in shared_objects():
            silent.ask("knock", "^knocked$")
        silent.kill()
        self.stop(server)
        self.assertEqual(shared_objects(), [])

    # Killed with a buffer filled to its end, it keeps that buffer's mutex for ever: who waited for it would wait for
    # ever. While it lives, too, the server is there for others.
    def test_one_that_stops_at_the_end_of_a_buffer(self):
        server = self.perf("--json")
        stopped, other = self.connected(), self.connected()
        self.frames(stopped, (1, 1, 1))
        stopped.ask("fill", "^filled$")
        server.wait_for_error("mark: ")
        self.frames(other, (1, 1, 1), (2, 2, 2))
        self.wait_for_frame(server, other, 1)
        self.frames(stopped, (2, 2, 2))
        self.wait_for_frame(server, stopped, 1)
        for _ in range(4):
            stopped.ask("fill", "^filled$")
            server.wait_for_error("mark: ")
        stopped.signal(signal.SIGKILL)
        self.died(server, stopped, 1)
        self.frames(other, (5, 5, 5))
        self.wait_for_frame(server, other, 2)
        self.end(other)
        self.assertEqual(self.stop(server)[0], 0)
        self.assertEqual(shared_objects(), [])

    # One that ends in order while the server stands at the end of a buffer takes its mutexes with it, and its last
    # frames and its farewell arrive all the same.
    def test_one_that_ends_behind_the_end_of_a_buffer(self):
        server = self.perf("--json")
        application = self.connected()
        self.frames(application, (1, 1, 1))
        application.ask("fill", "^filled$")
        server.wait_for_error("mark: ")
        server.halt()
        self.frames(application, (2, 2, 2), (4, 4, 4))
        self.end(application)
        server.signal(signal.SIGCONT)
        self.wait_for_frame(server, application, 2)
        self.assertEqual(server.wait_for_error("ended|gone"),
                         f"nebtrace: {application.pid} fake_applicatio: ended after 2 frames")
        self.stop(server)

    # What makes no sense ends a connection, and the application is told so: it comes again.
    def test_nonsense_is_answered_with_a_farewell(self):
        server = self.perf("--json")
        application = self.connected()
        self.frames(application, (1, 1, 1), (2, 2, 2))
        self.wait_for_frame(server, application, 1)
        application.tell("nonsense")
        self.assertEqual(server.wait_for_error("dropped"), f"nebtrace: {application.pid} fake_applicatio: dropped after "
                                                           "1 frames: a block contradicts itself")
        application.ask("frame 1 1 1", "^lost$")
        application.ask("connect", "^connected$")
        self.frames(application, (1, 1, 1), (2, 2, 2))
        self.wait_for_frame(server, application, 1)
        self.end(application)
        self.stop(server)
        self.assertEqual(shared_objects(), [])

    # An application in another container has a number that is another process's here. It is not lost when that one ends.
    def test_one_that_is_taken_for_another(self):
        server = self.perf("--json")
        other, application = self.application(), self.application()
        application.tell(f"pid {other.pid}")
        application.ask("connect", "^connected$")
        self.frames(application, (1, 1, 1), (2, 2, 2))
        self.wait_for_frame(server, other, 1)
        other.kill()
        self.died(server, other, 1)
        application.ask("frame 1 1 1", "^lost$")
        application.ask("connect", "^connected$")
        self.frames(application, (1, 1, 1), (2, 2, 2))
        self.wait_for_frame(server, other, 1)
        self.end(application)
        self.stop(server)
        self.assertEqual(shared_objects(), [])

    def silent(self):
        """An application that has taken a ticket and goes no further."""
        before = shared_objects()
        silent = self.application()
        silent.ask("knock", "^knocked$")  # it may be in the midst of making its rings ahead of that
        while shared_objects() == before:
            silent.ask("knock", "^knocked$")
        return silent

    # One that never spoke needs a file of the server as long as it has its rings, and not longer.
    def test_a_silent_one_that_ends(self):
        server = self.perf("--json")
        self.end(self.connected())
        server.wait_for_error("ended")
        silent = [self.silent() for _ in range(3)]
        while server.ring_files() != 3:
            os.sched_yield()
        for application in silent:
            self.end(application)
        while server.ring_files() != 0:
            os.sched_yield()
        self.stop(server)

    # One that died before the server could tell who it is would be waited for without an end.
    def test_a_silent_one_that_nobody_knows(self):
        server = self.perf("--json")
        self.end(self.connected())
        server.wait_for_error("ended")
        server.halt()
        silent = self.silent()
        silent.kill()
        server.signal(signal.SIGCONT)
        while shared_objects() != OF_SERVER or server.ring_files() != 0:
            os.sched_yield()
        self.stop(server)
        self.assertEqual(shared_objects(), [])

    # Rings that are cut short under the server cost it one application, and a rendezvous is made anew.
    def test_objects_that_are_cut_short(self):
        server = self.perf("--json")
        other, application = self.connected(), self.connected()
        self.frames(application, (1, 1, 1), (2, 2, 2))
        self.wait_for_frame(server, application, 1)
        for name in rings_of(2):
            os.truncate(os.path.join(SHARED_MEMORY, name), 0)
        self.assertEqual(
            server.wait_for_error("dropped"),
            f"nebtrace: {application.pid} fake_applicatio: dropped after 1 frames: the rings are damaged")
        application.kill()
        for name in OF_SERVER[1:]:
            os.truncate(os.path.join(SHARED_MEMORY, name), 0)
        later = self.connected()
        for living in (other, later):
            self.frames(living, (1, 1, 1), (2, 2, 2))
            self.wait_for_frame(server, living, 1)
            self.end(living)
        self.assertEqual(self.stop(server)[0], 0)
        self.assertEqual(shared_objects(), [])

    # The server ends at once, too, when it cannot be told that such a one is gone: it is only stopped.
    def test_the_end_beside_a_stopped_one(self):
        server = self.perf("--json")
        application = self.connected()
        application.ask("fill", "^filled$")
        application.signal(signal.SIGSTOP)
        server.wait_for_error("mark: ")
        self.assertEqual(self.stop(server, signal.SIGTERM)[0], 0)
        application.signal(signal.SIGCONT)
        application.ask("frame 1 1 1", "^lost$")
        self.end(application)
        self.assertEqual(shared_objects(), [])


if __name__ == "__main__":
    enter_namespace()
    unittest.main()
