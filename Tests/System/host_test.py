"""What the tests of the widgets on a desktop begin with: a desktop of their own on X or on Wayland,
an adapter, services that answer, and the host; and how to tell what is on the screen."""

import json
import os
import re
import signal
import subprocess

from desktop_session import DesktopSession
from displays import PYTHON, SwayDisplay, XDisplay
from extension_test import ADAPTER, BANDWIDTH, FAMILIES, INTERNET, PANORAMIC, WIFI, ExtensionTest
from host_process import HERE, PROGRAM, Host, ctl, host_beside
from process_tree import is_running, running, wait_until
from program import PROGRAM as WIDGETS
from program import run

COMPARE = os.environ.get("LANTERNFOLD_COMPARE_SCREEN", "")
APPLICATION = "net.quernaple.LanternfoldX.Widgets"
KINDS = (PANORAMIC, INTERNET, ADAPTER, BANDWIDTH, WIFI)
SANITIZER_REPORT = re.compile(r"Sanitizer: |: runtime error: ")
SIZES = {"small": (170, 170), "medium": (364, 170), "large": (364, 382)}
__all__ = ["ADAPTER", "APPLICATION", "BANDWIDTH", "FAMILIES", "INTERNET", "KINDS", "PANORAMIC",
           "SIZES", "WIFI", "HostTest", "SwayTest", "XTest"]


class HostTest(ExtensionTest):
    """On no display yet."""

    # What the user has decided on Wi-Fi names beforehand; none: nothing, so that a dialog asks
    # when a widget needs them and the machine has Wi-Fi (WITH_WIFI).
    consent = "deny"

    def setUp(self):
        super().setUp()
        self.add_adapter()
        self.service_options = self.options(**self.start_services())
        self.session = DesktopSession().__enter__()
        self.addCleanup(self.session.__exit__)
        if self.consent is not None:
            run("location", self.consent, "--data-dir", str(self.data), check=True)
        self.display = self.make_display()
        self.store = self.session.folder / "config" / "net.quernaple.LanternfoldX" / "widgets.json"

    def make_display(self, **options):
        raise NotImplementedError

    # The host

    @property
    def environment(self):
        return self.session.environment | self.display.environment

    def start_host(self, *arguments, program=PROGRAM, without=(), **variables):
        """`without` are variables that its environment lacks."""
        environment = {name: value for name, value in (self.environment | variables).items()
                       if name not in without}
        host = Host([program, *self.service_options, *arguments], env=environment)
        self.addCleanup(self.end, host)
        return host

    def end(self, host):
        """However the test has left it: asked to end it does, and neither it nor the extension tells
        of a fault that a sanitizer has found, of which a leak is told last."""
        with host:
            if host.is_alive():
                host.process.terminate()
            host.wait()
        self.assertEqual([], [line for line in host.errors if SANITIZER_REPORT.search(line)],
                         "\n".join(host.errors))

    def start_recorded_host(self, *arguments, **variables):
        """One whose extension is listened to (see `asked`), and refuses timelines while there is a
        file `refusals`."""
        program = host_beside(self.session.folder / "recorded", "recording_extension.py")
        self.transcript = self.session.folder / "transcript"
        self.transcript.touch()
        self.refusals = self.session.folder / "refusals"
        return self.start_host(
            *arguments, program=program, LANTERNFOLD_TRANSCRIPT=str(self.transcript),
            LANTERNFOLD_REFUSALS=str(self.refusals),
            LANTERNFOLD_WIDGET_EXTENSION=os.environ["LANTERNFOLD_WIDGET_EXTENSION"], **variables)

    def asked(self, method="widget/timeline"):
        """Of each question of that method its moment and its parameters."""
        result = []
        for line in self.transcript.read_text().splitlines():
            moment, text = line.split(" ", 1)
            message = json.loads(text)
            if message.get("method") == method:
                result.append((float(moment), message["params"]))
        return result

    def ctl(self, *arguments):
        """What it says, when it succeeds without a word of complaint."""
        done = ctl(self.environment, *arguments)
        self.assertEqual((0, b""), (done.returncode, done.stderr), arguments)
        return done.stdout.decode()

    def widgets(self):
        return json.loads(self.ctl("list", "--json"))

    def widget(self, kind):
        """The only one of its kind."""
        found, = (each for each in self.widgets() if each["kind"] == kind)
        return found

    def wait_for_widgets(self, count=5, seconds=30):
        """Those that the host tells of, once it answers and there are so many."""
        def listed():
            done = ctl(self.environment, "list", "--json")
            widgets = json.loads(done.stdout) if done.returncode == 0 else []
            return widgets if done.returncode == 0 and len(widgets) == count else None
        return wait_until(listed, f"{count} widgets", seconds)

    def assert_clean_end(self, host, status=0, seconds=10):
        """It ends by itself in that time, silently, and takes the extension along."""
        extensions = host.extensions()
        self.assertEqual(status, host.wait(seconds), host.errors)
        for pid in extensions:
            wait_until(lambda: not is_running(pid), "the end of the extension", 5)
        self.assertEqual([], running("lanternfold-widget-extension"))

    def finish(self, host, number=signal.SIGTERM):
        host.process.send_signal(number)
        self.assert_clean_end(host)

    # The screen

    def drawn(self, kind, family, scheme="light", scale=1, *arguments):
        """The widget's picture of this moment, as the command line draws it."""
        path = self.folder / "card.png"
        done = run("render", kind, "--family", family, "--scheme", scheme, "--scale", str(scale),
                   "--entry", "timeline", "-o", str(path), *arguments, *self.service_options,
                   env=self.environment)
        self.assertEqual(0, done.returncode, done.stderr)
        return path

    def difference(self, card, x, y, scale=1):
        """How the screen differs from a picture at that place, in points; none when it does not."""
        self.display.picture(self.folder / "screen.png")
        return self.compared(card, x, y, scale)

    def compared(self, card, x, y, scale):
        """The same of the last picture of the screen."""
        done = subprocess.run(
            [COMPARE, str(self.folder / "screen.png"), str(round(x * scale)), str(round(y * scale)),
             str(card), self.display.background], capture_output=True, timeout=30)
        self.assertIn(done.returncode, (0, 1), done.stderr)
        return done.stdout.decode() if done.returncode else None

    def assert_shown(self, widget, scheme="light", scale=1, seconds=20, offset=(0, 0),
                     arguments=()):
        """Its card stands on the screen where the host says, and looks as it is to; `arguments` are
        more for whoever draws it."""
        card = self.drawn(widget["kind"], widget["family"], scheme, scale, *arguments)
        place = widget["x"] + offset[0], widget["y"] + offset[1]
        self.last_difference = None

        def is_shown():
            self.last_difference = self.difference(card, *place, scale)
            return self.last_difference is None
        try:
            wait_until(is_shown, f"{widget['kind']} at {place}", seconds, pause=0.2)
        except AssertionError as error:
            self.keep_pictures(widget["kind"])
            raise AssertionError(f"{error}: {self.last_difference}") from None

    def assert_all_shown(self, widgets=None, **options):
        for widget in widgets or self.widgets():
            with self.subTest(kind=widget["kind"]):
                self.assert_shown(widget, **options)

    def keep_pictures(self, name):
        """For whoever looks into a failure: LANTERNFOLD_SCREENS names a folder."""
        folder = os.environ.get("LANTERNFOLD_SCREENS")
        for part in ("screen", "card") if folder else ():
            picture = self.folder / f"{part}.png"
            if picture.exists():
                picture.replace(f"{folder}/{self.id()} {name} {part}.png")

    def middle(self, widget):
        width, height = SIZES[widget["family"]]
        return widget["x"] + width // 2, widget["y"] + height // 2

    def empty_corner(self, widget):
        """A point of the card where nothing can be pressed."""
        width, height = SIZES[widget["family"]]
        return widget["x"] + width // 2, widget["y"] + height - 4

    def ordinary_window(self, width=600, height=500):
        """A window of another program, which is red."""
        return self.session.begin([PYTHON, "-B", HERE / "ordinary_window.py", width, height],
                                  **self.display.environment)

    def pixel(self, x, y):
        """What the screen shows at a point, as RRGGBB; of its greatest scale."""
        screen = self.display.picture(self.folder / "screen.png")
        done = subprocess.run(
            [PYTHON, "-c", "import sys; from PIL import Image; "
             "print('%02x%02x%02x' % Image.open(sys.argv[1]).convert('RGB').getpixel("
             "(int(sys.argv[2]), int(sys.argv[3]))))", str(screen), str(x), str(y)],
            capture_output=True, timeout=30, check=True)
        return done.stdout.decode().strip()

    def show(self, *arguments):
        """The command that starts the host, or finds it, finished."""
        return run("show", *self.service_options, *arguments, env=self.environment, program=WIDGETS)


