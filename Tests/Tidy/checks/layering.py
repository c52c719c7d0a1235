"""Every #include stays within what CMake/Rooms.cmake allows."""

import re

from rooms import ROOMS_FILE, read_fuzz_uses, read_rooms, read_test_uses
from tree import Finding

# Programs' wiring: the only rooms that see the production side of the seams.
COMPOSITION_ROOTS = {"Wiring", "CommandLine", "ExtensionProgram", "HostProgram"}
PRODUCTION_SIDE = "PlatformLinux"
# Rooms that may speak to the operating system itself.
OS_ROOMS = {PRODUCTION_SIDE} | COMPOSITION_ROOTS
# Folders of pure decoders: bytes in, records out.
DECODERS = ("PlatformLinux/Netlink/", "PlatformDarwin/")

OS_HEADER = re.compile(
    r"<(sys|net|netinet|netpacket|arpa|linux|asm|asm-generic)/.*>"
    r"|<(unistd|fcntl|poll|netdb|resolv|ifaddrs|dlfcn|pthread|sched|dirent|termios|spawn|pwd|grp|libmnl/libmnl)\.h>"
)
# Constants and layouts; what a decoder calls is checked apart.
DECODER_MAY_INCLUDE = {
    "PlatformLinux/Netlink/": re.compile(
        r"<linux/.*>|<net/if(_arp)?\.h>|<sys/socket\.h>|<libmnl/libmnl\.h>"),
    "PlatformDarwin/": re.compile(r"(?!)"),
}
REACHES_THE_SYSTEM = re.compile(
    r"\b(socket|bind|connect|recv|recvmsg|recvfrom|send|sendmsg|sendto|ioctl|getsockopt|setsockopt"
    r"|if_nametoindex|if_indextoname|mnl_socket_\w+)\s*\(|\bstd::(fstream|ifstream|ofstream|cout|cerr)\b")
# Conversions between addresses and texts are pure, and standard C++ has none.
PURE_OS_HEADERS = {"NetBase/AddressText.cpp": {"<arpa/inet.h>", "<sys/socket.h>"}}
# Which linked library a header comes from.
LIBRARY_HEADERS = [
    (re.compile(r"<nlohmann/"), "nlohmann_json::nlohmann_json"),
    (re.compile(r"<fmt/"), "fmt::fmt"),
    (re.compile(r"<CLI/"), "CLI11::CLI11"),
    (re.compile(r"<libmnl/"), "PkgConfig::mnl"),
    (re.compile(r"<curl/"), "PkgConfig::curl"),
    (re.compile(r"<libudev\.h>"), "PkgConfig::udev"),
    (re.compile(r"<resolv\.h>"), "resolv"),
    (re.compile(r"<asio(/|\.hpp)"), "Threads::Threads"),
    (re.compile(r"<(pango|fontconfig)/"), "PkgConfig::pangocairo"),
    (re.compile(r"<cairo"), "PkgConfig::cairo_surfaces"),
    (re.compile(r"<librsvg/"), "PkgConfig::rsvg"),
    (re.compile(r"<unicode/"), "PkgConfig::icu"),
    (re.compile(r"<glib(\.h|/)"), "PkgConfig::glib"),
    (re.compile(r"<(gtkmm|gdkmm|giomm|glibmm|gtk|gdk|gtk-layer-shell)(\.h|/)"), "PkgConfig::gtkmm"),
]


def check(tree):
    """Findings of the whole tree."""
    rooms = read_rooms(tree)
    yield from _check_declarations(rooms)
    allowed = _Allowed(tree, rooms)
    for file in tree.cpp_files:
        may_use = allowed.rooms_for(file)
        for line, header in file.includes:
            if header.startswith('"'):
                yield from _check_own(tree, file, line, header.strip('"'), may_use, rooms)
            elif file.room in rooms:
                yield from _check_system(file, line, header, rooms[file.room])
        yield from _check_decoder_calls(file)
    yield from _check_leaks(tree, rooms)


class _Allowed:
    """Which rooms the files of a folder may include."""

    def __init__(self, tree, rooms):
        self._rooms = rooms
        self._tests = read_test_uses(tree)
        self._fuzz = read_fuzz_uses(tree)

    def rooms_for(self, file):
        """Rooms and ROOM/FOLDERs; None when the folder is free to use all of them."""
        if file.room in self._rooms:
            return {file.room, *self._rooms[file.room].uses}
        if file.room == "Fuzz":
            return self._closure(self._fuzz.get(file.path.stem, [])) | {"Fuzz"}
        if file.room == "Tests":
            return self._rooms_for_test(file.path.parts[1])
        return None

    def _rooms_for_test(self, folder):
        fakes = {"NetworkMonitor", "NetBase", "Platform", "Support", "Tests"}
        if folder == "Support":
            return {*self._rooms, "Tests"} - {PRODUCTION_SIDE} - COMPOSITION_ROOTS
        if folder not in self._tests:
            return None
        return fakes | self._closure([folder, *self._tests[folder]])

    def _closure(self, names):
        found = set()
        for name in names:
            if name in self._rooms:
                found |= {name, *self._rooms[name].uses}
        return found


