"""`net guess`, `validate` and `resolve` against a real name server and the file of hosts."""

import json
import signal
import socket
import subprocess
import tempfile
import time
from pathlib import Path

from host_names import write_names
from namespaces import NamespaceTest
from program import PROGRAM, run
from watched_process import WatchedProcess

RECORDS = ["--host-record=both.example,192.0.2.7,2001:db8::7",
           "--host-record=old.example,192.0.2.8", "--host-record=new.example,2001:db8::8",
           "--cname=one.example,two.example", "--cname=two.example,three.example",
           "--host-record=three.example,192.0.2.9", "--txt-record=none.example,nothing",
           "--host-record=xn--mnchen-3ya.example,192.0.2.10"]
SERVER = "nameserver 127.0.0.1\noptions timeout:1 attempts:1\n"


class NameTest(NamespaceTest):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory(prefix="lanternfold names ")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        write_names(self, self.folder)

    def assert_writes(self, expected, *arguments, **options):
        done = run("net", *arguments, **options)
        self.assertEqual((0, b""), (done.returncode, done.stderr), arguments)
        self.assertEqual(expected, done.stdout.decode(), arguments)

    def assert_fails(self, text, *arguments, status=1, output=b"", **options):
        done = run("net", *arguments, **options)
        self.assertEqual((status, output), (done.returncode, done.stdout), arguments)
        self.assertEqual(1, done.stderr.count(b"\n"), done.stderr)
        self.assertIn(text, done.stderr.decode(), arguments)


class ServerTest(NameTest):
    def setUp(self):
        super().setUp()
        server = WatchedProcess(
            ["dnsmasq", "--keep-in-foreground", "--conf-file=/dev/null", "--user=root",
             "--pid-file=", "--no-resolv", "--no-hosts", "--bind-interfaces",
             "--listen-address=127.0.0.1", "--local=/example/", "--log-facility=-", *RECORDS])
        self.addCleanup(server.__exit__)
        server.wait_for_lines(1, lines=server.errors)
        write_names(self, self.folder, servers=SERVER,
                    hosts="192.0.2.50 here.example\n2001:db8::50 here.example\n192.0.2.51 both.example\n")

    def test_a_name_with_both(self):
        self.assert_writes("192.0.2.50\n", "resolve", "here.example")
        self.assert_writes("2001:db8::50\n", "resolve", "here.example", "--ipv6")
        self.assert_writes("192.0.2.51\n", "resolve", "both.example")  # hosts come first
        self.assert_writes("2001:db8::7\n", "resolve", "both.example", "--ipv6")

    def test_a_name_with_ipv4_only(self):
        self.assert_writes("192.0.2.8\n", "resolve", "old.example")
        self.assert_fails("cannot find an IPv6 address", "resolve", "old.example", "--ipv6")

    def test_a_name_with_ipv6_only(self):
        self.assert_writes("2001:db8::8\n", "resolve", "new.example")
        self.assert_writes('{"ip":"2001:db8::8","v":6}\n', "resolve", "new.example", "--json")
        self.assert_fails("cannot find an IPv4 address", "resolve", "new.example", "--ipv4")

    def test_a_name_without_an_address(self):
        self.assert_fails('cannot find an address of "none.example"', "resolve", "none.example")

    def test_a_name_that_nobody_has(self):
        self.assert_fails("cannot find an address", "resolve", "nowhere.example")

    def test_a_chain_of_aliases(self):
        self.assert_writes("192.0.2.9\n", "resolve", "one.example")

    def test_an_international_name(self):
        for name in ("m\u00fcnchen.example", "M\u00dcNCHEN.example", "xn--mnchen-3ya.example"):
            self.assert_writes("192.0.2.10\n", "resolve", name)

    def test_addresses_stand_for_themselves(self):
        self.assert_writes("192.0.2.200\n", "resolve", "192.0.2.200")
        self.assert_writes("::1\n", "resolve", "::1")

    def test_nothing_is_looked_up_in_reverse(self):
        """The server would log the question as one of in-addr.arpa."""
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as listener:
            listener.bind(("127.0.0.9", 53))
            write_names(self, self.folder, servers="nameserver 127.0.0.9\n")
            self.assert_writes("192.0.2.200\n", "resolve", "192.0.2.200")
            self.assert_writes("::1\n", "resolve", "::1")
            listener.setblocking(False)
            with self.assertRaises(BlockingIOError):
                listener.recv(512)

    def test_bad_names(self):
        for name in ("", ".", "...", "a b", "-", "a" * 300, "a." * 1000, "\x1b[31m"):
            self.assert_fails("cannot find an address", "resolve", "--", name)
        for text in (b"old.example\0x", b"\xff\xfe", b"a" * 1_000_000, b"\n", b""):
            self.assert_fails("cannot find an address", "resolve", stdin=None, input=text)
        self.assert_writes("192.0.2.8\n", "resolve", stdin=None, input=b"old.example\n")