class XTest(HostTest):
    def make_display(self, **options):
        return XDisplay(self.session, **options)

    def card_windows(self):
        """Those of the host, by their place on the screen."""
        return {self.display.frame(each)[:2]: each for each in self.display.windows()
                if "net.quernaple" in self.display.properties(each).get("WM_CLASS", "").lower()
                or "lanternfold" in self.display.properties(each).get("WM_CLASS", "").lower()}

    def is_titled(self, window, title):
        """Whether a window has that title and is no card; one that has just gone has none."""
        try:
            properties = self.display.properties(window)
        except AssertionError:
            return False
        return (f'"{title}"' in properties.get("WM_NAME", "")
                and "SKIP_TASKBAR" not in properties.get("_NET_WM_STATE", ""))

    def titled(self, title):
        """The windows of that title that are no cards, lowest first."""
        return [each for each in self.display.windows() if self.is_titled(each, title)]

    def has_window(self, title):
        return bool(self.titled(title))

    def origin(self, widget=None):
        """From where the places count that readers are told, which are on the screen."""
        return 0, 0


class SwayTest(HostTest):
    def make_display(self, **options):
        return SwayDisplay(self.session, **options)

    def has_window(self, title):
        return f'"name": "{title}"' in self.display.run("swaymsg", "-t", "get_tree")

    def origin(self, widget=None):
        """They count from the corner of a card; an ordinary window takes all of the screen."""
        return (widget["x"], widget["y"]) if widget else (0, 0)
