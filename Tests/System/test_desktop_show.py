"""The widgets on the desktop at their first start, as they can be seen on the screen."""

import json

from displays import SIZE
from host_test import (APPLICATION, FAMILIES, KINDS, PANORAMIC, SIZES, HostTest, SwayTest, XTest)
from process_tree import running, wait_until
from program import run

# Each in its largest family.
AT_FIRST = {kind: FAMILIES[kind][-1] for kind in KINDS}


class ShowTest(HostTest):
    def assert_at_first(self, widgets):
        """All five, beside each other."""
        self.assertEqual(AT_FIRST, {each["kind"]: each["family"] for each in widgets})
        frames = [(each["x"], each["y"], *SIZES[each["family"]]) for each in widgets]
        for number, (x, y, width, height) in enumerate(frames):
            self.assertTrue(0 <= x <= SIZE[0] - width and 0 <= y <= SIZE[1] - height, frames)
            for other_x, other_y, other_width, other_height in frames[:number]:
                self.assertTrue(x + width <= other_x or other_x + other_width <= x or
                                y + height <= other_y or other_y + other_height <= y, frames)


class ShowTests:
    """On either display."""

    def test_five_widgets_appear_and_look_as_they_are_drawn_elsewhere(self):
        host = self.start_host()
        widgets = self.wait_for_widgets()
        self.assert_at_first(widgets)
        self.assert_all_shown(widgets)
        self.finish(host)
        self.assertEqual([], host.errors)

    def test_an_ordinary_window_covers_them(self):
        self.start_host()
        widgets = self.wait_for_widgets()
        self.assert_all_shown(widgets)
        self.ordinary_window(*self.display.size)
        x, y = self.middle(widgets[0])
        wait_until(lambda: self.pixel(x, y) == "ff0000", "a window above the widgets")
        for widget in widgets:
            self.assertEqual("ff0000", self.pixel(*self.middle(widget)))

    def test_a_second_show_hands_over_to_the_first(self):
        host = self.start_host()
        self.wait_for_widgets()
        done = self.show()
        self.assertEqual(0, done.returncode, done.stderr)
        self.assertEqual([host.pid], running("lanternfold-widget-host"))
        self.assertEqual(5, len(self.widgets()))

    def test_show_detached_returns_when_the_widgets_are_there(self):
        done = self.show("--detach")
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        self.assert_at_first(self.wait_for_widgets(seconds=2))
        self.assertEqual(1, len(running("lanternfold-widget-host")))
        self.ctl("quit")
        wait_until(lambda: not running("lanternfold-widget-host"), "the end of the host")


class XShowTest(ShowTests, ShowTest, XTest):
    def test_no_window_is_one_among_a_users_windows(self):
        """Below all others, on every workspace, in no task bar and no list to switch through."""
        self.start_host()
        widgets = self.wait_for_widgets()
        windows = wait_until(lambda: len(found := self.card_windows()) == 5 and found, "windows")
        self.assertEqual({(each["x"], each["y"]) for each in widgets}, set(windows))
        for window in windows.values():
            properties = self.display.properties(window)
            for state in ("BELOW", "SKIP_TASKBAR", "SKIP_PAGER"):
                self.assertIn(f"_NET_WM_STATE_{state}", properties["_NET_WM_STATE"])
            self.assertEqual("4294967295", properties["_NET_WM_DESKTOP"])
            self.assertEqual("0, 0, 0, 0", properties["_NET_FRAME_EXTENTS"])
            self.assertIn(APPLICATION.lower(), properties["WM_CLASS"].lower())

    def test_another_workspace_shows_them_too(self):
        self.start_host()
        self.assert_all_shown(self.wait_for_widgets())
        self.display.run("xdotool", "set_desktop", "1")
        self.assert_all_shown()

    def test_a_click_does_not_bring_a_card_before_a_window(self):
        self.start_host()
        widget = self.wait_for_widgets()[0]
        self.assert_shown(widget)
        self.ordinary_window(*SIZE)
        x, y = self.middle(widget)
        wait_until(lambda: self.pixel(x, y) == "ff0000", "a window above the widgets")
        window = self.card_windows()[widget["x"], widget["y"]]
        self.display.focus(window)
        self.display.key("Tab")
        self.assertEqual("ff0000", self.pixel(x, y))

    def test_without_a_window_manager(self):
        self.display = self.make_display(manager=())
        self.start_host()
        self.assert_all_shown(self.wait_for_widgets())


class SwayShowTest(ShowTests, ShowTest, SwayTest):
    def test_another_workspace_shows_them_too(self):
        self.start_host()
        self.assert_all_shown(self.wait_for_widgets())
        self.display.command("workspace", "7")
        self.assert_all_shown()

    def test_no_window_is_tiled_among_a_users_windows(self):
        self.start_host()
        self.assert_all_shown(self.wait_for_widgets())
        tree = json.loads(self.display.command("-t", "get_tree"))
        self.assertNotIn("app_id", json.dumps(tree))


class NoDisplayTest(XTest):
    def test_without_a_display_a_sentence_says_what_to_do(self):
        host = self.start_host(without=("DISPLAY", "WAYLAND_DISPLAY"))
        self.assertEqual(1, host.wait())
        self.assertEqual(1, len(host.errors), host.errors)
        self.assertRegex(host.errors[0], r"\Alanternfold-widget-host: .*display.*")

    def test_a_display_that_does_not_answer_is_a_sentence(self):
        host = self.start_host(DISPLAY=":77")
        self.assertEqual(1, host.wait())
        self.assertEqual(1, len(host.errors), host.errors)

    def test_nobody_to_talk_to(self):
        done = run("ctl", "list", env=self.environment)
        self.assertEqual((1, b""), (done.returncode, done.stdout))
        self.assertIn(b"lanternfold-widgets show", done.stderr)
