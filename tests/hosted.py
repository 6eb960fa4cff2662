"""What tests of the saver in a host's window share: windows of another program, an installed saver,
and a display with two monitors."""

import argparse
import contextlib
import ctypes
import ctypes.util
import os
import shutil
import struct
import subprocess
import sys
import tempfile

import live
import pngfile

RED, BLUE = (210, 30, 40), (30, 60, 220)
NOBODY = 65534


def as_nobody():
    """What goes before a command that is not to run as root."""
    if os.getuid() != 0:
        return []
    return ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]


class Window:
    """A window of another program: this one."""

    def __init__(self, display, x, y, width, height):
        self.x11 = ctypes.CDLL(ctypes.util.find_library("X11") or "libX11.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        for name in ("XDefaultRootWindow", "XCreateSimpleWindow"):
            getattr(self.x11, name).restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(display.encode()))
        root = ctypes.c_ulong(self.x11.XDefaultRootWindow(self.display))
        self.id = self.x11.XCreateSimpleWindow(
            self.display, root, x, y, width, height, 0, ctypes.c_ulong(0), ctypes.c_ulong(0))
        self._do("XMapWindow")

    def _do(self, name, *numbers):
        getattr(self.x11, name)(self.display, ctypes.c_ulong(self.id), *numbers)
        self.x11.XSync(self.display, 0)

    def resize(self, width, height):
        self._do("XResizeWindow", width, height)

    def clear(self):
        self._do("XClearWindow")

    def destroy(self):
        self._do("XDestroyWindow")


class HostedCase(live.LiveCase):
    """A test with two monitors, and red pictures for the left one and blue ones for the right."""

    build = None
    installed = None

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        prefix = tempfile.mkdtemp(dir="/tmp")
        cls.addClassCleanup(shutil.rmtree, prefix)
        os.chmod(prefix, 0o755)
        subprocess.run(["cmake", "--install", cls.build, "--prefix", prefix], check=True,
                       stdout=subprocess.DEVNULL)
        cls.program = os.path.join(prefix, "libexec", "xscreensaver", "pelmora")
        cls.installed = prefix

    def setUp(self):
        super().setUp()
        self.run_tool("sources", "remove", os.path.join(self.home, "pictures"))
        for name, colour, screen in (("left", RED, "1"), ("right", BLUE, "2")):
            folder = os.path.join(self.home, name)
            os.mkdir(folder)
            for number in range(3):
                with open(os.path.join(folder, f"{number}.png"), "wb") as file:
                    file.write(pngfile.encode(60, 40, colour))
            self.run_tool("sources", "add", folder, "--screens", screen)
        for name, place, output in (("left", "800/210x600/160+0+0", "screen"),
                                    ("right", "800/210x600/160+800+0", "none")):
            subprocess.run(["xrandr", "--setmonitor", name, place, output], env=self.env, check=True,
                           timeout=live.LIMIT, stdout=subprocess.DEVNULL)

    def share(self, colour, x, y, width, height):
        """How much of a rectangle has nearly this colour, 0 to 1, judged by every eighth pixel."""
        with open(os.path.join(self.display.folder, "Xvfb_screen0"), "rb") as file:
            data = file.read()
        header = struct.unpack(">25I", data[:100])
        start, bytes_of_pixel, line = header[0] + header[19] * 12, header[11] // 8, header[12]
        found = total = 0
        for row in range(y, y + height, 8):
            for column in range(x, x + width, 8):
                at = start + row * line + column * bytes_of_pixel
                blue, green, red = data[at:at + 3]
                total += 1
                found += all(abs(a - b) < 40 for a, b in zip((red, green, blue), colour))
        return found / total

    def is_shown_left(self):
        return self.share(RED, 0, 0, 800, 600) > 0.05 and self.share(BLUE, 0, 0, 800, 600) < 0.01

    def is_shown_right(self):
        return self.share(BLUE, 800, 0, 800, 600) > 0.05 and self.share(RED, 800, 0, 800, 600) < 0.01

    def is_dark(self):
        return self.share((0, 0, 0), 0, 0, 1600, 600) > 0.999

    def processes(self):
        """The processes of the installed saver, its helpers included."""
        found = []
        for name in os.listdir("/proc"):
            try:
                if os.readlink(f"/proc/{name}/exe").startswith(self.installed):
                    found.append(int(name))
            except (OSError, ValueError):
                continue
        return found

    def savers(self):
        """Of those processes the ones that show, without their helpers."""
        found = set()
        for number in self.processes():
            with contextlib.suppress(OSError):
                if os.readlink(f"/proc/{number}/exe").endswith("/bin/pelmora"):
                    found.add(number)
        return found


def main():
    """Runs the calling script's tests with what was built in the folder that `--build` names."""
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True, help="the build folder to install from")
    options, others = parser.parse_known_args()
    HostedCase.build = os.path.abspath(options.build)
    sys.argv[1:] = others
    live.main()
