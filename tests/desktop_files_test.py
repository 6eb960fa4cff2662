#!/usr/bin/env python3
"""Whether the desktop takes what is installed for it: python3 desktop_files_test.py --pelmora PATH"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

import pngfile
from program_help import Help

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
DATA = os.path.join(ROOT, "data")
METAINFO = os.path.join(DATA, "pelmora.metainfo.xml")
ENTRY = os.path.join(DATA, "pelmora-settings.desktop")
AUTOSTART = os.path.join(DATA, "pelmora-idle.desktop")
UNIT = os.path.join(DATA, "pelmora-idle.service")
HACK = os.path.join(DATA, "pelmora.xml")
HOSTED = os.path.join(DATA, "screensavers", "pelmora.desktop.in")
LANGUAGES = {name[len("pelmora_"):-len(".ts")]
             for name in os.listdir(os.path.join(ROOT, "translations"))}

# What is known to be missing: nothing has been settled yet about what may be done with the texts, and
# the project has no name on the net. Newer versions of appstreamcli want more than older ones.
EXCEPTIONS = {"metadata-license-missing", "cid-desktopapp-is-not-rdns", "url-homepage-missing",
              "developer-info-missing"}
# Of the entry for MATE and Xfce, which look for this category; no menu has it.
ENTRY_EXCEPTIONS = {HOSTED: ["Screensaver"]}


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


class DesktopFiles(unittest.TestCase):
    pelmora = None

    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return path

    def test_entries_are_valid(self):
        found = [os.path.join(folder, name) for folder, _, names in os.walk(DATA)
                 for name in names if name.endswith((".desktop", ".desktop.in"))]
        self.assertEqual(sorted(found), sorted([ENTRY, AUTOSTART, HOSTED]))
        for entry in found:
            with self.subTest(entry):
                # As the build fills it in.
                path = self.write("pelmora.desktop",
                                  read(entry).replace("@hosted_program@", "/usr/bin/pelmora"))
                done = subprocess.run(["desktop-file-validate", path], capture_output=True, text=True,
                                      timeout=60)
                said = [re.sub(r'.*hint: value "(\w+);" for key "Categories" .* does not contain a'
                               r' registered main category.*', r"\1", line)
                        for line in (done.stdout + done.stderr).splitlines()]
                self.assertEqual((done.returncode, said), (0, ENTRY_EXCEPTIONS.get(entry, [])))

    def test_savers_description_names_options_that_there_are(self):
        root = xml.etree.ElementTree.parse(HACK).getroot()
        self.assertEqual((root.tag, root.get("name")), ("screensaver", "pelmora"))
        self.assertTrue(root.find("_description").text.strip())
        words = [value for element in root.iter() for name, value in element.items()
                 if name.startswith("arg")]
        options = Help(self.pelmora).options[""]
        self.assertIn("--root", words)
        for word in " ".join(words).split():
            if word.startswith("-"):
                self.assertIn(word, options)

    def test_unit_is_valid(self):
        tool = shutil.which("systemd-analyze")
        if not tool:
            self.skipTest("systemd-analyze is not there")
        text = read(UNIT)
        self.assertIn("\nExecStart=pelmora idle\n", text)
        # It wants to find the program, in the folders that systemd was built with.
        path = self.write("pelmora-idle.service",
                          text.replace("ExecStart=pelmora", f"ExecStart={self.pelmora}"))
        done = subprocess.run([tool, "verify", "--user", "--man=no", path], capture_output=True,
                              env={"PATH": os.environ["PATH"], "HOME": self.folder,
                                   "XDG_RUNTIME_DIR": self.folder}, text=True, timeout=60)
        self.assertEqual((done.returncode, done.stdout + done.stderr), (0, ""))

    def test_entries_speak_every_language_of_the_settings(self):
        self.assertGreaterEqual(len(LANGUAGES), 9)
        for key in ("GenericName", "Comment"):
            self.assertEqual(set(re.findall(rf"^{key}\[(\w+)\]=.", read(ENTRY), re.MULTILINE)),
                             LANGUAGES)
        actions = read(ENTRY).split("[Desktop Action ")[1:]
        self.assertEqual(len(actions), 1)
        for action in actions:
            self.assertEqual(set(re.findall(r"^Name\[(\w+)\]=.", action, re.MULTILINE)), LANGUAGES)

    def test_metainfo_has_no_fault_but_those_that_are_known(self):
        done = subprocess.run(["appstreamcli", "validate", "--no-net", "--format=yaml", METAINFO],
                              capture_output=True, text=True, timeout=60)
        found = re.findall(r"- tag: (\S+)\n\s+severity: (\S+)", done.stdout)
        self.assertIn("Passed:", done.stdout)
        faults = {tag for tag, severity in found if severity in ("error", "warning")}
        self.assertLessEqual(faults, EXCEPTIONS, done.stdout)
        self.assertLessEqual({tag for tag, severity in found if severity == "info"}, EXCEPTIONS)

    def test_metainfo_speaks_every_language_of_the_settings(self):
        summaries = xml.etree.ElementTree.parse(METAINFO).findall("summary")
        languages = {each.get("{http://www.w3.org/XML/1998/namespace}lang") for each in summaries}
        self.assertEqual(languages, LANGUAGES | {None})

    def test_icons_are_of_the_size_that_their_folder_says(self):
        self.assertEqual(re.findall("^Icon=(.*)$", read(ENTRY), re.MULTILINE), ["pelmora"])
        sizes = [int(name[:-len(".png")]) for name in os.listdir(os.path.join(DATA, "icons"))
                 if name.endswith(".png")]
        self.assertEqual(sorted(sizes), [16, 32, 48, 64, 128, 256])
        for size in sizes:
            icon = os.path.join(DATA, "icons", f"{size}.png")
            self.assertEqual(pngfile.size_of(icon), (size, size))

    def test_drawings_are_made_of_shapes_alone(self):
        for name in ("pelmora", "pelmora-16", "pelmora-symbolic"):
            tree = xml.etree.ElementTree.parse(os.path.join(DATA, "icons", f"{name}.svg"))
            kinds = {element.tag.rpartition("}")[2] for element in tree.iter()}
            self.assertLessEqual(kinds, {"svg", "defs", "linearGradient", "stop", "g", "rect",
                                         "circle", "path"})


if __name__ == "__main__":
    place = sys.argv.index("--pelmora")
    DesktopFiles.pelmora = os.path.abspath(sys.argv[place + 1])
    del sys.argv[place:place + 2]
    unittest.main(verbosity=2)
