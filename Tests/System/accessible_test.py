"""For tests that find what is on the screen by the names that a screen reader is told."""

from displays import RIGHT
from host_test import ADAPTER, APPLICATION, BANDWIDTH, INTERNET, PANORAMIC, WIFI
from process_tree import wait_until

NAMES = {PANORAMIC: "Panoramic", INTERNET: "Internet", ADAPTER: "Network Adapter",
         BANDWIDTH: "Bandwidth Monitor", WIFI: "WiFi"}
# The last entry of every menu.
LAST_ENTRY = "Quit"


def nodes(tree):
    for node in tree:
        yield node
        yield from nodes(node["children"])


class AccessibleTest:
    """Beside one of the tests of host_test.py."""

    def setUp(self):
        super().setUp()
        self.session.begin_accessibility()

    def begin(self):
        """The host, once all widgets are there."""
        host = self.start_host()
        self.assert_all_shown(self.wait_for_widgets())
        return host

    def tree(self):
        return self.session.accessible("tree", APPLICATION)

    def is_there(self, name):
        return any(each["name"] == name for each in nodes(self.tree()))

    def is_shown(self, name):
        return bool(self.session.accessible("places", APPLICATION, name))

    def press(self, name):
        """As a screen reader does it, once something has that name."""
        wait_until(lambda: self.is_there(name), f"\"{name}\"", 10)
        self.session.accessible("press", APPLICATION, name)

    def middle_of(self, name, kind=None):
        """Where on the screen what has that name is, once it is shown; in the card of that kind if
        one is named."""
        widget = self.widget(kind) if kind else None

        def look():
            return [place for window, *place in self.session.accessible("places", APPLICATION, name)
                    if not kind or window == NAMES[kind]]
        (left, top, width, height), *_ = wait_until(look, f"\"{name}\"", 10)
        x, y = self.origin(widget)
        return x + left + width // 2, y + top + height // 2

    def focus_card(self, widget):
        self.display.click(*self.empty_corner(widget))
        wait_until(self.has_focus, "a card with the focus", 10)

    def has_focus(self):
        return any("FOCUSED" in each["states"] for each in nodes(self.tree()))

    def open_menu(self, kind):
        self.display.click(*self.empty_corner(self.widget(kind)), button=RIGHT)
        wait_until(lambda: self.is_shown(LAST_ENTRY), "a menu", 10)

    def wait_for_count(self, count):
        """The widgets, once there are so many."""
        return self.wait_for_widgets(count, 10)
