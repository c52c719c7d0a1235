"""Services that answer wrongly: each is told apart, and what the others say still counts."""

import gzip
import json
import shutil

from internet_test import GEOLOCATION, IPV4, IPV6, InternetTest, known
from web_servers import (WebServer, a_reset, address_of, answer, bytes_as_they_are, hanging_up,
                         provider_of, redirect)

SECRET = "in a file of the machine"
NOT_JSON = "the answer is not JSON"
TOO_LONG = "the answer is too long"
LOST = "the connection was lost"
ALL = (IPV4, GEOLOCATION, IPV6)
RIGHT = known("127.0.0.1", "::1", "Example Telecom", "IT")
LONG_BODY = b" " * 10_000_000


class ServersTest(InternetTest):
    def ask(self, situation, play, expected, *told, **plays):
        """The state when all services play this (or those of `plays` theirs), checked."""
        plays = {"/wrong": play, "/ip": answer(address_of), "/geo": answer(provider_of()), **plays}
        server4 = self.start(WebServer(plays))
        server6 = self.start(WebServer(plays, address="::1"))
        outcome = self.state(ipv4_echo=server4.url("/wrong"), ipv6_echo=server6.url("/wrong"),
                             geolocation=server4.url("/wrong"))
        self.assert_answers(outcome, expected, situation)
        self.assert_says(outcome, *told)
        self.servers = (server4, server6)
        return outcome


class RefusedTest(ServersTest):
    def test_nobody_listens(self):
        outcome = self.state()
        self.assert_answers(outcome, known(supports_ipv6=False), "connections are refused")
        self.assert_says(outcome, "the host cannot be reached", IPV4, GEOLOCATION)

    def test_a_reset(self):
        """The host has been reached: this says nothing of a machine without IPv6."""
        self.ask("a reset", a_reset, known(), LOST, *ALL)

    def test_a_connection_closed_without_a_byte(self):
        self.ask("closed without a byte", hanging_up, known(), LOST, *ALL)

    def test_a_connection_closed_in_the_middle(self):
        self.ask("closed in the middle", bytes_as_they_are(
            b'HTTP/1.1 200 OK\r\nContent-Length: 50\r\n\r\n{"ip":"192'), known(), LOST, *ALL)

    def test_an_answer_that_is_not_one_of_http(self):
        self.ask("not HTTP", bytes_as_they_are(b"220 mail.example ESMTP\r\n"), known(),
                 "the answer is not one of HTTP", *ALL)


class StatusTest(ServersTest):
    def test_500_with_a_page(self):
        self.ask("500", answer("<html>Sorry</html>", status="500 Internal Server Error"), known(),
                 NOT_JSON, *ALL)

    def test_404(self):
        self.ask("404", answer("nothing here", status="404 Not Found"), known(), NOT_JSON, *ALL)

    def test_a_status_is_not_looked_at_when_the_answer_is_one(self):
        everything = answer(lambda visit: address_of(visit) | provider_of()(visit),
                            status="500 Internal Server Error")
        self.ask("500 with a whole answer", everything, RIGHT)

    def test_nothing_in_the_answer(self):
        self.ask("an empty answer", answer(""), known(), NOT_JSON, *ALL)

    def test_204(self):
        self.ask("204", bytes_as_they_are(b"HTTP/1.1 204 No Content\r\n\r\n"), known(),
                 NOT_JSON, *ALL)


class RedirectTest(ServersTest):
    def test_to_a_file(self):
        secret = self.folder / "secret.json"
        secret.write_text(f'{{"ip":"192.0.2.99","isp":"{SECRET}"}}')
        outcome = self.ask("302 to file:", redirect(secret.as_uri()), known(),
                           "only http and https URLs can be fetched", *ALL)
        self.assertNotIn(SECRET, outcome.output + outcome.errors)

    def test_to_other_schemes(self):
        for scheme in ("ftp", "gopher", "telnet", "dict", "data", "javascript"):
            self.ask(None, redirect(f"{scheme}://127.0.0.1/"), known(),
                     "only http and https URLs can be fetched", *ALL)

    def test_that_is_followed(self):
        server4 = self.start(WebServer({"/moved": redirect("/ip"), "/ip": answer(address_of)}))
        server6 = self.start(WebServer({"/moved": redirect("/ip", "307 Temporary Redirect"),
                                        "/ip": answer(address_of)}, address="::1"))
        server = self.start(WebServer({"/moved": redirect("/geo?fields=isp", "301 Moved"),
                                       "/geo": answer(provider_of())}))
        outcome = self.state(ipv4_echo=server4.url("/moved"), ipv6_echo=server6.url("/moved"),
                             geolocation=server.url("/moved"))
        self.assert_answers(outcome, RIGHT, "302 that is followed")
        self.assert_says(outcome)
        for each in (server4, server6, server):
            self.assertEqual(2, len(each.visits()))

    def chain(self, length):
        plays = {f"/hop{number}": redirect(f"/hop{number + 1}") for number in range(1, length)}
        return plays | {f"/hop{length}": answer(
            lambda visit: address_of(visit) | provider_of()(visit))}

    def test_five_in_a_row(self):
        self.ask("five redirects", redirect("/hop1"), RIGHT, **self.chain(5))

    def test_six_in_a_row(self):
        self.ask("six redirects", redirect("/hop1"), known(), "there were too many redirects",
                 *ALL, **self.chain(6))

    def test_in_a_circle(self):
        self.ask("redirects in a circle", redirect("/wrong"), known(),
                 "there were too many redirects", *ALL)

    def test_without_a_target(self):
        self.ask("302 without a target", answer("", status="302 Found"), known(), NOT_JSON, *ALL)


