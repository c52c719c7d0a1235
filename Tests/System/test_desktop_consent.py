"""The question whether widgets may show the names of Wi-Fi networks, on a machine that has Wi-Fi:
when it comes, when it goes, and what its answers are worth."""

import time

from accessible_test import AccessibleTest, nodes
from host_process import WITH_WIFI, host_beside
from host_test import BANDWIDTH, INTERNET, SwayTest, XTest
from process_tree import wait_until
from program import run

QUESTION = "Wi-Fi names"
# Its buttons, and what `location status` says after each.
ANSWERS = {"Don't allow": "denied", "While in use": "authorizedWhenInUse",
           "Always": "authorizedAlways"}


class ConsentTests(AccessibleTest):
    """On either display."""

    consent = None

    def begin(self):
        """The host, once it asks."""
        host = self.start_host(**WITH_WIFI)
        self.wait_for_widgets()
        self.wait_for_question()
        return host

    def wait_for_question(self):
        wait_until(lambda: self.has_window(QUESTION), "the question", 10)

    def wait_for_no_question(self):
        wait_until(lambda: not self.has_window(QUESTION), "no question", 10)

    def finish_silently(self, host):
        """Not where buttons are pressed by a screen reader, of whose looks at windows that go GTK itself
        complains."""
        self.finish(host)
        self.assertEqual([], host.errors)

    def location(self, action):
        done = run("location", action, "--data-dir", str(self.data), env=self.environment)
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        return done.stdout.decode().strip()

    def wait_for_decision(self, decision):
        wait_until(lambda: self.location("status") == decision, decision, 10)

    def focus_question(self):
        raise NotImplementedError

    # What it is answered with

    def test_each_answer_is_recorded(self):
        for answer, decision in ANSWERS.items():
            with self.subTest(answer):
                host = self.begin()
                self.press(answer)
                self.wait_for_decision(decision)
                self.wait_for_no_question()
                self.finish(host)
                self.location("reset")

    def test_the_enter_key_allows_nothing(self):
        host = self.begin()
        self.focus_question()
        self.display.key("Return")
        self.wait_for_decision("denied")
        self.wait_for_no_question()
        self.finish_silently(host)

    def test_a_decision_is_revoked_in_the_menu(self):
        host = self.begin()
        self.press("Always")
        self.wait_for_decision("authorizedAlways")
        self.wait_for_no_question()
        self.open_menu(INTERNET)
        self.press("Don't show")
        self.wait_for_decision("denied")
        self.finish(host)

    # How often it is asked

    def test_who_has_answered_is_not_asked_again(self):
        host = self.begin()
        self.press("Don't allow")
        self.wait_for_decision("denied")
        self.finish(host)
        host = self.start_host(**WITH_WIFI)
        self.assert_all_shown(self.wait_for_widgets())
        self.assertFalse(self.has_window(QUESTION))
        self.finish(host)

    def test_who_closes_it_is_asked_again_at_the_next_start_and_not_before(self):
        host = self.start_recorded_host(**WITH_WIFI)
        self.wait_for_question()
        self.focus_question()
        self.display.key("Escape")
        self.wait_for_no_question()
        self.assertEqual("notDetermined", self.location("status"))
        before = len(self.asked())
        self.ctl("reload")  # by which the widgets that show Wi-Fi want it asked
        wait_until(lambda: len(self.asked()) >= before + 5, "questions to all widgets", 10)
        time.sleep(1)  # for what they want
        self.assertFalse(self.has_window(QUESTION))
        self.finish_silently(host)
        self.finish_silently(self.begin())

    def test_it_goes_when_it_is_decided_elsewhere(self):
        host = self.begin()
        self.location("deny")
        self.wait_for_no_question()
        self.finish_silently(host)


class RevokedTest(AccessibleTest, XTest):
    consent = "allow"

    def test_names_vanish_even_if_the_extension_does_not_answer(self):
        """They once stayed on the cards, and in the gallery."""
        program = host_beside(self.session.folder / "clinging", "hostile_extension.py")
        host = self.start_host(program=program, LANTERNFOLD_MANNER="clings to a name")
        wait_until(lambda: self.names() == 1, "a name on a card")
        self.open_menu(BANDWIDTH)
        self.press("Add widget…")
        wait_until(lambda: self.names() == 2, "a name in the gallery", 10)
        run("location", "deny", "--data-dir", str(self.data), env=self.environment, check=True)
        wait_until(lambda: self.names() == 0, "no name", 10)
        self.finish(host)

    def names(self):
        """How often one is shown."""
        return sum("Home network" in each["description"] + each["name"] for each in nodes(self.tree()))


class XConsentTest(ConsentTests, XTest):
    def focus_question(self):
        question, = self.titled(QUESTION)
        self.display.focus(question)


class SwayConsentTest(ConsentTests, SwayTest):
    def focus_question(self):
        self.display.command(f'[title="^{QUESTION}$"]', "focus")
