"""The consent to show Wi-Fi names inside a sandbox: the real program, the real location portal and
its real permission store, and a user who answers the dialog as the test says."""

import json
import os
import signal
import socket
import unittest

from portal_world import APPLICATION, HANG_SECONDS, HERE, PORTAL, PYTHON, PortalWorld
from program import run

SHOWN = b"Wi-Fi names are shown from now on while they are in use.\n"


class SandboxTest(unittest.TestCase):
    backend_options = ()

    def setUp(self):
        self.world = PortalWorld(self.backend_options)
        self.world.__enter__()
        self.addCleanup(self.world.__exit__)
        self.bus = self.world.session_bus

    def location(self, action, *arguments, **options):
        return self.world.location(action, *arguments, bus_address=self.bus, **options)

    def status(self):
        """The status by its name, when there is nothing else to say."""
        done = self.location("status")
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        return done.stdout.decode().strip()

    def assert_restricted(self, reason):
        done = self.location("status", "--json")
        self.assertEqual({"status": "restricted", "rawValue": 1}, json.loads(done.stdout))
        self.assertRegex(done.stderr, rb"\A[^\n]+\n\Z")
        self.assertIn(reason, done.stderr.decode())

    def failure(self, action="allow", **options):
        """The one line of a command that must fail."""
        done = self.location(action, **options)
        self.assertEqual((1, b""), (done.returncode, done.stdout), done.stderr)
        self.assertRegex(done.stderr, rb"\Alanternfold-widgets: [^\n]+\n\Z")
        return done.stderr.decode()

    def allow(self):
        done = self.location("allow")
        self.assertEqual((0, SHOWN, b""), (done.returncode, done.stdout, done.stderr))


