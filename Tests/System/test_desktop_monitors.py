"""Monitors that come, go, and change their scale or their size under the widgets."""

from displays import SwayDisplay, XDisplay
from host_test import BANDWIDTH, PANORAMIC, SIZES, SwayTest, XTest
from process_tree import wait_until


class ScaleTest(SwayTest):
    def test_twice_as_many_pixels_are_as_sharp_as_a_drawn_picture(self):
        self.start_host()
        widgets = self.wait_for_widgets()
        self.assert_all_shown(widgets)
        self.display.command("output", "HEADLESS-1", "resolution", "2560x1800", "scale", "2")
        self.assert_all_shown(scale=2)
        self.display.command("output", "HEADLESS-1", "resolution", "1280x900", "scale", "1")
        self.assert_all_shown(widgets)
        self.assertEqual(widgets, self.widgets())


class OutputTest(SwayTest):
    def make_display(self):
        return super().make_display(configuration=[
            "output HEADLESS-1 position 0 0", "output HEADLESS-2 position 1280 0"])

    def plug(self):
        self.display.command("create_output")
        wait_until(lambda: len(self.display.outputs()) == 2, "a second output")
        self.second, = set(self.display.outputs()) - {"HEADLESS-1"}

    def on(self, monitor):
        return [each for each in self.widgets() if each["monitor"] == monitor]

    def test_a_monitor_is_unplugged_and_plugged_again(self):
        """Its widget is shown on the one that is left, and returns."""
        self.plug()
        host = self.start_host()
        self.assert_all_shown([each for each in self.wait_for_widgets()
                               if each["monitor"] == "HEADLESS-1"])
        widget = self.widget(BANDWIDTH)
        x, y = self.empty_corner(widget)
        self.display.drag((x, y), (1280 + 200, 700))
        wait_until(lambda: self.on(self.second), "a widget on the second output")
        there = self.widget(BANDWIDTH)
        self.assert_shown(there, offset=(1280, 0))
        self.display.command("output", self.second, "disable")
        remembered = self.widget(BANDWIDTH)
        self.assertEqual(there, remembered)
        self.assert_shown(there)  # as far from the corner of the one that is left
        self.display.command("output", self.second, "enable")
        self.assert_shown(there, offset=(1280, 0))
        self.assertTrue(host.is_alive())

    def test_another_scale_on_another_monitor(self):
        self.plug()
        self.display.command("output", self.second, "scale", "2")
        self.start_host()
        widget = next(each for each in self.wait_for_widgets() if each["kind"] == BANDWIDTH)
        x, y = self.empty_corner(widget)
        self.display.drag((x, y), (1280 + 300, 300))
        wait_until(lambda: self.on(self.second), "a widget on the second output")
        there, = self.on(self.second)
        card = self.drawn(BANDWIDTH, "small", scale=2)

        def is_sharp():
            self.display.picture(self.folder / "screen.png", output=self.second, scale=2)
            return self.compared(card, there["x"], there["y"], 2) is None
        wait_until(is_sharp, "a sharp card", 20)

    def test_the_only_monitor_goes_for_a_while(self):
        host = self.start_host()
        widgets = self.wait_for_widgets()
        self.assert_all_shown(widgets)
        self.display.command("output", "HEADLESS-1", "disable")
        self.assertEqual(widgets, self.widgets())
        self.display.command("output", "HEADLESS-1", "enable")
        self.assert_all_shown(widgets)
        self.assertTrue(host.is_alive())

    def test_monitors_come_and_go_again_and_again(self):
        host = self.start_host()
        self.assert_all_shown(self.wait_for_widgets())
        self.plug()
        for _ in range(15):
            self.display.command("output", self.second, "disable")
            self.display.command("output", self.second, "enable")
        self.assertTrue(host.is_alive())
        self.assert_all_shown([each for each in self.widgets() if each["monitor"] == "HEADLESS-1"])
        self.finish(host)
        self.assertEqual([], host.errors)


class TinyMonitorTests:
    def test_a_monitor_of_200_by_200(self):
        """Every widget stands in its left top corner, or where it fits."""
        host = self.start_host()
        widgets = self.wait_for_widgets()
        small = next(each for each in widgets if each["kind"] == BANDWIDTH)
        self.assertLessEqual(max(small["x"], small["y"]) + SIZES["small"][0], 200)
        large = next(each for each in widgets if each["kind"] == PANORAMIC)
        self.assertEqual((0, 0), (large["x"], large["y"]))
        for widget in widgets:
            if widget["kind"] != BANDWIDTH:
                self.ctl("remove", widget["id"])
        self.assert_shown(small)
        self.finish(host)
        self.assertEqual([], host.errors)


class TinyXTest(TinyMonitorTests, XTest):
    def make_display(self):
        return XDisplay(self.session, size=(200, 200))


class TinySwayTest(TinyMonitorTests, SwayTest):
    def make_display(self):
        return SwayDisplay(self.session, size=(200, 200))
