"""The provider and the country are asked for once in three days, as long as the address stays."""

import os
import shutil
from concurrent.futures import ThreadPoolExecutor

import settings_database as settings
from far_network import GATEWAY4, SERVICE4, FarNetwork, give_ipv4
from internet_test import InternetTest, known
from namespaces import ip, mount, unmount
from program import AS_NOBODY, install
from settings_database import DATE, DAY_SECONDS, STORAGE, stored
from web_servers import WebServer, a_reset, address_of, answer, provider_of

STORED = {"ip": "127.0.0.1", "isp": "Stored Telecom", "country": "FR"}
HIT = known("127.0.0.1", isp="Stored Telecom", country="FR", supports_ipv6=False)
MISS = known("127.0.0.1", isp="Example Telecom", country="IT", supports_ipv6=False)
THREE_DAYS = 3 * DAY_SECONDS


class CacheTest(InternetTest):
    def setUp(self):
        super().setUp()
        self.server = self.start(WebServer({"/ip": answer(address_of), "/wrong": a_reset,
                                            "/geo": answer(provider_of())}))

    def ask(self, *arguments, ipv4_echo="/ip", geolocation="/geo", **options):
        return self.state(*arguments, ipv4_echo=self.server.url(ipv4_echo),
                          geolocation=self.server.url(geolocation), **options)

    def questions(self):
        """How often the geolocation service has been asked."""
        return len(self.server.visits("/geo"))

    def assert_asks(self, count, expected, *arguments, **options):
        """That a command answers so and asks so often; not a word besides."""
        before = self.questions()
        outcome = self.ask(*arguments, **options)
        self.assert_answers(outcome, expected)
        self.assert_says(outcome)
        self.assertEqual(count, self.questions() - before)
        return outcome


