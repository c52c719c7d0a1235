#!/usr/bin/python3
"""What stands behind the portals on a desktop: the dialog that asks the user for consent, the
administrator's switch, the service that knows where the machine is, and the settings. On private
buses only.

usage: desktop_services.py      (with Debian's own Python, which has its D-Bus library)

A line of JSON on standard output tells each event; a line on standard input is an order:
  answer N      the open dialog, or else the next one, is answered so
  disable 0|1   the administrator switches location off, or on again
  scheme N      the user prefers colours: 0 any, 1 dark, 2 light
"""

import json
import os
import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

BACKEND = "org.freedesktop.impl.portal.desktop.lanternfold"
DESKTOP_PATH = "/org/freedesktop/portal/desktop"
PROPERTIES = "org.freedesktop.DBus.Properties"
GEOCLUE = "org.freedesktop.GeoClue2"
CLIENT_PATH = "/org/freedesktop/GeoClue2/Client/1"
SETTINGS = "org.freedesktop.impl.portal.Settings"
APPEARANCE, SCHEME = "org.freedesktop.appearance", "color-scheme"


def tell(event, **facts):
    print(json.dumps({"event": event} | facts), flush=True)


class Dialog(dbus.service.Object):
    """The request that the portal closes when the asking program goes away."""

    def __init__(self, bus, path, desktop):
        super().__init__(bus, path)
        self._desktop = desktop

    @dbus.service.method("org.freedesktop.impl.portal.Request")
    def Close(self):
        tell("closed")
        self._desktop.forget()


class Desktop(dbus.service.Object):
    """The access dialog, and the lockdown and the appearance beside it."""

    def __init__(self, bus):
        super().__init__(bus, DESKTOP_PATH)
        self._bus = bus
        self._dialog = None
        self._reply = None
        self._prepared = []
        self._disabled = False
        self._scheme = 0

    @dbus.service.method("org.freedesktop.impl.portal.Access", in_signature="osssssa{sv}",
                         out_signature="ua{sv}", async_callbacks=("reply", "_error"))
    def AccessDialog(self, handle, app_id, _parent, title, _subtitle, _body, _options, reply,
                     _error):
        self._dialog = Dialog(self._bus, handle, self)
        self._reply = reply
        tell("asked", application=str(app_id), title=str(title))
        if self._prepared:
            self.answer(self._prepared.pop(0))

    def answer(self, response):
        if self._reply is None:
            self._prepared.append(response)
            return
        reply = self._reply
        self.forget()
        reply(dbus.UInt32(response), dbus.Dictionary({}, signature="sv"))

    def forget(self):
        self._reply = None
        if self._dialog is not None:
            self._dialog.remove_from_connection()
            self._dialog = None

    def disable(self, disabled):
        self._disabled = disabled
        self.PropertiesChanged("org.freedesktop.impl.portal.Lockdown",
                               {"disable-location": dbus.Boolean(disabled)}, [])
        tell("disabled", now=disabled)

    def prefer(self, scheme):
        self._scheme = scheme
        self.SettingChanged(APPEARANCE, SCHEME, dbus.UInt32(scheme, variant_level=1))

    @dbus.service.signal(SETTINGS, signature="ssv")
    def SettingChanged(self, namespace, key, value):
        pass

    @dbus.service.method(SETTINGS, in_signature="as", out_signature="a{sa{sv}}")
    def ReadAll(self, namespaces):
        return {APPEARANCE: {SCHEME: dbus.UInt32(self._scheme, variant_level=1)}}

    @dbus.service.method(SETTINGS, in_signature="ss", out_signature="v")
    def Read(self, namespace, key):
        if (namespace, key) != (APPEARANCE, SCHEME):
            raise dbus.DBusException("no such setting", name="org.freedesktop.portal.Error.NotFound")
        return dbus.UInt32(self._scheme, variant_level=1)

    @dbus.service.signal(PROPERTIES, signature="sa{sv}as")
    def PropertiesChanged(self, interface, changed, invalidated):
        pass

    @dbus.service.method(PROPERTIES, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        return self.GetAll(interface)[name]

    @dbus.service.method(PROPERTIES, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        if interface != "org.freedesktop.impl.portal.Lockdown":
            return dbus.Dictionary({}, signature="sv")
        return {"disable-location": dbus.Boolean(self._disabled)}


class LocationManager(dbus.service.Object):
    """The location service, as far as a client that wants no coordinates needs it."""

    @dbus.service.method(GEOCLUE + ".Manager", out_signature="o")
    def GetClient(self):
        return dbus.ObjectPath(CLIENT_PATH)

    @dbus.service.method(GEOCLUE + ".Manager", out_signature="o")
    def CreateClient(self):
        return dbus.ObjectPath(CLIENT_PATH)

    @dbus.service.method(PROPERTIES, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        return dbus.Dictionary({}, signature="sv")


class LocationClient(dbus.service.Object):
    @dbus.service.method(GEOCLUE + ".Client")
    def Start(self):
        tell("located")

    @dbus.service.method(GEOCLUE + ".Client")
    def Stop(self):
        tell("stopped")

    @dbus.service.method(PROPERTIES, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        return {"Location": dbus.ObjectPath("/"), "DesktopId": ""}

    @dbus.service.method(PROPERTIES, in_signature="ssv")
    def Set(self, interface, name, value):
        tell("set", name=str(name), value=str(value))


def main():
    DBusGMainLoop(set_as_default=True)
    loop = GLib.MainLoop()
    session = dbus.bus.BusConnection(os.environ["DBUS_SESSION_BUS_ADDRESS"])
    system = dbus.bus.BusConnection(os.environ["DBUS_SYSTEM_BUS_ADDRESS"])
    desktop = Desktop(session)
    kept = [dbus.service.BusName(BACKEND, session)]
    if "--without-location-service" not in sys.argv:
        kept += [LocationManager(system, "/org/freedesktop/GeoClue2/Manager"),
                 LocationClient(system, CLIENT_PATH), dbus.service.BusName(GEOCLUE, system)]

    def take_orders(_source, condition):
        line = sys.stdin.readline() if condition & GLib.IO_IN else ""
        if not line:
            loop.quit()
            return False
        order, value = line.split()
        {"answer": desktop.answer,
         "disable": lambda number: desktop.disable(bool(number)),
         "scheme": desktop.prefer}[order](int(value))
        return True

    GLib.io_add_watch(sys.stdin.fileno(), GLib.IO_IN | GLib.IO_HUP, take_orders)
    tell("ready")
    loop.run()


if __name__ == "__main__":
    main()
