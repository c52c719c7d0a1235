"""Two thousand link events a second: what is reported stays whole and fresh."""

import fcntl
import os
import signal
import socket
import struct
import tempfile
import time
from pathlib import Path

import expected
from kernel_events import RTM_NEWLINK, KernelEvents
from namespaces import NamespaceTest, ip
from program import AS_NOBODY, Watch, install, others

SIOCSIFMTU = 0x8922
EVENTS_PER_SECOND = 2000
AIM_PER_SECOND = 2600  # some in reserve: sleeps are seldom exact
STORM_SECONDS = 3
STALE_SECONDS = 1.0
FIRST_MTU = 2000


class EventStormTest(NamespaceTest):
    """The MTU of a link rises with every event, so that each report tells how old it is."""

    def setUp(self):
        super().setUp()
        ip("link add en0 type veth peer name peer0", "link set peer0 up", "link set en0 up",
           "addr add 192.0.2.2/24 dev en0", "route add default via 192.0.2.1 dev en0",
           "link add eth1 type veth peer name peer1")

    def storm(self):
        """The moment at which each MTU was set; checks that the kernel announced that many."""
        moments = {}
        index = socket.if_nametoindex("en0")
        with KernelEvents() as kernel, socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as control:
            begin = time.monotonic()
            for number in range(AIM_PER_SECOND * STORM_SECONDS):
                ahead = begin + number / AIM_PER_SECOND - time.monotonic()
                if ahead > 0.002:
                    time.sleep(ahead)
                mtu = FIRST_MTU + number
                fcntl.ioctl(control, SIOCSIFMTU, struct.pack("16si20x", b"en0", mtu))
                moments[mtu] = time.monotonic()
            elapsed = time.monotonic() - begin
            self.assertIsNotNone(
                kernel.moment_of(lambda *_: len(kernel.messages) >= len(moments), 10))
            announced = sum(kind == RTM_NEWLINK and link == index
                            for _, kind, link, _ in kernel.messages)
        print(f"\n    {announced} events in {elapsed:.2f} s: {announced / elapsed:.0f} a second",
              end="", flush=True)
        self.assertEqual(0, kernel.overflows)
        self.assertGreaterEqual(announced / elapsed, EVENTS_PER_SECOND)
        return moments

    def assert_right_at_the_end(self, watch, moments):
        last_mtu = max(moments)
        moment = watch.moment_of(
            lambda report: report["complete"] and
            others(report)["en0"]["metrics"]["mtu"] == last_mtu, 5)
        self.assertIsNotNone(moment, "the last state was never reported")
        late = moment - moments[last_mtu]
        print(f"\n    last state after {max(late, 0) * 1000:.0f} ms", end="", flush=True)
        self.assertLessEqual(late, STALE_SECONDS)
        watch.settle()
        adapters = [each | {"metrics": None} for each in expected.interfaces({"en0", "eth1"})
                    if each["name"] in ("en0", "eth1")]
        self.assertEqual(adapters, [each | {"metrics": None}
                                    for each in watch.reports[-1][1]["state"]["others"]])
        self.assertEqual(last_mtu, others(watch.reports[-1][1])["en0"]["metrics"]["mtu"])

    def assert_never_blank(self, watch):
        """From the first whole state on both links are in every report, en0 with its address."""
        first = next(number for number, (_, report) in enumerate(watch.reports)
                     if report["complete"])
        for _, report in watch.reports[first:]:
            self.assertEqual({"en0", "eth1"}, set(others(report)))
            self.assertEqual([("192.0.2.2", "192.0.2.1")],
                             [(each["address"], each["gateway"])
                              for each in others(report)["en0"]["IPv4"]])
        self.assertEqual([], watch.broken)

    def assert_never_stale(self, watch, moments):
        """No whole state shows an MTU that had been replaced a second before it was reported."""
        ages = [0.0]
        for moment, report in watch.reports:
            mtu = report["complete"] and others(report)["en0"]["metrics"]["mtu"]
            if mtu and mtu + 1 in moments:
                ages.append(moment - moments[mtu + 1])
        print(f"\n    {len(ages) - 1} reports, the oldest {max(ages) * 1000:.0f} ms old", end="",
              flush=True)
        self.assertGreater(len(ages), STORM_SECONDS)
        self.assertLessEqual(max(ages), STALE_SECONDS)

    def test_two_thousand_events_a_second(self):
        with Watch() as watch:
            watch.settle()
            moments = self.storm()
            self.assert_right_at_the_end(watch, moments)
            self.assert_never_blank(watch)
            self.assert_never_stale(watch, moments)
            self.assertEqual((0, b""), watch.finish())

    def test_the_same_for_a_user_without_any_privilege(self):
        with tempfile.TemporaryDirectory(prefix="lanternfold ") as folder:
            data = Path(folder) / "data"
            data.mkdir()
            os.chown(data, AS_NOBODY["user"], AS_NOBODY["group"])
            with Watch(program=install(Path(folder)), env=os.environ | {"XDG_DATA_HOME": str(data)},
                       **AS_NOBODY) as watch:
                watch.settle()
                moments = self.storm()
                self.assert_right_at_the_end(watch, moments)
                self.assert_never_blank(watch)
                self.assert_never_stale(watch, moments)
                print(f"\n    {self.dropped_messages()} messages were dropped", end="", flush=True)
                self.assertEqual((0, b""), watch.finish())

    def test_events_that_overflow_the_socket_of_a_stopped_program(self):
        with Watch() as watch:
            watch.settle()
            watch.process.send_signal(signal.SIGSTOP)
            moments = self.storm()
            ip("addr add 192.0.2.3/24 dev en0", "addr del 192.0.2.3/24 dev en0")
            self.assertGreater(self.dropped_messages(), 0, "nothing has overflowed")
            moments[max(moments)] = time.monotonic()
            watch.process.send_signal(signal.SIGCONT)
            self.assert_right_at_the_end(watch, moments)
            self.assert_never_blank(watch)
            self.assertEqual((0, b""), watch.finish())

    def test_a_link_that_comes_in_the_middle_of_an_overflow_is_found(self):
        with Watch() as watch:
            watch.settle()
            watch.process.send_signal(signal.SIGSTOP)
            self.storm()
            ip("link del eth1", "link add eth2 type veth peer name peer2")
            since = len(watch.reports)
            continued = time.monotonic()
            watch.process.send_signal(signal.SIGCONT)
            moment = watch.moment_of(
                lambda report: report["complete"] and set(others(report)) == {"en0", "eth2"}, 5,
                since)
            self.assertIsNotNone(moment)
            self.assertLessEqual(moment - continued, STALE_SECONDS)

    def dropped_messages(self):
        """What the kernel could not deliver to the netlink sockets of this namespace."""
        with open("/proc/thread-self/net/netlink") as table:
            rows = [line.split() for line in table]
        column = rows[0].index("Drops")
        return sum(int(row[column]) for row in rows[1:])
