"""An extension that dies at random, is left alone, or does not work from the beginning: what the
cards show meanwhile, and how a user gets it back."""

import json
import os
import random
import signal
import threading
import time

from desktop_session import DesktopSession
from displays import XDisplay
from host_process import EXTENSION_NAME, ctl, host_beside
from host_test import APPLICATION, KINDS, SwayTest, XTest
from namespaces import ip
from process_tree import wait_until
from program import run

KILLS, HOSTS = 100, 4


class FailureTests:
    """On either display."""

    def begin(self, *arguments):
        self.session.begin_accessibility()
        host = self.start_host(*arguments)
        self.assert_all_shown(self.wait_for_widgets())
        return host

    def kill(self, host):
        """Ends the extension, having it asked before that: one that was asked nothing for half a
        minute is on its way out, and its end no crash any more."""
        self.ctl("reload")
        for pid in wait_until(host.extensions, "an extension", 20):
            os.kill(pid, signal.SIGKILL)
            wait_until(lambda: pid not in host.extensions(), "its end", 5)

    def assert_left_alone(self, host):
        """None is started. The last one may take a moment to go on a busy machine; one that was
        started would stay for half a minute."""
        wait_until(lambda: not host.extensions(), "the end of the last extension", 10)
        deadline = time.monotonic() + 2
        while time.monotonic() < deadline:
            self.assertEqual([], host.extensions(), host.errors)
            time.sleep(0.05)

    def press_try_again(self):
        self.session.accessible("press", APPLICATION, "Try again")

    def try_again_is_shown(self):
        return self.says("'Try again'")

    def test_a_crash_leaves_what_was_shown(self):
        host = self.begin()
        self.kill(host)
        self.assert_all_shown()
        self.ctl("reload")
        wait_until(host.extensions, "another extension", 10)
        self.assert_all_shown()

    def test_five_crashes_in_a_minute_are_enough(self):
        """Every card says so, and one button brings all of them back."""
        host = self.begin()
        for _ in range(5):
            self.kill(host)
        wait_until(self.try_again_is_shown, "quiet cards", 10)
        self.assert_left_alone(host)
        ip("link set far0 down", "link set far0 up")
        self.assert_left_alone(host)
        self.press_try_again()
        wait_until(host.extensions, "another extension", 5)
        self.assert_all_shown()
        self.assertFalse(self.try_again_is_shown())
        self.finish(host)

    def test_a_command_brings_it_back_too(self):
        host = self.begin()
        for _ in range(5):
            self.kill(host)
        wait_until(self.try_again_is_shown, "quiet cards", 10)
        self.ctl("reload")
        self.assert_all_shown()

    def test_what_is_not_up_to_date_says_so(self):
        """After two updates that have failed, until one succeeds."""
        self.session.begin_accessibility()
        self.start_recorded_host()
        widgets = self.wait_for_widgets()
        self.assert_all_shown(widgets)
        self.refusals.touch()
        self.reload()
        self.assert_shown(widgets[0])
        self.assertFalse(self.says("Not up to date"))
        self.reload()
        wait_until(lambda: self.says("Not up to date"), "the mark", 10)
        self.refusals.unlink()
        self.ctl("reload")
        self.assert_all_shown(widgets)
        self.assertFalse(self.says("Not up to date"))

    def reload(self):
        before = len(self.asked())
        self.ctl("reload")
        wait_until(lambda: len(self.asked()) >= before + 5, "questions", 10)

    def says(self, text):
        return text in str(self.session.accessible("tree", APPLICATION))


class XFailureTest(FailureTests, XTest):
    pass


class SwayFailureTest(FailureTests, SwayTest):
    pass


