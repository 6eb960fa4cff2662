#!/usr/bin/env python3
"""Kills the saver and the commands that write preferences at random moments:
python3 kill_test.py --pelmora PATH"""

import contextlib
import os
import random
import subprocess
import time

import faulting
import live

KILLS = 100
LATEST = 5  # seconds after the start
STEP = 1.1  # by which the latest moment follows how quick the machine is just now
GONE_LIMIT = 10  # seconds, until a dead saver's helpers have gone


def described(pids):
    lines = []
    for pid in pids:
        with contextlib.suppress(OSError):
            with open(f"/proc/{pid}/cmdline", "rb") as file:
                lines.append(file.read())
    return lines


class Kill(faulting.FaultCase):
    def setUp(self):
        super().setUp()
        faulting.become_reaper()
        self.others = set(faulting.children())
        for number in range(20):
            self.add_folder("pictures", f"folder {number}")

    def popen(self, *words):
        return subprocess.Popen([self.program, *words], env=self.env, stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL)

    def reap(self):
        """Waits until no process of a dead saver is left."""
        deadline = time.monotonic() + GONE_LIMIT
        while left := set(faulting.children()) - self.others:
            for pid in left:
                try:
                    os.waitpid(pid, os.WNOHANG)
                except ChildProcessError:
                    pass
            self.assertLess(time.monotonic(), deadline, f"of a dead saver stay {described(left)}")
            time.sleep(0.01)

    def test_leaves_whole_files_whenever_it_is_killed(self):
        seed = int(os.environ.get("PELMORA_KILL_SEED", "1"))
        rng = random.Random(seed)
        # As long as it takes until pictures are shown, and half as long again; and so much longer as
        # it takes more often than not just now.
        self.begin()
        self.wait_for_first_picture()
        least = latest = min(1.5 * (time.monotonic() - self.began), LATEST)
        self.end()
        shown = 0
        self.run_tool("defaults", "write", "NumImages", "5")
        for number in range(KILLS):
            with contextlib.suppress(FileNotFoundError):
                os.remove(self.display_list())
            saver = self.popen("window", "--size", "300x200")
            writer = self.popen("defaults", "write", "NumImages", str(5 + number % 5))
            saver_ends, writer_ends = rng.random() * latest, rng.uniform(0, 0.3)
            time.sleep(min(saver_ends, writer_ends))
            (writer if writer_ends < saver_ends else saver).kill()
            time.sleep(abs(saver_ends - writer_ends))
            for process in (saver, writer):
                process.kill()
                process.wait()
            with self.subTest(kill=number, after=saver_ends, seed=seed):
                self.assert_files_are_whole(written=())
                self.assertIn(self.preferences()["NumImages"], range(5, 10))
            if self.time_of_list() != 0 and os.path.getsize(self.display_list()) > 0:
                shown += 1
                latest = max(latest / STEP, least)
            else:
                latest = min(latest * STEP, LATEST)
        self.reap()
        self.assertGreater(shown, KILLS / 10)
        print(f"{KILLS} kills, {shown} while pictures were shown")
        self.run_tool("defaults", "write", "NumImages", "6")
        self.begin()
        self.wait_for_first_picture()
        self.wait_for_cards()
        self.end()
        self.assert_files_are_whole()
        self.assert_nothing_is_left_over()


if __name__ == "__main__":
    live.main()
