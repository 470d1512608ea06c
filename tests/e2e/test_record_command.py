"""`nebtrace record` as a command among others: exit codes, signals, errors, and what it leaves behind."""

import os
import shutil
import signal
import struct
import subprocess
import sys
import unittest

from support import CUBE, LONGEST, NEBTRACE, ScratchTest, program

MINE = "# the user's own\n[record]\nStartFrame = 7\n"

# An application that says when it is ready, then waits for a signal. It names the one it gets and exits with 9. It holds
# those that it waits for, since a handler may run just before the wait for it begins.
WAITING = """
import os, signal, sys
for number in (signal.SIGINT, signal.SIGQUIT):  # may have been ignored by whoever started the tests
    signal.signal(number, signal.SIG_DFL)
awaited = [getattr(signal, name) for name in sys.argv[1:]]
signal.pthread_sigmask(signal.SIG_BLOCK, awaited)
print("ready", os.getpid(), flush=True)
print("got", signal.Signals(signal.sigwait(awaited)).name, flush=True)
sys.exit(9)
"""


# Programs without a dynamic linker that end at once with 0: the header, one segment, and the calls of x86.
def static_program(bits):
    if bits == 64:
        code = b"\x31\xff\xb8\x3c\x00\x00\x00\x0f\x05"
        return (b"\x7fELF\x02\x01\x01" + bytes(9) + struct.pack("<HHIQQQIHHHHHH", 2, 62, 1, 0x400078, 64, 0, 0, 64, 56, 1,
                                                                  0, 0, 0)
                + struct.pack("<IIQQQQQQ", 1, 5, 0, 0x400000, 0x400000, 120 + len(code), 120 + len(code), 4096) + code)
    code = b"\x31\xdb\xb8\x01\x00\x00\x00\xcd\x80"
    return (b"\x7fELF\x01\x01\x01" + bytes(9) + struct.pack("<HHIIIIIHHHHHH", 2, 3, 1, 0x400054, 52, 0, 0, 52, 32, 1, 0,
                                                              0, 0)
            + struct.pack("<IIIIIIII", 1, 0, 0x400000, 0x400000, 84 + len(code), 84 + len(code), 5, 4096) + code)


