"""The echo service as a program: who asks is told the truth, and what is wrong is one line."""

import json
import os
import pathlib
import signal
import subprocess
import tempfile
import urllib.request

from echo_service import EchoService, ask, read_answer, request
from namespaces import NamespaceTest, ip
from program import AS_NOBODY, install, run

TABLE = {
    "198.51.100.0/24": {"isp": "Example Telecom", "countryCode": "IT", "as": "AS64500 Example"},
    "198.51.100.128/25": {"isp": "Second Half", "countryCode": "DE", "as": "AS64501 Half"},
    "2001:db8::/32": {"isp": "Sechs é", "countryCode": "FR", "as": ""},
}


class EchoServiceTest(NamespaceTest):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory(prefix="lanternfold echo ")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.table = self.folder / "table.json"
        self.table.write_text(json.dumps(TABLE))
        ip("address add 198.51.100.7/32 dev lo", "address add 198.51.100.200/32 dev lo",
           "address add 203.0.113.9/32 dev lo", "address add 2001:db8::7/128 dev lo nodad",
           "address add fd00::7/128 dev lo nodad")

    def service(self, *arguments, **options):
        service = EchoService(*arguments, **options)
        self.addCleanup(service.__exit__)
        return service


class AnswersTest(EchoServiceTest):
    def test_peers_of_both_families_are_told_their_addresses(self):
        service = self.service(listen=("0.0.0.0:0", "[::]:0"))
        for index, sources in ((0, ("127.0.0.1", "198.51.100.7", "203.0.113.9")),
                               (1, ("::1", "2001:db8::7", "fd00::7"))):
            for source in sources:
                service.addresses[index] = (source, service.addresses[index][1])
                answer = ask(service, index=index, source=source)
                self.assertEqual((200, {"ip": source}), (answer.status, answer.json()))
                self.assertEqual("application/json", answer.fields["content-type"])
                self.assertEqual("no-store", answer.fields["cache-control"])

    def test_provider_and_country_come_from_the_longest_network_of_the_table(self):
        service = self.service("--geolocation-table", str(self.table),
                               listen=("0.0.0.0:0", "[::]:0"))
        for index, source, network in ((0, "198.51.100.7", "198.51.100.0/24"),
                                       (0, "198.51.100.200", "198.51.100.128/25"),
                                       (1, "2001:db8::7", "2001:db8::/32")):
            service.addresses[index] = (source, service.addresses[index][1])
            for path in ("/json/", "/json/?fields=isp,query,countryCode,as"):
                answer = ask(service, path, index=index, source=source)
                self.assertEqual((200, TABLE[network] | {"query": source}),
                                 (answer.status, answer.json()))
        answer = ask(service, "/json/", source="127.0.0.1")
        self.assertEqual((200, {"isp": "", "query": "127.0.0.1", "countryCode": "", "as": ""}),
                         (answer.status, answer.json()))

    def test_the_diagnostic_ping_and_nothing_else(self):
        service = self.service()
        answer = ask(service, "/lanternfold/sentinel.php?deviceId=1&simulator=false&mode=release")
        self.assertEqual((200, {"status": "ok"}), (answer.status, answer.json()))
        for path in ("/", "/json", "/lanternfold/", "/lanternfold/ip.php/../../etc/passwd"):
            self.assertEqual(404, ask(service, path).status, path)
        for method in ("POST", "DELETE", "OPTIONS"):
            answer = ask(service, method=method)
            self.assertEqual((405, "GET, HEAD"), (answer.status, answer.fields["allow"]))
        answer = ask(service, method="HEAD")
        self.assertEqual((200, b""), (answer.status, answer.body))

    def test_an_ordinary_client_understands_it(self):
        service = self.service(listen=("[::1]:0",))
        with urllib.request.build_opener(urllib.request.ProxyHandler({})).open(
                f"http://[::1]:{service.addresses[0][1]}/lanternfold/ip.php", timeout=30) as answer:
            self.assertEqual({"ip": "::1"}, json.load(answer))

    def test_a_connection_is_used_again(self):
        service = self.service()
        with service.connect() as connection:
            for _ in range(50):
                connection.sendall(request())
                self.assertEqual({"ip": "127.0.0.1"}, read_answer(connection).json())


