"""A media player of our own on the session bus, which does what a test tells it, one JSON object a line.

    {"set": {"PlaybackStatus": "Playing", "Metadata": {...}}}   changes properties and says to what
    {"quietly": {...}}                                          changes them and says only that they changed
    {"flood": 5000}                                             says as many times that another song plays
    {"own": "name"}, {"release": "name"}                        takes and gives up a name on the bus
    {"deaf": true}                                              answers no question from now on

Says "done" after each line, and the name of each method that is called.
"""
import json
import sys

import dbus
import dbus.lowlevel
import dbus.mainloop.glib
from gi.repository import GLib

PATH = "/org/mpris/MediaPlayer2"
ROOT = "org.mpris.MediaPlayer2"
PLAYER = ROOT + ".Player"
ROOT_KEYS = {"Identity", "DesktopEntry", "CanRaise"}


def typed(properties):
    """As the bus wants it."""
    def field(key, value):
        if key == "mpris:trackid":
            return dbus.ObjectPath(value)
        return dbus.Array(value, signature="s") if isinstance(value, list) else value

    return {key: dbus.Dictionary({k: field(k, v) for k, v in value.items()}, signature="sv")
            if isinstance(value, dict) else value for key, value in properties.items()}


def of_interface(interface, properties):
    return dbus.Dictionary({key: value for key, value in properties.items()
                            if (key in ROOT_KEYS) == (interface == ROOT)}, signature="sv")


class Player:
    def __init__(self):
        self.bus = dbus.SessionBus(mainloop=dbus.mainloop.glib.DBusGMainLoop())
        self.bus.add_message_filter(self.asked)
        self.properties = {}
        self.deaf = False

    def asked(self, bus, message):
        if message.get_type() != dbus.lowlevel.MESSAGE_TYPE_METHOD_CALL or message.get_path() != PATH:
            return dbus.lowlevel.HANDLER_RESULT_NOT_YET_HANDLED
        if message.get_member() != "GetAll":
            print(message.get_member(), flush=True)
        elif not self.deaf:
            reply = dbus.lowlevel.MethodReturnMessage(message)
            reply.append(of_interface(message.get_args_list()[0], self.properties), signature="a{sv}")
            bus.send_message(reply)
        return dbus.lowlevel.HANDLER_RESULT_HANDLED

    def say(self, interface, changed, invalidated):
        signal = dbus.lowlevel.SignalMessage(PATH, "org.freedesktop.DBus.Properties", "PropertiesChanged")
        signal.append(interface, changed, dbus.Array(invalidated, signature="s"), signature="sa{sv}as")
        self.bus.send_message(signal)

    def set(self, news):
        news = typed(news)
        self.properties.update(news)
        for interface in (ROOT, PLAYER):
            changed = of_interface(interface, news)
            if changed:
                self.say(interface, changed, [])

    def quietly(self, news):
        self.properties.update(typed(news))
        self.say(PLAYER, of_interface(PLAYER, {}), list(news))

    def flood(self, count):
        for number in range(1, count + 1):
            self.set({"Metadata": {"xesam:title": f"Song {number}"}})
        self.bus.flush()

    def own(self, name):
        self.bus.request_name(f"{ROOT}.{name}")

    def release(self, name):
        self.bus.release_name(f"{ROOT}.{name}")

    def be_deaf(self, deaf):
        self.deaf = deaf


def main():
    player = Player()
    loop = GLib.MainLoop()
    orders = {"set": player.set, "quietly": player.quietly, "flood": player.flood, "own": player.own,
              "release": player.release, "deaf": player.be_deaf}

    def told(*_):
        line = sys.stdin.readline()
        if not line:
            loop.quit()
            return False
        for order, value in json.loads(line).items():
            orders[order](value)
        print("done", flush=True)
        return True

    GLib.io_add_watch(0, GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, told)
    loop.run()


main()
