"""The widget extension under more requests than it can take at once, a host that never reads, and
kills: it holds no more than it must, and nothing afterwards."""

import itertools
import json
import os
import random
import signal
import time

from echo_service import EchoService
from watched_process import HANG_SECONDS
from extension_client import RPCError
from extension_test import (ADAPTER, INTERNET, MAC, PANORAMIC, WIFI, ExtensionTest,
                            lean_environment, rows_of)
from process_figures import Peaks, descriptors, resident_kilobytes, threads
from recording import DataFolder, decoded

BUSY = -32000
# Of the program as it is: what is made at once, and what waits.
AT_ONCE, WAITING = 64, 1024
# For 64 timelines under way, a thousand that wait and the answers: far below what 1,500 of them
# would take, and above what a sanitizer adds.
MOST_GROWTH_KILOBYTES = 160 * 1024
# The pools are bounded by themselves, with those that wait for others.
MOST_MORE_THREADS = 256
KILLS = 25


class LoadTest(ExtensionTest):
    def setUp(self):
        super().setUp()
        self.add_adapter()
        self.service = self.start(EchoService("--geolocation-table", self.write_table()))
        url = "http://{}:{}".format(*self.service.addresses[0])
        self.settings = {"services": {"ipv4_echo": url, "geolocation": url},
                         "env": lean_environment()}

    def warm_host(self):
        """A host that has been through everything once, so that what is made at first use is
        there."""
        host = self.host(**self.settings)
        for kind in (PANORAMIC, ADAPTER, WIFI):
            host.ask("widget/timeline", kind=kind, family="medium")
        self.begin_figures(host.extension)
        return host

    def begin_figures(self, extension):
        self.descriptors = self.settled_descriptors(extension)
        self.threads = threads(extension.pid)
        self.memory = resident_kilobytes(extension.pid)

    def settled_descriptors(self, extension, expected=None):
        """The number, once it has come to what is expected or stays the same."""
        deadline = time.monotonic() + HANG_SECONDS
        last = None
        while time.monotonic() < deadline:
            now = descriptors(extension.pid)
            if now == expected or (expected is None and now == last):
                return now
            last = now
            time.sleep(0.3)
        return descriptors(extension.pid)

    def assert_unharmed(self, host, peaks):
        extension = host.extension
        self.assertEqual(self.descriptors, self.settled_descriptors(extension, self.descriptors))
        growth = peaks.resident_kilobytes - self.memory
        print(f"memory {self.memory} KiB, at most {growth} KiB more; at most {peaks.threads} threads "
              f"(before: {self.threads}) and {peaks.descriptors} descriptors (before: "
              f"{self.descriptors}); afterwards {threads(extension.pid)} threads, "
              f"{resident_kilobytes(extension.pid)} KiB")
        self.assertLess(growth, MOST_GROWTH_KILOBYTES)
        self.assertLessEqual(peaks.threads, self.threads + MOST_MORE_THREADS)
        self.assertEqual(5, len(host.ask("widgets/list")["widgets"]))
        self.assertEqual([], host.faults)
        self.assertEqual(0, extension.finish())
        self.assertEqual([], extension.errors)

    def answers(self, host, pending):
        """All of them; asking now and then keeps a slow machine from the end of patience."""
        deadline = time.monotonic() + 4 * HANG_SECONDS
        while not all(each.is_answered() for each in pending):
            self.assertLess(time.monotonic(), deadline, "not every request is answered")
            host.ask("widgets/list")
            time.sleep(0.2)
        return host.answers(pending)

    def assert_answered_or_busy(self, results):
        """(answered, refused)"""
        refused = [each for each in results if isinstance(each, RPCError)]
        self.assertEqual({BUSY} if refused else set(), {each.code for each in refused})
        answered = [each for each in results if isinstance(each, dict)]
        self.assertEqual(len(results), len(refused) + len(answered))
        for each in answered:
            self.entry_of(each)
        return len(answered), len(refused)


