#!/usr/bin/env python3
"""Runs the saver on a virtual X display and looks at the screen: python3 live_test.py --pelmora PATH"""

import os
import signal
import subprocess

import live


class Live(live.LiveCase):
    def make_two_monitors(self):
        for name, place in (("left", "800/210x600/160+0+0"), ("right", "800/210x600/160+800+0")):
            subprocess.run(["xrandr", "--setmonitor", name, place,
                            "screen" if name == "left" else "none"],
                           env=self.env, check=True, timeout=live.LIMIT, stdout=subprocess.DEVNULL)

    def test_covers_every_display_until_a_key_is_pressed(self):
        self.make_two_monitors()
        saver = self.start()
        for x in (0, 800):
            self.wait_until(saver, lambda: self.display.lit(x, 0, 800, 600) > 0.1,
                            f"a picture at x = {x}")
        subprocess.run(["xdotool", "key", "a"], env=self.env, check=True, timeout=live.LIMIT)
        self.assertEqual(self.finish(saver), 0)
        caches = os.path.join(self.home, ".cache", "Pelmora")
        for name in ("FolderCache.plist", "Screen 1 Log.txt", "Screen 2 Log.txt"):
            self.assertTrue(os.path.exists(os.path.join(caches, name)), name)
        self.assertIn(b"Pelmora: Stopping animation for screen 2", saver.log)

    def monitor(self, *words):
        subprocess.run(["xrandr", *words], env=self.env, check=True, timeout=live.LIMIT,
                       stdout=subprocess.DEVNULL)

    def wait_for_pictures(self, saver, *places):
        for x in places:
            self.wait_until(saver, lambda: self.display.lit(x, 0, 800, 600) > 0.1,
                            f"a picture at x = {x}")

    def test_follows_displays_that_come_and_go(self):
        self.make_two_monitors()
        saver = self.start()
        self.wait_for_pictures(saver, 0, 800)
        self.monitor("--delmonitor", "right")
        self.wait_until(saver, lambda: b"Screen 2 has gone" in saver.log, "the end of a view")
        self.wait_until(saver, lambda: self.display.lit(800, 0, 800, 600) < 0.001, "a free display")
        self.assertGreater(self.display.lit(0, 0, 800, 600), 0.1)
        self.monitor("--setmonitor", "right", "800/210x600/160+800+0", "none")
        self.wait_for_pictures(saver, 800)
        self.wait_until(saver, lambda: b"Screen 2 is back" in saver.log, "the same view")
        # Another display takes the place of the one that goes, at another size.
        self.monitor("--delmonitor", "right")
        self.monitor("--setmonitor", "other", "600/160x400/110+900+100", "none")
        self.wait_until(saver, lambda: self.display.lit(900, 100, 600, 400) > 0.1, "a new display")
        self.wait_until(saver, lambda: saver.log.count(b"screenIndex is 2.") == 2, "its number")
        self.assertLess(self.display.lit(800, 0, 100, 600), 0.001)
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)

    def test_covers_displays_when_the_toolkit_scales(self):
        self.env["QT_SCALE_FACTOR"] = "1.5"
        self.make_two_monitors()
        saver = self.start()
        self.wait_for_pictures(saver, 0, 800)
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)

    def test_ends_in_order_when_the_x_server_dies(self):
        saver = self.start()
        self.wait_until(saver, lambda: self.display.lit(0, 0, 1600, 600) > 0.05, "a picture")
        self.display.server.kill()
        self.assertEqual(self.finish(saver), 1)
        self.assertIn(b"the display has gone", saver.log)
        self.assertIn(b"Pelmora: View was removed from window for screen 1", saver.log)

    def test_ends_when_the_pointer_really_moves(self):
        saver = self.start()
        self.wait_until(saver, lambda: self.display.lit(0, 0, 1600, 600) > 0.05, "a picture")
        for x in (300, 400, 500):
            subprocess.run(["xdotool", "mousemove", str(x), "300"], env=self.env, check=True,
                           timeout=live.LIMIT)
        self.assertEqual(self.finish(saver), 0)

    def test_ends_cleanly_when_it_is_asked_to(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            saver = self.start()
            self.wait_until(saver, lambda: self.display.lit(0, 0, 1600, 600) > 0.05, "a picture")
            saver.send_signal(number)
            self.assertEqual(self.finish(saver), 0)
            self.assertIn(b"Pelmora: Stopping animation for screen 1", saver.log)

    def test_runs_in_a_window(self):
        saver = self.start("window", "--size", "400x300")
        self.wait_until(saver, lambda: self.display.lit(0, 0, 1600, 600) > 0.01, "a picture")
        self.assertLess(self.display.lit(400, 0, 1200, 600), 0.001)
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)

    def test_shows_the_same_with_the_graphics_processor(self):
        # Graphics drivers keep some of what they allocate.
        self.env["ASAN_OPTIONS"] = self.env.get("ASAN_OPTIONS", "") + ":detect_leaks=0"
        saver = self.start("--renderer", "gpu")
        self.wait_until(saver, lambda: self.display.lit(0, 0, 1600, 600) > 0.05, "a picture")
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)

    def test_says_that_there_is_no_display(self):
        for name in ("", ":4711"):
            self.env["DISPLAY"] = name
            del_platform = {key: value for key, value in self.env.items() if key != "QT_QPA_PLATFORM"}
            result = subprocess.run([self.program], env=del_platform, capture_output=True, timeout=live.LIMIT)
            self.assertEqual(result.returncode, 1, result.stderr)
            self.assertIn(b"display", result.stderr)


if __name__ == "__main__":
    live.main()
