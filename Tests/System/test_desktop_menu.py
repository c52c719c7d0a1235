"""What a user does through the menu of a card, by the pointer, by the keyboard and as a screen
reader does it; and the consent to Wi-Fi names, which is given and revoked there."""

import json

from accessible_test import AccessibleTest, nodes
from host_test import ADAPTER, BANDWIDTH, INTERNET, SwayTest, XTest
from namespaces import ip
from process_tree import wait_until
from program import run


class ChoiceTests(AccessibleTest):
    """On either display."""

    def test_a_size_is_chosen_by_its_name(self):
        self.begin()
        self.open_menu(INTERNET)
        self.press("Small")
        wait_until(lambda: self.widget(INTERNET)["family"] == "small", "the size", 10)
        self.open_menu(INTERNET)
        self.press("Medium")
        wait_until(lambda: self.widget(INTERNET)["family"] == "medium", "the size", 10)
        self.assert_shown(self.widget(INTERNET))

    def test_the_time_of_the_update_is_shown_on_demand(self):
        self.begin()
        self.open_menu(ADAPTER)
        self.press("Show time of update")
        wait_until(lambda: self.widget(ADAPTER)["configuration"].get("showTimestamp"), "the choice")
        wait_until(lambda: "Last update" in str(self.tree()), "the time")

    def test_a_widget_is_removed_and_added_again(self):
        host = self.begin()
        self.open_menu(BANDWIDTH)
        self.press("Remove")
        self.wait_for_count(4)
        self.open_menu(INTERNET)
        self.press("Add widget…")
        self.press("Add: Bandwidth Monitor, Small")
        self.wait_for_count(5)
        self.assertEqual("small", self.widget(BANDWIDTH)["family"])
        self.finish(host)

    def test_the_menu_quits(self):
        host = self.begin()
        self.open_menu(INTERNET)
        self.press("Quit")
        self.assert_clean_end(host)


class XChoiceTest(ChoiceTests, XTest):
    def test_a_size_is_chosen_by_the_keyboard(self):
        self.begin()
        self.focus_card(self.widget(INTERNET))
        self.display.key("shift+F10")
        wait_until(lambda: self.is_shown("Size"), "a menu", 10)
        self.display.key("Down", "Right")
        wait_until(lambda: self.is_shown("Small"), "the sizes", 10)
        self.display.key("Return")
        wait_until(lambda: self.widget(INTERNET)["family"] == "small", "the size", 10)

    def test_a_size_is_chosen_by_the_pointer(self):
        self.begin()
        self.open_menu(INTERNET)
        for name in ("Size", "Small"):
            self.display.click(*self.middle_of(name))
        wait_until(lambda: self.widget(INTERNET)["family"] == "small", "the size", 10)
        self.assert_shown(self.widget(INTERNET))


    def test_an_adapter_is_chosen_by_its_name(self):
        ip("link add en1 address 0a:00:00:00:00:03 arp off type veth peer name far1 arp off",
           "link set en1 up", "link set far1 up", "address add 198.51.100.2/24 dev en1")
        host = self.begin()
        self.assert_shown(self.widget(ADAPTER), arguments=("--adapter", "en0"))
        self.open_menu(ADAPTER)
        name = wait_until(self.name_of_the_other_adapter, "the other adapter", 10)
        self.press(name)
        chosen = {"identifier": "en1", "display": name}
        wait_until(lambda: self.widget(ADAPTER)["configuration"].get("adapter") == chosen, "the choice")
        self.assert_shown(self.widget(ADAPTER), arguments=("--adapter", "en1"))
        self.assertEqual([chosen], [each["configuration"]["adapter"]
                                    for each in json.loads(self.store.read_text())["widgets"]
                                    if "adapter" in each.get("configuration", {})])
        self.finish(host)

    def name_of_the_other_adapter(self):
        return next((each["name"] for each in nodes(self.tree())
                     if each["name"].endswith("(en1)") or each["name"] == "en1"), None)


class SwayChoiceTest(ChoiceTests, SwayTest):
    def test_a_size_is_chosen_by_the_keyboard(self):
        """By one keyboard: a menu goes when that from which its keys come does."""
        self.begin()
        self.focus_card(self.widget(INTERNET))
        self.display.key("shift+F10", "Down", "Right", "Return")
        wait_until(lambda: self.widget(INTERNET)["family"] == "small", "the size", 10)


class ConsentTest(AccessibleTest, XTest):
    consent = None

    def status(self):
        done = run("location", "status", "--data-dir", str(self.data), env=self.environment)
        return done.stdout.decode().strip()

    def test_a_decision_is_made_and_revoked_in_the_menu(self):
        self.start_host()
        self.wait_for_widgets()
        for choice, decision in (("Always show", "authorizedAlways"), ("Don't show", "denied")):
            self.open_menu(INTERNET)
            self.press(choice)
            wait_until(lambda wanted=decision: self.status() == wanted, "the decision", 10)
