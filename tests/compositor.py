"""A Wayland compositor to look at and to use, for tests of the running saver.

Its displays are windows on a virtual X display: so it has a pointer and a keyboard, and displays can
be plugged in and out.
"""

import ctypes
import json
import os
import shutil
import signal
import subprocess
import tempfile
import time

import live

LIMIT = 20  # seconds that anything may take
NOBODY = 65534
BAR = (255, 0, 255)  # the colour of the bar at the lower edge of each display
EMPTY = (63, 63, 63)  # the colour of a display that shows nothing

CONFIGURATION = """
output X11-1 resolution 800x600 position 0 0
output X11-2 resolution 1200x900 scale 2 position 800 0
bar {
  position bottom
  colors {
    background #ff00ff
  }
}
"""


class Picture:
    """What a display shows, in its own pixels."""

    def __init__(self, ppm):
        magic, width, height, _, self.data = ppm.split(maxsplit=4)
        if magic != b"P6":
            raise ValueError("not the picture that was asked for")
        self.width, self.height = int(width), int(height)
        self.data = self.data[-3 * self.width * self.height:]

    def colours(self):
        for i in range(0, len(self.data), 3):
            yield tuple(self.data[i:i + 3])

    def share(self, matches):
        """How much of it has a colour that matches, 0 to 1."""
        return sum(1 for colour in self.colours() if matches(colour)) / (self.width * self.height)

    def at(self, x, y):
        start = 3 * (x % self.width + y % self.height * self.width)
        return tuple(self.data[start:start + 3])

    def has_bar(self):
        """Whether it reaches into the corner."""
        return self.at(-1, -1) == BAR

    def edges(self):
        """The colours of the outermost pixels, edge by edge."""
        for y in (0, -1):
            yield [self.at(x, y) for x in range(self.width)]
        for x in (0, -1):
            yield [self.at(x, y) for y in range(self.height)]

    def sharpest_edge(self):
        """The largest step of brightness between neighbours in a row."""
        green = self.data[1::3]
        return max(abs(green[i] - green[i + 1]) for i in range(len(green) - 1)
                   if (i + 1) % self.width)


