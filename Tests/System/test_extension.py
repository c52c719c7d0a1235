"""What the widget extension answers to a host that a stock JSON-RPC library makes."""

import time

from extension_client import RPCError
from extension_test import (ADAPTER, ADDRESS, BANDWIDTH, FAMILIES, INTERNET, LOCATION_REQUEST, MAC,
                            PANORAMIC, WIFI, ExtensionTest, names_of, rows_of, texts_of)
from namespaces import ip, ip_json
from program import run
from recording import Sender, kernel_bytes
from web_servers import WebServer, address_of, answer, provider_of

INVALID_PARAMS, METHOD_NOT_FOUND = -32602, -32601
WIDGETS = [
    {"kind": PANORAMIC, "displayName": "Panoramic", "description": "Panoramic widget.",
     "families": ["small", "medium", "large"], "configuration": "intent",
     "intent": "ConfigurationIntent"},
    {"kind": INTERNET, "displayName": "Internet", "description": "Internet widget.",
     "families": ["small", "medium"], "configuration": "intent", "intent": "ConfigurationIntent"},
    {"kind": ADAPTER, "displayName": "Network Adapter", "description": "Network adapter widget.",
     "families": ["medium"], "configuration": "intent", "intent": "AdapterConfigurationIntent"},
    {"kind": BANDWIDTH, "displayName": "Bandwidth Monitor",
     "description": "Bandwidth Monitor widget.", "families": ["small"], "configuration": "static",
     "intent": None},
    {"kind": WIFI, "displayName": "WiFi", "description": "WiFi widget.",
     "families": ["small", "medium"], "configuration": "intent", "intent": "ConfigurationIntent"}]


