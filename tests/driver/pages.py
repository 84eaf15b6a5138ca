"""The pages and documents in web views."""

import re

from gi.repository import Gio, GLib

from driver.element import Element

ROOTS = "/org/a11y/webkit/accessible"
CLIENT = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION


class Pages:
    """Finds what web views show. The toolkit leaves it out of the tree of windows, but each web process is on the
    accessibility bus by itself: once it has been asked for its children, it tells of its documents."""

    def __init__(self, events):
        self._events = events
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address, = self._call(session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")
        self._bus = Gio.DBusConnection.new_for_address_sync(address, CLIENT, None, None)
        self._woken = set()

    def find(self, title):
        """The latest page or document with this title; None when there is none. Documents in dialogs have an empty
        one."""
        self._wake()
        for accessible in reversed(self._events.documents()):
            try:
                if accessible.get_name() == title:
                    return Element(accessible)
            except GLib.Error:
                pass  # a page that has gone
        return None

    def _wake(self):
        names, = self._call(self._bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                            "ListNames")
        for name in names:
            if ".Sandboxed.WebProcess" in name and name not in self._woken:
                try:
                    described, = self._call(self._bus, name, ROOTS, "org.freedesktop.DBus.Introspectable", "Introspect")
                    for root in re.findall(r'node name="([^"]+)"', described):
                        self._call(self._bus, name, f"{ROOTS}/{root}", "org.a11y.atspi.Accessible", "GetChildren")
                        self._woken.add(name)
                except GLib.Error:
                    pass  # it is only just starting, or it is leaving

    @staticmethod
    def _call(bus, name, path, interface, method):
        return bus.call_sync(name, path, interface, method, None, None, Gio.DBusCallFlags.NONE, 2000, None).unpack()
