"""Every field of every interface, compared with iproute2."""

import fcntl
import os
import socket
import struct
import subprocess

import expected
from namespaces import NamespaceTest, ip
from program import json_of

TUNSETIFF = 0x400454CA
IFF_TAP, IFF_NO_PI = 0x0002, 0x1000
FRAME = bytes.fromhex("ffffffffffff 0200000000aa 0806".replace(" ", "")) + bytes(46)


def names(records):
    return [record["name"] for record in records]


class FieldsTest(NamespaceTest):
    def open_tap(self, name):
        """A tap whose other end, the descriptor, is the test's: it counts what is written."""
        tap = os.open("/dev/net/tun", os.O_RDWR | os.O_NONBLOCK)
        self.addCleanup(os.close, tap)
        fcntl.ioctl(tap, TUNSETIFF, struct.pack("16sH22x", name.encode(), IFF_TAP | IFF_NO_PI))
        return tap

    def assert_like_iproute2(self, ethernet=()):
        """All of `interfaces`, and of `state` the adapters; the answer of `interfaces`."""
        records = expected.interfaces(ethernet)
        answer = json_of("interfaces", "--json")
        self.assertEqual(records, answer)
        state = json_of("state", "--categories", "other", "--json")
        adapters = [each for each in records
                    if each["name"] in ethernet or each["name"].startswith("en")]
        self.assertEqual({"complete": True, "others": adapters},
                         {"complete": state["complete"], "others": state["state"]["others"]})
        return answer


class EveryFieldTest(FieldsTest):
    """Links that stay down move no packet, so that counters stand still between two looks."""

    def test_a_loopback_alone(self):
        answer = self.assert_like_iproute2()
        self.assertEqual(["lo"], names(answer))
        self.assertEqual([{"address": "127.0.0.1", "netmask": "255.0.0.0", "gateway": "0.0.0.0",
                           "cidr": "0.0.0.0/8"}], answer[0]["IPv4"])
        self.assertIsNone(answer[0]["hwAddress"])

    def test_every_kind_of_link(self):
        ip("link add en0 type veth peer name peer0", "link add eth0 type veth peer name peer1",
           "link add docker0 type bridge", "link add ifb0 type ifb",
           "link add vxlan9 type vxlan id 9 dstport 4789 dev en0",
           "link add link en0 name en5 type macvlan mode bridge",
           "link add link en0 name mac0 type macvlan mode bridge",
           "tuntap add en01 mode tap", "tuntap add tap0 mode tap", "tuntap add tun0 mode tun",
           "link set peer0 master docker0")
        answer = self.assert_like_iproute2(ethernet={"en0", "en01", "en5", "eth0"})
        self.assertEqual(["docker0", "en0", "en01", "en5", "eth0", "ifb0", "lo", "mac0", "peer0",
                          "peer1", "tap0", "tun0", "vxlan9"], names(answer))

    def test_a_container(self):
        """Its eth0 is one end of a pair whose other end, a port of the bridge docker0, is outside."""
        outside = subprocess.Popen(["unshare", "--net", "cat"], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE)
        self.addCleanup(outside.communicate)
        outside.stdin.write(b"\n")
        outside.stdin.flush()
        outside.stdout.read(1)  # from here on it is in a namespace of its own
        ip(f"link add eth0 type veth peer name vethc0ffee netns {outside.pid}",
           "addr add 172.17.0.2/16 dev eth0")
        self.assertEqual(["eth0", "lo"], names(self.assert_like_iproute2(ethernet={"eth0"})))

    def test_several_addresses_on_one_interface(self):
        ip("link add en0 type veth peer name peer0", "addr add 192.0.2.2/24 dev en0",
           "addr add 192.0.2.3/24 dev en0", "addr add 198.51.100.1/31 dev en0",
           "addr add 203.0.113.200/32 dev en0", "addr add 10.0.0.1/9 dev en0",
           "addr add 203.0.113.1/30 dev en0 label en0:one")
        answer = self.assert_like_iproute2(ethernet={"en0"})
        self.assertEqual(6, len(answer[0]["IPv4"]))
        self.assertIn({"address": "10.0.0.1", "netmask": "255.128.0.0", "gateway": "0.0.0.0",
                       "cidr": "0.0.0.0/9"}, answer[0]["IPv4"])

    def test_ipv6_addresses_are_never_listed(self):
        ip("link add en0 type veth peer name peer0", "-6 addr add 2001:db8::2/64 dev en0 nodad",
           "-6 addr add fe80::5/64 dev en0 nodad", "link add en1 type veth peer name peer1",
           "addr add 192.0.2.2/24 dev en1", "-6 addr add 2001:db8::3/64 dev en1 nodad")
        answer = {record["name"]: record
                  for record in self.assert_like_iproute2(ethernet={"en0", "en1"})}
        self.assertFalse(answer["en0"]["active"])
        self.assertEqual(["192.0.2.2"], [each["address"] for each in answer["en1"]["IPv4"]])

    def test_a_point_to_point_address(self):
        ip("tuntap add tun0 mode tun", "addr add 10.8.0.2 peer 10.8.0.1/32 dev tun0")
        answer = self.assert_like_iproute2()
        self.assertEqual([{"address": "10.8.0.2", "netmask": "255.255.255.255",
                           "gateway": "0.0.0.0", "cidr": "0.0.0.0/32"}], answer[1]["IPv4"])

    def test_hardware_addresses(self):
        ip("link add en0 address 0a:bc:de:f0:12:34 type veth peer name peer0",
           "link add en1 address 02:00:00:00:00:00 type veth peer name peer1",
           "tuntap add tun0 mode tun")
        answer = {record["name"]: record["hwAddress"]
                  for record in self.assert_like_iproute2(ethernet={"en0", "en1"})}
        self.assertEqual("0A:BC:DE:F0:12:34", answer["en0"])
        self.assertEqual({"en1": None, "tun0": None, "lo": None},
                         {name: answer[name] for name in ("en1", "tun0", "lo")})

    def test_mtu(self):
        ip("link add en0 mtu 9000 type veth peer name peer0", "link add en1 type bridge",
           "link set en1 mtu 68", "link set lo mtu 1280")
        answer = {record["name"]: record["metrics"]["mtu"]
                  for record in self.assert_like_iproute2(ethernet={"en0"})}
        self.assertEqual({"en0": 9000, "en1": 68, "lo": 1280, "peer0": 1500}, answer)