class AnswersTest(ExtensionTest):
    def setUp(self):
        super().setUp()
        self.add_adapter()

    def assert_fails(self, code, host, method, **parameters):
        with self.assertRaises(RPCError) as caught:
            host.ask(method, **parameters)
        self.assertEqual(code, caught.exception.code)
        self.assertRegex(caught.exception.message, r"\A[^\n]+[^\n.]\Z")

    def location(self, action):
        self.assertEqual(0, run("location", action, "--data-dir", str(self.data)).returncode)

    def test_the_widgets_in_their_order(self):
        host = self.host()
        self.assertEqual({"widgets": WIDGETS}, host.ask("widgets/list"))

    def test_every_widget_in_every_family(self):
        host = self.host(services=self.start_services())
        for kind, families in FAMILIES.items():
            for family in families:
                with self.subTest(kind=kind, family=family):
                    request = {"kind": kind, "family": family}
                    self.assert_entry(host.ask("widget/placeholder", **request))
                    self.assert_entry(host.ask("widget/snapshot", **request))
                    timeline = host.ask("widget/timeline", **request)
                    self.entry_of(timeline)
                    self.assertEqual("never" if kind == BANDWIDTH else "atEnd", timeline["policy"])
        self.assertEqual([], host.faults)

    def test_a_placeholder_and_a_snapshot_start_no_work(self):
        plays = {"/lanternfold/ip.php": answer(address_of), "/json/": answer(provider_of())}
        server = self.start(WebServer(plays))
        host = self.host(services=dict.fromkeys(("ipv4_echo", "geolocation"), server.url()))
        for kind, families in FAMILIES.items():
            for method in ("widget/placeholder", "widget/snapshot"):
                host.ask(method, kind=kind, family=families[-1])
        # Ten times as long as a timeline waits before it looks at the machine.
        time.sleep(1)
        self.assertEqual([], server.visits())
        self.assertEqual([], [each for each in self.data.rglob("*") if not each.is_dir()])
        host.ask("widget/timeline", kind=INTERNET, family="medium")
        self.assertNotEqual([], server.visits())

    def test_the_adapter_and_its_traffic(self):
        sender = Sender("far0")
        self.addCleanup(sender.close)
        sender.send(length=1024, count=5 * 1024)
        entry = self.entry_of(self.host().ask("widget/timeline", kind=ADAPTER, family="medium"))
        link, = ip_json("-s", "link", "show", "dev", "en0")
        self.assertEqual((0, 5 * 1024 * 1024), kernel_bytes("en0"))
        self.assertEqual(5 * 1024 * 1024, link["stats64"]["rx"]["bytes"])
        rows = rows_of(entry)
        self.assertEqual("Ethernet", rows["en0"])
        self.assertEqual((ADDRESS, MAC), (rows["IP"], rows["MAC"]))
        self.assertEqual(ip_json("address", "show", "dev", "en0")[0]["addr_info"][0]["local"],
                         rows["IP"])
        self.assertIn("Received 5 MB", names_of(entry))
        self.assertIn("Sent 0 KB", names_of(entry))

    def test_the_adapter_that_is_chosen_or_gone(self):
        ip("link add en1 address 0a:00:00:00:00:03 type veth peer name far1")
        host = self.host()

        def shown(identifier):
            adapter = {"identifier": identifier, "display": "the adapter of the user"}
            return rows_of(self.entry_of(host.ask(
                "widget/timeline", kind=ADAPTER, family="medium",
                configuration={"adapter": adapter})))
        self.assertEqual("0a:00:00:00:00:03", shown("en1")["MAC"])
        self.assertEqual(MAC, shown("auto")["MAC"])
        ip("link del en1")
        gone = shown("en1")
        self.assertEqual("Not available", gone["en1"])
        self.assertNotIn("MAC", gone)

    def test_the_public_side_of_a_panoramic_widget(self):
        host = self.host(services=self.start_services())
        entry = self.entry_of(host.ask("widget/timeline", kind=PANORAMIC, family="large"))
        rows = rows_of(entry)
        self.assertIn("127.0.0.1 (IT)", rows.values())
        self.assertIn("Example Telecom", texts_of(entry))
        self.assertEqual((ADDRESS, MAC), (rows["IP"], rows["MAC"]))

    def test_the_time_of_drawing_when_it_is_asked_for(self):
        host = self.host()
        for shows in (True, False):
            result = host.ask("widget/timeline", kind=ADAPTER, family="medium",
                              configuration={"showTimestamp": shows})
            self.assertEqual(shows, "drawingTime" in str(result))

    def test_the_button_of_a_widget(self):
        self.assertEqual({}, self.host().ask("intent/perform", intent="RefreshAppIntent"))

    def test_what_is_not_known_has_its_code(self):
        host = self.host()
        for method in ("widget/placeholder", "widget/snapshot", "widget/timeline"):
            self.assert_fails(INVALID_PARAMS, host, method, kind="ClockWidget", family="small")
            self.assert_fails(INVALID_PARAMS, host, method, kind=ADAPTER, family="small")
            self.assert_fails(INVALID_PARAMS, host, method, kind=ADAPTER, family="huge")
        self.assert_fails(INVALID_PARAMS, host, "intent/perform", intent="FormatDiskIntent")
        self.assert_fails(METHOD_NOT_FOUND, host, "widget/dance", kind=ADAPTER, family="medium")
        self.assertEqual({"widgets": WIDGETS}, host.ask("widgets/list"))
        self.assertEqual([], host.faults)

    def test_a_cancelled_request_is_not_answered(self):
        host = self.raw_host(services=self.start_services())
        request = {"method": "widget/timeline", "params": {"kind": INTERNET, "family": "medium"}}
        cancel = {"method": "$/cancel", "params": {"id": "first"}}
        # In one piece: no timeline is made before its cancellation is there.
        host.send_messages({"id": "first"} | request, cancel,
                           {"method": "$/cancel", "params": {"id": "of nobody"}})
        for identifier in ("second", "first"):
            host.send_messages({"id": identifier} | request)
            message = host.receive()
            self.assertEqual(identifier, message["id"])
            self.entry_of(message["result"])
            host.send_messages(cancel)
        self.assertEqual("last", host.ask("widgets/list", "last")["id"])

    # Consent to show Wi-Fi names

    def requests_of(self, host, kind):
        """The notifications that the timeline of a widget brings with it."""
        before = len(host.notifications)
        host.ask("widget/timeline", kind=kind, family=FAMILIES[kind][0])
        return host.notifications[before:]

    def test_consent_is_asked_for_once_a_timeline_while_nobody_has_decided(self):
        host = self.host()
        for kind in FAMILIES:
            expected = [LOCATION_REQUEST] if kind in (PANORAMIC, WIFI) else []
            for _ in range(2):
                self.assertEqual(expected, self.requests_of(host, kind), kind)

    def test_consent_that_is_recorded_is_not_asked_for(self):
        for action, expected in (("allow", []), ("deny", []), ("allow-in-use", [LOCATION_REQUEST]),
                                 ("reset", [LOCATION_REQUEST])):
            self.location(action)
            self.assertEqual(expected, self.requests_of(self.host(), WIFI), action)

    def test_consent_that_comes_while_the_extension_runs(self):
        host = self.host()
        self.assertEqual([LOCATION_REQUEST], self.requests_of(host, PANORAMIC))
        self.location("allow")
        host.notify("location/changed", status=3)
        self.assertEqual([], self.requests_of(host, PANORAMIC))
        host.notify("location/changed", status=2)
        self.assertEqual([], self.requests_of(host, PANORAMIC))
        self.assertEqual([], host.faults)
