#!/usr/bin/env python3
"""Looks at the memory of the running saver and of its helpers: python3 memory_test.py --pelmora PATH"""

import contextlib
import glob
import os

import faulting
import live


def descendants(pid):
    """The process and those that its threads have started."""
    yield pid
    for path in glob.glob(f"/proc/{pid}/task/*/children"):
        with contextlib.suppress(OSError):  # the thread has ended
            with open(path, encoding="ascii") as file:
                for child in file.read().split():
                    yield from descendants(int(child))


def program_of(pid):
    return os.path.basename(os.readlink(f"/proc/{pid}/exe"))


class Memory(faulting.FaultCase):
    # Of what is in the files, which only the inspector opens.
    filter = "kMDItemKeywords != 'nothing'"

    def look_at(self, pid):
        with open(f"/proc/{pid}/maps", encoding="utf-8", errors="replace") as file:
            for line in file:
                rights = line.split()[1]
                self.assertFalse("w" in rights and "x" in rights, f"{program_of(pid)}: {line}")

    def test_has_none_that_can_be_both_written_and_executed(self):
        self.begin()
        self.wait_for_first_picture()
        seen = set()
        for _ in range(3):
            self.wait_for_cards()
            for pid in descendants(self.saver.pid):
                with contextlib.suppress(FileNotFoundError, ProcessLookupError):  # has ended
                    self.look_at(pid)
                    seen.add(program_of(pid))
        print("looked at", ", ".join(sorted(seen)))
        self.assertLessEqual({"pelmora", "pelmora-decoder", "pelmora-inspector"}, seen)
        self.end()


if __name__ == "__main__":
    live.main()
