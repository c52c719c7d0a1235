"""What the CMake lists say of the rooms: what each uses and which libraries it links.

The lists are the truth; this module only reads them.
"""

import re

ROOMS_FILE = "CMake/Rooms.cmake"
TESTS_FILE = "Tests/CMakeLists.txt"
KEYWORDS = {"USES", "LIBRARIES", "LABEL"}


class Room:
    def __init__(self, name, uses, libraries, line):
        self.name = name
        self.uses = uses
        self.libraries = libraries
        self.line = line


def read_rooms(tree):
    """The rooms by name, in the order of their declaration."""
    return {call.name: call for call in _calls(tree.file(ROOMS_FILE), "lanternfold_room")}


def read_test_uses(tree):
    """What the tests of each room link beside the fakes, by room."""
    file = tree.file(TESTS_FILE)
    if file is None:
        return {}
    return {call.name: call.uses for call in _calls(file, "lanternfold_tests")}


def read_fuzz_uses(tree):
    """What each fuzz target links, by its name."""
    file = tree.file("Fuzz/CMakeLists.txt")
    if file is None:
        return {}
    return {call.name: call.uses for call in _calls(file, "lanternfold_fuzz")}


def _calls(file, function):
    text = "\n".join(line.split("#", 1)[0] for line in file.lines)
    for match in re.finditer(rf"^\s*{function}\(([^)]*)\)", text, re.MULTILINE):
        words = match.group(1).split()
        groups = {"USES": [], "LIBRARIES": [], "LABEL": []}
        current = None
        for word in words[1:]:
            if word in KEYWORDS:
                current = word
            elif current is not None:
                groups[current].append(word)
        line = text.count("\n", 0, match.start(1)) + 1
        yield Room(words[0], groups["USES"], groups["LIBRARIES"], line)
