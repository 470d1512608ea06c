"""A disk that is full, a limit on file sizes, a folder that cannot be written: the application runs as without the
recorder, and the log says what is lost."""

import os
import resource
import signal
import unittest

from faults import UNREAD, FaultTest, Remains, program
from support import FRONT_ENDS, NEBTRACE

A_FEW_RECORDS = 4096
FRAMES = 300  # of more than 1 KiB each
FAULTY = program("faulty")
LOST = "NEBTRACE(W) ERROR: ERROR: Writing to trace file failed. Size attempted: "


class Disk(FaultTest):
    unused = 1  # a full disk has less than so many bytes left

    def run_on_mount(self, options, *after):
        """Runs the application with its recording on a small disk of its own, under DISK; then what else is asked for,
        while that disk is still there."""
        os.mkdir(self.path("disk"))
        self.configure(TraceFile="disk/trace.nebt")
        script = (
            f"mount -t tmpfs -o {options} disk disk && LD_LIBRARY_PATH={FRONT_ENDS} {FAULTY} frames {FRAMES}; "
            f"code=$?; {'; '.join(after) or ':'}; exit $code"
        )
        return self.run_native("unshare", "-rm", "sh", "-c", script)

    def check_cut(self, done, remains, whole):
        """The recording has whole frames from the first on, and ends in the middle, as it is said."""
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn(LOST, done.stdout)
        numbers = remains.textures()
        self.assertEqual(numbers, list(range(len(numbers))))
        self.assertGreater(len(numbers), whole)
        self.assertLess(len(numbers), FRAMES)

    # Records that do not fit are lost, and each of their pieces is said; the application knows nothing of it.
    def test_a_full_disk_stops_the_recording_and_not_the_application(self):
        done = self.run_on_mount("size=128k", "cp disk/trace.nebt trace.nebt")
        remains = self.remains()
        self.check_cut(done, remains, 50)
        self.assertGreater(os.path.getsize(self.path("trace.nebt")), 128 * 1024 - self.unused)
        repaired = self.run_command(NEBTRACE, "repair", "trace.nebt", "-o", "fixed.nebt")
        self.assertEqual((repaired.returncode, repaired.stderr), (0, ""))
        fixed = Remains(self.path("fixed.nebt"))
        self.assertEqual(fixed.bytes, remains.bytes[: remains.end] + b"\x13\x10" + bytes(8))

    # Nothing fits: the log is the only trace of it.
    def test_a_disk_without_any_room_is_said(self):
        done = self.run_on_mount("size=4k", "cp disk/trace.nebt trace.nebt", )
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn(LOST, done.stdout)
        self.assertLess(os.path.getsize(self.path("trace.nebt")), 4097)

    # The file cannot be made: the recorder says so once, and writes nothing.
    def test_a_folder_that_cannot_be_written_leaves_no_recording(self):
        done = self.run_on_mount("ro,size=64k", "ls disk > left")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("NEBTRACE(M) Opening trace file to record: disk/trace.nebt\n", done.stdout)
        self.assertEqual(done.stdout.count("NEBTRACE(M) ERROR: Failed to open record trace file.\n"), 1)
        self.assertNotIn(LOST, done.stdout)
        self.assertEqual(self.read("left"), "")

    # The same for a folder that is not there, and for a name that is a folder's.
    def test_a_file_that_cannot_be_opened_is_said(self):
        for name in ("missing/trace.nebt", "."):
            with self.subTest(name=name):
                self.configure(TraceFile=name)
                done = self.run_both(FAULTY, "frames", "3")
                self.assertIn("NEBTRACE(M) ERROR: Failed to open record trace file.\n", done.stdout)

    def run_limited(self, action):
        """Runs the application under a limit of 64 KiB for each file."""

        def limit():
            signal.signal(signal.SIGXFSZ, action)
            resource.setrlimit(resource.RLIMIT_FSIZE, (64 * 1024, 64 * 1024))

        self.configure()
        return self.run_traced(FAULTY, "frames", str(FRAMES), preexec_fn=limit, restore_signals=False)

    # A write beyond the limit raises a signal that by default ends the process. Without the recorder the
    # application writes no file, so that it must not come to that.
    def test_a_limit_on_file_sizes_stops_the_recording_and_not_the_application(self):
        for action in (signal.SIG_DFL, signal.SIG_IGN):
            with self.subTest(action=action):
                done = self.run_limited(action)
                remains = self.remains()
                self.check_cut(done, remains, 25)
                self.assertLessEqual(len(remains.bytes), 64 * 1024)

    # When there is room again the recording goes on, behind a gap in the middle of a record. A reader is lost a few
    # records behind it, which are made of others' bytes; the repair keeps what can be followed.
    def test_room_that_comes_back_leaves_a_gap(self):
        room, finished = 64 * 1024, 200
        self.configure()
        limit = (room, resource.RLIM_INFINITY)
        lower = {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_FSIZE, limit)}
        with self.endless_frames(**lower) as (process, reports):
            reports.read(4 * finished)
            resource.prlimit(process.pid, resource.RLIMIT_FSIZE, (resource.RLIM_INFINITY, resource.RLIM_INFINITY))
            more = UNREAD + finished  # of which the last surely had room
            self.assertEqual(len(reports.read(4 * more)), 4 * more)
            process.kill()
        whole = Remains(self.path("trace.nebt"))
        self.assertFalse(whole.is_cut_in_a_record())
        self.assertLess(whole.end, room + A_FEW_RECORDS)
        self.assertGreater(len(whole.bytes), 2 * room)
        done = self.run_command(NEBTRACE, "repair", "trace.nebt", "-o", "fixed.nebt")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        fixed = self.trace("fixed.nebt")
        self.assertTrue(fixed.ends_with_footer())
        self.assertEqual(fixed.bytes[:-10], whole.bytes[: whole.end])
        self.assertGreater(len(fixed.of("eglSwapBuffers")), 25)


class DiskInAWindow(Disk):
    """The same while the file is written through a mapping: no write beyond what there is room for is a SIGBUS."""

    keys = {"FileWindow": 1}
    unused = A_FEW_RECORDS  # the pieces of a record are there as a whole, or not at all


if __name__ == "__main__":
    unittest.main()
