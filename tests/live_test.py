#!/usr/bin/env python3
"""Runs the saver on a virtual X display and looks at the screen: python3 live_test.py --pelmora PATH"""

import argparse
import os
import select
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest

import pngfile

PELMORA = None
LIMIT = 20  # seconds that anything may take


class VirtualDisplay:
    """An X server whose screen is a file."""

    def __init__(self, size):
        self.folder = tempfile.mkdtemp()
        reader, writer = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", size + "x24", "-fbdir", self.folder,
             "-noreset", "-nolisten", "tcp"],
            pass_fds=[writer], stderr=subprocess.DEVNULL)
        os.close(writer)
        # The number comes in pieces, and a server whose reader has gone dies of it.
        number = b""
        while not number.endswith(b"\n"):
            ready, _, _ = select.select([reader], [], [], LIMIT)
            piece = os.read(reader, 16) if ready else b""
            if not piece:
                raise RuntimeError("the virtual display does not start")
            number += piece
        self.name = ":" + number.decode().strip()
        os.close(reader)

    def close(self):
        self.server.terminate()
        self.server.wait()
        shutil.rmtree(self.folder)

    def lit(self, x, y, width, height):
        """How much of a rectangle is not black, 0 to 1."""
        with open(os.path.join(self.folder, "Xvfb_screen0"), "rb") as file:
            data = file.read()
        header = struct.unpack(">25I", data[:100])
        start, bytes_of_pixel, line = header[0] + header[19] * 12, header[11] // 8, header[12]
        lit = 0
        for row in range(y, y + height):
            first = start + row * line + x * bytes_of_pixel
            pixels = data[first:first + width * bytes_of_pixel]
            # A fourth byte is padding.
            lit += sum(1 for i in range(0, len(pixels), bytes_of_pixel)
                       if pixels[i:i + 3] != b"\0\0\0")
        return lit / (width * height)


class Live(unittest.TestCase):
    def setUp(self):
        self.home = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.home)
        self.display = VirtualDisplay("1600x600")
        self.addCleanup(self.display.close)
        self.env = {"PATH": os.environ["PATH"], "HOME": self.home, "DISPLAY": self.display.name,
                    "TZ": "UTC", "QT_QPA_PLATFORM": "xcb"}
        for name in ("ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS"):
            if name in os.environ:
                self.env[name] = os.environ[name]
        pictures = os.path.join(self.home, "pictures")
        os.mkdir(pictures)
        for number in range(8):
            with open(os.path.join(pictures, f"{number}.png"), "wb") as file:
                file.write(pngfile.encode(60, 40, (200, 20 * number, 90)))
        self.run_tool("sources", "add", pictures)
        self.run_tool("defaults", "write", "Delay", "0.5")

    def run_tool(self, *words):
        subprocess.run([PELMORA, *words], env=self.env, check=True, timeout=LIMIT)

    def start(self, *words):
        saver = subprocess.Popen([PELMORA, *words, "--verbose"], env=self.env,
                                 stderr=subprocess.PIPE)
        self.addCleanup(saver.stderr.close)
        self.addCleanup(saver.wait)
        self.addCleanup(saver.kill)
        os.set_blocking(saver.stderr.fileno(), False)
        saver.log = b""
        return saver

    def wait_until(self, saver, condition, what):
        deadline = time.monotonic() + LIMIT
        while not condition():
            self.assertLess(time.monotonic(), deadline, f"{what} did not come; the log:\n"
                            + saver.log.decode(errors="replace"))
            ready, _, _ = select.select([saver.stderr], [], [], 0.05)
            if ready:
                saver.log += saver.stderr.read() or b""
            self.assertIsNone(saver.poll(), saver.log.decode(errors="replace"))

    def finish(self, saver):
        """The run's exit status; the rest of its log is kept."""
        os.set_blocking(saver.stderr.fileno(), True)
        _, rest = saver.communicate(timeout=LIMIT)
        saver.log += rest
        return saver.returncode

    def make_two_monitors(self):
        for name, place in (("left", "800/210x600/160+0+0"), ("right", "800/210x600/160+800+0")):
            subprocess.run(["xrandr", "--setmonitor", name, place,
                            "screen" if name == "left" else "none"],
                           env=self.env, check=True, timeout=LIMIT, stdout=subprocess.DEVNULL)

    def test_covers_every_display_until_a_key_is_pressed(self):
        self.make_two_monitors()
        saver = self.start()
        for x in (0, 800):
            self.wait_until(saver, lambda: self.display.lit(x, 0, 800, 600) > 0.1,
                            f"a picture at x = {x}")
        subprocess.run(["xdotool", "key", "a"], env=self.env, check=True, timeout=LIMIT)
        self.assertEqual(self.finish(saver), 0)
        caches = os.path.join(self.home, ".cache", "Pelmora")
        for name in ("FolderCache.plist", "Screen 1 Log.txt", "Screen 2 Log.txt"):
            self.assertTrue(os.path.exists(os.path.join(caches, name)), name)
        self.assertIn(b"Pelmora: Stopping animation for screen 2", saver.log)

    def test_ends_when_the_pointer_really_moves(self):
        saver = self.start()
        self.wait_until(saver, lambda: self.display.lit(0, 0, 1600, 600) > 0.05, "a picture")
        for x in (300, 400, 500):
            subprocess.run(["xdotool", "mousemove", str(x), "300"], env=self.env, check=True,
                           timeout=LIMIT)
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
            result = subprocess.run([PELMORA], env=del_platform, capture_output=True, timeout=LIMIT)
            self.assertEqual(result.returncode, 1, result.stderr)
            self.assertIn(b"display", result.stderr)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--pelmora", required=True)
    known, rest = parser.parse_known_args()
    PELMORA = os.path.abspath(known.pelmora)
    unittest.main(argv=[sys.argv[0], *rest], verbosity=2)
