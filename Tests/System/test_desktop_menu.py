"""What a user does through the menu of a card, by the keyboard and as a screen reader does it, and
the windows that it opens."""

from host_test import ADAPTER, APPLICATION, BANDWIDTH, INTERNET, XTest
from process_tree import wait_until
from program import run

LINK = "net.quernaple.LanternfoldX://bandwidth-monitor?mini=1"
HANDLER = """[Desktop Entry]
Type=Application
Name=Handler
Exec=sh -c "echo \\"$1\\" >> {log}" handler %u
MimeType=x-scheme-handler/net.quernaple.lanternfoldx;
"""


def names(tree):
    for node in tree:
        yield node["name"]
        yield from names(node["children"])


class MenuTest(XTest):
    def setUp(self):
        super().setUp()
        self.session.begin_accessibility()

    def begin(self):
        host = self.start_host()
        self.assert_all_shown(self.wait_for_widgets())
        return host

    def is_there(self, name):
        return name in names(self.session.accessible("tree", APPLICATION))

    def press(self, name):
        """What has that name, once it is there."""
        wait_until(lambda: self.is_there(name), f"\"{name}\"", 10)
        self.session.accessible("press", APPLICATION, name)

    def open_menu(self, kind):
        self.display.click(*self.empty_corner(self.widget(kind)), button=3)
        wait_until(lambda: self.is_there("Quit"), "a menu", 10)


class ChoiceTest(MenuTest):
    def test_a_size_is_chosen_by_the_keyboard(self):
        self.begin()
        self.display.click(*self.empty_corner(self.widget(INTERNET)))
        self.display.key("shift+F10", "Down", "Right", "Return")
        wait_until(lambda: self.widget(INTERNET)["family"] == "small", "the size", 10)

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
        wait_until(lambda: "Last update" in str(self.session.accessible("tree", APPLICATION)),
                   "the time")

    def test_a_widget_is_removed_and_added_again(self):
        host = self.begin()
        self.open_menu(BANDWIDTH)
        self.press("Remove")
        wait_until(lambda: len(self.widgets()) == 4, "the removal", 10)
        self.open_menu(INTERNET)
        self.press("Add widget…")
        self.press("Add: Bandwidth Monitor, Small")
        wait_until(lambda: len(self.widgets()) == 5, "the addition", 10)
        self.assertEqual("small", self.widget(BANDWIDTH)["family"])
        self.finish(host)

    def test_the_delete_key_asks_before_it_removes(self):
        self.begin()
        self.display.click(*self.empty_corner(self.widget(INTERNET)))
        self.display.key("Delete")
        wait_until(lambda: self.is_there("Cancel"), "a question", 10)
        self.assertEqual(5, len(self.widgets()))
        self.press("Cancel")
        self.display.click(*self.empty_corner(self.widget(INTERNET)))
        self.display.key("Delete")
        self.press("Remove")
        wait_until(lambda: len(self.widgets()) == 4, "the removal", 10)

    def test_arrows_move_a_card_by_the_grid(self):
        self.begin()
        before = self.widget(INTERNET)
        self.display.click(*self.empty_corner(before))
        self.display.key("Left", "Left", "Down")
        wait_until(lambda: self.widget(INTERNET)["x"] < before["x"], "a move", 10)
        wait_until(lambda: self.widget(INTERNET)["y"] > before["y"], "a move", 10)
        now = self.widget(INTERNET)
        wait_until(lambda: (now["x"], now["y"]) in self.card_windows(), "the window's move", 10)

    def test_the_menu_quits(self):
        host = self.begin()
        self.open_menu(INTERNET)
        self.press("Quit")
        self.assert_clean_end(host)


class ConsentTest(MenuTest):
    consent = None

    def status(self):
        done = run("location", "status", "--data-dir", str(self.data), env=self.environment)
        return done.stdout.decode().strip()

    def test_a_user_is_asked_once(self):
        host = self.start_host()
        self.wait_for_widgets()
        self.press("Don't allow")
        wait_until(lambda: self.status() == "denied", "the decision", 10)
        self.finish(host)
        self.start_host()
        self.assert_all_shown(self.wait_for_widgets())
        self.assertFalse(self.is_there("Don't allow"))

    def test_a_decision_is_revoked_in_the_menu(self):
        self.start_host()
        self.wait_for_widgets()
        self.press("Always")
        wait_until(lambda: self.status() == "authorizedAlways", "the decision", 10)
        self.open_menu(INTERNET)
        self.press("Don't show")
        wait_until(lambda: self.status() == "denied", "the decision", 10)


class LinkTest(MenuTest):
    def click(self):
        self.begin()
        self.display.click(*self.middle(self.widget(BANDWIDTH)))

    def test_a_main_program_opens_the_deep_link(self):
        folder = self.session.folder / "share" / "applications"
        folder.mkdir(parents=True)
        opened = self.session.folder / "opened"
        (folder / "handler.desktop").write_text(HANDLER.format(log=opened))
        for name, header in (("mimeapps.list", "Default Applications"), ("mimeinfo.cache",
                                                                           "MIME Cache")):
            (folder / name).write_text(
                f"[{header}]\nx-scheme-handler/net.quernaple.lanternfoldx=handler.desktop;\n")
        self.click()
        wait_until(opened.exists, "the opened link", 10)
        self.assertEqual(LINK.lower(), opened.read_text().strip().lower())

    def test_without_one_the_host_shows_the_traffic_itself(self):
        self.click()
        wait_until(lambda: self.is_monitor_shown(), "the window", 10)

    def is_monitor_shown(self):
        return any("_NET_WM_STATE_BELOW" not in self.display.properties(each)["_NET_WM_STATE"]
                   for each in self.display.windows())
