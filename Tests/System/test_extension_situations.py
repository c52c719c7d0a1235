"""All five widgets while the network changes under them or a service fails them: every request is
answered once, by what is true, and the process goes on."""

import os
import signal
import threading
import time

from echo_service import EchoService
from extension_situation import SituationTest
from extension_test import ADAPTER, ADDRESS, MAC, PANORAMIC, rows_of, texts_of
from far_network import NEAR4, SERVICE4, FarNetwork, give_ipv4
from namespaces import ip
from web_servers import LONGEST_PLAY_SECONDS, WebServer, address_of, answer, provider_of

REFUSE_NETLINK = os.environ["LANTERNFOLD_REFUSE_NETLINK"]
SECOND_ADDRESS, SECOND_MAC = "198.51.100.2", "0a:00:00:00:00:03"


class NetworkTest(SituationTest):
    def test_no_network_at_all(self):
        host = self.host()
        entries = self.timelines(host)
        self.assert_not_connected(entries)
        self.assert_no_adapter(entries)

    def test_the_cable_is_pulled_amid_the_requests(self):
        gate = threading.Event()

        def held(body):
            def play(visit, stream):
                gate.wait(LONGEST_PLAY_SECONDS)
                answer(body)(visit, stream)
            return play
        far = FarNetwork()
        self.addCleanup(far.__exit__)
        give_ipv4()
        plays = {"/lanternfold/ip.php": held(address_of), "/json/": held(provider_of())}
        with far.inside():
            server = self.start(WebServer(plays, address=SERVICE4))
        self.addCleanup(gate.set)
        host = self.host(services=dict.fromkeys(("ipv4_echo", "geolocation"), server.url()))
        begin = time.monotonic()
        requests = self.begin(host)
        self.wait_until(lambda: server.visits("/lanternfold/ip.php"))
        with far.inside():
            ip("link set far0 down")
        gate.set()
        entries = dict(self.finish(host, requests))
        self.tell(entries, host.extension.wait_for_diagnostics(2), time.monotonic() - begin)
        self.assert_not_connected(entries)
        self.assert_adapter(entries, NEAR4)
        with far.inside():
            ip("link set far0 up")
        entries = self.timelines(host)
        self.assert_public(entries, NEAR4)
        self.assert_adapter(entries, NEAR4)

    def test_an_adapter_goes_amid_the_requests(self):
        self.add_adapter()
        host = self.host(services=self.start_services())
        requests = self.begin(host, 5 * (PANORAMIC, ADAPTER))
        ip("link del en0")
        requests += self.begin(host, 5 * (PANORAMIC, ADAPTER))
        for kind, entry in self.finish(host, requests):
            if "en0" in texts_of(entry):
                self.assert_adapter({kind: entry}, kinds=[kind])
        self.assert_no_adapter(self.timelines(host))

    def test_the_default_route_moves_amid_the_requests(self):
        self.add_adapter()
        ip(f"link add en1 address {SECOND_MAC} arp off type veth peer name far1 arp off",
           "link set en1 up", "link set far1 up", f"address add {SECOND_ADDRESS}/24 dev en1",
           "route add default via 192.0.2.1 dev en0")
        host = self.host(services=self.start_services())
        self.assert_adapter(self.timelines(host), kinds=[ADAPTER])
        requests = self.begin(host, 10 * (ADAPTER, PANORAMIC))
        ip("route replace default via 198.51.100.1 dev en1")
        requests += self.begin(host, 10 * (ADAPTER, PANORAMIC))
        for kind, entry in self.finish(host, requests):
            rows = rows_of(entry)
            if kind == ADAPTER:
                self.assertIn((rows["IP"], rows["MAC"]),
                              [(ADDRESS, MAC), (SECOND_ADDRESS, SECOND_MAC)])
            else:
                self.assertIn("en0", rows)
                self.assertIn("en1", rows)
        self.assertEqual(SECOND_MAC, rows_of(self.timelines(host)[ADAPTER])["MAC"])


class ServiceTest(SituationTest):
    def setUp(self):
        super().setUp()
        self.add_adapter()
        self.table = ["--geolocation-table", self.write_table()]

    def test_the_services_die_and_come_back(self):
        service = self.start(EchoService(*self.table))
        url = "http://{}:{}".format(*service.addresses[0])
        host = self.host(services={"ipv4_echo": url, "geolocation": url})
        self.assert_public(self.timelines(host))
        service.finish()
        entries = self.timelines(host)
        self.assert_not_connected(entries)
        self.assert_adapter(entries)
        # Panoramic and internet.
        for line in host.extension.wait_for_diagnostics(2):
            self.assertRegex(line, r"\ANot every service has answered: [^\n]*cannot be reached")
        self.start(EchoService(*self.table, listen=("{}:{}".format(*service.addresses[0]),)))
        self.assert_public(self.timelines(host))
        self.assertEqual(2, len(host.extension.diagnostics))

    def test_the_services_fall_silent(self):
        service = self.start(EchoService(*self.table))
        url = "http://{}:{}".format(*service.addresses[0])
        host = self.host(services={"ipv4_echo": url, "geolocation": url})
        service.process.send_signal(signal.SIGSTOP)
        entries = self.timelines(host)
        self.assert_not_connected(entries)
        self.assert_adapter(entries)
        for line in host.extension.wait_for_diagnostics(2):
            self.assertRegex(line, r"\ANot every service has answered: [^\n]*timed out")
        service.process.send_signal(signal.SIGCONT)
        self.assert_public(self.timelines(host))


class KernelTest(SituationTest):
    def test_a_kernel_that_refuses_netlink(self):
        """Nothing is known of adapters; what the services say is."""
        self.add_adapter()
        host = self.host(services=self.start_services(), through=[REFUSE_NETLINK])
        for _ in range(2):
            entries = self.timelines(host)
            self.assert_public(entries)
            self.assert_no_adapter(entries)
        self.assertEqual([], host.extension.errors)