class GatewayTest(FieldsTest):
    """The routes need links that are up; IPv6, which would chatter on them, is switched off."""

    def setUp(self):
        super().setUp()
        self.switch_ipv6_off()
        ip("link add en0 type veth peer name peer0", "link add en1 type veth peer name peer1")
        for name, network in (("en0", "192.0.2"), ("en1", "198.51.100")):
            ip(f"link set peer{name[2:]} up", f"link set {name} up",
               f"addr add {network}.2/24 dev {name}")

    def gateways(self):
        answer = self.assert_like_iproute2(ethernet={"en0", "en1"})
        return {record["name"]: record["IPv4"][0]["gateway"] for record in answer
                if record["IPv4"]}

    def test_an_interface_without_a_route(self):
        ip("route add default via 192.0.2.1 dev en0")
        self.assertEqual({"en0": "192.0.2.1", "en1": "0.0.0.0", "lo": "0.0.0.0"}, self.gateways())

    def test_of_two_default_routes_on_one_interface_the_last_wins(self):
        ip("route add default via 192.0.2.250 dev en0 metric 50",
           "route add default via 192.0.2.1 dev en0 metric 100",
           "route add default via 192.0.2.7 dev en0 metric 70")
        self.assertEqual("192.0.2.1", self.gateways()["en0"])

    def test_default_routes_on_two_interfaces(self):
        ip("route add default via 192.0.2.1 dev en0 metric 200",
           "route add default via 198.51.100.1 dev en1 metric 100")
        self.assertEqual({"en0": "192.0.2.1", "en1": "198.51.100.1", "lo": "0.0.0.0"},
                         self.gateways())

    def test_a_default_route_with_two_hops(self):
        ip("route add default nexthop via 192.0.2.9 dev en0 nexthop via 198.51.100.9 dev en1")
        self.assertEqual({"en0": "192.0.2.9", "en1": "198.51.100.9", "lo": "0.0.0.0"},
                         self.gateways())

    def test_routes_that_name_no_gateway(self):
        ip("route add default dev en0", "route add 203.0.113.0/24 via 192.0.2.3 dev en0",
           "route add default via 198.51.100.1 dev en1 table 100",
           "route add unreachable default metric 900")
        self.assertEqual({"en0": "0.0.0.0", "en1": "0.0.0.0", "lo": "0.0.0.0"}, self.gateways())

    def test_the_cidr_is_that_of_the_gateway_for_every_address(self):
        ip("addr add 10.1.2.3/16 dev en0", "route add default via 192.0.2.1 dev en0")
        answer = self.assert_like_iproute2(ethernet={"en0", "en1"})
        self.assertEqual(["192.0.2.1/24", "192.0.2.1/16"],
                         [each["cidr"] for each in answer[0]["IPv4"]])


