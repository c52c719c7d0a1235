#!/usr/bin/python3
"""Somebody in the portal's place who answers otherwise than the real one does.

usage: odd_portal.py MANNER      (with Debian's own Python, on the session bus of the environment)

The patient one waits for its user, and tells as lines of JSON when it asks and when a question is
taken back.
"""

import os
import sys

import dbus
import dbus.lowlevel
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

DESKTOP_PATH = "/org/freedesktop/portal/desktop"
LOCATION = "org.freedesktop.portal.Location"
REQUEST = "org.freedesktop.portal.Request"
NO_RESULTS = dbus.Dictionary({}, signature="sv")


class Request(dbus.service.Object):
    @dbus.service.method(REQUEST)
    def Close(self):
        print('{"event": "closed"}', flush=True)


class OddPortal(dbus.service.Object):
    def __init__(self, bus, manner):
        super().__init__(bus, DESKTOP_PATH)
        self._bus = bus
        self._manner = manner

    def _signal(self, path, interface, name, signature, *arguments, bus=None):
        message = dbus.lowlevel.SignalMessage(path, interface, name)
        message.append(*arguments, signature=signature)
        (bus or self._bus).send_message(message)

    def _respond(self, path, response, **options):
        self._signal(path, REQUEST, "Response", "ua{sv}", dbus.UInt32(response), NO_RESULTS,
                     **options)

    def _path(self, kind, sender, token):
        return f"{DESKTOP_PATH}/{kind}/{sender[1:].replace('.', '_')}/{token}"

    @dbus.service.method(LOCATION, in_signature="a{sv}", sender_keyword="sender",
                         message_keyword="message", async_callbacks=("reply", "error"))
    def CreateSession(self, options, reply, error, sender, message):
        if self._manner == "silent":
            return
        if self._manner == "fails":
            error(dbus.DBusException("no", name="net.quernaple.Error.Odd"))
        elif self._manner == "no-session":
            answer = dbus.lowlevel.MethodReturnMessage(message)
            answer.append(7, signature="u")
            self._bus.send_message(answer)
        else:
            path = self._path("session", sender, options["session_handle_token"])
            self._answer(message, path)

    def _answer(self, message, path):
        answer = dbus.lowlevel.MethodReturnMessage(message)
        answer.append(dbus.ObjectPath(path), signature="o")
        self._bus.send_message(answer)

    @dbus.service.method(LOCATION, in_signature="osa{sv}", sender_keyword="sender",
                         message_keyword="message", async_callbacks=("reply", "error"))
    def Start(self, session, _parent, options, reply, error, sender, message):
        request = self._path("request", sender, options["handle_token"])
        if self._manner == "early":
            self._respond(request, 0)
            self._answer(message, request)
        elif self._manner == "elsewhere":
            request = f"{DESKTOP_PATH}/t/7"
            self._answer(message, request)
            GLib.timeout_add(300, lambda: self._respond(request, 0))
        elif self._manner == "no-path":
            answer = dbus.lowlevel.MethodReturnMessage(message)
            answer.append("nowhere", signature="s")
            self._bus.send_message(answer)
        else:
            self._answer(message, request)
            self._end(session, request, sender)

    def _end(self, session, request, sender):
        if self._manner == "patient":
            self._request = Request(self._bus, request)
            print('{"event": "asked"}', flush=True)
        elif self._manner == "twice":
            self._respond(request, 0)
            self._respond(request, 1)
        elif self._manner == "seven":
            self._respond(request, 7)
        elif self._manner == "no-number":
            self._signal(request, REQUEST, "Response", "sa{sv}", "0", NO_RESULTS)
        elif self._manner == "no-results":
            self._signal(request, REQUEST, "Response", "u", dbus.UInt32(0))
        elif self._manner == "closes":
            self._signal(session, "org.freedesktop.portal.Session", "Closed", "a{sv}", NO_RESULTS)
        elif self._manner == "impostor":
            # Somebody else says yes, to the asking program and to all, before the portal ends it.
            impostor = dbus.bus.BusConnection(os.environ["DBUS_SESSION_BUS_ADDRESS"])
            message = dbus.lowlevel.SignalMessage(request, REQUEST, "Response")
            message.append(dbus.UInt32(0), NO_RESULTS, signature="ua{sv}")
            message.set_destination(sender)
            impostor.send_message(message)
            self._respond(request, 0, bus=impostor)
            impostor.flush()
            GLib.timeout_add(300, lambda: self._respond(request, 2))


def main():
    DBusGMainLoop(set_as_default=True)
    bus = dbus.bus.BusConnection(os.environ["DBUS_SESSION_BUS_ADDRESS"])
    bus.set_exit_on_disconnect(True)
    portal = OddPortal(bus, sys.argv[1])
    name = dbus.service.BusName("org.freedesktop.portal.Desktop", bus)
    GLib.MainLoop().run()
    del portal, name


if __name__ == "__main__":
    main()
