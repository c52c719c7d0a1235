"""What the kernel tells of Wi-Fi networks' names is read in one place, which asks for the consent."""

import re

FOLDER = "PlatformLinux/Wifi/"
# Records that hold names whatever the user's consent is.
RAW_RECORDS = {FOLDER + name for name in (
    "InformationElements.h", "WifiBssMessage.h", "WifiFacts.h", "WifiInterfaceMessage.h",
    "WifiStationMessage.h")}
# Who may see them beside the folder itself: the client that fills and judges them, and the wiring
# that makes the client.
HOLDERS = {"PlatformLinux/System/LinuxWifiClient.h", "PlatformLinux/System/LinuxWifiClient.cpp",
           "Wiring/LinuxMachine.cpp"}
# Decoders write the names; the composition alone reads them, and makes texts of them.
WRITERS = {FOLDER + name for name in (
    "InformationElements.cpp", "WifiBssMessage.cpp", "WifiInterfaceMessage.cpp")}
READER = FOLDER + "WifiComposition.cpp"
TEXTS = FOLDER + "WifiNames.h"
PRODUCT = {"Support", "Platform", "NetBase", "NetworkMonitor", "EchoService", "ViewTree",
           "NetworkWidgetVexExtension", "PlatformLinux", "PlatformDarwin", "Rendering",
           "WidgetService", "WidgetHost", "Wiring", "CommandLine", "ExtensionProgram"}

NAME = r"[\w.]+(?:->[\w.]+)*(?:\.|->)(?:ssid|bssid|peerAddress)\b"
USE = re.compile(NAME)
# Whether there is a name may be asked by everybody who holds the records.
PRESENCE = re.compile(rf"!{NAME}|(?:(?<=if \()|(?<=&& )|(?<=\|\| )){NAME}(?=\))"
                      rf"|{NAME}(?=\s*(?:\?|\|\||&&|\.has_value\(\)))")


def check(tree):
    """Findings of the whole tree."""
    reach = _Reach(tree)
    for file in tree.cpp_files:
        path = str(file.path)
        if file.room not in PRODUCT:
            continue
        for line, header in file.includes:
            yield from _check_include(file, path, line, header.strip('"<>'), reach)
        if file.room == "PlatformLinux" and path not in WRITERS | {READER}:
            yield from _check_uses(file)


def _check_include(file, path, line, header, reach):
    if header == TEXTS and path not in {READER, FOLDER + "WifiNames.cpp"}:
        yield file.finding(line, f"{header} makes texts of names; {READER} alone does, when the "
                           "user consents")
    if not path.startswith(FOLDER) and path not in HOLDERS and reach.raw(header):
        yield file.finding(line, f"{header} brings in names whatever the user's consent is; read "
                           f"{FOLDER}WifiReport.h")


def _check_uses(file):
    for number, line in enumerate(file.code.splitlines(), start=1):
        match = USE.search(PRESENCE.sub("", line))
        if match:
            yield file.finding(number, f'"{match.group()}" reads a name; {READER} alone does, when '
                               "the user consents")


class _Reach:
    """Which headers hold names, or include one that does."""

    def __init__(self, tree):
        self._tree = tree
        self._known = {}

    def raw(self, path):
        if path not in self._known:
            self._known[path] = path in RAW_RECORDS  # a cycle ends here
            file = self._tree.file(path)
            own = [header.strip('"') for _, header in file.includes
                   if header.startswith('"')] if file else []
            self._known[path] = self._known[path] or any(self.raw(header) for header in own)
        return self._known[path]
