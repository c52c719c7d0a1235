"""Networks of the machine with simulated radios: what an access point offers, and who joins it."""

from dataclasses import dataclass

from radio_kernel import RADIOS

# Of the kernel, each after what it needs.
WIFI_MODULES = ["rfkill", "cfg80211", "libarc4", "mac80211"]
# The access point's radio, and the namespace that it is in.
ACCESS_POINT = "wlan0"
NAMESPACE = "air"
INSIDE = f"/usr/sbin/ip netns exec {NAMESPACE}"
PASSWORD = "correct horse"
COUNTRY = "US"
# For each kind of protection: what the access point's settings say, and the supplicant's.
RSN = ["wpa=2", "rsn_pairwise=CCMP"]
ACCOUNTS = ["ieee8021x=1", "eap_server=1", "eap_user_file=/tmp/accounts"]
ACCOUNT = ['eap=PWD', 'identity="guest"', f'password="{PASSWORD}"']
PSK = [f'psk="{PASSWORD}"']
SAE = [f'sae_password="{PASSWORD}"', "ieee80211w=2"]
PROTECTIONS = {
    "open": ([], ["key_mgmt=NONE"]),
    "WPA and WPA2": (["wpa=3", "wpa_pairwise=TKIP", "rsn_pairwise=CCMP", "wpa_key_mgmt=WPA-PSK",
                      f"wpa_passphrase={PASSWORD}"], [*PSK, "key_mgmt=WPA-PSK"]),
    "WPA2": ([*RSN, "wpa_key_mgmt=WPA-PSK", f"wpa_passphrase={PASSWORD}"],
             [*PSK, "key_mgmt=WPA-PSK"]),
    "WPA2 and WPA3": ([*RSN, "wpa_key_mgmt=WPA-PSK SAE", f"wpa_passphrase={PASSWORD}",
                       "ieee80211w=1"], [*SAE, "key_mgmt=SAE"]),
    "WPA3": ([*RSN, "wpa_key_mgmt=SAE", f"sae_password={PASSWORD}", "ieee80211w=2"],
             [*SAE, "key_mgmt=SAE"]),
    "OWE": ([*RSN, "wpa_key_mgmt=OWE", "ieee80211w=2"], ["key_mgmt=OWE", "ieee80211w=2"]),
    "WPA2 with accounts": ([*RSN, "wpa_key_mgmt=WPA-EAP", *ACCOUNTS],
                           ["key_mgmt=WPA-EAP", *ACCOUNT]),
    "WPA3 with accounts": ([*RSN, "wpa_key_mgmt=WPA-EAP-SHA256", "ieee80211w=2", *ACCOUNTS],
                           ["key_mgmt=WPA-EAP-SHA256", "ieee80211w=2", *ACCOUNT]),
}


@dataclass(frozen=True)
class Network:
    """What an access point offers. A width of none: a network older than 802.11n."""

    name: bytes = b"Meadow"
    protection: str = "WPA2"
    channel: int = 36
    width: int | None = 80
    hidden: bool = False
    only_oldest_rates: bool = False
    speaks_ax: bool = False

    @property
    def frequency(self):
        return (5000 if self.channel >= 36 else 2407) + 5 * self.channel

    def access_point(self):
        """The settings of hostapd."""
        lines = [f"interface={ACCESS_POINT}", "driver=nl80211", "ctrl_interface=/run/hostapd",
                 f"ssid2={self.name.hex()}", f"country_code={COUNTRY}", "ieee80211d=1",
                 f"hw_mode={self._radio()}", f"channel={self.channel}", "wmm_enabled=1",
                 f"ignore_broadcast_ssid={int(self.hidden)}", *self._width(),
                 *PROTECTIONS[self.protection][0]]
        return "\n".join(lines) + "\n"

    def _radio(self):
        return "a" if self.channel >= 36 else "b" if self.only_oldest_rates else "g"

    def _width(self):
        if self.width is None:
            return []
        lines = ["ieee80211n=1"]
        if self.width >= 40:
            lines.append("ht_capab=[HT40+][SHORT-GI-20][SHORT-GI-40]")
        if self.width >= 80:
            # The centre of 80 MHz that begin with this channel.
            lines += ["ieee80211ac=1", "vht_oper_chwidth=1",
                      f"vht_oper_centr_freq_seg0_idx={self.channel + 6}"]
        if self.speaks_ax:
            lines += ["ieee80211ax=1", "he_oper_chwidth=1",
                      f"he_oper_centr_freq_seg0_idx={self.channel + 6}"]
        return lines

    def station(self):
        """The settings of wpa_supplicant, which looks at one channel only: that is quicker."""
        lines = ["ctrl_interface=/run/wpa_supplicant", f"country={COUNTRY}", "p2p_disabled=1",
                 "network={", f"ssid={self.name.hex()}", f"scan_ssid={int(self.hidden)}",
                 f"scan_freq={self.frequency}", f"freq_list={self.frequency}",
                 *PROTECTIONS[self.protection][1], "}"]
        return "\n".join(lines) + "\n"


