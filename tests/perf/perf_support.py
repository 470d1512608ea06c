"""What the tests of `nebtrace perf` share: shared memory of their own, the server, and programs that play
applications. Nothing waits for a time to pass: every step waits for a line that somebody prints."""

import faulthandler
import json
import os
import re
import signal
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
import support  # noqa: E402
from support import BUILD, LONGEST, NEBTRACE, ScratchTest  # noqa: E402

FAKE_APPLICATION = os.path.join(BUILD, "tests", "perf", "fake_application")
SHARED_MEMORY = "/dev/shm"
# The rendezvous and its mutex, and what holds a second server off.
OF_SERVER = ["NEBPerfServerVsAppLib.server", "NEBPerfServerVsAppLib0N0d", "NEBPerfServerVsAppLib0N0m"]


# A line that never comes is waited for without an end: ahead of the test's time limit, tell where.
faulthandler.dump_traceback_later(250, exit=True)


def enter_namespace():
    """Runs the script anew where /dev/shm is its own: the names there are fixed."""
    support.enter_namespace("mount")


def shared_objects():
    return sorted(os.listdir(SHARED_MEMORY))


def rings_of(ticket):
    return sorted(f"NEBPerfServerVsAppLib{ticket}{part}{i}{kind}" for part in "UD" for i in range(3) for kind in "dm")


class Program:
    """A program beside the test; what it prints can be waited for."""

    def __init__(self, test, *command, **options):
        self.process = subprocess.Popen(
            command, cwd=test.folder, env=test.environment, text=True,
            **{"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options})
        self.pid = self.process.pid
        test.addCleanup(self.clean)

    @staticmethod
    def _wait_for(stream, pattern):
        lines = []
        for line in stream:
            lines.append(line)
            if re.search(pattern, line):
                return line.rstrip("\n")
        raise AssertionError(f"no line matches {pattern}:\n{''.join(lines)}")

    def wait_for(self, pattern):
        return self._wait_for(self.process.stdout, pattern)

    def wait_for_error(self, pattern):
        return self._wait_for(self.process.stderr, pattern)

    def tell(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()

    def ask(self, line, answer):
        self.tell(line)
        return self.wait_for(answer)

    def signal(self, number):
        self.process.send_signal(number)

    def finish(self):
        """Waits for its end; returns the exit code and what it had still to say."""
        out, err = self.process.communicate(timeout=LONGEST)
        return self.process.returncode, out, err

    def kill(self):
        """Returns when it is dead; it is not waited for otherwise, and stays a zombie."""
        self.signal(signal.SIGKILL)
        os.waitid(os.P_PID, self.pid, os.WEXITED | os.WNOWAIT)

    def halt(self):
        """Returns when it stands still."""
        self.signal(signal.SIGSTOP)
        os.waitid(os.P_PID, self.pid, os.WSTOPPED | os.WNOWAIT)

    def ring_files(self):
        """How many files of rings it has open. Others, of the rendezvous and of /proc, come and go."""
        folder = f"/proc/{self.pid}/fd"
        rings = 0
        for file in os.listdir(folder):
            try:
                rings += re.search(r"/NEBPerfServerVsAppLib\d+[UD]\d", os.readlink(os.path.join(folder, file))) is not None
            except FileNotFoundError:
                pass  # closed since
        return rings

    def clean(self):
        if self.process.returncode is None:
            self.process.kill()
            self.process.wait()
        for stream in (self.process.stdin, self.process.stdout, self.process.stderr):
            if stream:
                stream.close()


class PerfTest(ScratchTest):
    def setUp(self):
        super().setUp()
        self.assertEqual(shared_objects(), [])
        self.addCleanup(self.clear)

    @staticmethod
    def clear():
        for name in shared_objects():
            os.unlink(os.path.join(SHARED_MEMORY, name))

    def perf(self, *options, **how):
        return Program(self, NEBTRACE, "perf", *options, **how)

    def application(self):
        return Program(self, FAKE_APPLICATION)

    def connected(self):
        application = self.application()
        application.ask("connect", "^connected$")
        return application

    def frames(self, application, *frames):
        for frame in frames:
            application.ask("frame " + " ".join(map(str, frame)), "^sent$")

    def end(self, application):
        application.tell("end")
        self.assertEqual(application.finish()[0], 0)

    def stop(self, server, how=signal.SIGINT):
        server.signal(how)
        return server.finish()

    @staticmethod
    def objects(text):
        return [json.loads(line) for line in text.splitlines()]
