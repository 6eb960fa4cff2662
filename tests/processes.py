"""What processes hold, as the kernel tells it."""

import collections
import contextlib
import os
import select
import statistics
import time

# How often tests of hosts start and end the saver; growth wants three times at least.
CYCLES = max(3, int(os.environ.get("PELMORA_CYCLES", "3")))

# Memory is given back late, and in pieces: less than this, or a twentieth, is no growth.
MOST_KIB = 8192
MOST_GROWTH = 0.05

COUNTED = ("descriptors", "threads", "children")
LIMIT = 5  # seconds in which a host lets go of what it held for the saver
Use = collections.namedtuple("Use", "kib descriptors threads children")


def status_of(process, *names):
    """Numbers of /proc/PID/status, 0 for a process that has gone."""
    try:
        with open(f"/proc/{process}/status", encoding="utf-8") as file:
            lines = dict(line.split(":", 1) for line in file)
    except OSError:
        return [0] * len(names)
    return [int(lines.get(name, "0").split()[0]) for name in names]


def descriptors_of(process):
    try:
        return len(os.listdir(f"/proc/{process}/fd"))
    except OSError:
        return 0


def children_of(process):
    """The processes that it started and that are not waited for."""
    found = []
    with contextlib.suppress(FileNotFoundError):  # the process has gone
        for thread in os.listdir(f"/proc/{process}/task"):
            with (contextlib.suppress(OSError),  # the thread has
                  open(f"/proc/{process}/task/{thread}/children", encoding="utf-8") as file):
                found += file.read().split()
    return found


def of_home(home):
    """The processes that have this home, whatever they run and whoever started them."""
    found = {}
    for name in filter(str.isdigit, os.listdir("/proc")):
        with (contextlib.suppress(OSError), open(f"/proc/{name}/environ", "rb") as environment,
              open(f"/proc/{name}/cmdline", "rb") as words):
            if f"HOME={home}".encode() in environment.read().split(b"\0"):
                found[int(name)] = words.read().replace(b"\0", b" ").decode(errors="replace")
    return found


def use_of(process):
    kib, threads = status_of(process, "VmRSS", "Threads")
    return Use(kib, descriptors_of(process), threads, len(children_of(process)))


def has_grown(before, after):
    """Whether memory has, by the medians of two stretches of time, in KiB."""
    return after - before > max(MOST_KIB, before * MOST_GROWTH)


def is_more(use, others):
    """Than there ever was."""
    return any(getattr(use, name) > max(getattr(other, name) for other in others)
               for name in COUNTED)


def keeps_growing(numbers):
    """Whether they end above the first and set new records on the way, more than once. Once is what
    a host may keep for itself, such as another buffer when frames pile up."""
    records = sum(number > max(numbers[:i]) for i, number in enumerate(numbers) if i > 0)
    return numbers[-1] > numbers[0] and records > 1


def growths(uses):
    """What a process holds more and more of, from one of many times to the next: a line each."""
    for name in COUNTED:
        numbers = [getattr(use, name) for use in uses]
        if keeps_growing(numbers):
            yield f"{name}: {numbers}"
    third = len(uses) // 3
    memory = [use.kib for use in uses]
    if has_grown(statistics.median(memory[-2 * third:-third]), statistics.median(memory[-third:])):
        yield f"KiB: {memory}"


class Cycles:
    """A host that starts and ends the saver again and again, and what it holds after each time."""

    def __init__(self, name, process):
        self._name, self._process, self._uses = name, process, []

    def __iter__(self):
        for _ in range(CYCLES):
            yield
            self._uses.append(self._use_at_rest())

    def _use_at_rest(self):
        """Hosts let go of a saver's things in their own time."""
        deadline = time.monotonic() + LIMIT
        use = use_of(self._process)
        while self._uses and is_more(use, self._uses) and time.monotonic() < deadline:
            select.select([], [], [], 0.05)
            use = use_of(self._process)
        return use

    def judge(self, test):
        test.assertEqual(list(growths(self._uses)), [], self._name)
        first, last = self._uses[0], self._uses[-1]
        print(f"{self._name}, {len(self._uses)} times: {last.descriptors} descriptors,"
              f" {last.threads} threads, {last.children} children,"
              f" {first.kib} KiB after the first and {last.kib} KiB after the last")
