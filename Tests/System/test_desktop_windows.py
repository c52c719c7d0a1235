"""The windows beside the cards, and when they come and go: menus, questions, the gallery and the
bandwidth monitor."""

import os
import subprocess
import time

from host_process import ctl, host_beside
from host_test import ADAPTER, BANDWIDTH, PANORAMIC, SwayTest
from process_tree import wait_until
from windows_test import XWindowsTest

QUESTION = "Remove widget"
GALLERY = "Add widget"
MONITOR = "Bandwidth Monitor"
ROUNDS = 12


class WindowsTest(XWindowsTest):
    def start_host_of_late_extension(self):
        """Its extension says nothing before there is the file that is returned."""
        signal = self.session.folder / "signal"
        self.host = self.start_host(
            program=host_beside(self.session.folder / "late", "late_extension.py"),
            LANTERNFOLD_SIGNAL=str(signal),
            LANTERNFOLD_WIDGET_EXTENSION=os.environ["LANTERNFOLD_WIDGET_EXTENSION"])
        return signal

    # What goes with its widget

    def test_a_menu_goes_with_its_widget(self):
        self.begin()
        widget = self.widget(ADAPTER)
        self.open_menu(widget)
        self.ctl("remove", widget["id"])
        wait_until(lambda: not self.menus(), "no menu", 10)
        self.open_menu(self.widget(PANORAMIC))
        self.display.key("Escape")
        self.finish_silently()

    def test_a_widget_may_go_while_its_menu_is_prepared(self):
        self.begin()
        for _ in range(ROUNDS):
            widget = self.widget(ADAPTER)
            self.focus_card(widget)
            key = subprocess.Popen(["xdotool", "key", "Menu"], env=self.environment)
            self.ctl("remove", widget["id"])
            self.assertEqual(0, key.wait(timeout=10))
            self.ctl("add", ADAPTER)
            wait_until(lambda: (self.widget(ADAPTER)["x"], self.widget(ADAPTER)["y"])
                       in self.card_windows(), "the new window", 10)
            self.display.key("Escape")
        self.finish_silently()

    def test_a_question_goes_with_its_widget(self):
        self.begin()
        widget = self.widget(ADAPTER)
        self.focus_card(widget)
        self.display.key("Delete")
        self.wait_for_window(QUESTION)
        self.ctl("remove", widget["id"])
        self.wait_for_no_window(QUESTION)
        self.finish_silently()

    # Questions

    def test_delete_pressed_again_asks_no_second_time(self):
        self.begin()
        widget = self.widget(ADAPTER)
        for _ in range(3):
            self.focus_card(widget)
            self.display.key("Delete")
            self.wait_for_window(QUESTION)
        self.assertEqual(1, len(self.titled(QUESTION)))
        self.display.focus(self.titled(QUESTION)[0])
        self.display.key("Return")
        self.wait_for_widgets(4)
        self.wait_for_no_window(QUESTION)
        self.finish_silently()

    def test_a_card_that_is_closed_stays_until_the_user_says_so(self):
        self.begin()
        widget = self.widget(ADAPTER)
        self.focus_card(widget)
        self.display.key("alt+F4")
        self.wait_for_window(QUESTION)
        self.display.key("Escape")
        self.wait_for_no_window(QUESTION)
        self.assert_all_shown()
        self.assertEqual(5, len(self.widgets()))
        self.finish_silently()

    def test_a_question_about_what_becomes_the_last_one_says_so(self):
        self.begin()
        widget = self.widget(ADAPTER)
        self.focus_card(widget)
        self.display.key("Delete")
        height = self.display.frame(self.wait_for_window(QUESTION))[3]
        for each in self.widgets():
            if each["id"] != widget["id"]:
                self.ctl("remove", each["id"])
        wait_until(lambda: [each for each in self.titled(QUESTION)
                            if self.display.frame(each)[3] > height], "a longer question", 10)
        self.assertEqual(1, len(self.titled(QUESTION)))
        self.display.focus(self.titled(QUESTION)[0])
        self.display.key("Return")
        wait_until(lambda: not self.widgets(), "an empty desktop", 10)
        self.finish_silently()

    def test_a_question_about_what_is_not_the_last_one_any_more_does_not_say_so(self):
        self.begin()
        widget = self.widget(ADAPTER)
        for each in self.widgets():
            if each["id"] != widget["id"]:
                self.ctl("remove", each["id"])
        wait_until(lambda: len(self.card_windows()) == 1, "one card", 10)
        self.focus_card(widget)
        self.display.key("Delete")
        height = self.display.frame(self.wait_for_window(QUESTION))[3]
        self.ctl("add", BANDWIDTH)
        wait_until(lambda: [each for each in self.titled(QUESTION)
                            if self.display.frame(each)[3] < height], "a shorter question", 10)
        self.assertEqual(1, len(self.titled(QUESTION)))
        self.ctl("remove", self.widget(BANDWIDTH)["id"])
        wait_until(lambda: [each for each in self.titled(QUESTION)
                            if self.display.frame(each)[3] == height], "the longer question", 10)
        self.finish_silently()

    def test_the_last_widget_goes_with_a_word_of_how_to_get_others(self):
        self.begin()
        for widget in self.widgets():
            if widget["kind"] != BANDWIDTH:
                self.ctl("remove", widget["id"])
        wait_until(lambda: len(self.card_windows()) == 1, "one card", 10)
        self.open_menu(self.widget(BANDWIDTH))
        self.choose("Remove")
        self.wait_for_window(QUESTION)
        self.display.key("Return")
        wait_until(lambda: not self.widgets(), "an empty desktop", 10)
        self.assertEqual([], self.titled(GALLERY))
        self.assertEqual(0, self.show().returncode)
        self.wait_for_window(GALLERY)
        self.finish_silently()

    # The gallery

    def test_a_gallery_that_is_closed_opens_again(self):
        self.begin()
        widget = self.widget(ADAPTER)
        for _ in range(3):
            self.open_menu(widget)
            self.choose("Add widget…")
            self.wait_for_window(GALLERY)
            self.display.key("Escape")
            self.wait_for_no_window(GALLERY)
        self.finish_silently()

    def test_a_gallery_that_is_open_shows_the_widgets_that_become_known(self):
        self.begin()
        widget = self.widget(ADAPTER)
        self.finish(self.host)
        signal = self.start_host_of_late_extension()
        self.wait_for_widgets()
        wait_until(lambda: (widget["x"], widget["y"]) in self.card_windows(), "the card", 10)
        self.open_menu(widget)
        self.choose("Add widget…")
        self.assert_gallery_learns(signal)
        self.finish_silently()

    def test_a_second_show_on_an_empty_desktop_opens_a_gallery_that_knows_no_widgets_yet(self):
        self.begin()
        for widget in self.widgets():
            self.ctl("remove", widget["id"])
        self.finish(self.host)
        signal = self.start_host_of_late_extension()
        wait_until(lambda: ctl(self.environment, "list").returncode == 0, "the host", 30)
        shown = self.show()
        self.assertEqual(0, shown.returncode)
        self.assertIn(b'"Add widget" opens where there are none', shown.stdout)
        self.assert_gallery_learns(signal)
        self.finish_with_word_of_no_widgets()

    def assert_gallery_learns(self, signal):
        """The open gallery is empty, and shows a preview once the extension has been let go on."""
        gallery = self.wait_for_window(GALLERY)
        left, top, _, _ = self.display.frame(gallery)
        first_preview = left + 60, top + 180
        empty = self.pixel(*first_preview)
        signal.touch()
        wait_until(lambda: self.pixel(*first_preview) != empty, "a preview", 20)
        self.assertEqual([gallery], self.titled(GALLERY))

    def finish_with_word_of_no_widgets(self):
        """Which the host has given once, at its start."""
        self.finish(self.host)
        line, = self.host.errors
        self.assertIn("there are no widgets on the desktop", line)

    def test_a_start_without_widgets_says_how_to_get_some(self):
        self.store.parent.mkdir(parents=True, exist_ok=True)
        self.store.write_text('{"version": 1, "widgets": []}')
        self.host = self.start_host()
        wait_until(lambda: self.host.errors, "a word", 30)
        self.assertEqual([], self.titled(GALLERY))
        self.assertEqual(0, self.show().returncode)
        self.wait_for_window(GALLERY)
        self.finish_with_word_of_no_widgets()

    def test_a_second_show_before_the_first_widgets_come_opens_no_gallery(self):
        signal = self.start_host_of_late_extension()
        wait_until(lambda: ctl(self.environment, "list").returncode == 0, "the host", 30)
        self.assertEqual([], self.widgets())
        self.assertEqual(0, self.show().returncode)
        signal.touch()
        self.assert_all_shown(self.wait_for_widgets())
        self.assertEqual([], self.titled(GALLERY))
        self.finish_silently()

    # Above the cards

    def assert_above_cards(self, title):
        window = self.wait_for_window(title)
        cards = [each for each in self.card_windows().values()
                 if "SKIP_TASKBAR" in self.window_state(each)]
        self.assertEqual(5, len(cards))
        wait_until(lambda: not any("_ABOVE" in self.window_state(card) for card in cards), "lowered cards", 5)
        order = self.display.windows()
        self.assertTrue(all(order.index(card) < order.index(window) for card in cards), order)

    def raise_cards(self):
        cards = self.card_windows().values()
        self.assertEqual(0, self.show().returncode)
        wait_until(lambda: all("_ABOVE" in self.window_state(card) for card in cards), "raised cards", 5)

    def test_what_opens_is_above_cards_that_are_raised(self):
        self.begin()
        adapter, gauge = self.widget(ADAPTER), self.widget(BANDWIDTH)
        self.raise_cards()
        self.display.key("Delete")
        self.assert_above_cards(QUESTION)
        self.display.key("Escape")
        self.wait_for_no_window(QUESTION)
        self.raise_cards()
        self.open_menu(adapter)
        self.choose("Add widget…")
        self.assert_above_cards(GALLERY)
        self.display.key("Escape")
        self.wait_for_no_window(GALLERY)
        self.raise_cards()
        self.display.click(*self.middle(gauge))
        self.assert_above_cards(MONITOR)
        self.finish_silently()

    # The keyboard

    def test_the_keyboard_goes_from_card_to_card_as_they_were_added(self):
        self.begin()
        added = [self.ctl("add", BANDWIDTH).strip() for _ in range(6)]
        wait_until(lambda: len(self.card_windows()) == 11, "the new cards", 10)
        by_place = {(each["x"], each["y"]): each["id"] for each in self.widgets()}
        order = [each["id"] for each in self.widgets()]
        self.assertEqual(added, order[5:])
        self.focus_card(self.widgets()[0])
        names = {window: by_place[place] for place, window in self.card_windows().items()}
        reached = []
        for _ in order:
            self.display.key("F6")
            time.sleep(0.3)  # for the window manager
            reached.append(names[int(self.display.run("xdotool", "getwindowfocus"))])
        self.assertEqual(order[1:] + order[:1], reached)
        self.finish_silently()

    def test_a_menu_of_the_keyboard_has_the_keyboard(self):
        self.begin()
        widget = self.widget(ADAPTER)
        for keys in (("Menu",), ("shift+F10",)):
            self.focus_card(widget)
            self.display.key(*keys)
            wait_until(self.menus, "a menu", 10)
            self.display.key("Escape")
            wait_until(lambda: not self.menus(), "no menu", 10)
        self.finish_silently()


class SwayWindowsTest(SwayTest):
    def test_a_window_covers_cards_that_were_raised(self):
        host = self.start_host()
        self.assert_all_shown(self.wait_for_widgets())
        widget = self.widget(BANDWIDTH)
        corner = widget["x"] + 20, widget["y"] + 85
        shown = self.pixel(*corner)
        self.assertEqual(0, self.show().returncode)
        self.display.click(*self.middle(widget))
        wait_until(lambda: self.has_window(MONITOR), "the bandwidth monitor", 10)
        wait_until(lambda: self.pixel(*corner) != shown, "a covered card", 5)
        self.finish(host)
