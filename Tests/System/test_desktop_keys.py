"""What a user does to a card by the keyboard, and how the cards are brought before the windows."""

from accessible_test import LAST_ENTRY, AccessibleTest
from host_test import INTERNET, SwayTest, XTest
from process_tree import wait_until

GRID = 8
RED = "ff0000"


class KeyTests(AccessibleTest):
    """On either display."""

    def test_arrows_move_a_card_by_the_grid_and_it_stays_there(self):
        """To the next lines of the grid, each time."""
        host = self.begin()
        widget = self.widget(INTERNET)
        self.focus_card(widget)
        self.display.key("Left", "Left", "Down", "Up", "Up")
        left = (-(-widget["x"] // GRID) - 2) * GRID
        top = (widget["y"] // GRID - 1) * GRID
        wait_until(lambda: self.place() == (left, top), f"a move to {left}, {top}", 10)
        self.finish(host)
        self.begin()
        self.assertEqual((left, top), self.place())

    def place(self):
        widget = self.widget(INTERNET)
        return widget["x"], widget["y"]

    def test_the_delete_key_asks_before_it_removes(self):
        widget = self.ask_for_removal()
        self.press("Remove")
        self.assertNotIn(widget["id"], [each["id"] for each in self.wait_for_count(4)])
        wait_until(lambda: self.pixel(*self.middle(widget)) == self.display.background,
                   "an empty place")

    def test_a_removal_that_is_cancelled(self):
        self.ask_for_removal()
        self.press("Cancel")
        wait_until(lambda: not self.is_shown("Cancel"), "the end of the question", 10)
        self.assertEqual(5, len(self.widgets()))

    def ask_for_removal(self):
        """Of a widget, which is still there."""
        self.begin()
        widget = self.widget(INTERNET)
        self.focus_card(widget)
        self.display.key("Delete")
        wait_until(lambda: self.is_shown("Cancel"), "a question", 10)
        self.assertEqual(5, len(self.widgets()))
        return widget

    def test_a_second_show_raises_the_cards_until_escape(self):
        self.begin()
        widgets = self.widgets()
        middle = self.middle(widgets[0])
        self.ordinary_window(*self.display.size)
        wait_until(lambda: self.pixel(*middle) == RED, "a window above the widgets")
        done = self.show()
        self.assertEqual(0, done.returncode, done.stderr)
        for widget in widgets:
            wait_until(lambda: self.pixel(*self.middle(widget)) != RED, "a card above the window", 10)
        self.display.key("Escape")
        wait_until(lambda: self.pixel(*middle) == RED, "a window above the widgets", 10)


    def test_escape_cancels_a_removal(self):
        self.ask_for_removal()
        self.display.key("Escape")
        wait_until(lambda: not self.is_shown("Cancel"), "the end of the question", 10)
        self.assertEqual(5, len(self.widgets()))

    def test_escape_cancels_a_removal_of_a_raised_card(self):
        self.begin()
        self.assertEqual(0, self.show().returncode)
        wait_until(self.has_focus, "a card with the focus", 10)
        self.display.key("Delete")
        wait_until(lambda: self.is_shown("Cancel"), "a question", 10)
        self.display.key("Escape")
        wait_until(lambda: not self.is_shown("Cancel"), "the end of the question", 10)
        self.assertEqual(5, len(self.widgets()))


class XKeyTest(KeyTests, XTest):
    """Here one keyboard presses all keys, so that there can be a look between two of them."""

    def test_the_menu_key_opens_the_menu_and_escape_shuts_it(self):
        self.begin()
        before = self.widgets()
        self.focus_card(self.widget(INTERNET))
        self.display.key("Menu")
        wait_until(lambda: self.is_shown(LAST_ENTRY), "a menu", 10)
        self.display.key("Escape")
        wait_until(lambda: not self.is_shown(LAST_ENTRY), "the menu's end", 10)
        self.assertEqual(before, self.widgets())


class SwayKeyTest(KeyTests, SwayTest):
    pass
