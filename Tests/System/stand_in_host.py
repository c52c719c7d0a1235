#!/usr/bin/python3
"""Somebody in the place of the program that shows the widgets, on the session bus of the environment.

usage: stand_in_host.py MANNER      (with Debian's own Python, which has its D-Bus library)

The obliging one tells each call as a line of JSON and answers it; the others refuse, hang, or have
no verbs at all.
"""

import json
import os
import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME = "net.quernaple.LanternfoldX.Widgets"
OBJECT = "/net/quernaple/LanternfoldX/Widgets"
CONTROL = NAME + ".Control"
LIST = ('[{"id":"1","kind":"NetworkAdapterWidget","family":"medium","configuration":{},'
        '"monitor":"DP-1","x":24,"y":48}]')


class Refused(dbus.DBusException):
    _dbus_error_name = NAME + ".Error.Refused"


class Host(dbus.service.Object):
    def __init__(self, bus, manner):
        super().__init__(bus, OBJECT)
        self._manner = manner

    def _tell(self, verb, *arguments):
        print(json.dumps({"event": verb, "arguments": [str(each) for each in arguments]}),
              flush=True)
        if self._manner == "refusing":
            raise Refused("there is no such widget")

    @dbus.service.method(CONTROL, out_signature="s", async_callbacks=("reply", "error"))
    def List(self, reply, error):
        if self._manner == "hanging":
            return
        try:
            self._tell("List")
            reply(LIST)
        except Refused as refusal:
            error(refusal)

    @dbus.service.method(CONTROL, in_signature="sss", out_signature="s")
    def Add(self, kind, family, adapter):
        self._tell("Add", kind, family, adapter)
        return "7"

    @dbus.service.method(CONTROL, in_signature="s")
    def Remove(self, widget):
        self._tell("Remove", widget)

    @dbus.service.method(CONTROL, in_signature="s")
    def Reload(self, widget):
        self._tell("Reload", widget)

    @dbus.service.method(CONTROL)
    def Quit(self):
        self._tell("Quit")


def main():
    DBusGMainLoop(set_as_default=True)
    bus = dbus.bus.BusConnection(os.environ["DBUS_SESSION_BUS_ADDRESS"])
    bus.set_exit_on_disconnect(True)
    host = None if sys.argv[1] == "mute" else Host(bus, sys.argv[1])
    name = dbus.service.BusName(NAME, bus)
    GLib.MainLoop().run()
    del host, name


if __name__ == "__main__":
    main()