class PortalTest(SandboxTest):
    """As every Flatpak has it: the bus shows the portal and hides its store."""

    def setUp(self):
        super().setUp()
        self.desktop = self.world.begin_desktop()
        self.bus = self.world.filtered_bus()

    def test_at_first_nothing_is_determined_and_nobody_is_asked(self):
        self.assertEqual("notDetermined", self.status())
        self.assertEqual([], self.desktop.said("asked"))
        self.assertFalse(self.world.data.exists())

    def test_a_user_who_agrees_shows_the_names_while_they_are_in_use(self):
        self.desktop.order("answer 0")
        self.allow()
        self.assertEqual(APPLICATION, self.desktop.expect("asked")["application"])
        self.assertEqual("authorizedWhenInUse", self.status())
        self.assertEqual("EXACT", self.world.stored_accuracy())
        self.assertEqual(b"location-consent 1\nauthorizedWhenInUse\n",
                         self.world.record.read_bytes())

    def test_the_session_is_closed_once_the_user_has_answered(self):
        self.desktop.order("answer 0")
        self.allow()
        self.desktop.expect("located")
        self.desktop.expect("stopped")

    def test_who_has_agreed_is_not_asked_again(self):
        self.world.set_permission("EXACT")
        self.allow()
        self.assertEqual([], self.desktop.said("asked"))

    def test_a_picture_of_the_wifi_asks_nobody(self):
        picture = self.world.folder / "card.svg"
        done = self.world.render("WlanNetworkStateWidget", "--output", str(picture),
                                 bus_address=self.bus)
        self.assertEqual(0, done.returncode, done.stderr)
        self.assertTrue(picture.exists())
        # What the portal was asked before has come by then.
        self.assertEqual("notDetermined", self.status())
        self.desktop.order("disable 0")
        self.assertEqual("disabled", self.desktop.next()["event"])

    def test_a_user_who_refuses_hides_the_names(self):
        for answer in (1, 2):
            with self.subTest(answer=answer):
                self.desktop.order(f"answer {answer}")
                self.assertIn("the location portal refused", self.failure())
                self.assertEqual("denied", self.status())
                self.assertEqual("NONE", self.world.stored_accuracy())
                self.world.delete_permission()
                self.desktop.expect("asked")

    def test_deny_withholds_what_the_portal_allows(self):
        self.world.set_permission("EXACT")
        self.allow()
        done = self.location("deny")
        self.assertEqual((0, b"Wi-Fi names are not shown from now on.\n"),
                         (done.returncode, done.stdout))
        self.assertEqual("denied", self.status())
        self.assertEqual("EXACT", self.world.stored_accuracy())
        self.allow()
        self.assertEqual("authorizedWhenInUse", self.status())

    def test_reset_withholds_until_the_portal_is_asked_again(self):
        self.world.set_permission("EXACT")
        self.allow()
        self.assertEqual(0, self.location("reset").returncode)
        self.assertEqual("notDetermined", self.status())
        self.assertEqual(0, self.location("allow-in-use").returncode)
        self.assertEqual("authorizedWhenInUse", self.status())

    def test_a_consent_that_was_taken_back_unseen_counts_at_the_next_question(self):
        self.world.set_permission("EXACT")
        self.allow()
        self.world.set_permission("NONE")
        self.assertEqual("authorizedWhenInUse", self.status())
        self.failure()
        self.assertEqual("denied", self.status())

    def test_an_administrator_who_switches_location_off_restricts_it(self):
        self.world.set_permission("EXACT")
        self.allow()
        self.desktop.order("disable 1")
        self.desktop.expect("disabled")
        self.assert_restricted("location switched off")
        self.assertIn("location switched off", self.failure())
        self.desktop.order("disable 0")
        self.desktop.expect("disabled")
        self.assertEqual("authorizedWhenInUse", self.status())

    def test_a_question_that_was_interrupted_decides_nothing(self):
        asking = self.world.begin_location("allow", self.bus)
        self.desktop.expect("asked")
        os.kill(self.world.inside(asking), signal.SIGINT)
        self.assertEqual(1, asking.wait(timeout=HANG_SECONDS))
        self.assertRegex(asking.stderr.read(),
                         rb"\Alanternfold-widgets: the question was taken back[^\n]+\n\Z")
        # The real portal may leave its dialog open; what is answered there is for the next question.
        self.desktop.order("answer 0")
        self.assertFalse(self.world.record.exists())

    def test_a_portal_that_dies_over_the_question_decides_nothing(self):
        asking = self.world.begin_location("allow", self.bus)
        self.desktop.expect("asked")
        self.world.portal.end()
        self.assertEqual(1, asking.wait(timeout=HANG_SECONDS))
        self.assertRegex(asking.stderr.read(),
                         rb"\Alanternfold-widgets: the location portal went away[^\n]+\n\Z")
        self.assertFalse(self.world.record.exists())

    def test_two_programs_that_ask_at_once_both_hear_the_answer(self):
        self.world.set_permission("EXACT")
        asking = [self.world.begin_location("allow", self.bus) for _ in range(5)]
        for each in asking:
            self.assertEqual(0, each.wait(timeout=HANG_SECONDS), each.stderr.read())
        self.assertEqual("authorizedWhenInUse", self.status())

    def test_an_answer_that_cannot_be_recorded_does_not_count(self):
        self.desktop.order("answer 0")
        line = self.failure(through=["prlimit", "--fsize=5"])
        self.assertIn(f"{self.world.record} could not be written: File too large; ", line)
        self.assertEqual("notDetermined", self.status())

    def test_outside_of_the_sandbox_the_users_word_is_enough(self):
        done = run("location", "allow", "--data-dir", str(self.world.data),
                   env=self.world.environment)
        self.assertEqual((0, b"Wi-Fi names are shown from now on.\n"),
                         (done.returncode, done.stdout))
        self.assertEqual([], self.desktop.said("asked"))
        # What was decided outside is no consent inside.
        self.assertEqual("notDetermined", self.status())


class WithoutLocationServiceTest(SandboxTest):
    backend_options = ("--without-location-service",)

    def test_a_question_that_ends_without_a_decision_is_none(self):
        self.world.begin_desktop().order("answer 0")
        self.bus = self.world.filtered_bus()
        self.assertIn("ended the question without a decision", self.failure())
        self.assertEqual("notDetermined", self.status())