class CrowdTest(LoadTest):
    def test_500_timelines_in_flight(self):
        host = self.warm_host()
        kinds = itertools.islice(itertools.cycle((PANORAMIC, INTERNET, ADAPTER, WIFI)), 500)
        with Peaks(host.extension.pid) as peaks:
            begin = time.monotonic()
            pending = host.begin_all("widget/timeline",
                                     [{"kind": kind, "family": "medium"} for kind in kinds])
            results = self.answers(host, pending)
            seconds = time.monotonic() - begin
        print(f"500 timelines in {seconds:.1f} s")
        self.assertEqual((500, 0), self.assert_answered_or_busy(results))
        self.assert_unharmed(host, peaks)

    def test_1500_timelines_in_flight(self):
        """What waits is bounded: the rest is refused while the service keeps all waiting."""
        host = self.warm_host()
        with Peaks(host.extension.pid) as peaks:
            self.service.process.send_signal(signal.SIGSTOP)
            pending = host.begin_all("widget/timeline",
                                     [{"kind": INTERNET, "family": "medium"}] * 1500)
            host.ask("widgets/list")
            early = [each for each in pending if each.is_answered()]
            self.service.process.send_signal(signal.SIGCONT)
            results = self.answers(host, pending)
        answered, refused = self.assert_answered_or_busy(results)
        print(f"1,500 timelines: {answered} answered, {refused} refused")
        self.assertGreaterEqual(answered, AT_ONCE + WAITING)
        self.assertGreater(refused, 0)
        self.assertGreaterEqual(len(early), refused)
        self.assert_unharmed(host, peaks)

    def test_a_host_that_never_reads(self):
        """Nothing is read from it any more as soon as it leaves too much unread; nothing is lost."""
        host = self.raw_host(**self.settings)
        host.ask("widget/placeholder", 0, kind=PANORAMIC, family="large")
        self.begin_figures(host.extension)
        requests = [json.dumps({"jsonrpc": "2.0", "id": number, "method": "widget/placeholder",
                                "params": {"kind": PANORAMIC, "family": "large"}}).encode() + b"\n"
                    for number in range(1, 20_001)]
        with Peaks(host.extension.pid) as peaks:
            sent = self.send_until_blocked(host.extension.socket, b"".join(requests))
            self.assertLess(sent, sum(map(len, requests)), "all was taken in")
            self.assertTrue(host.extension.is_alive())
            whole = sum(length <= sent for length in itertools.accumulate(map(len, requests)))
            self.assertEqual([*range(1, whole + 1)], [host.receive()["id"] for _ in range(whole)])
        growth = peaks.resident_kilobytes - self.memory
        print(f"{sent} bytes of {whole} requests taken in, {growth} KiB more memory")
        self.assertLess(growth, MOST_GROWTH_KILOBYTES)
        self.send_until_blocked(host.extension.socket, b"\n" + b"".join(requests))
        host.extension.socket.close()
        self.assertEqual(0, host.extension.wait())
        self.assertEqual([], host.extension.errors)

    def send_until_blocked(self, connection, data):
        """The number of bytes that were taken until none was for a while."""
        sent = 0
        connection.settimeout(2)
        try:
            while sent < len(data):
                sent += connection.send(data[sent:sent + 65536])
        except TimeoutError:
            pass
        return sent


class KilledTest(LoadTest):
    def test_kills_amid_requests(self):
        """The metrics files are whole, and the next extension goes on from them."""
        seed = int(os.environ.get("LANTERNFOLD_SEED", random.randrange(2**32)))
        print(f"LANTERNFOLD_SEED={seed}")
        source = random.Random(seed)
        folder = DataFolder(self.data)
        files = [folder.file, folder.metrics / folder.file.name]
        left_locked = 0
        for _ in range(KILLS):
            host = self.raw_host(**self.settings)
            host.send_messages(*({"id": number, "method": "widget/timeline", "params": {
                "kind": (PANORAMIC, ADAPTER)[number % 2], "family": "medium"}}
                for number in range(40)))
            time.sleep(source.uniform(0, 0.25))
            self.assertEqual(-signal.SIGKILL, host.extension.finish(signal.SIGKILL))
            host.extension.__exit__()
            for file in files:
                if file.exists():
                    self.assertIn("en0", decoded(file.read_bytes())[1])
            left_locked += any(file.with_suffix(".lock").exists() for file in files)
        print(f"{KILLS} kills, {left_locked} of them left a lock")
        host = self.host(**self.settings)
        for kind in (ADAPTER, PANORAMIC):
            # The lock that the last one left may outlast the first wait for it.
            host.ask("widget/timeline", kind=kind, family="medium")
            entry = self.entry_of(host.ask("widget/timeline", kind=kind, family="medium"))
            self.assertEqual(MAC, rows_of(entry)["MAC"])
        self.assertEqual([False, False], [file.with_suffix(".lock").exists() for file in files])
