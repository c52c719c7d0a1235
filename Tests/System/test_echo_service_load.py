"""The echo service under clients that are many, slow, broken or hostile: it goes on answering, and
holds no more memory and no more descriptors afterwards."""

import errno
import os
import random
import resource
import select
import socket
import struct
import time

from echo_service import Answer, EchoService, ask, read_answer, read_to_end, request
from namespaces import NamespaceTest

# Of the program as it is: a header's time, and what a busy machine may add to it.
HEADER_SECONDS = 10
SLACK_SECONDS = 20
CONNECTIONS = 512
LONGEST_REQUEST = 8192


class LoadTest(NamespaceTest):
    def start(self, *arguments, **options):
        self.service = EchoService(*arguments, **options)
        self.addCleanup(self.service.__exit__)
        # Once through everything, so that what is made at first use is there.
        for path in ("/lanternfold/ip.php", "/json/"):
            ask(self.service, path)
        self.descriptors = self.wait_for_descriptors(None)
        self.threads = self.service.threads()
        return self.service

    def wait_for_descriptors(self, expected):
        """The number, once it has come to what is expected or stays the same."""
        deadline = time.monotonic() + SLACK_SECONDS
        last = None
        while time.monotonic() < deadline:
            now = self.service.descriptors()
            if now == expected or (expected is None and now == last):
                return now
            last = now
            time.sleep(0.3)
        return self.service.descriptors()

    def assert_unharmed(self):
        """It answers at once, keeps nothing of what was, and ends in order."""
        answer = ask(self.service)
        self.assertEqual((200, {"ip": "127.0.0.1"}), (answer.status, answer.json()))
        self.assertEqual(self.descriptors, self.wait_for_descriptors(self.descriptors))
        self.assertEqual(self.threads, self.service.threads())
        self.assertEqual((0, ""), self.service.finish())

    def cpu_seconds(self):
        with open(f"/proc/{self.service.process.pid}/stat") as stat:
            fields = stat.read().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


class ManyClientsTest(LoadTest):
    def test_10000_connections_in_sequence(self):
        service = self.start()
        begin = time.monotonic()
        for number in range(10_000):
            with service.connect() as connection:
                connection.sendall(request("/lanternfold/ip.php", "Connection: close"))
                self.assertTrue(read_to_end(connection).endswith(b'{"ip":"127.0.0.1"}'))
            if number == 1_000:
                memory = service.resident_kilobytes()
        self.assertLess(time.monotonic() - begin, 120)
        self.assertLess(service.resident_kilobytes() - memory, 1024)
        self.assert_unharmed()

    def test_200_clients_at_once(self):
        service = self.start()
        begin = time.monotonic()
        connections = [service.connect() for _ in range(200)]
        for _ in range(20):
            for connection in connections:
                connection.sendall(request())
            for connection in connections:
                self.assertEqual({"ip": "127.0.0.1"}, read_answer(connection).json())
        self.assertLess(time.monotonic() - begin, 60)
        for connection in connections:
            connection.close()
        self.assert_unharmed()

    def test_more_clients_than_it_takes_are_told_so(self):
        service = self.start("--connections", "50")
        connections = [service.connect() for _ in range(50)]
        for connection in connections:
            connection.sendall(request())
            self.assertEqual(200, read_answer(connection).status)
        answer = ask(service)
        self.assertEqual((503, "1", "close"), (answer.status, answer.fields["retry-after"],
                                               answer.fields["connection"]))
        # Those that came first are served as before, and the next one when one of them has gone.
        connections[0].sendall(request())
        self.assertEqual(200, read_answer(connections[0]).status)
        connections.pop().close()
        self.assert_answered_soon()
        for connection in connections:
            connection.close()
        self.assert_unharmed()

    def assert_answered_soon(self):
        deadline = time.monotonic() + SLACK_SECONDS
        while ask(self.service).status != 200:
            self.assertLess(time.monotonic(), deadline, "no room came back")
            time.sleep(0.05)

    def test_a_crowd_that_comes_at_once_and_says_nothing(self):
        service = self.start()
        crowd = []
        for _ in range(CONNECTIONS + 200):
            connection = socket.socket()
            connection.setblocking(False)
            connection.connect_ex(service.addresses[0])
            crowd.append(connection)
        time.sleep(1)
        self.assertLessEqual(service.descriptors(), self.descriptors + CONNECTIONS + 64)
        for connection in crowd:
            connection.close()
        self.assert_answered_soon()
        self.assert_unharmed()

    def test_out_of_descriptors(self):
        """It waits for one without turning in circles, and goes on when there are some."""
        service = self.start("--connections", "1000", preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_NOFILE, (40, 40)))
        crowd = [service.connect() for _ in range(60)]
        time.sleep(0.5)
        begin = self.cpu_seconds()
        time.sleep(2)
        self.assertLess(self.cpu_seconds() - begin, 0.5)
        for connection in crowd:
            connection.close()
        self.assert_unharmed()


