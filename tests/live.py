"""What tests of the running saver share: a virtual X display to look at, and a home with pictures."""

import argparse
import os
import select
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest

import pngfile

# Seconds that anything may take; a sanitizer takes several times as long.
LIMIT = 60 if "ASAN_OPTIONS" in os.environ else 20
DELAY = 0.5  # seconds from card to card


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
        self.server.wait(LIMIT)
        shutil.rmtree(self.folder)

    def pixels(self, x, y, width, height):
        """The colours of a rectangle, row by row, as bytes: blue, green, red."""
        with open(os.path.join(self.folder, "Xvfb_screen0"), "rb") as file:
            data = file.read()
        header = struct.unpack(">25I", data[:100])
        start, bytes_of_pixel, line = header[0] + header[19] * 12, header[11] // 8, header[12]
        for row in range(y, y + height):
            first = start + row * line + x * bytes_of_pixel
            for i in range(first, first + width * bytes_of_pixel, bytes_of_pixel):
                yield data[i:i + 3]  # a fourth byte is padding

    def lit(self, x, y, width, height):
        """How much of a rectangle is not black, 0 to 1."""
        lit = sum(1 for colour in self.pixels(x, y, width, height) if colour != b"\0\0\0")
        return lit / (width * height)


class LiveCase(unittest.TestCase):
    """A test with a virtual display and a home, in which there are pictures."""

    program = None
    screen = "1600x600"

    def setUp(self):
        self.home = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.home)
        self.env = {"PATH": os.environ["PATH"], "HOME": self.home, "TZ": "UTC"}
        for name in ("ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS"):
            if name in os.environ:
                self.env[name] = os.environ[name]
        self.open_display()
        pictures = os.path.join(self.home, "pictures")
        os.mkdir(pictures)
        for number in range(8):
            with open(os.path.join(pictures, f"{number}.png"), "wb") as file:
                file.write(pngfile.encode(60, 40, (200, 20 * number, 90)))
        self.run_tool("sources", "add", pictures)
        self.run_tool("defaults", "write", "Delay", str(DELAY))

    def open_display(self):
        """Starts what the saver is shown on, and names it in the environment."""
        self.display = VirtualDisplay(self.screen)
        self.addCleanup(self.display.close)
        self.env.update(DISPLAY=self.display.name, QT_QPA_PLATFORM="xcb")

    def run_tool(self, *words):
        subprocess.run([self.program, *words], env=self.env, check=True, timeout=LIMIT)

    def start(self, *words, within=()):
        """Starts the saver, by the command `within` where there is one, which ends as the saver."""
        saver = subprocess.Popen([*within, self.program, *words, "--verbose"], env=self.env,
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
            self.read_log(saver)
            self.assertIsNone(saver.poll(), saver.log.decode(errors="replace"))

    def finish(self, saver):
        """The run's exit status; the rest of its log is kept. A process that a library has started
        may have the log open for longer, and is not waited for."""
        deadline = time.monotonic() + LIMIT
        while saver.poll() is None:
            self.assertLess(time.monotonic(), deadline, "the saver did not end; the log:\n"
                            + saver.log.decode(errors="replace"))
            self.read_log(saver)
        self.read_log(saver)
        return saver.returncode

    def read_log(self, saver):
        ready, _, _ = select.select([saver.stderr], [], [], 0.05)
        if ready:
            saver.log += saver.stderr.read() or b""


def main():
    """Runs the calling script's tests with the saver that `--pelmora` names."""
    parser = argparse.ArgumentParser()
    parser.add_argument("--pelmora", required=True, help="the saver to run")
    options, others = parser.parse_known_args()
    LiveCase.program = os.path.abspath(options.pelmora)
    unittest.main(module="__main__", argv=[sys.argv[0], *others], verbosity=2)
