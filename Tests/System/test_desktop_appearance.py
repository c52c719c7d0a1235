"""Light and dark, as the real settings portal says the user prefers it."""

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
