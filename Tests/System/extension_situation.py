"""What the tests of a machine that changes begin with: all five widgets asked at once, and what they
show when all is well, or nothing is."""

import time

from watched_process import HANG_SECONDS
from extension_test import (ADAPTER, ADDRESS, BANDWIDTH, FAMILIES, INTERNET, MAC, PANORAMIC,
                            PROVIDERS, WIFI, ExtensionTest, rows_of, texts_of)
from internet_test import tell

NOT_CONNECTED = "Not connected"
NO_SOURCE = ["No source"]
PROVIDER = PROVIDERS["0.0.0.0/0"]["isp"]


class SituationTest(ExtensionTest):
    def begin(self, host, kinds=tuple(FAMILIES)):
        return [(kind, host.begin("widget/timeline", kind=kind, family=FAMILIES[kind][-1]))
                for kind in kinds]

    def finish(self, host, requests):
        """(kind, entry) of each; the process has answered all of them once, and lives."""
        results = host.answers([pending for _, pending in requests])
        for result in results:
            self.assertIsInstance(result, dict, result)
        self.assertEqual(5, len(host.ask("widgets/list")["widgets"]))
        self.assertEqual([], host.faults)
        self.assertTrue(host.extension.is_alive())
        return [(kind, self.entry_of(result)) for (kind, _), result in zip(requests, results)]

    def timelines(self, host):
        """The entry of each widget, by its kind; those that no situation here touches are as
        ever."""
        begin = time.monotonic()
        known = len(host.extension.diagnostics)
        entries = dict(self.finish(host, self.begin(host)))
        self.tell(entries, host.extension.diagnostics[known:], time.monotonic() - begin)
        self.assertEqual([], texts_of(entries[BANDWIDTH]))
        self.assertEqual(NO_SOURCE, texts_of(entries[WIFI]))
        return entries

    def tell(self, entries, messages, seconds):
        """For the table of situations, by the name of the test."""
        situation = self._testMethodName.removeprefix("test_").replace("_", " ")
        shown = [f"{kind}: {', '.join(texts_of(entry)) or '-'}" for kind, entry in entries.items()]
        tell(situation, "; ".join(shown), [line.rstrip() for line in messages], seconds)

    def assert_public(self, entries, address="127.0.0.1"):
        for kind in (PANORAMIC, INTERNET):
            self.assertIn(f"{address} (IT)", rows_of(entries[kind]).values())
            self.assertIn(PROVIDER, texts_of(entries[kind]))

    def assert_not_connected(self, entries):
        for kind in (PANORAMIC, INTERNET):
            self.assertEqual(NOT_CONNECTED, rows_of(entries[kind])["Status"])
            self.assertNotIn(PROVIDER, texts_of(entries[kind]))

    def assert_adapter(self, entries, address=ADDRESS, kinds=(PANORAMIC, ADAPTER)):
        for kind in kinds:
            rows = rows_of(entries[kind])
            self.assertEqual(("Ethernet", address, MAC), (rows["en0"], rows["IP"], rows["MAC"]))

    def assert_no_adapter(self, entries):
        self.assertNotIn("en0", texts_of(entries[PANORAMIC]))
        self.assertEqual(NO_SOURCE, texts_of(entries[ADAPTER]))

    def wait_until(self, condition):
        deadline = time.monotonic() + HANG_SECONDS
        while not condition():
            self.assertLess(time.monotonic(), deadline, "it never comes")
            time.sleep(0.01)
