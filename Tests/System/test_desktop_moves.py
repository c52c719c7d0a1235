"""Moving, sizing, removing and adding widgets, with the pointer, the keyboard and by commands, and
what is remembered of it."""

from host_test import ADAPTER, BANDWIDTH, INTERNET, PANORAMIC, SIZES, SwayTest, XTest
from process_tree import wait_until

GRID = 8


class MoveTests:
    """On either display."""

    def begin(self):
        host = self.start_host()
        self.assert_all_shown(self.wait_for_widgets())
        return host

    def drag(self, widget, right, down):
        x, y = self.empty_corner(widget)
        self.display.drag((x, y), (x + right, y + down))

    def moved(self, widget):
        """The widget, once it stands elsewhere."""
        def look():
            now, = (each for each in self.widgets() if each["id"] == widget["id"])
            return now if (now["x"], now["y"]) != (widget["x"], widget["y"]) else None
        return wait_until(look, "a move", 10)

    def test_a_card_is_dragged_to_the_grid_and_stays_there(self):
        host = self.begin()
        widget = self.widget(BANDWIDTH)
        self.drag(widget, 40 - widget["x"] + 3, 700 - widget["y"] + 3)
        now = self.moved(widget)
        self.assertEqual((0, 0), (now["x"] % GRID, now["y"] % GRID), now)
        self.assertLessEqual(abs(now["x"] - 43) + abs(now["y"] - 703), 2 * GRID)
        self.assert_all_shown()
        self.finish(host)
        self.begin()
        self.assertEqual(now, self.widget(BANDWIDTH))

    def test_a_card_snaps_beside_another(self):
        self.begin()
        still, widget = self.widget(PANORAMIC), self.widget(BANDWIDTH)
        left = still["x"] - 24 - SIZES["small"][0]
        self.drag(widget, left + 5 - widget["x"], still["y"] + 290 - widget["y"])
        self.assertEqual(left, self.moved(widget)["x"])

    def test_a_card_cannot_be_dragged_off_the_monitor(self):
        self.begin()
        widget = self.widget(BANDWIDTH)
        x, y = self.empty_corner(widget)
        width, height = self.display.size
        self.display.drag((x, y), (x, height - 1))
        now = self.moved(widget)
        self.assertEqual(height, now["y"] + SIZES["small"][1])
        self.assert_shown(now)

    def test_a_click_moves_nothing(self):
        self.begin()
        before = self.widgets()
        for widget in before:
            x, y = self.empty_corner(widget)
            self.display.drag((x, y), (x + 2, y + 2), steps=1)
        self.assertEqual(before, self.widgets())

    def test_commands_remove_and_add(self):
        host = self.begin()
        gone = self.widget(INTERNET)
        self.ctl("remove", gone["id"])
        self.assertEqual(4, len(self.widgets()))
        wait_until(lambda: self.pixel(*self.middle(gone)) == self.display.background, "an empty place")
        new = self.ctl("add", INTERNET, "--family", "small").strip()
        widget = self.widget(INTERNET)
        self.assertEqual((new, "small"), (widget["id"], widget["family"]))
        self.assert_all_shown()
        self.finish(host)
        self.begin()
        self.assertEqual(widget, self.widget(INTERNET))

    def test_an_adapter_of_ones_own_choice(self):
        self.begin()
        self.ctl("add", ADAPTER, "--adapter", "en0")
        chosen, = (each for each in self.widgets() if each["kind"] == ADAPTER
                   and "adapter" in each["configuration"])
        self.assertEqual("en0", chosen["configuration"]["adapter"]["identifier"])
        self.assert_shown(chosen)

    def test_many_widgets_for_whom_there_is_no_room(self):
        self.start_host()
        self.wait_for_widgets()
        for _ in range(12):
            self.ctl("add", PANORAMIC)
        widgets = self.widgets()
        self.assertEqual(17, len({(each["x"], each["y"]) for each in widgets}), widgets)
        # For the first three of them there is; the others cover one of those in part.
        self.assert_all_shown(widgets[6:8])


class XMoveTest(MoveTests, XTest):
    pass


class SwayMoveTest(MoveTests, SwayTest):
    pass
