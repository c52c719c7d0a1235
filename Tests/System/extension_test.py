"""What the tests of the widget extension begin with: an adapter, services that answer, the process
with a host; and how to read what a widget shows."""

import json
from datetime import datetime, timedelta, timezone

from echo_service import EchoService
from extension import Extension
from extension_client import Host, RawHost
from internet_test import NOBODY, InternetTest, environment
from namespaces import ip

PANORAMIC, INTERNET, ADAPTER, BANDWIDTH, WIFI = (
    "PanoramicNetworkStateWidget", "InternetNetworkStateWidget", "NetworkAdapterWidget",
    "BandwidthMonitorWidget", "WlanNetworkStateWidget")
FAMILIES = {PANORAMIC: ["small", "medium", "large"], INTERNET: ["small", "medium"],
            ADAPTER: ["medium"], BANDWIDTH: ["small"], WIFI: ["small", "medium"]}
PROVIDERS = {"0.0.0.0/0": {"isp": "Example Telecom", "countryCode": "IT", "as": "AS64500 Example"}}
MAC, ADDRESS = "0a:00:00:00:00:02", "192.0.2.2"
LOCATION_REQUEST = ("location/request", {"whenInUse": False})


class ExtensionTest(InternetTest):
    def add_adapter(self):
        """en0 with an address, through which nothing goes that a test does not send."""
        self.switch_ipv6_off()
        ip(f"link add en0 address {MAC} arp off type veth peer name far0 arp off",
           "link set en0 up", "link set far0 up", f"address add {ADDRESS}/24 dev en0")

    def start_services(self):
        """Echo and geolocation services of our own; as `services` of `options`."""
        service = self.start(EchoService("--geolocation-table", self.write_table()))
        url = "http://{}:{}".format(*service.addresses[0])
        return {"ipv4_echo": url, "geolocation": url}

    def write_table(self):
        """The providers that a geolocation service of our own knows."""
        table = self.folder / "table.json"
        table.write_text(json.dumps(PROVIDERS))
        return str(table)

    def options(self, **services):
        """Of a program that knows no other services than these."""
        result = ["--data-dir", str(self.data)]
        for name, url in (NOBODY | services).items():
            result += [f"--{name.replace('_', '-')}", url]
        return result

    def extension(self, *arguments, services=None, **options):
        return self.start(Extension(*self.options(**(services or {})), *arguments,
                                    **{"env": environment()} | options))

    def host(self, *arguments, **options):
        """The stock client of a new extension, which is its attribute."""
        extension = self.extension(*arguments, **options)
        host = self.start(Host(extension))
        host.extension = extension
        return host

    def raw_host(self, *arguments, **options):
        extension = self.extension(*arguments, **options)
        host = RawHost(extension.socket)
        host.extension = extension
        return host

    def entry_of(self, timeline):
        """The one entry of a timeline."""
        self.assertEqual({"entries", "policy"}, set(timeline))
        self.assertEqual(1, len(timeline["entries"]))
        self.assert_entry(timeline["entries"][0])
        return timeline["entries"][0]

    def assert_entry(self, entry):
        """Dated now, with an archive that can be read."""
        self.assertEqual({"date", "view"}, set(entry))
        self.assertRegex(entry["date"], r"\A\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z\Z")
        age = datetime.now(timezone.utc) - datetime.fromisoformat(entry["date"])
        self.assertLess(abs(age), timedelta(minutes=5))
        self.assertEqual({"version", "root"}, set(entry["view"]))
        self.assertEqual(1, entry["view"]["version"])
        self.assertIn("type", entry["view"]["root"])


def nodes_of(node):
    """The nodes in order. Of alternatives the first one, which has the most to show."""
    yield node
    children = node.get("children", [])
    for child in children[:1] if node["type"] == "firstThatFits" else children:
        yield from nodes_of(child)


def texts_of(entry):
    return [node["text"] for node in nodes_of(entry["view"]["root"]) if "text" in node]


def rows_of(entry):
    """Each text by the one before it: a value by its label, a name by its interface."""
    texts = texts_of(entry)
    return {label: value for label, value in reversed(list(zip(texts, texts[1:])))}


def names_of(entry):
    """What a screen reader says, "Received 5 MB" among it."""
    return [node["accessibleName"] for node in nodes_of(entry["view"]["root"])
            if "accessibleName" in node]
