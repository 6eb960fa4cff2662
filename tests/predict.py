"""Foretells what the saver shows: which pictures, where, when and how far each has moved.

An implementation of its own, for judging the program's: it shares nothing with it but the C
library's random numbers. Lengths are points with the origin at the lower left, times are seconds
since the start, angles are radians. Pictures are PNG files; any other file counts as one that fails
to load.

    predict.py --preferences FILE --start 2026-11-21T12:00:00 [--at SECONDS]
               [--size WxH | --displays LIST | --preview] [--cache FolderCache.plist]
"""

import argparse
import json
import math
import os
import plistlib
import re
import sys
import time
from dataclasses import dataclass, field

import pngfile
from folder_walk import REFERENCE_EPOCH, CacheEntry, FolderCache, Walk, resolve_sources
from keyedarchive import KeyedArchive
from predict_label import Label
from saver_random import TWO_TO_64, Random
from timing_curves import between, progress

FRAME_INTERVAL = 0.5
DAY_CHANGE_MARGIN = 10.0
TURN_DURATION = 1.15
MOST_TRIES = 10
CAPTION_FONTS = 6


def reference_time(local):
    """Seconds since 2001 at "2026-11-21T12:00:00", local time."""
    parsed = time.strptime(local, "%Y-%m-%dT%H:%M:%S")
    return time.mktime(parsed[:8] + (-1,)) - REFERENCE_EPOCH


def weekday(reference):
    """0 for Sunday, in local time."""
    return (time.localtime(reference + REFERENCE_EPOCH).tm_wday + 1) % 7


def seconds_to_day_change(reference):
    today = time.localtime(reference + REFERENCE_EPOCH)
    midnight = time.mktime((today.tm_year, today.tm_mon, today.tm_mday + 1, 0, 0, 0, 0, 0, -1))
    return midnight - REFERENCE_EPOCH - reference + DAY_CHANGE_MARGIN


def includes_screen(screens, index):
    if not screens or index == 0:
        return True
    if index < 10:
        return str(index) in screens
    return str(index) in screens.split(",")


@dataclass
class Preferences:
    sources: list
    use_polaroid: int = 1
    num_images: int = 5
    delay: float = 4.0
    show_track: int = 0
    track_type: int = 1

    @classmethod
    def read(cls, path):
        with open(path, "rb") as file:
            stored = plistlib.load(file)
        return cls(stored["Sources"], stored.get("UsePolaroid", 1), stored.get("NumImages", 5),
                   float(stored.get("Delay", 4.0)), stored.get("ShowiTunesTrack", 0),
                   stored.get("iTunesTrackType", 1))


class SourceList:
    """The folder records and the weighted choice among their files."""

    def __init__(self, preferences, cache, displays, today, random):
        self.log = []
        self.records = Walk(resolve_sources(preferences.sources), cache).run()
        self.today = today
        self._random = random
        self._sums = [0] * (displays + 1)

    def change_day(self, today):
        self.log += [f"A new day has dawned. Old day: {self.today}",
                     f"A new day has dawned. New day: {today}"]
        self.today = today
        self._sums = [0] * len(self._sums)

    def pick(self, screen):
        """(path, (width, height)) of the next picture, or None."""
        while True:
            folder = self._draw_folder(screen)
            if folder is None:
                return None
            picked = self._draw_file(folder)
            if picked is not None:
                return picked
            self._give_up(folder)

    def _is_eligible(self, folder, screen):
        return includes_screen(folder.screens, screen) and folder.days & (1 << self.today)

    @staticmethod
    def weight(folder):
        return math.ceil(len(folder.names) * folder.priority)

    def _draw_folder(self, screen):
        eligible = [each for each in self.records if self._is_eligible(each, screen)]
        if self._sums[screen] == 0:
            self._sums[screen] = sum(self.weight(each) for each in eligible)
        drawn = self._random.index_between(0, (self._sums[screen] - 1) % TWO_TO_64)
        running = 0
        for folder in eligible:
            running += self.weight(folder)
            if drawn < running:
                return folder
        self.log.append(f"Pelmora: With random number {drawn}, item {running} "
                        "doesn't correspond to a folder")
        return None

    def _draw_file(self, folder):
        for _ in range(min(MOST_TRIES, len(folder.names))):
            name = folder.names[self._random.index_between(0, len(folder.names) - 1)]
            path = os.path.join(folder.path, name)
            size = pngfile.size_of(path) if os.path.isfile(path) else None
            if size is not None:
                return path, size
        return None

    def _give_up(self, folder):
        shown = folder.path.decode(errors="replace")
        self.log.append(f"Pelmora: Giving up on folder '{shown}' "
                        "because too many files are failing.")
        for record in self.records:
            for screen, total in enumerate(self._sums):
                if total > 0 and includes_screen(record.screens, screen):
                    self._sums[screen] = (total - len(folder.names)) % TWO_TO_64
        self.records.remove(folder)


