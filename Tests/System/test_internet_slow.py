"""Services that take their time: nobody waits longer than the limits, and nobody for another."""

from concurrent.futures import ThreadPoolExecutor

from far_network import SILENT4, FarNetwork, give_ipv4
from internet_test import GEOLOCATION, IPV4, IPV6, InternetTest, known
from web_servers import WebServer, a_byte_a_second, address_of, answer, provider_of, silence

# Of an ordinary program: the longest silence, and the longest exchange.
SILENCE_SECONDS, EXCHANGE_SECONDS = 5, 10
TIMED_OUT = "the request timed out"
BODY = b'{"ip":"127.0.0.1","isp":"a","countryCode":"IT","as":"","query":"127.0.0.1"}'
HEAD = b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n" % len(BODY)
PATIENCE = known(supports_ipv6=False)


class SlowTest(InternetTest):
    def servers(self, **plays):
        """One for each kind of address; a play is that of the path of its name."""
        plays = {f"/{name}": play for name, play in plays.items()}
        return [self.start(WebServer(plays, address=address)) for address in ("127.0.0.1", "::1")]


class LimitsTest(SlowTest):
    """What waits, waits side by side: each situation is a command of its own, and all run at once."""

    SITUATIONS = {
        # name: what it is, its play, the least and the most seconds of one request
        "silent": ("accepted and never answered", silence, SILENCE_SECONDS, SILENCE_SECONDS),
        "trickle": ("a byte of the answer a second", a_byte_a_second(HEAD + BODY),
                    EXCHANGE_SECONDS, EXCHANGE_SECONDS),
        "late": ("an answer behind the limit", answer(BODY, after_seconds=SILENCE_SECONDS + 3),
                 SILENCE_SECONDS, SILENCE_SECONDS),
    }

    def ask(self, name):
        server4, server6 = self.running
        return self.state(ipv4_echo=server4.url(f"/{name}"), ipv6_echo=server6.url(f"/{name}"),
                          geolocation=server4.url(f"/{name}"), data=self.folder / name)

    def ask_one(self, name, service):
        """One service is silent and the others are quick."""
        urls = {"ipv4_echo": self.running[0].url("/ip"), "ipv6_echo": self.running[1].url("/ip"),
                "geolocation": self.running[0].url("/geo")}
        urls[service] = urls[service].rpartition("/")[0] + "/silent"
        return self.state(data=self.folder / name, **urls)

    def ask_through(self, name, proxy, scheme):
        """Through a proxy that is slow itself."""
        return self.state(ipv4_echo=f"{scheme}://ipv4.example/", data=self.folder / name,
                          ipv6_echo=f"{scheme}://ipv6.example/", variables={"all_proxy": proxy},
                          geolocation=f"{scheme}://geolocation.example/")

    def test_every_request_ends_within_its_limits(self):
        self.running = self.servers(ip=answer(address_of), geo=answer(provider_of()), **{
            name: play for name, (_, play, _, _) in self.SITUATIONS.items()})
        self.addCleanup(FarNetwork().__exit__)
        give_ipv4()
        tunnels = self.start(WebServer({f"{name}.example:443": silence
                                        for name in ("ipv4", "ipv6", "geolocation")}))
        with ThreadPoolExecutor(max_workers=8) as pool:
            outcomes = {name: pool.submit(self.ask, name) for name in self.SITUATIONS}
            silent4 = pool.submit(self.ask_one, "silent 4", "ipv4_echo")
            silent6 = pool.submit(self.ask_one, "silent 6", "ipv6_echo")
            far_proxy = pool.submit(self.ask_through, "far", f"http://{SILENT4}:3128", "http")
            silent_proxy = pool.submit(self.ask_through, "near", tunnels.url(), "https")
        for name, (situation, _, least, most) in self.SITUATIONS.items():
            with self.subTest(situation):
                outcome = outcomes[name].result()
                self.assert_answers(outcome, PATIENCE, situation)
                self.assert_says(outcome, TIMED_OUT, IPV4, GEOLOCATION)
                # The geolocation service is asked behind the address.
                self.assert_took(outcome, 2 * least - 0.5, 2 * most)
        with self.subTest("the IPv4 service alone is silent"):
            outcome = silent4.result()
            self.assert_answers(outcome, known("127.0.0.1", "::1", "Example Telecom", "IT"),
                                "the IPv4 service alone is silent")
            self.assert_took(outcome, SILENCE_SECONDS - 0.5, SILENCE_SECONDS)
        with self.subTest("the IPv6 service alone is silent"):
            outcome = silent6.result()
            self.assert_answers(outcome, known("127.0.0.1", None, "Example Telecom", "IT", False),
                                "the IPv6 service alone is silent")
            self.assert_says(outcome)
            self.assert_took(outcome, SILENCE_SECONDS - 0.5, SILENCE_SECONDS)
        for situation, asked in (("packets to the proxy are swallowed", far_proxy),
                                 ("https, the proxy never opens its tunnel", silent_proxy)):
            with self.subTest(situation):
                outcome = asked.result()
                self.assert_answers(outcome, known(), situation)
                self.assert_says(outcome, "the proxy cannot be reached, or refuses", IPV4, GEOLOCATION, IPV6)
                self.assert_took(outcome, 2 * SILENCE_SECONDS - 0.5, 2 * SILENCE_SECONDS)


class SideBySideTest(SlowTest):
    def test_all_services_slow_take_as_long_as_the_longest_chain(self):
        delay = 3
        server4, server6 = self.servers(ip=answer(address_of, after_seconds=delay),
                                        geo=answer(provider_of(), after_seconds=delay))
        outcome = self.state(ipv4_echo=server4.url("/ip"), ipv6_echo=server6.url("/ip"),
                             geolocation=server4.url("/geo"))
        self.assert_answers(outcome, known("127.0.0.1", "::1", "Example Telecom", "IT"),
                            f"every service answers after {delay} s")
        self.assert_says(outcome)
        (ipv4,), (ipv6,) = (each.finished_visits("/ip", 1) for each in (server4, server6))
        (geolocation,) = server4.finished_visits("/geo", 1)
        self.assertTrue(ipv6.overlaps(ipv4))
        self.assertGreaterEqual(geolocation.began, ipv4.asked + delay)
        # One after the other, the IPv6 request would have waited for another one's end.
        self.assertLess(ipv6.asked, ipv4.asked + delay)
        self.assertGreaterEqual(outcome.seconds, 2 * delay)

    def test_the_slower_of_two_chains_decides(self):
        server4, server6 = self.servers(ip=answer(address_of, after_seconds=0),
                                        geo=answer(provider_of()),
                                        slow=answer(address_of, after_seconds=4))
        outcome = self.state(ipv4_echo=server4.url("/ip"), ipv6_echo=server6.url("/slow"),
                             geolocation=server4.url("/geo"))
        self.assert_answers(outcome, known("127.0.0.1", "::1", "Example Telecom", "IT"),
                            "IPv6 answers after 4 s, the others at once")
        (geolocation,) = server4.finished_visits("/geo", 1)
        (ipv6,) = server6.finished_visits("/slow", 1)
        self.assertTrue(ipv6.overlaps(geolocation))
