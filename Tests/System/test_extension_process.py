"""The widget extension as a process: what it writes where, and when it ends."""

import os
import signal
import socket
import subprocess
import tempfile
import time

from extension import PROGRAM
from watched_process import HANG_SECONDS
from extension_client import RawHost
from extension_test import ADAPTER, INTERNET, ExtensionTest
from internet_test import environment
from web_servers import WebServer, silence

# Without a request for so long the extension ends.
PATIENCE_SECONDS = 30
TIMELINE = {"kind": INTERNET, "family": "medium"}
SERVICES_FAIL = r"\ANot every service has answered: [^\n]+\n\Z"


def timeline(identifier, kind=INTERNET):
    return {"id": identifier, "method": "widget/timeline",
            "params": {"kind": kind, "family": "medium"}}


class OutputTest(ExtensionTest):
    def test_standard_output_holds_only_lines_of_diagnostics(self):
        """A line for each timeline whose services have failed, and nothing of the conversation."""
        host = self.host()
        for _ in range(2):
            self.entry_of(host.ask("widget/timeline", **TIMELINE))
        host.ask("widget/timeline", kind=ADAPTER, family="medium")
        for line in host.extension.wait_for_diagnostics(2):
            self.assertRegex(line, SERVICES_FAIL)
        self.assertEqual(0, host.extension.finish())
        self.assertEqual((2, []), (len(host.extension.diagnostics), host.extension.errors))

    def test_nothing_at_all_when_nothing_fails(self):
        host = self.host(services=self.start_services())
        self.entry_of(host.ask("widget/timeline", **TIMELINE))
        self.assertEqual(0, host.extension.finish())
        self.assertEqual(([], []), (host.extension.diagnostics, host.extension.errors))

    def test_a_socket_that_is_standard_output_too_holds_answers_alone(self):
        near, far = socket.socketpair()
        with far:
            process = subprocess.Popen([PROGRAM, "--service-fd", "0", *self.options()], stdin=far,
                                       stdout=far, stderr=subprocess.PIPE, env=environment())
        self.addCleanup(self.end, process)
        with near:
            host = RawHost(near)
            for identifier in range(3):
                host.send_messages(timeline(identifier))
                self.entry_of(host.receive()["result"])
            near.shutdown(socket.SHUT_WR)
            self.assertIsNone(host.receive())
        errors = process.communicate(timeout=HANG_SECONDS)[1].decode()
        self.assertEqual((0, 3), (process.returncode, len(errors.splitlines())), errors)
        for line in errors.splitlines(keepends=True):
            self.assertRegex(line, SERVICES_FAIL)

    def test_a_host_that_never_reads_the_diagnostics(self):
        """More lines than a pipe holds are lost, not waited for."""
        host = self.host(reads_output=False)
        for _ in range(15):
            pending = host.begin_all("widget/timeline", [TIMELINE] * 40)
            for result in host.answers(pending):
                self.entry_of(result)
        self.assertEqual(5, len(host.ask("widgets/list")["widgets"]))
        self.assertEqual(0, host.extension.finish())
        lines = host.extension.process.stdout.read().decode().splitlines(keepends=True)
        self.assertLess(len(lines), 600)
        for line in lines:
            self.assertRegex(line, SERVICES_FAIL)

    def test_a_host_that_has_closed_the_diagnostics(self):
        host = self.host(reads_output=False)
        host.extension.process.stdout.close()
        for _ in range(3):
            self.entry_of(host.ask("widget/timeline", **TIMELINE))
        self.assertEqual(0, host.extension.finish())

    @staticmethod
    def end(process):
        if process.poll() is None:
            process.kill()
            process.communicate(timeout=HANG_SECONDS)