class FirstStartTests:
    """With nothing remembered, and an extension that does not work before somebody mends it."""

    def begin(self, script):
        self.session.begin_accessibility()
        folder = self.session.folder / "broken"
        program = host_beside(folder, "recording_extension.py")
        self.extension = folder / EXTENSION_NAME
        self.replace_extension(script)
        return self.start_host(program=program)

    def replace_extension(self, script):
        """None: it is not installed."""
        self.extension.unlink()
        if script is not None:
            fresh = self.extension.with_suffix(".new")
            fresh.write_text(f"#!/bin/sh\n{script}\n")
            fresh.chmod(0o755)
            fresh.rename(self.extension)

    def says(self, text):
        return text in str(self.session.accessible("tree", APPLICATION))

    def assert_cards_of_the_host(self, text="'Try again'", seconds=60):
        wait_until(lambda: self.says(text), text, seconds, pause=0.5)
        self.assertTrue(self.says("'Try again'"))
        self.assertEqual(list(KINDS), [each["kind"] for each in self.wait_for_widgets()])

    def mend(self, host):
        """A press on one card brings all five."""
        if not self.extension.exists():
            self.extension.touch()
        self.replace_extension(f'exec "{os.environ["LANTERNFOLD_WIDGET_EXTENSION"]}" "$@"')
        self.session.accessible("press", APPLICATION, "Try again")
        self.assert_all_shown(self.wait_for_widgets())
        self.assertFalse(self.says("'Try again'"))
        self.assertEqual(self.widgets(), json.loads(self.store.read_text())["widgets"])
        self.finish(host)

    def test_an_extension_that_ends_at_once(self):
        """The next start, too, when the widgets are remembered."""
        host = self.begin("exit 1")
        self.assert_cards_of_the_host()
        self.assertFalse(self.store.exists())
        self.assert_cards_of_the_host("This widget has stopped")
        self.mend(host)
        remembered = self.store.read_bytes()
        self.replace_extension("exit 1")
        again = self.start_host(program=self.extension.with_name("lanternfold-widget-host"))
        self.assert_cards_of_the_host()
        self.assertEqual(remembered, self.store.read_bytes())
        self.mend(again)

    def test_an_extension_that_is_not_installed(self):
        host = self.begin(None)
        self.assert_cards_of_the_host()
        self.assertFalse(self.store.exists())
        self.mend(host)

    def test_an_extension_that_never_answers(self):
        host = self.begin("exec sleep 1000")
        self.assert_cards_of_the_host()
        self.assertFalse(self.store.exists())
        self.mend(host)


class XFirstStartTest(FirstStartTests, XTest):
    pass


class SwayFirstStartTest(FirstStartTests, SwayTest):
    pass


class KillTest(XTest):
    """Killed at random moments, a hundred times in all, on several desktops at once: each fifth
    time somebody has to press a button."""

    def test_a_hundred_times(self):
        seed = random.randrange(1_000_000)
        desktops = [Desktop(self, f"{seed} {number}") for number in range(HOSTS)]
        threads = [threading.Thread(target=each.kill_often, args=[KILLS // HOSTS])
                   for each in desktops]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        for each in desktops:
            self.assertIsNone(each.failure, f"seed {seed}: {each.failure}")
            self.assertEqual(KILLS // HOSTS, each.kills)
            self.session, self.display = each.session, each.display
            self.ctl("reload")
            self.assert_all_shown()
            self.finish(each.host)


class Desktop:
    """One more session with a display and a host of its own."""

    def __init__(self, test, seed):
        self.random = random.Random(seed)
        self.kills = 0
        self.failure = None
        self.session = DesktopSession().__enter__()
        test.addCleanup(self.session.__exit__)
        self.session.begin_accessibility()
        test.session, test.display = self.session, XDisplay(self.session)
        self.display = test.display
        data = str(test.folder / f"data {seed}")
        run("location", "deny", "--data-dir", data, check=True)
        test.service_options = [*test.service_options[:1], data, *test.service_options[2:]]
        self.host = test.start_host()
        test.assert_shown(test.wait_for_widgets()[0])

    @property
    def environment(self):
        return self.session.environment | self.display.environment

    def kill_often(self, count):
        try:
            while self.kills < count:
                self.kill_once()
        except Exception as error:  # told by the test's own thread
            self.failure = error

    def kill_once(self):
        pids = self.host.extensions()
        if not pids:
            self.have_it_started()
            pids = wait_until(self.host.extensions, f"an extension after {self.kills} kills", 40)
        time.sleep(self.random.expovariate(20))
        for pid in pids:
            try:
                os.kill(pid, signal.SIGKILL)
                self.kills += 1
            except ProcessLookupError:
                pass
        wait_until(lambda: not set(pids) & set(self.host.extensions()), "its end", 5)
        if not self.host.is_alive():
            raise AssertionError(f"the host has ended: {self.host.errors}")

    def have_it_started(self):
        ctl(self.environment, "reload")
        tree = self.session.accessible("tree", APPLICATION)
        if "'Try again'" in str(tree):
            self.session.accessible("press", APPLICATION, "Try again")
