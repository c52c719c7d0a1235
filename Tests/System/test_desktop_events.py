"""When the extension is asked: upon changes of the network, after a sleep, and not while the screen
is locked."""

import time

from host_test import XTest
from namespaces import ip
from process_tree import wait_until

QUIET_SECONDS = 2.5
# Of the five all but the bandwidth tile, which says that it never changes.
CHANGING = 4


class EventTest(XTest):
    def setUp(self):
        super().setUp()
        self.session.begin_login_service()

    def begin(self, *arguments):
        host = self.start_recorded_host(*arguments)
        self.wait_for_widgets()
        wait_until(lambda: len(self.asked()) >= 5, "the first questions")
        self.settle()
        return host

    def settle(self):
        """Nothing is asked for a while; how many questions there were."""
        before = -1
        while before != (now := len(self.asked())):
            before = now
            time.sleep(QUIET_SECONDS)
        return now

    def wait_for_questions(self, before, seconds=10):
        """Those after the first `before`, once each widget that changes has been asked for."""
        wait_until(lambda: len(self.asked()) >= before + CHANGING, "a question for each widget", seconds)
        return self.asked()[before:]

    def test_at_rest_nothing_is_asked(self):
        self.begin()
        before = len(self.asked())
        time.sleep(2 * QUIET_SECONDS)
        self.assertEqual(before, len(self.asked()))

    def test_a_cable_is_pulled_and_put_back(self):
        """Each time the widgets are asked for once, a second after the last change."""
        self.begin()
        for change in ("link set far0 down", "link set far0 up"):
            before = len(self.asked())
            changed = time.monotonic()
            ip(change)
            moments = [moment for moment, _ in self.wait_for_questions(before)]
            self.assertGreater(moments[0] - changed, 0.9)
            self.assertLess(moments[0] - changed, 3)
            self.assertEqual(before + CHANGING, self.settle())

    def test_a_restless_network_is_asked_about_now_and_then(self):
        self.begin()
        before = len(self.asked())
        end = time.monotonic() + 8
        while time.monotonic() < end:
            ip("link set far0 down", "link set far0 up")
            time.sleep(0.2)
        rounds = (self.settle() - before) / CHANGING
        self.assertLessEqual(1, rounds)
        self.assertLessEqual(rounds, 9)

    def test_the_machine_wakes_up(self):
        self.begin()
        before = len(self.asked())
        self.session.sleep(True)
        time.sleep(QUIET_SECONDS)
        self.assertEqual(before, len(self.asked()))
        woken = time.monotonic()
        self.session.sleep(False)
        moment, _ = self.wait_for_questions(before)[0]
        self.assertLess(moment - woken, 3)

    def test_nobody_looks_while_the_screen_is_locked(self):
        """What was missed is asked for at once afterwards."""
        self.begin("--refresh-interval", "10")
        self.session.lock(True)
        time.sleep(1)
        before = len(self.asked())
        ip("link set far0 down")
        time.sleep(11)
        self.assertEqual(before, len(self.asked()))
        unlocked = time.monotonic()
        self.session.lock(False)
        moment, _ = self.wait_for_questions(before)[0]
        self.assertLess(moment - unlocked, 3)

    def test_every_ten_seconds_when_that_is_wanted(self):
        self.begin("--refresh-interval", "10")
        before = len(self.asked())
        began = time.monotonic()
        self.wait_for_questions(before, 15)
        self.assertLess(time.monotonic() - began, 12)

    def test_the_extension_leaves_when_nobody_asks(self):
        host = self.begin()
        wait_until(lambda: not host.children(), "the end of the extension", 40)
        self.assertTrue(host.is_alive())
        before = len(self.asked())
        self.ctl("reload")
        self.wait_for_questions(before)
