"""What iw and wpa_cli say of a joined network, in the figures of the program under test.

The names of the figures are those of `wifi --json`; a figure that is not told is None.
"""

import re

# What an interface is asked; each answer is a section of what `RadioMachine.sections` gives.
QUESTIONS = {
    "link": "iw dev {0} link",
    "info": "iw dev {0} info",
    "station": "iw dev {0} station dump",
    "survey": "iw dev {0} survey dump",
    "scan": "iw dev {0} scan dump",
    "country": "iw reg get",
    "status": "wpa_cli -i {0} status",
    "signal": "wpa_cli -i {0} signal_poll",
    "cell": "wpa_cli -i {0} bss current",
}
SECURITIES = {
    frozenset(): "none",
    frozenset({"WPA-PSK", "WPA2-PSK"}): "wpaPersonalMixed",
    frozenset({"WPA2-PSK"}): "wpa2Personal",
    frozenset({"WPA2-PSK", "WPA2-SAE"}): "wpa3Transition",
    frozenset({"WPA2-SAE"}): "wpa3Personal",
    frozenset({"WPA2-OWE"}): "owe",
    frozenset({"WPA2-EAP"}): "wpa2Enterprise",
    frozenset({"WPA2-EAP-SHA256"}): "wpa3Enterprise",
}
SECURITY_TEXTS = {"none": "None",
                  "wpaPersonalMixed": "WPA Personal Mixed", "wpa2Personal": "WPA 2 Personal",
                  "wpa3Transition": "WPA 3 Transition", "wpa3Personal": "WPA 3 Personal",
                  "owe": "N/A", "wpa2Enterprise": "WPA 2 Enterprise",
                  "wpa3Enterprise": "WPA 3 Enterprise"}
PHY_MODES = {"4": "mode11n", "5": "mode11ac", "6": "mode11ax"}
PHY_TEXTS = {"mode11a": "802.11a", "mode11b": "802.11b", "mode11g": "802.11g",
             "mode11n": "802.11n", "mode11ac": "802.11ac", "mode11ax": "N/A"}
# How the program writes what iw writes in another way.
SUITES = {"CCMP": "CCMP-128", "TKIP": "TKIP", "PSK": "PSK", "SAE": "SAE", "OWE": "OWE",
          "IEEE 802.1X": "802.1X", "IEEE 802.1X/SHA-256": "802.1X-SHA256", "00-0f-ac:18": "OWE"}
OLDEST_RATES = {2, 4, 11, 22}  # 500 kbit/s
GUARD_INTERVALS = {False: 800, True: 400}


def theirs(said):
    """The figures of a joined network, each from whoever tells it in the plainest way."""
    status, signal = pairs(said["status"]), pairs(said["signal"])
    frequency = number(r"^\s*freq: (\d+)", said["link"])
    rate = rate_of("tx", said["link"])
    dbm = number(r"^\s*txpower ([\d.-]+) dBm", said["info"], float)
    return {
        "interface": find(r"^Interface (\S+)", said["info"]),
        "interfaceIndex": number(r"^\s*ifindex (\d+)", said["info"]),
        "radioIndex": number(r"^\s*wiphy (\d+)", said["info"]),
        "hardwareAddress": find(r"^\s*addr (\S+)", said["info"]),
        "interfaceMode": {"managed": "station"}.get(find(r"^\s*type (\S+)", said["info"])),
        "isJoined": status.get("wpa_state") == "COMPLETED",
        "ssid": shown(unescaped(find(r"^\s*SSID: (.*)$", said["link"]))),
        "bssid": find(r"^Connected to (\S+)", said["link"]),
        "activePHYMode": phy_mode(status, frequency, said["cell"]),
        "security": SECURITIES[ways_in(pairs(said["cell"])["flags"])],
        "channel": channel_of(said["info"]),
        "frequencyMegahertz": frequency,
        "widthMegahertz": number(r"width: (\d+) MHz", said["info"]),
        "center1Megahertz": number(r"center1: (\d+) MHz", said["info"]),
        "signalDbm": int(signal["RSSI"]),
        "signalAverageDbm": int(signal["AVG_RSSI"]),
        "noiseDbm": noise_in_use(said["survey"]),
        "transmitPowerDbm": dbm,
        "transmitPowerMilliwatts": round(10 ** (dbm / 10)),
        "transmitRate": rate,
        "receiveRate": rate_of("rx", said["link"]),
        "transmitRateMegabits": rate["megabits"],
        "expectedThroughput": find(r"expected throughput:\s*(\S+)", said["station"]),
        "countryCode": country(said["country"]),
        "rsn": protection_of("RSN", said["scan"]),
        "wpa": protection_of("WPA", said["scan"]),
    }


