#!/usr/bin/env python3
"""Leaves the saver few descriptors, little memory, no threads:
python3 limits_test.py --pelmora PATH [--sanitized]"""

import resource
import sys
import time

import faulting
import live

# With less than the toolkit needs, the saver ends, but in an orderly way.
TOO_FEW_DESCRIPTORS = (8, 16, 24, 39)
ENOUGH_DESCRIPTORS = (40, 64, 100_000)
MEGABYTES = (60, 120, 200, 300, 450, 700, 1000)
# With less, a library that is refused memory or threads may end the process by a signal, or wait for
# ever. Files stay whole.
FEWEST_MEGABYTES = 700
PATIENCE = 8  # seconds, for a saver that need not come to an end
MANY_PICTURES = 150
# What a saver says that waits for better times.
WAITS = (b"Nothing can be searched for now", b"No picture can be loaded for now")


def limited(option, number):
    return faulting.in_shell(f"ulimit -{option} {number}", namespace=False)


class Limits(faulting.FaultCase):
    sanitized = False

    def setUp(self):
        super().setUp()
        self.add_folder("pictures", "more", count=MANY_PICTURES)

    def has_said(self, *lines):
        return any(line in self.saver.log for line in lines)

    def show_or_fail(self, within):
        """Whether it shows pictures. If not, it may have failed in whatever way; then it is killed."""
        self.begin(within=within)
        deadline = time.monotonic() + PATIENCE
        while self.saver.poll() is None and not self.has_said(faulting.FIRST_PICTURE):
            if time.monotonic() > deadline:
                break
            self.read_log(self.saver)
        self.saver.kill()
        self.finish(self.saver)
        return self.has_said(faulting.FIRST_PICTURE)

    def show_or_end(self, within):
        """Whether it shows pictures. If not, it has said why, and ended by itself or when asked."""
        self.begin(within=within)
        deadline = time.monotonic() + live.LIMIT
        while self.saver.poll() is None and not self.has_said(faulting.FIRST_PICTURE, *WAITS):
            self.assertLess(time.monotonic(), deadline, self.log())
            self.read_log(self.saver)
        if self.saver.poll() is None:
            self.end()
            return self.has_said(faulting.FIRST_PICTURE)
        status = self.finish(self.saver)
        self.assertEqual(status, 1, self.log())
        self.assertNotEqual(self.saver.log.strip(), b"")
        self.assert_no_crash()
        print("ended by itself:", self.saver.log.strip().splitlines()[-1].decode())
        return False

    def test_shows_pictures_with_few_descriptors_and_with_many(self):
        most = resource.getrlimit(resource.RLIMIT_NOFILE)[1]
        # A sanitizer takes some for itself, and finds faults where it gets none.
        for count in ENOUGH_DESCRIPTORS[1:] if self.sanitized else ENOUGH_DESCRIPTORS:
            with self.subTest(descriptors=count):
                count = min(count, most)  # to raise that is not for everyone
                self.begin(within=limited("n", count))
                self.wait_for_first_picture()
                self.wait_for_cards()
                self.end()
                self.assert_files_are_whole()

    def test_says_that_it_needs_more_descriptors(self):
        for count in TOO_FEW_DESCRIPTORS:
            with self.subTest(descriptors=count):
                self.assertFalse(self.show_or_end(limited("n", count)))
                self.assert_said_once(b"files may be open")
                self.assert_files_are_whole(written=())

    def test_shows_pictures_or_ends_in_order_with_little_memory(self):
        if self.sanitized:
            return  # a sanitizer takes terabytes of addresses
        shown = []
        for megabytes in MEGABYTES:
            with self.subTest(megabytes=megabytes):
                show = self.show_or_end if megabytes >= FEWEST_MEGABYTES else self.show_or_fail
                shown.append(show(limited("v", megabytes * 1024)))
                print(f"{megabytes} MB:", shown[-1])
                self.assert_files_are_whole(written=())
        self.assertTrue(shown[-1], "with the most")

    def test_shows_pictures_again_when_its_decoder_can_start_again(self):
        if self.sanitized:
            return  # a sanitizer needs descriptors too
        self.begin()
        self.wait_for_first_picture()
        # Of descriptors, it has those that are open and no other.
        before = resource.prlimit(self.saver.pid, resource.RLIMIT_NOFILE)
        resource.prlimit(self.saver.pid, resource.RLIMIT_NOFILE, (3, before[1]))
        self.wait_for_line(b"No picture can be loaded for now", "word of the obstacle")
        resource.prlimit(self.saver.pid, resource.RLIMIT_NOFILE, before)
        self.wait_for_cards(3)
        self.end()
        self.assertEqual(self.saver.log.count(b"No picture can be loaded for now"), 1, self.log())
        self.assertNotIn(b"Giving up on folder", self.saver.log)


if __name__ == "__main__":
    if "--sanitized" in sys.argv:
        sys.argv.remove("--sanitized")
        Limits.sanitized = True
    live.main()
