"""`net send` with real peers: what answers, what does not, and what fails on the way."""

import base64
import json
import os
import signal
import socket
import subprocess
import tempfile
import threading
import time
from pathlib import Path

from far_network import SERVICE4, FarNetwork, give_ipv4
from host_names import write_names
from message_peers import (HANG_SECONDS, Peer, close_without_data, echo_datagram, echo_once,
                           echo_until_whole, reset, stay_silent)
from namespaces import NamespaceTest, ip
from program import PROGRAM, run
from watched_process import WatchedProcess


class SendTest(NamespaceTest):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory(prefix="lanternfold send ")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        write_names(self, self.folder, hosts="127.0.0.1 four.example\n::1 six.example\n")

    def peer(self, act, *arguments, **options):
        peer = Peer(act, *arguments, **options)
        self.addCleanup(peer.__exit__)
        return peer.port

    def send(self, transport, host, port, *arguments, **options):
        return run("net", "send", f"--{transport}", host, port, *arguments, **options)

    def reply(self, transport, port, *arguments, host="127.0.0.1", **options):
        """The bytes of the reply, and who sent it."""
        done = self.send(transport, host, port, "--json", *arguments, **options)
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        answer = json.loads(done.stdout)
        self.assertEqual(["data", "text", "from"], list(answer))
        return base64.b64decode(answer["data"]), answer["from"]

    def assert_fails(self, text, done, status=1):
        self.assertEqual((status, b""), (done.returncode, done.stdout))
        self.assertEqual(1, done.stderr.count(b"\n"), done.stderr)
        self.assertIn(text, done.stderr.decode())


