"""Monitors that come, go, and change their scale or their size under the widgets."""

import json
import time

from displays import SIZE, NestedSwayDisplay, SwayDisplay, XDisplay
from xorg_display import LEFT, RIGHT, WIDTH, XorgDisplay
from host_test import BANDWIDTH, INTERNET, PANORAMIC, SIZES, SwayTest, XTest
from process_tree import wait_until

# For how long cards stay up there.
RAISED_SECONDS = 10

# What a second output becomes as soon as there is one.
SIDE_BY_SIDE = ("output HEADLESS-1 position 0 0",
                "output HEADLESS-2 resolution 1280x900 position 1280 0")


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


class OtherSizeTest(SwayTest):
    """A monitor that becomes smaller: what no longer lies in it is brought in, at once."""

    REMEMBERED = {BANDWIDTH: (1086, 24), INTERNET: (400, 706)}

    def set_output(self, *words):
        self.display.command("output", "HEADLESS-1", *words)

    def assert_stand(self, gauge, internet, scale=1):
        for widget in self.widgets():
            x, y = {BANDWIDTH: gauge, INTERNET: internet}[widget["kind"]]
            self.assert_shown(widget | {"x": x, "y": y}, scale=scale)

    def test_widgets_are_brought_into_a_monitor_that_becomes_smaller(self):
        self.store.parent.mkdir(parents=True)
        self.store.write_text(json.dumps({"version": 1, "widgets": [
            {"id": str(number), "kind": kind, "family": family, "monitor": "HEADLESS-1",
             "x": self.REMEMBERED[kind][0], "y": self.REMEMBERED[kind][1]}
            for number, (kind, family) in enumerate([(BANDWIDTH, "small"), (INTERNET, "medium")])]}))
        host = self.start_host()
        widgets = self.wait_for_widgets(2)
        self.assert_all_shown(widgets)
        self.set_output("resolution", "800x600")
        self.assert_stand((630, 24), (400, 430))
        self.set_output("resolution", "740x560")  # of the gauge a part remains, of the other nothing
        self.assert_stand((570, 24), (376, 390))
        self.set_output("resolution", "1000x700")
        self.assert_stand((830, 24), (400, 530))
        self.set_output("resolution", "1280x900", "scale", "2")
        self.assert_stand((470, 24), (276, 280), scale=2)
        self.set_output("scale", "1", "transform", "90")
        self.assert_stand((730, 24), (400, 706))
        self.set_output("transform", "normal")
        self.assert_stand((1086, 24), (400, 706))
        self.assertEqual(widgets, self.widgets())
        self.finish(host)
        self.assertEqual([], host.errors)


class OnlyOutputTest(SwayTest):
    def make_display(self):
        return NestedSwayDisplay(self.session)

    def test_it_is_unplugged_while_the_cards_are_raised_and_another_is_plugged(self):
        """The cards are lowered while none of them is shown, which once ended the host."""
        host = self.start_host()
        widgets = self.wait_for_widgets()
        self.assert_all_shown(widgets)
        self.assertEqual(0, self.show().returncode)
        self.display.unplug("WL-1")
        time.sleep(RAISED_SECONDS + 1)
        self.assertTrue(host.is_alive())
        self.display.add_output()
        self.assert_all_shown(widgets)
        self.assertEqual(widgets, self.widgets())
        self.finish(host)
        self.assertEqual([], host.errors)


class LostOutputTest(SwayTest):
    def make_display(self):
        return NestedSwayDisplay(self.session, outputs=2)

    def test_its_widgets_are_shown_on_the_other_one(self):
        self.store.parent.mkdir(parents=True)
        self.store.write_text(json.dumps({"version": 1, "widgets": [
            {"id": "1", "kind": BANDWIDTH, "family": "small", "monitor": "WL-2", "x": 200, "y": 600}]}))
        host = self.start_host()
        widget, = self.wait_for_widgets(1)
        self.assert_shown(widget, offset=(SIZE[0], 0))
        self.display.unplug("WL-2")
        self.assert_shown(widget)
        self.assertEqual([widget], self.widgets())
        self.finish(host)
        self.assertEqual([], host.errors)


class DoubleXTest(XTest):
    """A screen of which every program that asks is to make twice as much."""

    def make_display(self):
        return super().make_display(size=(2560, 1800))

    def test_cards_are_twice_as_far_and_as_sharp_as_a_drawn_picture(self):
        host = self.start_host(GDK_SCALE="2")
        widgets = self.wait_for_widgets()
        self.assert_all_shown(widgets, scale=2)
        windows = {(2 * each["x"], 2 * each["y"]): tuple(2 * length for length in SIZES[each["family"]])
                   for each in widgets}
        self.assertEqual(windows, {place: self.display.frame(window)[2:]
                                   for place, window in self.card_windows().items()})
        self.finish(host)

    def test_a_card_is_dragged_as_far_as_the_pointer_goes(self):
        self.start_host(GDK_SCALE="2")
        self.assert_all_shown(self.wait_for_widgets(), scale=2)
        before = self.widget(BANDWIDTH)
        moved = before | {"x": 40, "y": 704}
        self.display.drag(*([2 * each for each in self.empty_corner(widget)]
                            for widget in (before, moved)))
        wait_until(lambda: self.widget(BANDWIDTH) == moved, "a move", 10)
        self.assert_shown(moved, scale=2)


