"""A whole desktop session of a test's own, beyond buses and portals (portal_world.py): a login
service that locks and suspends, the bus of screen readers, and folders that are the test's."""

import json
import subprocess

from portal_world import HANG_SECONDS, HERE, PYTHON, PortalWorld
from process_tree import adopt_orphans, end_descendants, wait_until

LOGIN = "org.freedesktop.login1"
SESSION_PATH = "/org/freedesktop/login1/session/c1"
ACCESSIBILITY = "org.a11y.Bus"


class DesktopSession(PortalWorld):
    """Use it in a `with` statement; leaving it ends every process that has been started since."""

    def _begin(self):
        adopt_orphans()
        self._ends.append(end_descendants)
        super()._begin()
        for name, folder in (("CONFIG", "config"), ("CACHE", "cache"), ("STATE", "state"),
                             ("DATA", "share")):
            self.environment[f"XDG_{name}_HOME"] = str(self.folder / folder)
        # Not begun: no program is to start it of its own.
        self.environment |= {"LC_ALL": "C.UTF-8", "XDG_SESSION_ID": "c1", "NO_AT_BRIDGE": "1",
                             "GTK_A11Y": "none"}

    @property
    def system_bus(self):
        return self.environment["DBUS_SYSTEM_BUS_ADDRESS"]

    def begin(self, command, pass_fds=(), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
              **variables):
        """A process of the session, with more variables in its environment."""
        process = subprocess.Popen(
            [str(word) for word in command], env=self.environment | variables, pass_fds=pass_fds,
            stdin=stdin, stdout=stdout, stderr=subprocess.DEVNULL)
        self._ends.append(lambda: self._end(process))
        return process

    @staticmethod
    def _end(process):
        if process.poll() is None:
            process.kill()
        process.wait(timeout=HANG_SECONDS)
        for stream in (process.stdin, process.stdout):
            if stream is not None:
                stream.close()

    # The login service

    def begin_login_service(self):
        """One session, which is this one, and unlocked."""
        self.begin([PYTHON, "-m", "dbusmock", "--system", "--template", "logind"])
        wait_until(self._login_service_answers, "the start of the login service")
        self.tell_login_service("org.freedesktop.DBus.Mock.AddSession", "c1", "seat0", "0", "root",
                                "true")

    def _login_service_answers(self):
        return self._gdbus("org.freedesktop.DBus", "/", "org.freedesktop.DBus.NameHasOwner",
                           LOGIN) == "(true,)"

    def tell_login_service(self, method, *arguments, path="/org/freedesktop/login1"):
        return self._gdbus(LOGIN, path, method, *arguments)

    def lock(self, is_locked):
        self.tell_login_service(f"{LOGIN}.Session.SetLockedHint", "true" if is_locked else "false",
                                path=SESSION_PATH)

    def sleep(self, begins):
        """The machine is about to sleep, or has woken up."""
        self.tell_login_service("org.freedesktop.DBus.Mock.EmitSignal", f"{LOGIN}.Manager",
                                "PrepareForSleep", "b", "[<true>]" if begins else "[<false>]")

    def _gdbus(self, destination, path, method, *arguments):
        """The answer to a call on the system bus, as text."""
        done = subprocess.run(
            ["gdbus", "call", "--address", self.system_bus, "--dest", destination, "--object-path",
             path, "--method", method, *arguments],
            capture_output=True, timeout=HANG_SECONDS, env=self.environment)
        if done.returncode != 0:
            raise AssertionError(f"{method}: {done.stderr.decode()}")
        return done.stdout.decode().strip()

    # Screen readers

    def begin_accessibility(self):
        """From here on programs of the session tell screen readers of themselves."""
        for name in ("NO_AT_BRIDGE", "GTK_A11Y"):
            self.environment.pop(name)
        self.begin(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
        self.wait_for_owner(ACCESSIBILITY)

    def accessible(self, *order):
        """What a client of the accessibility bus finds; see accessible_client.py."""
        done = subprocess.run([PYTHON, "-B", str(HERE / "accessible_client.py"), *order],
                              capture_output=True, timeout=HANG_SECONDS, env=self.environment)
        if done.returncode != 0:
            raise AssertionError(f"{' '.join(order)}: {done.stderr.decode()}")
        return json.loads(done.stdout)