class EndTest(ExtensionTest):
    def silent_services(self):
        server = self.start(WebServer({"/lanternfold/ip.php": silence, "/json/": silence}))
        return server, dict.fromkeys(("ipv4_echo", "geolocation"), server.url())

    def wait_for_visit(self, server):
        deadline = time.monotonic() + HANG_SECONDS
        while not server.visits("/lanternfold/ip.php"):
            self.assertLess(time.monotonic(), deadline, "nobody has asked the service")
            time.sleep(0.01)

    def assert_silent_end(self, extension):
        self.assertEqual(0, extension.wait())
        self.assertEqual([], extension.errors)

    def test_the_host_goes(self):
        host = self.raw_host()
        host.ask("widgets/list")
        host.extension.socket.close()
        self.assert_silent_end(host.extension)

    def test_the_host_goes_without_a_word(self):
        host = self.raw_host()
        host.extension.socket.close()
        self.assert_silent_end(host.extension)

    def test_the_host_goes_amid_requests_that_a_service_keeps_waiting(self):
        """The service's connections end with the process, long before anybody's patience."""
        server, services = self.silent_services()
        host = self.raw_host(services=services)
        host.send_messages(*map(timeline, range(20)))
        self.wait_for_visit(server)
        host.extension.socket.close()
        self.assert_silent_end(host.extension)
        self.assertEqual([], host.extension.diagnostics)

    def test_a_host_that_has_said_all_is_answered_before_the_end(self):
        host = self.raw_host(services=self.start_services())
        host.send_messages(*map(timeline, range(20)), timeline("adapter", ADAPTER))
        host.extension.socket.shutdown(socket.SHUT_WR)
        answered = []
        while (message := host.receive()) is not None:
            self.entry_of(message["result"])
            answered.append(message["id"])
        self.assertEqual([*map(str, range(20)), "adapter"], sorted(map(str, answered), key=order))
        self.assert_silent_end(host.extension)

    def test_a_host_that_has_said_all_and_cancelled_it(self):
        server, services = self.silent_services()
        host = self.raw_host(services=services)
        host.send_messages(timeline(1), {"method": "$/cancel", "params": {"id": 1}})
        host.extension.socket.shutdown(socket.SHUT_WR)
        self.assertIsNone(host.receive())
        self.assert_silent_end(host.extension)

    def test_half_a_minute_without_a_request(self):
        host = self.raw_host()
        stuck = self.raw_host()
        stuck.extension.socket.settimeout(1)
        with self.assertRaises(TimeoutError):
            stuck.send_messages(*20_000 * [{"id": 1, "method": "widget/placeholder",
                                            "params": {"kind": ADAPTER, "family": "medium"}}])
        begin = time.monotonic()
        host.ask("widgets/list")
        time.sleep(2)
        # Neither is a request.
        host.send_messages({"method": "location/changed", "params": {"status": 3}})
        host.send(b"\n")
        self.assertIsNone(host.receive(2 * PATIENCE_SECONDS))
        self.assertGreater(time.monotonic() - begin, PATIENCE_SECONDS - 0.5)
        self.assert_silent_end(host.extension)
        # Whoever reads nothing is not waited for, either.
        self.assert_silent_end(stuck.extension)

    def test_the_system_asks_it_to_end(self):
        for number in (signal.SIGTERM, signal.SIGINT):
            server, services = self.silent_services()
            host = self.raw_host(services=services)
            host.send_messages(timeline(1))
            self.wait_for_visit(server)
            self.assertEqual(0, host.extension.finish(number))
            self.assertEqual(([], []), (host.extension.diagnostics, host.extension.errors))


def order(identifier):
    return (not identifier.isdigit(), int(identifier) if identifier.isdigit() else 0)


class DescriptorTest(ExtensionTest):
    def assert_refused(self, status, *arguments, **options):
        done = subprocess.run([PROGRAM, *arguments, *self.options()],
                              **{"stdin": subprocess.DEVNULL, "capture_output": True,
                                 "timeout": HANG_SECONDS} | options)
        self.assertEqual((status, b""), (done.returncode, done.stdout), done.stderr)
        self.assertRegex(done.stderr, rb"\Alanternfold-widget-extension: [^\n]+\n\Z")

    def test_what_is_no_number_of_a_descriptor(self):
        for text in ("", "socket", "-1", "3x", " 3", "1", "2", "1e3", "99999999999999999999"):
            self.assert_refused(2, f"--service-fd={text}")
        self.assert_refused(2)
        self.assert_refused(2, "--service-fd")

    def test_a_descriptor_that_is_closed(self):
        self.assert_refused(1, "--service-fd", "77")
        self.assert_refused(1, "--service-fd", "2147483647")

    def test_a_descriptor_that_is_no_stream_socket(self):
        datagrams = socket.socketpair(type=socket.SOCK_DGRAM)
        packets = socket.socketpair(type=socket.SOCK_SEQPACKET)
        pipe = [os.fdopen(each) for each in os.pipe()]
        with tempfile.TemporaryFile() as file:
            for each in (datagrams[0], packets[0], pipe[0], file):
                number = each.fileno()
                self.assert_refused(1, "--service-fd", str(number), pass_fds=[number])
        for each in (*datagrams, *packets, *pipe):
            each.close()
        self.assert_refused(1, "--service-fd", "0")

    def test_help_and_version(self):
        for option in ("--help", "--version"):
            done = subprocess.run([PROGRAM, option], stdin=subprocess.DEVNULL, capture_output=True,
                                  timeout=HANG_SECONDS)
            self.assertEqual((0, b""), (done.returncode, done.stderr))
            self.assertIn(b"lanternfold-widget-extension", done.stdout)
