"""Displays of a test's own: an X server with a window manager, and a Wayland compositor without a
monitor, with a pointer, a keyboard and pictures of what they show.

A display belongs to a session (desktop_session.py), which ends its processes.
"""

import functools
import json
import os
import subprocess
import time
from pathlib import Path

from namespaces import mount
from process_tree import wait_until

HANG_SECONDS = 30
SIZE = (1280, 900)
POINTER = os.environ.get("LANTERNFOLD_VIRTUAL_POINTER", "")
PYTHON = "/usr/bin/python3"
LEFT, RIGHT = 1, 3
SLOWLY_MILLISECONDS = 700
# The kernel's numbers of X's buttons.
KERNEL_BUTTONS = {LEFT: 272, RIGHT: 273}
GRAB = """import sys
from PIL import ImageGrab
ImageGrab.grab(xdisplay=sys.argv[1]).save(sys.argv[2])
"""


@functools.cache
def hide_other_displays():
    """Sockets of other displays of this machine are neither seen nor disturbed in this process's
    mount namespace, which is its own."""
    Path("/tmp/.X11-unix").mkdir(mode=0o1777, exist_ok=True)
    mount("tmpfs", "/tmp/.X11-unix", "tmpfs")


class Display:
    """What both kinds have in common. `environment` is for the programs that are to appear on it,
    `background` the colour (RRGGBB) of what is behind their windows."""

    def click(self, x, y, button=LEFT):
        self.move(x, y)
        self.press(button)
        self.release(button)

    def double_click(self, x, y):
        self.click(x, y)
        self.click(x, y)

    def drag(self, begin, end, steps=8):
        """With the left button, in steps as a hand does it."""
        self.move(*begin)
        self.press(LEFT)
        for step in range(1, steps + 1):
            self.move(*(int(a + (b - a) * step / steps) for a, b in zip(begin, end)))
        self.release(LEFT)

    def run(self, *command):
        """What the command says; an AssertionError when it fails."""
        done = subprocess.run(command, env=self._session.environment | self.environment,
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=HANG_SECONDS)
        if done.returncode != 0:
            raise AssertionError(f"{' '.join(map(str, command))}: {done.stderr.decode()}")
        return done.stdout.decode()


