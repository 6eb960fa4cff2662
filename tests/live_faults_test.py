#!/usr/bin/env python3
"""Takes from the running saver what its filter needs of the system, as `unshare` allows it:
python3 live_faults_test.py --pelmora PATH"""

import os

import following
import live

PICTURES = 150
# The saver's own view of the system: with these limits, and nobody else.
FEW_WATCHES = ("unshare", "--user", "--map-root-user", "sh", "-c",
               'echo 100 >/proc/sys/user/max_inotify_watches && exec "$@"', "sh")
SMALL_DISK = ("unshare", "--user", "--map-root-user", "--mount", "sh", "-c",
              'mkdir -p "$HOME/.cache" && mount -t tmpfs -o size=512k none "$HOME/.cache" &&'
              ' exec "$@"', "sh")


class LiveFaults(following.FollowingCase):
    def make_folders(self, count):
        for number in range(count):
            os.mkdir(os.path.join(self.pictures, f"folder {number}"))
            self.add(f"folder {number}/beach {number}.png")

    def add(self, name):
        os.rename(self.painted("new.png"), os.path.join(self.pictures, name))

    def test_finds_what_comes_into_folders_that_cannot_be_watched(self):
        self.make_folders(PICTURES)
        self.begin(within=FEW_WATCHES)
        self.wait_for_more("what was there", PICTURES)
        self.assertEqual(self.saver.log.count(b"Some folders cannot be watched"), 1)
        for number in (0, PICTURES // 2, PICTURES - 1):
            self.add(f"folder {number}/beach again.png")
            self.wait_for_more(f"a file in folder {number}")
        self.end()

    def test_finds_everything_though_the_disk_is_full(self):
        self.make_folders(PICTURES)
        self.begin(within=SMALL_DISK)
        self.wait_for_more("what was there", PICTURES)
        self.assertIn(b"the index of metadata is kept in memory", self.saver.log)
        self.add_one("later.png", "a file after that")
        self.end()


if __name__ == "__main__":
    live.main()