class ObservableStoreTest(SandboxTest):
    """As a sandbox has it that may talk to the store."""

    def setUp(self):
        super().setUp()
        self.desktop = self.world.begin_desktop()

    def test_what_is_decided_in_the_store_counts_at_once(self):
        self.desktop.order("answer 0")
        self.allow()
        self.world.set_permission("NONE")
        self.assertEqual("denied", self.status())
        self.world.delete_permission()
        self.assertEqual("notDetermined", self.status())
        self.world.set_permission("CITY")
        self.assertEqual("authorizedWhenInUse", self.status())

    def test_a_consent_in_the_store_alone_is_none(self):
        self.world.set_permission("EXACT")
        self.assertEqual("notDetermined", self.status())

    def test_a_refusal_in_the_store_alone_is_one(self):
        self.world.set_permission("NONE")
        self.assertEqual("denied", self.status())


class WithoutPortalTest(SandboxTest):
    def test_a_bus_without_a_portal_restricts_it(self):
        self.assert_restricted("no location portal")
        self.assertIn("no location portal", self.failure())

    def test_a_portal_without_a_dialog_restricts_it(self):
        (self.world.folder / "portals" / "lanternfold.portal").unlink()
        self.world.begin_store()
        self.world.begin_portal()
        self.assert_restricted("no location portal")
        self.assertIn("no location portal", self.failure())

    def test_what_the_user_withholds_needs_no_portal(self):
        self.assertEqual(0, self.location("deny").returncode)
        self.assertEqual("denied", self.status())

    def test_no_bus_at_all_restricts_it(self):
        for address in ("unix:path=/nowhere", "nonsense", None):
            with self.subTest(address=address):
                self.bus = address
                self.assert_restricted("the session bus cannot be reached")
                self.assertIn("the session bus cannot be reached", self.failure())

    def test_a_bus_that_hangs_restricts_it(self):
        path = str(self.world.folder / "run" / "silent")
        with socket.socket(socket.AF_UNIX) as silent:
            silent.bind(path)
            silent.listen(8)
            self.bus = f"unix:path={path}"
            self.assert_restricted("does not answer")


class OddPortalTest(SandboxTest):
    """Somebody in the portal's place who answers otherwise than a portal does."""

    def begin(self, manner):
        return self.world.serve([PYTHON, "-B", str(HERE / "odd_portal.py"), manner], PORTAL)

    def test_a_question_waits_longer_than_a_look_for_a_portal_to_start(self):
        # Ends with its bus.
        self.world.offer_to_start(
            PORTAL, f'/bin/sh -c "sleep 12; exec {PYTHON} -B {HERE}/odd_portal.py early"')
        self.allow()
        self.assertEqual("authorizedWhenInUse", self.status())

    def test_an_interruption_takes_the_question_back(self):
        portal = self.begin("patient")
        asking = self.world.begin_location("allow", self.bus)
        portal.expect("asked")
        os.kill(self.world.inside(asking), signal.SIGTERM)
        portal.expect("closed")
        self.assertEqual(1, asking.wait(timeout=HANG_SECONDS))

    def test_the_first_of_two_answers_counts(self):
        self.begin("twice")
        self.allow()
        self.assertEqual("authorizedWhenInUse", self.status())

    def test_an_answer_before_the_call_returns_is_heard(self):
        self.begin("early")
        self.allow()

    def test_a_portal_that_gives_the_request_another_path_is_heard(self):
        self.begin("elsewhere")
        self.allow()

    def test_an_answer_that_cannot_be_understood_is_none(self):
        for manner in ("no-number", "no-results", "no-path", "no-session"):
            with self.subTest(manner=manner):
                portal = self.begin(manner)
                self.assertIn("an answer that cannot be understood", self.failure())
                self.assertFalse(self.world.record.exists())
                portal.end()
                self.world.wait_for_nobody(PORTAL)

    def test_an_answer_of_somebody_else_is_none(self):
        self.begin("impostor")
        self.assertIn("ended the question without a decision", self.failure())

    def test_a_session_that_is_closed_before_the_answer_ends_the_question(self):
        self.begin("closes")
        self.assertIn("ended the question without a decision", self.failure())

    def test_an_answer_that_says_more_than_yes_or_no_is_none(self):
        self.begin("seven")
        self.assertIn("ended the question without a decision", self.failure())

    def test_a_portal_that_does_not_answer_restricts_it(self):
        self.begin("silent")
        self.assert_restricted("does not answer")

    def test_a_portal_that_fails_decides_nothing(self):
        self.begin("fails")
        self.assert_restricted("the location portal failed")
        self.assertIn("the location portal failed", self.failure())