class BrokenClientsTest(LoadTest):
    def test_slow_clients_get_their_time_and_delay_nobody(self):
        service = self.start()
        begin = time.monotonic()
        slow = {service.connect(): 0 for _ in range(100)}
        data = request("/lanternfold/ip.php", "X-Padding: " + "x" * 200)
        ended = {}
        while slow and time.monotonic() - begin < HEADER_SECONDS + SLACK_SECONDS:
            for connection in select.select(list(slow), [], [], 0)[0]:
                ended[connection] = (time.monotonic() - begin, read_to_end(connection))
                del slow[connection]
            for connection in slow:
                connection.send(data[slow[connection]:slow[connection] + 1])
                slow[connection] += 1
            asked = time.monotonic()
            self.assertEqual(200, ask(service).status)
            self.assertLess(time.monotonic() - asked, 2)
            time.sleep(0.5)
        self.assertEqual(100, len(ended))
        for connection, (seconds, answer) in ended.items():
            self.assertEqual(408, Answer(answer).status)
            self.assertGreater(seconds, HEADER_SECONDS - 0.5)
            connection.close()
        self.assert_unharmed()

    def test_clients_that_vanish(self):
        service = self.start()
        reset = struct.pack("ii", 1, 0)
        data = request()
        for number in range(2_000):
            connection = service.connect()
            connection.sendall(data[:number % (len(data) + 1)])
            if number % 2:
                connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, reset)
            connection.close()
        self.assert_unharmed()

    def test_clients_that_read_nothing(self):
        service = self.start()
        deaf = []
        for _ in range(20):
            connection = service.connect()
            connection.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 2048)
            connection.setblocking(False)
            try:
                for _ in range(10_000):
                    connection.send(request() * 50)
            except OSError:
                deaf.append(connection)
        self.assertEqual(200, ask(service).status)
        for connection in deaf:
            connection.close()
        self.assert_unharmed()

    def test_garbage(self):
        """Whatever comes, the answer is a refusal or nothing, and it comes in time."""
        service = self.start()
        seed = random.randrange(1 << 32)
        generator = random.Random(seed)
        usual = request("/json/", "X-Forwarded-For: 198.51.100.7", "Connection: close")
        for number in range(1_500):
            if number % 3 == 0:
                data = generator.randbytes(generator.randrange(1, 3_000))
            else:
                data = bytearray(usual)
                for _ in range(generator.randrange(1, 6)):
                    data[generator.randrange(len(data))] = generator.randrange(256)
            with service.connect() as connection:
                try:
                    connection.sendall(bytes(data))
                    connection.shutdown(socket.SHUT_WR)
                    answer = read_to_end(connection)
                except OSError as error:
                    self.assertIn(error.errno, (errno.ECONNRESET, errno.EPIPE, errno.ENOTCONN))
                    continue
            if answer:
                self.assertIn(Answer(answer).status,
                              {200, 400, 404, 405, 411, 413, 414, 417, 431, 501, 505},
                              f"seed {seed}, {number}: {bytes(data)!r}")
        self.assert_unharmed()

    def test_header_floods(self):
        """More header than it takes is refused with what has come by then, not with all of it."""
        service = self.start()
        memory = service.resident_kilobytes()
        for begin, part, status in ((b"", b"a" * 65536, 414),
                                    (b"GET /", b"a" * 65536, 414),
                                    (b"GET / HTTP/1.1\r\nHost: a\r\n", b"A: b\r\n" * 10_000, 431),
                                    (b"GET / HTTP/1.1\r\nHost: a\r\nA: ", b"b" * 65536, 431)):
            statuses = {self.flooded(begin, part) for _ in range(10)}
            self.assertEqual({status}, statuses - {None})
        self.assertLess(service.resident_kilobytes() - memory, 4096)
        self.assert_unharmed()

    def flooded(self, begin, part):
        """The status of the answer; None when it was lost with the connection."""
        with self.service.connect() as connection:
            sent = 0
            try:
                connection.sendall(begin)
                while sent < 50_000_000:
                    sent += connection.send(part)
                self.fail("it took 50 MB of header")
            except (ConnectionResetError, BrokenPipeError):
                pass
            data = b""
            try:
                while chunk := connection.recv(65536):
                    data += chunk
            except ConnectionResetError:
                pass
        return Answer(data).status if data else None

    def test_the_longest_header_is_answered_and_one_byte_more_is_not(self):
        service = self.start()
        fixed = len(request("/json/", "Connection: close", "A: "))
        for size, status in ((LONGEST_REQUEST, 200), (LONGEST_REQUEST + 1, 431)):
            answer = ask(service, "/json/", "A: " + "b" * (size - fixed))
            self.assertEqual(status, answer.status)
        self.assert_unharmed()

    def test_many_requests_at_once_over_one_connection(self):
        """They are answered in their order, as many as a connection has, and no more."""
        service = self.start()
        with service.connect() as connection:
            connection.sendall(request() * 1_000)
            data = read_to_end(connection)
        self.assertEqual(100, data.count(b"HTTP/1.1 200 OK"))
        self.assertEqual(1, data.count(b"Connection: close"))
        self.assert_unharmed()
