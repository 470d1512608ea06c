"""`nebtrace perf` as the one server of the machine: how it begins, and how it ends."""

import os
import signal
import sys
import unittest

sys.path.insert(0, os.path.dirname(__file__))
from perf_support import OF_SERVER, SHARED_MEMORY, PerfTest, enter_namespace, rings_of, shared_objects  # noqa: E402

ENDING = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT)


class ServerTest(PerfTest):
    # Whatever ends it, nothing of it is left, and the application goes on, and finds the next one.
    def test_signals_end_it_in_order(self):
        application = self.application()
        for number in ENDING:
            with self.subTest(signal=number):
                server = self.perf("--json")
                application.ask("connect", "^connected$")
                self.frames(application, (1, 1, 1), (2, 2, 2))
                server.wait_for('"frame":1')
                self.assertEqual(self.stop(server, number)[0], 0)
                self.assertFalse(set(OF_SERVER) & set(shared_objects()))
                application.ask("frame 3 3 3", "^lost$")
                self.assertEqual(shared_objects(), [])
        self.end(application)

    # With frames still to come, a signal is not the end that was asked for.
    def test_a_signal_ahead_of_the_frames(self):
        server = self.perf("--json", "--frames", "2")
        application = self.connected()
        self.frames(application, (1, 1, 1), (2, 2, 2))
        server.wait_for('"frame":1')
        self.assertEqual(self.stop(server, signal.SIGTERM)[0], 128 + signal.SIGTERM)

    # A second one must not take the rendezvous of the first away.
    def test_a_second_server_is_refused(self):
        server = self.perf("--json")
        application = self.connected()
        code, out, err = self.perf("--json").finish()
        self.assertEqual((code, out, err), (1, "", "nebtrace: a performance server is running already: end process "
                                          f"{server.pid} first\n"))
        self.frames(application, (1, 1, 1), (2, 2, 2))
        server.wait_for('"frame":1')
        another = self.connected()
        self.end(another)
        self.end(application)
        self.assertEqual(self.stop(server)[0], 0)
        self.assertEqual(shared_objects(), [])

    # What a killed server leaves is taken over without a word on standard output, and gone in the end.
    def test_a_killed_server_gives_way(self):
        server = self.perf("--json")
        self.end(self.connected())
        server.signal(signal.SIGKILL)
        server.finish()
        self.assertEqual(shared_objects(), OF_SERVER)
        server = self.perf("--json", "--frames", "1")
        application = self.connected()
        self.frames(application, (1, 1, 1), (2, 2, 2))
        code, out, _ = server.finish()
        self.assertEqual((code, [line["frame"] for line in self.objects(out)]), (0, [1]))
        self.end(application)
        self.assertEqual(shared_objects(), [])

    # Who found the rendezvous of a killed server waits for an answer, and has it from the next one. Nobody who comes
    # later is given names that are in use.
    def test_who_waits_for_a_killed_server_is_taken_over(self):
        server = self.perf("--json")
        self.end(self.connected())
        server.signal(signal.SIGKILL)
        server.finish()
        waiting = self.application()
        waiting.ask("frame 0 0 0", "^lost$")
        self.assertEqual(shared_objects(), sorted(OF_SERVER + rings_of(2)))
        server = self.perf("--json")
        waiting.ask("connect", "^connected$")
        self.frames(waiting, (1, 1, 1), (2, 2, 2))
        server.wait_for(f'"pid":{waiting.pid},')
        later = self.connected()
        self.assertEqual(shared_objects(), sorted(OF_SERVER + rings_of(2) + rings_of(3)))
        self.end(waiting)
        self.end(later)
        self.stop(server)
        self.assertEqual(shared_objects(), [])

    # However high the number is that is in use.
    def test_a_high_ticket_is_passed_over(self):
        server = self.perf("--json")
        living = self.connected()
        server.signal(signal.SIGKILL)
        server.finish()
        for old, new in zip(rings_of(1), rings_of(20000)):
            os.rename(os.path.join(SHARED_MEMORY, old), os.path.join(SHARED_MEMORY, new))
        for name in OF_SERVER[1:]:
            os.unlink(os.path.join(SHARED_MEMORY, name))
        server = self.perf("--json")
        later = self.connected()
        self.assertEqual(shared_objects(), sorted(OF_SERVER + rings_of(20001)))
        self.end(later)
        self.end(living)
        self.stop(server)
        self.assertEqual(shared_objects(), [])

    # Rings of a killed server's applications are of no use to anybody, be the applications dead or not: the next
    # server removes them, and takes nothing that a living one holds from under it.
    def test_rings_of_a_killed_server_are_removed(self):
        server = self.perf("--json")
        dead, living = self.connected(), self.connected()
        server.signal(signal.SIGKILL)
        server.finish()
        dead.signal(signal.SIGKILL)
        dead.finish()
        self.assertEqual(shared_objects(), sorted(OF_SERVER + rings_of(1) + rings_of(2)))
        code, _, _ = self.perf("--timeout", "0.01").finish()
        self.assertEqual(code, 1)
        self.assertEqual(shared_objects(), [])
        living.ask("frame 1 2 3", "^sent$")
        self.end(living)
        self.assertEqual(shared_objects(), [])

    # An application that takes a ticket in the server's last moment is told of the end as well, and is free for the next.
    def test_many_servers_one_after_another(self):
        application = self.application()
        for _ in range(10):
            server = self.perf("--list")
            application.ask("connect", "^connected$")
            self.assertEqual(server.finish()[0], 0)
            application.ask("frame 1 1 1", "^lost$")
        self.end(application)
        self.assertEqual(shared_objects(), [])


if __name__ == "__main__":
    enter_namespace()
    unittest.main()
