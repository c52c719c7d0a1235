"""Proxies that the environment names: they are used, gone around and told apart from the services."""

import select
import socket

from certificates import Authority
from internet_test import GEOLOCATION, IPV4, IPV6, InternetTest, known
from web_servers import WebServer, a_reset, address_of, answer, provider_of

# Nobody but the proxy finds these.
SERVICES = {"ipv4_echo": "http://ipv4.example/ip4", "ipv6_echo": "http://ipv6.example/ip6",
            "geolocation": "http://geolocation.example:8080/geo"}
SECURE = {name: url.replace("http:", "https:") for name, url in SERVICES.items()}
# What others see of a machine behind a proxy.
OUTSIDE4, OUTSIDE6 = "203.0.113.77", "2001:db8::77"
OUTSIDE = known(OUTSIDE4, OUTSIDE6, "Example Telecom", "IT")
NO_PROXY = "the proxy cannot be reached, or refuses"
ALL = (IPV4, GEOLOCATION, IPV6)
PLAYS = {"/ip4": answer({"ip": OUTSIDE4}), "/ip6": answer({"ip": OUTSIDE6}),
         "/geo": answer({"isp": "Example Telecom", "countryCode": "IT", "as": "",
                         "query": OUTSIDE4})}


class ProxyTest(InternetTest):
    def proxy(self, plays=None):
        """It plays the services itself: what it is asked for are whole URLs."""
        plays = plays or {url: PLAYS["/" + url.rpartition("/")[2]] for url in SERVICES.values()}
        return self.start(WebServer(plays))

    def behind(self, proxy, *arguments, services=None, **variables):
        url = proxy if isinstance(proxy, str) else proxy.url()
        return self.state(*arguments, variables={"http_proxy": url, "https_proxy": url} | variables,
                          **(services or SERVICES))

    def assert_unreachable(self, outcome, situation):
        """Above all, that is not taken for a machine without IPv6."""
        self.assert_answers(outcome, known(), situation)
        self.assert_says(outcome, NO_PROXY, *ALL)


class UsedTest(ProxyTest):
    def test_a_proxy_asks_for_us(self):
        proxy = self.proxy()
        outcome = self.behind(proxy)
        self.assert_answers(outcome, OUTSIDE, "through a proxy")
        self.assert_says(outcome)
        self.assertEqual(sorted(SERVICES.values()), sorted(each.target for each in proxy.visits()))

    def test_the_names_of_hosts_are_left_to_it(self):
        """Nothing is looked up here, where it might take long or be forbidden."""
        self.write_names(servers="nameserver 192.0.2.53\n")
        outcome = self.behind(self.proxy())
        self.assert_answers(outcome, OUTSIDE)
        self.assertLess(outcome.seconds, 4)

    def test_the_one_for_everything(self):
        proxy = self.proxy()
        for name in ("all_proxy", "ALL_PROXY"):
            outcome = self.state(variables={name: proxy.url()}, data=self.folder / name, **SERVICES)
            self.assert_answers(outcome, OUTSIDE)

    def test_without_a_scheme(self):
        proxy = self.proxy()
        outcome = self.behind(f"127.0.0.1:{proxy.port}")
        self.assert_answers(outcome, OUTSIDE)

    def test_http_proxy_in_capitals_is_a_field_of_a_request(self):
        """Whoever runs the program for a web server would have it set by strangers."""
        proxy = self.proxy()
        outcome = self.state(variables={"HTTP_PROXY": proxy.url()}, **SERVICES)
        self.assert_answers(outcome, known())
        self.assertEqual([], proxy.visits())

    def test_a_tunnel(self):
        authority = Authority(self.folder / "authority")
        names = ",".join(f"DNS:{name}.example" for name in ("ipv4", "ipv6", "geolocation"))
        secure = self.start(WebServer(PLAYS, tls=authority.server_context("all", names=names)))

        def tunnel(_, stream):
            stream.sendall(b"HTTP/1.1 200 Connection established\r\n\r\n")
            with socket.create_connection(("127.0.0.1", secure.port), timeout=20) as far:
                relay(stream, far)

        proxy = self.proxy({f"{name}.example:{port}": tunnel for name, port in
                            (("ipv4", 443), ("ipv6", 443), ("geolocation", 8080))})
        outcome = self.behind(proxy, "--ca-file", str(authority.certificate), services=SECURE)
        self.assert_answers(outcome, OUTSIDE, "https through a proxy")
        self.assert_says(outcome)
        self.assertEqual({"CONNECT"}, {each.method for each in proxy.visits()})


