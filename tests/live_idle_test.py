#!/usr/bin/env python3
"""Leaves the computer alone and comes back, on a display and a bus of its own, and looks whether the
saver starts and ends: python3 live_idle_test.py --pelmora PATH"""

import os
import re
import signal
import socket
import subprocess

from gi.repository import Gio, GLib

import idling
import live
import processes
import pngfile

SESSION_MANAGER = """<interface name="org.gnome.SessionManager">
  <method name="IsInhibited"><arg type="u" direction="in"/><arg type="b" direction="out"/></method>
</interface>"""
POLICY_AGENT = """<interface name="org.kde.Solid.PowerManagement.PolicyAgent">
  <method name="HasInhibition"><arg type="u" direction="in"/><arg type="b" direction="out"/></method>
</interface>"""
LOGIN = """<interface name="org.freedesktop.login1.Manager">
  <property name="BlockInhibited" type="s" access="read"/>
</interface>"""
POWER = """<interface name="org.freedesktop.UPower">
  <property name="OnBattery" type="b" access="read"/>
</interface>"""
MUTTER = """<interface name="org.gnome.Mutter.IdleMonitor">
  <method name="AddIdleWatch"><arg type="t" direction="in"/><arg type="u" direction="out"/></method>
  <method name="AddUserActiveWatch"><arg type="u" direction="out"/></method>
  <method name="RemoveWatch"><arg type="u" direction="in"/></method>
  <signal name="WatchFired"><arg type="u"/></signal>
</interface>"""


def yes_or_no(value):
    return GLib.Variant("(b)", (value,))


class Player:
    """A program that asks for the saver to stay away."""

    def __init__(self, address):
        self._connection = idling.connect(address)

    def _call(self, path, method, arguments, answer=None):
        return self._connection.call_sync(
            "org.freedesktop.ScreenSaver", path, "org.freedesktop.ScreenSaver", method, arguments,
            GLib.VariantType(answer) if answer else None, Gio.DBusCallFlags.NONE,
            live.LIMIT * 1000, None)

    def inhibit(self, path="/org/freedesktop/ScreenSaver"):
        return self._call(path, "Inhibit", GLib.Variant("(ss)", ("Player", "a film")), "(u)")[0]

    def let_go(self, cookie, path="/ScreenSaver"):
        self._call(path, "UnInhibit", GLib.Variant("(u)", (cookie,)))

    def close(self):
        self._connection.close_sync(None)


