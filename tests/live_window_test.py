#!/usr/bin/env python3
"""Runs the saver in windows of other programs: python3 live_window_test.py --build DIR --pelmora PATH"""

import os
import signal
import subprocess
import time

import hosted
import live
import processes

ENDING_LIMIT = 5  # seconds; sanitizers look for leaks at the end


class LiveWindow(hosted.HostedCase):
    def preview(self, *words):
        """A run in a small window on the right monitor."""
        window = hosted.Window(self.display.name, 900, 100, 320, 240)
        saver = self.start("--window-id", hex(window.id), *words)
        self.wait_until(saver, lambda: not self.is_black(900, 100, 320, 240), "a picture")
        return window, saver

    def is_black(self, *rect):
        return self.share((0, 0, 0), *rect) > 0.95

    def assert_stopped(self, saver, screen):
        self.assertIn(f"Pelmora: Stopping animation for screen {screen}".encode(), saver.log)
        caches = os.path.join(self.home, ".cache", "Pelmora")
        self.assertTrue(os.path.exists(os.path.join(caches, "FolderCache.plist")))
        self.assertEqual(self.processes(), [])

    def test_is_a_preview_in_a_small_window_and_follows_its_size(self):
        window, saver = self.preview()
        self.assertIn(b"Pelmora: isPreview now = 1", saver.log)
        window.resize(480, 400)
        self.wait_until(saver, lambda: not self.is_black(900, 350, 480, 150), "a larger pile")
        for rect in ((0, 0, 896, 600), (1384, 0, 216, 600), (896, 504, 488, 96)):
            self.assertEqual(self.share((0, 0, 0), *rect), 1, rect)
        window.destroy()
        self.assertEqual(self.finish(saver), 0)
        self.assert_stopped(saver, "Prefs")

    def test_is_the_view_of_the_display_that_the_window_covers(self):
        window = hosted.Window(self.display.name, 800, 0, 800, 600)
        # All that some hosts pass on, for a user who has told the toolkit to use something else.
        self.env = {name: value for name, value in self.env.items()
                    if name in ("PATH", "HOME", "DISPLAY") or name.endswith("SAN_OPTIONS")}
        self.env.update(XSCREENSAVER_WINDOW=str(window.id), LANG="de_DE.UTF-8", LANGUAGE="de",
                        QT_QPA_PLATFORM="wayland", WAYLAND_DISPLAY="wayland-7",
                        SESSION_MANAGER="local/nowhere:/tmp/.ICE-unix/1",
                        DBUS_SESSION_BUS_ADDRESS="unix:path=/nowhere")
        for words in ((), ("-root",)):
            saver = self.start(*words)
            self.wait_until(saver, self.is_shown_right, "a blue picture on the right")
            self.assertEqual(self.share((0, 0, 0), 0, 0, 800, 600), 1)
            self.assertIn(b"Pelmora: screenIndex is 2.", saver.log)
            saver.terminate()
            self.assertEqual(self.finish(saver), 0)
            self.assert_stopped(saver, "2")

    def test_leaves_keys_and_the_pointer_to_the_host(self):
        _, saver = self.preview()
        for words in (("mousemove", "1000", "200"), ("click", "1"), ("mousemove", "1100", "250"),
                      ("key", "a"), ("key", "Escape")):
            self.run_xdotool(*words)
        shown = os.path.join(self.home, ".cache", "Pelmora", "System Prefs Log.txt")
        length = os.path.getsize(shown)
        self.wait_until(saver, lambda: os.path.getsize(shown) > length, "the next picture")
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)

    def test_draws_below_everything_where_the_host_names_no_window(self):
        for token in (None, "token", "0", "0x", "99999999999"):
            if token is not None:
                self.env["XSCREENSAVER_WINDOW"] = token
            saver = self.start("--root")
            self.wait_until(saver, lambda: self.is_shown_left() and self.is_shown_right(),
                            "a picture on each display")
            saver.terminate()
            self.assertEqual(self.finish(saver), 0)
            self.assertEqual(saver.log.count(b"XSCREENSAVER_WINDOW names no window"),
                             0 if token is None else 1)

    def test_refuses_windows_that_are_none(self):
        for number, status in (("0", 2), ("0x", 2), ("-3", 2), ("12 monkeys", 2), ("0x7fffff", 1)):
            saver = self.start("--window-id", number)
            self.assertEqual(self.finish(saver), status, saver.log)
            self.assertIn(b"window", saver.log)

    def test_does_its_stop_work_when_the_server_dies(self):
        _, saver = self.preview()
        saver.send_signal(signal.SIGPIPE)  # as a write does that is under way when it goes
        self.display.server.kill()
        begin = time.monotonic()
        self.assertEqual(self.finish(saver), 1, saver.log.decode(errors="replace"))
        print(f"the server died: ended after {time.monotonic() - begin:.2f} s")
        self.assert_stopped(saver, "Prefs")

    def test_ends_at_once_when_it_is_asked_to(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            _, saver = self.preview()
            begin = time.monotonic()
            saver.send_signal(number)
            self.assertEqual(self.finish(saver), 0)
            took = time.monotonic() - begin
            print(f"signal {number}: ended after {took * 1000:.0f} ms")
            self.assertLess(took, ENDING_LIMIT)
            self.assert_stopped(saver, "Prefs")

    def test_leaves_nothing_behind_however_often_it_is_started(self):
        window = hosted.Window(self.display.name, 900, 100, 320, 240)
        cycles = processes.Cycles("an X server with a foreign window", self.display.server.pid)
        for _ in cycles:
            saver = self.start("--window-id", hex(window.id))
            self.wait_until(saver, lambda: not self.is_black(900, 100, 320, 240), "a picture")
            saver.terminate()
            self.assertEqual(self.finish(saver), 0)
            self.assert_stopped(saver, "Prefs")
            self.clear(window)
            self.assertEqual(processes.of_home(self.home), {})
        cycles.judge(self)

    def clear(self, window):
        """Has nothing in the window, as before."""
        window.clear()
        self.assertTrue(self.is_black(900, 100, 320, 240))

    def run_xdotool(self, *words):
        subprocess.run(["xdotool", *words], env=self.env, check=True, timeout=live.LIMIT)


if __name__ == "__main__":
    hosted.main()
