"""What `record` keeps and what the other commands make of it: restarts, a second recorder, files and
locks that are in the way."""

import json
import os
import signal
import subprocess
import tempfile
import time
from pathlib import Path

from namespaces import NamespaceTest, ip, mount, unmount
from program import AS_NOBODY, install, json_of, run
from recording import (DataFolder, Recorder, Sender, check_counters, decoded, environment_with,
                       kernel_bytes, write_lock)

NOT_RECORDED = "Traffic is shown but not recorded: "


class RecordTest(NamespaceTest):
    def setUp(self):
        super().setUp()
        self.switch_ipv6_off()
        folder = tempfile.TemporaryDirectory(prefix="lanternfold ")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.data = DataFolder(self.folder / "data")
        ip("link add en0 arp off type veth peer name far0 arp off", "link set en0 up",
           "link set far0 up")
        self.sender = Sender("far0")
        self.addCleanup(self.sender.close)

    def recorder(self, *arguments):
        return Recorder(*arguments, *self.data.options())

    def adjusted(self):
        done = self.data.once()
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        return json.loads(done.stdout)

    def assert_kernels_counters(self, counters):
        self.assertEqual(kernel_bytes("en0"), (counters["sentBytes"], counters["recvBytes"]))

    def give_folders_to_nobody(self):
        """The program as nobody runs it, with a data folder of its own."""
        program = install(self.folder)
        for folder in (self.data.path, self.data.path / "groups", self.data.group):
            os.chown(folder, AS_NOBODY["user"], AS_NOBODY["group"])
        return program

    def state(self, *arguments, **options):
        """The counters of en0 as `state` shows them, and what it says on standard error."""
        done = run("state", "--json", *self.data.options(), *arguments, **options)
        self.assertEqual(0, done.returncode, done.stderr)
        return (json.loads(done.stdout)["state"]["others"][0]["metrics"], done.stderr.decode())


