#!/usr/bin/env python3
"""Whether shells complete what the program understands: python3 completions_test.py --pelmora PATH"""

import os
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

from program_help import Help

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
COMPLETIONS = os.path.join(ROOT, "data", "completions")
BASH, ZSH, FISH = (os.path.join(COMPLETIONS, name)
                   for name in ("pelmora.bash", "_pelmora", "pelmora.fish"))


class Shells(unittest.TestCase):
    pelmora = None

    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        os.makedirs(os.path.join(self.folder, "Photos", "Trip 1"))
        for name in ("one picture.jpg", "two.jpg"):
            with open(os.path.join(self.folder, "Photos", name), "w", encoding="utf-8"):
                pass
        self.help = Help(self.pelmora)

    def run_shell(self, *words):
        environment = {"PATH": os.environ["PATH"], "HOME": self.folder, "LC_ALL": "C.UTF-8"}
        done = subprocess.run(words, cwd=self.folder, env=environment, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=60)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def bash(self, *words):
        """What bash makes of the last word, which may be empty."""
        line = ["pelmora", *words]
        script = (f". {shlex.quote(BASH)}; COMP_WORDS=({shlex.join(line)}); "
                  f"COMP_CWORD={len(line) - 1}; _pelmora; printf '%s\\n' \"${{COMPREPLY[@]}}\"; "
                  "complete -p pelmora >/dev/null")
        return set(filter(None, self.run_shell("bash", "--norc", "-c", script).split("\n")))

    def fish(self, line):
        script = f"source {shlex.quote(FISH)}; complete -C {shlex.quote(line)}"
        told = self.run_shell("fish", "--no-config", "-c", script)
        return {entry.split("\t")[0] for entry in told.splitlines()}

    def zsh(self, *words):
        """What is handed to zsh's own functions, which need a terminal to do more."""
        script = ('_arguments() { print -rl -- "$@" }; _describe() { print -rl -- ${(P)2} }; '
                  f"words=({shlex.join(['pelmora', *words])}); CURRENT=$#words; . {shlex.quote(ZSH)}")
        return self.run_shell("zsh", "-f", "-c", script).splitlines()

    def test_understand_their_files(self):
        self.run_shell("bash", "-n", BASH)
        self.run_shell("zsh", "-f", "-n", ZSH)
        self.run_shell("fish", "--no-config", "-n", FISH)

    def test_know_every_command_and_no_other(self):
        commands = set(self.help.commands)
        self.assertEqual(self.bash(""), commands)
        self.assertEqual(self.fish("pelmora "), commands)
        self.assertEqual({command for command in commands if command.startswith("s")}, self.bash("s"))
        with open(ZSH, encoding="utf-8") as file:
            text = file.read()
        script = text[:text.rindex("\n_pelmora \"$@\"")] + "\n_pelmora_commands"
        told = self.run_shell("zsh", "-f", "-c", "_describe() { print -rl -- ${(P)2} }; " + script)
        self.assertEqual({line.split(":")[0] for line in told.splitlines()}, commands)

    def test_know_every_option_and_no_other(self):
        for command, options in self.help.options.items():
            with self.subTest(command):
                words, names = [command] if command else [], set(options)
                self.assertEqual(self.bash(*words, "-"), names)
                line = "".join(f"{word} " for word in ["pelmora", *words])
                self.assertEqual(self.fish(line + "-") | self.fish(line + "--"), names)
                told = [spec for spec in self.zsh(*words, "-") if spec.startswith("-")]
                self.assertEqual({spec.split("[")[0] for spec in told}, names)
                for spec in told:
                    takes_value = "]:" in spec
                    self.assertEqual(takes_value, bool(options[spec.split("[")[0]]), spec)

    def test_know_the_preferences(self):
        keys = set(self.help.keys())
        self.assertEqual(self.bash("defaults", "write", ""), keys)
        self.assertEqual(self.fish("pelmora defaults write "), keys)
        with open(ZSH, encoding="utf-8") as file:
            self.assertLessEqual(keys, {line.strip(" '").split(":")[0] for line in file})

    def test_know_what_options_can_be(self):
        self.assertEqual(self.bash("--renderer", ""), {"auto", "gpu", "software"})
        self.assertEqual(self.bash("window", "--size", "1x1", "--renderer", "s"), {"software"})
        self.assertEqual(self.fish("pelmora window --renderer s"), {"software"})
        self.assertEqual(self.bash("sources", "add", "--days", "sat,s"), {"sat,sun", "sat,sat"})
        self.assertEqual(self.bash("render", "--at", ""), set())

    def test_complete_files_and_folders(self):
        self.assertEqual(self.bash("check", "Photos/o"), {"Photos/one picture.jpg"})
        self.assertEqual(self.bash("render", "--out", "Photos/t"), {"Photos/two.jpg"})
        self.assertEqual(self.bash("check", "--out", "Photos/"), {"Photos/Trip 1"})
        self.assertEqual(self.bash("sources", "add", "--chance", "5", "Photos/"), {"Photos/Trip 1"})
        self.assertEqual(self.bash("match", "kMDItemCity == 'Oslo'", "Ph"), {"Photos"})
        self.assertEqual(self.fish("pelmora sources add Ph"), {"Photos/"})

    def test_tell_the_words_of_commands(self):
        for command, verbs in (("sources", {"list", "add", "remove"}),
                               ("defaults", {"read", "write", "delete"})):
            self.assertEqual(self.bash(command, ""), verbs)
            self.assertEqual(self.fish(f"pelmora {command} "), verbs)


if __name__ == "__main__":
    place = sys.argv.index("--pelmora")
    Shells.pelmora = sys.argv[place + 1]
    del sys.argv[place:place + 2]
    unittest.main(verbosity=2)
