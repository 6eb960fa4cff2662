#!/usr/bin/env python3
"""Takes the bus and the X server from the running saver, and sets its clock:
python3 session_test.py --pelmora PATH --clock LIBRARY"""

import argparse
import mmap
import os
import struct
import subprocess
import sys
import time

import faulting
import live
import processes

BUS = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "dbus-session.conf")
DAY = 86_400  # seconds


class Bus:
    def __init__(self, folder):
        reader, writer = os.pipe()
        self.daemon = subprocess.Popen(
            ["dbus-daemon", "--config-file", BUS, "--nofork", f"--print-address={writer}"],
            pass_fds=[writer], env={"PATH": os.environ["PATH"], "XDG_RUNTIME_DIR": folder})
        os.close(writer)
        with open(reader, "rb") as file:
            self.address = file.readline().decode().strip()

    def kill(self):
        self.daemon.kill()
        self.daemon.wait()


class SettableClock:
    """What the saver's clock is ahead of the real one, in a file that it maps."""

    def __init__(self, folder):
        self.path = os.path.join(folder, "clock")
        with open(self.path, "wb") as file:
            file.write(bytes(8))
        with open(self.path, "r+b") as file:
            self._bytes = mmap.mmap(file.fileno(), 8)

    def set_ahead(self, seconds):
        self._bytes[:8] = struct.pack("q", seconds)


class Session(faulting.FaultCase):
    clock = None

    def test_goes_on_without_a_bus(self):
        for address in ("", "unix:path=/nowhere", "nonsense", "unix:path=" + "x" * 5000):
            with self.subTest(address=address[:30]):
                self.env["DBUS_SESSION_BUS_ADDRESS"] = address
                self.begin()
                self.wait_for_first_picture()
                self.wait_for_cards()
                self.end()
                self.assert_said_once(b"There is no session bus", b"cannot be reached")
                self.assert_files_are_whole()
                self.assertEqual(processes.of_home(self.home), {})

    def test_goes_on_when_the_bus_dies(self):
        bus = Bus(self.home)
        self.addCleanup(bus.kill)
        self.env["DBUS_SESSION_BUS_ADDRESS"] = bus.address
        self.run_tool("defaults", "write", "ShowiTunesTrack", "1")
        self.begin()
        self.wait_for_first_picture()
        bus.kill()
        self.wait_for_line(b"The session's bus has gone", "word of the bus")
        self.wait_for_cards(4)
        self.end()
        self.assert_said_once(b"The session's bus")
        self.assert_files_are_whole()

    def test_ends_in_order_when_the_x_server_dies(self):
        self.begin()
        self.wait_for_first_picture()
        self.wait_for_cards()
        begin = time.monotonic()
        self.display.server.kill()
        status = self.finish(self.saver)
        print(f"the server died: ended after {time.monotonic() - begin:.2f} s")
        self.assertGreaterEqual(status, 0, self.log())
        self.assertLess(time.monotonic() - begin, faulting.ENDING_LIMIT)
        self.assertIn(b"Pelmora: Stopping animation for screen 1", self.saver.log)
        self.assert_no_crash()
        self.assert_files_are_whole()

    def test_ends_with_a_line_where_there_is_no_x_server(self):
        self.env["DISPLAY"] = ":9999"
        self.begin()
        status = self.finish(self.saver)
        self.assertEqual(status, 1, self.log())
        self.assert_said_once(b"display")
        self.assert_files_are_whole(written=())

    def test_goes_on_when_the_clock_is_set(self):
        clock = SettableClock(self.home)
        self.env["LD_PRELOAD"] = self.clock
        self.env["PELMORA_TEST_CLOCK"] = clock.path
        if "ASAN_OPTIONS" in self.env:
            self.env["ASAN_OPTIONS"] += ":verify_asan_link_order=0"
        clock.set_ahead(400 * DAY)
        told = subprocess.run(["date", "+%s"], capture_output=True, check=True,
                              env={**self.env, "ASAN_OPTIONS": "verify_asan_link_order=0:detect_leaks=0"})
        self.assertAlmostEqual(int(told.stdout), time.time() + 400 * DAY, delta=DAY)
        clock.set_ahead(0)
        self.begin()
        self.wait_for_first_picture()
        for ahead in (3600, -3600, 400 * DAY, -400 * DAY, -30 * 365 * DAY, 30 * 365 * DAY, 0):
            clock.set_ahead(ahead)
            began = time.monotonic()
            self.wait_for_cards(3)
            print(f"{ahead} s ahead: three cards in {time.monotonic() - began:.2f} s")
        self.end()
        del self.env["LD_PRELOAD"]
        self.assert_files_are_whole()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--clock", required=True, help="the library with the clock that can be set")
    options, others = parser.parse_known_args()
    Session.clock = os.path.abspath(options.clock)
    sys.argv[1:] = others
    live.main()


if __name__ == "__main__":
    main()
