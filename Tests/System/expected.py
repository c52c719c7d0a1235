"""What the program should say of the present namespace, worked out from iproute2's answers."""

import ipaddress

from namespaces import ip_json

WITHHELD = "02:00:00:00:00:00"
NO_ADDRESS = "00:00:00:00:00:00"
NO_GATEWAY = "0.0.0.0"


def hardware_address(link):
    """Six bytes in upper case; none for none, for a withheld one and for another length."""
    text = link.get("address", "")
    is_shown = len(text) == 17 and text not in (WITHHELD, NO_ADDRESS)
    return text.upper() if is_shown else None


def gateways():
    """The gateway of each interface: of its default routes, the last in the kernel's order."""
    result = {}
    for route in ip_json("-4", "route", "show", "table", "main"):
        if route["dst"] != "default":
            continue
        for hop in route.get("nexthops", [route]):
            if "gateway" in hop:
                result[hop["dev"]] = hop["gateway"]
    return result


def addresses(link, gateway):
    for each in link["addr_info"]:
        if each["family"] == "inet":
            prefix = each["prefixlen"]
            yield {"address": each["local"],
                   "netmask": str(ipaddress.ip_network((0, prefix)).netmask),
                   "gateway": gateway, "cidr": f"{gateway}/{prefix}"}


def counters(link):
    received, sent = link["stats64"]["rx"], link["stats64"]["tx"]
    return {"sentBytes": sent["bytes"], "recvBytes": received["bytes"], "sentError": sent["errors"],
            "recvError": received["errors"], "sentPacket": sent["packets"],
            "recvPacket": received["packets"], "collisions": sent["collisions"],
            "mtu": link["mtu"]}


def record(link, listed, gateway, is_ethernet):
    ipv4 = list(addresses(listed, gateway))
    return {"active": bool(ipv4), "displayName": "Ethernet" if is_ethernet else link["ifname"],
            "metrics": counters(link), "name": link["ifname"],
            "type": "ethernet" if is_ethernet else "unknown", "supportsIPv4": bool(ipv4),
            "IPv4": ipv4, "supportsIPv6": False, "IPv6": [],
            "hwAddress": hardware_address(link)}


def interfaces(ethernet=()):
    """The records in order of name; `ethernet` are the links that the test made as adapters."""
    links = {link["ifname"]: link for link in ip_json("-d", "-s", "link")}
    listed = {link["ifname"]: link for link in ip_json("addr")}
    gateway_of = gateways()
    return [record(links[name], listed[name], gateway_of.get(name, NO_GATEWAY), name in ethernet)
            for name in sorted(links, key=lambda name: name.encode())]
