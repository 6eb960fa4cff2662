#!/usr/bin/env python3
"""The saver and `pelmora idle` beside the services of desktops and systems, which python-dbusmock
plays on two buses of the test's own: python3 live_mocked_services_test.py --pelmora PATH"""

import json
import subprocess
import sys
import time

from gi.repository import Gio, GLib

import idling
import live

MOCK = "org.freedesktop.DBus.Mock"
LOGIN = "org.freedesktop.login1"
MUTTER = "org.gnome.Mutter.IdleMonitor"
POWER = "org.freedesktop.UPower"


class Mock:
    """A service that plays a desktop's, as its template or the calls of the test tell it to."""

    def __init__(self, test, address, name, path, *words):
        process = subprocess.Popen([sys.executable, "-m", "dbusmock", *words], env=test.env,
                                   stdout=subprocess.DEVNULL)
        test.addCleanup(process.wait)
        test.addCleanup(process.kill)
        self._name, self._path = name, path
        self._connection = idling.connect(address)
        test.addCleanup(self._connection.close_sync, None)
        deadline = time.monotonic() + live.LIMIT
        while not idling.call_bus(self._connection, "NameHasOwner",
                                  GLib.Variant("(s)", (name,)))[0]:
            test.assertIsNone(process.poll(), f"{name} has ended")
            test.assertLess(time.monotonic(), deadline, f"{name} does not appear")

    def call(self, interface, method, arguments=None, path=None):
        return self._connection.call_sync(
            self._name, path or self._path, interface, method, arguments, None,
            Gio.DBusCallFlags.NONE, live.LIMIT * 1000, None)

    def add_method(self, interface, name, takes, gives, code):
        self.call(MOCK, "AddMethod", GLib.Variant("(sssss)", (interface, name, takes, gives, code)))

    def emit(self, interface, name, kind, value):
        self.call(MOCK, "EmitSignal", GLib.Variant("(sssav)", (interface, name, kind,
                                                               [GLib.Variant(kind, value)])))

    def calls_of(self, method):
        """The arguments of each call so far."""
        calls = self.call(MOCK, "GetMethodCalls", GLib.Variant("(s)", (method,)))[0]
        return [arguments for _, arguments in calls]


class MockedCase(idling.IdleCase):
    def setUp(self):
        super().setUp()
        _, self.system_address = self.start_bus("system-bus")
        self.env["DBUS_SYSTEM_BUS_ADDRESS"] = self.system_address
        self.env["XDG_SESSION_ID"] = "c1"

    def mock_of_session(self, name, path, interface):
        return Mock(self, self.address, name, path, "--session", name, path, interface)

    def mock_of_system(self, name, template, **parameters):
        return Mock(self, self.system_address, name, "/" + name.replace(".", "/"), "--template",
                    template, "--parameters", json.dumps(parameters))


class SaverBesideServices(MockedCase):
    def test_ends_when_gnomes_saver_does(self):
        name = "org.gnome.ScreenSaver"
        gnome = Mock(self, self.address, name, "/org/gnome/ScreenSaver", "--template",
                     "gnome_screensaver")

        def activate(value):
            gnome.call(name, "SetActive", GLib.Variant("(b)", (value,)))

        activate(True)
        self.end_by(self.start_showing(), lambda: activate(False))

    def test_ends_when_another_desktops_saver_does(self):
        for desktop in ("freedesktop", "mate", "cinnamon", "xfce"):
            with self.subTest(desktop):
                name = f"org.{desktop}.ScreenSaver"
                service = self.mock_of_session(name, f"/org/{desktop}/ScreenSaver", name)
                self.end_by(self.start_showing(), lambda: service.emit(
                    name, "ActiveChanged", "b", False))

    def login_manager(self):
        login = self.mock_of_system(LOGIN, "logind")
        self.session = login.call(MOCK, "AddSession",
                                  GLib.Variant("(ssusb)", ("c1", "seat0", 1000, "user", True)))[0]
        return login

    def inhibitors(self, login):
        return [each[:2] for each in login.call(LOGIN + ".Manager", "ListInhibitors")[0]]

    def start_beside(self, login):
        saver = self.start_showing()
        self.wait_until(saver, lambda: self.inhibitors(login) == [("sleep", "Pelmora")],
                        "the delay of sleep")
        return saver

    def test_ends_when_the_session_is_unlocked(self):
        login = self.login_manager()
        for say in (("Unlock", None), ("SetLockedHint", GLib.Variant("(b)", (False,)))):
            with self.subTest(say[0]):
                self.end_by(self.start_beside(login), lambda: login.call(
                    LOGIN + ".Session", *say, path=self.session))

    def test_ends_before_the_machine_sleeps_and_then_lets_it(self):
        login = self.login_manager()
        saver = self.start_beside(login)
        login.emit(LOGIN + ".Manager", "PrepareForSleep", "b", True)
        self.expect_stop_work(saver)
        self.assertEqual(self.inhibitors(login), [])


class IdleBesideServices(MockedCase):
    def test_follows_the_watches_of_gnomes_compositor(self):
        mutter = self.mock_of_session(MUTTER, "/org/gnome/Mutter/IdleMonitor/Core", MUTTER)
        mutter.add_method(MUTTER, "AddIdleWatch", "t", "u", "ret = 7")
        mutter.add_method(MUTTER, "AddUserActiveWatch", "", "u", "ret = 8")
        mutter.add_method(MUTTER, "RemoveWatch", "u", "", "")
        watcher = self.watch(delay=600)
        self.assertIn(b"of which GNOME's compositor tells", watcher.log)
        self.wait_until(watcher, lambda: mutter.calls_of("AddIdleWatch"), "the watch")
        self.assertEqual(mutter.calls_of("AddIdleWatch"), [[600_000]])
        for turn in (1, 2):
            mutter.emit(MUTTER, "WatchFired", "u", 7)
            self.wait_for_saver(watcher)
            self.wait_until(watcher, lambda: len(mutter.calls_of("AddUserActiveWatch")) == turn,
                            "the watch for activity")
            mutter.emit(MUTTER, "WatchFired", "u", 8)
            self.wait_for_end_of_saver(watcher)
        watcher.terminate()
        self.assertEqual(self.finish(watcher), 0)
        self.assertEqual(mutter.calls_of("RemoveWatch"), [[7]])

    def test_stays_away_on_battery_where_it_is_told_to(self):
        power = self.mock_of_system(POWER, "upower", OnBattery=True)
        watcher = self.watch("--not-on-battery")
        self.wait_for_log(watcher, "held off by the battery")
        self.expect_none_for(watcher, 2)
        power.call(MOCK, "UpdateProperties", GLib.Variant(
            "(sa{sv})", (POWER, {"OnBattery": GLib.Variant("b", False)})))
        self.wait_for_saver(watcher)

    def test_starts_on_battery_unless_it_is_told_not_to(self):
        self.mock_of_system(POWER, "upower", OnBattery=True)
        self.wait_for_saver(self.watch())


if __name__ == "__main__":
    live.main()
