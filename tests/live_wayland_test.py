#!/usr/bin/env python3
"""Runs the saver on a Wayland compositor and looks at it: python3 live_wayland_test.py --pelmora PATH
--slow-callbacks PATH"""

import argparse
import os
import shutil
import signal
import subprocess
import sys
import tempfile

import compositor
import live
import processes

STOPPED = b"Pelmora: View was removed from window for screen "


def is_desktop(colour):
    return colour in (compositor.BAR, compositor.EMPTY)


def is_lit(colour):
    return colour != (0, 0, 0) and not is_desktop(colour)


class LiveWayland(live.LiveCase):
    def open_display(self):
        self.compositor = compositor.Compositor()
        self.addCleanup(self.compositor.close)
        # A folder of the saver's own: the compositor's may be another user's.
        runtime = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, runtime)
        self.env.update(WAYLAND_DISPLAY=self.compositor.name, XDG_RUNTIME_DIR=runtime,
                        XDG_SESSION_TYPE="wayland")
        # The toolkit keeps what it made of the connection, and the graphics drivers that it loads
        # for it keep some of what they allocate. What is loaded before the program comes first.
        self.env["ASAN_OPTIONS"] = (self.env.get("ASAN_OPTIONS", "")
                                    + ":detect_leaks=0:verify_asan_link_order=0")

    def is_covered(self, output):
        """A display that shows pictures on black up to its edges, and nothing of the desktop."""
        picture = self.compositor.shot(output)
        self.keep(picture, output)
        return (picture.share(is_desktop) < 0.001 and picture.share(is_lit) > 0.1
                and picture.share(lambda colour: colour == (0, 0, 0)) > 0.05
                and not any(all(map(is_desktop, edge)) for edge in picture.edges()))

    def keep(self, picture, name):
        """For those who want to see for themselves."""
        folder = os.environ.get("PELMORA_SHOTS")
        if folder:
            path = os.path.join(folder, f"{self._testMethodName}-{name}.ppm")
            with open(path, "wb") as file:
                file.write(b"P6 %d %d 255\n" % (picture.width, picture.height) + picture.data)

    def cover(self, *words):
        """A saver that covers both displays."""
        saver = self.start(*words)
        for output in ("X11-1", "X11-2"):
            self.wait_until(saver, lambda: self.is_covered(output), f"the saver on {output}")
        return saver

    def check_stopped(self, saver, status=0, screens=(1, 2)):
        self.assertEqual(self.finish(saver), status, saver.log.decode(errors="replace"))
        for screen in screens:
            self.assertIn(STOPPED + b"%d" % screen, saver.log)
        caches = os.path.join(self.home, ".cache", "Pelmora")
        self.assertTrue(os.path.exists(os.path.join(caches, "FolderCache.plist")))

    def check_uncovered(self):
        for output in self.compositor.outputs():
            self.compositor.wait(lambda: self.compositor.shot(output).has_bar(),
                                 f"the desktop on {output}")

    def test_lies_over_everything_where_there_are_layers(self):
        saver = self.cover()
        self.assertEqual(self.compositor.windows(), [])
        # In the second display's own pixels, not made larger by the compositor.
        self.assertGreater(self.compositor.shot("X11-2").sharpest_edge(), 60)
        saver.terminate()
        self.check_stopped(saver)
        self.check_uncovered()

    def test_covers_every_display_by_ordinary_windows_too(self):
        saver = self.cover("--no-layers")
        self.assertEqual(self.compositor.windows(), ["Pelmora", "Pelmora"])
        saver.terminate()
        self.check_stopped(saver)
        self.check_uncovered()

    def test_leaves_nothing_behind_however_often_it_is_started(self):
        cycles = processes.Cycles("sway", self.compositor.process.pid)
        for _ in cycles:
            saver = self.cover()
            saver.terminate()
            self.check_stopped(saver)
            self.check_uncovered()
        cycles.judge(self)

    def test_shows_the_same_with_the_graphics_processor(self):
        saver = self.cover("--renderer", "gpu")
        saver.terminate()
        self.check_stopped(saver)

    def test_ends_at_a_key(self):
        for words in ((), ("--no-layers",)):
            saver = self.cover(*words)
            self.compositor.run("xdotool", "key", "a")
            self.check_stopped(saver)

    def test_ends_when_the_pointer_really_moves(self):
        for words in ((), ("--no-layers",)):
            self.compositor.point_at(300, 300)
            saver = self.cover(*words)
            self.compositor.point_at(302, 301)  # a jolt
            self.assertTrue(self.is_covered("X11-1"))
            for x in (320, 350, 380):
                self.compositor.point_at(x, 300)
            self.check_stopped(saver)

    def test_ends_at_a_button(self):
        self.compositor.point_at(300, 300)
        saver = self.cover()
        self.compositor.run("xdotool", "click", "1")
        self.check_stopped(saver)

    def check_displays_come_and_go(self, *words):
        saver = self.cover(*words)
        # So that the compositor goes on showing what was there, on the first display.
        self.compositor.command("focus", "output", "X11-2")
        self.compositor.unplug("X11-2")
        self.wait_until(saver, lambda: b"Screen 2 has gone" in saver.log, "the end of a view")
        self.wait_until(saver, lambda: self.is_covered("X11-1"), "the first display as it was")

        # Another takes its place.
        new = self.compositor.plug_in()
        self.wait_until(saver, lambda: self.is_covered(new), "a new display")
        self.wait_until(saver, lambda: saver.log.count(b"screenIndex is 2.") == 2, "its number")
        another = self.compositor.plug_in()
        self.wait_until(saver, lambda: self.is_covered(another), "a third display")
        self.wait_until(saver, lambda: b"screenIndex is 3." in saver.log, "its number")

        for output in self.compositor.outputs():
            self.compositor.unplug(output)
        self.wait_until(saver, lambda: saver.log.count(b" has gone") == 4, "the last display's end")
        last = self.compositor.plug_in()
        self.wait_until(saver, lambda: self.is_covered(last), "a display again")
        saver.terminate()
        self.check_stopped(saver, screens=(1, 2, 3))

    def test_follows_displays_that_come_and_go(self):
        self.check_displays_come_and_go()

    def test_follows_displays_that_come_and_go_by_ordinary_windows(self):
        self.check_displays_come_and_go("--no-layers")

    def check_displays_go_amid_frames(self, *words):
        self.env["LD_PRELOAD"] = slow_callbacks
        saver = self.cover(*words)
        for _ in range(3):
            self.compositor.unplug(self.compositor.outputs()[-1])
            new = self.compositor.plug_in()
            self.wait_until(saver, lambda: self.is_covered(new), "a new display")
        saver.terminate()
        self.check_stopped(saver)

    def test_loses_displays_amid_frames(self):
        self.check_displays_go_amid_frames("--renderer", "software")

    def test_loses_displays_amid_frames_of_the_graphics_processor(self):
        self.check_displays_go_amid_frames("--renderer", "gpu")

    def test_loses_displays_amid_frames_of_ordinary_windows(self):
        self.check_displays_go_amid_frames("--renderer", "software", "--no-layers")

    def test_loses_displays_amid_frames_of_the_graphics_processor_in_ordinary_windows(self):
        self.check_displays_go_amid_frames("--renderer", "gpu", "--no-layers")

    def test_follows_a_display_that_changes_its_size_and_scale(self):
        saver = self.cover()
        for words in (("resolution", "600x450"), ("scale", "2"), ("scale", "1.5")):
            self.compositor.command("output", "X11-1", *words)
            self.wait_until(saver, lambda: self.is_covered("X11-1"), " ".join(words))
        saver.terminate()
        self.check_stopped(saver)

    def test_covers_displays_when_the_toolkit_scales(self):
        self.env["QT_SCALE_FACTOR"] = "1.5"
        saver = self.cover()
        saver.terminate()
        self.check_stopped(saver)

    def test_ends_in_order_when_the_compositor_dies(self):
        saver = self.cover()
        self.compositor.kill()
        self.check_stopped(saver, status=1)
        self.assertIn(b"the display has gone", saver.log)

    def test_ends_cleanly_when_it_is_asked_to(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            saver = self.start()
            self.wait_until(saver, lambda: self.is_covered("X11-1"), "a picture")
            saver.send_signal(number)
            self.check_stopped(saver)

    def test_says_that_there_is_no_compositor(self):
        self.compositor.kill()
        result = subprocess.run([self.program], env=self.env, capture_output=True,
                                timeout=live.LIMIT)
        self.assertEqual(result.returncode, 1, result.stderr)
        self.assertIn(b"display does not answer", result.stderr)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--slow-callbacks", required=True, help="a library to load before the saver")
    options, sys.argv[1:] = parser.parse_known_args()
    slow_callbacks = os.path.abspath(options.slow_callbacks)
    live.main()
