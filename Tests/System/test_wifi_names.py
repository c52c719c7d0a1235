"""Names of Wi-Fi networks, which are any bytes at all: told by the program as text that does no harm,
and only to those who consent."""

import json
import unicodedata

from radio_network import Network
from radio_test import DATA, NOBODY, NOBODYS_DATA, RadioTest
from radio_machine import PROGRAM

UNDECIDED = "/tmp/undecided"
BSSID = b"02:00:00:00:00:00"
ZERO_WIDTH_JOINER = "\u200d"


class NameTest(RadioTest):
    def compare(self, situation, name, shown, **more):
        """The figures with a network of this name, and the name as the program shows it."""
        self.air.offer_and_join(Network(name=name, protection="open", **more))
        figures = self.assert_same_figures(f"name: {situation}")
        self.assertEqual(shown, figures["ssid"])
        self.assert_harmless()

    def assert_harmless(self):
        """Nothing that a terminal obeys; a line is a line, and reads in the order it has. What joins
        two pictures to one does no harm."""
        for command in ("wifi", "state --categories wlan"):
            text = self.machine.run(f"{PROGRAM} {command} --data-dir {DATA}")
            harmful = [character for line in text.split("\n") for character in line
                       if unicodedata.category(character) in ("Cc", "Cf", "Zl", "Zp", "Cs")
                       and character != ZERO_WIDTH_JOINER]
            self.assertEqual([], harmful, text)

    def test_hidden(self):
        self.compare("hidden", b"Meadow", "Meadow", hidden=True)

    def test_32_bytes_with_emoji(self):
        name = "Caf\u00e9 \u65e5\u672c \U0001f3e1\U0001f468\u200d\U0001f469 123"
        self.assertEqual(32, len(name.encode()))
        self.compare("32 bytes with emoji", name.encode(), name)

    def test_markup(self):
        self.compare("markup", b'<b>&amp;</b><i a="b">', '<b>&amp;</b><i a="b">')

    def test_quotes_and_backslashes(self):
        self.compare("quotes and backslashes", b"""'a' "b" `c` \\n\\""", """'a' "b" `c` \\n\\""")

    def test_spaces_at_both_ends(self):
        self.compare("spaces at both ends", b"  a  ", "  a  ")

    def test_line_ends_and_control_characters(self):
        self.compare("line ends and control characters", b"a\nb\r\tc\x1b[31m\x07\x00d\x7f",
                     "a\\x0ab\\x0d\\x09c\\x1b[31m\\x07\\x00d\\x7f")

    def test_line_ends_and_control_characters_of_unicode(self):
        self.compare("line ends of Unicode", "a\u2028b\u0085c".encode(),
                     "a\\xe2\\x80\\xa8b\\xc2\\x85c")

    def test_marks_that_turn_the_direction(self):
        self.compare("marks that turn the direction", "a\u202eb\u2066c".encode(),
                     "a\\xe2\\x80\\xaeb\\xe2\\x81\\xa6c")

    def test_not_utf8(self):
        self.compare("not UTF-8", b"caf\xe9 \xff\xfe \xc3", "caf\\xe9 \\xff\\xfe \\xc3")

    def test_one_byte(self):
        self.compare("one byte", b"\xf0", "\\xf0")


class ConsentTest(RadioTest):
    NAME = b"Zaunk\xc3\xb6nig <7>"

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.network = Network(name=cls.NAME)
        cls.air.offer_and_join(cls.network)

    def setUp(self):
        super().setUp()
        self.machine.run(f"rm -rf {UNDECIDED}")

    def location(self, action):
        self.machine.run(f"{PROGRAM} location {action} --data-dir {UNDECIDED}")

    def assert_withheld(self, hint):
        """No command tells a name, whatever it writes, and leaves none behind; all else is told."""
        for command in ("wifi --json", "wifi", "state --categories wlan --json",
                        "state --categories wlan", "state --json --skip-geoip"):
            done = self.machine.script(f"{PROGRAM} {command} --data-dir {UNDECIDED} "
                                       "--ipv4-echo http://127.0.0.1:9 "
                                       "--ipv6-echo http://127.0.0.1:9")
            self.assertEqual(0, done.status, done.errors)
            self.assert_untold(done.output + done.errors, command)
            self.assertEqual(hint, b"location allow" in done.errors, done.errors)
        kept = self.machine.script(f"find {UNDECIDED} -type f -exec cat '{{}}' +").output
        self.assert_untold(kept, "the data folder")
        expected, _, _ = self.readings("wlan1", DATA, "")
        wifi = self.machine.script(f"{PROGRAM} wifi --json --data-dir {UNDECIDED}")
        self.assert_all_but_names(expected, wifi.output)

    def assert_untold(self, text, where):
        for secret in (self.NAME, self.NAME[:5], BSSID, BSSID.upper(),
                       self.NAME.hex().encode(), BSSID.replace(b":", b"")):
            self.assertNotIn(secret, text, where)

    def assert_all_but_names(self, expected, output):
        wifi = json.loads(output)
        self.assertEqual((True, None, None, True), tuple(
            wifi[key] for key in ("isJoined", "ssid", "bssid", "namesWithheld")))
        for name in ("interface", "activePHYMode", "security", "signalDbm", "countryCode",
                     "transmitPowerMilliwatts"):
            self.assertEqual(expected[name], wifi[name])
        link = wifi["links"][0]
        self.assertEqual((None, expected["channel"]), (link["bssid"], link["channel"]))

    def test_names_are_withheld_while_nothing_is_decided(self):
        self.assert_withheld(hint=True)

    def test_names_are_withheld_when_denied(self):
        self.location("deny")
        self.assert_withheld(hint=False)

    def test_names_are_told_as_soon_as_allowed_and_withheld_as_soon_as_not(self):
        for action, told in (("allow", True), ("deny", False), ("allow-in-use", True),
                             ("reset", False)):
            self.location(action)
            done = self.machine.script(f"{PROGRAM} wifi --json --data-dir {UNDECIDED}")
            self.assertEqual(told, self.NAME in done.output, action)
            self.assertEqual(told, BSSID in done.output, action)

    def test_a_user_without_privileges_sees_the_same_figures(self):
        self.assert_same_figures("unprivileged user", data=NOBODYS_DATA, through=NOBODY)

    def test_the_consent_of_another_user_does_not_count(self):
        done = self.machine.script(f"{NOBODY} {PROGRAM} wifi --json --data-dir {DATA}")
        self.assert_untold(done.output + done.errors, "another user's folder")
