"""A host of the widget extension that sends rubbish: it gets JSON-RPC's own errors, and the process
goes on for whoever asks in order."""

import json
import os
import random
import socket

from extension_test import ADAPTER, INTERNET, ExtensionTest
from web_servers import WebServer, silence

PARSE_ERROR, INVALID_REQUEST, METHOD_NOT_FOUND, INVALID_PARAMS = -32700, -32600, -32601, -32602
LONGEST_LINE = 4 * 1024 * 1024
PLACEHOLDER = {"method": "widget/placeholder", "params": {"kind": ADAPTER, "family": "medium"}}


def line(**members):
    return json.dumps({"jsonrpc": "2.0"} | members).encode()


def padded(message, length):
    """The message as a line of so many bytes."""
    return message[:-1] + b" " * (length - len(message)) + b"}"


class BadInputTest(ExtensionTest):
    def setUp(self):
        super().setUp()
        self.serial = 0
        self.connect()

    def connect(self, **options):
        self.raw = self.raw_host(**options)

    def assert_goes_on(self):
        """Somebody who asks in order is answered next."""
        self.serial += 1
        identifier = f"in order {self.serial}"
        message = self.raw.ask("widget/placeholder", identifier, **PLACEHOLDER["params"])
        self.assertEqual(identifier, message.get("id"), message)
        self.assert_entry(message["result"])

    def assert_error(self, code, identifier=None):
        message = self.raw.receive()
        self.assertEqual({"jsonrpc", "id", "error"}, set(message), message)
        self.assertEqual((code, identifier), (message["error"]["code"], message["id"]), message)
        self.assertEqual({"code", "message"}, set(message["error"]))
        self.assertRegex(message["error"]["message"], r"\A[^\n]+\Z")
        self.assertLess(len(message["error"]["message"]), 1000)

    def assert_refused(self, data, code, identifier=None):
        with self.subTest(line=data[:80]):
            self.raw.send(data + b"\n")
            self.assert_error(code, identifier)
            self.assert_goes_on()

    def assert_ignored(self, data):
        with self.subTest(line=data[:80]):
            self.raw.send(data + b"\n")
            self.assert_goes_on()

    def assert_ends(self):
        """In order, after the end of the connection."""
        self.assertEqual(0, self.raw.extension.wait())
        self.assertEqual(([], []), (self.raw.extension.diagnostics, self.raw.extension.errors))


