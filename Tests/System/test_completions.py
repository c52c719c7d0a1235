"""The installed completions: each shell offers every command, option and value that there is."""

import json
import os
import unittest
from pathlib import Path

from completions import SHELLS, offers
from help_texts import commands_of, help_of
from installation import PROGRAMS, Installation

KINDS = {"PanoramicNetworkStateWidget", "InternetNetworkStateWidget", "NetworkAdapterWidget",
         "BandwidthMonitorWidget", "WlanNetworkStateWidget"}
SHOWN = Path(__file__).resolve().parents[2] / "Docs" / "formats" / "fixtures" / "ctl-list.json"
FILES = {"picture.png", "picture.svg"}


class CompletionTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.installed = cls.enterClassContext(Installation())

    def assert_offered(self, words, expected, **options):
        for shell in SHELLS:
            with self.subTest(shell=shell, words=words):
                found = offers(self.installed, shell, *words, **options)
                self.assertEqual(found, set(expected))

    def test_every_command(self):
        self.assert_offered([PROGRAMS[0], ""], help_of(self.installed, PROGRAMS[0]).commands)
        self.assert_offered([PROGRAMS[0], "ctl", ""],
                            help_of(self.installed, PROGRAMS[0], "ctl").commands)
        self.assert_offered([PROGRAMS[0], "in"], ["interfaces"])

    def test_every_option_of_every_command(self):
        for command, told in commands_of(self.installed, PROGRAMS[0]).items():
            every = {option for option in {**told.options, **told.common} if option.startswith("--")}
            self.assertGreater(len(every), 1)
            self.assert_offered([PROGRAMS[0], *command, "--"], every)

    def test_the_options_of_the_host(self):
        self.assert_offered([PROGRAMS[1], "--ref"], ["--refresh-interval"])

    def test_an_option_before(self):
        self.assert_offered([PROGRAMS[0], "render", "--scheme", "dark", "--fam"], ["--family"])

    def test_values(self):
        self.assert_offered([PROGRAMS[0], "render", "--family", ""], ["small", "medium", "large"])
        self.assert_offered([PROGRAMS[0], "gallery", "--entry", "s"], ["snapshot"])
        self.assert_offered([PROGRAMS[0], "render", "--scheme", ""], ["light", "dark"])
        self.assert_offered([PROGRAMS[0], "location", "allow"], ["allow", "allow-in-use"])
        interfaces = set(os.listdir("/sys/class/net"))
        self.assert_offered([PROGRAMS[0], "render", "--adapter", ""], interfaces | {"auto"})
        self.assert_offered([PROGRAMS[0], "interfaces", "--excluding", ""], interfaces)

    def test_kinds(self):
        for command in (["render"], ["timeline"], ["ctl", "add"]):
            self.assert_offered([PROGRAMS[0], *command, ""], KINDS)

    def test_a_number_is_not_guessed(self):
        self.assert_offered([PROGRAMS[0], "record", "--interval", ""], [])

    def test_values_behind_an_equals_sign(self):
        for shell in SHELLS:
            found = offers(self.installed, shell, PROGRAMS[0], "render", "--family=")
            self.assertEqual({word.removeprefix("--family=") for word in found},
                             {"small", "medium", "large"}, shell)

    def test_one_more_of_several_values(self):
        for shell in SHELLS:
            found = offers(self.installed, shell, PROGRAMS[0], "state", "--categories", "wlan,i")
            self.assertEqual({word.removeprefix("wlan,") for word in found}, {"internet"}, shell)

    def test_ids_of_the_widgets_that_are_shown(self):
        """Of a program that stands in the installed one's place and has a list to show."""
        with Installation() as installed:
            program = Path(installed.program())
            script = f"""#!/bin/sh
[ "$*" != "ctl list --json" ] || exec cat "{SHOWN}"
exec "{program.rename(program.with_name("real"))}" "$@"
"""
            program.write_text(script)
            program.chmod(0o755)
            ids = {each["id"] for each in json.loads(SHOWN.read_text())}
            for shell in SHELLS:
                for command in ("reload", "remove"):
                    found = offers(installed, shell, PROGRAMS[0], "ctl", command, "")
                    self.assertEqual(found, ids, f"{command} in {shell}")

    def test_a_program_that_is_gone_has_nothing_to_offer(self):
        with Installation() as installed:
            Path(installed.program()).unlink()
            for shell in SHELLS:
                self.assertEqual(offers(installed, shell, PROGRAMS[0], "re"), set(), shell)

    def test_files(self):
        folder = self.installed.folder / "pictures"
        folder.mkdir()
        for name in FILES:
            (folder / name).touch()
        self.assert_offered([PROGRAMS[0], "render", "-o", "pic"], FILES, folder=folder)


if __name__ == "__main__":
    unittest.main()
