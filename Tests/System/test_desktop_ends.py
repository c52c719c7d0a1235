"""How the host ends, and what it does without the buses of a desktop: quickly, with nothing left
behind and nothing lost."""

import fcntl
import json
import os
import signal
import time

from host_process import host_beside
from host_test import SwayTest, XTest
from message_bus_relay import silent_after_greeting
from process_tree import running, wait_until
from program import run

# A service on the session bus that is not there.
NO_BUS = "unix:path=/nonexistent"


class EndTests:
    """On either display."""

    def begin(self, **options):
        host = self.start_host(**options)
        self.assert_shown(self.wait_for_widgets()[0])
        return host

    def test_the_system_asks_it_to_end(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number):
                host = self.begin()
                self.finish(host, number)
                self.assertEqual([], host.errors)

    def test_a_command_asks_it_to_end(self):
        host = self.begin()
        self.ctl("quit")
        self.assert_clean_end(host)
        self.assertEqual([], host.errors)
        self.assertEqual(1, run("ctl", "list", env=self.environment).returncode)

    def test_asked_before_anything_is_shown(self):
        for moment in range(0, 400, 50):
            host = self.start_host()
            time.sleep(moment / 1000)
            host.process.send_signal(signal.SIGTERM)
            status = host.wait(10)
            self.assertIn(status, (0, -signal.SIGTERM), host.errors)
            wait_until(lambda: not running("lanternfold-widget-extension"), "the extension's end", 5)

    def test_the_display_dies(self):
        """A sentence, and an end that is no crash."""
        host = self.begin()
        before = self.store.read_bytes()
        self.display.server.kill()
        self.assert_clean_end(host, status=1)
        self.assertEqual(1, len(host.errors), host.errors)
        self.assertEqual(before, self.store.read_bytes())

    def test_killed_it_takes_the_extension_along_and_begins_where_it_was(self):
        host = self.begin()
        before = self.widgets()
        wait_until(host.extensions, "an extension")
        host.process.kill()
        host.wait()
        wait_until(lambda: not running("lanternfold-widget-extension"), "the extension's end", 5)
        self.begin()
        self.assertEqual(before, self.widgets())

    def test_no_bus_at_all(self):
        """The widgets are there; a second host finds the first, which it cannot tell anything."""
        variables = {"DBUS_SESSION_BUS_ADDRESS": NO_BUS, "DBUS_SYSTEM_BUS_ADDRESS": NO_BUS}
        host = self.start_host(**variables)
        self.assert_default_set_shown()
        self.assert_kept_out_by(host, self.start_host(**variables))
        self.finish(host)

    def assert_kept_out_by(self, first, second):
        """It says who shows the widgets, and how to end that one."""
        self.assertEqual(1, second.wait(), second.errors)
        self.assertEqual(1, len(second.errors), second.errors)
        self.assertRegex(second.errors[0], rf"process {first.pid},.*ctl quit.*\"kill {first.pid}\"")
        self.assertTrue(first.is_alive())

    def test_two_buses_of_one_user_share_one_file_and_so_one_host(self):
        """As after two logins, or over ssh: the second host would write its own idea of the desktop
        over that of the first."""
        host = self.begin()
        before = self.store.read_bytes()
        second = self.start_host(DBUS_SESSION_BUS_ADDRESS=self.session.begin_bus())
        self.assert_kept_out_by(host, second)
        self.assertEqual(before, self.store.read_bytes())
        self.finish(host)
        self.begin()

    def test_a_host_that_is_started_while_the_last_one_ends_waits_for_it(self):
        host = self.begin()
        host.process.send_signal(signal.SIGSTOP)
        second = self.start_host(DBUS_SESSION_BUS_ADDRESS=self.session.begin_bus())
        # It may take its extension's farewell, a silent bus and a slow disk.
        time.sleep(4.5)
        host.process.kill()
        host.wait()
        self.assert_default_set_shown()
        self.assertTrue(second.is_alive(), second.errors)
        self.finish(second)

    def test_whoever_is_kept_out_tells_nobody_that_the_widgets_are_shown(self):
        """It once had the name on its bus for the seconds in which it waited for the first."""
        host = self.begin()
        bus = self.session.begin_bus()
        others = [self.start_host(DBUS_SESSION_BUS_ADDRESS=bus) for _ in range(2)]
        for other in others:
            self.assert_kept_out_by(host, other)
        self.finish(host)

    def test_of_two_that_are_started_at_once_one_hands_over(self):
        hosts = [self.start_host() for _ in range(2)]
        self.assert_all_shown(self.wait_for_widgets())
        second = wait_until(lambda: next((each for each in hosts if not each.is_alive()), None),
                            "the end of the second", 10)
        self.assertEqual((0, []), (second.wait(), second.errors))
        hosts.remove(second)
        self.finish(hosts[0])

    def assert_default_set_shown(self):
        """Without anybody who could be asked where they stand: the file says it."""
        wait_until(self.store.exists, "the file of the widgets")
        widgets = json.loads(self.store.read_text())["widgets"]
        self.assertEqual(5, len(widgets))
        self.assert_all_shown(widgets)

    def test_no_system_bus(self):
        host = self.begin(DBUS_SYSTEM_BUS_ADDRESS=NO_BUS)
        self.assert_all_shown()
        self.finish(host)

    def test_the_session_bus_goes(self):
        """Whoever can no longer be asked goes on showing what there is, or ends cleanly."""
        host = self.begin()
        self.session.buses[0].kill()
        time.sleep(2)
        if host.is_alive():
            host.process.terminate()
        self.assert_clean_end(host)


