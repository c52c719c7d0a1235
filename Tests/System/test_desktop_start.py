"""How the host starts: when whoever waits for the widgets hears of them, where messages go that no
terminal is there for, and what it does about neighbours that take a connection and never answer."""

import os
import shutil
import signal
import socket
import time
from pathlib import Path

from host_process import EXTENSION_NAME, PROGRAM
from host_test import BANDWIDTH, SwayTest, XTest
from link_handler import SAID, install_handler
from process_tree import running, wait_until
from program import PROGRAM as WIDGETS
from program import run

EXTENSION = """#!/bin/sh
echo "the extension says something" >&2
sleep {seconds}
exec "{extension}" "$@"
"""
X_SOCKETS = Path("/tmp/.X11-unix")
# What no start takes, and what would wait for a silent bus, compositor or portal exceeds.
SOON_SECONDS = 9


class DetachTests:
    """On either display."""

    def setUp(self):
        super().setUp()
        self.log = self.session.folder / "state" / "net.quernaple.LanternfoldX" / "host.log"

    def show_beside(self, seconds, **variables):
        """`show --detach` of a host whose extension takes that time to start."""
        folder = self.session.folder / "programs"
        if not folder.exists():
            folder.mkdir()
            for program in (PROGRAM, WIDGETS):
                shutil.copy(program, folder)
        extension = folder / EXTENSION_NAME
        extension.unlink(missing_ok=True)
        extension.write_text(EXTENSION.format(
            seconds=seconds, extension=os.environ["LANTERNFOLD_WIDGET_EXTENSION"]))
        extension.chmod(0o755)
        return run("show", *self.service_options, "--detach", env=self.environment | variables,
                   program=str(folder / Path(WIDGETS).name))

    def screen(self):
        return self.display.picture(self.folder / "screen.png").read_bytes()

    def quit(self):
        self.ctl("quit")
        wait_until(lambda: not running("lanternfold-widget-host"), "the end of the host")

    def test_when_it_returns_a_card_is_on_the_screen(self):
        """It once returned when the program had begun."""
        before = self.screen()
        done = self.show_beside(seconds=2)
        self.assertEqual((0, b"", b""), (done.returncode, done.stdout, done.stderr))
        # The window is there; what it shows is on its way.
        wait_until(lambda: self.screen() != before, "a card", 1, pause=0.1)
        self.quit()

    def test_it_returns_also_while_the_extension_does_not_answer(self):
        began = time.monotonic()
        self.assertEqual(0, self.show_beside(seconds=60).returncode)
        self.assertLess(time.monotonic() - began, 20)
        self.quit()

    def test_it_says_so_when_it_returns_with_nothing_on_an_empty_desktop(self):
        """It once returned without a word, as if the gallery could be had."""
        self.store.parent.mkdir(parents=True)
        self.store.write_text('{"version":1,"widgets":[]}')
        done = self.show_beside(seconds=60)
        self.assertEqual(0, done.returncode)
        self.assertRegex(done.stderr.decode(), r"\A[^\n]*not there yet[^\n]*does not answer[^\n]*\n\Z")
        self.quit()

    def test_later_messages_are_kept_where_the_user_finds_them(self):
        """Those of the extension too. A second start, which hands over, keeps them; the next host
        begins anew."""
        done = self.show_beside(seconds=0)
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        self.assertEqual(0o600, self.log.stat().st_mode & 0o777)
        wait_until(lambda: "the extension says something\n" in self.log.read_text(), "its line")
        for pid in running(EXTENSION_NAME):
            os.kill(pid, signal.SIGKILL)
        wait_until(lambda: "SIGKILL" in self.log.read_text() or "signal 9" in self.log.read_text(),
                   "the host's line")
        before = self.log.read_text()
        self.assertEqual(0, self.show_beside(seconds=0).returncode)
        self.assertTrue(self.log.read_text().startswith(before))
        self.quit()
        self.assertEqual(0, self.show_beside(seconds=0).returncode)
        self.assertFalse(self.log.read_text().startswith(before))
        self.quit()

    def test_a_file_of_messages_that_cannot_be_had_is_said_at_once(self):
        (self.session.folder / "state").write_text("in the way")
        done = self.show_beside(seconds=0)
        self.assertEqual(0, done.returncode)
        self.assertRegex(done.stderr.decode(), r"\A[^\n]*will be lost: [^\n]*XDG_STATE_HOME\n\Z")
        self.quit()

    def test_a_host_with_a_terminal_keeps_no_file(self):
        host = self.start_host()
        self.wait_for_widgets()
        self.finish(host)
        self.assertFalse(self.log.exists())

    def test_a_number_that_is_no_pipe_is_refused(self):
        """It would be the number of a file that is opened later, and a byte be written into it."""
        for number in ("7", "0", "x"):
            host = self.start_host("--started-fd", number)
            self.assertEqual(2, host.wait(), host.errors)
            self.assertEqual(1, len(host.errors), host.errors)


