"""Two hosts on two extensions over one application group, both asking as fast as they are answered.

For as long as LANTERNFOLD_SOAK_SECONDS says, 20 seconds by default. A file of several samples at
once may fall back behind a step that overlaps another one, never behind what was saved long ago
(see test_record_contention.py).
"""

import collections
import os
import threading
import time

from extension_test import (ADAPTER, INTERNET, MAC, PANORAMIC, ExtensionTest, lean_environment,
                            rows_of, texts_of)
from process_figures import figures
from recording import (DataFolder, SteadySender, decoded, kernel_bytes, went_backwards)

SECONDS = float(os.environ.get("LANTERNFOLD_SOAK_SECONDS", 20))
IN_FLIGHT = 8
# Longer than any step takes, a process that is kept from running aside.
LONG_AGO_SECONDS = 10
LEFT_OUT, UNANSWERED = "Adapters are left out this time", "Not every service has answered"
# Between the middle and the end: threads that a busy machine brings, which are bounded, with memory
# of their own. In ten minutes, a kilobyte a timeline would be more.
MOST_GROWTH_KILOBYTES = 16 * 1024
MOST_MORE_THREADS = 64


class Asker(threading.Thread):
    """Asks one extension for timelines until the moment has come; `fault` is why it gave up."""

    def __init__(self, test, host, end):
        super().__init__(daemon=True)
        self._test, self._host, self._end = test, host, end
        self.timelines = self.left_out = self.unanswered = 0
        self.longest_seconds = 0.0
        self.fault = None

    def run(self):
        try:
            while time.monotonic() < self._end:
                self._ask()
        except Exception as error:
            self.fault = error
            raise

    def _ask(self):
        begin = time.monotonic()
        kinds = [(PANORAMIC, ADAPTER, PANORAMIC, INTERNET)[n % 4] for n in range(IN_FLIGHT)]
        pending = self._host.begin_all(
            "widget/timeline", [{"kind": kind, "family": "medium"} for kind in kinds])
        for kind, result in zip(kinds, self._host.answers(pending)):
            entry = self._test.entry_of(result)
            if kind != INTERNET:
                rows = rows_of(entry)
                self.left_out += "MAC" not in rows
                self._test.assertEqual(MAC, rows.get("MAC", MAC))
            if kind != ADAPTER:
                self.unanswered += "Example Telecom" not in texts_of(entry)
        self.timelines += len(kinds)
        self.longest_seconds = max(self.longest_seconds, time.monotonic() - begin)


class Watcher(threading.Thread):
    """Looks at a file of metrics: whole at every look, and its counters go on."""

    def __init__(self, path, end):
        super().__init__(daemon=True)
        self._path, self._end = path, end
        self.looks = self.files = 0
        self.fault = None

    def run(self):
        try:
            self._watch()
        except Exception as error:
            self.fault = error
            raise

    def _watch(self):
        recent = collections.deque()  # (moment, counters), the first one from long ago
        while time.monotonic() < self._end:
            if self._path.exists():
                counters = decoded(self._path.read_bytes())[1]
                moment = time.monotonic()
                if not recent or recent[-1][1] != counters:
                    recent.append((moment, counters))
                    self.files += 1
                while len(recent) > 1 and recent[1][0] < moment - LONG_AGO_SECONDS:
                    recent.popleft()
                if recent[0][0] < moment - LONG_AGO_SECONDS:
                    if fallen := went_backwards(recent[0][1], counters):
                        raise AssertionError(f"{self._path}: {fallen}")
                self.looks += 1
            time.sleep(0.005)