@dataclass
class Animation:
    key_path: str
    start: object
    end: object
    duration: float
    curve: str


@dataclass
class Card:
    """One picture on its way to its place."""

    path: bytes
    made: float
    size: tuple
    animations: dict
    dropped: bool = False

    def is_shown(self, at):
        """A dropped card stays as long as it turns."""
        return not self.dropped or at < self.made + TURN_DURATION

    def _now(self, key, at):
        animation = self.animations[key]
        part = progress(animation.curve, (at - self.made) / animation.duration)
        if isinstance(animation.end, tuple):
            return [between(*ends, part) for ends in zip(animation.start, animation.end)]
        return between(animation.start, animation.end, part)

    def presentation(self, at):
        return {"position": self._now("FadeIn", at), "scale": self._now("TheScale", at),
                "opacity": self._now("TheOpacity", at), "rotation": self._now("TheRotation", at)}

    def running_animations(self, at):
        return {
            key: {"keyPath": each.key_path, "from": each.start, "to": each.end,
                  "duration": each.duration, "timingFunction": each.curve, "beginTime": self.made}
            for key, each in self.animations.items() if at < self.made + each.duration
        }


@dataclass
class View:
    """One display's view."""

    screen: int
    width: float
    height: float
    is_preview: bool = False
    cards: list = field(default_factory=list)
    layers: list = field(default_factory=list)
    last_change: float = -math.inf
    label: object = None

    def animate(self, now, saver):
        if now - self.last_change > saver.preferences.delay:
            self._change(now, saver)
        if self.label:
            self.label.fly(now)

    def _change(self, now, saver):
        self.last_change = now
        is_added = self._add_card(now, saver)
        if not is_added and not self.cards:
            self.last_change = -math.inf
        wanted = saver.preferences.show_track == 1 and self.screen < 2
        if is_added and wanted and not self.label:
            self.label = Label((self.width, self.height), self.is_preview,
                               saver.preferences.track_type, saver.random)
            self.label.fill(saver.track, now, saver.random)

    def _add_card(self, now, saver):
        picked = saver.source_list.pick(self.screen)
        if picked is None:
            return False
        path, (width, height) = picked
        factor = 0.75 * self.height / (width if width > height else height)
        if len(self.cards) >= saver.preferences.num_images:
            self.cards.pop(0).dropped = True
        self.cards.append(self._make_card(path, (width * factor, height * factor), now, saver))
        self.layers.append(self.cards[-1])
        return True

    def _make_card(self, path, size, now, saver):
        random = saver.random
        if saver.preferences.use_polaroid == 1:
            random.int_between(0, CAPTION_FONTS - 1)
            random.int_between(1, 10)  # the caption's colour
            size = (size[0] + 0.06 * self.height, size[1] + 0.14 * self.height)
        start, end = self._draw_centre(size, random), self._draw_centre(size, random)
        animations = {
            "FadeIn": Animation("position", start, end, 1.0, "easeOut"),
            "TheScale": Animation("transform.scale", random.double_between(1.1, 1.5), 1.0, 0.7,
                                  "easeIn"),
            "TheOpacity": Animation("opacity", 0.0, 1.0, 0.4, "easeOut"),
            "TheRotation": Animation("transform.rotation.z",
                                     math.radians(random.double_between(-35, 35)),
                                     math.radians(random.double_between(-10, 10)), TURN_DURATION,
                                     "easeOut"),
        }
        return Card(path, now, size, animations)

    def _draw_centre(self, size, random):
        x = random.double_between(0, self.width - size[0])
        y = random.double_between(0, self.height - size[1])
        return (x + size[0] / 2, y + size[1] / 2)

    def describe(self, at, preferences):
        return {"screenIndex": self.screen, "isPreview": self.is_preview,
                "frame": [0, 0, self.width, self.height], "numImages": preferences.num_images,
                "delay": preferences.delay,
                "layers": [self._describe_card(card, at) for card in self.layers
                           if card.is_shown(at)]
                          + ([self.label.describe(at)] if self.label else [])}

    def _describe_card(self, card, at):
        return {
            "role": "card", "url": card.path.decode(errors="replace"),
            "bounds": [0, 0, *card.size], "anchorPoint": [0.5, 0.5],
            "position": card.animations["FadeIn"].end, "zPosition": 0, "opacity": 1.0,
            "rotation": card.animations["TheRotation"].end,
            "shadowOffset": [-0.0075 * self.height, -0.0075 * self.height],
            "shadowRadius": 0.01 * self.height, "shadowOpacity": 0.75, "cornerRadius": 0,
            "animations": card.running_animations(at), "presentation": card.presentation(at),
            "sublayers": [],
        }