class XDetachTest(DetachTests, XTest):
    def test_a_program_that_a_link_has_started_does_not_fill_the_file_of_messages(self):
        """It once had that file for its standard error, which nobody trims while it alone writes."""
        opened = install_handler(self.session.folder)
        self.assertEqual(0, self.show_beside(seconds=0).returncode)
        self.wait_for_widgets()
        self.display.click(*self.middle(self.widget(BANDWIDTH)))
        wait_until(lambda: opened.exists() and opened.read_text(), "the opened link", 10)
        self.assertNotIn(SAID, self.log.read_text())
        self.quit()


class SwayDetachTest(DetachTests, SwayTest):
    pass


def silent_socket(test, path):
    """Takes connections, and never says anything on them."""
    listener = socket.socket(socket.AF_UNIX)
    test.addCleanup(listener.close)
    listener.bind(str(path))
    test.addCleanup(path.unlink)
    listener.listen()


class SilentNeighbourTest(XTest):
    """Whoever takes a connection and never says anything on it."""

    def silent_socket(self, name):
        """Its path."""
        path = self.session.folder / name
        silent_socket(self, path)
        return path

    def assert_shown_soon(self, began):
        wait_until(self.store.exists, "the file of the widgets", SOON_SECONDS)
        wait_until(lambda: len(self.card_windows()) == 5, "the cards",
                   began + SOON_SECONDS - time.monotonic())

    def assert_said_once(self, host, text):
        self.assertEqual([True], [text in line for line in host.errors], host.errors)

    def test_the_session_bus(self):
        began = time.monotonic()
        host = self.start_host(
            DBUS_SESSION_BUS_ADDRESS=f"unix:path={self.silent_socket('bus')}")
        self.assert_shown_soon(began)
        self.finish(host)
        self.assert_said_once(host, "message bus does not answer")

    def test_the_system_bus(self):
        began = time.monotonic()
        host = self.start_host(
            DBUS_SYSTEM_BUS_ADDRESS=f"unix:path={self.silent_socket('bus')}")
        self.assert_shown_soon(began)
        self.finish(host)
        self.assertEqual([], host.errors)

    def test_the_compositor_beside_an_x_server(self):
        began = time.monotonic()
        host = self.start_host(WAYLAND_DISPLAY=str(self.silent_socket("wayland")))
        self.assert_shown_soon(began)
        self.finish(host)
        self.assert_said_once(host, "compositor does not answer")

    def test_the_compositor_alone(self):
        host = self.start_host(without=("DISPLAY",),
                               WAYLAND_DISPLAY=str(self.silent_socket("wayland")))
        self.assertEqual(1, host.wait(SOON_SECONDS))
        self.assert_said_once(host, "compositor does not answer")

    def test_the_x_server(self):
        """The toolkit's library waits for it without end."""
        silent_socket(self, X_SOCKETS / "X77")
        host = self.start_host(DISPLAY=":77")
        self.assertEqual(1, host.wait(SOON_SECONDS))
        self.assert_said_once(host, "X server does not answer")

    def test_the_settings_portal(self):
        """The bus knows it, and it hangs."""
        self.session.begin_desktop()
        self.session.portal.process.send_signal(signal.SIGSTOP)
        began = time.monotonic()
        host = self.start_host()
        self.assert_shown_soon(began)
        self.finish(host)
        self.assertEqual([], host.errors)


