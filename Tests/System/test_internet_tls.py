"""Services behind TLS: who cannot prove to be the host is not believed, and the message says why."""

import ssl

from certificates import Authority
from internet_test import GEOLOCATION, IPV4, IPV6, InternetTest, known
from web_servers import WebServer, address_of, answer, provider_of

NOT_TRUSTED = "the host's certificate is not trusted"
BAD_DATE = "the host's certificate has expired or is not valid yet"
NOT_SECURE = "the secure connection failed"
# An answer that is there is not waited for: the limit of a request is 5 s.
AT_ONCE_SECONDS = 4
ALL = (IPV4, GEOLOCATION, IPV6)


class TlsTest(InternetTest):
    def setUp(self):
        super().setUp()
        self.authority = Authority(self.folder / "authority")

    def ask(self, context, *arguments, host=None, **options):
        """The state when all services are behind this side of TLS."""
        plays = {"/ip": answer(address_of), "/geo": answer(provider_of())}
        self.servers = [self.start(WebServer(plays, address=address, tls=context))
                        for address in ("127.0.0.1", "::1")]
        server4, server6 = self.servers
        return self.state(*arguments, ipv4_echo=server4.url("/ip", host),
                          ipv6_echo=server6.url("/ip", host and host + "6"),
                          geolocation=server4.url("/geo", host), **options)

    def trusting(self, authority=None):
        return "--ca-file", str((authority or self.authority).certificate)

    def assert_refused(self, outcome, situation, message):
        self.assert_answers(outcome, known(), situation)
        self.assert_says(outcome, message, *ALL)
        for server in self.servers:
            for visit in server.visits():
                self.assertIsNone(visit.asked, "something was asked of a host that is not proven")

    def test_an_authority_of_ones_own(self):
        outcome = self.ask(self.authority.server_context("good"), *self.trusting())
        self.assert_answers(outcome, known("127.0.0.1", "::1", "Example Telecom", "IT"),
                            "TLS, certificate of one's own authority")
        self.assert_says(outcome)

    def test_an_authority_that_nobody_knows(self):
        self.assert_refused(self.ask(self.authority.server_context("good")),
                            "TLS, unknown authority", NOT_TRUSTED)

    def test_another_authority_of_the_same_name(self):
        other = Authority(self.folder / "other")
        outcome = self.ask(self.authority.server_context("good"), *self.trusting(other))
        self.assert_refused(outcome, "TLS, another authority of that name", NOT_TRUSTED)

    def test_a_certificate_that_has_expired(self):
        context = self.authority.server_context("old", "20200101000000Z", "20200201000000Z")
        self.assert_refused(self.ask(context, *self.trusting()), "TLS, expired certificate",
                            BAD_DATE)

    def test_a_certificate_that_is_not_valid_yet(self):
        context = self.authority.server_context("new", "20990101000000Z", "20990201000000Z")
        self.assert_refused(self.ask(context, *self.trusting()), "TLS, certificate of the future",
                            BAD_DATE)

    def test_a_certificate_for_another_host(self):
        context = self.authority.server_context("other", names="DNS:other.example,IP:192.0.2.1")
        self.assert_refused(self.ask(context, *self.trusting()),
                            "TLS, certificate of another host", NOT_TRUSTED)

    def test_hosts_by_their_names(self):
        """What tells of a name that was found is closed, and the connection gets its number: whoever
        went on watching the one would not hear of the other. It takes several tries to be sure."""
        self.write_names("127.0.0.1 echo.example\n::1 echo.example6\n")
        context = self.authority.server_context("named", names="DNS:echo.example,DNS:echo.example6")
        for number in range(10):
            outcome = self.ask(context, *self.trusting(), host="echo.example",
                               data=self.folder / f"data{number}")
            self.assert_answers(outcome, known("127.0.0.1", "::1", "Example Telecom", "IT"),
                                None if number else "TLS, hosts by their names")
            self.assert_says(outcome)
            self.assertLess(outcome.seconds, AT_ONCE_SECONDS)

    def test_a_host_that_does_not_speak_tls(self):
        servers = [self.start(WebServer({}, address=address)) for address in ("127.0.0.1", "::1")]
        url4, url6 = (each.url().replace("http:", "https:") for each in servers)
        outcome = self.state(ipv4_echo=url4, ipv6_echo=url6, geolocation=url4)
        self.assert_answers(outcome, known(), "https to a host without TLS")
        self.assert_says(outcome, NOT_SECURE, *ALL)

    def test_a_version_of_tls_that_is_too_old(self):
        context = self.authority.server_context("old")
        context.minimum_version = ssl.TLSVersion.TLSv1
        context.maximum_version = ssl.TLSVersion.TLSv1_1
        context.set_ciphers("ALL:@SECLEVEL=0")
        self.assert_refused(self.ask(context, *self.trusting()), "TLS 1.1", NOT_SECURE)