class Saver:
    """A run of the saver from its start to the moment `at`."""

    def __init__(self, preferences, start, displays, preview=None, cache=None, at=2.0, track=None):
        self.preferences = preferences
        self.track = track
        self.cache = cache or FolderCache()
        self.at = at
        self.random = Random()
        self.views = [View(i + 1, *size) for i, size in enumerate(displays)]
        if preview:
            self.views = [View(0, *preview, is_preview=True)]
        begin = reference_time(start)
        self.random.seed(begin)
        self.source_list = SourceList(preferences, self.cache, len(displays), weekday(begin),
                                      self.random)
        self._run(begin)

    def _run(self, begin):
        day_change = seconds_to_day_change(begin)
        for frame in range(int(self.at / FRAME_INTERVAL) + 1):
            now = frame * FRAME_INTERVAL
            while day_change <= now:
                self.source_list.change_day(weekday(begin + day_change))
                day_change += seconds_to_day_change(begin + day_change)
            for view in self.views:
                view.animate(now, self)

    def describe(self):
        return {"time": self.at,
                "views": [view.describe(self.at, self.preferences) for view in self.views]}


def read_cache(path):
    """A saved folder cache."""
    with open(path, "rb") as file:
        stored = KeyedArchive(file.read()).root()

    def names(entry, key):
        return [os.fsencode(name) for name in entry[key]] if key in entry else None

    return FolderCache({
        os.fsencode(folder): CacheEntry(entry["mdate"], names(entry, "names"),
                                        names(entry, "folderNames"), accessed=False)
        for folder, entry in stored.items()
    })


def sizes_of(geometries):
    """The sizes in "1920x1080+0+0,1280x1024+1920+0"."""
    return [tuple(float(side) for side in re.match(r"(\d+)x(\d+)", each).groups())
            for each in geometries.split(",")]


def main():
    parser = argparse.ArgumentParser(description="Foretells what the saver shows, as JSON.")
    parser.add_argument("--preferences", required=True)
    parser.add_argument("--start", required=True)
    parser.add_argument("--at", type=float, default=2.0)
    parser.add_argument("--displays", default="1920x1080+0+0")
    parser.add_argument("--size", help="the one display's size, or the preview's")
    parser.add_argument("--preview", action="store_true")
    parser.add_argument("--cache", help="the folder cache of an earlier run")
    options = parser.parse_args()
    preview = sizes_of(options.size or "400x300")[0] if options.preview else None
    displays = sizes_of(options.displays if preview else options.size or options.displays)
    cache = read_cache(options.cache) if options.cache else None
    saver = Saver(Preferences.read(options.preferences), options.start, displays, preview, cache,
                  options.at)
    json.dump(saver.describe(), sys.stdout, indent=1)
    print()
    for line in saver.source_list.log:
        print(line, file=sys.stderr)


if __name__ == "__main__":
    main()