class BodyTest(ServersTest):
    def test_ten_megabytes(self):
        self.ask("10 MB", answer(LONG_BODY), known(), TOO_LONG, *ALL)

    def test_ten_megabytes_of_unknown_length(self):
        self.ask("10 MB, length not told",
                 bytes_as_they_are(b"HTTP/1.1 200 OK\r\n\r\n" + LONG_BODY), known(), TOO_LONG, *ALL)

    def test_endless_fields(self):
        field = b"X-Field: " + b"x" * 1000 + b"\r\n"
        self.ask("10 MB of fields", bytes_as_they_are(b"HTTP/1.1 200 OK\r\n" + field * 10_000),
                 known(), TOO_LONG, *ALL)

    def test_a_small_answer_that_unpacks_to_much(self):
        self.ask("10 MB, packed into 10 KB", answer(
            gzip.compress(LONG_BODY), fields=["Content-Encoding: gzip"]), known(), TOO_LONG, *ALL)

    def test_an_answer_that_cannot_be_unpacked(self):
        self.ask("gzip that is none", answer(b"\x1f\x8b\x08" + b"\xff" * 50,
                                             fields=["Content-Encoding: gzip"]), known(),
                 "the answer is not one of HTTP", *ALL)

    def test_endless_interim_answers(self):
        self.ask("100,000 interim answers", bytes_as_they_are(
            b"HTTP/1.1 103 Early Hints\r\n\r\n" * 100_000), known(), TOO_LONG, *ALL)

    def test_other_ways_to_send_an_answer(self):
        def framed(head, frame):
            def play(visit, stream):
                body = json.dumps(address_of(visit) | provider_of()(visit)).encode()
                stream.sendall(head + frame(body))
            return play

        chunks = framed(b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n", lambda body:
                        b"".join(b"1\r\n%c\r\n" % each for each in body) + b"0\r\n\r\n")
        packed = framed(b"HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n", gzip.compress)
        plain = framed(b"HTTP/1.0 200 OK\r\n\r\n", bytes)
        for play in (chunks, packed, plain):
            self.ask(None, play, RIGHT)
            shutil.rmtree(self.data)

    def test_invalid_utf_8(self):
        self.ask("invalid UTF-8", answer(b'{"ip":"127.0.0.1","query":"127.0.0.1","as":"",'
                                         b'"isp":"\xc3\x28","countryCode":"IT","x":"\xff"}'),
                 known(), NOT_JSON, *ALL)

    def test_a_json_text_that_goes_on_behind_a_zero_byte(self):
        self.ask("a zero byte", answer(b'{"ip":"127.0.0.1"}\0'), known(), NOT_JSON, *ALL)

    def test_wrong_types(self):
        self.ask("wrong types", answer({"ip": 7, "isp": ["a"], "countryCode": None, "as": {},
                                        "query": True}), known(),
                 '"ip" in the answer is not a text', '"isp" in the answer is not a text', *ALL)

    def test_no_object(self):
        for text in ("[]", '["127.0.0.1"]', '"127.0.0.1"', "7", "null"):
            self.ask("JSON, no object" if text == "[]" else None, answer(text), known(),
                     "the answer is not a JSON object", *ALL)

    def test_missing_members(self):
        self.ask("missing members", answer({"country": "Italy"}), known(),
                 'the answer lacks "ip"', 'the answer lacks "isp"', *ALL)

    def test_addresses_that_are_none(self):
        for text in ("", "127.0.0.256", "::1%lo", "example", "127.0.0.1\n"):
            self.ask(None, answer({"ip": text, "isp": "a", "countryCode": "IT", "as": "",
                                   "query": text}), known(), "is not an IPv6 address", *ALL)

    def test_deep_nesting(self):
        self.ask("deep nesting", answer(b'{"x":' + b"[" * 30_000 + b"]" * 30_000 + b"}"), known(),
                 "the answer is nested too deeply", *ALL)


class OneServiceTest(ServersTest):
    """One service fails, the others do not."""

    def ask_services(self, situation, **wrong):
        plays = {"/ip": answer(address_of), "/geo": answer(provider_of()), "/wrong": a_reset}
        server4 = self.start(WebServer(plays))
        server6 = self.start(WebServer(plays, address="::1"))
        urls = {"ipv4_echo": server4.url("/ip"), "ipv6_echo": server6.url("/ip"),
                "geolocation": server4.url("/geo")}
        urls |= {name: urls[name].rpartition("/")[0] + "/wrong" for name in wrong}
        outcome = self.state(**urls)
        self.tell(situation, outcome)
        return outcome

    def test_the_ipv6_service_fails(self):
        outcome = self.ask_services("the IPv6 service fails", ipv6_echo=True)
        self.assert_answers(outcome, known("127.0.0.1", isp="Example Telecom", country="IT"))
        self.assert_says(outcome, LOST, IPV6)
        self.assertNotIn(IPV4, outcome.errors)

    def test_the_geolocation_service_fails(self):
        """Its failure is that of the pair: the address is of no use for the cache then."""
        outcome = self.ask_services("the geolocation service fails", geolocation=True)
        self.assert_answers(outcome, known(ipv6="::1"))
        self.assert_says(outcome, LOST, GEOLOCATION)
        self.assertNotIn(IPV6, outcome.errors)

    def test_the_ipv4_service_fails(self):
        """The geolocation service knows the address too."""
        outcome = self.ask_services("the IPv4 service fails", ipv4_echo=True)
        self.assert_answers(outcome, RIGHT)
