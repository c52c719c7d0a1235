"""How `record` ends: signals, a reader that goes, a terminal that is closed, a system that is short."""

import os
import pty
import resource
import signal
import subprocess
import time

from program import PROGRAM, run
from record_test import RecordTest
from recording import Recorder, write_lock


class SignalTest(RecordTest):
    def test_what_asks_it_to_end_ends_it_with_status_0(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.recorder("--json", "--interval", "1") as recorder:
                recorder.wait_for_lines(1, seconds=10)
                self.assertEqual(0, recorder.finish(number), number)
            self.assertEqual([], recorder.errors)
            self.assertFalse(self.data.lock.exists())

    def test_a_terminal_that_is_closed_does_not_end_what_was_to_outlive_it(self):
        """As nohup has it: the signal is ignored from the beginning."""
        with Recorder("--json", "--interval", "1", *self.data.options(),
                      preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN)) as recorder:
            recorder.wait_for_lines(1, seconds=10)
            recorder.process.send_signal(signal.SIGHUP)
            recorder.wait_for_lines(len(recorder.lines) + 1, seconds=10)
            self.assertEqual(0, recorder.finish())

    def test_an_interruption_while_another_program_keeps_the_lock(self):
        """It is part of the sample under way, and waits no longer than that does."""
        with self.recorder("--json", "--interval", "1") as recorder:
            recorder.wait_for_lines(1, seconds=10)
            write_lock(self.data.lock, 3600)
            recorder.wait_for_lines(1, seconds=10, lines=recorder.errors)
            time.sleep(0.7)
            begin = time.monotonic()
            self.assertEqual(0, recorder.finish(signal.SIGINT))
            self.assertLess(time.monotonic() - begin, 10, "an hour, as the lock says")

    def test_asked_twice_it_ends_as_if_asked_once(self):
        """As `timeout` does it, which signals its child and then the group."""
        for command in (("record", "--json", "--interval", "1"), ("state", "--watch", "--json")):
            for number in range(10):
                process = subprocess.Popen([PROGRAM, *command, *self.data.options()],
                                           stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
                self.addCleanup(process.stdout.close)
                self.addCleanup(process.kill)
                process.stdout.readline()
                for _ in range(2):
                    process.send_signal(signal.SIGTERM)
                    time.sleep(number * 0.0002)
                self.assertEqual(0, process.wait(timeout=10), (command, number))

    def test_another_command_ends_as_any_program_does(self):
        process = subprocess.Popen([PROGRAM, "record", "--once", *self.data.options()],
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   preexec_fn=lambda: write_lock_of(self.data))
        time.sleep(0.25)
        process.send_signal(signal.SIGHUP)
        self.assertEqual(-signal.SIGHUP, process.wait(timeout=10))


def write_lock_of(data):
    data.group.mkdir(parents=True, exist_ok=True)
    for folder in (data.path, data.path / "groups", data.group):
        folder.chmod(0o700)
    write_lock(data.lock, 3600)


class ReaderTest(RecordTest):
    def test_a_reader_that_goes_is_no_fault(self):
        for arguments in (("--json",), ()):
            process = subprocess.Popen(
                [PROGRAM, "record", "--interval", "1", *arguments, *self.data.options()],
                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            self.addCleanup(process.kill)
            self.assertNotEqual(b"", process.stdout.readline())
            process.stdout.close()
            self.assertEqual((0, b""), (process.wait(timeout=10), process.stderr.read()))
            process.stderr.close()
            self.assertFalse(self.data.lock.exists(), "ended in the middle of a sample")

    def test_a_reader_that_takes_the_beginning_of_a_list(self):
        reading, writing = os.pipe()
        os.close(reading)
        for arguments in (("interfaces", "--json"), ("record", "--once"), ("--help",),
                          ("state", "--watch")):
            options = [] if "--help" in arguments else self.data.options()
            done = run(*arguments, *options, stdout=writing, stderr=subprocess.PIPE)
            self.assertEqual((0, b""), (done.returncode, done.stderr), arguments)
        os.close(writing)

    def test_a_terminal_that_is_gone(self):
        terminal, end = pty.openpty()
        process = subprocess.Popen([PROGRAM, "record", "--interval", "1", *self.data.options()],
                                   stdin=subprocess.DEVNULL, stdout=end, stderr=subprocess.PIPE)
        self.addCleanup(process.kill)
        os.close(end)
        os.read(terminal, 1)
        os.close(terminal)
        self.assertEqual((0, b""), (process.wait(timeout=10), process.stderr.read()))
        process.stderr.close()

    def test_an_output_that_was_never_open_is_a_failure(self):
        done = run("record", "--json", *self.data.options(), preexec_fn=lambda: os.close(1))
        self.assertEqual(1, done.returncode)
        self.assertEqual(b"lanternfold-widgets: cannot write to standard output; check that it is "
                         b"open and that the disk is not full\n", done.stderr)


class FewDescriptorsTest(RecordTest):
    def test_too_few_file_descriptors_are_said_before_any_file_is_blamed(self):
        for limit in range(8, 35):
            for arguments in (("--once", "--json"), ("--json",)):
                done = run("record", *arguments, *self.data.options(), preexec_fn=lambda: resource.
                           setrlimit(resource.RLIMIT_NOFILE, (limit, limit)))
                self.assertEqual(
                    (1, b"", b"lanternfold-widgets: the system lacks what is needed: opening 32 files "
                     b"at once: Too many open files; raise the limit of open files, as with \"ulimit "
                     b"-n 256\"\n"), (done.returncode, done.stdout, done.stderr), limit)
        self.assertFalse(self.data.path.exists())

    def test_enough_of_them(self):
        done = self.data.once(preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (35, 35)))
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        few = {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (35, 35))}
        with Recorder("--json", "--interval", "1", *self.data.options(), **few) as recorder:
            recorder.wait_for_lines(2, seconds=10)
            self.assertEqual(0, recorder.finish())
        self.assertEqual([], recorder.errors)