class SoakTest(ExtensionTest):
    def test_two_extensions_over_one_application_group(self):
        self.add_adapter()
        settings = {"services": self.start_services(), "env": lean_environment()}
        hosts = [self.host(**settings) for _ in range(2)]
        folder = DataFolder(self.data)
        files = [folder.file, folder.metrics / folder.file.name]
        for _ in range(2):
            self.ask_once(hosts)
        looks = [self.figures_of(hosts)]
        end = time.monotonic() + SECONDS
        askers = [Asker(self, host, end) for host in hosts]
        watchers = [Watcher(file, end) for file in files]
        with SteadySender("far0", bytes_per_second=200_000, length=1514):
            for thread in (*askers, *watchers):
                thread.start()
            time.sleep(SECONDS / 2)
            looks.append(self.figures_of(hosts))
            for thread in (*askers, *watchers):
                thread.join(timeout=SECONDS + 60)
        self.assertEqual([None] * 4, [thread.fault for thread in (*askers, *watchers)])
        self.ask_once(hosts)
        looks.append(self.figures_of(hosts, looks[0]))
        self.tell(askers, watchers, looks)
        self.check_files(files)
        self.check_figures(looks)
        for host, asker in zip(hosts, askers):
            self.check_end(host, asker)

    def ask_once(self, hosts):
        """With nobody else: whoever waits for a lock gets it."""
        for host in hosts:
            for kind in (PANORAMIC, ADAPTER):
                entry = self.entry_of(host.ask("widget/timeline", kind=kind, family="medium"))
                self.assertEqual(MAC, rows_of(entry)["MAC"])

    def figures_of(self, hosts, expected=None):
        """Of each process; at the end once the last connections are closed."""
        for _ in range(100):
            result = [figures(host.extension.pid) for host in hosts]
            if expected is None or all(
                    now["descriptors"] <= before["descriptors"]
                    for now, before in zip(result, expected)):
                break
            time.sleep(0.1)
        return result

    def tell(self, askers, watchers, looks):
        for number, asker in enumerate(askers):
            print(f"extension {number + 1}: {asker.timelines} timelines in {SECONDS:.0f} s, the "
                  f"longest round of {IN_FLIGHT} {asker.longest_seconds:.2f} s; adapters left out "
                  f"{asker.left_out} times, services silent {asker.unanswered} times")
            for moment, look in zip(("start", "middle", "end"), looks):
                print(f"  {moment}: {look[number]}")
        for watcher in watchers:
            print(f"{watcher.files} files seen at {watcher.looks} looks")

    def check_files(self, files):
        """Traffic has ended, and the last timelines have sampled it: nothing is missing."""
        for file in files:
            recorded = decoded(file.read_bytes())
            self.assertEqual(recorded[0], recorded[1])
            counters = recorded[1]["en0"]
            self.assertEqual(kernel_bytes("en0"), (counters["sentBytes"], counters["recvBytes"]))
            self.assertFalse(file.with_suffix(".lock").exists())
        self.assertEqual([], [each.name for file in files for each in file.parent.iterdir()
                              if each.name != file.name])

    def check_figures(self, looks):
        start, middle, end = looks
        for number in range(2):
            self.assertLessEqual(end[number]["descriptors"], start[number]["descriptors"])
            self.assertLessEqual(end[number]["threads"],
                                 start[number]["threads"] + MOST_MORE_THREADS)
            self.assertLess(end[number]["resident"] - middle[number]["resident"],
                            MOST_GROWTH_KILOBYTES)

    def check_end(self, host, asker):
        self.assertGreater(asker.timelines, 0)
        self.assertEqual([], host.faults)
        self.assertEqual(0, host.extension.finish())
        self.assertEqual([], host.extension.errors)
        # What an entry lacks has its line, and so have the totals of the public side.
        lines = host.extension.diagnostics
        left_out, unanswered = ([line for line in lines if line.startswith(beginning)]
                                for beginning in (LEFT_OUT, UNANSWERED))
        self.assertEqual(len(lines), len(left_out) + len(unanswered), lines)
        self.assertLessEqual(asker.left_out, len(left_out))
        self.assertLessEqual(asker.unanswered, len(unanswered))
        self.assertLess(asker.left_out, asker.timelines // 2, "as if the lock were never free")