class LineTest(BadInputTest):
    def test_lines_that_are_not_json(self):
        for data in (b"hello", b"{", b"}", b'{"jsonrpc":', b"nul", b"'x'", b"{} {}", b"[1,]", b"1e",
                     b'{"jsonrpc":"2.0","id":1,"method":"widgets/list"', b'"', b"{'id':1}", b"+1",
                     b'{"id":01}', b'"\t"', b"NaN", b"\xef\xbb\xbf\xef\xbb\xbf{}", b"\x1b[2J"):
            self.assert_refused(data, PARSE_ERROR)

    def test_lines_that_are_not_utf_8(self):
        for text in (b"\xff", b"\xc0\x80", b"\xed\xa0\x80", b"\xe2\x82", b"\xf4\x90\x80\x80"):
            self.assert_refused(b'{"jsonrpc":"2.0","id":1,"method":"' + text + b'"}', PARSE_ERROR)

    def test_zero_bytes(self):
        self.assert_refused(b"\0", PARSE_ERROR)
        self.assert_refused(line(id=1, **PLACEHOLDER) + b"\0", PARSE_ERROR)
        self.assert_refused(b'{"jsonrpc":"2.0","id":1,"method":"widgets\0list"}', PARSE_ERROR)

    def test_deep_nesting(self):
        for depth in (100, 100_000):
            self.assert_refused(b"[" * depth, PARSE_ERROR)
            self.assert_refused(b'{"a":' * depth + b"1" + b"}" * depth, PARSE_ERROR)
            self.assert_refused(b'{"jsonrpc":"2.0","id":1,"method":"widgets/list","params":{"x":'
                                + b"[" * depth + b"]" * depth + b"}}", PARSE_ERROR)

    def test_json_that_is_no_object(self):
        for data in (b"7", b'"text"', b"null", b"true", b"-0.5e300"):
            self.assert_refused(data, INVALID_REQUEST)

    def test_a_batch(self):
        for data in (b"[]", b"[1]", b"[" + line(id=1, **PLACEHOLDER) + b"]",
                     b"[" + b",".join([line(id=1, **PLACEHOLDER)] * 100) + b"]"):
            self.assert_refused(data, INVALID_REQUEST)

    def test_a_line_of_5_megabytes(self):
        for data in (b"x" * 5_000_000, line(id=1, method="x" * 5_000_000),
                     padded(line(id=1, **PLACEHOLDER), LONGEST_LINE + 1), b"[" * 9_000_000):
            self.assert_refused(data, INVALID_REQUEST)

    def test_the_longest_line(self):
        self.raw.send(padded(line(id="long", **PLACEHOLDER), LONGEST_LINE) + b"\n")
        self.assertEqual("long", self.raw.receive()["id"])
        self.assert_goes_on()

    def test_a_long_line_is_refused_before_its_end(self):
        self.raw.send(b"x" * (LONGEST_LINE + 1))
        self.assert_error(INVALID_REQUEST)
        self.raw.send(b"x" * 1_000_000)
        self.raw.send(b'\n')
        self.assert_goes_on()

    def test_lines_of_nothing(self):
        self.raw.send(b"\n\r\n \t \n" * 1000)
        self.assert_goes_on()

    def test_a_line_byte_by_byte(self):
        for byte in line(id="slow", **PLACEHOLDER) + b"\r\n":
            self.raw.send(bytes([byte]))
        self.assertEqual("slow", self.raw.receive()["id"])

    def test_a_line_that_is_cut_and_the_host_goes(self):
        for cut in (1, 40, len(line(id=1, **PLACEHOLDER))):
            self.connect()
            self.raw.send(line(id=1, **PLACEHOLDER)[:cut])
            self.raw.extension.socket.close()
            self.assert_ends()

    def test_a_line_that_is_cut_and_the_host_listens(self):
        """What has no end is no line."""
        self.raw.send(line(id=1, **PLACEHOLDER) + b"\n" + line(id=2, **PLACEHOLDER))
        self.raw.extension.socket.shutdown(socket.SHUT_WR)
        self.assertEqual(1, self.raw.receive()["id"])
        self.assertIsNone(self.raw.receive())
        self.assert_ends()

    def test_a_megabyte_of_noise(self):
        seed = int(os.environ.get("LANTERNFOLD_SEED", random.randrange(2**32)))
        print(f"LANTERNFOLD_SEED={seed}")
        source = random.Random(seed)
        alphabet = b'\n{}[]":,\\ \0\xff0e-truefalsnulidmethodparams'
        for _ in range(16):
            self.raw.send(bytes(source.choices(alphabet, k=1 << 16)))
            self.raw.send(b"\n" + line(id="after noise", **PLACEHOLDER) + b"\n")
            while (message := self.raw.receive())["id"] != "after noise":
                self.assertIn("error", message)
        self.assert_goes_on()


