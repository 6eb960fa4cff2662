#!/usr/bin/env python3
"""Whether the manual says what the program does: python3 manual_test.py --pelmora PATH"""

import os
import re
import subprocess
import sys
import unittest

from program_help import Help

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
MANUAL = os.path.join(ROOT, "man", "pelmora.1")
OPTION = re.compile(r"^\.It Fl (-?[0-9a-z-]+)(?: Ar (\S+))?$", re.MULTILINE)


def sections(text, macro):
    """The parts of a manual below each heading of a kind, by the heading."""
    parts = re.split(rf"^\.{macro} (.+)$", text, flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


class Manual(unittest.TestCase):
    pelmora = None
    maxDiff = None

    def setUp(self):
        with open(MANUAL, encoding="utf-8") as file:
            self.chapters = sections(file.read(), "Sh")
        self.commands = sections(self.chapters["COMMANDS"], "Ss")
        self.help = Help(self.pelmora)

    def test_tells_of_every_command_and_of_no_other(self):
        self.assertEqual(list(self.commands), self.help.commands)
        for command in self.help.commands:
            self.assertIn(f"\n.Cm {command}\n", self.chapters["SYNOPSIS"])

    def test_tells_of_every_option_and_of_no_other(self):
        parts = {"": self.chapters["OPTIONS"], **self.commands}
        for command, options in self.help.options.items():
            with self.subTest(command):
                told = {f"-{name}": argument or None
                        for name, argument in OPTION.findall(parts[command])}
                self.assertEqual(told, options)
                self.assertIn("--help", told)

    def test_tells_of_every_preference_and_of_no_other(self):
        keys = re.findall(r"^\.It Va (\w+)$", self.commands["defaults"], re.MULTILINE)
        self.assertEqual(keys, self.help.keys())

    def test_is_formatted_without_a_complaint(self):
        # With a language of its own, as what is not ASCII could be lost in others.
        done = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", MANUAL],
                              env={**os.environ, "LC_ALL": "C.UTF-8", "MANROFFSEQ": "", "MANWIDTH": "80"},
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, timeout=60)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertGreater(len(done.stdout), 10000)


if __name__ == "__main__":
    place = sys.argv.index("--pelmora")
    Manual.pelmora = sys.argv[place + 1]
    del sys.argv[place:place + 2]
    unittest.main(verbosity=2)
