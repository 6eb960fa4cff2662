#!/usr/bin/env python3
"""Tells the running saver what desktops say, on a bus of its own, and looks whether it ends:
python3 live_signals_test.py --pelmora PATH"""

import os
import time

from gi.repository import GLib

import idling
import live
import powered

MANAGER = """<interface name="org.freedesktop.login1.Manager">
  <method name="GetSession"><arg type="s" direction="in"/><arg type="o" direction="out"/></method>
</interface>"""
SESSION = "/org/freedesktop/login1/session/_31"


class Signals(idling.IdleCase):
    def setUp(self):
        super().setUp()
        self.env["XDG_SESSION_ID"] = "1"

    def login_manager(self):
        return self.serve("org.freedesktop.login1", "/org/freedesktop/login1", MANAGER,
                          GetSession=GLib.Variant("(o)", (SESSION,)))

    def active_changed(self, desktop, value):
        connection = idling.connect(self.address)
        self.addCleanup(connection.close_sync, None)
        return lambda: connection.emit_signal(
            None, f"/org/{desktop}/ScreenSaver", f"org.{desktop}.ScreenSaver", "ActiveChanged", value)

    def test_ends_when_a_desktop_says_that_its_saver_has_ended(self):
        for desktop in ("freedesktop", "gnome", "mate", "cinnamon", "xfce"):
            saver = self.start_showing()
            self.end_by(saver, self.active_changed(desktop, GLib.Variant("(b)", (False,))))

    def test_ends_when_the_session_is_unlocked(self):
        login = self.login_manager()
        self.end_by(self.start_showing(), lambda: login.connection.emit_signal(
            None, SESSION, "org.freedesktop.login1.Session", "Unlock", None))
        self.end_by(self.start_showing(), lambda: login.connection.emit_signal(
            None, SESSION, "org.freedesktop.DBus.Properties", "PropertiesChanged",
            GLib.Variant("(sa{sv}as)", ("org.freedesktop.login1.Session",
                                        {"LockedHint": GLib.Variant("b", False)}, []))))

    def test_ends_before_the_machine_sleeps(self):
        login = self.login_manager()
        self.end_by(self.start_showing(), lambda: login.emit(
            "org.freedesktop.login1.Manager", "PrepareForSleep", GLib.Variant("(b)", (True,))))

    def test_ends_when_another_program_posts_that_it_has_ended(self):
        connection = idling.connect(self.address)
        self.addCleanup(connection.close_sync, None)
        self.end_by(self.start_showing(), lambda: connection.emit_signal(
            None, "/org/pelmora/DistributedNotificationCenter",
            "org.pelmora.DistributedNotificationCenter", "Posted",
            GLib.Variant("(ssa{sv})", ("com.apple.screensaver.didstop", "", {}))))

    def test_goes_on_in_a_window_of_the_users_own(self):
        saver = self.start_showing("window", "--size", "320x240")
        self.active_changed("gnome", GLib.Variant("(b)", (False,)))()
        path = os.path.join(self.home, ".cache", "Pelmora", "Screen 1 Log.txt")
        for _ in range(3):
            with open(path, "rb") as file:
                before = file.read()
            self.wait_until(saver, lambda: self.changed(path, before), "another picture")
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)
        self.assertNotIn(b"screensaverDidStop", saver.log)

    @staticmethod
    def changed(path, before):
        with open(path, "rb") as file:
            return file.read() not in (before, b"")

    def test_runs_without_any_bus(self):
        for kind in ("SESSION", "SYSTEM"):
            self.env[f"DBUS_{kind}_BUS_ADDRESS"] = "unix:path=/nonexistent"
        saver = self.start_showing()
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)
        self.assertEqual(saver.log.count(b"bus cannot be reached"), 2)


class Rest(idling.IdleCase):
    def test_wakes_for_its_frames_alone(self):
        self.run_tool("defaults", "write", "Delay", "1000")
        saver = self.start()
        self.wait_until(saver, lambda: b"The first picture is up" in saver.log, "a picture")
        # Ten wake-ups in a row that take as long as ten frames; before, the picture moves in.
        moments = []

        def is_at_rest():
            seen = idling.voluntary_switches(saver.pid)
            if not moments or seen != moments[-1][0]:
                moments.append((seen, time.monotonic()))
            return any(last - first > 4 for (count, first), (later, last)
                       in zip(moments, moments[9:]) if later - count <= 10)

        self.wait_until(saver, is_at_rest, "rest")


class PowerCase(idling.IdleCase):
    """A test of what is chosen for a display that is switched off."""

    def shown(self):
        """The pictures on the display, as the saver lists them."""
        path = os.path.join(self.home, ".cache", "Pelmora", "Screen 1 Log.txt")
        try:
            with open(path, "rb") as file:
                return file.read()
        except FileNotFoundError:
            return b""

    def wait_for_change(self, saver, before):
        self.wait_until(saver, lambda: self.shown() not in (before, b""), "another picture")
        return self.shown()

    def expect_no_change(self, saver, seconds):
        last = self.shown()
        end = time.monotonic() + seconds
        self.wait_until(saver, lambda: time.monotonic() > end or self.shown() != last, "nothing")
        self.assertEqual(self.shown(), last)

    def wait_for_rest(self, saver):
        """What was chosen while the display went off is over."""
        end = time.monotonic() + 2
        self.wait_until(saver, lambda: time.monotonic() > end, "rest")


class PowerOnX(PowerCase):
    def setUp(self):
        super().setUp()
        self.power = powered.PoweredDisplay(self.display.name)
        self.addCleanup(self.power.close)
        self.env["DISPLAY"] = self.power.name
        self.env["QT_XCB_NO_MITSHM"] = "1"

    def test_chooses_no_picture_while_the_displays_are_off(self):
        saver = self.start()
        self.wait_for_change(saver, self.wait_for_change(saver, b""))
        self.assertGreater(self.power.asked, 0)
        self.power.level = powered.OFF
        self.wait_for_rest(saver)
        self.expect_no_change(saver, 3)
        before = self.shown()
        self.power.level = powered.ON
        self.wait_for_change(saver, before)
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)


class PowerOnWayland(PowerCase):
    def setUp(self):
        super().setUp()
        self.sway = idling.Sway(self.runtime, self.env)
        self.addCleanup(self.sway.close)
        del self.env["DISPLAY"]
        self.env["WAYLAND_DISPLAY"] = self.sway.display
        self.env["QT_QPA_PLATFORM"] = "wayland"
        # Graphics and text libraries keep some of what they allocate.
        self.env["ASAN_OPTIONS"] = self.env.get("ASAN_OPTIONS", "") + ":detect_leaks=0"

    def test_chooses_no_picture_while_the_compositor_shows_none(self):
        # What the compositor does for a display that is off, too: it calls for no frame.
        saver = self.start("window")
        self.wait_for_change(saver, self.wait_for_change(saver, b""))
        self.sway.tell("workspace", "2")
        self.wait_for_rest(saver)
        self.expect_no_change(saver, 3)
        before = self.shown()
        self.sway.tell("workspace", "1")
        self.wait_for_change(saver, before)
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)


if __name__ == "__main__":
    live.main()