class StreamTest(SendTest):
    def test_an_echo(self):
        port = self.peer(echo_once)
        done = self.send("tcp", "127.0.0.1", port, "--text", "hello")
        self.assertEqual(f"From 127.0.0.1:{port}, 5 bytes:\nhello\n", done.stdout.decode())

    def test_an_echo_over_ipv6_and_by_name(self):
        for host in ("::1", "[::1]", "six.example"):
            port = self.peer(echo_once, address="::1")
            self.assertEqual((b"hello", f"[::1]:{port}"),
                             self.reply("tcp", port, "--text", "hello", host=host))
        port = self.peer(echo_once)
        self.assertEqual((b"hello", f"127.0.0.1:{port}"),
                         self.reply("tcp", port, "--text", "hello", host="four.example"))

    def test_a_silent_peer(self):
        done = self.send("tcp", "127.0.0.1", self.peer(stay_silent), "--text", "a",
                         "--timeout", "0.3")
        self.assert_fails("did not reply within 0.3 s", done)

    def test_a_peer_that_answers_and_stays_open(self):
        def act(connection):
            echo_once(connection)
            connection.recv(65536)
        done = self.send("tcp", "127.0.0.1", self.peer(act), "--text", "a", "--timeout", "0.3")
        self.assert_fails("or did not end its reply", done)

    def test_a_peer_that_closes_without_data(self):
        done = self.send("tcp", "127.0.0.1", self.peer(close_without_data), "--text", "a")
        self.assert_fails("replied without data", done)

    def test_a_peer_that_resets(self):
        done = self.send("tcp", "127.0.0.1", self.peer(reset), "--text", "a")
        self.assert_fails("Connection reset by peer", done)

    def test_nobody_listens(self):
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            port = str(free.getsockname()[1])
            self.assert_fails("refuses: nobody listens there",
                              self.send("tcp", "127.0.0.1", port, "--text", "a"))

    def test_an_unreachable_network(self):
        for transport in ("tcp", "udp"):
            done = self.send(transport, "203.0.113.1", "7", "--text", "a", "--timeout", "20")
            self.assert_fails("Network is unreachable", done)

    def test_a_reply_in_many_segments(self):
        parts = [f"part {number}\n".encode() * 100 for number in range(30)]

        def act(connection):
            connection.recv(65536)
            connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            for part in parts:
                connection.sendall(part)
                time.sleep(0.005)
        self.assertEqual(b"".join(parts), self.reply("tcp", self.peer(act), "--text", "a")[0])

    def test_a_large_message_and_reply(self):
        message = bytes(range(256)) * 4096
        file = self.folder / "message"
        file.write_bytes(message)
        port = self.peer(echo_until_whole(len(message)))
        self.assertEqual(message, self.reply("tcp", port, "--file", str(file))[0])

    def test_a_reply_that_does_not_end(self):
        def act(connection):
            while True:
                connection.sendall(b"x" * 65536)
        done = self.send("tcp", "127.0.0.1", self.peer(act), "--text", "a")
        self.assert_fails("is longer than 16 MiB", done)

    def test_a_reply_after_the_time_limit(self):
        def act(connection):
            connection.recv(65536)
            time.sleep(1)
            connection.sendall(b"late")
        done = self.send("tcp", "127.0.0.1", self.peer(act), "--text", "a", "--timeout", "0.2")
        self.assert_fails("did not reply within 0.2 s", done)

    def test_a_host_that_vanishes(self):
        """The connection is half open: the cable is pulled once it stands."""
        far = FarNetwork()
        self.addCleanup(far.__exit__)
        give_ipv4()

        over = threading.Event()

        def act(connection):
            connection.recv(65536)
            ip("link set far0 down")
            over.wait(HANG_SECONDS)
        with far.inside():
            port = self.peer(act, address=SERVICE4)
        done = self.send("tcp", SERVICE4, port, "--text", "a", "--timeout", "1")
        over.set()
        self.assert_fails("did not reply within 1 s", done)

    def test_an_interruption_cancels_at_once(self):
        asked = threading.Event()

        def act(connection):
            connection.recv(65536)
            asked.set()
            connection.recv(65536)
        for number in (signal.SIGINT, signal.SIGTERM):
            asked.clear()
            port = self.peer(act)
            with WatchedProcess([PROGRAM, "net", "send", "--tcp", "127.0.0.1", port, "--text",
                                 "a"]) as process:
                self.assertTrue(asked.wait(HANG_SECONDS))
                self.assertEqual(1, process.finish(number))
                self.assertEqual(1, len(process.errors))
                self.assertIn("was cancelled", process.errors[0])
                self.assertEqual([], process.lines)

    def test_an_interruption_while_a_name_is_looked_up(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as silent:
            silent.bind(("127.0.0.1", 53))
            silent.settimeout(HANG_SECONDS)
            write_names(self, self.folder,
                        servers="nameserver 127.0.0.1\noptions timeout:30 attempts:5\n")
            with WatchedProcess([PROGRAM, "net", "send", "--tcp", "far.example", "7", "--text",
                                 "a"]) as process:
                silent.recv(512)  # it has asked
                self.assertEqual(1, process.finish(signal.SIGINT))
                self.assertIn("was cancelled", process.errors[0])

    def test_a_host_whose_first_address_refuses(self):
        write_names(self, self.folder, hosts="::1 both.example\n127.0.0.1 both.example\n")
        port = self.peer(echo_once)
        self.assertEqual((b"hello", f"127.0.0.1:{port}"),
                         self.reply("tcp", port, "--text", "hello", host="both.example"))

    def test_a_name_that_nobody_has(self):
        done = self.send("tcp", "nowhere.example", "7", "--text", "a")
        self.assert_fails('cannot find the host "nowhere.example"', done)


class DatagramTest(SendTest):
    def test_an_echo(self):
        port = self.peer(echo_datagram, socket.SOCK_DGRAM)
        self.assertEqual((b"\x00\xff", f"127.0.0.1:{port}"),
                         self.reply("udp", port, "--hex", "00 ff"))
        port = self.peer(echo_datagram, socket.SOCK_DGRAM, "::1")
        self.assertEqual((b"six", f"[::1]:{port}"),
                         self.reply("udp", port, "--text", "six", host="::1"))

    def test_the_largest_datagrams(self):
        message = b"x" * 65_507
        port = self.peer(echo_datagram, socket.SOCK_DGRAM)
        self.assertEqual(message, self.reply("udp", port, stdin=None, input=message)[0])

    def test_a_datagram_of_64_kibibytes_is_too_large(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as unasked:
            unasked.bind(("127.0.0.1", 0))
            port = str(unasked.getsockname()[1])
            done = self.send("udp", "127.0.0.1", port, stdin=None, input=b"x" * 65_536)
        self.assert_fails("too large for a datagram", done)

    def test_an_empty_datagram(self):
        port = self.peer(echo_datagram, socket.SOCK_DGRAM)
        done = self.send("udp", "127.0.0.1", port, "--text", "")
        self.assert_fails("replied without data", done)

    def test_nobody_listens(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as free:
            free.bind(("127.0.0.1", 0))
            port = str(free.getsockname()[1])
        self.assert_fails("refuses", self.send("udp", "127.0.0.1", port, "--text", "a",
                                               "--timeout", "20"))

    def test_a_silent_peer(self):
        port = self.peer(lambda sock: sock.recvfrom(65536), socket.SOCK_DGRAM)
        done = self.send("udp", "127.0.0.1", port, "--text", "a", "--timeout", "0.2")
        self.assert_fails("did not reply within 0.2 s; check", done)

    def test_a_stranger_is_not_heard(self):
        """Only whom the message went to may answer."""
        def act(sock):
            _, sender = sock.recvfrom(65536)
            with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as stranger:
                stranger.bind(("127.0.0.1", 0))
                stranger.sendto(b"wrong", sender)
            sock.sendto(b"right", sender)
        port = self.peer(act, socket.SOCK_DGRAM)
        self.assertEqual(b"right", self.reply("udp", port, "--text", "a")[0])


class LinkTest(SendTest):
    """Addresses that mean nothing without an interface."""

    def setUp(self):
        super().setUp()
        far = FarNetwork()
        self.addCleanup(far.__exit__)
        ip("-6 address add fe80::2/64 dev en0 nodad")
        with far.inside():
            ip("-6 address add fe80::9/64 dev far0 nodad")
        self.far = far

    def test_an_exchange_over_an_interface(self):
        for host in ("fe80::9%en0", "[fe80::9%en0]"):
            with self.far.inside():
                port = self.peer(echo_once, address="fe80::9%far0")
            self.assertEqual((b"hello", f"[fe80::9%en0]:{port}"),
                             self.reply("tcp", port, "--text", "hello", host=host))

    def test_without_an_interface(self):
        for transport in ("tcp", "udp"):
            done = self.send(transport, "fe80::9", "7", "--text", "a", "--timeout", "20")
            self.assert_fails("as in fe80::1%eth0", done)

    def test_an_interface_that_there_is_not(self):
        for transport in ("tcp", "udp"):
            done = self.send(transport, "fe80::9%en7", "7", "--text", "a", "--timeout", "20")
            self.assert_fails('there is no interface "en7"', done)

    def test_a_link_that_is_down(self):
        ip("link set en0 down")
        done = self.send("tcp", "fe80::9%en0", "7", "--text", "a", "--timeout", "20")
        self.assert_fails("check that it is there and up", done)


class InputTest(SendTest):
    def test_what_was_not_understood(self):
        for arguments in (["h", "7"], ["--tcp", "--udp", "h", "7"], ["--tcp"], ["--tcp", "h"],
                          ["--tcp", "h", "0"], ["--tcp", "h", "65536"], ["--tcp", "h", "http"],
                          ["--tcp", "", "7"], ["--tcp", "h", "7", "--timeout", "-1"],
                          ["--tcp", "h", "7", "--hex", "0"],
                          ["--tcp", "h", "7", "--text", "a", "--file", "f"]):
            self.assert_fails("", run("net", "send", *arguments), status=2)

    def test_hosts_that_are_none(self):
        for host in (".", "...", " ", "a b", "a" * 5000, "\x1b[2J"):
            done = self.send("tcp", host, "7", "--text", "a", "--timeout", "20")
            self.assert_fails("cannot find the host", done)

    def test_a_message_from_a_pipe(self):
        """As a shell's process substitution hands it over, and as a FIFO."""
        message = bytes(range(256)) * 1024
        fifo = self.folder / "fifo"
        os.mkfifo(fifo)
        reader, writer = os.pipe()
        for name, opened in ((f"/dev/fd/{reader}", lambda: writer),
                             (str(fifo), lambda: os.open(fifo, os.O_WRONLY))):
            def write():
                with open(opened(), "wb") as file:
                    file.write(message)
            writing = threading.Thread(target=write, daemon=True)
            writing.start()
            port = self.peer(echo_until_whole(len(message)))
            self.assertEqual(message, self.reply("tcp", port, "--file", name,
                                                 pass_fds=[reader])[0])
            writing.join(timeout=HANG_SECONDS)
        os.close(reader)

    def test_an_interruption_while_a_pipe_is_waited_for(self):
        fifo = self.folder / "fifo"
        os.mkfifo(fifo)
        command = [PROGRAM, "net", "send", "--tcp", "127.0.0.1", "7", "--file", fifo]
        with WatchedProcess(command) as process:  # nobody opens it
            time.sleep(0.3)
            self.assertEqual(-signal.SIGINT, process.finish(signal.SIGINT))
        with WatchedProcess(command) as process, open(fifo, "wb") as file:  # nobody ends it
            file.write(b"a")
            file.flush()
            self.assertEqual(-signal.SIGINT, process.finish(signal.SIGINT))

    def test_a_pipe_that_does_not_end(self):
        with subprocess.Popen(["cat", "/dev/zero"], stdout=subprocess.PIPE) as zeros:
            done = self.send("tcp", "127.0.0.1", "7", "--file", f"/dev/fd/{zeros.stdout.fileno()}",
                             pass_fds=[zeros.stdout.fileno()])
            zeros.stdout.close()
        self.assert_fails("longer than 16 MiB", done)

    def test_files_that_cannot_be_read(self):
        for file in ("/nonexistent", "/", "/dev/zero"):
            self.assert_fails(f'cannot read "{file}"',
                              self.send("tcp", "127.0.0.1", "7", "--file", file))

    def test_input_that_does_not_end(self):
        with open("/dev/zero", "rb") as zeros:
            self.assert_fails("longer than 16 MiB",
                              self.send("tcp", "127.0.0.1", "7", stdin=zeros))

    def test_bytes_of_every_kind(self):
        message = bytes(range(256))
        port = self.peer(echo_once)
        self.assertEqual(message, self.reply("tcp", port, stdin=None, input=message)[0])

    def test_a_full_disk(self):
        port = self.peer(echo_once)
        with open("/dev/full", "wb") as full:
            done = self.send("tcp", "127.0.0.1", port, "--text", "a", stdout=full,
                             stderr=subprocess.PIPE)
        self.assertEqual(1, done.returncode)
