"""`state --watch --json`: every change is reported within a second."""

import fcntl
import os
import signal
import socket
import subprocess
import time

import expected
from kernel_events import IFF_LOWER_UP, KernelEvents
from namespaces import NamespaceTest, ip
from program import PROGRAM, Watch, others

LIMIT_SECONDS = 1.0
# Beyond the limit the wait goes on, so that a failure says how late a report was.
PATIENCE_SECONDS = 5.0


def first_address(report, name):
    interface = others(report).get(name)
    return interface["IPv4"][0] if interface and interface["IPv4"] else None


class WatchTest(NamespaceTest):
    def setUp(self):
        super().setUp()
        ip("link add en0 type veth peer name peer0", "link set peer0 up", "link set en0 up",
           "addr add 192.0.2.2/24 dev en0")

    def assert_reported(self, watch, command, condition):
        """That `condition` holds in a report at most a second after `command` has returned."""
        since = watch.settle()
        ip(command)
        self.assert_in_time(watch, command, time.monotonic(), condition, since)

    def assert_in_time(self, watch, what, changed, condition, since):
        moment = watch.moment_of(condition, PATIENCE_SECONDS, since)
        self.assertIsNotNone(moment, f"{what}: not reported in {PATIENCE_SECONDS} s")
        print(f"\n    {what}: {max(moment - changed, 0) * 1000:.0f} ms", end="", flush=True)
        self.assertLessEqual(moment - changed, LIMIT_SECONDS, what)

    def assert_last_is_right(self, watch, ethernet):
        watch.settle()
        adapters = [each for each in expected.interfaces(ethernet)
                    if each["name"] in ethernet or each["name"].startswith("en")]
        self.assertTrue(watch.reports[-1][1]["complete"])
        last = [each | {"metrics": None} for each in watch.reports[-1][1]["state"]["others"]]
        self.assertEqual([each | {"metrics": None} for each in adapters], last)


class ChangesTest(WatchTest):
    def test_a_link_appears_gets_an_address_loses_it_and_vanishes(self):
        with Watch() as watch:
            self.assert_reported(watch, "link add eth9 type veth peer name peer9",
                                 lambda report: "eth9" in others(report))
            self.assert_reported(
                watch, "addr add 198.51.100.2/25 dev eth9",
                lambda report: others(report)["eth9"]["active"] and
                first_address(report, "eth9")["netmask"] == "255.255.255.128")
            self.assert_reported(watch, "addr del 198.51.100.2/25 dev eth9",
                                 lambda report: not others(report)["eth9"]["active"])
            self.assert_reported(watch, "link del eth9",
                                 lambda report: "eth9" not in others(report))
            self.assert_last_is_right(watch, {"en0"})
            self.assertEqual([], watch.broken)

    def test_a_link_goes_down_and_takes_its_default_route_along(self):
        ip("route add default via 192.0.2.1 dev en0")
        with Watch() as watch:
            watch.settle()
            self.assertEqual("192.0.2.1",
                             first_address(watch.reports[-1][1], "en0")["gateway"])
            self.assert_reported(
                watch, "link set en0 down",
                lambda report: first_address(report, "en0")["gateway"] == "0.0.0.0")
            self.assert_last_is_right(watch, {"en0"})

    def test_the_default_route_comes_changes_and_goes(self):
        def leads_to(gateway):
            return lambda report: first_address(report, "en0")["gateway"] == gateway

        with Watch() as watch:
            self.assert_reported(watch, "route add default via 192.0.2.1 dev en0",
                                 leads_to("192.0.2.1"))
            self.assert_reported(watch, "route replace default via 192.0.2.9 dev en0",
                                 leads_to("192.0.2.9"))
            self.assert_reported(watch, "route del default", leads_to("0.0.0.0"))
            self.assert_last_is_right(watch, {"en0"})

    def test_a_second_address_joins_the_first(self):
        with Watch() as watch:
            self.assert_reported(watch, "addr add 203.0.113.5/32 dev en0",
                                 lambda report: len(others(report)["en0"]["IPv4"]) == 2)
            self.assert_last_is_right(watch, {"en0"})

    def test_a_renamed_link(self):
        with Watch() as watch:
            self.assert_reported(
                watch, "link set en0 name en77",
                lambda report: "en77" in others(report) and "en0" not in others(report))
            self.assert_last_is_right(watch, {"en77"})

    def test_the_cable_is_pulled_and_plugged_in(self):
        """No field of an adapter tells of its cable; the report shows that it was looked at. The
        kernel takes up to a second to tell of a carrier, so the second begins with its word."""
        index = socket.if_nametoindex("en0")
        for verb, has_carrier in (("down", False), ("up", True)):
            with Watch() as watch, KernelEvents() as kernel:
                since = watch.settle()
                ip(f"link set peer0 {verb}")
                announced = kernel.moment_of(
                    lambda _, link, flags: link == index and
                    bool(flags & IFF_LOWER_UP) == has_carrier, PATIENCE_SECONDS)
                self.assertIsNotNone(announced, "the kernel did not tell of the carrier")
                self.assert_in_time(watch, f"cable {verb}", announced,
                                    lambda report: report["complete"], since)

    def test_a_change_that_concerns_nobody_is_not_reported(self):
        with Watch() as watch:
            since = watch.settle()
            ip("route add 203.0.113.0/24 via 192.0.2.1 dev en0",
               "route add default via 192.0.2.1 dev en0 table 100")
            self.assertIsNone(watch.moment_of(lambda _: True, 1.5, since))


