"""What a desktop's bar is for the items in its tray: a watcher of StatusNotifierItems that has a host."""

import time

from gi.repository import Gio, GLib

NAME = "org.kde.StatusNotifierWatcher"
# Qt takes a watcher for one only if its properties stand here.
INTERFACE = f"""<node><interface name="{NAME}">
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
</interface></node>"""


class Host:
    def __init__(self):
        self.registered = None  # when the first item came since this was last reset; time.monotonic()
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).lookup_interface(NAME)
        self._bus.register_object("/StatusNotifierWatcher", interface, self._register,
                                  lambda *_: GLib.Variant("b", True), None)
        Gio.bus_own_name_on_connection(self._bus, NAME, Gio.BusNameOwnerFlags.NONE, None, None)

    def serve(self, seconds, until=lambda: False):
        """Answers calls for so long."""
        end = time.monotonic() + seconds
        wake = GLib.timeout_add(20, lambda: True)
        while not until() and time.monotonic() < end:
            GLib.MainContext.default().iteration(True)
        GLib.source_remove(wake)

    def _register(self, _bus, sender, _path, _interface, _method, arguments, call):
        self.registered = self.registered or time.monotonic()
        call.return_value(None)
        # Whoever draws the item asks for all of it, the picture too.
        path = arguments[0] if arguments[0].startswith("/") else "/StatusNotifierItem"
        self._bus.call(sender, path, "org.freedesktop.DBus.Properties", "GetAll",
                       GLib.Variant("(s)", ("org.kde.StatusNotifierItem",)), None,
                       Gio.DBusCallFlags.NONE, 5000, None, None)