class IdleOnX(idling.IdleCase):
    def server_timeout(self):
        told = subprocess.run(["xset", "q"], env=self.env, check=True, timeout=live.LIMIT,
                              capture_output=True, text=True).stdout
        return int(re.search(r"timeout: +(\d+)", told).group(1))

    def set_server(self, *words):
        subprocess.run(["xset", "s", *words], env=self.env, check=True, timeout=live.LIMIT)

    def test_starts_the_saver_when_idle_and_ends_it_on_activity_each_time(self):
        watcher = self.watch()
        cycles = processes.Cycles("pelmora idle on X", watcher.pid)
        for _ in cycles:
            saver = self.wait_for_saver(watcher)
            self.wait_until(watcher, lambda: self.display.lit(0, 0, 640, 480) > 0.05, "a picture")
            self.press_key()
            self.wait_until(watcher, lambda: not idling.is_alive(saver), "the saver's end")
            self.wait_for_end_of_saver(watcher)
        cycles.judge(self)
        watcher.terminate()
        self.assertEqual(self.finish(watcher), 0)

    def test_sets_the_server_back_at_its_end(self):
        self.set_server("1234")
        watcher = self.watch(delay=77)
        self.wait_until(watcher, lambda: self.server_timeout() == 77, "the delay")
        watcher.terminate()
        self.assertEqual(self.finish(watcher), 0)
        self.assertEqual(self.server_timeout(), 1234)

    def test_heeds_those_who_turn_the_servers_screen_saver_on_and_off(self):
        watcher = self.watch(delay=600)
        self.wait_until(watcher, lambda: self.server_timeout() == 600, "the delay")
        self.set_server("activate")
        saver = self.wait_for_saver(watcher)
        self.set_server("reset")
        self.wait_until(watcher, lambda: not idling.is_alive(saver), "the saver's end")
        self.wait_for_log(watcher, "The user is active: ending the saver")

    def test_keeps_away_while_a_player_suspends_the_servers_screen_saver(self):
        picture = os.path.join(self.home, "film.png")
        with open(picture, "wb") as file:
            file.write(pngfile.encode(60, 40, (10, 20, 30)))
        player = subprocess.Popen(
            ["mpv", "--no-config", "--really-quiet", "--vo=x11", "--geometry=320x240",
             "--stop-screensaver=always",
             "--image-display-duration=inf", picture],
            env={**self.env, "LC_NUMERIC": "C"}, stdin=subprocess.DEVNULL)
        self.addCleanup(player.wait)
        self.addCleanup(player.kill)
        watcher = self.watch()
        self.wait_until(watcher, lambda: self.display.lit(0, 0, 640, 480) > 0.2, "the film")
        self.press_key()
        self.wait_for_end_of_saver(watcher)
        self.expect_none_for(watcher, 4)
        player.kill()
        self.wait_for_saver(watcher)

    def test_keeps_away_while_a_program_holds_an_inhibitor(self):
        watcher = self.watch()
        self.wait_for_log(watcher, "Programs find the saver")
        player = Player(self.address)
        cookie = player.inhibit()
        self.press_key()
        self.wait_for_log(watcher, "held off by Player (a film)")
        self.assertEqual(idling.children(watcher.pid), [])
        player.let_go(cookie)
        self.wait_for_saver(watcher)
        self.press_key()
        self.wait_for_end_of_saver(watcher)
        player.inhibit("/ScreenSaver")
        self.wait_for_log(watcher, "held off by Player (a film)", 2)
        player.close()
        self.wait_for_saver(watcher)

    def test_heeds_the_inhibitors_of_desktops_and_of_the_system(self):
        session = self.serve("org.gnome.SessionManager", "/org/gnome/SessionManager",
                             SESSION_MANAGER, IsInhibited=yes_or_no(True))
        agent = self.serve("org.kde.Solid.PowerManagement.PolicyAgent",
                           "/org/kde/Solid/PowerManagement/PolicyAgent", POLICY_AGENT,
                           HasInhibition=yes_or_no(True))
        login = self.serve("org.freedesktop.login1", "/org/freedesktop/login1", LOGIN,
                           BlockInhibited=GLib.Variant("s", "sleep:idle"))
        power = self.serve("org.freedesktop.UPower", "/org/freedesktop/UPower", POWER,
                           OnBattery=GLib.Variant("b", True))
        watcher = self.watch("--not-on-battery")
        self.wait_for_log(watcher, "held off by the session manager, power management, "
                                   "the login manager, the battery")
        session.answers["IsInhibited"] = yes_or_no(False)
        session.emit("org.gnome.SessionManager", "InhibitorRemoved",
                     GLib.Variant("(o)", ("/org/gnome/SessionManager/Inhibitor1",)))
        agent.answers["HasInhibition"] = yes_or_no(False)
        agent.emit("org.kde.Solid.PowerManagement.PolicyAgent", "InhibitionsChanged",
                   GLib.Variant("(a(ss)as)", ([], [])))
        login.change_property("org.freedesktop.login1.Manager", "BlockInhibited",
                              GLib.Variant("s", "sleep"))
        self.expect_none_for(watcher, 2)
        power.change_property("org.freedesktop.UPower", "OnBattery", GLib.Variant("b", False))
        self.wait_for_saver(watcher)

    def test_does_not_care_for_the_battery_unless_it_is_told_to(self):
        self.serve("org.freedesktop.UPower", "/org/freedesktop/UPower", POWER,
                   OnBattery=GLib.Variant("b", True))
        self.wait_for_saver(self.watch())

    def test_follows_gnome_where_it_is_there(self):
        mutter = self.serve("org.gnome.Mutter.IdleMonitor", "/org/gnome/Mutter/IdleMonitor/Core",
                            MUTTER, AddIdleWatch=GLib.Variant("(u)", (7,)),
                            AddUserActiveWatch=GLib.Variant("(u)", (8,)))
        watcher = self.watch(delay=600)
        self.assertIn(b"of which GNOME's compositor tells", watcher.log)
        for turn in (1, 2):
            self.wait_until(watcher, lambda: "AddIdleWatch" in mutter.calls, "the watch")
            mutter.emit("org.gnome.Mutter.IdleMonitor", "WatchFired", GLib.Variant("(u)", (7,)))
            saver = self.wait_for_saver(watcher)
            self.wait_until(watcher, lambda: mutter.calls.count("AddUserActiveWatch") == turn,
                            "the watch for activity")
            mutter.emit("org.gnome.Mutter.IdleMonitor", "WatchFired", GLib.Variant("(u)", (8,)))
            self.wait_until(watcher, lambda: not idling.is_alive(saver), "the saver's end")

    def test_ends_the_saver_with_itself(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            watcher = self.watch()
            saver = self.wait_for_saver(watcher)
            watcher.send_signal(number)
            self.assertEqual(self.finish(watcher), 0)
            self.assertFalse(idling.is_alive(saver))

    def test_takes_the_saver_with_it_when_it_is_killed(self):
        watcher = self.watch()
        saver = self.wait_for_saver(watcher)
        watcher.kill()
        self.finish(watcher)
        self.assertTrue(idling.dies_in_time(saver))

    def test_kills_a_saver_that_does_not_end(self):
        watcher = self.watch()
        saver = self.wait_for_saver(watcher)
        self.wait_until(watcher, lambda: self.display.lit(0, 0, 640, 480) > 0.05, "a picture")
        os.kill(saver, signal.SIGSTOP)
        self.press_key()
        self.wait_for_log(watcher, "The saver was ended by signal 9")
        self.wait_for_saver(watcher)

    def test_does_not_start_a_saver_that_crashed_before_there_was_activity(self):
        watcher = self.watch()
        saver = self.wait_for_saver(watcher)
        os.kill(saver, signal.SIGKILL)
        self.wait_for_log(watcher, "The saver was ended by signal 9")
        self.expect_none_for(watcher, 3)
        self.press_key()
        self.wait_for_saver(watcher)

    def test_lets_no_second_one_watch_the_same_display(self):
        watcher = self.watch(delay=600)
        second = subprocess.run([self.program, "idle"], env=self.env, capture_output=True,
                                timeout=live.LIMIT, check=False)
        self.assertEqual(second.returncode, 1)
        self.assertEqual(second.stderr,
                         b"pelmora idle: another one watches this display already\n")
        watcher.terminate()
        self.assertEqual(self.finish(watcher), 0)
        self.watch(delay=600)

    def test_ends_when_the_display_goes(self):
        watcher = self.watch(delay=600)
        watcher.send_signal(signal.SIGPIPE)  # as a write does that is under way when it goes
        self.display.server.kill()
        self.assertEqual(self.finish(watcher), 0)
        self.assertIn(b"The X server has gone", watcher.log)

    def test_goes_on_without_the_bus(self):
        watcher = self.watch(delay=2)
        self.wait_for_log(watcher, "Programs find the saver")
        player = Player(self.address)
        player.inhibit()
        self.bus.kill()
        self.wait_for_log(watcher, "The session's bus has gone")
        self.assertEqual(watcher.log.count(b"The session's bus has gone"), 1)
        self.wait_for_saver(watcher)

    def test_starts_without_any_bus(self):
        for kind in ("SESSION", "SYSTEM"):
            self.env[f"DBUS_{kind}_BUS_ADDRESS"] = "unix:path=/nonexistent"
        watcher = self.watch()
        self.wait_for_log(watcher, "bus cannot be reached", 2)
        self.wait_for_saver(watcher)

    def test_is_not_held_up_by_a_bus_that_says_nothing(self):
        silent = socket.socket(socket.AF_UNIX)
        self.addCleanup(silent.close)
        path = os.path.join(self.runtime, "silent")
        silent.bind(path)
        silent.listen()
        for kind in ("SESSION", "SYSTEM"):
            self.env[f"DBUS_{kind}_BUS_ADDRESS"] = "unix:path=" + path
        watcher = self.watch()
        watcher.terminate()
        self.assertEqual(self.finish(watcher), 0)

    def test_sleeps_while_the_user_is_active(self):
        watcher = self.watch(delay=600)
        self.wait_for_log(watcher, "Programs find the saver")
        self.wait_until(watcher, lambda: self.server_timeout() == 600, "the delay")
        self.press_key()  # the first key is told to all programs
        self.expect_none_for(watcher, 7)  # until all that it began with is over
        seen = idling.voluntary_switches(watcher.pid)
        for _ in range(100):
            subprocess.run(["xdotool", "mousemove", "5", "5", "mousemove", "9", "9", "key",
                            "Shift_L"], env=self.env, check=True, timeout=live.LIMIT)
        self.assertEqual(idling.voluntary_switches(watcher.pid), seen)


class IdleOnWayland(idling.IdleCase):
    def setUp(self):
        super().setUp()
        self.sway = idling.Sway(self.runtime, self.env)
        self.addCleanup(self.sway.close)
        del self.env["DISPLAY"]
        self.env["WAYLAND_DISPLAY"] = self.sway.display
        self.env["QT_QPA_PLATFORM"] = "wayland"
        # Graphics and text libraries keep some of what they allocate.
        self.env["ASAN_OPTIONS"] = self.env.get("ASAN_OPTIONS", "") + ":detect_leaks=0"

    def move_pointer(self):
        self.sway.tell("seat", "-", "cursor", "move", "20", "20")

    def test_starts_the_saver_when_idle_and_ends_it_on_activity_each_time(self):
        watcher = self.watch()
        self.assertIn(b"of which the compositor tells", watcher.log)
        cycles = processes.Cycles("pelmora idle on Wayland", watcher.pid)
        for turn, _ in enumerate(cycles, 1):
            saver = self.wait_for_saver(watcher)
            self.wait_for_log(watcher, "starting the saver", turn)
            self.move_pointer()
            self.wait_until(watcher, lambda: not idling.is_alive(saver), "the saver's end")
            self.wait_for_end_of_saver(watcher)
        cycles.judge(self)
        watcher.terminate()
        self.assertEqual(self.finish(watcher), 0)

    def test_keeps_away_while_a_window_inhibits_idleness(self):
        picture = os.path.join(self.home, "film.png")
        with open(picture, "wb") as file:
            file.write(pngfile.encode(60, 40, (10, 20, 30)))
        player = subprocess.Popen(
            ["mpv", "--no-config", "--really-quiet", "--vo=wlshm", "--stop-screensaver=always",
             "--image-display-duration=inf", picture],
            env={**self.env, "LC_NUMERIC": "C"}, stdin=subprocess.DEVNULL)
        self.addCleanup(player.wait)
        self.addCleanup(player.kill)
        watcher = self.watch(delay=2)
        self.wait_until(watcher, lambda: b'"mpv"' in self.sway.tell("-t", "get_tree"), "the film")
        self.move_pointer()
        self.wait_for_end_of_saver(watcher)
        self.expect_none_for(watcher, 5)
        player.kill()
        self.wait_for_saver(watcher)

    def test_ends_when_the_compositor_goes(self):
        watcher = self.watch(delay=600)
        self.sway.close()
        self.assertEqual(self.finish(watcher), 0)
        self.assertIn(b"The Wayland compositor has gone", watcher.log)


if __name__ == "__main__":
    live.main()