class EndingTest(WatchTest):
    def test_sigint_and_sigterm_end_it_with_status_0(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with Watch() as watch:
                watch.settle()
                self.assertEqual((0, b""), watch.finish(number))
                self.assertEqual([], watch.broken)

    def test_a_signal_right_after_the_first_report_ends_it_with_status_0(self):
        for _ in range(20):
            with Watch() as watch:
                self.assertIsNotNone(watch.moment_of(lambda _: True, 10))
                self.assertEqual((0, b""), watch.finish())

    def test_a_signal_ends_it_although_nobody_reads_what_it_writes(self):
        """It waits for room in the pipe then, and cannot write the rest of its line."""
        read_end, write_end = os.pipe()
        self.addCleanup(os.close, read_end)
        fcntl.fcntl(write_end, fcntl.F_SETPIPE_SZ, 4096)
        process = subprocess.Popen([PROGRAM, "state", "--watch", "--json"],
                                   stdin=subprocess.DEVNULL, stdout=write_end,
                                   stderr=subprocess.DEVNULL)
        os.close(write_end)
        self.addCleanup(lambda: process.poll() is None and process.kill())
        for mtu in range(1400, 1420):
            time.sleep(0.12)
            ip(f"link set en0 mtu {mtu}")
        process.terminate()
        self.assertIn(process.wait(timeout=5), (0, 1))

    def test_a_signal_in_the_middle_of_a_report_leaves_whole_lines(self):
        for _ in range(5):
            with Watch() as watch:
                self.assertIsNotNone(watch.moment_of(lambda _: True, 10))
                for mtu in range(1400, 1410):
                    ip(f"link set en0 mtu {mtu}")
                self.assertEqual((0, b""), watch.finish())
                self.assertEqual([], watch.broken)

    def test_a_reader_that_goes_away_ends_it(self):
        process = subprocess.Popen([PROGRAM, "state", "--watch", "--json"],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        self.addCleanup(lambda: process.poll() is None and process.kill())
        process.stdout.readline()
        process.stdout.close()
        for mtu in range(1400, 1420):
            ip(f"link set en0 mtu {mtu}")
            if process.poll() is not None:
                break
            time.sleep(0.1)
        self.assertEqual((0, b""), (process.wait(timeout=5), process.stderr.read()))
        process.stderr.close()

    def test_as_text_every_state_is_a_whole_one(self):
        read_end, write_end = os.pipe()
        process = subprocess.Popen([PROGRAM, "state", "--watch"], stdin=subprocess.DEVNULL,
                                   stdout=write_end, stderr=subprocess.PIPE)
        os.close(write_end)
        time.sleep(1)
        ip("route add default via 192.0.2.77 dev en0")
        time.sleep(1)
        process.terminate()
        self.assertEqual(0, process.wait(timeout=5))
        self.assertEqual(b"", process.stderr.read())
        process.stderr.close()
        with open(read_end, encoding="utf-8") as output:
            states = output.read().split("\n\n")
        self.assertNotIn("192.0.2.77", states[0])
        self.assertIn("192.0.2.77", states[-1])
        for state in states:
            for text in ("en0", "192.0.2.2", "Router", "MAC"):
                self.assertIn(text, state)