def contradictions(said):
    """Where iw says one thing and wpa_cli another, as name and both values."""
    status, signal = pairs(said["status"]), pairs(said["signal"])
    of_iw = theirs(said)
    return [(name, one, other) for name, one, other in (
        ("ssid", of_iw["ssid"], shown(unescaped(status["ssid"]))),
        ("bssid", of_iw["bssid"], status["bssid"]),
        ("hardwareAddress", of_iw["hardwareAddress"], status["address"]),
        ("frequencyMegahertz", str(of_iw["frequencyMegahertz"]), status["freq"]),
        ("signalDbm", str(of_iw["signalDbm"]), find(r"^\s*signal: (-?\d+) dBm", said["link"])),
        ("widthMegahertz", f"{of_iw['widthMegahertz']} MHz",
         signal.get("WIDTH", "20 MHz").removesuffix(" (no HT)")),
        ("transmitRateMegabits", int(of_iw["transmitRateMegabits"]), int(signal["LINKSPEED"])),
    ) if one != other]


def pairs(text):
    return dict(line.split("=", 1) for line in text.splitlines() if "=" in line)


def find(pattern, text):
    match = re.search(pattern, text, re.MULTILINE)
    return match and match.group(1)


def number(pattern, text, kind=int):
    found = find(pattern, text)
    return None if found is None else kind(found)


def unescaped(text):
    """The bytes of a name that iw or wpa_cli wrote; both write \\xNN for what is not ASCII."""
    named = {"\\": b"\\", '"': b'"', "n": b"\n", "r": b"\r", "t": b"\t", "e": b"\x1b"}
    def one(match):
        return (bytes.fromhex(match.group(2)) if match.group(2) else named[match.group(3)]
                if match.group(3) else match.group(0).encode())
    return b"".join(one(match) for match in re.finditer(r'\\(x(..)|(.))|[^\\]', text, re.DOTALL))


def shown(name):
    """A network's name as the program shows it: what is no UTF-8, and control characters, as \\xNN."""
    text = name.decode(errors="surrogateescape")
    return "".join(escaped(character) if is_control(character) else character
                   for character in text)


def is_control(character):
    return (ord(character) < 0x20 or 0x7F <= ord(character) < 0xA0
            or "\u2028" <= character <= "\u202e" or "\u2066" <= character <= "\u2069"
            or 0xDC80 <= ord(character) <= 0xDCFF)


def escaped(character):
    return "".join(f"\\x{byte:02x}" for byte in character.encode(errors="surrogateescape"))


def phy_mode(status, frequency, cell):
    if "wifi_generation" in status:
        return PHY_MODES[status["wifi_generation"]]
    if frequency > 5000:
        return "mode11a"
    rates = {byte & 0x7F for kind, body in elements(pairs(cell)["ie"]) if kind in (1, 50)
             for byte in body}
    return "mode11b" if rates <= OLDEST_RATES else "mode11g"


def elements(text):
    """The information elements of a network, from their hexadecimal digits: kind and contents."""
    rest = bytes.fromhex(text)
    while rest:
        yield rest[0], rest[2:2 + rest[1]]
        rest = rest[2 + rest[1]:]


def ways_in(flags):
    """What a network offers, from wpa_cli's "[WPA2-PSK+SAE-CCMP][ESS]"."""
    ways = set()
    for generation, suites in re.findall(r"\[(WPA2?)-(.+?)-(?:CCMP|TKIP)[^]]*\]", flags):
        ways |= {f"{generation}-{suite}" for suite in suites.split("+")}
    return frozenset(ways)


