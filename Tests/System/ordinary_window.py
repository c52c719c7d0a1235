#!/usr/bin/python3
"""A window as any program has one, all red, until its process is ended.

usage: ordinary_window.py WIDTH HEIGHT     (with Debian's own Python, which has the library)
"""

import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gtk  # noqa: E402

STYLE = b"window { background: #ff0000; }"


def main(width, height):
    provider = Gtk.CssProvider()
    provider.load_from_data(STYLE)
    window = Gtk.Window(title="An ordinary window")
    window.get_style_context().add_provider(provider, Gtk.STYLE_PROVIDER_PRIORITY_USER)
    window.set_default_size(width, height)
    window.show_all()
    Gtk.main()


if __name__ == "__main__":
    main(int(sys.argv[1]), int(sys.argv[2]))
