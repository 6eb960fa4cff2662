#!/usr/bin/env python3
"""Changes pictures under the running saver, whose filter has to follow: python3 live_filter_test.py
--pelmora PATH"""

import glob
import os
import shutil
import signal

import following
import live

# How many events the system keeps for a program that does not read them.
with open("/proc/sys/fs/inotify/max_queued_events", encoding="ascii") as limit:
    EVENTS_AT_MOST = int(limit.read())


class LiveFilter(following.FollowingCase):
    def setUp(self):
        super().setUp()
        self.tag(os.path.join(self.pictures, "0.png"))
        self.begin()
        self.wait_for_more("what was there")

    def test_finds_what_is_added_retagged_or_moved_in(self):
        path = self.painted("new.png")
        self.tag(path)
        shutil.copyfile(path, os.path.join(self.pictures, "copied.png"))
        self.wait_for_more("a file that was copied in")
        self.tag(os.path.join(self.pictures, "1.png"))
        self.wait_for_more("a file that was tagged where it is")
        os.rename(path, os.path.join(self.pictures, "moved.png"))
        self.wait_for_more("a file that was moved in")
        os.rename(os.path.join(self.pictures, "2.png"), os.path.join(self.pictures, "beach.png"))
        self.wait_for_more("a file that was renamed")
        self.end()

    def test_finds_what_comes_while_more_changes_than_can_be_told(self):
        self.stop(self.saver)
        # The same event twice in a row counts as one.
        names = [os.path.join(self.pictures, name) for name in ("a.txt", "b.txt")]
        for _ in range(EVENTS_AT_MOST):
            for name in names:
                with open(name, "wb"):
                    pass
        for name in names:
            os.remove(name)
        self.tag(os.path.join(self.pictures, "3.png"))
        self.saver.send_signal(signal.SIGCONT)
        self.wait_for_more("a file that was tagged while events were lost")
        self.wait_until(self.saver, lambda: b"Too much has changed to be followed" in self.saver.log,
                        "the line that says that events were lost")
        self.add_one("later.png", "a file after that")
        self.end()

    def test_goes_on_when_the_index_is_deleted_under_it(self):
        for path in glob.glob(os.path.join(self.home, ".cache", "Pelmora", "Metadata.sqlite*")):
            os.remove(path)
        self.add_one("later.png", "a file after the index was deleted")
        self.tag(os.path.join(self.pictures, "4.png"))
        self.wait_for_more("a file that was tagged after that")
        self.end()


if __name__ == "__main__":
    live.main()