class ForwardedTest(EchoServiceTest):
    def test_a_trusted_peer_is_believed(self):
        service = self.service("--trust", "127.0.0.1", "--trust", "10.0.0.0/8",
                               "--geolocation-table", str(self.table))
        for value, client in (("198.51.100.7", "198.51.100.7"),
                              ("192.0.2.66, 198.51.100.7", "198.51.100.7"),
                              ("198.51.100.7, 10.9.8.7", "198.51.100.7"),
                              ("[2001:db8::7]:4711, 10.9.8.7", "2001:db8::7"),
                              ("::ffff:198.51.100.7", "198.51.100.7")):
            answer = ask(service, "/lanternfold/ip.php", f"X-Forwarded-For: {value}")
            self.assertEqual({"ip": client}, answer.json(), value)
            answer = ask(service, "/json/", f"X-Forwarded-For: {value}")
            self.assertEqual(client, answer.json()["query"])
        self.assertEqual({"ip": "127.0.0.1"}, ask(service).json())
        self.assertEqual(400, ask(service, "/json/", "X-Forwarded-For: unknown").status)

    def test_any_other_peer_is_not(self):
        service = self.service("--trust", "127.0.0.1", listen=("0.0.0.0:0",))
        service.addresses[0] = ("203.0.113.9", service.addresses[0][1])
        for value in ("198.51.100.7", "127.0.0.1", "unknown", "198.51.100.7, 127.0.0.1"):
            answer = ask(service, "/lanternfold/ip.php", f"X-Forwarded-For: {value}",
                         source="203.0.113.9")
            self.assertEqual({"ip": "203.0.113.9"}, answer.json(), value)

    def test_nobody_is_trusted_unless_named(self):
        answer = ask(self.service(), "/lanternfold/ip.php", "X-Forwarded-For: 198.51.100.7")
        self.assertEqual({"ip": "127.0.0.1"}, answer.json())


