"""Widgets as ordinary windows: a compositor without layers alone knows where they are."""

import itertools
import json
import subprocess

from accessible_test import AccessibleTest
from displays import PYTHON
from host_test import BANDWIDTH, SIZES, XTest
from process_tree import wait_until

WALLPAPER = (0x10, 0x20, 0x30)
CONFIGURATION = """
[core]
idle-time=0
[shell]
background-color=0xff102030
panel-position=none
locking=false
animation=none
startup-animation=none
"""
# What stands on the wallpaper, but for a pointer in the last corner: left, top, right, bottom.
FRAME = """import sys
from PIL import Image, ImageChops
screen = Image.open(sys.argv[1]).convert("RGB")
screen = screen.crop((0, 0, screen.width - 4, screen.height - 4))
wallpaper = Image.new("RGB", screen.size, tuple(map(int, sys.argv[2:])))
print(*(ImageChops.difference(screen, wallpaper).getbbox() or ()))
"""


class PlainWindowsTest(AccessibleTest, XTest):
    """Weston in a window of an X server, from which it has its pointer and its keyboard."""

    def make_display(self):
        return super().make_display(manager=None)  # whose frame would be around weston's window

    def begin_weston(self):
        """The variable by which programs find it."""
        path = self.session.folder / "run" / "plain"
        configuration = self.session.folder / "weston.ini"
        configuration.write_text(CONFIGURATION)
        self.session.begin(
            ["weston", "--backend=x11-backend.so", "--use-pixman",
             *(f"--{name}={size}" for name, size in zip(("width", "height"), self.display.size)),
             f"--socket={path.name}", f"--config={configuration}"], **self.display.environment)
        wait_until(path.exists, "the start of weston")
        # It starts in its first corner, and follows the X server's from there. It is a part of what
        # is seen.
        self.display.move(0, 0)
        self.display.move(self.display.size[0] - 1, self.display.size[1] - 1)
        wait_until(lambda: self.frame() == (), "the wallpaper")
        return {"WAYLAND_DISPLAY": str(path)}

    def frame(self):
        """Of what stands on the wallpaper, if something does."""
        screen = self.display.picture(self.folder / "screen.png")
        done = subprocess.run([PYTHON, "-c", FRAME, str(screen), *map(str, WALLPAPER)],
                              capture_output=True, timeout=30, check=True)
        return tuple(map(int, done.stdout.split()))

    def begin(self):
        """A host with a single widget, whose place on an older display is remembered."""
        self.store.parent.mkdir(parents=True)
        self.store.write_text(json.dumps({"version": 1, "widgets": [
            {"id": "1", "kind": BANDWIDTH, "family": "small", "monitor": "", "x": 400, "y": 300}]}))
        host = self.start_host(without=("DISPLAY",), **self.begin_weston())
        self.wait_for_widgets(1)
        return host

    def wait_for_card(self):
        """Where it stands, once the whole of it is seen."""
        width, height = SIZES["small"]

        def look():
            left, top, right, bottom = self.frame() or (0, 0, 0, 0)
            is_whole = (right - left, bottom - top) == (width, height)
            return (left, top) if is_whole else None
        return wait_until(look, "a card", 20)

    def drag_card(self, place, by):
        """Where it then stands. The compositor moves only what asks for it while the button is
        still down: a quick machine's pointer once was there before the card had heard of it."""
        x, y = (edge + length // 2 for edge, length in zip(place, SIZES["small"]))
        ways = itertools.cycle([(by[0] // 2, by[1] // 2), (by[0] // 3, by[1] // 3)])
        self.display.move(x, y)
        self.display.press()

        def goes_along():
            across, down = next(ways)
            self.display.move(x + across, y + down)
            return self.frame()[:2] != place
        wait_until(goes_along, "a card that goes along", 10)
        self.display.move(x + by[0], y + by[1])
        self.display.release()
        there = tuple(edge + length for edge, length in zip(place, by))
        wait_until(lambda: self.wait_for_card() == there, "the end of the card's way", 10)
        return there

    def test_what_the_user_does_to_them_changes_no_place_that_is_remembered(self):
        """The arrow keys once moved what is remembered, and nothing that is seen."""
        self.begin()
        before = self.widgets()
        there = self.drag_card(self.wait_for_card(), by=(53, 41))
        self.display.key("Left", "Down")
        self.assertEqual(there, self.wait_for_card())
        self.display.key("Delete")
        wait_until(lambda: self.is_shown("Cancel"), "a question, of the same keyboard", 10)
        self.assertEqual(before, self.widgets())
