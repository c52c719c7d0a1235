"""`state --categories internet --watch --json`: what is reported as whole is the truth."""

import time

from far_network import (GATEWAY4, GATEWAY6, NEAR4, NEAR6, SERVICE4, SERVICE6, FarNetwork,
                         give_ipv4, give_ipv6)
from internet_test import InternetTest, environment, known
from namespaces import ip
from program import Watch
from web_servers import WebServer, address_of, answer, provider_of, silence

BOTH = known(NEAR4, NEAR6, "Example Telecom", "IT")
NOTHING = known(supports_ipv6=False)
# The limits of both requests of a chain, and what a busy machine adds.
LIMIT_SECONDS = 30


def known_of(report):
    return {key: report["state"]["internet"][key] for key in BOTH}


class WatchTest(InternetTest):
    def setUp(self):
        super().setUp()
        self.far = FarNetwork()
        self.addCleanup(self.far.__exit__)
        give_ipv4()
        give_ipv6()

    def serve(self, after_seconds=0, plays=None):
        plays = plays or {"/ip": answer(address_of, after_seconds=after_seconds),
                          "/geo": answer(provider_of(), after_seconds=after_seconds)}
        with self.far.inside():
            self.server4, self.server6 = (self.start(WebServer(plays, address=each))
                                          for each in (SERVICE4, SERVICE6))

    def watch(self):
        return Watch("--categories", "internet", "--data-dir", str(self.data), "--ipv4-echo",
                     self.server4.url("/ip"), "--ipv6-echo", self.server6.url("/ip"),
                     "--geolocation", self.server4.url("/geo"), env=environment())

    def wait_for(self, watch, expected, since=0):
        moment = watch.moment_of(lambda report: report["complete"] and known_of(report) == expected,
                                 LIMIT_SECONDS, since)
        self.assertIsNotNone(moment, f"{watch.reports[-1:]}")

    def complete(self, watch, since=0):
        return [known_of(report) for _, report in watch.reports[since:] if report["complete"]]

    def assert_ends_well(self, watch, told=()):
        status, errors = watch.finish()
        self.assertEqual((0, []), (status, watch.broken))
        self.assertEqual(len(told), len(errors.splitlines()), errors)
        for piece, line in zip(told, errors.decode().splitlines()):
            self.assertIn(piece, line)


class BeginningTest(WatchTest):
    """It looks twice when it begins; the first look is overtaken by the second."""

    def test_no_whole_report_lacks_the_address(self):
        for number in range(5):
            self.data = self.folder / f"data{number}"
            self.serve()
            with self.watch() as watch:
                self.wait_for(watch, BOTH)
                watch.settle()
                self.assertEqual(BOTH, known_of(watch.reports[-1][1]))
                self.assertTrue(watch.reports[-1][1]["complete"])
                self.assertEqual({tuple(BOTH.items())},
                                 {tuple(each.items()) for each in self.complete(watch)})
                self.assert_ends_well(watch)

    def test_nor_when_the_services_are_slow(self):
        self.serve(after_seconds=1)
        with self.watch() as watch:
            self.wait_for(watch, BOTH)
            watch.settle()
            self.assertEqual({tuple(BOTH.items())},
                             {tuple(each.items()) for each in self.complete(watch)})
            self.assert_ends_well(watch)

    def test_one_that_nobody_answers_ends_at_once(self):
        """On a signal, in the middle of its requests."""
        self.serve(plays={"/ip": silence, "/geo": silence})
        with self.watch() as watch:
            self.assertIsNotNone(watch.moment_of(lambda _: True, 10))
            self.assert_ends_well(watch)


class ChangesTest(WatchTest):
    def test_a_default_route_that_is_lost_and_comes_back(self):
        self.serve()
        with self.watch() as watch:
            self.wait_for(watch, BOTH)
            since = watch.settle()
            ip("route del default", "-6 route del default")
            self.wait_for(watch, NOTHING, since)
            watch.settle()
            self.assertEqual(NOTHING, self.complete(watch)[-1])
            since = len(watch.reports)
            ip(f"route add default via {GATEWAY4} dev en0")
            self.wait_for(watch, BOTH | NOTHING | {"ip": NEAR4, "isp": "Example Telecom",
                                                   "country": "IT"}, since)
            watch.settle()
            self.assert_ends_well(watch, ["the host cannot be reached"])
        self.assertEqual(1, len(self.server4.visits("/geo")), "the provider is remembered")

    def test_another_address(self):
        self.serve()
        with self.watch() as watch:
            self.wait_for(watch, BOTH)
            since = watch.settle()
            ip(f"address del {NEAR4}/24 dev en0", "address add 192.0.2.3/24 dev en0",
               f"route add default via {GATEWAY4} dev en0")
            self.wait_for(watch, BOTH | {"ip": "192.0.2.3"}, since)
            watch.settle()
            self.assertEqual(BOTH | {"ip": "192.0.2.3"}, self.complete(watch)[-1])
        self.assertEqual(2, len(self.server4.visits("/geo")), "the provider of another address")

    def test_many_changes_in_a_row(self):
        self.serve()
        with self.watch() as watch:
            self.wait_for(watch, BOTH)
            for number in range(20):
                ip(f"address add 198.51.100.{number + 1}/32 dev en0")
            ip("route del default", "-6 route del default")
            ip(f"route add default via {GATEWAY4} dev en0",
               f"-6 route add default via {GATEWAY6} dev en0")
            watch.settle()
            self.assertEqual(BOTH, self.complete(watch)[-1])


class EndTest(WatchTest):
    """Reports and answers may be on their way whenever it is asked to end."""

    def test_it_ends_well_at_every_moment_of_its_beginning(self):
        self.serve()
        for number in range(60):
            with self.watch() as watch:
                self.assertIsNotNone(watch.moment_of(lambda report: True, LIMIT_SECONDS))
                time.sleep(number * 0.002)
                status, errors = watch.finish()
                self.assertEqual((0, b""), (status, errors), number)