class CounterTest(FieldsTest):
    def metrics(self, name):
        return json_of("interfaces", "--prefix", name, "--json")[0]["metrics"]

    def setUp(self):
        super().setUp()
        self.switch_ipv6_off()

    def test_a_tap_counts_exactly_what_is_written(self):
        tap = self.open_tap("en7")
        ip("link set en7 arp off", "link set en7 up")
        self.assertEqual(0, self.metrics("en7")["recvPacket"])
        for _ in range(1234):
            os.write(tap, FRAME)
        metrics = self.metrics("en7")
        self.assertEqual({"recvPacket": 1234, "recvBytes": 1234 * len(FRAME), "recvError": 0},
                         {key: metrics[key] for key in ("recvPacket", "recvBytes", "recvError")})
        self.assert_like_iproute2(ethernet={"en7"})

    def test_a_tap_counts_exactly_what_is_read(self):
        tap = self.open_tap("en7")
        ip("link set en7 arp off", "link set en7 up", "addr add 192.0.2.2/24 dev en7",
           "neigh add 192.0.2.9 lladdr 0a:00:00:00:00:99 dev en7")
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            for size in range(77):
                sender.sendto(bytes(size), ("192.0.2.9", 9))
        frames = list(iter(lambda: self.read_frame(tap), b""))
        self.assertGreaterEqual(len(frames), 77)
        metrics = self.metrics("en7")
        self.assertEqual({"sentPacket": len(frames), "sentBytes": sum(map(len, frames)),
                          "recvPacket": 0},
                         {key: metrics[key] for key in ("sentPacket", "sentBytes", "recvPacket")})
        self.assert_like_iproute2(ethernet={"en7"})

    def read_frame(self, tap):
        """The next frame that the kernel sent through the tap; empty when there is none."""
        try:
            return os.read(tap, 65536)
        except BlockingIOError:
            return b""

    def test_counters_beyond_32_bits_do_not_wrap(self):
        tap = self.open_tap("en7")
        ip("link set en7 arp off", "link set en7 up")
        before = self.metrics("en7")["recvBytes"]
        frame = FRAME[:14] + bytes(65000 - 14)
        count = 2**32 // len(frame) + 1
        for _ in range(count):
            os.write(tap, frame)
        self.assertEqual(count * len(frame), self.metrics("en7")["recvBytes"] - before)


class SelectionTest(FieldsTest):
    """Which interfaces `--prefix` and `--excluding` choose."""

    def setUp(self):
        super().setUp()
        ip("link add en0 type veth peer name peer0", "link add eth0 type veth peer name veth5",
           "link add docker0 type bridge", "link add ifb0 type ifb", "link add enbridge type bridge",
           "link add en1 type ifb", "link add en01 type veth peer name ethernet",
           "link add vxlan9 type vxlan id 9 dstport 4789 dev en0", "tuntap add eth7 mode tap",
           "tuntap add tap0 mode tap", "link add link en0 name eth1 type macvlan")

    def chosen(self, *arguments):
        return names(json_of("interfaces", "--json", *arguments))

    def test_the_adapters_of_this_machine(self):
        self.assertEqual(["en0", "en01", "en1", "enbridge", "eth0", "eth1", "eth7"],
                         self.chosen("--prefix", "en"))

    def test_every_other_prefix_is_literal(self):
        self.assertEqual(["en0", "en01"], self.chosen("--prefix", "en0"))
        self.assertEqual(["eth0", "eth1", "eth7", "ethernet"], self.chosen("--prefix", "eth"))
        self.assertEqual([], self.chosen("--prefix", "absent"))
        self.assertEqual([], self.chosen("--prefix", "pdp_ip"))
        self.assertEqual([], self.chosen("--prefix", "EN"))

    def test_an_empty_prefix_chooses_all(self):
        self.assertEqual(self.chosen(), self.chosen("--prefix", ""))

    def test_excluding(self):
        everything = self.chosen()
        self.assertEqual([name for name in everything if name not in ("lo", "en0")],
                         self.chosen("--excluding", "lo,en0,absent"))
        self.assertEqual(["en01", "en1", "enbridge", "eth1", "eth7"],
                         self.chosen("--prefix", "en", "--excluding", "en0,eth0"))

    def test_a_chosen_record_is_the_one_of_the_whole_list(self):
        everything = {record["name"]: record for record in json_of("interfaces", "--json")}
        for record in json_of("interfaces", "--prefix", "en", "--json"):
            self.assertEqual(everything[record["name"]], record)
