"""What a screen reader is told of the widgets, and what can be reached without a pointer, by a real
client of the accessibility bus."""

from host_test import APPLICATION, SwayTest, XTest
from process_tree import wait_until


def nodes(tree):
    for node in tree:
        yield node
        yield from nodes(node["children"])


def paths(tree, above=()):
    """Each node behind the names on the way to it."""
    for node in tree:
        path = (*above, node["name"])
        yield path, node
        yield from paths(node["children"], path)


class AccessibleTests:
    """On either display."""

    def setUp(self):
        super().setUp()
        self.session.begin_accessibility()

    def tree(self):
        return self.session.accessible("tree", APPLICATION)

    def windows(self):
        """The cards' windows as a reader sees them, once all are there."""

        def look():
            found = [each for application in self.tree() for each in application["children"]
                     if each["role"] != "redundant object"]  # which readers pass by
            return found if len(found) == 5 else None
        return wait_until(look, "five windows")

    def test_each_card_has_a_name_and_says_what_it_shows(self):
        self.start_recorded_host()
        self.assert_all_shown(self.wait_for_widgets())
        names = [each["name"] for each in self.windows()]
        self.assertEqual(5, len(set(names)), names)
        self.assertNotIn("", names)
        everything = str(self.tree())
        for text in ("192.0.2.2", "0A:00:00:00:00:02", "Example Telecom"):
            self.assertIn(text.lower(), everything.lower())

    def test_buttons_have_names_and_can_be_pressed(self):
        self.start_recorded_host()
        self.assert_all_shown(self.wait_for_widgets())
        buttons = [node for node in nodes(self.tree())
                   if node["role"] in ("push button", "link") and node["actions"]]
        self.assertTrue(buttons)
        self.assertNotIn("", [each["name"] for each in buttons])
        for each in buttons:
            self.assertIn("FOCUSABLE", each["states"], each["name"])
        before = len(self.asked("intent/perform"))
        self.session.accessible("press", APPLICATION, "Refresh")
        wait_until(lambda: len(self.asked("intent/perform")) == before + 1, "a refresh", 10)

    def test_the_keyboard_reaches_every_card_and_every_button(self):
        self.start_host()
        widgets = self.wait_for_widgets()
        self.assert_all_shown(widgets)
        self.windows()
        self.display.click(*self.empty_corner(widgets[0]))
        reached = set()
        typing = self.display.begin_keys(*5 * ("Tab", "Tab", "F6"))
        while typing.poll() is None:
            reached |= {path for path, node in paths(self.tree()) if "FOCUSED" in node["states"]}
        missing = {path for path, node in paths(self.tree())
                   if node["role"] in ("push button", "link")} - reached
        self.assertEqual(set(), missing, reached)


class XAccessibleTest(AccessibleTests, XTest):
    pass


class SwayAccessibleTest(AccessibleTests, SwayTest):
    pass
