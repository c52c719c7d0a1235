"""What is shown follows the network, also after times in which nobody looked."""

import time

from host_test import ADAPTER, INTERNET, PANORAMIC, XTest
from namespaces import ip

# Longer than a change is waited for to be over.
QUIET_SECONDS = 2.5


class NetworkTest(XTest):
    def setUp(self):
        super().setUp()
        self.session.begin_login_service()

    def begin(self):
        host = self.start_host()
        self.assert_all_shown(self.wait_for_widgets())
        return host

    def change_address(self):
        ip("address add 192.0.2.77/24 dev en0", "address del 192.0.2.2/24 dev en0")

    def finish_silently(self, host):
        self.finish(host)
        self.assertEqual([], host.errors)

    def test_an_address_changes_and_a_link_goes_down(self):
        host = self.begin()
        self.change_address()
        self.assert_shown(self.widget(ADAPTER), seconds=10)
        ip("link set en0 down")
        self.assert_shown(self.widget(PANORAMIC), seconds=10)
        self.finish(host)

    def test_a_change_while_the_machine_sleeps_is_shown_when_it_wakes_up(self):
        host = self.begin()
        self.session.sleep(True)
        self.change_address()
        time.sleep(QUIET_SECONDS)
        self.session.sleep(False)
        self.assert_shown(self.widget(ADAPTER), seconds=10)
        self.finish_silently(host)

    def test_a_change_behind_a_locked_screen_is_shown_when_it_is_unlocked(self):
        host = self.begin()
        self.session.lock(True)
        self.change_address()
        time.sleep(QUIET_SECONDS)
        self.session.lock(False)
        self.assert_shown(self.widget(ADAPTER), seconds=10)
        self.finish_silently(host)

    def test_a_screen_that_is_locked_at_the_start(self):
        self.session.lock(True)
        host = self.start_host()
        self.wait_for_widgets()
        self.session.lock(False)
        self.assert_shown(self.widget(INTERNET))
        self.finish_silently(host)
