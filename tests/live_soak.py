#!/usr/bin/env python3
"""Lets the saver run in a window of a virtual X display for long, looks every minute at what it
holds, and ends with a table and a verdict: python3 live_soak.py --pelmora PATH --minutes 120
With --gl-counts LIBRARY, the graphics processor draws, and its objects are counted."""

import argparse
import collections
import os
import shutil
import signal
import statistics
import struct
import subprocess
import sys
import tempfile
import time

import live
import processes

SIZE = "1280x720"
PICTURES = 10_000
IN_A_FOLDER = 50
FILTER = "kMDItemFSName CONTAINS '1'"  # of the numbers, about a third
LOOK = 0.25  # seconds between two looks at whether the saver draws
# A frame wakes the thread that presents at least once, and an entrance has sixty a second.
AT_REST = 2  # wake-ups of that thread between two looks, at most

# The entrance of a card takes a second or two of the four and a half from card to card.
LEAST_REST = 0.4  # of all looks

Sample = collections.namedtuple(
    "Sample", "seconds rss descriptors threads helper_rss helper_descriptors switches processor rest"
              " textures buffers")


def processor_of(process):
    """The processor time that all its threads took, in seconds."""
    with open(f"/proc/{process}/stat", encoding="utf-8") as file:
        fields = file.read().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def switches_of(process):
    """How often all its threads went to sleep by themselves."""
    return sum(processes.status_of(f"{process}/task/{thread}", "voluntary_ctxt_switches")[0]
               for thread in os.listdir(f"/proc/{process}/task"))


def make_pictures(program, env, folder):
    """A tree of hard links to a few real photographs."""
    subprocess.run([program, "render", "--samples", "--out", os.path.join(env["HOME"], "one.png")],
                   env={**env, "QT_QPA_PLATFORM": "offscreen"}, check=True, timeout=live.LIMIT * 3,
                   stderr=subprocess.DEVNULL)
    samples = os.path.join(env["HOME"], ".cache", "Pelmora", "Sample Pictures")
    originals = [os.path.join(samples, name) for name in sorted(os.listdir(samples))
                 if name.endswith(".jpg")]
    for number in range(PICTURES):
        place = os.path.join(folder, f"folder {number // IN_A_FOLDER}")
        os.makedirs(place, exist_ok=True)
        original = originals[number * 7 % len(originals)]
        os.link(original, os.path.join(place, f"{number} {os.path.basename(original)}"))


class GlCounts:
    """How many objects the saver holds in the graphics processor, told by a library in it."""

    def __init__(self, library, env):
        self._path = os.path.join(env["HOME"], "gl-counts")
        with open(self._path, "wb"):
            pass
        # By EGL, for the other way round the library is not asked.
        env.update(LD_PRELOAD=library, PELMORA_TEST_GL_COUNTS=self._path,
                   QT_XCB_GL_INTEGRATION="xcb_egl")

    def now(self):
        """Textures, and buffers of all kinds."""
        with open(self._path, "rb") as file:
            textures, *buffers = struct.unpack("=4q", file.read() or bytes(32))
        return textures, sum(buffers)


class NoGlCounts:
    def now(self):
        return 0, 0


def take_sample(saver, started, looks, gl_counts):
    rss, threads = processes.status_of(saver.pid, "VmRSS", "Threads")
    helpers = processes.children_of(saver.pid)
    return Sample(time.monotonic() - started, rss, processes.descriptors_of(saver.pid), threads,
                  sum(processes.status_of(helper, "VmRSS")[0] for helper in helpers),
                  sum(processes.descriptors_of(helper) for helper in helpers), switches_of(saver.pid),
                  processor_of(saver.pid), sum(looks) / len(looks) if looks else 0,
                  *gl_counts.now())


def watch(saver, minutes, gl_counts):
    """A sample a minute, until the time is over or the saver ends."""
    started = time.monotonic()
    samples, looks, switches = [], [], None
    while saver.poll() is None and time.monotonic() - started < minutes * 60 + 1:
        now, = processes.status_of(f"{saver.pid}/task/{saver.pid}", "voluntary_ctxt_switches")
        if switches is not None:
            looks.append(now - switches <= AT_REST)
        switches = now
        if time.monotonic() - started >= (len(samples) + 1) * 60:
            samples.append(take_sample(saver, started, looks, gl_counts))
            looks.clear()
            print_row(samples[-1], samples[-2] if len(samples) > 1 else None)
        try:
            saver.wait(LOOK)
        except subprocess.TimeoutExpired:
            pass
    return samples


