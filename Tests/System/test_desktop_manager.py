"""Cards that the window manager moves, by its own means."""

import time

from host_test import ADAPTER, SIZES
from process_tree import wait_until
from windows_test import XWindowsTest


class ManagerTest(XWindowsTest):
    def test_a_card_that_the_window_manager_moves_stays_there(self):
        self.begin()
        widget = self.widget(ADAPTER)
        x, y = self.empty_corner(widget)
        self.display.run("xdotool", "keydown", "alt")
        self.display.drag((x, y), (x - 501, y - 53))
        self.display.run("xdotool", "keyup", "alt")
        place = widget["x"] - 501, widget["y"] - 53
        wait_until(lambda: (self.widget(ADAPTER)["x"], self.widget(ADAPTER)["y"]) == place,
                   "the new place", 10)
        self.ctl("reload")
        time.sleep(2)  # for the answer, which once put it back
        self.assertIn(place, self.card_windows())
        self.finish_silently()

    def test_a_card_that_the_keyboard_moves_with_pauses_stays_where_it_ends(self):
        self.begin()
        widget = self.widget(ADAPTER)
        self.display.move(*self.empty_corner(widget))
        self.focus_card(widget)
        self.display.key("alt+F8")
        for _ in range(5):
            time.sleep(0.5)  # for the user, who looks where it is
            self.display.key("Left")
        time.sleep(1.5)
        self.display.key("Down")
        self.display.key("Return")
        self.display.run("xdotool", "mousemove", "1", "1")
        time.sleep(2)
        there = self.widget(ADAPTER)
        self.assertLess(there["x"], widget["x"])
        self.assertGreater(there["y"], widget["y"])
        self.assertIn((there["x"], there["y"]), self.card_windows())
        self.finish_silently()

    def test_a_card_that_the_keyboard_moves_stays_wherever_the_pointer_is(self):
        self.begin()
        widget = self.widget(ADAPTER)
        self.focus_card(widget)
        self.display.move(1, 1)
        self.display.key("alt+F8")
        time.sleep(2)  # for the user, who looks for the arrow keys
        for key in ("Left", "Left", "Down"):
            self.display.key(key)
            time.sleep(0.5)
        self.display.key("Return")
        there = wait_until(lambda: (found := self.widget(ADAPTER))["y"] > widget["y"] and found, "the new place", 10)
        self.assertLess(there["x"], widget["x"])
        self.ctl("reload")
        time.sleep(2)  # for the answer, with which it is placed
        self.assertIn((there["x"], there["y"]), self.card_windows())
        self.finish_silently()

    def test_a_card_that_was_put_off_the_work_area_comes_back(self):
        self.begin()
        widget = self.widget(ADAPTER)
        x, y = self.empty_corner(widget)
        self.display.run("xdotool", "keydown", "alt")
        self.display.drag((x, y), (x, self.display.size[1] - 1))
        self.display.run("xdotool", "keyup", "alt")
        bottom = self.display.size[1] - SIZES["medium"][1]
        wait_until(lambda: self.widget(ADAPTER)["y"] == bottom, "the new place", 10)
        wait_until(lambda: (widget["x"], bottom) in self.card_windows(), "the window there", 10)
        self.finish_silently()
