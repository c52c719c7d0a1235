"""Files, folders and locks that are in the way of recording: a line that says so, and the truth."""

import json
import os
import pathlib
import time

from namespaces import mount, unmount
from program import AS_NOBODY, install, run
from record_test import RecordTest
from recording import STORAGE, write_lock

KEPT = "The file that could not be restored was kept as: "
CANNOT_RECORD = "lanternfold-widgets: cannot record this machine's traffic: "
NOT_RECORDED = "Traffic is shown but not recorded: "


class FileInTheWayTest(RecordTest):
    """The file's fault is said as it is; a sample that can be saved puts a good file in its place."""

    def setUp(self):
        super().setUp()
        self.data.make()

    def faults(self, errors):
        """Of one process, each said once."""
        prefix = f"Failed to restore from file: {self.data.file} - "
        lines = [line for line in errors.splitlines() if not line.startswith(KEPT)]
        for line in lines:
            self.assertTrue(line.startswith(prefix), line)
        return [line.removeprefix(prefix) for line in lines]

    def assert_kept(self, done, contents):
        """What stood in the way stands beside the new file, as the last line says."""
        line = done.stderr.decode().splitlines()[-1]
        self.assertTrue(line.startswith(f"{KEPT}{self.data.file}.damaged-"), line)
        self.assertEqual(contents, pathlib.Path(line.removeprefix(KEPT)).read_bytes())

    def assert_replaced(self, contents, *words):
        self.data.file.write_bytes(contents)
        done = self.data.once()
        faults = self.faults(done.stderr.decode())
        self.assertEqual((0, 1), (done.returncode, len(faults)), done.stderr)
        for word in words:
            self.assertIn(word, faults[0])
        self.assert_kept(done, contents)
        self.assert_kernels_counters(json.loads(done.stdout)["en0"])
        self.assert_kernels_counters(self.data.recorded()["en0"])
        self.data.file.write_bytes(contents)
        metrics, errors = self.state()
        self.assertEqual(faults, self.faults(errors))
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
        self.assertEqual(f"{CANNOT_RECORD}{self.data.file} could not be written: Is a directory; "
                         "move that folder away, since a file belongs there",
                         done.stderr.decode().splitlines()[-1])
        metrics, errors = self.state()
        self.assert_kernels_counters(metrics)
        self.assertIn(NOT_RECORDED, errors)

    def test_a_pipe_in_the_files_place(self):
        os.mkfifo(self.data.file)
        done = self.data.once()
        self.assertEqual((1, b""), (done.returncode, done.stdout))
        line = done.stderr.decode().splitlines()[-1]
        self.assertTrue(line.startswith(f"{CANNOT_RECORD}{self.data.file} could not be written: "),
                        line)
        self.assertIn("move it away, since it is no ordinary file (a pipe", line)

    def test_a_loop_of_links_in_the_files_place(self):
        self.data.file.symlink_to(self.data.file.name)
        done = self.data.once()
        self.assertEqual((1, b""), (done.returncode, done.stdout))
        line = done.stderr.decode().splitlines()[-1]
        self.assertTrue(line.startswith(f"{CANNOT_RECORD}{self.data.file} could not be written: Too "
                                        "many levels of symbolic links; remove the link"), line)

    def test_a_file_that_may_not_be_read(self):
        """Of root's, in a folder of nobody's: it is replaced."""
        program = self.give_folders_to_nobody()
        self.data.file.write_text("[0,{},1,{}]")
        self.data.file.chmod(0o600)
        done = self.data.once(program=program, **AS_NOBODY)
        self.assertEqual((0, ["Permission denied"]),
                         (done.returncode, self.faults(done.stderr.decode())))
        self.assert_kept(done, b"[0,{},1,{}]")
        self.assert_kernels_counters(json.loads(done.stdout)["en0"])
        self.assertEqual(json.loads(done.stdout), self.data.recorded())

    def test_a_folder_that_may_not_be_written(self):
        program = self.give_folders_to_nobody()
        self.data.group.chmod(0o500)
        done = self.data.once(program=program, **AS_NOBODY)
        self.assertEqual((1, b"", 1), (done.returncode, done.stdout, len(done.stderr.splitlines())))
        self.assertEqual(f"{CANNOT_RECORD}the lock file {self.data.lock} could not be written: "
                         "Permission denied; check the permissions of the file and its folder, or "
                         "choose another folder with --data-dir\n", done.stderr.decode())
        metrics, errors = self.state(program=program, **AS_NOBODY)
        self.assert_kernels_counters(metrics)
        self.assertTrue(errors.startswith(NOT_RECORDED), errors)
        done = run("record", *self.data.options(), program=program, **AS_NOBODY)
        claim = self.data.group / f"{STORAGE}.recorder"
        self.assertEqual(f"{CANNOT_RECORD}{claim} could not be written: Permission denied; check the "
                         "permissions of the file and its folder, or choose another folder with "
                         "--data-dir\n", done.stderr.decode())
        self.assertEqual((1, b""), (done.returncode, done.stdout))

    def test_a_folder_of_another_user(self):
        program = install(self.folder)
        self.data.path.chmod(0o755)
        done = self.data.once(program=program, **AS_NOBODY)
        self.assertEqual((1, b"", 1), (done.returncode, done.stdout, len(done.stderr.splitlines())))
        self.assertIn(f'{CANNOT_RECORD}the folder "{self.data.path}" belongs to another user; choose',
                      done.stderr.decode())
        metrics, errors = self.state(program=program, **AS_NOBODY)
        self.assert_kernels_counters(metrics)
        self.assertEqual(1, len(errors.splitlines()), errors)
        self.assertIn("belongs to another user", errors)
        self.assertIn(NOT_RECORDED, errors)


