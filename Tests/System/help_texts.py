"""What the programs say that they take: their commands, options and values, as `--help` has them."""

import re

# What every program or command takes, and what every command takes that does any work.
GENERAL = {"-h", "--help", "--help-all", "--version"}
COMMON_SECTIONS = ("Which services are asked", "Where recorded traffic is kept")


class Help:
    """The help of one command. `options` maps each to the name of its value, "" without one."""

    def __init__(self, text):
        self.commands, self.values, self.options, self.common = [], [], {}, {}
        section = None
        for line in text.splitlines():
            heading = re.fullmatch(r"(\S.*):", line)
            if heading:
                section = heading.group(1)
                continue
            entry = re.match(r"  (\S+)(?: (\S+))?", line)
            if entry:
                self._take(section, entry.group(1), entry.group(2) or "")

    def _take(self, section, name, value):
        if section == "Subcommands":
            self.commands.append(name)
        elif section == "Positionals":
            self.values.append(value)
        elif section == "Options":
            self.options |= {option: value for option in name.split(",")}
        elif section in COMMON_SECTIONS:
            self.common |= {option: value for option in name.split(",")}

    @property
    def own_options(self):
        """Without those that every program has."""
        return set(self.options) - GENERAL


def help_of(installed, program, *command):
    return Help(installed.output(installed.program(program), *command, "--help"))


def commands_of(installed, program, *above):
    """Every command, and those below it, as tuples of words, with its help."""
    found = {}
    for name in help_of(installed, program, *above).commands:
        command = (*above, name)
        found[command] = help_of(installed, program, *command)
        found |= commands_of(installed, program, *command)
    return found
