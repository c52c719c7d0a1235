"""`lanternfold-widgets timeline`: what a widget shows of this machine, as text, and as the extension's
host gets it."""

import json
import os
import re

from extension_test import (ADAPTER, ADDRESS, BANDWIDTH, FAMILIES, INTERNET, MAC, PANORAMIC, WIFI,
                            ExtensionTest, rows_of)
from internet_test import environment
from namespaces import ip
from program import run

REFUSE_NETLINK = os.environ["LANTERNFOLD_REFUSE_NETLINK"]
PUBLIC = [["ISP", "Example Telecom"], ["IP - COUNTRY", "127.0.0.1 (IT)"], ["IPv6", "N/A"],
          ["Received", "0 KB"], ["Sent", "0 KB"]]
OFFLINE = [["Status", "Not connected"], ["IPv6", "N/A"], ["Received", "0 KB"], ["Sent", "0 KB"]]
EN0 = [["en0", "Ethernet"], ["IP", ADDRESS], ["Router", "0.0.0.0/24"], ["MAC", MAC],
       ["Received", "0 KB"], ["Sent", "0 KB"]]
MONITOR = [["Bandwidth Monitor"], ["net.quernaple.LanternfoldX://bandwidth-monitor?mini=1"]]
NO_SOURCE = [["No source"]]
SERVICES_FAIL = r"\ANot every service has answered: [^\n]+\n\Z"


