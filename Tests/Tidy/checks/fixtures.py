"""Test data names nobody's machine: addresses come from ranges that belong to no one."""

import ipaddress
import re

CHECKED_FOLDERS = {"Tests", "Fuzz", "Benchmarks", "Docs"}

# Values that the sample states of the product itself show.
SAMPLES = {"12.34.56.78", "8.8.8.8", "8.8.4.4"}

IPV4 = re.compile(r"(?<![\w.])(\d{1,3}(?:\.\d{1,3}){3})(?![\w.]*\w)")
IPV6 = re.compile(r"(?<![\w:.])((?:[0-9A-Fa-f]{1,4})?(?::[0-9A-Fa-f]{0,4}){2,8})(?![\w:])")
MAC = re.compile(r"(?<![\w:])([0-9A-Fa-f]{2}(?::[0-9A-Fa-f]{2}){5})(?![\w:])")

IPV6_FOR_DOCUMENTS = ipaddress.ip_network("2001:db8::/32")
MAC_FOR_DOCUMENTS = "00:00:5e:00:53:"


def check(tree):
    """Findings of the whole tree."""
    for file in tree.text_files:
        if file.room not in CHECKED_FOLDERS and str(file.path) != "README.md":
            continue
        if str(file.path).startswith("Tests/Tidy/"):
            continue
        for number, line in enumerate(file.lines, start=1):
            for literal in real_literals(line):
                yield file.finding(number, f"{literal} may be somebody's; use 192.0.2.0/24, "
                                   "198.51.100.0/24, 203.0.113.0/24, 2001:db8::/32 or a locally "
                                   "administered hardware address")


def real_literals(line):
    """The addresses of a line that may belong to somebody."""
    for match in IPV4.finditer(line):
        if match.group(1) not in SAMPLES and _is_global(match.group(1)):
            yield match.group(1)
    for match in MAC.finditer(line):
        if not _is_invented_mac(match.group(1).lower()):
            yield match.group(1)
    for match in IPV6.finditer(line):
        if not MAC.fullmatch(match.group(1)) and _is_global(match.group(1)):
            yield match.group(1)


def _is_global(literal):
    try:
        address = ipaddress.ip_address(literal)
    except ValueError:
        return False
    if address.version == 6:
        return address in ipaddress.ip_network("2000::/3") and address not in IPV6_FOR_DOCUMENTS
    return address.is_global and not address.is_multicast


def _is_invented_mac(mac):
    first = int(mac[:2], 16)
    locally_administered_or_group = first & 0b11 != 0
    return locally_administered_or_group or mac == "00:00:00:00:00:00" or mac.startswith(
        MAC_FOR_DOCUMENTS)