class Air:
    """The radios of a machine: the first is the access point's, the others the machine's own."""

    def __init__(self, machine, radios=2):
        self.machine = machine
        self.radios = radios
        self.clear()

    def clear(self):
        """Radios that have seen no network yet: what one has seen of a former access point with the
        same address stays in its list for half a minute."""
        self.machine.run(f"{stop('wpa_supplicant')}\n{stop('hostapd')}")
        self.machine.load_radios(self.radios)
        # The numbers of radios are never used twice, the names of interfaces are.
        self.machine.run(f"""
            iw reg set {COUNTRY}
            /usr/sbin/ip netns delete {NAMESPACE} 2>/dev/null
            /usr/sbin/ip netns add {NAMESPACE} &&
            iw phy $(cat /sys/class/net/{ACCESS_POINT}/phy80211/name) set netns name {NAMESPACE} &&
            {INSIDE} sh -c 'echo 1 >/proc/sys/net/ipv6/conf/default/disable_ipv6;
                            /usr/sbin/ip link set lo up'""")

    def offer(self, network):
        """Starts the access point, once the former one is gone."""
        self._settings("access_point", network.access_point())
        self.machine.run(f"""
            {stop("wpa_supplicant")}
            {stop("hostapd")}
            printf '"guest" PWD "{PASSWORD}"\\n' >/tmp/accounts
            {INSIDE} hostapd -B -t -f /tmp/hostapd.log /shared/access_point.conf
            {until("grep -q AP-ENABLED /tmp/hostapd.log", "cat /tmp/hostapd.log")}""")

    def join(self, network, interface="wlan1"):
        """Starts the supplicant and waits until it has joined the network. What saves power sends
        frames of its own, slow ones, and with them changes the rates that the tests compare."""
        self._settings("station", network.station())
        self.machine.run(f"""
            {stop("wpa_supplicant")}
            wpa_supplicant -B -t -f /tmp/wpa.log -i {interface} -D nl80211 -c /shared/station.conf
            {self.until_joined(interface)}
            iw dev {interface} set power_save off""")

    def offer_and_join(self, network, interface="wlan1"):
        """The only network that the radios have seen."""
        self.clear()
        self.offer(network)
        self.join(network, interface)

    def remove_wifi(self):
        """Takes the radios out of the kernel, and all that it knows of Wi-Fi; what uses it ends."""
        self.machine.run(f"""
            {stop("wpa_supplicant")}
            {stop("hostapd")}
            rmmod {RADIOS} 2>/dev/null
            rmmod {' '.join(reversed(WIFI_MODULES))} && ! [ -e /sys/class/ieee80211 ]""")

    def bring_wifi(self):
        """Undoes it, without any radio; does nothing when it is there."""
        self.machine.run(f"""
            [ -e /sys/class/ieee80211 ] ||
            for each in {' '.join(WIFI_MODULES)}; do insmod /modules/$each.ko || exit; done""")

    def leave(self):
        """Ends the supplicant, and with it the connection."""
        self.machine.run(stop("wpa_supplicant"))

    def talk(self, condition, interface="wlan1"):
        """Exchanges frames with the access point until the condition holds: rates show in nothing
        else. Neither side has an address then that it could send another frame to, and the rates
        stay."""
        self.machine.run(f"""
            talk() {{
              {INSIDE} /usr/sbin/ip address replace 192.0.2.1/24 dev {ACCESS_POINT}
              /usr/sbin/ip address replace 192.0.2.2/24 dev {interface}
              ping -q -c 5 -i 0.05 -W 1 192.0.2.1 >/dev/null
              /usr/sbin/ip address flush dev {interface}
              {INSIDE} /usr/sbin/ip address flush dev {ACCESS_POINT}
            }}
            {until(f"talk; {condition}", f"iw dev {interface} station dump")}""")

    def access_point(self, command):
        """Runs a command where the access point is."""
        return self.machine.run(f"{INSIDE} {command}")

    def until_joined(self, interface="wlan1"):
        """A piece of script that waits for it."""
        return until(f"wpa_cli -i {interface} status | grep -q ^wpa_state=COMPLETED",
                     "cat /tmp/wpa.log /tmp/hostapd.log; dmesg | tail -n 20")

    def _settings(self, name, text):
        (self.machine.shared / f"{name}.conf").write_text(text)


def until(condition, complaint):
    """A piece of script that waits for a condition, and gives up after a long while."""
    return f"""
        tries=0
        until {condition}; do
          tries=$((tries + 1))
          if [ $tries -gt 150 ]; then {complaint}; exit 1; fi
          usleep 100000
        done"""


def stop(program):
    """A piece of script that ends a program and waits until it is gone."""
    return f"killall {program} 2>/dev/null\n" + until(f"! pidof {program} >/dev/null",
                                                      f"echo {program} does not end")
