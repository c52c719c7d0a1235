"""Every figure of a joined Wi-Fi network beside what iw and wpa_cli say, by how the network is
protected, on which channel it is, and which generation it speaks."""

from radio_network import Network
from radio_test import RadioTest


class ProtectionTest(RadioTest):
    def compare(self, protection, security):
        network = Network(protection=protection)
        self.air.offer_and_join(network)
        figures = self.assert_same_figures(protection)
        self.assertEqual(security, figures["security"])

    def test_open(self):
        self.compare("open", "none")

    def test_wpa_and_wpa2(self):
        self.compare("WPA and WPA2", "wpaPersonalMixed")

    def test_wpa2(self):
        self.compare("WPA2", "wpa2Personal")

    def test_wpa2_and_wpa3(self):
        self.compare("WPA2 and WPA3", "wpa3Transition")

    def test_wpa3(self):
        self.compare("WPA3", "wpa3Personal")

    def test_owe(self):
        self.compare("OWE", "owe")

    def test_wpa2_with_accounts(self):
        self.compare("WPA2 with accounts", "wpa2Enterprise")

    def test_wpa3_with_accounts(self):
        self.compare("WPA3 with accounts", "wpa3Enterprise")


class ChannelTest(RadioTest):
    def compare(self, phy_mode, channel, width, **more):
        network = Network(channel=channel, width=width, **more)
        self.air.offer_and_join(network)
        band = "5 GHz" if channel >= 36 else "2.4 GHz"
        figures = self.assert_same_figures(f"{band}, {width or 'no'} MHz, {phy_mode}")
        self.assertEqual(phy_mode, figures["activePHYMode"])
        self.assertEqual({"channelNumber": channel,
                          "channelBand": "band5GHz" if channel >= 36 else "band2GHz",
                          "channelWidth": f"width{width or 20}MHz"}, figures["channel"])

    def test_5_ghz_80_mhz(self):
        self.compare("mode11ac", 36, 80)

    def test_5_ghz_40_mhz(self):
        self.compare("mode11n", 36, 40)

    def test_5_ghz_20_mhz(self):
        self.compare("mode11n", 36, 20)

    def test_5_ghz_before_802_11n(self):
        self.compare("mode11a", 36, None)

    def test_2_4_ghz_20_mhz(self):
        self.compare("mode11n", 6, 20)

    def test_2_4_ghz_40_mhz(self):
        self.compare("mode11n", 6, 40)

    def test_2_4_ghz_before_802_11n(self):
        self.compare("mode11g", 6, None)

    def test_2_4_ghz_with_the_oldest_rates_alone(self):
        self.compare("mode11b", 6, None, only_oldest_rates=True)

    def test_frames_of_802_11ac_in_a_network_of_802_11ax(self):
        # wpa_cli tells what was agreed on, the program what is spoken: this kernel's own choice of
        # rates knows none of 802.11ax.
        self.air.offer_and_join(Network(speaks_ax=True))
        self.assertIn("wifi_generation=6", self.machine.run("wpa_cli -i wlan1 status"))
        self.air.talk("[ $(iw dev wlan1 link | grep -c 'bitrate:.*VHT-MCS') = 2 ]")
        figures = self.assert_same_figures("802.11ax agreed on, 802.11ac spoken",
                                           activePHYMode="mode11ac")
        self.assertEqual("vht", figures["transmitRate"]["generation"])
