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



# What is asked of the environment by name: directly, by a wrapper, or from a list of names.
ASKED = re.compile(r"""(?:\b(?:getenv|secure_getenv|qgetenv|qEnvironmentVariable\w*|environment|variable
                       |processEnvironment\(\)|absolutePath|baseFolder)\((?:environment,\s*)?
                       |\bkVariable\s*=\s*)"([A-Z_]+)\"""", re.VERBOSE)
LISTED = re.compile(r"for \(const char\* name : \{([^}]*)\}|\bkVariables\{([^}]*)\}")
# Those of the dynamic linker and of the sanitizers, which are handed on to children.
HANDED_ON = {"LD_LIBRARY_PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"}


def sections(text, macro):
    """The parts of a manual below each heading of a kind, by the heading."""
    parts = re.split(rf"^\.{macro} (.+)$", text, flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


def variables_in(source):
    lists = "".join(part for parts in LISTED.findall(source) for part in parts)
    return set(ASKED.findall(source)) | set(re.findall(r'"([A-Z_]+)"', lists))


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

    def test_tells_of_every_variable_that_is_read(self):
        asked = set()
        for folder, _, names in os.walk(os.path.join(ROOT, "src")):
            if os.path.basename(folder) in ("tests", "fuzz"):
                continue
            for name in names:
                if name.endswith((".cpp", ".h")):
                    with open(os.path.join(folder, name), encoding="utf-8") as file:
                        asked |= variables_in(file.read())
        # One of each way to ask, lest the search misses some.
        self.assertLessEqual({"PATH", "HOME", "XDG_CACHE_HOME", "DISPLAY", "WAYLAND_SOCKET",
                              "DBUS_SYSTEM_BUS_ADDRESS", "LC_TIME", "ASAN_OPTIONS"}, asked)
        told = set(re.findall(r"\bEv ([A-Z_]+)", "\n".join(
            re.findall(r"^\.It (.*)$", self.chapters["ENVIRONMENT"], re.MULTILINE))))
        self.assertLessEqual(asked - HANDED_ON, told)

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