class XEndTest(EndTests, XTest):
    def test_a_bus_that_falls_silent_after_the_connection_holds_nobody_up_for_long(self):
        """It was once asked 31 times, for three seconds each."""
        host = self.begin()
        bus = silent_after_greeting(self, self.session.begin_bus(), self.session.folder / "bus")
        second = self.start_host(DBUS_SESSION_BUS_ADDRESS=bus)
        self.assertEqual(1, second.wait(20), second.errors)
        self.assertIn(f"the process {host.process.pid},", " ".join(second.errors))
        self.finish(host)

    def test_nobody_else_gets_the_file_before_a_slow_extension_has_let_it_end(self):
        """A desktop that no disk has taken yet is saved within that time."""
        host = self.start_host(
            program=host_beside(self.session.folder / "late", "late_extension.py"),
            LANTERNFOLD_SIGNAL=str(self.session.folder / "never"),
            LANTERNFOLD_WIDGET_EXTENSION=os.environ["LANTERNFOLD_WIDGET_EXTENSION"])
        wait_until(host.children, "an extension")
        wait_until(self.store.with_name("host.lock").exists, "the lock")
        host.process.send_signal(signal.SIGTERM)
        began = time.monotonic()
        with open(self.store.with_name("host.lock"), "rb") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
        # What an extension has that does not end by itself.
        self.assertGreater(time.monotonic() - began, 1.5)
        self.assertEqual(0, host.wait(2), host.errors)

    def test_the_window_manager_is_replaced(self):
        host = self.begin()
        self.display.manager.kill()
        self.display.manager.wait()
        self.session.begin(["openbox", "--sm-disable"], **self.display.environment)
        self.assert_all_shown()
        self.assertTrue(host.is_alive())

    def test_one_that_hangs_is_named_to_whoever_starts_another(self):
        """The bus once had the blame, and signing in anew was the advice."""
        host = self.begin()
        host.process.send_signal(signal.SIGSTOP)
        second = self.start_host()
        self.assertEqual(1, second.wait(40), second.errors)
        host.process.send_signal(signal.SIGCONT)
        self.assertEqual(1, len(second.errors), second.errors)
        self.assertRegex(second.errors[0],
                         rf"shows the widgets does not answer;.*\"kill -KILL {host.pid}\"")
        self.finish(host)


class SwayEndTest(EndTests, SwayTest):
    def test_the_compositor_is_asked_to_leave(self):
        host = self.begin()
        self.display.run("sh", "-c", "swaymsg exit || true")
        self.assert_clean_end(host, status=1)