class XDisplay(Display):
    """Xvfb, with openbox unless another window manager is wanted, or none."""

    background = "000000"

    def __init__(self, session, size=SIZE, manager=("openbox", "--sm-disable")):
        self._session = session
        self.size = size
        hide_other_displays()
        readable, writable = os.pipe()
        self.server = session.begin(
            [*self._server(), "-displayfd", str(writable), "-nolisten", "tcp", "-noreset"],
            pass_fds=[writable])
        os.close(writable)
        with os.fdopen(readable) as stream:
            self.environment = {"DISPLAY": f":{stream.readline().strip()}"}
        if manager:
            self.manager = session.begin(manager, **self.environment)
            wait_until(lambda: "window id" in self._root_property("_NET_SUPPORTING_WM_CHECK"),
                       "the window manager's start")

    def _server(self):
        return ["Xvfb", "-screen", "0", "{}x{}x24".format(*self.size)]

    def _root_property(self, name):
        return self.run("xprop", "-root", name)

    def windows(self):
        """The windows that are shown, as the window manager knows them, lowest first."""
        text = self._root_property("_NET_CLIENT_LIST_STACKING").partition("#")[2]
        return [int(word, 16) for word in text.replace(",", " ").split()]

    def properties(self, window):
        """What a window says of itself, by name."""
        pairs = (line.partition(" = ") for line in self.run("xprop", "-id", str(window)).splitlines()
                 if " = " in line)
        return {name.partition("(")[0]: value for name, _, value in pairs}

    def frame(self, window):
        """Left, top, width, height of its contents on the screen."""
        lines = self.run("xdotool", "getwindowgeometry", "--shell", str(window)).splitlines()
        figures = dict(line.split("=") for line in lines if "=" in line)
        return tuple(int(figures[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def focus(self, window):
        self.run("xdotool", "windowfocus", "--sync", str(window))

    def picture(self, path):
        """What the screen shows, as a PNG file at that path."""
        self.run(PYTHON, "-c", GRAB, self.environment["DISPLAY"], str(path))
        return path

    def move(self, x, y):
        self.run("xdotool", "mousemove", str(x), str(y))

    def double_click(self, x, y):
        """By one process: a second one may be late."""
        self.move(x, y)
        self.run("xdotool", "click", "--repeat", "2", "--delay", "60", str(LEFT))

    def press(self, button=LEFT):
        self.run("xdotool", "mousedown", str(button))

    def release(self, button=LEFT):
        self.run("xdotool", "mouseup", str(button))

    def key(self, *names):
        """Keys one after the other, by their X names; "shift+F10" for two at once."""
        self.run("xdotool", "key", "--delay", "60", *names)

    def begin_keys(self, *names):
        """The same, slowly: the process that presses them."""
        return self._session.begin(["xdotool", "key", "--delay", SLOWLY_MILLISECONDS, *names],
                                   **self.environment)


class SwayDisplay(Display):
    """sway, which refuses to be root, and shows its outputs to nobody but pictures."""

    background = "3f3f3f"

    def __init__(self, session, size=SIZE, configuration=()):
        self._begin(session, "sway", ["output HEADLESS-1 resolution {}x{}".format(*size),
                                      *configuration], WLR_BACKENDS="headless")

    def _begin(self, session, name, configuration, **backend):
        self._session = session
        folder = session.folder / name
        folder.mkdir(mode=0o700)
        session.folder.chmod(0o711)
        # Ended by `session`; the compositor's own files belong to nobody.
        os.chown(folder, 65534, 65534)
        file = session.folder / f"{name}.conf"
        file.write_text("\n".join(["default_border none", "xwayland disable",
                                   "focus_follows_mouse no", *configuration]) + "\n")
        self.server = session.begin(
            ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "sway", "-c", str(file)],
            WLR_RENDERER="pixman", WLR_LIBINPUT_NO_DEVICES="1", XDG_RUNTIME_DIR=str(folder),
            HOME=str(folder), **backend)
        ipc, = wait_until(lambda: list(folder.glob("sway-ipc.*.sock")), "the start of sway")
        socket = wait_until(lambda: [each for each in folder.glob("wayland-*")
                                     if each.suffix != ".lock"], "the socket of sway")[0]
        self.environment = {"WAYLAND_DISPLAY": str(socket), "SWAYSOCK": str(ipc)}
        wait_until(self.outputs, "an output")
        self._pointer = None
        # A keyboard that stays: without any no window has the focus.
        session.begin(["wtype", "-s", "3600000", "-k", "Escape"], **self.environment)

    def outputs(self):
        """The monitors, by name."""
        return {each["name"]: each for each in
                json.loads(self.run("swaymsg", "-t", "get_outputs", "-r")) if each["active"]}

    def add_output(self):
        """One more monitor."""
        count = len(self.outputs())
        self.command("create_output")
        wait_until(lambda: len(self.outputs()) == count + 1, "another output")

    def command(self, *words):
        return self.run("swaymsg", "-r", *words)

    def picture(self, path, output=None, scale=None):
        """What the monitors show, as a PNG file at that path, in the pixels of the greatest scale
        unless told. The pointer would be a part of it, and so goes to a corner."""
        if self._pointer is not None:
            self.move(0, self.size[1] - 1)
        self.run("grim", *(["-o", output] if output else []), *(["-s", str(scale)] if scale else []),
                  str(path))
        return path

    @property
    def size(self):
        """All monitors together, in points."""
        frames = [each["rect"] for each in self.outputs().values()]
        return (max(each["x"] + each["width"] for each in frames),
                max(each["y"] + each["height"] for each in frames))

    def move(self, x, y):
        self._order("move", x, y, *self.size)

    def press(self, button=LEFT):
        self._order("press", KERNEL_BUTTONS[button])

    def release(self, button=LEFT):
        self._order("release", KERNEL_BUTTONS[button])

    def key(self, *names):
        """As on X."""
        self.run("wtype", *self._words(names, 200))

    def begin_keys(self, *names):
        """As on X. One keyboard presses all of them: a program is slow to learn another one."""
        return self._session.begin(["wtype", *self._words(names, SLOWLY_MILLISECONDS)],
                                   **self.environment)

    @staticmethod
    def _words(names, pause):
        words = ["-s", "300"]
        for name in names:
            *held, last = name.split("+")
            words += [word for each in held for word in ("-M", each)]
            words += ["-k", last, *(word for each in held for word in ("-m", each)), "-s", str(pause)]
        # Dialogs do not find the last key of a keyboard's keymap.
        return [*words, "-k", "Shift_L"]

    def _order(self, *words):
        if self._pointer is None:
            self._pointer = self._session.begin([POINTER], stdin=subprocess.PIPE,
                                                stdout=subprocess.PIPE, **self.environment)
            self._expect(b"ready\n")
            time.sleep(0.3)  # programs come to know that there is a pointer, and listen to it
        self._pointer.stdin.write(" ".join(map(str, words)).encode() + b"\n")
        self._pointer.stdin.flush()
        self._expect(b"done\n")

    def _expect(self, line):
        said = self._pointer.stdout.readline()
        if said != line:
            raise AssertionError(f"the pointer said {said}")


class NestedSwayDisplay(SwayDisplay):
    """sway whose outputs, from WL-1 on, are windows of another one: those can be closed, which
    unplugs them. Outputs without a window cannot."""

    def __init__(self, session, outputs=1, size=SIZE):
        self._output_size = size
        self._outer = SwayDisplay(session, size=(outputs * size[0], size[1]),
                                  configuration=["for_window [app_id=wlroots] floating enable"])
        self._begin(session, "nested", [], WLR_BACKENDS="wayland", WLR_WL_OUTPUTS=str(outputs),
                    WAYLAND_DISPLAY=self._outer.environment["WAYLAND_DISPLAY"])
        wait_until(lambda: len(self.outputs()) == outputs, "its outputs")
        self._size_outputs()

    def add_output(self):
        super().add_output()
        self._size_outputs()

    def unplug(self, name):
        self._order_window(name, "kill")
        wait_until(lambda: name not in self.outputs(), "an output less")

    def _order_window(self, name, order):
        self._outer.command(f'[title="{name}$"] {order}')

    def _size_outputs(self):
        width, height = self._output_size
        for name in self.outputs():
            self._order_window(name, f"resize set {width} {height}")
        wait_until(lambda: all((each["rect"]["width"], each["rect"]["height"]) == (width, height)
                               for each in self.outputs().values()), "the size of its outputs")
