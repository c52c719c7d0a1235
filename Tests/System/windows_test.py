"""What the tests of windows beside the cards, and of what the window manager does with cards, begin
with."""

from displays import RIGHT
from host_test import XTest
from process_tree import wait_until


class XWindowsTest(XTest):
    """The five widgets beside openbox, and the other windows of the host found by their titles."""

    def begin(self):
        self.host = self.start_host()
        self.assert_all_shown(self.wait_for_widgets())

    def finish_silently(self):
        self.finish(self.host)
        self.assertEqual([], self.host.errors)

    def window_state(self, window):
        return self.display.properties(window).get("_NET_WM_STATE", "")

    def wait_for_window(self, title):
        return wait_until(lambda: self.titled(title), f"a window {title}", 10)[0]

    def wait_for_no_window(self, title):
        wait_until(lambda: not self.titled(title), f"no window {title}", 10)

    def card(self, widget):
        return self.card_windows()[widget["x"], widget["y"]]

    def focus_card(self, widget):
        self.display.focus(self.card(widget))

    def menus(self):
        """Windows that no window manager has: menus."""
        try:
            found = self.display.run("xdotool", "search", "--onlyvisible", "--class",
                                     "lanternfold").split()
            managed = set(self.display.windows())
            return [each for each in found if int(each) not in managed
                    and "MENU" in self.display.properties(each).get("_NET_WM_WINDOW_TYPE", "")]
        except AssertionError:  # one of them has gone meanwhile
            return self.menus()

    def open_menu(self, widget):
        self.display.click(*self.empty_corner(widget), button=RIGHT)
        return wait_until(self.menus, "a menu", 10)

    def choose(self, label):
        """Of an open menu, whose last entries are these."""
        last = ("Quit", "Wi-Fi names", "Add widget…", "Remove", "Refresh")
        self.display.key(*["Up"] * (last.index(label) + 1), "Return")
