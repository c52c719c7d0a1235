"""What `state --categories internet` says of a machine, by the routes, the addresses and the names
that it has. The services are echo services at the other end of a cable."""

import json

from echo_service import EchoService
from far_network import (GATEWAY4, NEAR4, NEAR6, SERVICE4, SERVICE6, SILENT4, FarNetwork, give_ipv4,
                         give_ipv6)
from internet_test import GEOLOCATION, IPV4, IPV6, InternetTest, known
from namespaces import ip

TABLE = {"192.0.2.0/24": {"isp": "Example Telecom", "countryCode": "IT", "as": "AS64500 Example"},
         "2001:db8:1::/48": {"isp": "Sechs", "countryCode": "FR", "as": ""}}
HOSTS = f"""
{SERVICE4} ipv4.example geolocation.example both.example
{SERVICE6} ipv6.example both.example
"""
NAMES = {"ipv4_echo": "http://ipv4.example:8080", "ipv6_echo": "http://ipv6.example:8080",
         "geolocation": "http://geolocation.example:8080"}
IPV4_ONLY = known(NEAR4, isp="Example Telecom", country="IT", supports_ipv6=False)
DUAL = known(NEAR4, NEAR6, "Example Telecom", "IT")
NO_SUCH_HOST = "the host cannot be found"
UNREACHABLE = "the host cannot be reached"
# Of an ordinary program: the longest silence.
SILENCE_SECONDS = 5
# What answers at once has an answer well before anything that waits.
AT_ONCE_SECONDS = 4


class SituationTest(InternetTest):
    def connect(self):
        """A cable to where the services are; no address yet."""
        self.far = FarNetwork()
        self.addCleanup(self.far.__exit__)
        table = self.folder / "table.json"
        table.write_text(json.dumps(TABLE))
        with self.far.inside():
            self.start(EchoService("--geolocation-table", str(table),
                                   listen=(f"{SERVICE4}:8080", f"[{SERVICE6}]:8080")))

    def assert_interface(self, outcome, name):
        interface = outcome.internet["interface"]
        self.assertEqual((name, "ethernet", "Ethernet"),
                         tuple(interface[key] for key in ("name", "type", "displayName")))

    def assert_at_once(self, outcome):
        self.assertLess(outcome.seconds, AT_ONCE_SECONDS)