class SampleTest(RecordTest):
    def test_once_shows_and_keeps_every_interface(self):
        self.sender.send(length=1000, count=3)
        shown = self.adjusted()
        self.assertEqual({"en0", "far0", "lo"}, set(shown))
        for name, counters in shown.items():
            check_counters(name, counters)
        self.assert_kernels_counters(shown["en0"])
        self.assertEqual({0: shown, 1: shown}, decoded(self.data.file.read_bytes()))

    def test_what_is_kept_is_for_the_user_alone(self):
        self.adjusted()
        with self.recorder("--json") as recorder:
            recorder.wait_for_lines(1, seconds=10)
            modes = {each.name: oct(each.stat().st_mode & 0o777)
                     for each in (self.data.path, *self.data.path.rglob("*"))}
        self.assertEqual({"0o600"}, {mode for name, mode in modes.items()
                                     if name.startswith("connection-metrics")}, modes)
        self.assertEqual({"0o700"}, {modes[name] for name in ("data", "groups",
                                                              self.data.group.name)}, modes)

    def test_a_table_for_people(self):
        self.sender.send(length=1000, count=3)
        done = run("record", "--once", *self.data.options())
        lines = done.stdout.decode().splitlines()
        self.assertEqual((0, b"", 4), (done.returncode, done.stderr, len(lines)))
        self.assertEqual(["en0", "3", "KB"], lines[1].split()[:3])

    def test_lines_for_people(self):
        with self.recorder("--interval", "1") as recorder:
            recorder.wait_for_lines(2, seconds=10)
            sent = self.sender.send(length=1000, count=50)
            for number in range(3, 6):
                if any("received 50 KB (" in line
                       for line in recorder.wait_for_lines(number, seconds=10)):
                    break
            self.assertEqual(0, recorder.finish())
        self.assertEqual(f"Recording into {self.data.group} until interrupted.",
                         recorder.lines[0])
        self.assertTrue(recorder.lines[1].endswith("  no traffic"), recorder.lines)
        self.assertEqual(50_000, sent)
        self.assertRegex("\n".join(recorder.lines[2:]),
                         r"(?m)^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d  idle       next in 1 s    "
                         r"en0 received 50 KB \(\d+ KB/s\), sent nothing$")

    def test_lines_for_scripts(self):
        begin = time.time()
        with self.recorder("--json", "--interval", "1") as recorder:
            first, second = recorder.samples(2, seconds=10)
            self.assertEqual(0, recorder.finish())
        self.assertEqual(["date", "bandwidthClass", "intervalSeconds", "metrics"], list(first))
        self.assertRegex(first["date"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z$")
        date = time.strptime(first["date"][:19], "%Y-%m-%dT%H:%M:%S")
        self.assertAlmostEqual(begin, time.mktime(date) - time.timezone, delta=10)
        self.assertEqual(("idle", 1), (second["bandwidthClass"], second["intervalSeconds"]))
        self.assertEqual({"en0", "far0", "lo"}, set(second["metrics"]))
        self.assertEqual([], recorder.errors)

    def test_without_an_interval_the_next_sample_is_due_in_two_minutes(self):
        with self.recorder("--json") as recorder:
            (first,) = recorder.samples(1, seconds=10)
            self.assertEqual(0, recorder.finish(signal.SIGINT))
        self.assertEqual(120, first["intervalSeconds"])

    def test_an_interruption_at_any_moment_leaves_a_whole_file_and_no_lock(self):
        for delay in range(0, 60, 3):
            with self.recorder("--json") as recorder:
                time.sleep(delay / 1000)
                status = recorder.finish()
                self.assertIn(status, (0, -signal.SIGTERM), recorder.errors)
                if status == 0:
                    self.assertFalse(self.data.lock.exists())
            if self.data.file.exists():
                decoded(self.data.file.read_bytes())

    def test_it_ends_when_nobody_reads_it_any_more(self):
        with open("/dev/full", "wb") as full:
            done = run("record", "--json", *self.data.options(), stdout=full,
                       stderr=subprocess.PIPE)
        self.assertEqual(1, done.returncode)
        self.assertIn(b"cannot write to standard output", done.stderr)


class ContinuityTest(RecordTest):
    def test_counters_go_on_after_a_restart_and_after_a_kill(self):
        received = 0
        for number in (signal.SIGTERM, signal.SIGKILL, signal.SIGINT):
            with self.recorder("--json") as recorder:
                recorder.wait_for_lines(1, seconds=10)
                recorder.finish(number)
            received += self.sender.send(length=1500, count=40)
            self.assertEqual(received, self.adjusted()["en0"]["recvBytes"])

    def test_what_one_process_records_the_next_one_reads(self):
        ip("link add gone0 type veth peer name gone1")
        self.adjusted()
        ip("link del gone0")
        self.assertNotIn("gone0", self.adjusted())
        self.assertIn("gone0", self.data.recorded(), "an absent interface is remembered")

    def test_a_second_recorder_says_so_and_is_done(self):
        with self.recorder("--json") as recorder:
            recorder.wait_for_lines(1, seconds=10)
            already = (f"Another recorder keeps the traffic in {self.data.group} already; "
                       "nothing is left to do.\n").encode()
            second = run("record", "--json", *self.data.options())
            self.assertEqual((0, b"", already), (second.returncode, second.stdout, second.stderr))
            second = run("record", *self.data.options())
            self.assertEqual((0, already, b""), (second.returncode, second.stdout, second.stderr))
            self.adjusted()
            self.assert_kernels_counters(self.state()[0])
            other = run("record", "--once", "--json", "--no-app-group", *self.data.options())
            self.assertEqual(0, other.returncode)
            recorder.finish(signal.SIGKILL)
        with self.recorder("--json") as recorder:
            recorder.wait_for_lines(1, seconds=10)
            self.assertEqual(0, recorder.finish())

    def test_groups_and_the_folder_without_one_are_kept_apart(self):
        self.assertEqual(0, self.data.once("--app-group", "9.example").returncode)
        self.assertEqual(["9.example"], [each.name for each in (self.data.path / "groups").iterdir()])
        self.assertEqual(0, self.data.once("--no-app-group").returncode)
        self.assertTrue((self.data.metrics / self.data.file.name).exists())

    def test_the_state_and_the_widget_are_recorded_too(self):
        self.assertEqual("", self.state()[1])
        self.assert_kernels_counters(self.data.recorded()["en0"])
        picture = self.folder / "picture.svg"
        done = run("render", "NetworkAdapterWidget", "-o", str(picture), *self.data.options())
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        self.assertTrue((self.data.metrics / self.data.file.name).exists())

    def test_interfaces_touches_no_file(self):
        json_of("interfaces", "--json", *self.data.options())
        self.assertFalse(self.data.path.exists())

    def test_the_users_own_data_folder_is_the_default(self):
        home = self.folder / "share"
        home.mkdir()
        done = run("record", "--once", "--json", env=environment_with(XDG_DATA_HOME=str(home)))
        self.assertEqual(0, done.returncode)
        self.assertTrue(
            DataFolder(home / "net.quernaple.LanternfoldX").file.exists())

    def test_a_hundred_interfaces_are_one_sample(self):
        self.adjusted()
        ip(*(f"link add en{number} type ifb" for number in range(1, 101)))
        begin = time.monotonic()
        done = run("state", "--json", *self.data.options())
        seconds = time.monotonic() - begin
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        self.assertEqual(101, len(json.loads(done.stdout)["state"]["others"]))
        print(f"state over 101 interfaces: {seconds * 1000:.0f} ms")
        self.assertLess(seconds, 5, "as if every interface were a sample of its own")


class FileInTheWayTest(RecordTest):
    """The file's fault is said as it is; a sample that can be saved puts a good file in its place."""

    def setUp(self):
        super().setUp()
        self.data.make()

    def restoring_failed(self, done):
        """The faults of one process, each said once."""
        prefix = f"Failed to restore from file: {self.data.file} - "
        lines = done.stderr.decode().splitlines()
        for line in lines:
            self.assertTrue(line.startswith(prefix), line)
        return [line.removeprefix(prefix) for line in lines]

    def assert_replaced(self, contents, *words):
        self.data.file.write_bytes(contents)
        done = self.data.once()
        faults = self.restoring_failed(done)
        self.assertEqual((0, 1), (done.returncode, len(faults)), done.stderr)
        for word in words:
            self.assertIn(word, faults[0])
        self.assert_kernels_counters(json.loads(done.stdout)["en0"])
        self.assert_kernels_counters(self.data.recorded()["en0"])
        self.data.file.write_bytes(contents)
        metrics, errors = self.state()
        self.assertEqual(1, len(errors.splitlines()), errors)
        self.assert_kernels_counters(metrics)

    def test_an_empty_file(self):
        self.assert_replaced(b"")

    def test_a_truncated_file(self):
        self.adjusted()
        contents = self.data.file.read_bytes()
        for length in (1, 10, len(contents) // 2, len(contents) - 1):
            self.assert_replaced(contents[:length])

    def test_no_json(self):
        self.assert_replaced(b"\x00\x01\xff" * 1000)
        self.assert_replaced(b"not json at all\n")

    def test_json_of_another_shape(self):
        for contents in (b"{}", b"null", b"7", b'"text"', b"[0]", b"[[],[]]", b'[0,{"en0":7}]',
                         b'[0,{"en0":{"sentBytes":-1}}]', b'[9,{}]', b"[" * 100_000):
            self.assert_replaced(contents)

    def test_100_megabytes(self):
        self.assert_replaced(b" " * 100_000_000, "too large")

    def test_a_folder_in_the_files_place(self):
        self.data.file.mkdir()
        done = self.data.once()
        self.assertEqual((1, b""), (done.returncode, done.stdout))
        self.assertEqual("lanternfold-widgets: cannot record",
                         done.stderr.decode().splitlines()[-1][:34])
        metrics, errors = self.state()
        self.assert_kernels_counters(metrics)
        self.assertIn(NOT_RECORDED, errors)

    def test_a_file_that_may_not_be_read(self):
        """Of root's, in a folder of nobody's: it is replaced."""
        program = self.give_folders_to_nobody()
        self.data.file.write_text("[0,{},1,{}]")
        self.data.file.chmod(0o600)
        done = self.data.once(program=program, **AS_NOBODY)
        self.assertEqual((0, ["Permission denied"]),
                         (done.returncode, self.restoring_failed(done)))
        self.assert_kernels_counters(json.loads(done.stdout)["en0"])
        self.assertEqual(json.loads(done.stdout), self.data.recorded())

    def test_a_folder_that_may_not_be_written(self):
        program = self.give_folders_to_nobody()
        self.data.group.chmod(0o500)
        done = self.data.once(program=program, **AS_NOBODY)
        self.assertEqual((1, b"", 1), (done.returncode, done.stdout, len(done.stderr.splitlines())))
        self.assertIn("see whether its folder is there and can be written to",
                      done.stderr.decode())
        metrics, errors = self.state(program=program, **AS_NOBODY)
        self.assert_kernels_counters(metrics)
        self.assertTrue(errors.startswith(NOT_RECORDED), errors)
        done = run("record", *self.data.options(), program=program, **AS_NOBODY)
        self.assertEqual((1, b"", 1), (done.returncode, done.stdout, len(done.stderr.splitlines())))

    def test_a_folder_of_another_user(self):
        program = install(self.folder)
        self.data.path.chmod(0o755)
        done = self.data.once(program=program, **AS_NOBODY)
        self.assertEqual((1, b"", 2), (done.returncode, done.stdout, len(done.stderr.splitlines())))
        self.assertIn("belongs to another user", done.stderr.decode())
        metrics, errors = self.state(program=program, **AS_NOBODY)
        self.assert_kernels_counters(metrics)
        self.assertIn("belongs to another user", errors)
        self.assertIn(NOT_RECORDED, errors)


class NoPlaceTest(RecordTest):
    def test_a_data_folder_that_cannot_be_made(self):
        (self.folder / "file").write_text("")
        options = ["--data-dir", str(self.folder / "file" / "data")]
        reason = f'cannot make the folder "{self.folder / "file" / "data"}": Not a directory; '
        for arguments in ((), ("--json",), ("--once",), ("--once", "--json")):
            done = run("record", *arguments, *options)
            said, errors = done.stdout.decode(), done.stderr.decode()
            self.assertEqual(1, done.returncode)
            self.assertTrue((errors if "--json" in arguments else said).startswith(reason))
            self.assertTrue(errors.endswith("there is no folder to keep it in; choose one with "
                                            "--data-dir\n"), errors)
        done = run("state", "--json", *options)
        lines = done.stderr.decode().splitlines()
        self.assertEqual((0, 2), (done.returncode, len(lines)), lines)
        self.assertTrue(lines[0].startswith(reason), lines)
        self.assertTrue(lines[1].startswith(NOT_RECORDED), lines)
        self.assert_kernels_counters(json.loads(done.stdout)["state"]["others"][0]["metrics"])
        picture = self.folder / "picture.svg"
        done = run("render", "NetworkAdapterWidget", "-o", str(picture), *options)
        self.assertEqual(0, done.returncode)
        self.assertTrue(picture.exists())

    def test_a_full_disk(self):
        self.data.path.mkdir()
        mount("none", str(self.data.path), "tmpfs", data="size=16k,mode=700")
        self.addCleanup(unmount, str(self.data.path))
        self.adjusted()
        old = self.data.file.read_bytes()
        with open(self.data.path / "filler", "wb", buffering=0) as filler:
            try:
                while filler.write(bytes(4096)):
                    pass
            except OSError:
                pass
        done = self.data.once()
        self.assertEqual((1, 1), (done.returncode, len(done.stderr.splitlines())), done.stderr)
        self.assertIn(b"No space left on device", done.stderr)
        self.assertEqual(old, self.data.file.read_bytes())
        metrics, errors = self.state()
        self.assert_kernels_counters(metrics)
        self.assertEqual(1, len(errors.splitlines()), errors)

    def test_a_recorder_goes_on_when_a_sample_cannot_be_saved(self):
        with self.recorder("--json", "--interval", "1") as recorder:
            recorder.wait_for_lines(1, seconds=10)
            self.data.file.unlink()
            self.data.file.mkdir()
            errors = recorder.wait_for_lines(3, seconds=10, lines=recorder.errors)
            self.assertEqual(f"Failed to restore from file: {self.data.file} - Is a directory",
                             errors[0], "said once")
            self.assertEqual({f"Failed to save storage: {self.data.file} could not be written: "
                              "Is a directory"}, set(errors[1:]))
            before = len(recorder.lines)
            self.data.file.rmdir()
            recorder.wait_for_lines(before + 1, seconds=10)
            self.assertEqual(0, recorder.finish())


class LockInTheWayTest(RecordTest):
    def setUp(self):
        super().setUp()
        self.adjusted()

    def assert_free(self):
        begin = time.monotonic()
        self.adjusted()
        self.assertLess(time.monotonic() - begin, 0.45, "as if the lock had been taken")
        self.assertFalse(self.data.lock.exists())

    def test_text_is_no_lock(self):
        for contents in (b"", b"text", b"12:30", b"\xff\xfe", b"nan", b" " * 1000):
            self.data.lock.write_bytes(contents)
            self.assert_free()

    def test_a_time_in_the_past_is_no_lock(self):
        write_lock(self.data.lock, -0.001)
        self.assert_free()
        write_lock(self.data.lock, -1e9)
        self.assert_free()

    def test_a_lease_of_a_killed_process_is_waited_for(self):
        write_lock(self.data.lock, 0.3)
        begin = time.monotonic()
        self.adjusted()
        self.assertGreater(time.monotonic() - begin, 0.25)

    def test_the_year_3000(self):
        self.data.lock.write_text("31525416000.00000000")
        begin = time.monotonic()
        done = self.data.once()
        self.assertLess(time.monotonic() - begin, 2)
        self.assertEqual((1, b"", 1), (done.returncode, done.stdout, len(done.stderr.splitlines())))
        self.assertIn("lock", done.stderr.decode())
        begin = time.monotonic()
        metrics, errors = self.state()
        self.assertLess(time.monotonic() - begin, 2, "one wait, not one for every interface")
        self.assert_kernels_counters(metrics)
        self.assertEqual(1, len(errors.splitlines()), errors)
        self.assertTrue(errors.startswith(NOT_RECORDED), errors)
        with self.recorder("--json", "--interval", "1") as recorder:
            errors = recorder.wait_for_lines(2, seconds=10, lines=recorder.errors)
            self.assertEqual(0, recorder.finish())
        for line in errors:
            self.assertTrue(line.startswith("Failed to save storage: "), line)

    def test_a_folder_in_the_locks_place(self):
        self.data.lock.mkdir()
        (self.data.lock / "file").write_text("")
        done = self.data.once()
        self.assertEqual((1, 1), (done.returncode, len(done.stderr.splitlines())), done.stderr)
        self.assert_kernels_counters(self.state()[0])

    def test_no_permission(self):
        """A lock of root's in a folder that nobody may only look into: it cannot be read, so it is
        none, and it cannot be replaced."""
        program = self.give_folders_to_nobody()
        write_lock(self.data.lock, 3600)
        self.data.lock.chmod(0)
        self.data.file.chmod(0o644)
        self.data.group.chmod(0o500)
        done = self.data.once(program=program, **AS_NOBODY)
        self.assertEqual((1, b"", 1), (done.returncode, done.stdout, len(done.stderr.splitlines())))
        self.assertIn("Permission denied", done.stderr.decode())
        metrics, errors = self.state(program=program, **AS_NOBODY)
        self.assert_kernels_counters(metrics)
        self.assertEqual(1, len(errors.splitlines()), errors)