class RecordCommand(ScratchTest):
    def start_waiting(self, *handled, options=()):
        """Starts an application under the recorder; returns it once the application runs, with its ID."""
        running = subprocess.Popen(
            [NEBTRACE, "record", *options, "--", sys.executable, "-c", WAITING, *handled],
            cwd=self.folder,
            env=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
        )
        self.addCleanup(running.stderr.close)
        self.addCleanup(running.stdout.close)
        ready, pid = running.stdout.readline().split()
        self.assertEqual(ready, "ready")
        return running, int(pid)

    def assert_one_line(self, text, *parts):
        self.assertEqual(text.count("\n"), 1, text)
        self.assertTrue(text.startswith("nebtrace: "), text)
        for part in parts:
            self.assertIn(part, text)

    # A script that calls an application through the recorder sees the application's own exit code.
    def test_the_exit_code_is_the_applications(self):
        for code in (0, 1, 7, 255):
            self.assertEqual(self.record("--", "sh", "-c", f"exit {code}").returncode, code)

    # An application that a signal ended is told as shells tell it.
    def test_an_application_ended_by_a_signal_gives_128_and_the_signal(self):
        self.assertEqual(self.record("--", "sh", "-c", "kill -SEGV $$").returncode, 128 + signal.SIGSEGV)
        self.assertEqual(self.record("--", "sh", "-c", "kill -KILL $$").returncode, 128 + signal.SIGKILL)

    # Signals sent to the recorder reach the application, which decides what they mean.
    def test_signals_are_passed_on_to_the_application(self):
        for name in ("SIGINT", "SIGTERM", "SIGHUP", "SIGQUIT", "SIGUSR1", "SIGUSR2"):
            with self.subTest(signal=name):
                running, _ = self.start_waiting(name)
                running.send_signal(getattr(signal, name))
                self.assertEqual(running.wait(LONGEST), 9)
                self.assertEqual(running.stdout.read(), f"got {name}\n")

    # The application's arguments are its own: nothing in them means anything to the recorder.
    def test_arguments_reach_the_application_unchanged(self):
        arguments = ["--frames", "3", "-o", "[a,b]", "", "--", "--help", "x y", "%pid", "*"]
        done = self.record("--", sys.executable, "-c", "import sys; print(sys.argv[1:])", *arguments)
        self.assertEqual(done.stdout, f"{arguments}\n")

    # What the recorder placed for the run is gone after it.
    def test_the_configuration_is_removed_afterwards(self):
        done = self.record("--", "cat", "nebtrace.cfg")
        self.assertIn("EglLibraryPath = /", done.stdout)
        self.assertEqual(os.listdir(self.folder), [])

    # A configuration of the user's is never touched without being told to.
    def test_an_existing_configuration_is_not_overwritten(self):
        self.write("nebtrace.cfg", MINE)
        done = self.record("--", "touch", "started")
        self.assertEqual(done.returncode, 1)
        self.assert_one_line(done.stderr, "nebtrace.cfg exists", "--force")
        self.assertEqual(os.listdir(self.folder), ["nebtrace.cfg"])
        self.assertEqual(self.read("nebtrace.cfg"), MINE)

    # With --force it is out of the way for the run only.
    def test_force_sets_an_existing_configuration_aside_and_puts_it_back(self):
        self.write("nebtrace.cfg", MINE)
        done = self.record("--force", "--", "cat", "nebtrace.cfg")
        self.assertIn("StartFrame = 0", done.stdout)
        self.assertEqual(os.listdir(self.folder), ["nebtrace.cfg"])
        self.assertEqual(self.read("nebtrace.cfg"), MINE)

    # Whatever ends the run, the user's file comes back.
    def test_the_configuration_is_put_back_when_a_signal_ends_the_run(self):
        for name in ("SIGTERM", "SIGINT", "SIGHUP", "SIGALRM", "SIGUSR1"):
            with self.subTest(signal=name):
                self.write("nebtrace.cfg", MINE)
                running, _ = self.start_waiting(options=["--force"])
                self.assertNotEqual(self.read("nebtrace.cfg"), MINE)
                running.send_signal(getattr(signal, name))
                self.assertEqual(running.wait(LONGEST), 128 + getattr(signal, name))
                self.assertEqual(os.listdir(self.folder), ["nebtrace.cfg"])
                self.assertEqual(self.read("nebtrace.cfg"), MINE)

    # env(1) and shells have taught users these two codes.
    def test_an_application_that_cannot_be_started_gives_127_or_126(self):
        missing = self.record("--", "./no-such-program")
        self.assertEqual(missing.returncode, 127)
        self.assert_one_line(missing.stderr, "./no-such-program", "No such file")
        self.write("text", "not a program")
        forbidden = self.record("--", "./text")
        self.assertEqual(forbidden.returncode, 126)
        self.assert_one_line(forbidden.stderr, "./text", "Permission denied")
        self.assertEqual(os.listdir(self.folder), ["text"])

    # A wrong host library is told before the application starts, not by a crash inside it.
    def test_a_missing_host_library_is_one_line_and_no_run(self):
        for option in ("--host-egl", "--host-gles1", "--host-gles2"):
            done = self.record(option, "/no/such/library.so", "--", "touch", "started")
            self.assertEqual(done.returncode, 1)
            self.assert_one_line(done.stderr, "/no/such/library.so")
            self.assertEqual(os.listdir(self.folder), [])

    # Without EGL there is nothing to record, and the message names what to install.
    def test_a_machine_without_egl_is_told_so(self):
        self.hide_libraries("libEGL.so.1", "libEGL.so")
        done = self.record("--", "touch", "started")
        self.assertEqual(done.returncode, 1)
        self.assert_one_line(done.stderr, "libEGL.so.1", "libegl1", "--host-egl")
        self.assertEqual(os.listdir(self.folder), ["broken"])

    # Many machines have no OpenGL ES 1. The recorder's default would then lead back to the front end.
    def test_a_machine_without_gles1_still_records_gles2(self):
        self.hide_libraries("libGLESv1_CM.so.1", "libGLESv1_CM.so", "libGLES_CM.so")
        self.record_well("--frames", "0", "--", program("reach_loaded"), "procaddress", "libEGL.so.1", "-")
        self.assertTrue(self.trace().ends_with_footer())
        self.assertEqual(self.trace().counts()["eglSwapBuffers"], 1)

    # A host library given by hand is the one that the recorder gets.
    def test_a_given_host_library_reaches_the_configuration(self):
        found = self.record("--", "sed", "-n", "s/^EglLibraryPath = //p", "nebtrace.cfg").stdout.strip()
        os.symlink(found, self.path("libMyEGL.so"))
        done = self.record("--host-egl", "./libMyEGL.so", "--", "cat", "nebtrace.cfg")
        self.assertIn("libMyEGL.so", done.stdout)
        self.assertEqual(done.stdout.count("EglLibraryPath"), 1)

    # Front ends that are on the path already would be taken for the host and call themselves for ever.
    def test_front_ends_on_the_library_path_are_refused(self):
        self.environment["LD_LIBRARY_PATH"] = os.path.join(os.path.dirname(NEBTRACE), "..", "frontends")
        done = self.record("--", CUBE, "--frames", "1")
        self.assertEqual(done.returncode, 1)
        self.assert_one_line(done.stderr, "LD_LIBRARY_PATH")

    # A library path of the user's stays in force behind the front ends.
    def test_the_library_path_is_kept_behind_the_front_ends(self):
        self.environment["LD_LIBRARY_PATH"] = "/some/folder"
        done = self.record("--", "sh", "-c", "echo $LD_LIBRARY_PATH")
        front, rest = done.stdout.strip().split(":")
        self.assertTrue(os.path.exists(os.path.join(front, "libEGL.so.1")))
        self.assertEqual(rest, "/some/folder")

    # An application that never came to GL must not look like a success of the recorder's.
    def test_a_run_without_a_recording_says_so(self):
        done = self.record("--", "true")
        self.assertEqual(done.returncode, 0)
        self.assert_one_line(done.stderr, "nothing was recorded: true loaded neither EGL nor GLES, or loaded them by")

    # Where the reason can be seen in the program itself, it is told.
    def test_a_program_that_takes_no_front_ends_is_told(self):
        for bits, reason in ((64, "it is linked statically"), (32, "it is a 32-bit program")):
            with self.subTest(bits=bits):
                with open(self.path("alone"), "wb") as file:
                    file.write(static_program(bits))
                os.chmod(self.path("alone"), 0o755)
                done = self.record("--", "./alone")
                if done.returncode == 126:
                    self.skipTest("this machine runs no such program")
                self.assertEqual(done.returncode, 0)
                self.assert_one_line(done.stderr, "nothing was recorded: ./alone did not load the front ends: " + reason)

    # The dynamic linker takes no library path from a user for a program with another's rights.
    @unittest.skipUnless(os.geteuid() == 0, "only root gives a file away")
    def test_a_program_with_rights_of_its_own_is_told(self):
        shutil.copy(shutil.which("true"), self.path("given"))
        os.chown(self.path("given"), 1, 1)
        os.chmod(self.path("given"), 0o4755)
        os.chmod(self.folder, 0o755)
        done = self.record("--", "./given")
        self.assert_one_line(done.stderr, "set-user-ID", "record a copy of it")

    # A crash ahead of the first call is the reason, and not a library that was not found.
    def test_an_application_that_crashed_early_is_told(self):
        done = self.record("--", "sh", "-c", "kill -SEGV $$")
        self.assert_one_line(done.stderr, "sh loaded neither EGL nor GLES before signal 11 ended it")

    # The same for a range that the application did not reach.
    def test_a_range_that_was_not_reached_says_so(self):
        done = self.record("--frames", "50-60", "--", CUBE, "--frames", "2", "--size", "40x30")
        self.assertEqual(done.returncode, 0)
        self.assertIn("nothing was recorded: the application ended before frame 50: no call fell into", done.stderr)

    # A range of the configuration's that holds nothing is named, too.
    def test_a_range_that_holds_nothing_says_so(self):
        self.write("mine.cfg", "StartFrame = 5\nEndFrame = 2\n")
        done = self.record("--config", "mine.cfg", "--", CUBE, "--frames", "2", "--size", "40x30")
        self.assertIn("nothing was recorded: the configuration's EndFrame is ahead of its StartFrame\n", done.stderr)

    # An application that loads the libraries and does nothing with them leaves a header.
    def test_a_run_without_calls_says_so(self):
        done = self.record("--", program("idle"))
        self.assertIn("nothing was recorded: the application ended before it made a call\n", done.stderr)

    # A file that cannot be made is not the application's fault. It runs as ever.
    def test_an_output_that_cannot_be_written_says_so(self):
        os.mkdir(self.path("folder"))
        for name, reason in (
            ("missing/trace.nebt", "missing/trace.nebt cannot be written: No such file or directory"),
            ("folder", "folder is a folder"),
        ):
            with self.subTest(name=name):
                done = self.record("-o", name, "--", CUBE, "--frames", "1", "--size", "40x30")
                self.assertEqual(done.returncode, 0)
                self.assert_one_line(done.stderr, "nothing was recorded: ", self.path(reason))

    # A trace from an earlier run must not be told as this run's.
    def test_an_older_trace_is_not_taken_for_a_new_one(self):
        self.record_well("--frames", "0", "--", CUBE, "--frames", "1", "--size", "40x30")
        done = self.record("--", "true")
        self.assert_one_line(done.stderr, "nothing was recorded")

    # The line at the end tells file, bytes, frames and calls as they are.
    def test_the_summary_is_true(self):
        done = self.record("--frames", "0-2", "--", CUBE, "--frames", "4", "--size", "40x30")
        trace = self.trace()
        self.assert_one_line(
            done.stderr,
            f"{self.path('trace.nebt')}: {len(trace.bytes)} bytes, 3 frames, {len(trace.records)} calls",
        )

    # Usage errors are one line and exit code 2, and nothing runs.
    def test_usage_errors_give_2(self):
        for arguments in (
            ["--frames", "5-2", "--", "true"],
            ["--frames", "x", "--", "true"],
            ["--frames", "3-", "--", "true"],
            ["--frames", "-1", "--", "true"],
            ["--no-such-option", "--", "true"],
            ["--config", "no-such-file", "--", "true"],
            ["--"],
            [],
        ):
            with self.subTest(arguments=arguments):
                done = self.record(*arguments)
                self.assertEqual(done.returncode, 2)
                self.assert_one_line(done.stderr, "; nebtrace record --help tells more\n")

    # Both work everywhere, also ahead of what a subcommand requires.
    def test_help_and_version_work_for_every_command(self):
        version = self.run_command(NEBTRACE, "--version").stdout
        self.assertTrue(version.startswith("nebtrace "))
        for command in ([], ["record"], ["info"], ["dump"], ["repair"], ["remote"], ["perf"]):
            with self.subTest(command=command):
                self.assertEqual(self.run_command(NEBTRACE, *command, "--version").stdout, version)
                told = self.run_command(NEBTRACE, *command, "--help")
                self.assertEqual((told.returncode, told.stderr), (0, ""))
                self.assertIn("--help", told.stdout)
                self.assertIn("Usage: nebtrace", told.stdout)

    # The recorder opens the file by the text of a line in its configuration, which cannot hold everything.
    def test_an_output_that_the_configuration_cannot_carry_is_refused(self):
        for name in ("x" * 600, "two\nlines"):
            done = self.record("-o", name, "--", "true")
            self.assertEqual(done.returncode, 1)
            self.assertIn("cannot carry this path, which is too long, or has blanks at an end or a line break", done.stderr)
            self.assertEqual(os.listdir(self.folder), [])

    # The configuration is placed in the working directory, which must take it.
    def test_a_working_directory_that_cannot_be_written_says_so(self):
        done = subprocess.run([NEBTRACE, "record", "--", "true"], cwd="/proc/self", env=self.environment, text=True,
                              stderr=subprocess.PIPE, timeout=LONGEST, check=False)
        self.assertEqual(done.returncode, 1)
        self.assert_one_line(done.stderr, "start nebtrace record in a folder that you may write to")

    # Half an installation says what it is.
    def test_missing_front_ends_say_so(self):
        alone = shutil.copy(NEBTRACE, self.folder)
        done = self.run_command(alone, "record", "--", "true")
        self.assertEqual(done.returncode, 1)
        self.assert_one_line(done.stderr, "the front ends that belong to", "install nebtrace again, as a whole")


if __name__ == "__main__":
    unittest.main()
