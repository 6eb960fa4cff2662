#!/usr/bin/env python3
"""Whether every text of the settings is there in every language: python3 translations_test.py
--lupdate PATH"""

import glob
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
LANGUAGES = [os.path.basename(path)[len("pelmora_"):-len(".ts")]
             for path in glob.glob(os.path.join(ROOT, "translations", "*.ts"))]

# The texts whose keys are pressed in one place.
PLACES = [
    ["&Open Folder", "O&n", "&Days", "&Chance", "&Screens", "&Remove"],
    ["&Add Folders…", "&Remove", "C&hange…", "&Show only pictures that match:",
     "&Pictures on each display:", "&New picture after:", "Show pictures as &instant photos",
     "Show the &track that is playing"],
    ["&Options…", "&Close"],
]


class Translations(unittest.TestCase):
    lupdate = None

    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def updated(self, language):
        """The messages of a language, as they are when the texts of the sources are read anew."""
        path = shutil.copy(os.path.join(ROOT, "translations", f"pelmora_{language}.ts"), self.folder)
        sources = [os.path.join(ROOT, "src", name) for name in ("config", "filtereditor", "host")]
        subprocess.run([self.lupdate, "-silent", "-no-obsolete", *sources,
                        *glob.glob(os.path.join(ROOT, "data", "*.ui")), "-ts", path], check=True,
                       timeout=60)
        return xml.etree.ElementTree.parse(path).findall("context/message")

    def test_are_there_for_every_text_of_the_program(self):
        self.assertGreaterEqual(len(LANGUAGES), 9)
        for language in LANGUAGES:
            with self.subTest(language):
                messages = self.updated(language)
                self.assertGreater(len(messages), 90)
                for message in messages:
                    source, translation = message.find("source").text, message.find("translation")
                    self.assertIsNone(translation.get("type"), source)
                    self.assertTrue(translation.text, source)

    def test_keep_the_places_of_numbers_and_keys(self):
        for language in LANGUAGES:
            with self.subTest(language):
                for message in self.updated(language):
                    source, text = message.find("source").text, message.find("translation").text
                    for pattern in ("%[0-9]", "&"):
                        self.assertEqual(sorted(re.findall(pattern, text)),
                                         sorted(re.findall(pattern, source)), source)

    def test_give_each_text_of_a_place_a_key_of_its_own(self):
        def keys(texts):
            return [re.search("&(.)", text).group(1).lower() for text in texts]

        for language in LANGUAGES:
            with self.subTest(language):
                texts = {message.find("source").text: message.find("translation").text
                         for message in self.updated(language)}
                self.assertEqual({text for text in texts if "&" in text}, set(sum(PLACES, [])))
                for place in PLACES:
                    for found in (keys(place), keys(texts[text] for text in place)):
                        self.assertEqual(len(found), len(set(found)), found)


if __name__ == "__main__":
    place = sys.argv.index("--lupdate")
    Translations.lupdate = sys.argv[place + 1]
    del sys.argv[place:place + 2]
    unittest.main(verbosity=2)