class TimelineTest(ExtensionTest):
    def setUp(self):
        super().setUp()
        self.add_adapter()
        self.services = self.start_services()

    def run_timeline(self, *arguments, **options):
        services = options.pop("services", self.services)
        return run("timeline", *arguments, *self.options(**services),
                   **{"env": environment()} | options)

    def rows(self, *arguments, **options):
        """Of each line, the columns."""
        done = self.run_timeline(*arguments, **options)
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        return [re.split(" {2,}", line) for line in done.stdout.decode().splitlines()]

    def timeline(self, *arguments):
        done = self.run_timeline(*arguments, "--json")
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        self.assertEqual(1, done.stdout.count(b"\n"))
        return json.loads(done.stdout)

    def assert_fails(self, status, *arguments, words=(), **options):
        done = self.run_timeline(*arguments, **options)
        self.assertEqual((status, b""), (done.returncode, done.stdout), done.stderr)
        self.assertRegex(done.stderr, rb"\Alanternfold-widgets: [^\n]+\n\Z")
        for word in words:
            self.assertIn(word, done.stderr.decode())

    # As text

    def test_every_kind(self):
        for kind, expected in ((PANORAMIC, PUBLIC + EN0), (INTERNET, PUBLIC), (ADAPTER, EN0),
                               (BANDWIDTH, MONITOR), (WIFI, NO_SOURCE)):
            self.assertEqual(expected, self.rows(kind), kind)

    def test_every_family(self):
        for kind, families in FAMILIES.items():
            for family in families:
                rows = self.rows(kind, "--family", family)
                if family == families[-1]:
                    self.assertEqual(self.rows(kind), rows, "the largest one is the default")

    def test_an_adapter_by_its_name(self):
        ip("link add en1 address 0a:00:00:00:00:03 type veth peer name far1")
        self.assertEqual(EN0, self.rows(ADAPTER, "--adapter", "en0"))
        self.assertEqual(EN0, self.rows(ADAPTER, "--adapter", "auto"))
        self.assertIn(["MAC", "0a:00:00:00:00:03"], self.rows(ADAPTER, "--adapter", "en1"))

    def test_the_adapter_of_the_best_default_route(self):
        ip("link add en1 address 0a:00:00:00:00:03 arp off type veth peer name far1",
           "link set en1 up", "link set far1 up", "address add 198.51.100.2/24 dev en1")
        self.assertEqual(EN0, self.rows(ADAPTER))
        ip("route add default via 198.51.100.1 dev en1")
        self.assertIn(["IP", "198.51.100.2"], self.rows(ADAPTER))
        self.assertEqual(EN0, self.rows(ADAPTER, "--adapter", "en0"))

    def test_an_adapter_that_is_gone(self):
        """Explained on the card, which never shows another one, and to whoever mistyped it."""
        done = self.run_timeline(ADAPTER, "--adapter", "en7")
        self.assertEqual(0, done.returncode)
        text = done.stdout.decode()
        self.assertRegex(text, r"\Aen7 +Not available\nIt is gone, or cannot be read now\.\n")
        self.assertNotIn("en0", text)
        self.assertRegex(done.stderr, rb'\Alanternfold-widgets: no adapter is called "en7"[^\n]+\n\Z')

    def test_the_time_of_drawing(self):
        for kind in FAMILIES:
            if kind != BANDWIDTH:
                self.assertRegex(self.rows(kind, "--show-timestamp")[-1][0],
                                 r"\ALast update Today, \d+:\d\d\s[AP]M\Z")

    # As JSON

    def test_json_is_what_the_extension_answers(self):
        """Widgets that change with nothing but the time."""
        host = self.host(services=self.services)
        for kind, families in FAMILIES.items():
            for family in families:
                shown = self.timeline(kind, "--family", family)
                served = host.ask("widget/timeline", kind=kind, family=family)
                self.entry_of(shown)
                for each in (shown, served):
                    del each["entries"][0]["date"]
                self.assertEqual(served, shown)

    def test_json_with_options(self):
        shown = self.timeline(ADAPTER, "--adapter", "en0", "--show-timestamp")
        served = self.host().ask("widget/timeline", kind=ADAPTER, family="medium", configuration={
            "adapter": {"identifier": "en0", "display": "en0"}, "showTimestamp": True})
        self.assertIn("drawingTime", json.dumps(shown))
        self.assertEqual(MAC, rows_of(self.entry_of(shown))["MAC"])
        for each in (shown, served):
            del each["entries"][0]["date"]
        self.assertEqual(served, shown)

    # What fails

    def test_offline(self):
        """An answer, too; the line about the services is beside the JSON, and with the text."""
        for kind, expected in ((PANORAMIC, OFFLINE + EN0), (INTERNET, OFFLINE)):
            done = self.run_timeline(kind, services={})
            self.assertEqual((0, b""), (done.returncode, done.stderr))
            first, _, rest = done.stdout.decode().partition("\n")
            self.assertRegex(first + "\n", SERVICES_FAIL)
            self.assertEqual(expected, [re.split(" {2,}", line) for line in rest.splitlines()])
            done = self.run_timeline(kind, "--json", services={})
            self.assertEqual(0, done.returncode)
            self.assertRegex(done.stderr.decode(), SERVICES_FAIL)
            self.entry_of(json.loads(done.stdout))

    def test_no_network_at_all(self):
        ip("link del en0")
        self.assertEqual(NO_SOURCE, self.rows(ADAPTER))
        self.assertEqual(NO_SOURCE, self.rows(WIFI))

    def test_nobody_is_asked_for_consent(self):
        for kind in (PANORAMIC, WIFI):
            self.rows(kind)
        self.assertFalse((self.data / "location-consent").exists())

    def test_bad_arguments(self):
        for arguments, words in (
                ([], ["KIND"]), (["ClockWidget"], ['"ClockWidget"', PANORAMIC, WIFI]),
                ([ADAPTER.lower()], [ADAPTER]), ([ADAPTER, INTERNET], [INTERNET]),
                ([ADAPTER, "--family", "small"], ["medium"]),
                ([INTERNET, "--family", "large"], ["small or medium"]),
                ([INTERNET, "--family", "Medium"], ['"Medium"', "small or medium"]),
                ([INTERNET, "--family"], ["--family"]), ([ADAPTER, "--adapter"], ["--adapter"]),
                ([ADAPTER, "--adapter", ""], ["--adapter"]),
                ([PANORAMIC, "--adapter", "en0"], ["--adapter"]),
                ([PANORAMIC, "--entry", "snapshot"], ["--entry"])):
            with self.subTest(arguments=arguments):
                self.assert_fails(2, *arguments, words=words)
                self.assert_fails(2, *arguments, "--json", words=words)

    def test_a_kernel_that_refuses_netlink(self):
        """No widget of nothing where there may be something."""
        for kind in (PANORAMIC, ADAPTER, WIFI):
            for form in ([], ["--json"]):
                self.assert_fails(1, kind, *form, through=[REFUSE_NETLINK], words=["netlink"])
        self.assertEqual(PUBLIC, self.rows(INTERNET, through=[REFUSE_NETLINK]))

    def test_an_output_that_is_full(self):
        for arguments in ([ADAPTER], [ADAPTER, "--json"]):
            with open("/dev/full", "w") as output:
                done = self.run_timeline(*arguments, stdout=output, stderr=-1)
            self.assertEqual(1, done.returncode)
            self.assertRegex(done.stderr, rb"\Alanternfold-widgets: [^\n]+\n\Z")