class ConnectedTest(SituationTest):
    def setUp(self):
        super().setUp()
        self.connect()
        self.write_names(HOSTS)

    def test_ipv4_alone(self):
        give_ipv4()
        outcome = self.state(**NAMES)
        self.assert_answers(outcome, IPV4_ONLY, "IPv4 alone")
        self.assert_says(outcome)
        self.assert_interface(outcome, "en0")
        self.assertEqual(NEAR4, outcome.internet["interface"]["IPv4"][0]["address"])
        self.assert_at_once(outcome)

    def test_ipv4_alone_and_services_that_are_addresses(self):
        give_ipv4()
        outcome = self.state(ipv4_echo=f"http://{SERVICE4}:8080",
                             ipv6_echo=f"http://[{SERVICE6}]:8080",
                             geolocation=f"http://{SERVICE4}:8080")
        self.assert_answers(outcome, IPV4_ONLY, "IPv4 alone, services by address")
        self.assert_says(outcome)

    def test_ipv4_in_a_kernel_with_ipv6_switched_off(self):
        for link in ("all", "lo", "en0"):
            with open(f"/proc/sys/net/ipv6/conf/{link}/disable_ipv6", "w") as switch:
                switch.write("1")
        give_ipv4()
        outcome = self.state(**NAMES)
        self.assert_answers(outcome, IPV4_ONLY, "IPv4 alone, IPv6 switched off in the kernel")
        self.assert_says(outcome)

    def test_ipv4_and_an_ipv6_address_that_leads_nowhere(self):
        give_ipv4()
        ip(f"-6 address add {NEAR6}/64 dev en0 nodad")
        outcome = self.state(**NAMES)
        self.assert_answers(outcome, IPV4_ONLY, "IPv4, and IPv6 without a route")
        self.assert_says(outcome)

    def test_ipv6_alone(self):
        give_ipv6()
        outcome = self.state(**NAMES)
        self.assert_answers(outcome, known(ipv6=NEAR6), "IPv6 alone")
        self.assert_says(outcome, UNREACHABLE, IPV4, GEOLOCATION)
        self.assertNotIn(IPV6, outcome.errors)
        self.assert_interface(outcome, "en0")
        self.assert_at_once(outcome)

    def test_both(self):
        give_ipv4()
        give_ipv6()
        outcome = self.state(**NAMES)
        self.assert_answers(outcome, DUAL, "both")
        self.assert_says(outcome)
        self.assert_interface(outcome, "en0")
        self.assert_at_once(outcome)

    def test_one_host_of_both_kinds_is_asked_over_the_kind_that_is_meant(self):
        give_ipv4()
        give_ipv6()
        outcome = self.state(**dict.fromkeys(NAMES, "http://both.example:8080"))
        self.assert_answers(outcome, DUAL, "both, one host for all services")
        self.assert_says(outcome)

    def test_as_text(self):
        give_ipv4()
        outcome = self.state(as_json=False, **NAMES)
        self.assertEqual((0, ""), (outcome.status, outcome.errors))
        lines = [line.split("  ") for line in outcome.output.splitlines()]
        self.assertEqual("Internet", lines[0][0])
        shown = {line[1].strip(): line[-1].strip() for line in lines[1:]}
        self.assertEqual(f"{NEAR4} (IT)", shown.get("IP - COUNTRY"), outcome.output)
        self.assertIn("Example Telecom", outcome.output)

    def test_a_host_of_which_one_address_is_dead(self):
        """The other one is tried within the limit of the request."""
        give_ipv4()
        self.write_names(f"{SILENT4} two.example\n{SERVICE4} two.example\n")
        outcome = self.state("--skip-geoip", ipv4_echo="http://two.example:8080")
        self.assert_answers(outcome, known(NEAR4, supports_ipv6=False),
                            "the first of a host's two addresses is dead")
        self.assert_says(outcome)
        self.assert_took(outcome, 0, SILENCE_SECONDS)

    def test_the_interface_of_the_best_default_route(self):
        ip("link add en1 address 0a:00:00:00:00:11 type veth peer name far1",
           "link set far1 up", "link set en1 up", "address add 198.51.100.2/24 dev en1")
        give_ipv4()
        ip("route add default via 198.51.100.1 dev en1 metric 100")
        self.assert_interface(self.state(), "en0")
        ip("route del default dev en0", f"route add default via {GATEWAY4} dev en0 metric 900")
        self.assert_interface(self.state(), "en1")


