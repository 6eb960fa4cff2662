"""A Wayland compositor without a screen, to look at and to use, for tests of the running saver."""

import json
import os
import shutil
import signal
import subprocess
import tempfile
import time

LIMIT = 20  # seconds that anything may take
NOBODY = 65534
BAR = (255, 0, 255)  # the colour of the bar on each display

CONFIGURATION = """
output HEADLESS-1 resolution 800x600 position 0 0
output HEADLESS-2 resolution 1200x900 scale 2 position 800 0
seat * hide_cursor 0
bar {
  position top
  colors {
    background #ff00ff
    statusline #ff00ff
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

    def sharpest_edge(self):
        """The largest step of brightness between neighbours in a row."""
        green = self.data[1::3]
        return max(abs(green[i] - green[i + 1]) for i in range(len(green) - 1)
                   if (i + 1) % self.width)


class Compositor:
    """Two displays, the second twice as dense; a bar on each."""

    def __init__(self):
        self.runtime = tempfile.mkdtemp()
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
                 "WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1",
                 "WLR_RENDERER": "pixman", "WLR_HEADLESS_OUTPUTS": "2"})
        self.env = {"PATH": os.environ["PATH"], "XDG_RUNTIME_DIR": self.runtime}
        self.wait(lambda: self._find_sockets(), "a compositor")
        self.wait(lambda: all(self.shot(name).share(lambda colour: colour == BAR) > 0.01
                              for name in self.outputs()), "a bar on each display")

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
