"""Several processes that sample one file at once: nothing is lost, torn or negative.

What the lock promises, and what it does not. Looking for a free lock and taking it are two steps,
the text of a lock just made comes a moment after its file, a lease ends half a second after its
process began to wait, and whoever has ended a step removes the lock of whoever holds it by then. So
two steps overlap when two processes look within the moment that taking takes, when a step outlives
its lease, and for a step or two after either. Of two steps that overlap, the one that saves last
writes what it loaded before the other one saved: what only the other one has read is lost, which is
the last record of an interface that goes at once. Nothing is lost of an interface that stays until
every step that began before its record was kept has ended.
"""

import itertools
import json
import signal
import subprocess
import tempfile
import threading
import time
from datetime import datetime
from pathlib import Path

from namespaces import NamespaceTest, ip
from program import PROGRAM
from recording import (LEASE_SECONDS, DataFolder, Recorder, Sender, SteadySender, check_counters,
                       decoded, kernel_bytes, lease_end, went_backwards)

SECONDS = 30
PROCESSES = 3
LINKS_AT_ONCE = 8
LENGTHS = 500  # of frames: each of the next so many links has its own, and none is above the MTU
ROUNDS = 20


class ContentionTest(NamespaceTest):
    def setUp(self):
        super().setUp()
        self.switch_ipv6_off()
        folder = tempfile.TemporaryDirectory(prefix="lanternfold ")
        self.addCleanup(folder.cleanup)
        self.data = DataFolder(Path(folder.name) / "data").make()
        self.links = itertools.count(1)

    def add_links(self, count):
        """Links that something has come through and will not again: their last counters."""
        result = {}
        for _ in range(count):
            number = next(self.links)
            near, far = f"near{number}", f"far{number}"
            ip(f"link add {near} arp off type veth peer name {far} arp off",
               f"link set {near} up", f"link set {far} up")
            # From the end that came up last: the other one sends when its carrier is noticed.
            sender = Sender(far)
            length = sender.send(1000 + number % LENGTHS, count=3)
            sender.close()
            self.assertEqual((0, length), kernel_bytes(near))
            result |= {near: (0, length), far: (length, 0)}
        return result

    def delete_links(self, links):
        ip(*(f"link del {name}" for name in links if name.startswith("near")))

    def recorded_bytes(self, links):
        """(sent, received) of those links that the file knows."""
        recorded = self.data.recorded()
        return {name: (recorded[name]["sentBytes"], recorded[name]["recvBytes"])
                for name in links if name in recorded}