class MessageTest(BadInputTest):
    def test_objects_that_are_no_request(self):
        for members, identifier in ((b"{}", None), (b'{"id":5}', 5), (b'{"jsonrpc":"2.0"}', None),
                                    (b'{"id":"x","method":"widgets/list"}', "x"),
                                    (b'{"jsonrpc":"1.0","id":1,"method":"widgets/list"}', 1),
                                    (b'{"jsonrpc":2.0,"id":1,"method":"widgets/list"}', 1)):
            self.assert_refused(members, INVALID_REQUEST, identifier)
        for method in (None, 7, ["widgets/list"], {}):
            self.assert_refused(line(id=3, method=method), INVALID_REQUEST, 3)

    def test_identifiers_that_are_none(self):
        for identifier in ({}, [1], True, 1.5, 2**60, "x" * 257):
            self.assert_refused(line(id=identifier, **PLACEHOLDER), INVALID_REQUEST)

    def test_identifiers_that_are_odd(self):
        for identifier in (None, 0, -1, 2**53, "", "x" * 256, "ünï\n\0code"):
            self.raw.send(line(id=identifier, **PLACEHOLDER) + b"\n")
            message = self.raw.receive()
            self.assertEqual(identifier, message["id"])
            self.assertIn("result", message)

    def test_methods_that_are_unknown(self):
        for method in ("", "widget", "widgets/List", "rpc.discover", "$/cancel", "location/changed",
                       "x" * 100_000, "\n\x1b[2J"):
            self.assert_refused(line(id=1, method=method), METHOD_NOT_FOUND, 1)

    def test_notifications_are_never_answered(self):
        for method in ("widgets/list", "nothing", "$/cancel", "location/changed", "", "x" * 100_000):
            for members in ({}, {"params": []}, {"params": {"status": "yes", "id": {}}},
                            {"params": {"status": 99}}):
                self.assert_ignored(line(method=method, **members))

    def test_parameters_of_the_wrong_type(self):
        right = {"kind": ADAPTER, "family": "medium"}
        for wrong in ({"kind": 7}, {"kind": None}, {"kind": "x" * 300}, {"kind": ""},
                      {"kind": "ClockWidget"}, {"kind": ADAPTER.lower()}, {"family": ["medium"]},
                      {"family": None}, {"family": "Medium"}, {"family": "large"},
                      {"configuration": "x"}, {"configuration": {"showTimestamp": "yes"}},
                      {"configuration": {"adapter": "en0"}},
                      {"configuration": {"adapter": {"identifier": 7, "display": "x"}}},
                      {"configuration": {"adapter": {"identifier": "e" * 2000, "display": "x"}}},
                      {"context": 1}, {"context": {"isPreview": 1}}):
            for method in ("widget/placeholder", "widget/snapshot", "widget/timeline"):
                self.assert_refused(line(id=1, method=method, params=right | wrong), INVALID_PARAMS,
                                    1)
        for params in ([], [ADAPTER, "medium"], "x", 7, None, {}):
            self.assert_refused(line(id=1, method="widget/placeholder", params=params),
                                INVALID_PARAMS, 1)
        for intent in (None, 7, "", "x" * 300, "OtherIntent"):
            self.assert_refused(line(id=1, method="intent/perform", params={"intent": intent}),
                                INVALID_PARAMS, 1)

    def test_what_is_not_known_is_ignored(self):
        parameters = PLACEHOLDER["params"] | {"later": [1, {"a": None}], "context": {"later": 1}}
        self.raw.send(line(id=1, method="widget/placeholder", params=parameters, later=1) + b"\n")
        self.assertIn("result", self.raw.receive())

    def test_an_identifier_of_a_request_under_way(self):
        """The second one gets an error that cannot be taken for the answer to the first one."""
        self.connect(services=self.start_services())
        request = {"method": "widget/timeline", "params": {"kind": INTERNET, "family": "medium"}}
        for identifier in (1, "1", None):
            self.raw.send_messages(*3 * [{"id": identifier} | request],
                                   {"id": identifier} | PLACEHOLDER)
            for _ in range(3):
                self.assert_error(INVALID_REQUEST)
            message = self.raw.receive()
            self.assertEqual(identifier, message["id"])
            self.entry_of(message["result"])
            self.assert_goes_on()

    def test_an_identifier_is_free_again_after_its_answer(self):
        for _ in range(3):
            self.assertEqual(7, self.raw.ask("widgets/list", 7)["id"])

    def test_an_identifier_is_free_again_after_its_cancellation(self):
        server = self.start(WebServer({"/lanternfold/ip.php": silence, "/json/": silence}))
        self.connect(services=dict.fromkeys(("ipv4_echo", "geolocation"), server.url()))
        self.raw.send_messages({"id": 1, "method": "widget/timeline",
                                "params": {"kind": INTERNET, "family": "medium"}},
                               {"method": "$/cancel", "params": {"id": 1}},
                               {"id": 1} | PLACEHOLDER)
        message = self.raw.receive()
        self.assertEqual(1, message["id"])
        self.assert_entry(message["result"])
