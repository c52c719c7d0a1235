"""Widgets that are added from the window with all there are."""

from accessible_test import AccessibleTest
from host_test import BANDWIDTH, PANORAMIC, SwayTest, XTest
from process_tree import wait_until

# Stands at the top, and so need not be scrolled to.
FIRST = "Panoramic, "


class GalleryTests(AccessibleTest):
    """On either display."""

    def open_gallery(self):
        self.open_menu(BANDWIDTH)
        self.press("Add widget…")
        wait_until(lambda: self.is_shown(f"{FIRST}Small"), "the gallery", 10)

    def assert_added(self, family):
        """One more, beside those that there have been."""
        widgets = self.wait_for_count(6)
        self.assertEqual(["large", family], [each["family"] for each in widgets
                                             if each["kind"] == PANORAMIC])

    def test_a_double_click_on_a_preview_adds_it(self):
        host = self.begin()
        self.open_gallery()
        self.display.double_click(*self.middle_of(f"{FIRST}Small"))
        self.assert_added("small")
        self.finish(host)
        self.start_host()
        self.assert_all_shown(self.wait_for_widgets(6))

    def test_a_click_on_a_preview_adds_nothing(self):
        self.begin()
        self.open_gallery()
        self.display.click(*self.middle_of(f"{FIRST}Small"))
        self.display.click(*self.middle_of(f"Add: {FIRST}Medium"))
        self.assert_added("medium")

    def test_a_button_adds_a_widget_that_was_removed(self):
        self.begin()
        gone = next(each for each in self.widgets() if each["kind"] == PANORAMIC)
        self.ctl("remove", gone["id"])
        self.open_gallery()
        self.display.click(*self.middle_of(f"Add: {FIRST}Medium"))
        self.wait_for_count(5)
        self.display.key("Escape")
        wait_until(lambda: not self.is_shown(f"{FIRST}Small"), "the gallery's end", 10)
        self.assert_shown(self.widget(PANORAMIC))


class XGalleryTest(GalleryTests, XTest):
    pass


class SwayGalleryTest(GalleryTests, SwayTest):
    pass