class RuleTest(CacheTest):
    def test_a_second_look_asks_nobody_for_the_provider(self):
        self.tell("the provider is asked for", self.assert_asks(1, MISS))
        for _ in range(3):
            self.tell("the provider is remembered", self.assert_asks(0, MISS))
        self.assertEqual(4, len(self.server.visits("/ip")))

    def test_what_is_stored_is_the_answer_by_the_names_of_the_keys(self):
        self.assert_asks(1, MISS)
        rows = settings.read(self.data)
        self.assertEqual(("dictionary", "date"), (rows[STORAGE][0], rows[DATE][0]))
        entries = [settings.dictionary({key: value})[1:] for key, value in
                   (("ip", "127.0.0.1"), ("isp", "Example Telecom"), ("country", "IT"))]
        self.assertEqual(1 + sum(map(len, entries)), len(rows[STORAGE][1]))
        for entry in entries:
            self.assertIn(entry, rows[STORAGE][1])
        self.assertLess(abs(settings.nanoseconds() - rows[DATE][1]), 60_000_000_000)

    def test_the_stored_answer_is_used(self):
        settings.write(self.data, *stored(STORED, seconds_ago=60))
        self.assert_asks(0, HIT)

    def test_a_little_less_than_three_days(self):
        settings.write(self.data, *stored(STORED, seconds_ago=THREE_DAYS - 120))
        self.assert_asks(0, HIT)

    def test_three_days(self):
        settings.write(self.data, *stored(STORED, seconds_ago=THREE_DAYS))
        self.assert_asks(1, MISS)
        self.assert_asks(0, MISS)

    def test_a_date_in_the_future(self):
        settings.write(self.data, *stored(STORED, seconds_ago=-DAY_SECONDS))
        self.assert_asks(1, MISS)
        self.assert_asks(0, MISS)

    def test_another_address(self):
        settings.write(self.data, *stored(STORED | {"ip": "192.0.2.99"}))
        self.assert_asks(1, MISS)

    def test_a_stored_answer_that_lacks_the_address(self):
        settings.write(self.data, *stored({"isp": "Stored Telecom", "country": "FR"}))
        self.assert_asks(1, MISS)

    def test_a_stored_answer_without_provider_and_country(self):
        settings.write(self.data, *stored({"ip": "127.0.0.1"}))
        self.assert_asks(0, known("127.0.0.1", supports_ipv6=False))

    def test_a_hit_needs_no_geolocation_service(self):
        settings.write(self.data, *stored(STORED))
        self.assert_asks(0, HIT, geolocation="/wrong")

    def test_a_failed_question_leaves_what_is_stored(self):
        settings.write(self.data, *stored(STORED, seconds_ago=THREE_DAYS))
        before = settings.read(self.data)
        outcome = self.ask(geolocation="/wrong")
        self.assert_answers(outcome, known(supports_ipv6=False))
        self.assert_says(outcome, "the connection was lost", "geolocation")
        self.assertEqual(before, settings.read(self.data))

    def test_without_an_address_to_compare_the_service_is_asked(self):
        settings.write(self.data, *stored(STORED))
        outcome = self.ask(ipv4_echo="/wrong")
        self.assert_answers(outcome, MISS)
        self.assertEqual(1, self.questions())

    def test_each_group_has_its_own(self):
        settings.write(self.data, *stored(STORED))
        self.assert_asks(1, MISS, "--no-app-group")
        self.assert_asks(1, MISS, "--app-group", "another.group")
        self.assert_asks(0, HIT)
        self.assert_asks(0, MISS, "--no-app-group")
        self.assertIn(STORAGE, settings.read(self.data, "standard"))
        self.assertIn(STORAGE, settings.read(self.data, "another.group"))

    def test_skipping_it(self):
        settings.write(self.data, *stored(STORED))
        before = settings.read(self.data)
        self.assert_asks(0, known("127.0.0.1", supports_ipv6=False), "--skip-geoip")
        self.assertEqual(before, settings.read(self.data))

    def test_many_at_once(self):
        with ThreadPoolExecutor(max_workers=8) as pool:
            outcomes = list(pool.map(lambda _: self.ask(), range(8)))
        for outcome in outcomes:
            self.assert_answers(outcome, MISS)
            self.assertNotIn("service", outcome.errors)
        self.assert_asks(0, MISS)


class AddressTest(InternetTest):
    def test_a_machine_that_gets_another_address(self):
        far = FarNetwork()
        self.addCleanup(far.__exit__)
        give_ipv4()
        with far.inside():
            server = self.start(WebServer({"/ip": answer(address_of), "/geo": answer(
                lambda visit: provider_of(f"Provider of {visit.peer}")(visit))}, address=SERVICE4))
        ip("address add 192.0.2.3/24 dev en0")
        for number, address in ((1, "192.0.2.2"), (1, "192.0.2.2"), (2, "192.0.2.3"),
                                (2, "192.0.2.3"), (3, "192.0.2.2")):
            ip(f"route replace default via {GATEWAY4} dev en0 src {address}")
            outcome = self.state(ipv4_echo=server.url("/ip"), geolocation=server.url("/geo"))
            self.assert_answers(outcome, known(address, isp=f"Provider of {address}", country="IT",
                                               supports_ipv6=False))
            self.assertEqual(number, len(server.visits("/geo")))
        self.tell("the address has changed", outcome)