def _check_declarations(rooms):
    known = []
    for room in rooms.values():
        for used in room.uses:
            if used.split("/", 1)[0] not in known:
                yield Finding(ROOMS_FILE, room.line,
                              f"{room.name} uses {used}, which does not stand above it")
        if PRODUCTION_SIDE in {used.split("/", 1)[0] for used in room.uses} and room.name not in COMPOSITION_ROOTS:
            yield Finding(ROOMS_FILE, room.line,
                          f"{room.name} uses {PRODUCTION_SIDE}; only composition roots may")
        known.append(room.name)


def _check_own(tree, file, line, header, may_use, rooms):
    if tree.file(header) is None:
        yield file.finding(line, f'"{header}" is no file counted from the top of the tree')
        return
    room = header.split("/", 1)[0]
    if may_use is not None and not _is_covered(header, may_use):
        yield file.finding(line, f"{file.room} may not use {_used_name(header, may_use)} "
                           f"({ROOMS_FILE})")
    folder = "/".join(file.path.parts[:2])
    if room == "Tests" and file.room in rooms:
        yield file.finding(line, f"{folder} is product code and includes a test's header")


def _is_covered(header, may_use):
    """A list names a room, or as ROOM/FOLDER one folder of it."""
    return any(header.startswith(used + "/") for used in may_use)


def _used_name(header, may_use):
    """The room of the header; with its folder when only other folders of the room are allowed."""
    room, _, rest = header.partition("/")
    is_partly_allowed = any(used.startswith(room + "/") for used in may_use)
    return f"{room}/{rest.rpartition('/')[0]}".rstrip("/") if is_partly_allowed else room


def _check_system(file, line, header, room):
    if OS_HEADER.fullmatch(header):
        decoder = _decoder_folder(file)
        if decoder and not DECODER_MAY_INCLUDE[decoder].fullmatch(header):
            yield file.finding(line, f"{header} reaches the system; a decoder takes bytes and "
                               "returns records")
        elif (not decoder and room.name not in OS_ROOMS
              and header not in PURE_OS_HEADERS.get(str(file.path), ())):
            yield file.finding(line, f"{header} is a header of the operating system; {room.name} "
                               "sees the system through the seams in Platform/")
    for target in _targets(header):
        if target not in room.libraries:
            yield file.finding(line, f"{header} belongs to {target}, which {room.name} does not "
                               f"link ({ROOMS_FILE})")


def _check_decoder_calls(file):
    for number, line in enumerate(file.code.splitlines(), start=1):
        match = REACHES_THE_SYSTEM.search(line)
        if match and _decoder_folder(file):
            yield file.finding(number, f'"{match.group()}": a decoder takes bytes and returns '
                               "records; the transport stands in PlatformLinux/System/")


def _decoder_folder(file):
    return next((folder for folder in DECODERS if str(file.path).startswith(folder)), None)


def _targets(header):
    return [target for pattern, target in LIBRARY_HEADERS if pattern.match(header)]


def _check_leaks(tree, rooms):
    """A library stays behind the rooms that link it, also by way of their headers."""
    reached = _LibrariesByHeader(tree)
    for file in tree.cpp_files:
        room = rooms.get(file.room)
        if room is None:
            continue
        for line, header in file.includes:
            if not header.startswith('"') or header.strip('"').split("/", 1)[0] == file.room:
                continue
            for target in sorted(reached.libraries(header.strip('"')) - set(room.libraries)):
                yield file.finding(line, f"{header} brings in {target}, which {room.name} does not "
                                   "link; keep the library behind a .cpp file")


class _LibrariesByHeader:
    def __init__(self, tree):
        self._tree = tree
        self._known = {}

    def libraries(self, path):
        """The libraries that a header of the tree includes, directly or through others."""
        if path not in self._known:
            self._known[path] = set()  # a cycle ends here
            file = self._tree.file(path)
            found = set()
            for _, header in file.includes if file else []:
                found |= (self.libraries(header.strip('"')) if header.startswith('"')
                          else set(_targets(header)))
            self._known[path] = found
        return self._known[path]