class CrowdTest(ContentionTest):
    """Samplers that get into each other's way, as many as the machine can run."""

    def setUp(self):
        super().setUp()
        ip("link add en0 arp off type veth peer name far0 arp off", "link set en0 up",
           "link set far0 up")
        self.is_over = threading.Event()
        self.faults = []
        self.seen = []  # (moment, adjusted counters) of every file that was another one than before
        self.longest_seconds = 0.0  # of a process
        self.hasty = {}  # the last counters of links that were sampled only once
        self.ended = [0] * PROCESSES
        self.samples = self.refused = self.looks = 0

    def test_30_seconds_of_samplers_that_get_into_each_others_way(self):
        threads = [threading.Thread(target=self.take_samples, args=(number,))
                   for number in range(PROCESSES)]
        threads[0] = threading.Thread(target=self.sample_links_once)
        threads.append(threading.Thread(target=self.look_at_the_file))
        with SteadySender("far0", bytes_per_second=200_000, length=1514), \
                Recorder("--json", "--interval", "1", *self.data.options()) as recorder:
            for thread in threads:
                thread.start()
            try:
                gone = self.links_that_come_and_go(recorder)
            finally:
                self.is_over.set()
                for thread in threads:
                    thread.join()
            self.assertEqual(0, recorder.finish())
        print(f"{self.samples} samples of {PROCESSES} processes beside {len(recorder.lines)} of the "
              f"recorder, {self.refused} refused for the lock; {self.looks} looks at the file, "
              f"{len(gone)} interfaces that have gone; of {len(self.hasty)} sampled only once "
              f"{self.check_hasty_links()} were lost to steps that overlap")
        self.assertEqual([], self.faults)
        self.assertGreater(len(recorder.lines), 2 if self.is_quiet(recorder) else SECONDS // 3,
                           recorder.errors)
        self.check_recorder(recorder)
        self.check_what_was_seen(recorder)
        self.assertEqual(gone, self.recorded_bytes(gone))
        self.check_what_is_there_is_recorded()
        self.assertEqual(gone, self.recorded_bytes(gone))

    def links_that_come_and_go(self, recorder):
        """The last counters of links that go in their time. Every step that saves once the first wait
        is over has read them from the kernel, one has saved by the end of the second, and after the
        third one every step under way began with them in the file: whatever overlaps,
        only a step that forgets what it has loaded can lose them."""
        gone = {}
        end = time.monotonic() + SECONDS
        while time.monotonic() < end:
            links = self.add_links(LINKS_AT_ONCE)
            for _ in range(3):
                self.wait_for_the_steps_under_way(recorder)
            self.delete_links(links)
            gone |= links
        return gone

    def sample_links_once(self):
        """The first of the processes: links that go as soon as a sample of them has succeeded."""
        while not self.is_over.is_set():
            links = self.add_links(1)
            while not self.is_over.is_set():
                if self.take_sample(0) is not None:
                    self.hasty |= links
                    break
            self.delete_links(links)

    def wait_for_the_steps_under_way(self, recorder):
        """And for one that began meanwhile and succeeded: of the processes' next samples, all but
        one may have been under way."""
        ended, samples, lines = list(self.ended), self.samples, len(recorder.lines)
        deadline = time.monotonic() + 60
        while (any(now == before for now, before in zip(self.ended, ended))
               or self.samples <= samples + PROCESSES
               or (len(recorder.lines) < lines + 2 and not self.is_quiet(recorder))):
            self.assertLess(time.monotonic(), deadline, "a process does not end")
            time.sleep(0.01)

    def is_quiet(self, recorder):
        """Its next sample is due in a quarter of a minute or later: of two steps that overlap, one
        judges the traffic over no time at all, and a change of the class changes the interval."""
        return bool(recorder.lines) and json.loads(recorder.lines[-1])["intervalSeconds"] > 1

    def take_samples(self, number):
        """One process after the other; the counters of each are none below those before."""
        earlier = {}
        while not self.is_over.is_set():
            if (later := self.take_sample(number)) is not None:
                self.faults += went_backwards(earlier, later)
                earlier = later

    def take_sample(self, number):
        """What the process shows, none when the lock was refused to it."""
        begin = time.monotonic()
        done = self.data.once()
        self.longest_seconds = max(self.longest_seconds, time.monotonic() - begin)
        shown = None
        if done.returncode == 0:
            shown = json.loads(done.stdout)
            for name, counters in shown.items():
                check_counters(name, counters)
            self.samples += 1
        elif self.is_refusal(done):
            self.refused += 1
        else:
            self.faults.append(f"{done.returncode}: {done.stderr.decode()}")
        self.ended[number] += 1
        return shown

    def is_refusal(self, done):
        return done.returncode == 1 and b"lock" in done.stderr and len(
            done.stderr.splitlines()) == 1

    def look_at_the_file(self):
        """Whole at every look."""
        while not self.is_over.is_set():
            if self.data.file.exists():
                counters = decoded(self.data.file.read_bytes())[1]
                if not self.seen or self.seen[-1][1] != counters:
                    self.seen.append((time.monotonic(), counters))
                self.looks += 1
            time.sleep(0.002)

    def check_what_was_seen(self, recorder):
        """Of two steps that overlap, the slower one may put its counters over younger ones, which
        are as much older as its step was long: never older than the longest step. The longest time
        between two samples of the recorder, which ends with a step of its own."""
        dates = [datetime.fromisoformat(json.loads(line)["date"]) for line in recorder.lines]
        longest = max(self.longest_seconds,
                      *((later - earlier).total_seconds()
                        for earlier, later in itertools.pairwise(dates)))
        settled = 0
        for moment, counters in self.seen:
            while self.seen[settled + 1][0] < moment - longest:
                settled += 1
            if self.seen[settled][0] < moment - longest:
                self.assertEqual([], went_backwards(self.seen[settled][1], counters))
        self.assertGreater(self.seen[-1][0] - self.seen[0][0], 3 * longest)
        print(f"{len(self.seen)} files seen, the longest step {longest:.2f} s")

    def check_recorder(self, recorder):
        earlier = {}
        for line in recorder.lines:
            later = json.loads(line)["metrics"]
            self.assertEqual([], went_backwards(earlier, later))
            earlier = later

    def check_hasty_links(self):
        """How many are not recorded: few; what is recorded is whole."""
        recorded = self.recorded_bytes(self.hasty)
        self.assertEqual({name: self.hasty[name] for name in recorded}, recorded)
        lost = len(self.hasty) - len(recorded)
        self.assertLess(lost, max(1, len(self.hasty) // 4), "as if there were no lock")
        return lost

    def check_what_is_there_is_recorded(self):
        """Traffic has ended: the next sample equals the kernel's own counters."""
        done = self.data.once()
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        there = {name: kernel_bytes(name) for name in ("en0", "far0")}
        self.assertEqual(there, self.recorded_bytes(there))


class TurnsTest(ContentionTest):
    """Two processes of which one waits for the other: all that the lock promises holds."""

    def setUp(self):
        super().setUp()
        self.processes = []
        self.addCleanup(self.kill_what_is_left)

    def test_who_waits_for_the_lock_keeps_what_the_one_before_has_read(self):
        gone = {}
        outcomes = {"kept": 0, "lapsed": 0, "not caught": 0, "refused": 0}
        while outcomes["kept"] < ROUNDS:
            self.assertLess(sum(outcomes.values()), 10 * ROUNDS, outcomes)
            links = self.add_links(1)
            outcome = self.take_turns(links)
            outcomes[outcome] += 1
            if outcome == "kept":
                gone |= links
                self.assertEqual(gone, self.recorded_bytes(gone))
        print(f"{outcomes}: rounds of one process that waits for another one")

    def take_turns(self, links):
        """One process is stopped while it holds the lock, another one begins and is stopped while
        it waits; the first one goes on, the links that it has read go, then the second one does."""
        first = self.begin()
        expiry = self.stop_under_lock(first)
        if expiry is None:
            self.delete_links(links)
            return "not caught"
        before = self.data.file.read_bytes() if self.data.file.exists() else None
        second = self.begin()
        second_began = time.time()
        time.sleep(0.15)
        second.send_signal(signal.SIGSTOP)
        is_waiting = second.poll() is None and self.contents() == before
        if time.time() >= expiry:
            self.resume(second, first)
            self.delete_links(links)
            return "lapsed"
        self.assertTrue(is_waiting, "a process took a step while another one held the lock")
        self.assertEqual(0, self.resume(first))
        in_time = time.time() < expiry
        self.delete_links(links)
        status = self.resume(second)
        if not in_time:
            return "lapsed"
        if status == 1 and time.time() > second_began + LEASE_SECONDS:
            return "refused"
        self.assertEqual(0, status)
        return "kept"

    def begin(self):
        process = subprocess.Popen([PROGRAM, "record", "--once", "--json", *self.data.options()],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        self.processes.append(process)
        return process

    def stop_under_lock(self, process):
        """When its lease ends; none when the process was through before it could be stopped."""
        while process.poll() is None:
            if lease_end(self.data.lock) is not None:
                process.send_signal(signal.SIGSTOP)
                time.sleep(0.005)
                if (expiry := lease_end(self.data.lock)) is not None:
                    return expiry
                process.send_signal(signal.SIGCONT)
        return None

    def contents(self):
        return self.data.file.read_bytes() if self.data.file.exists() else None

    def resume(self, *processes):
        """The status of the last one."""
        for process in processes:
            process.send_signal(signal.SIGCONT)
        return [process.wait(timeout=10) for process in processes][-1]

    def kill_what_is_left(self):
        for process in self.processes:
            if process.poll() is None:
                process.kill()
                process.wait(timeout=10)