class DamageTest(CacheTest):
    """What cannot be read is as if it were not there, and what belongs to others is not lost."""

    OTHER = ("of another program", "string", "is still there")

    def assert_miss(self, *rows):
        settings.write(self.data, self.OTHER, *rows)
        self.assert_asks(1, MISS)
        self.assertEqual(self.OTHER[1:], settings.read(self.data)[self.OTHER[0]])
        self.assert_asks(0, MISS)
        shutil.rmtree(self.data)

    def test_entries_of_another_type(self):
        answer_row, date_row = stored(STORED)
        for row in ((STORAGE, "string", "127.0.0.1"), (STORAGE, "integer", 7),
                    (STORAGE, "data", b"\0\xff"), (STORAGE, "date", settings.nanoseconds())):
            self.assert_miss(row, date_row)
        for row in ((DATE, "string", "2026-01-01"), (DATE, "integer", settings.nanoseconds()),
                    (DATE, "unsigned", str(settings.nanoseconds())), (DATE, "data", b"")):
            self.assert_miss(answer_row, row)

    def test_values_of_another_type_in_the_answer(self):
        for value in ({"ip": ["integer", 7]}, {"isp": {"name": "a"}}, {"country": b"FR"},
                      {"ip": {}}):
            self.assert_miss(*stored(STORED | value))

    def test_one_entry_without_the_other(self):
        for row in stored(STORED):
            self.assert_miss(row)

    def test_entries_that_are_no_entries(self):
        date_row = stored(STORED)[1]
        whole = settings.dictionary(STORED)
        for contents in (b"", whole[:-1], whole + b"\0", b"\xff" * 100, b"\xbf" * 100_000,
                         b"\xa1\x62ip\xf6", "text"):
            self.assert_miss((STORAGE, "dictionary", contents), date_row)
        for kind, value in (("date", "soon"), ("date", 2**63 - 1), ("date", -2**63),
                            ("unheard of", 1)):
            self.assert_miss(stored(STORED)[0], (DATE, kind, value))

    def test_a_damaged_database(self):
        path = settings.path_of(self.data)
        path.parent.mkdir(parents=True, mode=0o700)
        for number, contents in enumerate((b"no database" * 1000, b"SQLite format 3\0" + bytes(84)),
                                          start=1):
            path.write_bytes(contents)
            for journal in path.parent.glob("*.sqlite-*"):
                journal.unlink()
            outcome = self.ask()
            self.assert_answers(outcome, MISS, "the settings' database is damaged")
            self.assert_says(outcome, "damaged", f"{path.name}.damaged-{number}")
            self.assertEqual(contents, (path.parent / f"{path.name}.damaged-{number}").read_bytes())
            self.assert_asks(0, MISS)

    def test_a_database_of_a_later_version_is_left_alone(self):
        settings.write(self.data, *stored(STORED))
        settings.write_version(self.data, 2)
        outcome = self.ask()
        self.assert_answers(outcome, MISS)
        self.assertEqual(stored(STORED)[0][2], settings.read(self.data)[STORAGE][1])

    def test_a_folder_that_cannot_be_written(self):
        mount("none", str(self.make_folder()), "tmpfs", data="size=1m,mode=700")
        self.addCleanup(unmount, str(self.data))
        settings.write(self.data, *stored(STORED | {"ip": "192.0.2.99"}))
        read_only, remount = 1, 32
        mount("none", str(self.data), "tmpfs", read_only | remount)
        for _ in range(2):
            outcome = self.ask()
            self.assert_answers(outcome, MISS, "the data folder is read-only")
            self.assertIn("cannot be brought to the disk: Read-only file system", outcome.errors)
        self.assertEqual(2, self.questions())

    def make_folder(self):
        self.data.mkdir()
        return self.data

    def test_a_folder_of_somebody_else(self):
        program = install(self.folder)
        self.make_folder().chmod(0o555)
        outcome = self.ask(program=program, **AS_NOBODY)
        self.assert_answers(outcome, MISS, "the data folder is somebody else's")
        self.assertIn("belongs to another user", outcome.errors)
        self.assertEqual([], os.listdir(self.data))

    def test_a_full_disk(self):
        mount("none", str(self.make_folder()), "tmpfs", data="size=64k,mode=700")
        self.addCleanup(unmount, str(self.data))
        with open(self.data / "filler", "wb", buffering=0) as filler:
            try:
                while filler.write(bytes(4096)):
                    pass
            except OSError:
                pass
        outcome = self.ask()
        self.assert_answers(outcome, MISS, "the disk is full")
        self.assertIn("cannot be brought to the disk", outcome.errors)
