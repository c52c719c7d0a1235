"""How long a program takes from its start until something of it can be seen."""

import ctypes
import os
import re
import subprocess
import threading
import time

HANG_SECONDS = 30
ALL_PLANES = ctypes.c_ulong(~0)
PIXMAP_OF_ROWS = 2
# What is to be seen: the host's other surfaces look how much room there is.
SEEN = re.compile(rb'get_layer_surface\(new id zwlr_layer_surface_v1@\d+, wl_surface@(\d+), '
                  rb'.*, "(?:lanternfold-widgets|waybar)"\)'
                  rb'|get_xdg_surface\(new id xdg_surface@\d+, wl_surface@(\d+)\)')
# A buffer becomes the contents of a surface with the next commit.
ATTACHED = re.compile(rb"-> wl_surface@(\d+)\.attach\(wl_buffer@")
COMMITTED = re.compile(rb"-> wl_surface@(\d+)\.commit\(")


class XScreen:
    """Looks at the whole screen, again and again."""

    def __init__(self, name, size):
        self._library = ctypes.CDLL("libX11.so.6")
        self._library.XOpenDisplay.restype = ctypes.c_void_p
        self._library.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
        self._library.XDefaultRootWindow.restype = ctypes.c_ulong
        self._library.XGetImage.restype = ctypes.c_void_p
        self._library.XCloseDisplay.argtypes = [ctypes.c_void_p]
        self._display = self._library.XOpenDisplay(name.encode())
        self._root = self._library.XDefaultRootWindow(self._display)
        self._size = size

    def contents(self):
        image = self._library.XGetImage(
            ctypes.c_void_p(self._display), ctypes.c_ulong(self._root), 0, 0, *self._size,
            ALL_PLANES, PIXMAP_OF_ROWS)
        # Of an XImage: width, height, offset and format, and behind them the pixels.
        data = ctypes.c_void_p.from_address(image + 16).value
        pixels = ctypes.string_at(data, self._size[0] * self._size[1] * 4)
        self._library.XFree(ctypes.c_void_p(data))
        self._library.XFree(ctypes.c_void_p(image))
        return pixels

    def close(self):
        self._library.XCloseDisplay(self._display)


def on_x(command, environment, size):
    """The process, and the seconds until its screen was not what it had been."""
    screen = XScreen(environment["DISPLAY"], size)
    before = screen.contents()
    began = time.monotonic()
    process = subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    while screen.contents() == before:
        if time.monotonic() - began > HANG_SECONDS or process.poll() is not None:
            raise SystemExit(f"{command[0]} shows nothing")
    seconds = time.monotonic() - began
    screen.close()
    return process, seconds


def on_wayland(command, environment):
    """The seconds until the process, which is ended, hands over the first picture that is to be seen."""
    began = time.monotonic()
    process = subprocess.Popen(command, env=environment | {"WAYLAND_DEBUG": "1"},
                               stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.PIPE)
    limit = threading.Timer(HANG_SECONDS, process.kill)
    limit.start()
    seen, attached = set(), set()
    for line in process.stderr:
        if match := SEEN.search(line):
            surface = match[1] or match[2]
            seen.add(surface)
            attached.discard(surface)  # by a surface that is gone, and had the number before
        if match := ATTACHED.search(line):
            attached.add(match[1])
        if (match := COMMITTED.search(line)) and match[1] in attached & seen:
            seconds = time.monotonic() - began
            limit.cancel()
            process.kill()
            process.wait(timeout=HANG_SECONDS)
            process.stderr.close()
            return seconds
    raise SystemExit(f"{os.path.basename(command[0])} shows nothing")
