"""Traffic of a known size between two namespaces of the tests' own."""

import contextlib
import os
import tempfile
import time
from pathlib import Path

import namespaces
from namespaces import CLONE_NEWNET, NamespaceTest, ip, unshare
from program import json_of
from recording import DataFolder, Recorder, Sender, SteadySender

MEGABYTE = 1_000_000


class TrafficTest(NamespaceTest):
    """en0 in the namespace of the program, its other end far0 in another one."""

    def setUp(self):
        super().setUp()
        self.switch_ipv6_off()
        folder = tempfile.TemporaryDirectory(prefix="lanternfold ")
        self.addCleanup(folder.cleanup)
        self.data = DataFolder(Path(folder.name) / "data")
        self.far = self.make_far_namespace()
        ip("link add en0 address 0a:00:00:00:00:01 arp off mtu 65000 type veth "
           "peer name far0 address 0a:00:00:00:00:02 arp off mtu 65000",
           f"link set far0 netns /proc/{os.getpid()}/fd/{self.far}")
        with self.inside_far():
            ip("link set far0 up")
        ip("link set en0 up")

    def make_far_namespace(self):
        near = os.open("/proc/self/ns/net", os.O_RDONLY)
        unshare(CLONE_NEWNET)
        self.switch_ipv6_off()
        far = os.open("/proc/self/ns/net", os.O_RDONLY)
        namespaces.enter_network(near)
        os.close(near)
        self.addCleanup(os.close, far)
        return far

    @contextlib.contextmanager
    def inside_far(self):
        near = os.open("/proc/self/ns/net", os.O_RDONLY)
        namespaces.enter_network(self.far)
        try:
            yield
        finally:
            namespaces.enter_network(near)
            os.close(near)

    def sender(self, link):
        sender = Sender(link)
        self.addCleanup(sender.close)
        return sender

    def adjusted(self):
        return json_of("record", "--once", "--json", *self.data.options())["en0"]

    def test_every_byte_that_came_and_went_is_counted(self):
        near = self.sender("en0")
        with self.inside_far():
            far = self.sender("far0")
        before = self.adjusted()
        received = far.send(length=1514, count=1000) + far.send(length=60, count=77)
        sent = near.send(length=9014, count=100)
        after = self.adjusted()
        growth = {key: after[key] - before[key] for key in after}
        self.assertEqual({"sentBytes": sent, "recvBytes": received, "sentError": 0, "recvError": 0,
                          "sentPacket": 100, "recvPacket": 1077, "collisions": 0, "mtu": 0}, growth)
        self.assertEqual(after, self.data.recorded()["en0"])
        state = json_of("state", "--json", *self.data.options())
        self.assertEqual(after, state["state"]["others"][0]["metrics"])

    def test_sustained_60_megabytes_a_second_are_very_high_and_sampled_every_15_seconds(self):
        with self.inside_far():
            traffic = SteadySender("far0", bytes_per_second=60 * MEGABYTE, length=60_014)
        with traffic, Recorder("--json", "--interval", "2", *self.data.options()) as recorder:
            first, second = recorder.samples(2, seconds=10)
            self.assertEqual(("idle", 2), (first["bandwidthClass"], first["intervalSeconds"]))
            self.assertEqual(("veryHigh", 15), (second["bandwidthClass"],
                                                second["intervalSeconds"]))
            rate = self.received(first, second) / 2
            self.assertGreater(rate, 45 * MEGABYTE, "the sender was too slow for this test")
            classified = time.monotonic()
            recorder.wait_for_lines(3, seconds=20)
            self.assertAlmostEqual(15, time.monotonic() - classified, delta=1.5)
            self.assertEqual(0, recorder.finish())
        self.assertEqual([], recorder.errors)

    def received(self, first, second):
        return second["metrics"]["en0"]["recvBytes"] - first["metrics"]["en0"]["recvBytes"]