def channel_of(info):
    match = re.search(r"channel (\d+) \((\d+) MHz\), width: (\d+) MHz", info)
    if match is None:
        return None
    bands = {"2": "band2GHz", "5": "band5GHz"}
    return {"channelNumber": int(match.group(1)), "channelBand": bands[match.group(2)[0]],
            "channelWidth": f"width{match.group(3)}MHz"}


def noise_in_use(survey):
    """Of the channel that the radio stands on; what it measured on others is old."""
    for channel in survey.split("Survey data from")[1:]:
        if "[in use]" in channel:
            return number(r"noise:\s*(-?\d+) dBm", channel)
    return None


def rate_of(direction, link):
    """A rate with how it comes about, from iw's "tx bitrate: 866.7 MBit/s VHT-MCS 9 80MHz short GI
    VHT-NSS 2"."""
    text = find(rf"^\s*{direction} bitrate: (.*)$", link)
    if text is None:
        return None
    modulation = number(r"MCS (\d+)", text)
    generation = "vht" if "VHT-MCS" in text else "legacy" if modulation is None else "ht"
    streams = number(r"VHT-NSS (\d+)", text)
    if generation == "ht":
        streams = modulation // 8 + 1
    return {"megabits": number(r"^([\d.]+) MBit/s", text, float), "generation": generation,
            "modulation": modulation, "streams": streams,
            "widthMegahertz": number(r"\b(\d+)MHz", text) or 20,
            "guardIntervalNanoseconds":
                None if generation == "legacy" else GUARD_INTERVALS["short GI" in text]}


def throughput_text(kilobits):
    """What iw makes of so many kbit/s: it divides by 1024, and writes no zeros behind the point."""
    if kilobits is None:
        return None
    thousandths = kilobits * 1000 // 1024
    return f"{thousandths // 1000}.{thousandths % 1000}Mbps"


def country(rules):
    """Of the system: the radios have no rules of their own."""
    code = find(r"^global\ncountry (..):", rules)
    return code if code.isalpha() else None


def protection_of(kind, scan):
    """The suites of the joined network, from iw's list under "RSN:" or "WPA:"."""
    cell = next(each for each in re.split(r"^(?=BSS )", scan, flags=re.MULTILINE)
                if "-- associated" in each)
    match = re.search(rf"^\t{kind}:(.*\n(?:\t\t.*\n)*)", cell, re.MULTILINE)
    if match is None:
        return None
    suites = {name: [SUITES[suite] for suite in re.findall(r"IEEE 802\.1X\S*|\S+", listed)]
              for name, listed in re.findall(r"\* ([^:\n]+): (.*)", match.group(1))
              if "suites" in name or "cipher" in name}
    return {"authentications": suites["Authentication suites"],
            "pairwiseCiphers": suites["Pairwise ciphers"],
            "groupCipher": suites["Group cipher"][0],
            "offersManagementProtection": "MFP-capable" in match.group(1),
            "requiresManagementProtection": "MFP-required" in match.group(1)}


def texts_of(figures):
    """What the widgets say of the same figures: the network's record in `state --json`."""
    channel = figures["channel"]
    band = {"band2GHz": "2.4GHz", "band5GHz": "5GHz"}[channel["channelBand"]]
    return {
        "ssid": figures["ssid"],
        "bssid": figures["bssid"],
        "metrics": {
            "PHYMode": PHY_TEXTS[figures["activePHYMode"]],
            "countryCode": figures["countryCode"] or "N/A",
            "security": SECURITY_TEXTS[figures["security"]],
            "channel": f"{channel['channelNumber']} ({band}, "
                       f"{channel['channelWidth'].removeprefix('width')})",
            "rssi": figures["signalDbm"],
            "noise": figures["noiseDbm"] or 0,
            "transmitPower": figures["transmitPowerMilliwatts"],
            "transmitRate": figures["transmitRateMegabits"],
        },
    }
