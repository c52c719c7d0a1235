"""The installed manuals: that they are found, well formed, and tell what the programs take."""

import re
import unittest

from help_texts import commands_of, help_of
from installation import PROGRAMS, Installation


def words_of(roff):
    """The text of a line of a manual, without fonts, escapes and macros."""
    plain = re.sub(r"\\f[BIRP]", "", roff).replace("\\-", "-").replace("\\&", "")
    return re.sub(r"^\.[A-Z]+ ", "", plain).replace('"', "")


def options_of(entry):
    """Those that an entry begins with: `-o, --output FILE`, but not `some-program --output`."""
    return {word.rstrip(",") for word in entry.split() if word.startswith("-")
            and entry.startswith("-")}


class Manual:
    """`sections` maps each heading of either level to the options that have an entry below it."""

    def __init__(self, source):
        self.sections = {}
        lines = source.splitlines()
        heading = ""
        for line, following in zip(lines, lines[1:] + [""]):
            if line.startswith((".SH ", ".SS ")):
                heading = words_of(line)
                self.sections[heading] = set()
            elif line == ".TP":
                self.sections[heading] |= options_of(words_of(following))

    def options(self):
        return set().union(*self.sections.values())


class ManualTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.installed = cls.enterClassContext(Installation())
        cls.folder = cls.installed.share / "man"

    def manual(self, program):
        return Manual((self.folder / "man1" / f"{program}.1").read_text())

    def test_they_are_found(self):
        for program in PROGRAMS:
            found = self.installed.output("man", "-M", self.folder, "-w", program)
            self.assertEqual(found, f"{self.folder / 'man1' / program}.1\n")
            # What `whatis` and `apropos` take from it.
            self.installed.output("lexgrog", self.folder / "man1" / f"{program}.1")

    def test_they_are_well_formed(self):
        for program in PROGRAMS:
            text = self.installed.output("man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8",
                                         self.folder / "man1" / f"{program}.1")
            self.assertTrue(text.startswith(f"{program.upper()}(1)"), program)

    def test_every_command_has_a_section(self):
        manual = self.manual(PROGRAMS[0])
        commands = {command: told for command, told in
                    commands_of(self.installed, PROGRAMS[0]).items() if not told.commands}
        self.assertGreater(len(commands), 15)
        for command, told in commands.items():
            headings = [heading for heading in manual.sections
                        if heading.split()[:len(command)] == list(command)]
            self.assertEqual(len(headings), 1, command)
            values = [word.strip("[]") for word in headings[0].split()[len(command):]]
            self.assertEqual(values, told.values, command)
            self.assertEqual(manual.sections.pop(headings[0]), told.own_options, command)
        # What is left tells of no command that there is not.
        self.assertEqual([heading for heading in manual.sections if heading[0].islower()], [])

    def test_the_options_of_every_command(self):
        common = help_of(self.installed, PROGRAMS[0], "interfaces").common
        manual = self.manual(PROGRAMS[0])
        told = manual.sections["Which services are asked"] | \
            manual.sections["Where recorded traffic is kept"]
        self.assertEqual(told, set(common))
        self.assertEqual(manual.sections["DESCRIPTION"],
                         {"-h", "--help", "--help-all", "--version"})

    def test_the_other_programs(self):
        for program in PROGRAMS[1:]:
            told = help_of(self.installed, program)
            self.assertEqual(self.manual(program).options(),
                             set(told.options) | set(told.common), program)


if __name__ == "__main__":
    unittest.main()
