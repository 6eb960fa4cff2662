"""Foretells the label with the playing track: where it is, how it moves and when it shows."""

from dataclasses import dataclass

from saver_random import float32
from timing_curves import between, progress

FADE = {"keyPath": "opacity", "keyTimes": [0, 0.2, 0.8, 1], "values": [0, 0.8, 0.8, 0],
        "duration": 10.0}
GLIDE = 0.25
ABOVE_ALL = 3.4028234663852886e38


@dataclass
class Track:
    """What plays, and the size of its text, which is a matter of the fonts."""

    name: str
    artist: str = None
    album: str = None
    text_size: tuple = (0, 0)

    def text(self):
        return "\n".join(part for part in (self.name, self.artist, self.album) if part is not None)


def _speed(random):
    if random.int_between(0, 1) == 1:
        return random.double_between(0.5, 5.0)
    return random.double_between(-5.0, -0.5)


def _pulled_in(low, length, most):
    if low < 0:
        return 0
    return most - length if low + length > most else low


class Label:
    """The label over a view whose frame begins at the origin."""

    def __init__(self, frame, is_preview, kind, random):
        self._frame, self._kind = frame, kind
        self._scale = 0.25 if is_preview else 1.0
        self._delta = [_speed(random), _speed(random)] if kind == 2 else [0, 0]
        self._bounds = [-4, -4, 8, 8]
        self._text, self._text_size = "", (0, 0)
        self._opacity = 0
        self._fade_began = self._glide = None
        self._position = self._random_place(random)

    def _random_place(self, random):
        return [random.double_between(0, side - own)
                for side, own in zip(self._frame, self._bounds[2:])]

    def fill(self, track, now, random):
        if track is None:
            self._text, self._text_size, self._bounds = "", (0, 0), [0, 0, 0, 0]
            return
        self._text, self._text_size = track.text(), track.text_size
        self._bounds = [-8, -2, track.text_size[0] + 16, track.text_size[1] + 4]
        if self._kind == 1:
            self._fade_began, self._opacity = now, 0
            self._position = self._random_place(random)
        else:
            self._position = [_pulled_in(*axis) for axis in
                              zip(self._position, self._bounds[2:], self._frame)]
            self._opacity = float32(0.8)

    def fly(self, now):
        if self._kind != 2 or not self._text:
            return
        before = self._position
        for axis, delta in enumerate(self._delta):
            low = before[axis]
            high = low + self._bounds[2 + axis]
            if (delta > 0 and high + delta > self._frame[axis]) or (delta < 0 and low + delta < 0):
                self._delta[axis] = -delta
        self._position = [place + delta for place, delta in zip(before, self._delta)]
        self._glide = (now, before, self._position)

    def describe(self, at):
        return self._layer("track", self._bounds, self._position, at, {
            "zPosition": ABOVE_ALL, "opacity": self._opacity, "cornerRadius": 4,
            "animations": self._animations(at), "presentation": {
                "position": self._place(at), "scale": self._scale, "opacity": self._shown(at),
                "rotation": 0},
            "sublayers": [self._layer("text", [0, 0, *self._text_size], [0, 0], at, {
                "string": self._text})]})

    @staticmethod
    def _layer(role, bounds, position, at, others):
        return {"role": role, "bounds": bounds, "anchorPoint": [0, 0], "position": position,
                "zPosition": 0, "opacity": 1, "rotation": 0, "shadowOffset": [0, -3],
                "shadowRadius": 3, "shadowOpacity": 0, "cornerRadius": 0, "animations": {},
                "presentation": {"position": position, "scale": 1, "opacity": 1, "rotation": 0},
                "sublayers": []} | others

    def _animations(self, at):
        running = {}
        if self._fade_began is not None and at < self._fade_began + FADE["duration"]:
            running["TheFadeInAndOut"] = FADE | {"beginTime": self._fade_began}
        if self._glide and at < self._glide[0] + GLIDE:
            began, start, end = self._glide
            running["position"] = {"keyPath": "position", "from": start, "to": end,
                                   "duration": GLIDE, "timingFunction": "default",
                                   "beginTime": began}
        return running

    def _place(self, at):
        if not self._glide or at >= self._glide[0] + GLIDE:
            return self._position
        began, start, end = self._glide
        part = progress("default", (at - began) / GLIDE)
        return [between(*ends, part) for ends in zip(start, end)]

    def _shown(self, at):
        if self._fade_began is None or at >= self._fade_began + FADE["duration"]:
            return self._opacity
        part = (at - self._fade_began) / FADE["duration"]
        times, values = FADE["keyTimes"], FADE["values"]
        for i in range(3):
            if part <= times[i + 1]:
                way = (part - times[i]) / (times[i + 1] - times[i])
                return between(values[i], values[i + 1], way)
        return values[-1]
