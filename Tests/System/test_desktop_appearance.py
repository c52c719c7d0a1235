"""Light and dark, as the real settings portal says the user prefers it; and the corners of the cards
where nothing composes the windows."""

import subprocess

from displays import PYTHON
from host_process import HERE
from host_test import SwayTest, XTest

DARK, LIGHT = "scheme 1", "scheme 2"


class AppearanceTests:
    """On either display."""

    def test_the_widgets_follow_the_desktop_at_once(self):
        desktop = self.session.begin_desktop()
        self.start_host()
        widgets = self.wait_for_widgets()
        self.assert_all_shown(widgets)
        for order, scheme in ((DARK, "dark"), (LIGHT, "light"), (DARK, "dark")):
            desktop.order(order)
            self.assert_all_shown(widgets, scheme=scheme, seconds=5)

    def test_a_dark_desktop_from_the_beginning(self):
        self.session.begin_desktop().order(DARK)
        self.start_host()
        self.assert_all_shown(self.wait_for_widgets(), scheme="dark")

    def test_a_theme_of_the_environment(self):
        """The dialogs once were dark, and the widgets light."""
        self.start_host(GTK_THEME="Adwaita:dark")
        self.assert_all_shown(self.wait_for_widgets(), scheme="dark")

    def test_a_portal_that_comes_later(self):
        self.start_host()
        widget = self.wait_for_widgets()[0]
        self.assert_shown(widget)
        self.session.begin_desktop().order(DARK)
        self.assert_shown(widget, scheme="dark")

    def test_a_portal_that_goes(self):
        """What it has said last holds."""
        self.session.begin_desktop().order(DARK)
        self.start_host()
        widget = self.wait_for_widgets()[0]
        self.assert_shown(widget, scheme="dark")
        self.session.portal.end()
        self.ctl("reload")
        self.assert_shown(widget, scheme="dark")


class XAppearanceTest(AppearanceTests, XTest):
    pass


class SwayAppearanceTest(AppearanceTests, SwayTest):
    pass


class CornerTest(XTest):
    def foreign_pixels(self, widget, scheme):
        """Those in the corners that are neither the wallpaper's nor the card's."""
        card = self.drawn(widget["kind"], widget["family"], scheme)
        screen = self.display.picture(self.folder / "screen.png")
        done = subprocess.run(
            [PYTHON, "-B", HERE / "corner_colours.py", screen, str(widget["x"]), str(widget["y"]),
             card, self.display.background], capture_output=True, timeout=60, check=True)
        *foreign, wallpaper = done.stdout.decode().splitlines()
        # A radius of 22 leaves out 104 points of a corner.
        self.assertAlmostEqual(4 * 104, int(wallpaper), delta=60)
        return foreign

    def test_no_dark_rim_around_a_card_on_a_bright_wallpaper(self):
        """Smoothed edges were once half black: no one composes windows here."""
        self.display.background = "00ff00"
        self.display.run("xsetroot", "-solid", "#00ff00")
        desktop = self.session.begin_desktop()
        self.start_host()
        for order, scheme in ((LIGHT, "light"), (DARK, "dark")):
            desktop.order(order)
            widgets = self.wait_for_widgets()
            self.assert_all_shown(widgets, scheme=scheme)
            for widget in widgets:
                self.assertEqual([], self.foreign_pixels(widget, scheme), (widget["kind"], scheme))