class NotUsedTest(ProxyTest):
    def ask(self, no_proxy, name="no_proxy"):
        """The services are here as well: who goes around the proxy learns of another address."""
        server4 = self.start(WebServer({"/ip4": answer(address_of), "/geo": answer(provider_of())}))
        server6 = self.start(WebServer({"/ip6": answer(address_of)}, address="::1"))
        self.write_names("127.0.0.1 here.example\n::1 here6.example\n")
        self.proxy_of_test = self.proxy({"/": a_reset})
        return self.state(ipv4_echo=server4.url("/ip4", "here.example"),
                          ipv6_echo=server6.url("/ip6", "here6.example"),
                          geolocation=server4.url("/geo"), variables={
                              "http_proxy": self.proxy_of_test.url(), name: no_proxy})

    def test_hosts_that_are_asked_directly(self):
        for name in ("no_proxy", "NO_PROXY"):
            for hosts in ("here.example,here6.example,127.0.0.1", ".example 127.0.0.0/8", "*"):
                outcome = self.ask(hosts, name)
                self.assert_answers(outcome, known("127.0.0.1", "::1", "Example Telecom", "IT"))
                self.assertEqual([], self.proxy_of_test.visits())

    def test_all_others_are_not(self):
        outcome = self.ask("ere.example,127.0.0.2,10.0.0.0/8,other.example")
        self.assertEqual(None, outcome.internet["ip"])
        self.assertEqual(3, len(self.proxy_of_test.visits()))

    def test_an_empty_variable_is_none(self):
        server = self.start(WebServer({"/ip4": answer(address_of)}))
        outcome = self.state("--skip-geoip", ipv4_echo=server.url("/ip4"), variables={
            "http_proxy": "", "all_proxy": "", "no_proxy": ""})
        self.assert_answers(outcome, known("127.0.0.1", supports_ipv6=False))


class UnreachableTest(ProxyTest):
    def test_nobody_listens(self):
        self.assert_unreachable(self.behind("http://127.0.0.1:9"), "the proxy refuses")

    def test_no_route(self):
        self.assert_unreachable(self.behind("http://203.0.113.9:3128"), "no route to the proxy")

    def test_a_name_that_is_not_known(self):
        self.assert_unreachable(self.behind("http://proxy.example:3128"), "the proxy is not found")

    def test_nobody_listens_for_https(self):
        outcome = self.behind("http://127.0.0.1:9", services=SECURE)
        self.assert_unreachable(outcome, "https, the proxy refuses")

    def test_a_proxy_that_opens_no_tunnel(self):
        for status in ("403 Forbidden", "407 Proxy Authentication Required", "502 Bad Gateway"):
            refusal = answer("no", status=status)
            proxy = self.proxy({f"{name}.example:{port}": refusal for name, port in
                                (("ipv4", 443), ("ipv6", 443), ("geolocation", 8080))})
            outcome = self.behind(proxy, services=SECURE)
            self.assert_unreachable(outcome, f"https, the proxy says {status[:3]}")

    def test_a_proxy_that_hangs_up(self):
        outcome = self.behind(self.proxy({url: a_reset for url in SERVICES.values()}))
        self.assert_answers(outcome, known(), "the proxy resets")
        self.assert_says(outcome, "the connection was lost", *ALL)

    def test_variables_that_are_no_proxy(self):
        for text in ("http://", "://", "ftp://127.0.0.1:21", "http://[::1", "\x1b[31m", "a b",
                     "http://127.0.0.1:99999", "x" * 100_000):
            outcome = self.behind(text)
            self.assertEqual(0, outcome.status, outcome.errors)
            self.assertEqual((None, None), (outcome.internet["ip"], outcome.internet["ipv6"]))
            self.assertIsNone(outcome.internet["supportsIPv6"], text[:30])
            self.assertEqual(1, len(outcome.errors.splitlines()), outcome.errors)
            self.assertNotIn("\x1b", outcome.errors)


def relay(one, other):
    """Bytes in both directions until one side ends."""
    while True:
        for ready in select.select([one, other], [], [], 20)[0] or [None]:
            data = ready.recv(65536) if ready else b""
            if not data:
                return
            (other if ready is one else one).sendall(data)
