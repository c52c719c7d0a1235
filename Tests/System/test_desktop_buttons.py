"""What a click on a card does: the refresh button asks anew, and the bandwidth tile shows the
traffic, in the main program or else in a window of the host's own."""

import re

from accessible_test import AccessibleTest, nodes
from host_process import PROGRAM
from host_test import BANDWIDTH, PANORAMIC, SwayTest, XTest
from link_handler import install_handler, install_handler_behind
from process_tree import wait_until
from traffic import Traffic

LINK = "net.quernaple.LanternfoldX://bandwidth-monitor?mini=1"
RATES = re.compile(r"Receiving ([\d.]+) (KB|MB)/s, sending ([\d.]+) (KB|MB)/s")
BYTES = {"KB": 1000, "MB": 1000_000}
RECEIVED, SENT = 800_000, 200_000
# Of the bandwidth monitor, as the tile opens it.
USUAL_WIDTH, WIDEST = 264, 440


class ButtonTests(AccessibleTest):
    """On either display."""

    def test_the_refresh_button_asks_anew(self):
        self.start_recorded_host()
        self.assert_all_shown(self.wait_for_widgets())
        performed, asked = len(self.asked("intent/perform")), len(self.asked())
        self.display.click(*self.middle_of("Refresh", PANORAMIC))
        wait_until(lambda: len(self.asked("intent/perform")) > performed, "a refresh", 10)
        wait_until(lambda: len(self.asked()) > asked, "a question", 10)
        self.assert_all_shown()

    def test_the_bandwidth_tile_shows_rates_of_traffic(self):
        self.begin()
        self.display.click(*self.middle_of("Bandwidth Monitor", BANDWIDTH))
        wait_until(self.rates, "the window with rates", 20)
        with Traffic("far0", RECEIVED), Traffic("en0", SENT):
            wait_until(lambda: self.is_about((RECEIVED, SENT)), "the rates of the traffic", 20)
        wait_until(lambda: self.rates() == (0, 0), "rest", 20)

    def rates(self):
        """Bytes a second received and sent, as the window says it."""
        for node in nodes(self.tree()):
            if found := RATES.search(node["description"]):
                received, received_unit, sent, sent_unit = found.groups()
                return float(received) * BYTES[received_unit], float(sent) * BYTES[sent_unit]
        return None

    def is_about(self, rates):
        """Not far off: a busy machine sends late what it has to send."""
        return all(0.6 * rate <= shown <= 1.6 * rate
                   for shown, rate in zip(self.rates() or (0, 0), rates))


class XButtonTest(ButtonTests, XTest):
    def test_a_main_program_opens_the_deep_link(self):
        self.assert_opened_in(install_handler(self.session.folder))

    def test_a_main_program_opens_it_also_when_no_user_has_chosen_one(self):
        """The host once opened a window of its own when it came first among those installed."""
        self.assert_opened_in(install_handler_behind(self.session.folder, PROGRAM))

    def assert_opened_in(self, opened):
        self.begin()
        self.display.click(*self.middle(self.widget(BANDWIDTH)))
        wait_until(lambda: opened.exists() and opened.read_text(), "the opened link", 10)
        self.assertEqual(LINK, opened.read_text().strip())

    def test_the_bandwidth_monitor_is_wide_enough_for_the_names_of_adapters(self):
        """The choice once had room for half of what stands in it. French takes more than the window's
        usual width."""
        self.start_host(LINK, LC_ALL="C.UTF-8", LANGUAGE="fr")

        def width():
            for window in self.titled("Moniteur de débit"):
                return self.display.frame(window)[2]
            return 0
        wait_until(lambda: width() > USUAL_WIDTH, "a wider window", 20)
        self.assertLessEqual(width(), WIDEST)


class SwayButtonTest(ButtonTests, SwayTest):
    pass