class OfflineTest(SituationTest):
    def assert_not_connected(self, *arguments, **options):
        """As text it is one row."""
        outcome = self.state(*arguments, as_json=False, **options)
        self.assertEqual(0, outcome.status)
        rows = [line.split() for line in outcome.output.splitlines()]
        self.assertIn(["Status", "Not", "connected"], rows, outcome.output)

    def test_a_loopback_alone(self):
        self.write_names(servers="nameserver 192.0.2.53\n")
        outcome = self.state(**NAMES)
        self.assert_answers(outcome, known(), "no link at all")
        self.assert_says(outcome, NO_SUCH_HOST, IPV4, GEOLOCATION, IPV6)
        self.assertEqual((None, ["192.0.2.53"]),
                         (outcome.internet["interface"], outcome.internet["dns"]))
        self.assert_at_once(outcome)
        self.assert_not_connected(**NAMES)

    def test_a_loopback_alone_and_services_that_are_addresses(self):
        outcome = self.state(ipv4_echo=f"http://{SERVICE4}:8080",
                             ipv6_echo=f"http://[{SERVICE6}]:8080",
                             geolocation=f"http://{SERVICE4}:8080")
        self.assert_answers(outcome, known(supports_ipv6=False),
                            "no link at all, services by address")
        self.assert_says(outcome, UNREACHABLE, IPV4, GEOLOCATION)
        self.assertEqual((None, []), (outcome.internet["interface"], outcome.internet["dns"]))
        self.assert_at_once(outcome)

    def test_a_loopback_alone_and_the_services_that_are_asked_unless_told(self):
        self.write_names(servers="nameserver 192.0.2.53\n")
        outcome = self.state(**dict.fromkeys(NAMES))
        self.assert_answers(outcome, known(), "no link at all, default services")
        self.assert_says(outcome, NO_SUCH_HOST, IPV4, GEOLOCATION, IPV6)
        self.assert_at_once(outcome)

    def test_a_link_without_a_route(self):
        self.connect()
        self.write_names(HOSTS)
        ip(f"address add {NEAR4}/24 dev en0")
        outcome = self.state(**NAMES)
        self.assert_answers(outcome, known(supports_ipv6=False), "a link, no default route")
        self.assertIsNone(outcome.internet["interface"])
        self.assert_says(outcome, UNREACHABLE, IPV4, GEOLOCATION)
        self.assert_at_once(outcome)
        self.assert_not_connected(**NAMES)

    def test_a_link_without_its_cable(self):
        self.connect()
        self.write_names(HOSTS)
        give_ipv4()
        with self.far.inside():
            ip("link set far0 down")
        outcome = self.state(**NAMES)
        self.assertEqual((0, None), (outcome.status, outcome.internet["ip"]))
        self.tell("the cable is pulled", outcome)
        self.assertIsNone(outcome.internet["interface"])
        self.assert_says(outcome, IPV4)

    def test_a_name_server_that_nobody_leads_to(self):
        self.write_names(servers="nameserver 192.0.2.53\nnameserver 2001:db8::53\n")
        outcome = self.state(**NAMES)
        self.assert_answers(outcome, known(), "no route to the name servers")
        self.assert_says(outcome, NO_SUCH_HOST)
        self.assertEqual(["192.0.2.53", "2001:db8::53"], outcome.internet["dns"])
        self.assert_at_once(outcome)

    def test_what_stands_in_resolv_conf(self):
        servers = [f"192.0.2.{number}" for number in range(1, 5)]
        for contents, shown in (
                ("", []), ("garbage\n\0\x7f\n" + "x" * 5000, []), ("# nothing\n", []),
                ("".join(f"nameserver {each}\n" for each in servers), servers[:3]),
                ("search a.example\nnameserver 2001:db8::53\noptions ndots:2\n"
                 "nameserver 192.0.2.53 # ours\n", ["2001:db8::53", "192.0.2.53"])):
            self.write_names(servers=contents)
            outcome = self.state()
            self.assertEqual((0, shown), (outcome.status, outcome.internet["dns"]), contents[:50])

    def test_a_name_server_that_never_answers(self):
        """The look-up ends with the request, and the command does not wait for what is left of it."""
        self.connect()
        self.write_names(servers=f"nameserver {SILENT4}\n")
        give_ipv4()
        give_ipv6()
        outcome = self.state(**NAMES)
        # Whoever gets no address in time cannot tell this from a machine without IPv6.
        self.assert_answers(outcome, known(supports_ipv6=False), "a name server never answers")
        self.assert_says(outcome, "the request timed out", IPV4, GEOLOCATION)
        self.assertEqual([SILENT4], outcome.internet["dns"])
        self.assert_interface(outcome, "en0")
        self.assert_took(outcome, 2 * SILENCE_SECONDS - 0.5, 2 * SILENCE_SECONDS)

    def test_a_service_that_swallows_every_packet(self):
        self.connect()
        give_ipv4()
        silent = f"http://{SILENT4}:8080"
        outcome = self.state(ipv4_echo=silent, geolocation=silent)
        self.assert_answers(outcome, known(supports_ipv6=False), "packets are swallowed")
        self.assert_says(outcome, "the request timed out", IPV4, GEOLOCATION)
        self.assert_took(outcome, 2 * SILENCE_SECONDS - 0.5, 2 * SILENCE_SECONDS)
