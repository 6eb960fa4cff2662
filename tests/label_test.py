"""The label with the playing track against the prediction: where it lies, flies and fades."""

import judge
from predict import Preferences, Saver
from predict_label import Track
from saver_home import source

TRACKS = (("Song",), ("A Longer Song", "Singer"), ("Lied", "Sänger", "Platte"), ("東京", "", ""))


class Labels(judge.JudgedCase):
    def show(self, **preferences):
        pictures = self.home.add_pictures("pictures", [f"{i}.png" for i in range(4)])
        self.home.age_folders()
        self.home.write_preferences({"Sources": [source(pictures)], "UsePolaroid": 0, "Delay": 2.0,
                                     "ShowiTunesTrack": 1} | preferences)

    def judge_label(self, track, *, at, displays=(judge.SIZE,), preview=None):
        """Judges everything shown; the size of the text alone is taken from what was found."""
        options = [word for pair in zip(("--track", "--artist", "--album"), track) for word in pair]
        self.render("--start", judge.START, "--at", repr(at), *options,
                    *self._geometry(displays, preview))
        listing = self.home.read_layers()
        label, = (layer for layer in listing["views"][0]["layers"] if layer["role"] == "track")
        size = label["sublayers"][0]["bounds"][2:]
        self.assertTrue(all(side > 0 for side in size) if track else size == [0, 0], size)
        saver = Saver(Preferences.read(self.home.preferences_path), judge.START, displays, preview,
                      at=at, track=Track(*track, text_size=size) if track else None)
        self.compare(saver.describe(), listing, "listing")
        return label

    def test_stands_still_somewhere_on_the_screen(self):
        for kind in (0, 3):
            self.show(iTunesTrackType=kind)
            for track in TRACKS:
                self.judge_label(track, at=3.1)

    def test_fades_in_and_out_once(self):
        self.show()
        for at in (0.0, 1.0, 2.0, 5.0, 7.9, 9.0, 9.99, 10.0, 14.2):
            with self.subTest(at=at):
                self.judge_label(TRACKS[2], at=at)

    def test_flies_from_step_to_step(self):
        self.show(iTunesTrackType=2)
        for at in (0.0, 0.1, 0.24, 0.3, 0.6, 7.13, 60.05, 300.2):
            with self.subTest(at=at):
                self.judge_label(TRACKS[1], at=at)

    def test_trembles_where_it_is_wider_than_the_screen(self):
        self.show(iTunesTrackType=2)
        for at in (0.1, 1.7):
            self.judge_label(("A song whose title is wider than a small display",), at=at,
                             displays=((160, 120),))

    def test_is_small_in_the_preview(self):
        for kind in (1, 2, 0):
            self.show(iTunesTrackType=kind)
            label = self.judge_label(TRACKS[1], at=2.6, preview=(400, 300))
            self.assertEqual(label["presentation"]["scale"], 0.25)

    def test_is_on_the_first_screen_alone(self):
        self.show()
        self.judge_label(TRACKS[0], at=3.0, displays=((640, 360), (480, 400)))

    def test_is_empty_without_a_track(self):
        for kind in (1, 2, 0):
            self.show(iTunesTrackType=kind)
            self.judge_label((), at=2.6)


if __name__ == "__main__":
    judge.main()