class NoServerTest(NameTest):
    def test_nobody_listens(self):
        write_names(self, self.folder, servers=SERVER)
        self.assert_fails("cannot find an address", "resolve", "old.example")

    def test_a_server_that_does_not_answer(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as silent:
            silent.bind(("127.0.0.1", 53))
            write_names(self, self.folder, servers=SERVER)
            self.assert_fails("cannot find an address", "resolve", "old.example")
            self.assertGreater(len(silent.recv(512)), 12)

    def test_an_interruption_ends_it_at_once(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as silent:
            silent.bind(("127.0.0.1", 53))
            silent.settimeout(30)
            write_names(self, self.folder,
                        servers="nameserver 127.0.0.1\noptions timeout:30 attempts:5\n")
            process = subprocess.Popen([PROGRAM, "net", "resolve", "old.example"])
            silent.recv(512)  # it has asked
            begin = time.monotonic()
            process.send_signal(signal.SIGINT)
            self.assertEqual(-signal.SIGINT, process.wait(timeout=20))
            self.assertLess(time.monotonic() - begin, 15)  # of the 300 that it would wait


class TextTest(NameTest):
    def test_what_a_text_is(self):
        for text, kind in (("192.168.1.1", "ipv4"), ("::1", "ipv6"), ("example-host", "hostname"),
                           ("1.2.3", "hostname"), ("m\u00fcnchen", "hostname")):
            self.assert_writes(kind + "\n", "guess", text)
            self.assert_writes(json.dumps({"type": kind}, separators=(",", ":")) + "\n", "guess",
                               text, "--json")
        self.assert_fails("is no address", "guess", "a/b", "--json", output=b"null\n")

    def test_names(self):
        self.assert_writes("valid\n", "validate", "host-.example")
        self.assert_fails('"-host" cannot be', "validate", "--", "-host")
        self.assert_fails("cannot be", "validate", "", "--json", output=b'{"valid":false}\n')

    def test_what_no_argument_can_hold(self):
        self.assert_writes("hostname\n", "guess", stdin=None, input=b"a\0b")
        self.assert_writes("hostname\n", "guess", stdin=None, input=b"\xff" * 1_000_000)
        self.assert_writes("valid\n", "validate", stdin=None, input=b"a" * 1_000_000 + b"\n")
        self.assert_fails("cannot be", "validate", stdin=None, input=b"a\0b")
        name = self.folder / "name"
        name.write_bytes(b"example\r\n")
        self.assert_writes("valid\n", "validate", "--file", str(name))
        self.assert_fails("longer than 16 MiB", "guess", stdin=None, input=b"a" * 17_000_000)

    def test_files_that_cannot_be_read(self):
        for file in ("/nonexistent", "/", "/dev/zero"):
            self.assert_fails(f'cannot read "{file}"', "guess", "--file", file)

    def test_a_closed_standard_input(self):
        """It is read as an error, and no other file's bytes are."""
        done = subprocess.run(["sh", "-c", '"$0" net guess <&-', PROGRAM], capture_output=True,
                              timeout=60)
        self.assertEqual(1, done.returncode)
        self.assertIn(b"cannot read standard input", done.stderr)

    def test_what_was_not_understood(self):
        for arguments in ([], ["whois"], ["guess", "a", "b"], ["guess", "a", "--file", "f"],
                          ["resolve", "a", "--ipv4", "--ipv6"], ["resolve", "--ipv5"]):
            done = run("net", *arguments)
            self.assertEqual((2, b"", 1), (done.returncode, done.stdout, done.stderr.count(b"\n")))

    def test_a_full_disk(self):
        with open("/dev/full", "wb") as full:
            done = run("net", "guess", "::1", stdout=full, stderr=subprocess.PIPE)
        self.assertEqual(1, done.returncode)
        self.assertIn(b"cannot write to standard output", done.stderr)
