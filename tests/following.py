"""A filter that has to follow the pictures under the running saver."""

import contextlib
import glob
import os
import re
import signal
import subprocess
import time

import live
import pngfile

FOUND = re.compile(rb"Spotlight found (\d+) images\.")


def thread_states(pid):
    """The state letter of each thread of a process, as the system gives it."""
    for path in glob.glob(f"/proc/{pid}/task/*/stat"):
        with contextlib.suppress(OSError):  # ended meanwhile
            with open(path, encoding="utf-8") as file:
                yield file.read().rpartition(") ")[2][0]


class FollowingCase(live.LiveCase):
    """A test in which pictures come to match; the saver's log says that they are found. Prints how
    long that took."""

    def setUp(self):
        super().setUp()
        self.pictures = os.path.join(self.home, "pictures")
        self.saver = None
        self.found = 0
        self.run_tool("defaults", "write", "FilterPredicate",
                      "kMDItemKeywords == 'beach' OR kMDItemFSName BEGINSWITH 'beach'")

    def begin(self, within=()):
        self.saver = self.start("window", "--size", "400x300", within=within)

    @staticmethod
    def tag(path):
        subprocess.run(["exiv2", "-q", "-M", "add Iptc.Application2.Keywords String beach", path],
                       check=True, timeout=live.LIMIT)

    def painted(self, name):
        path = os.path.join(self.home, name)
        with open(path, "wb") as file:
            file.write(pngfile.encode(60, 40, (10, 200, 90)))
        return path

    @staticmethod
    def stop(saver):
        """Returns when none of its threads runs; a signal alone leaves them a moment to go on."""
        saver.send_signal(signal.SIGSTOP)
        deadline = time.monotonic() + live.LIMIT
        while any(state != "T" for state in thread_states(saver.pid)):
            if time.monotonic() > deadline:
                raise TimeoutError("The saver does not stop.")
            os.sched_yield()

    def wait_for_more(self, what, count=1):
        begin = time.monotonic()
        self.found += count
        self.wait_until(self.saver, lambda: self.count_found() >= self.found, what)
        print(f"{what}: found after {time.monotonic() - begin:.2f} s")
        self.assertEqual(self.count_found(), self.found)

    def count_found(self):
        return sum(int(count) for count in FOUND.findall(self.saver.log))

    def end(self):
        self.saver.terminate()
        self.assertEqual(self.finish(self.saver), 0)
        self.assertEqual(self.count_found(), self.found)

    def add_one(self, name, what):
        path = self.painted("new.png")
        self.tag(path)
        os.rename(path, os.path.join(self.pictures, name))
        self.wait_for_more(what)