class ProgramTest(EchoServiceTest):
    def fails(self, status, *arguments, words=(), **options):
        done = run("echo-service", *arguments, **options)
        errors = done.stderr.decode()
        self.assertEqual((status, b"", 1), (done.returncode, done.stdout, len(errors.splitlines())),
                         f"{arguments}: {errors}")
        self.assertTrue(errors.startswith("lanternfold-widgets: "), errors)
        for word in words:
            self.assertIn(word, errors)

    def test_says_where_it_listens_and_ends_on_both_signals(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            service = self.service(listen=("127.0.0.1:0", "[::1]:0"))
            port4, port6 = (each[1] for each in service.addresses)
            self.assertEqual(
                f"Listening on 127.0.0.1:{port4} and [::1]:{port6} until interrupted.\n",
                service.line)
            with service.connect() as connection:
                connection.sendall(request())
                self.assertEqual(200, read_answer(connection).status)
                self.assertEqual((0, ""), service.finish(number))
                self.assertEqual(b"", connection.recv(1))

    def test_a_port_is_free_again_at_once(self):
        for _ in range(3):
            with EchoService(listen=("127.0.0.1:8099",)) as service:
                self.assertEqual(200, ask(service).status)
                self.assertEqual((0, ""), service.finish())

    def test_an_address_in_use(self):
        service = self.service()
        self.fails(1, "--listen", f"127.0.0.1:{service.addresses[0][1]}",
                   words=("cannot listen on 127.0.0.1:", "another program"))
        self.assertEqual(200, ask(service).status)

    def test_an_address_of_another_machine(self):
        self.fails(1, "--listen", "192.0.2.1:80", words=("does not have that address",))
        self.fails(1, "--listen", "[2001:db8::99]:80", words=("does not have that address",))

    def test_no_permission_for_a_port(self):
        self.fails(1, "--listen", "127.0.0.1:80", program=install(self.folder),
                   words=("no permission", "1024", "CAP_NET_BIND_SERVICE"), **AS_NOBODY)

    def test_runs_without_any_privilege(self):
        with EchoService(program=install(self.folder), **AS_NOBODY) as service:
            self.assertEqual(200, ask(service).status)
            self.assertEqual((0, ""), service.finish())

    def test_needs_neither_the_kernels_tables_nor_a_home(self):
        service = self.service(through=[os.environ["LANTERNFOLD_REFUSE_NETLINK"]],
                               env={"HOME": "/nonexistent"})
        self.assertEqual(200, ask(service).status)
        self.assertEqual((0, ""), service.finish())

    def test_options_that_are_not_understood(self):
        self.fails(2, words=("--listen",))
        for text in ("", "8080", "127.0.0.1", "127.0.0.1:65536", "localhost:80", "::1:80", "[::1]"):
            self.fails(2, "--listen", text, words=("--listen takes an address and a port",))
        self.fails(2, "--listen", "127.0.0.1:81", "--listen", "127.0.0.1:81", words=("twice",))
        for text, word in (("proxy", "neither"), ("10.0.0.1/8", "10.0.0.0/8"), ("::/129", "128")):
            self.fails(2, "--listen", "127.0.0.1:0", "--trust", text, words=("--trust", word))
        for number in ("0", "-1", "10001"):
            self.fails(2, "--listen", "127.0.0.1:0", "--connections", number,
                       words=("--connections",))

    def test_faults_of_the_table(self):
        for contents, words in (
                (b"", ("not JSON",)),
                (b"[]", ("not a JSON object",)),
                (b'{"lan":{}}', ('"lan"', "network")),
                (b'{"10.0.0.0/8":{"isp":"a","as":"b"}}', ('"10.0.0.0/8"', '"countryCode"')),
                (b'{"10.0.0.0/8":{"isp":7}}', ('"10.0.0.0/8"', "not a text")),
                (b"\x00\xff" * 1000, ("not JSON",)),
                (b'{"\x1b[31m":{}}', ("not JSON",)),
                (b"[" * 1_000_000, ("not a JSON object",))):
            self.table.write_bytes(contents)
            self.fails(1, "--listen", "127.0.0.1:0", "--geolocation-table", str(self.table),
                       words=(str(self.table), *words))
        self.fails(1, "--listen", "127.0.0.1:0", "--geolocation-table", str(self.folder),
                   words=("cannot read",))
        self.fails(1, "--listen", "127.0.0.1:0", "--geolocation-table", "/dev/zero",
                   words=("cannot read",))
        self.fails(1, "--listen", "127.0.0.1:0", "--geolocation-table", "absent.json",
                   words=("cannot read", "absent.json"))
        with open(self.table, "wb") as table:
            table.truncate(10_000_000_000)
        self.fails(1, "--listen", "127.0.0.1:0", "--geolocation-table", str(self.table),
                   words=("cannot read", "too large"))

    def test_standard_output_that_takes_nothing(self):
        with open("/dev/full", "wb") as full:
            done = run("echo-service", "--listen", "127.0.0.1:0", stdout=full,
                       stderr=subprocess.PIPE)
        self.assertEqual(1, done.returncode)
        self.assertIn(b"standard output", done.stderr)

    def test_a_machine_without_ipv6(self):
        self.switch_ipv6_off()
        with open("/proc/sys/net/ipv6/conf/lo/disable_ipv6", "w") as switch:
            switch.write("1")
        self.fails(1, "--listen", "[::1]:0", words=("cannot listen on [::1]:0",))
        self.assertEqual(200, ask(self.service()).status)