class FirstColoursTest(XTest):
    def test_a_dark_desktop_never_sees_a_light_card(self):
        """The portal's answer takes a moment, for which the first card waits."""
        self.session.begin_desktop().order("scheme 1")
        self.start_host()
        widgets = self.wait_for_widgets()
        wait_until(self.card_windows, "a card")
        x, y = self.middle(widgets[0])
        seen = {self.pixel(x, y) for _ in range(5)}
        self.assert_shown(widgets[0], scheme="dark")
        self.assertFalse({colour for colour in seen if int(colour[:2], 16) > 0xC0}, seen)


class NoLayersTest(XTest):
    """A compositor without the layer below the windows, alone and beside an X server."""

    def begin_weston(self):
        """The variable by which programs find it."""
        path = self.session.folder / "run" / "plain"
        self.session.begin(["weston", "--backend=headless-backend.so", f"--socket={path.name}",
                            "--idle-time=0", "--no-config"])
        wait_until(path.exists, "the start of weston")
        return {"WAYLAND_DISPLAY": str(path)}

    def assert_said_once(self, host, text):
        """The toolkit complains besides of a compositor without any keyboard, as this one is."""
        lines = [line for line in host.errors if "gdk_seat" not in line]
        self.assertEqual([True], [text in line for line in lines], host.errors)

    def test_ordinary_windows(self):
        host = self.start_host(without=("DISPLAY",), **self.begin_weston())
        self.wait_for_widgets()
        self.assert_said_once(host, "ordinary windows")
        self.finish(host)

    def test_ordinary_windows_beside_a_display_that_is_gone(self):
        """The host once ended, since DISPLAY was set."""
        host = self.start_host(**self.begin_weston() | {"DISPLAY": ":76"})
        self.wait_for_widgets()
        self.assert_said_once(host, "ordinary windows")
        self.finish(host)

    def test_ordinary_windows_beside_a_display_that_is_silent(self):
        silent_socket(self, X_SOCKETS / "X77")
        host = self.start_host(**self.begin_weston() | {"DISPLAY": ":77",
                                                        "GDK_BACKEND": "x11,wayland"})
        self.wait_for_widgets()
        self.assert_said_once(host, "ordinary windows")
        self.finish(host)

    def test_it_returns_to_whoever_waits(self):
        self.display.environment = self.begin_weston()
        began = time.monotonic()
        done = self.show("--detach")
        self.assertEqual(0, done.returncode)
        self.assertIn(b"ordinary windows", done.stderr)
        self.assertLess(time.monotonic() - began, SOON_SECONDS)
        self.ctl("quit")

    def test_the_x_server_is_preferred_and_that_is_said(self):
        host = self.start_host(**self.begin_weston())
        self.assert_all_shown(self.wait_for_widgets())
        self.assert_said_once(host, "X11 side")
        self.finish(host)


class LastClientTest(XTest):
    def test_a_server_that_ends_with_its_last_client_stays_for_the_widgets(self):
        """It is asked whether it answers before the toolkit connects to it."""
        self.session.begin(["Xvfb", ":78", "-terminate", "-nolisten", "tcp"])
        wait_until((X_SOCKETS / "X78").exists, "the server's start")
        host = self.start_host(DISPLAY=":78")
        self.wait_for_widgets()
        self.finish(host)


class DeadDisplayTest(XTest):
    def test_a_display_that_is_gone_is_named(self):
        host = self.start_host(DISPLAY=":76")
        self.assertEqual(1, host.wait(SOON_SECONDS))
        self.assertRegex("".join(host.errors), r"\A[^\n]*check DISPLAY[^\n]*\n?\Z")


class NoWifiTest(XTest):
    consent = None

    def test_nobody_is_asked_about_the_names_of_networks_that_there_are_not(self):
        self.start_host()
        self.assert_all_shown(self.wait_for_widgets())
        time.sleep(1)
        self.assertEqual(set(self.card_windows().values()), set(self.display.windows()))
        self.assertEqual(5, len(self.display.windows()))