class NoPlaceTest(RecordTest):
    def assert_cannot_record(self, reason, *options, **settings):
        """One line, the same one however the command is given."""
        for arguments in ((), ("--json",), ("--once",), ("--once", "--json")):
            done = run("record", *arguments, *options, **settings)
            self.assertEqual((1, "", f"{CANNOT_RECORD}{reason}\n"),
                             (done.returncode, done.stdout.decode(), done.stderr.decode()))

    def test_a_file_in_the_data_folders_place(self):
        place = self.folder / "file"
        place.write_text("mine")
        self.assert_cannot_record(f'"{place}" is not a folder; move it away, or choose a folder with '
                                  "--data-dir", "--data-dir", str(place))
        self.assertEqual("mine", place.read_text())

    def test_a_data_folder_that_is_not_writable(self):
        program = self.give_folders_to_nobody_without(self.data.path)
        self.assert_cannot_record(
            f'cannot make the folder "{self.data.path / "groups"}": Permission denied; allow this '
            "user to write into the folder that it belongs in, or choose another one with "
            "--data-dir", *self.data.options(), program=program, **AS_NOBODY)

    def give_folders_to_nobody_without(self, path):
        """The program as nobody runs it, with an empty data folder that may only be read."""
        program = install(self.folder)
        path.mkdir()
        os.chown(path, AS_NOBODY["user"], AS_NOBODY["group"])
        path.chmod(0o500)
        return program

    def test_a_loop_of_links_in_the_data_folders_place(self):
        place = self.folder / "loop"
        place.symlink_to("loop")
        self.assert_cannot_record(
            f'cannot make the folder "{place}": Too many levels of symbolic links; remove the link '
            "in it that leads back to itself, or choose another folder with --data-dir",
            "--data-dir", str(place))

    def test_a_link_that_leads_nowhere_in_the_data_folders_place(self):
        place = self.folder / "link"
        place.symlink_to("gone")
        self.assert_cannot_record(
            f'"{place}" is a link that leads nowhere; remove it or make what it leads to, or choose '
            "another folder with --data-dir", "--data-dir", str(place))

    def test_a_data_folder_with_an_overlong_name(self):
        done = run("record", "--data-dir", str(self.folder / ("a" * 5000)))
        line = done.stderr.decode()
        self.assertEqual((1, b"", 1), (done.returncode, done.stdout, len(line.splitlines())))
        self.assertIn("File name too long; choose a folder with a shorter name with --data-dir", line)
        self.assertLess(len(line), 1000)

    def test_a_group_without_a_folder_is_recorded_without_a_group(self):
        self.data.path.mkdir(mode=0o700)
        (self.data.path / "groups").write_text("")
        done = self.data.once()
        self.assertEqual((0, f"Traffic is kept in {self.data.metrics}, where groups do not see it: "
                             f'"{self.data.path / "groups"}" is not a folder; move it away, or choose '
                             "a folder with --data-dir\n"), (done.returncode, done.stderr.decode()))
        self.assert_kernels_counters(json.loads(done.stdout)["en0"])

    def test_a_data_folder_that_cannot_be_made(self):
        (self.folder / "file").write_text("")
        options = ["--data-dir", str(self.folder / "file" / "data")]
        reason = (f'"{self.folder / "file"}" is not a folder; move it away, or choose a folder with '
                  "--data-dir")
        self.assert_cannot_record(reason, *options)
        done = run("state", "--json", *options)
        self.assertEqual((0, f"{NOT_RECORDED}{reason}\n"), (done.returncode, done.stderr.decode()))
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
                              "Is a directory; move that folder away, since a file belongs there"},
                             set(errors[1:]))
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
        self.assertIn(f"remove {self.data.lock}", errors)
        with self.recorder("--json", "--interval", "1") as recorder:
            errors = recorder.wait_for_lines(2, seconds=10, lines=recorder.errors)
            self.assertEqual(0, recorder.finish())
        self.assertEqual({"Failed to save storage: another program kept the lock for longer than was "
                          f"waited; if that goes on, remove {self.data.lock}"}, set(errors))

    def test_a_folder_in_the_locks_place(self):
        self.data.lock.mkdir()
        (self.data.lock / "file").write_text("")
        done = self.data.once()
        self.assertEqual((1, f"{CANNOT_RECORD}the lock file {self.data.lock} could not be written: Is a "
                             "directory; move that folder away, since a file belongs there\n"),
                         (done.returncode, done.stderr.decode()))
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
