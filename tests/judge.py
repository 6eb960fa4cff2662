"""What tests of the whole program share: a home for each test, and comparing listings."""

import argparse
import math
import re
import sys
import unittest

from predict import Preferences, Saver
from saver_home import SaverHome, use_time_zone

TOLERANCE = 1e-6
START = "2026-11-21T12:00:00"  # a Saturday
SIZE = (640, 360)

LOGGED = re.compile(
    r"(Pelmora: Giving up on folder|Pelmora: With random number|A new day has dawned).*")


class JudgedCase(unittest.TestCase):
    """A test with a home of its own. `compared` counts the values that were found right."""

    program = None
    compared = 0

    def setUp(self):
        self.home = SaverHome(self.program)
        self.addCleanup(self.home.close)

    def run_well(self, *arguments, environment=None):
        finished = self.home.run(*arguments, environment=environment)
        said = finished.stderr.decode(errors="replace")
        self.assertEqual(finished.returncode, 0, f"{arguments}: {said}")
        return finished

    def render(self, *arguments):
        """Runs `render` with a listing; the lines of its log that can be foretold."""
        finished = self.run_well("render", "--layers", self.home.path("out", "layers.json"),
                                 "--verbose", *arguments)
        lines = finished.stderr.decode(errors="replace").split("\n")
        return [found.group() for found in map(LOGGED.search, lines) if found]

    def judge(self, *, at=2.0, start=START, displays=(SIZE,), preview=None, geometry=None,
              cache=None, arguments=()):
        """Renders what the home's preferences ask for and compares it with the prediction."""
        saver = Saver(Preferences.read(self.home.preferences_path), start, displays, preview, cache,
                      at)
        log = self.render("--start", start, "--at", repr(at),
                          *(geometry or self._geometry(displays, preview)), *arguments)
        self.compare(saver.describe(), self.home.read_layers(), "listing")
        self.assertEqual(log, saver.source_list.log)
        return saver

    @staticmethod
    def _geometry(displays, preview):
        if preview:
            return ["--preview", "--size", "{}x{}".format(*preview)]
        if len(displays) == 1:
            return ["--size", "{}x{}".format(*displays[0])]
        left, frames = 0, []
        for width, height in displays:
            frames.append(f"{width}x{height}+{left}+0")
            left += width
        return ["--displays", ",".join(frames)]

    def compare(self, expected, found, where):
        """Every value of `expected` against `found`: numbers closely, all else exactly."""
        if isinstance(expected, dict):
            self.assertIsInstance(found, dict, where)
            self.assertEqual(sorted(expected), sorted(found), where)
            for key, value in expected.items():
                self.compare(value, found[key], f"{where}.{key}")
        elif isinstance(expected, (list, tuple)):
            self.assertIsInstance(found, list, where)
            self.assertEqual(len(expected), len(found), f"{where}: {found}")
            for i, value in enumerate(expected):
                self.compare(value, found[i], f"{where}[{i}]")
        elif isinstance(expected, (int, float)) and not isinstance(expected, bool):
            self.assertTrue(math.isclose(expected, found, rel_tol=0, abs_tol=TOLERANCE),
                            f"{where} is {found!r}, foretold {expected!r}")
            JudgedCase.compared += 1
        else:
            self.assertEqual(expected, found, where)
            JudgedCase.compared += 1


def main():
    """Runs the calling script's tests against the program that `--pelmora` names."""
    parser = argparse.ArgumentParser()
    parser.add_argument("--pelmora", required=True, help="the program to judge")
    options, others = parser.parse_known_args()
    JudgedCase.program = options.pelmora
    use_time_zone()
    outcome = unittest.main(module="__main__", argv=[sys.argv[0], "--verbose", *others],
                            exit=False).result
    print(f"{outcome.testsRun} tests, {JudgedCase.compared} foretold values found right")
    sys.exit(0 if outcome.wasSuccessful() and outcome.testsRun else 1)
