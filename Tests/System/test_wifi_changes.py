"""What the program says of a machine's Wi-Fi after each change: radios, signal, power, country, the
access point, the switch, and no Wi-Fi at all."""

from radio_network import Network, until
from radio_machine import FIND_WLAN_NAME, PROGRAM, RADIOS
from radio_test import DATA, RadioTest

SWITCH = "/sys/class/net/wlan1/phy80211/rfkill*/soft"


class JoinedTest(RadioTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.network = Network()
        cls.air.offer_and_join(cls.network)

    def setUp(self):
        super().setUp()
        self.machine.run(self.air.until_joined())

    def test_the_signal_follows_the_access_points_power(self):
        for millibels, signal in ((2000, -30), (100, -49), (1500, -35)):
            self.air.access_point(f"iw dev wlan0 set txpower fixed {millibels}")
            self.machine.run(until(f"iw dev wlan1 link | grep -q 'signal: {signal} dBm'",
                                   "iw dev wlan1 link"))
            figures = self.assert_same_figures(f"signal of {signal} dBm")
            self.assertEqual(signal, figures["signalDbm"])

    def test_transmit_power(self):
        self.addCleanup(self.machine.run, "iw dev wlan1 set txpower auto")
        for millibels, milliwatts in ((0, 1), (500, 3), (1700, 50)):
            self.machine.run(f"iw dev wlan1 set txpower fixed {millibels}")
            figures = self.assert_same_figures(f"transmit power of {millibels / 100:g} dBm")
            self.assertEqual(milliwatts, figures["transmitPowerMilliwatts"])

    def test_bit_rates(self):
        self.addCleanup(self.machine.run, "iw dev wlan1 set bitrates")
        seen = set()
        for bitrates, told in (("vht-mcs-5 2:8", "VHT-NSS 2"), ("vht-mcs-5 1:0", "VHT-NSS 1")):
            self.machine.run(f"iw dev wlan1 set bitrates {bitrates}")
            self.air.talk(f"iw dev wlan1 link | grep -q 'tx bitrate:.*{told}'")
            figures = self.assert_same_figures(f"bit rates {bitrates}")
            seen.add(figures["transmitRateMegabits"])
        self.assertEqual(2, len(seen), seen)

    def test_the_access_point_goes_away_and_comes_back(self):
        self.machine.run("hostapd_cli -p /run/hostapd -i wlan0 disable >/dev/null")
        self.machine.run(until("iw dev wlan1 link | grep -q '^Not connected'", "iw dev wlan1 link"))
        wifi = self.assert_not_joined()
        self.assertEqual((None, None, None), tuple(
            wifi[name] for name in ("signalDbm", "transmitRateMegabits", "security")))
        self.machine.run("hostapd_cli -p /run/hostapd -i wlan0 enable >/dev/null")
        self.machine.run(self.air.until_joined())
        self.assert_same_figures("the access point is back")

    def test_the_switch_is_turned_off_and_on(self):
        self.machine.run(f"echo 1 | tee {SWITCH}")
        self.addCleanup(self.machine.run,
                        f"echo 0 | tee {SWITCH} && /usr/sbin/ip link set wlan1 up")
        self.machine.run(until("iw dev wlan1 link | grep -q '^Not connected'", "iw dev wlan1 link"))
        self.assert_not_joined(is_on=False)
        self.machine.run(f"echo 0 | tee {SWITCH} && /usr/sbin/ip link set wlan1 up")
        self.machine.run(self.air.until_joined())
        self.assert_same_figures("the switch is on again")

    def test_the_interface_is_taken_down_and_up(self):
        self.machine.run("/usr/sbin/ip link set wlan1 down")
        self.assert_not_joined(is_on=False)
        self.machine.run("/usr/sbin/ip link set wlan1 up")
        self.machine.run(self.air.until_joined())
        self.assert_same_figures("the interface is up again")

    def test_an_empty_network_namespace_has_no_wifi(self):
        through = "unshare -n"
        self.assertIsNone(self.wifi(through=through))
        self.assertIsNone(self.state(through=through))


class OtherInterfacesTest(RadioTest):
    def tearDown(self):
        # With the radios go all their interfaces, also the one of Wi-Fi Direct, which has no name
        # to delete it by.
        self.air.clear()
        super().tearDown()

    def radio(self):
        return "$(cat /sys/class/net/wlan1/phy80211/name)"

    def test_a_monitor_and_wifi_direct_are_never_chosen(self):
        # Made anew, the managed interface is the last one in the kernel's list.
        self.machine.run(f"""
            radio={self.radio()}
            iw dev wlan1 del && iw phy $radio interface add monitor0 type monitor &&
            iw phy $radio interface add direct0 type __p2pdev &&
            iw phy $radio interface add wlan1 type managed &&
            /usr/sbin/ip link set monitor0 up""")
        self.assertRegex(self.machine.run("iw dev"), "(?s)type monitor.*type P2P-device|"
                                                     "type P2P-device.*type monitor")
        self.assert_not_joined(is_on=False)
        network = Network(protection="open")
        self.air.offer(network)
        self.air.join(network)
        self.assert_same_figures("a monitor and Wi-Fi Direct beside")
        self.air.leave()

    def test_a_monitor_alone_is_no_wifi(self):
        self.machine.run(f"""
            iw phy {self.radio()} interface add monitor0 type monitor &&
            iw dev wlan1 set type monitor""")
        self.assertIsNone(self.wifi())
        self.assertIsNone(self.state())


class TwoRadiosTest(RadioTest):
    radios = 3

    def found(self, data, through=""):
        """The name of the Wi-Fi interface as the network path has it, or as the folder remembers."""
        return self.machine.run(f"{through} {FIND_WLAN_NAME} {data}").strip()

    def test_the_network_path_tells_the_interface_that_is_joined(self):
        self.machine.run("rm -rf /tmp/path-*")
        self.air.clear()
        self.assertEqual("none", self.found("/tmp/path-none"))
        network = Network(protection="open")
        self.air.offer(network)
        self.air.join(network, "wlan1")
        self.machine.run("/usr/sbin/ip address add 192.0.2.2/24 dev wlan1 && "
                         "/usr/sbin/ip route add default via 192.0.2.1 dev wlan1")
        self.assertEqual("wlan1", self.found("/tmp/path-joined"))
        self.machine.run(f"rmmod {RADIOS}")
        self.addCleanup(self.air.clear)
        self.assertEqual("none", self.found("/tmp/path-without-radios"))
        # That it had found none is not remembered, a name is.
        self.assertEqual("none", self.found("/tmp/path-none"))
        self.assertEqual("wlan1", self.found("/tmp/path-joined"))

    def test_the_second_radio_is_joined(self):
        self.assert_not_joined(is_on=False)
        self.air.offer_and_join(Network(protection="open"), "wlan2")
        self.assert_same_figures("the second of two radios", "wlan2")
        self.air.leave()
        self.assert_not_joined(is_on=False)


class CountryTest(RadioTest):
    def test_the_country_is_that_of_the_system(self):
        for code, country in (("DE", "DE"), ("JP", "JP"), ("00", None)):
            self.machine.run(f"iw reg set {code}\n" + until(
                f"iw reg get | grep -q '^country {code}:'", "iw reg get"))
            self.assertEqual(country, self.wifi()["countryCode"])


class NoWifiTest(RadioTest):
    def setUp(self):
        super().setUp()
        self.air.clear()

    def assert_no_wifi(self):
        self.assertIsNone(self.wifi())
        self.assertIsNone(self.state())
        self.assertEqual("No Wi-Fi.\n", self.machine.run(f"{PROGRAM} wifi --data-dir {DATA}"))

    def test_no_radio(self):
        self.machine.run(f"rmmod {RADIOS}")
        self.assertEqual("", self.machine.run("iw dev"))
        self.assert_no_wifi()

    def test_a_kernel_without_wifi(self):
        self.air.remove_wifi()
        self.addCleanup(self.air.bring_wifi)
        self.assertIn("nl80211 not found", self.machine.script("iw dev 2>&1").text)
        self.assert_no_wifi()
