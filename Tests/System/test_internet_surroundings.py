"""Whoever asks for the public side has few descriptors, no environment, no privileges, no patience;
and whoever does not ask for it asks nobody."""

import os
import resource
import signal
import subprocess
import time

from internet_test import InternetTest, environment, known
from program import AS_NOBODY, PROGRAM, install, run
from web_servers import WebServer, address_of, answer, provider_of, silence

ORDINARY = known("127.0.0.1", isp="Example Telecom", country="IT", supports_ipv6=False)


class SurroundingsTest(InternetTest):
    def setUp(self):
        super().setUp()
        self.server = self.start(WebServer({"/ip": answer(address_of), "/silent": silence,
                                            "/geo": answer(provider_of())}))

    def ask(self, path="/ip", **options):
        self.write_names("127.0.0.1 here.example\n")
        return self.state(ipv4_echo=self.server.url(path, "here.example"),
                          geolocation=self.server.url("/geo", "here.example"), **options)

    def test_nobody_is_asked_unless_the_category_is(self):
        url = self.server.url("/ip")
        services = ("--ipv4-echo", url, "--ipv6-echo", url, "--geolocation", url, "--sentinel", url,
                    "--data-dir", str(self.data))
        picture = str(self.folder / "picture.png")
        for command in (("state",), ("state", "--json"), ("state", "--categories", "other"),
                        ("interfaces",), ("record", "--once"),
                        ("render", "NetworkAdapterWidget", "-o", picture)):
            done = run(*command, *services, env=environment())
            self.assertEqual(0, done.returncode, done.stderr)
        self.assertEqual([], self.server.visits())

    def test_few_file_descriptors(self):
        for limit in range(4, 64, 3):
            outcome = self.ask(data=self.folder / f"data{limit}", preexec_fn=lambda limit=limit:
                               resource.setrlimit(resource.RLIMIT_NOFILE, (limit, limit)))
            if outcome.status == 0:
                self.assert_answers(outcome, ORDINARY)
            else:
                self.assertIn(outcome.status, (1, 127), outcome.errors)
                self.assertEqual(1, len(outcome.errors.splitlines()), outcome.errors)
        self.assertEqual(0, outcome.status)

    def test_no_environment_at_all(self):
        self.assert_answers(self.ask(env={}), ORDINARY)

    def test_a_user_without_any_privilege(self):
        self.data.mkdir()
        os.chown(self.data, AS_NOBODY["user"], AS_NOBODY["group"])
        self.data.chmod(0o700)
        outcome = self.ask(program=install(self.folder), **AS_NOBODY)
        self.assert_answers(outcome, ORDINARY)
        self.assert_says(outcome)

    def test_standard_output_that_takes_nothing(self):
        with open("/dev/full", "wb") as full:
            done = run("state", "--categories", "internet", "--json", "--ipv4-echo",
                       self.server.url("/ip"), "--ipv6-echo", "http://[::1]:9", "--geolocation",
                       self.server.url("/geo"), "--data-dir", str(self.data), stdout=full,
                       stderr=subprocess.PIPE, env=environment())
        self.assertEqual((1, 1), (done.returncode, len(done.stderr.splitlines())), done.stderr)

    def test_a_signal_ends_it_in_the_middle_of_a_request(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            before = len(self.server.visits())
            process = subprocess.Popen(
                [PROGRAM, "state", "--categories", "internet", "--ipv4-echo",
                 self.server.url("/silent"), "--ipv6-echo", "http://[::1]:9", "--geolocation",
                 self.server.url("/silent"), "--data-dir", str(self.data)],
                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                env=environment())
            self.addCleanup(process.communicate)
            self.addCleanup(process.kill)
            deadline = time.monotonic() + 10
            while not [each for each in self.server.visits()[before:] if each.asked]:
                self.assertLess(time.monotonic(), deadline, "nobody was asked")
                time.sleep(0.01)
            process.send_signal(number)
            # The request would have gone on for 5 s, and the next one as long.
            process.wait(timeout=4)
