"""What `record` shows and keeps: samples, restarts, a second recorder, other commands beside it."""

import json
import os
import signal
import subprocess
import time

from namespaces import ip
from program import json_of, run
from record_test import RecordTest
from recording import DataFolder, boot_time, check_counters, decoded, environment_with


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

    def test_an_interruption_at_any_moment_ends_after_the_sample_under_way(self):
        """Whole file, no lock, and a line for what was kept. Before the program listens to it, the
        signal ends it as it would any other."""
        ended = set()
        for delay in range(0, 90, 3):
            self.data.file.unlink(missing_ok=True)
            with self.recorder("--json") as recorder:
                time.sleep(delay / 1000)
                status = recorder.finish()
                self.assertIn(status, (0, -signal.SIGTERM), recorder.errors)
            self.assertEqual([], recorder.errors)
            if status == 0:
                kept = self.data.file.exists()
                ended.add(kept)
                self.assertFalse(self.data.lock.exists())
                self.assertEqual(1 if kept else 0, len(recorder.lines), recorder.lines)
            if self.data.file.exists():
                decoded(self.data.file.read_bytes())
        self.assertIn(True, ended, "no sample was taken in time")

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

    def test_what_was_recorded_before_the_last_boot_is_forgotten(self):
        self.record_a_link_that_goes()
        before = boot_time() - 10
        os.utime(self.data.file, (before, before))
        shown = self.adjusted()
        self.assertEqual({0: shown, 1: shown}, decoded(self.data.file.read_bytes()))
        self.assertNotIn("gone0", shown)

    def test_what_was_recorded_since_the_last_boot_stays(self):
        gone = self.record_a_link_that_goes()
        since = boot_time() + 10
        os.utime(self.data.file, (since, since))
        self.adjusted()
        self.assertEqual((gone, gone), tuple(self.data.recorded(kind)["gone0"] for kind in (0, 1)))

    def record_a_link_that_goes(self):
        """Its last counters, in the file and in no kernel any more."""
        ip("link add gone0 type veth peer name gone1")
        gone = self.adjusted()["gone0"]
        ip("link del gone0")
        self.assertEqual(gone, self.data.recorded()["gone0"])
        return gone

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
        ip(*(f"link add en{number} type ifb" for number in range(1, 101)))
        one_sample = self.seconds_of("record", "--once", "--json")[0]
        seconds, state = self.seconds_of("state", "--json")
        self.assertEqual(101, len(state["state"]["others"]))
        print(f"state over 101 interfaces: {seconds * 1000:.0f} ms, one sample: "
              f"{one_sample * 1000:.0f} ms")
        self.assertLess(seconds, 10 * one_sample, "as if every interface were a sample of its own")

    def seconds_of(self, *arguments):
        """How long a command takes, and its answer."""
        begin = time.monotonic()
        answer = json_of(*arguments, *self.data.options())
        return time.monotonic() - begin, answer