class Windows:
    """The windows of a virtual display that are the compositor's displays."""

    CLIENT_MESSAGE = 33

    class ClientMessage(ctypes.Structure):
        _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("sent", ctypes.c_int),
                    ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                    ("message", ctypes.c_ulong), ("format", ctypes.c_int),
                    ("data", ctypes.c_long * 5), ("padding", ctypes.c_long * 12)]

    def __init__(self, name):
        self.x = ctypes.CDLL("libX11.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XInternAtom.restype = self.x.XDefaultRootWindow.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(name.encode()))
        # The compositor only looks them up, on a display where nobody has used them yet.
        for atom in (b"WM_PROTOCOLS", b"WM_DELETE_WINDOW", b"_NET_WM_NAME", b"UTF8_STRING"):
            self.atom(atom)

    def close(self):
        self.x.XCloseDisplay(self.display)

    def atom(self, name):
        return self.x.XInternAtom(self.display, name, 0)

    def all(self):
        """In the order in which they were made."""
        root, parent, count = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.c_uint()
        children = ctypes.POINTER(ctypes.c_ulong)()
        self.x.XQueryTree(self.display, ctypes.c_ulong(self.x.XDefaultRootWindow(self.display)),
                          ctypes.byref(root), ctypes.byref(parent), ctypes.byref(children),
                          ctypes.byref(count))
        windows = children[:count.value]
        self.x.XFree(children)
        return windows

    def place(self, window, x, y):
        self.x.XMoveWindow(self.display, ctypes.c_ulong(window), x, y)
        self.x.XSync(self.display, 0)

    def ask_to_close(self, window):
        event = self.ClientMessage(type=self.CLIENT_MESSAGE, window=window,
                                   message=self.atom(b"WM_PROTOCOLS"), format=32,
                                   data=(self.atom(b"WM_DELETE_WINDOW"), 0, 0, 0, 0))
        self.x.XSendEvent(self.display, ctypes.c_ulong(window), 0, 0, ctypes.byref(event))
        self.x.XSync(self.display, 0)


class Compositor:
    """Two displays, the second twice as dense; a bar on each."""

    def __init__(self):
        self.screen = live.VirtualDisplay("3200x1000")
        self.xserver = Windows(self.screen.name)
        self.runtime = tempfile.mkdtemp(dir="/tmp")
        # It refuses to run as root.
        drop = []
        if os.geteuid() == 0:
            os.chown(self.runtime, NOBODY, NOBODY)
            drop = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]
        configuration = os.path.join(self.runtime, "configuration")
        with open(configuration, "w", encoding="ascii") as file:
            file.write(CONFIGURATION)
        os.chmod(configuration, 0o644)
        self.log = open(os.path.join(self.runtime, "log"), "wb")
        self.process = subprocess.Popen(
            [*drop, "sway", "--config", configuration], stdin=subprocess.DEVNULL, stdout=self.log,
            stderr=self.log, start_new_session=True, cwd=self.runtime,
            env={"PATH": os.environ["PATH"], "HOME": self.runtime, "XDG_RUNTIME_DIR": self.runtime,
                 "DISPLAY": self.screen.name, "WLR_BACKENDS": "x11", "WLR_X11_OUTPUTS": "2",
                 "WLR_RENDERER": "pixman"})
        self.env = {"PATH": os.environ["PATH"], "XDG_RUNTIME_DIR": self.runtime,
                    "DISPLAY": self.screen.name}
        try:
            self._start()
        except BaseException:
            self.close()
            raise

    def _start(self):
        self.wait(self._find_sockets, "a compositor")
        self.displays = dict(zip(("X11-1", "X11-2"), self.xserver.all()))
        self.xserver.place(self.displays["X11-2"], 800, 0)
        self.wait(lambda: all(self.shot(name).has_bar() for name in self.outputs()),
                  "a bar on each display")

    def _find_sockets(self):
        names = os.listdir(self.runtime)
        display = [name for name in names
                   if name.startswith("wayland-") and not name.endswith(".lock")]
        control = [name for name in names if name.startswith("sway-ipc")]
        if not display or not control:
            return False
        self.name = os.path.join(self.runtime, display[0])
        self.env.update(WAYLAND_DISPLAY=self.name,
                        SWAYSOCK=os.path.join(self.runtime, control[0]))
        return len(self.outputs()) == 2

    def wait(self, condition, what):
        deadline = time.monotonic() + LIMIT
        while not condition():
            try:
                self.process.wait(0.02)
            except subprocess.TimeoutExpired:
                if time.monotonic() < deadline:
                    continue
            with open(self.log.name, encoding="utf-8", errors="replace") as file:
                raise RuntimeError(f"{what} did not come: {file.read()[-2000:]}")

    def close(self):
        self.kill()
        self.log.close()
        shutil.rmtree(self.runtime)
        self.xserver.close()
        self.screen.close()

    def kill(self):
        """As in a crash, with all that it has started."""
        if self.process.poll() is None:
            os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait()

    def run(self, *words):
        return subprocess.run(words, env=self.env, check=True, capture_output=True,
                              timeout=LIMIT).stdout

    def command(self, *words):
        return self.run("swaymsg", "--", *words)

    def plug_in(self):
        """One more display, whose name this gives."""
        before = set(self.outputs())
        self.command("create_output")
        output = (set(self.outputs()) - before).pop()
        self.displays[output] = self.xserver.all()[-1]
        return output

    def unplug(self, output):
        self.xserver.ask_to_close(self.displays.pop(output))
        self.wait(lambda: output not in self.outputs(), f"the end of {output}")

    def point_at(self, x, y):
        """Moves the pointer; in pixels, the first display's from 0, the second one's from 800."""
        self.run("xdotool", "mousemove", str(x), str(y))

    def outputs(self):
        """The names of the displays that are on."""
        try:
            outputs = json.loads(self.run("swaymsg", "-r", "-t", "get_outputs"))
        except subprocess.CalledProcessError:
            return []  # it has only just started
        return [output["name"] for output in outputs if output["active"]]

    def shot(self, output):
        return Picture(self.run("grim", "-t", "ppm", "-o", output, "-"))

    def windows(self):
        """Titles of the ordinary windows that cover a whole display."""
        def walk(node):
            if node.get("fullscreen_mode") and node.get("app_id"):
                yield node["name"]
            for child in node.get("nodes", []) + node.get("floating_nodes", []):
                yield from walk(child)
        return list(walk(json.loads(self.run("swaymsg", "-r", "-t", "get_tree"))))
