"""A desktop session of a test's own: private buses, the real permission store, the real location
portal with a dialog that the test answers, and sandboxes that the portal takes for such.

The sandboxes are made with the tools that make a Flatpak's: the file that tells the portal who is
inside, and a filter before the bus that shows the portals and hides the store behind them.
"""

import json
import os
import queue
import signal
import subprocess
import tempfile
import threading
import time
from pathlib import Path

from program import PROGRAM

APPLICATION = "net.quernaple.LanternfoldTest"
PORTAL = "org.freedesktop.portal.Desktop"
STORE = "org.freedesktop.impl.portal.PermissionStore"
BACKEND = "org.freedesktop.impl.portal.desktop.lanternfold"
HANG_SECONDS = 60
# Debian's own Python has its D-Bus library; another one that comes first in PATH has not.
PYTHON = "/usr/bin/python3"
HERE = Path(__file__).resolve().parent

BUS_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><listen>unix:dir={folder}</listen><auth>EXTERNAL</auth>
<servicedir>{folder}/services</servicedir>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
<allow own="*"/></policy></busconfig>
"""

BACKEND_FILE = f"""[portal]
DBusName={BACKEND}
Interfaces=org.freedesktop.impl.portal.Access;org.freedesktop.impl.portal.Lockdown;\
org.freedesktop.impl.portal.Settings;
UseIn=lanternfold
"""


class Helper:
    """A process that serves the session. It tells events as lines of JSON and takes orders."""

    def __init__(self, command, **options):
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        **options)
        self._events = queue.Queue()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self.process.stdout:
            if line.startswith(b"{"):
                self._events.put(json.loads(line))

    def order(self, line):
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()

    def expect(self, name):
        """The next event of that name; others before it are dropped."""
        while True:
            event = self._events.get(timeout=HANG_SECONDS)
            if event["event"] == name:
                return event

    def next(self):
        return self._events.get(timeout=HANG_SECONDS)

    def said(self, name):
        """The events of that name that have come and were not taken."""
        events = []
        while not self._events.empty():
            events.append(self._events.get())
        return [event for event in events if event["event"] == name]

    def end(self):
        """The second call does nothing."""
        if self.process.stdin.closed:
            return
        self.process.kill()
        self.process.wait(timeout=HANG_SECONDS)
        self._reader.join(timeout=HANG_SECONDS)
        self.process.stdin.close()
        self.process.stdout.close()


class PortalWorld:
    """Use it in a `with` statement; leaving it ends every process that it has started."""

    def __init__(self, backend_options=()):
        self._folder = tempfile.TemporaryDirectory(prefix="lanternfold-")
        self.folder = Path(self._folder.name)
        self.data = self.folder / "app" / "data"
        self.record = self.data / "portal-location-consent"
        self._ends = []
        self.buses = []  # their processes: the session's, the system's
        self._backend_options = backend_options

    def __enter__(self):
        try:
            self._begin()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for end in reversed(self._ends):
            end()
        self._folder.cleanup()

    def _begin(self):
        for name in ("home", "run", "portals", "services", "app"):
            (self.folder / name).mkdir(mode=0o700)
        (self.folder / "portals" / "lanternfold.portal").write_text(BACKEND_FILE)
        (self.folder / "bus.conf").write_text(BUS_CONFIGURATION.format(folder=self.folder))
        (self.folder / "flatpak-info").write_text(
            f"[Application]\nname={APPLICATION}\n\n[Instance]\ninstance-id=1\n")
        self.environment = {
            "PATH": os.environ["PATH"], "HOME": str(self.folder / "home"),
            "XDG_RUNTIME_DIR": str(self.folder / "run"),
            "XDG_DATA_HOME": str(self.folder / "home"),
            "XDG_DESKTOP_PORTAL_DIR": str(self.folder / "portals"),
            "XDG_CURRENT_DESKTOP": "lanternfold", "GSETTINGS_BACKEND": "memory",
            "GIO_USE_VFS": "local"}
        # What a sanitizer is to do, when the programs are built with one.
        self.environment |= {name: value for name, value in os.environ.items()
                             if name.endswith("SAN_OPTIONS")}
        self.session_bus = self.begin_bus()
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.session_bus
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self.begin_bus()

    def serve(self, command, name=None):
        """Starts a process that serves this session, and waits until it has its name."""
        helper = Helper(command, env=self.environment, stderr=subprocess.DEVNULL)
        self._ends.append(helper.end)
        if name is not None:
            self.wait_for_owner(name)
        return helper

    def begin_bus(self):
        """The address of a new private bus."""
        readable, writable = os.pipe()
        process = subprocess.Popen(
            ["dbus-daemon", "--nofork", f"--config-file={self.folder}/bus.conf",
             f"--print-address={writable}"], pass_fds=[writable], stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=self.environment)
        os.close(writable)
        self._ends.append(lambda: (process.kill(), process.wait(timeout=HANG_SECONDS)))
        self.buses.append(process)
        with os.fdopen(readable) as stream:
            return stream.readline().strip()

    def begin_desktop(self):
        """The store, the dialog and the portal; returns whoever shows the dialog."""
        self.begin_store()
        desktop = self.serve([PYTHON, "-B", str(HERE / "desktop_services.py"),
                              *self._backend_options])
        desktop.expect("ready")
        self.begin_portal()
        return desktop

    def begin_store(self):
        return self.serve(["/usr/libexec/xdg-permission-store"], STORE)

    def offer_to_start(self, name, command):
        """Has the session bus start `command` for whoever calls `name`."""
        (self.folder / "services" / f"{name}.service").write_text(
            f"[D-BUS Service]\nName={name}\n"
            f"Exec=/usr/bin/env DBUS_SESSION_BUS_ADDRESS={self.session_bus} {command}\n")
        self.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus.ReloadConfig")

    def begin_portal(self):
        self.portal = self.serve(["/usr/libexec/xdg-desktop-portal"], PORTAL)
        return self.portal

    def call(self, destination, path, method, *arguments):
        """The lines of the answer to a call on the session bus."""
        done = subprocess.run(
            ["dbus-send", f"--bus={self.session_bus}", "--print-reply=literal",
             f"--dest={destination}", path, method, *arguments],
            capture_output=True, timeout=HANG_SECONDS)
        if done.returncode != 0:
            raise AssertionError(done.stderr.decode())
        return done.stdout.decode()

    def wait_for_owner(self, name):
        self._wait_until_owned(name, "true")

    def wait_for_nobody(self, name):
        self._wait_until_owned(name, "false")

    def _wait_until_owned(self, name, answer):
        deadline = time.monotonic() + HANG_SECONDS
        while answer not in self.call("org.freedesktop.DBus", "/",
                                      "org.freedesktop.DBus.NameHasOwner", f"string:{name}"):
            if time.monotonic() > deadline:
                raise AssertionError(f"that {name} has an owner is not {answer}")
            time.sleep(0.02)

    def _store(self, method, *arguments):
        return self.call(STORE, "/org/freedesktop/impl/portal/PermissionStore",
                         f"{STORE}.{method}", *arguments)

    def set_permission(self, accuracy):
        """As the system's settings do."""
        self._store("SetPermission", "string:location", "boolean:true", "string:location",
                    f"string:{APPLICATION}", f"array:string:{accuracy},0")

    def delete_permission(self):
        self._store("DeletePermission", "string:location", "string:location",
                    f"string:{APPLICATION}")

    def stored_accuracy(self):
        words = self._store("Lookup", "string:location", "string:location").split()
        return words[words.index(APPLICATION) + 3] if APPLICATION in words else None

    def sandbox(self, bus_address=None):
        """The words before a command that is to run inside."""
        system = [words for name in ("usr", "bin", "lib", "lib64", "etc") if Path("/", name).exists()
                  for words in ("--ro-bind", f"/{name}", f"/{name}")]
        program = str(Path(PROGRAM).resolve().parent)
        bus = [] if bus_address is None else ["--setenv", "DBUS_SESSION_BUS_ADDRESS", bus_address]
        return ["bwrap", "--die-with-parent", *system, "--proc", "/proc", "--dev", "/dev",
                "--ro-bind", program, program, "--bind", str(self.folder), str(self.folder),
                "--ro-bind", str(self.folder / "flatpak-info"), "/.flatpak-info",
                "--unsetenv", "DBUS_SESSION_BUS_ADDRESS", *bus, "--"]

    def filtered_bus(self):
        """The address of the bus as a sandbox sees it: the filter stands in the sandbox too."""
        socket = self.folder / "run" / "filtered"
        ready, ready_inside = os.pipe()
        process = subprocess.Popen(
            [*self.sandbox(), "xdg-dbus-proxy", f"--fd={ready_inside}", self.session_bus,
             str(socket), "--filter", "--call=org.freedesktop.portal.*=*",
             "--broadcast=org.freedesktop.portal.*=@/org/freedesktop/portal/*"],
            pass_fds=[ready_inside], stdin=subprocess.DEVNULL, env=self.environment)
        os.close(ready_inside)

        def end():
            os.close(ready)  # upon which it leaves
            process.wait(timeout=HANG_SECONDS)

        self._ends.append(end)
        if os.read(ready, 1) != b"x":
            raise AssertionError("the filter before the bus does not start")
        return f"unix:path={socket}"

    def location(self, action, *arguments, bus_address, through=()):
        """The finished command, run inside of a sandbox."""
        return subprocess.run(
            [*through, *self._command(action, *arguments, bus_address=bus_address)],
            env=self.environment, stdin=subprocess.DEVNULL, capture_output=True,
            timeout=HANG_SECONDS)

    def render(self, *arguments, bus_address):
        """The finished command, run inside of a sandbox."""
        return subprocess.run(
            [*self.sandbox(bus_address), PROGRAM, "render", *arguments, "--data-dir",
             str(self.data)],
            env=self.environment, stdin=subprocess.DEVNULL, capture_output=True,
            timeout=HANG_SECONDS)

    def begin_location(self, action, bus_address):
        """The command under way, in a process group of its own."""
        process = subprocess.Popen(
            self._command(action, bus_address=bus_address), env=self.environment,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            start_new_session=True)

        def end():
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGKILL)
            process.wait(timeout=HANG_SECONDS)
            process.stdout.close()
            process.stderr.close()

        self._ends.append(end)
        return process

    def inside(self, process):
        """The number of the program that a sandbox was started for, once it runs."""
        return int(Path(f"/proc/{process.pid}/task/{process.pid}/children").read_text())

    def _command(self, action, *arguments, bus_address):
        return [*self.sandbox(bus_address), PROGRAM, "location", action, *arguments, "--data-dir",
                str(self.data)]
