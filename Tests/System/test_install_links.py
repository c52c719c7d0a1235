"""A desktop on which the product has been installed: what starts it with the session, and what opens
links of its own scheme, by the bus and by a program that knows of no bus."""

import os
import subprocess
import tempfile
import time
from pathlib import Path

from installation import APPLICATION, install
from namespaces import NamespaceTest

LINK = "net.quernaple.LanternfoldX://bandwidth-monitor?mini=1"
# A message that waits for its receiver's start is lost when the sender leaves meanwhile.
OPEN_BY_BUS = f"""
from gi.repository import Gio
Gio.AppInfo.launch_default_for_uri("{LINK}", None)
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.call_sync("{APPLICATION}", "/", "org.freedesktop.DBus.Peer", "Ping", None, None, 0, 30000)
"""
START_HOST = f"""
dbus-send --session --print-reply --dest=org.freedesktop.DBus / \
  org.freedesktop.DBus.StartServiceByName string:{APPLICATION} uint32:0 >/dev/null
"""
QUIT = '"$0" ctl quit'
# The tile has the name of the monitor that it opens.
TITLE = '"Bandwidth Monitor"'
WIDGETS = ("Panoramic", "Internet", "Network Adapter", "Bandwidth Monitor", "WiFi")


class LinksTest(NamespaceTest):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory(prefix="lanternfold-desktop-")
        self.addCleanup(folder.cleanup)
        # xdg-open finds nothing in a folder with a space in its name.
        self.prefix = Path(folder.name) / "prefix"
        install(self.prefix)
        self.environment = {
            "PATH": os.environ["PATH"], "HOME": folder.name, "LANG": "C.UTF-8",
            "XDG_DATA_HOME": f"{folder.name}/data", "XDG_CONFIG_HOME": f"{folder.name}/config",
            "XDG_RUNTIME_DIR": folder.name, "XDG_DATA_DIRS": str(self.prefix / "share"),
            "NO_AT_BRIDGE": "1", "DISPLAY": self.start_display()}

    def start_display(self):
        readable, writable = os.pipe()
        server = subprocess.Popen(["Xvfb", "-displayfd", str(writable), "-screen", "0", "1280x900x24",
                                   "-nolisten", "tcp", "-noreset"], pass_fds=[writable],
                                  stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)
        os.close(writable)
        with os.fdopen(readable) as stream:
            return f":{stream.readline().strip()}"

    def titles(self):
        shown = subprocess.run(["xwininfo", "-root", "-tree"], env=self.environment, text=True,
                               capture_output=True, check=True, timeout=30).stdout
        return [line.split(": (")[0].split(" ", 1)[1] for line in map(str.strip, shown.splitlines())
                if ": (" in line]

    def wait_for_monitors(self, count):
        """Until so many windows have its name, the tile's among them."""
        deadline = time.monotonic() + 30
        while self.titles().count(TITLE) < count:
            self.assertLess(time.monotonic(), deadline, self.titles())
            time.sleep(0.1)

    def in_a_session(self, script):
        """Runs a shell's commands in a session with a bus, in which the widgets are put away afterwards."""
        session = subprocess.Popen(
            ["dbus-run-session", "--", "sh", "-c", f"{script}\nread line\n{QUIT}",
             str(self.prefix / "bin" / "lanternfold-widgets")], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, env=self.environment, text=True)
        self.addCleanup(self.end, session)
        return session

    def end(self, session):
        try:
            told, _ = session.communicate("\n", timeout=30)
        except subprocess.TimeoutExpired:
            session.kill()
            raise
        self.assertEqual(0, session.returncode, told)

    def test_the_bus_starts_the_widgets(self):
        self.in_a_session(START_HOST)
        self.wait_for_monitors(1)
        self.assertLessEqual({f'"{name}"' for name in WIDGETS}, set(self.titles()))

    def test_a_session_without_systemd_starts_the_widgets(self):
        """As that of openbox does, which names no desktop of its own."""
        starter, = Path("/usr/lib").glob("*/openbox-xdg-autostart")
        self.in_a_session(f"XDG_CONFIG_DIRS='{self.prefix}/etc/xdg' {starter} GNOME")
        self.wait_for_monitors(1)
        self.assertLessEqual({f'"{name}"' for name in WIDGETS}, set(self.titles()))

    def test_a_link_is_opened_by_the_bus(self):
        self.in_a_session(f"/usr/bin/python3 -c '{OPEN_BY_BUS}'")
        self.wait_for_monitors(2)

    def test_a_link_is_opened_by_a_program_without_a_bus(self):
        self.in_a_session(f"xdg-open '{LINK}' &")
        self.wait_for_monitors(2)

    def test_a_link_is_opened_by_the_host_that_is_there(self):
        self.in_a_session(f"{START_HOST} xdg-open '{LINK}'")
        self.wait_for_monitors(2)