class NewMonitorTest(SwayTest):
    """A compositor without monitors makes new ones."""

    def make_display(self):
        return super().make_display(configuration=SIDE_BY_SIDE)

    def plug(self):
        self.display.add_output()

    def test_a_card_is_dragged_to_a_monitor_that_has_come(self):
        self.start_host()
        self.assert_all_shown(self.wait_for_widgets())
        self.plug()
        there = self.drag_to_the_second(1280 + 200, 700)
        self.assert_shown(there, offset=(1280, 0))

    def drag_to_the_second(self, x, y):
        """The small widget, once it stands on the other monitor."""
        self.display.drag(self.empty_corner(self.widget(BANDWIDTH)), (x, y))
        wait_until(lambda: self.widget(BANDWIDTH)["monitor"] == "HEADLESS-2", "a widget over there")
        return self.widget(BANDWIDTH)

    def test_another_scale_on_another_monitor(self):
        self.plug()
        self.display.command("output", "HEADLESS-2", "scale", "2")
        self.start_host()
        self.wait_for_widgets()
        there = self.drag_to_the_second(1280 + 300, 300)
        card = self.drawn(BANDWIDTH, "small", scale=2)

        def is_sharp():
            self.display.picture(self.folder / "screen.png", output="HEADLESS-2", scale=2)
            return self.compared(card, there["x"], there["y"], 2) is None
        wait_until(is_sharp, "a sharp card", 20)


class LostMonitorTest(XTest):
    def make_display(self):
        return XorgDisplay(self.session)

    def plug(self):
        self.display.plug()

    def unplug(self):
        self.display.unplug()

    def put(self, *monitors):
        """A widget on each, at the same place."""
        self.store.parent.mkdir(parents=True)
        self.store.write_text(json.dumps({"version": 1, "widgets": [
            {"id": str(number), "kind": BANDWIDTH, "family": "small", "monitor": monitor,
             "x": 200, "y": 600} for number, monitor in enumerate(monitors)]}))

    def begin_on_the_right(self):
        """A host with a single widget, which a user has put on the monitor to the right."""
        self.put(RIGHT)
        host = self.start_host()
        widget, = self.wait_for_widgets(1)
        self.assert_shown(widget, offset=(WIDTH, 0))
        return host, widget

    def test_a_monitor_is_unplugged_and_plugged_again(self):
        """Its widget is shown on the one that is left, as far from its corner, and returns."""
        _, widget = self.begin_on_the_right()
        self.unplug()
        self.assert_shown(widget)
        self.assertEqual([widget], self.widgets())
        self.plug()
        self.assert_shown(widget, offset=(WIDTH, 0))

    def test_a_widget_that_comes_over_another_one_stands_aside_of_it(self):
        self.put(LEFT, RIGHT)
        host = self.start_host()
        widgets = self.wait_for_widgets(2)
        apart = {(200, 600), (WIDTH + 200, 600)}
        wait_until(lambda: set(self.card_windows()) == apart, "a card on each monitor")
        self.unplug()
        wait_until(lambda: set(self.card_windows()) == {(200, 600), (224, 576)}, "both on one")
        self.assertEqual(widgets, self.widgets())
        self.plug()
        wait_until(lambda: set(self.card_windows()) == apart, "a card on each monitor again")
        self.finish(host)

    def test_a_user_moves_a_widget_that_is_away_from_its_monitor(self):
        """It stays where it was put, also when the monitor is back."""
        self.begin_on_the_right()
        self.unplug()
        self.assert_shown(self.widgets()[0])
        self.display.drag((200 + 85, 600 + 166), (100 + 85, 100 + 166))
        wait_until(lambda: self.widgets()[0]["monitor"] == LEFT, "a move")
        moved = self.widgets()[0]
        self.plug()
        self.assert_shown(moved)

    def test_a_monitor_comes_and_goes_again_and_again(self):
        host, widget = self.begin_on_the_right()
        for _ in range(20):
            self.unplug()
            self.plug()
        self.assert_shown(widget, offset=(WIDTH, 0))
        self.finish(host)
        self.assertEqual([], host.errors)


class CrowdedMonitorTest(XTest):
    """A screen without room for the first widgets side by side."""

    def make_display(self):
        return XDisplay(self.session, size=(640, 450))

    def test_each_widget_of_the_first_start_can_be_taken_hold_of(self):
        host = self.start_host()
        widgets = self.wait_for_widgets()
        places = {(each["x"], each["y"]) for each in widgets}
        self.assertEqual(5, len(places), places)
        wait_until(lambda: set(self.card_windows()) == places, "each card in its place")
        covered = self.widget(INTERNET)
        edge = covered["x"] + SIZES["medium"][0] // 2, covered["y"] + 12
        self.display.drag(edge, (edge[0] - 100, edge[1] + 100))
        wait_until(lambda: self.widget(INTERNET) != covered, "a move")
        self.assertEqual([each for each in widgets if each != covered],
                         [each for each in self.widgets() if each["kind"] != INTERNET])
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