def print_row(sample, before):
    # The first minute's row is of all since the start.
    span = sample.seconds - before.seconds if before else sample.seconds
    switches = sample.switches - (before.switches if before else 0)
    processor = sample.processor - (before.processor if before else 0)
    print(f"{sample.seconds / 60:6.0f} {sample.rss:9d} {sample.descriptors:6d} {sample.threads:7d}"
          f" {sample.helper_rss:10d} {sample.helper_descriptors:8d} {switches / span:10.1f}"
          f" {processor / span:9.3f} {sample.rest:7.2f} {sample.textures:8d} {sample.buffers:7d}",
          flush=True)


def growths(samples):
    """What grew from the second third to the last by more than it may: a line each."""
    third = len(samples) // 3
    middle, last = samples[third:2 * third], samples[2 * third:]

    def both(name):
        return [statistics.median(getattr(sample, name) for sample in part)
                for part in (middle, last)]

    for name, what in (("rss", "memory"), ("helper_rss", "memory of the helpers")):
        before, after = both(name)
        if processes.has_grown(before, after):
            yield f"{what} grew from {before:.0f} to {after:.0f} KiB"
    for name in ("descriptors", "threads", "helper_descriptors", "textures", "buffers"):
        before, after = both(name)
        if after > before:
            yield f"{name} grew from {before:g} to {after:g}"
    rest = statistics.median(sample.rest for sample in samples)
    if rest < LEAST_REST:
        yield f"it draws while nothing moves: at rest in {rest:.2f} of the looks alone"


def run(program, minutes, gl_library):
    home = tempfile.mkdtemp()
    display = live.VirtualDisplay(SIZE)
    saver = None
    try:
        env = {"PATH": os.environ["PATH"], "HOME": home, "DISPLAY": display.name, "TZ": "UTC",
               "QT_QPA_PLATFORM": "xcb",
               # The bus's thread is there, as it is for users, and finds nobody.
               "DBUS_SESSION_BUS_ADDRESS": "unix:path=" + os.path.join(home, "no bus")}
        pictures = os.path.join(home, "pictures")
        os.makedirs(pictures)
        make_pictures(program, env, pictures)
        subprocess.run([program, "sources", "add", pictures], env=env, check=True,
                       timeout=live.LIMIT)
        subprocess.run([program, "defaults", "write", "FilterPredicate", FILTER], env=env,
                       check=True, timeout=live.LIMIT)
        gl_counts = GlCounts(gl_library, env) if gl_library else NoGlCounts()
        renderer = "gpu" if gl_library else "software"
        print("minute  KiB RSS  files threads helper KiB    files switches/s processor at rest"
              " textures buffers", flush=True)
        with open(os.path.join(home, "log"), "wb") as log:
            saver = subprocess.Popen([program, "window", "--size", SIZE, "--renderer", renderer,
                                      "--verbose"], env=env, stderr=log)
            samples = watch(saver, minutes, gl_counts)
            if saver.poll() is not None:
                return [f"the saver ended by itself with status {saver.returncode}"]
            problems = list(growths(samples))
            if gl_library and samples[-1].textures == 0:
                problems.append("no texture was counted")
            if display.lit(0, 0, 1280, 720) < 0.05:
                problems.append("nothing is on the display")
            saver.send_signal(signal.SIGTERM)
            if saver.wait(live.LIMIT) != 0:
                problems.append(f"the saver ended with status {saver.returncode}")
        with open(os.path.join(home, "log"), encoding="utf-8", errors="replace") as log:
            text = log.read()
        problems += [line for line in text.splitlines() if "Cannot show" in line][:5]
        return problems
    finally:
        if saver is not None and saver.poll() is None:
            saver.kill()
            saver.wait()
        display.close()
        shutil.rmtree(home)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--pelmora", required=True, help="the saver to run")
    parser.add_argument("--minutes", type=float, default=120, help="for how long (default 120)")
    parser.add_argument("--gl-counts", metavar="LIBRARY",
                        help="draw by the graphics processor, and count its objects by this")
    options = parser.parse_args()
    if not options.minutes >= 9:
        parser.error("--minutes: a verdict wants nine minutes at least")
    problems = run(os.path.abspath(options.pelmora), options.minutes,
                   options.gl_counts and os.path.abspath(options.gl_counts))
    for problem in problems:
        print(f"FAILED: {problem}")
    print("verdict: " + ("FAILED" if problems else "flat"))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
