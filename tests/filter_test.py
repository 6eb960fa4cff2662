#!/usr/bin/env python3
"""What `pelmora match` finds among thousands of tagged photographs, against a slow direct evaluation
of the same filters: python3 filter_test.py --pelmora PATH"""

import os
import random
import subprocess
import unicodedata

import judge
import tagged_photos

PHOTOS = 2000
SEED = 20261121
COMPOUNDS = 40


class Comparison:
    """One that can be written as text, and evaluated against lists of values."""

    def __init__(self, attribute, operator, options, value):
        self._attribute, self._operator = attribute, operator
        self._options, self._value = options, value

    def text(self):
        options = f"[{self._options}]" if self._options else ""
        value = self._value.replace("\\", "\\\\").replace('"', '\\"')
        return f'{self._attribute} {self._operator}{options} "{value}"'

    def holds(self, metadata):
        values = metadata[self._attribute]
        if self._operator == "!=":
            return not values or any(self._fold(v) != self._fold(self._value) for v in values)
        return any(self._fits(self._fold(v), self._fold(self._value)) for v in values)

    def _fits(self, left, right):
        return {"==": left == right, "CONTAINS": right in left,
                "BEGINSWITH": left.startswith(right), "ENDSWITH": left.endswith(right)
                }[self._operator]

    def _fold(self, text):
        if "d" in self._options:
            text = "".join(c for c in unicodedata.normalize("NFKD", text)
                           if not unicodedata.combining(c))
        return text.casefold() if "c" in self._options else text


class Compound:
    def __init__(self, word, parts):
        self._word, self._parts = word, parts

    def text(self):
        if self._word == "NOT":
            return f"NOT ({self._parts[0].text()})"
        return f" {self._word} ".join(f"({part.text()})" for part in self._parts)

    def holds(self, metadata):
        results = [part.holds(metadata) for part in self._parts]
        if self._word == "NOT":
            return not results[0]
        return all(results) if self._word == "AND" else any(results)


def comparisons():
    """Of each attribute, with each operator."""
    values = {"kMDItemFSName": ("Beach", "beach", "IMG_", ".jpg", "Malmö", "malmo", "IMG_0007.png"),
              "kMDItemKeywords": ("beach", "Malmö", "malmo", "sao", "100%", "a_b", "it's", "東", "snow"),
              "kMDItemUserTags": ("Best", "best", "host", "naive", "work"),
              "kMDItemCity": ("Malmö", "malmo", "Oslo", "東京", "Paulo"),
              "kMDItemAcquisitionMake": ("Canon", "nikon", "NIKON CORPORATION"),
              "kMDItemAcquisitionModel": ("iPhone 12", "D90", "eos")}
    for attribute, some in values.items():
        for value in some:
            for operator in ("==", "!=", "CONTAINS", "BEGINSWITH", "ENDSWITH"):
                for options in ("", "c", "cd"):
                    yield Comparison(attribute, operator, options, value)


def compound(generator, leaves, depth=0):
    if depth == 3 or (depth > 0 and generator.random() < 0.4):
        return generator.choice(leaves)
    word = generator.choice(("AND", "OR", "NOT"))
    count = 1 if word == "NOT" else generator.randint(2, 3)
    return Compound(word, [compound(generator, leaves, depth + 1) for _ in range(count)])


class Filters(judge.JudgedCase):
    def make_photos(self, count):
        pictures = tagged_photos.templates(os.environ.get("PELMORA_CORPUS"), self.home.path("data"))
        self.root = self.home.path("pictures")
        self.photos = tagged_photos.make(self.root, count, pictures, SEED)

    def found_by(self, text):
        said = self.run_well("match", "-0", text, "pictures").stdout.decode()
        paths = said.split("\0")
        self.assertEqual(paths.pop(), "")
        return paths

    def agree(self, predicate):
        text = predicate.text()
        expected = sorted((f"pictures/{photo.path}" for photo in self.photos
                           if predicate.holds(photo.metadata)), key=os.fsencode)
        self.assertEqual(self.found_by(text), expected, text)
        judge.JudgedCase.compared += len(self.photos)
        return len(expected)

    def test_finds_what_a_direct_evaluation_finds(self):
        self.make_photos(PHOTOS)
        generator = random.Random(SEED)
        leaves = list(comparisons())
        chosen = generator.sample(leaves, 30)
        chosen += [compound(generator, leaves) for _ in range(COMPOUNDS)]
        counts = [self.agree(predicate) for predicate in chosen]
        self.assertGreater(sum(0 < count < PHOTOS for count in counts), len(counts) // 2,
                           "filters that tell photographs apart")

    def test_follows_what_changes_between_runs(self):
        self.make_photos(PHOTOS // 10)
        beach = Comparison("kMDItemKeywords", "==", "", "beach")
        self.agree(beach)
        retagged = next(photo for photo in self.photos if not beach.holds(photo.metadata))
        subprocess.run(["exiv2", "-q", "-M", "add Iptc.Application2.Keywords String beach",
                        os.path.join(self.root, retagged.path)], check=True)
        retagged.metadata["kMDItemKeywords"].append("beach")
        moved = next(photo for photo in self.photos if beach.holds(photo.metadata))
        os.rename(os.path.join(self.root, moved.path), os.path.join(self.root, "2020", "moved.x"))
        moved.path, moved.metadata["kMDItemFSName"] = "2020/moved.x", ["moved.x"]
        removed = next(photo for photo in self.photos
                       if photo is not moved and beach.holds(photo.metadata))
        os.remove(os.path.join(self.root, removed.path))
        self.photos.remove(removed)
        self.agree(beach)


if __name__ == "__main__":
    judge.main()
