"""Music players beside the running saver, on a bus of their own, and the label on the screen."""

import os
import shutil
import subprocess
import tempfile

import live
import pngfile

SIZE = (600, 400)
# The label's orange, four fifths of it over black: blue, green, red.
ORANGE = (0, 102, 204)
ROUNDING = 2


class PlayersCase(live.LiveCase):
    """A test whose pictures are black, so that the label is all that is to be seen."""

    def setUp(self):
        super().setUp()
        # Some players do not run as root, as whom the tests may run: for another user too.
        self.shared = tempfile.mkdtemp(dir="/tmp")
        self.addCleanup(shutil.rmtree, self.shared)
        os.chmod(self.shared, 0o755)
        self.make_bus()
        pictures = os.path.join(self.home, "pictures")
        for name in os.listdir(pictures):
            with open(os.path.join(pictures, name), "wb") as file:
                file.write(pngfile.encode(60, 40, (0, 0, 0)))
        for key, value in (("ShowiTunesTrack", "1"), ("iTunesTrackType", "0"), ("UsePolaroid", "0")):
            self.run_tool("defaults", "write", key, value)

    def make_bus(self):
        config = os.path.join(os.path.dirname(os.path.abspath(__file__)), "dbus-session.conf")
        bus = subprocess.Popen(["dbus-daemon", f"--config-file={config}", "--nofork",
                                f"--address=unix:path={self.shared}/bus", "--print-address"],
                               env=self.env, stdout=subprocess.PIPE)
        self.addCleanup(bus.wait)
        self.addCleanup(bus.kill)
        self.addCleanup(bus.stdout.close)
        self.env["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()

    def begin(self):
        saver = self.start("window", "--size", "{}x{}".format(*SIZE))
        self.wait_until(saver, lambda: b"caching folder" in saver.log, "the walk")
        return saver

    def label_width(self):
        """Of the widest row of the label's background, or 0."""
        oranges = [all(abs(found - wanted) <= ROUNDING for found, wanted in zip(colour, ORANGE))
                   for colour in self.display.pixels(0, 0, *SIZE)]
        rows = (oranges[i:i + SIZE[0]] for i in range(0, len(oranges), SIZE[0]))
        return max((SIZE[0] - row.index(True) - row[::-1].index(True) for row in rows if True in row),
                   default=0)

    def wait_for_label(self, saver, condition, what):
        self.wait_until(saver, lambda: condition(self.label_width()), what)
        return self.label_width()
