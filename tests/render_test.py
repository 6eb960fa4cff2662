"""The pictures that `render` writes, and what it makes of its command line."""

import math
import os

import judge
from pngfile import Picture
from saver_home import source

COLOUR = (200, 100, 50)
# The frame's paper multiplies the picture's blue by 0.93.
FRAMED_COLOUR = (200, 100, 46)
PAPER = (255, 255, 237)


class Pictures(judge.JudgedCase):
    def show(self, size, **preferences):
        folder = self.home.add_pictures("a", ["a.png"], size, COLOUR)
        self.home.age_folders()
        self.home.write_preferences({"Sources": [source(folder)]} | preferences)

    def place_in(self, card, at):
        """A function from places in the card (-1 to 1 each way from its middle) to the view."""
        pose = card.presentation(at)
        cosine, sine = math.cos(pose["rotation"]), math.sin(pose["rotation"])

        def place(across, up):
            x = across * card.size[0] / 2 * pose["scale"]
            y = up * card.size[1] / 2 * pose["scale"]
            return (pose["position"][0] + x * cosine - y * sine,
                    pose["position"][1] + x * sine + y * cosine)
        return place

    def assert_pixel(self, picture, point, colour, scale=1):
        x, y = point[0] * scale, point[1] * scale
        if not (0 <= x < picture.width and 0 <= y < picture.height):
            return
        found = picture.pixel(x, y)
        self.assertLessEqual(max(abs(a - b) for a, b in zip(found, colour)), 3,
                             f"{point} is {found}, not {colour}")
        judge.JudgedCase.compared += 1

    def rendered(self, *arguments, **options):
        out = self.home.path("out", "out.png")
        saver = self.judge(arguments=["--out", out, *arguments], **options)
        return Picture(out), saver.views[0].cards[0]

    def test_a_card_lies_where_it_was_foretold(self):
        self.show((60, 24), UsePolaroid=0)
        for start in ("2026-11-21T12:00:00", "2026-11-21T12:00:01", "2026-11-21T12:00:07"):
            picture, card = self.rendered(start=start)
            self.assertEqual((picture.width, picture.height), judge.SIZE)
            place = self.place_in(card, 2.0)
            for across in (-1, 0, 1):
                for up in (-1, 0, 1):
                    self.assert_pixel(picture, place(across * 0.96, up * 0.94), COLOUR)
                    if (across, up) != (0, 0):
                        self.assert_pixel(picture, place(across * 1.04, up * 1.06), (0, 0, 0))

    def test_a_card_on_its_way_is_turned_enlarged_and_faint(self):
        self.show((60, 24), UsePolaroid=0)
        for at in (0.1, 0.2, 0.6):
            picture, card = self.rendered(at=at)
            opacity = card.presentation(at)["opacity"]
            place = self.place_in(card, at)
            faint = [opacity * part for part in COLOUR]
            for across, up in ((-0.9, -0.9), (0.9, -0.9), (0, 0), (-0.9, 0.9), (0.9, 0.9)):
                self.assert_pixel(picture, place(across, up), faint)
                beside = place(across * 1.3, up * 1.3) if across else place(0, 1.3)
                self.assert_pixel(picture, beside, (0, 0, 0))

    def test_a_framed_card_has_paper_around_a_tinted_picture(self):
        self.show((60, 40), UsePolaroid=1)
        picture, card = self.rendered()
        place = self.place_in(card, 2.0)
        height = judge.SIZE[1]
        border, band = 0.06 * height / card.size[1], 0.22 * height / card.size[1]
        for across in (-0.8, 0, 0.8):
            self.assert_pixel(picture, place(across, 1 - border / 2), PAPER)
            self.assert_pixel(picture, place(across, -1 + band + 0.05), FRAMED_COLOUR)
            self.assert_pixel(picture, place(across, 1 - border - 0.05), FRAMED_COLOUR)
        self.assert_pixel(picture, place(-0.99, -0.98), PAPER)

    def test_more_pixels_in_a_point_change_no_place(self):
        self.show((60, 24), UsePolaroid=0)
        picture, card = self.rendered("--scale", "2")
        self.assertEqual((picture.width, picture.height), (1280, 720))
        place = self.place_in(card, 2.0)
        for across, up in ((0, 0), (0.97, 0.95), (-0.97, -0.95)):
            self.assert_pixel(picture, place(across, up), COLOUR, scale=2)
            self.assert_pixel(picture, place(across * 1.04, up + 1.1), (0, 0, 0), scale=2)


class Command(judge.JudgedCase):
    def show(self):
        folder = self.home.add_pictures("a", [f"{i}.png" for i in range(9)])
        self.home.age_folders()
        self.home.write_preferences({"Sources": [source(folder)], "Delay": 0.4})

    def written(self, name):
        with open(self.home.path("out", name), "rb") as file:
            return file.read()

    def test_writes_the_same_bytes_every_time(self):
        self.show()
        results = []
        for _ in range(2):
            self.run_well("render", "--start", judge.START, "--at", "2.2", "--size", "640x360",
                          "--out", self.home.path("out", "a.png"),
                          "--layers", self.home.path("out", "layers.json"))
            results.append((self.written("a.png"), self.written("layers.json")))
        self.assertEqual(results[0], results[1])

    def test_writes_the_display_that_is_asked_for(self):
        self.show()
        out = self.home.path("out", "a.png")
        for screen, size in (("1", (640, 360)), ("2", (480, 400))):
            self.run_well("render", "--start", judge.START, "--displays",
                          "640x360+0+0,480x400+640+0", "--screen", screen, "--out", out)
            picture = Picture(out)
            self.assertEqual((picture.width, picture.height), size)

    def test_need_not_wait_for_the_walk(self):
        self.show()
        self.run_well("render", "--start", judge.START, "--no-settle", "--size", "640x360",
                      "--layers", self.home.path("out", "layers.json"))
        view, = self.home.read_layers()["views"]
        self.assertEqual(view["frame"], [0, 0, 640, 360])

    def test_the_preview_is_small(self):
        self.show()
        out = self.home.path("out", "a.png")
        self.run_well("render", "--start", judge.START, "--preview", "--out", out)
        picture = Picture(out)
        self.assertEqual((picture.width, picture.height), (400, 300))

    def test_writes_the_frames_of_a_film(self):
        self.show()
        common = ["render", "--start", judge.START, "--size", "640x360"]
        self.run_well(*common, "--frames", self.home.path("out", "film"), "--fps", "20",
                      "--from", "0.5", "--to", "0.72")
        names = sorted(os.listdir(self.home.path("out", "film")))
        numbers = [int("".join(filter(str.isdigit, name))) for name in names]
        self.assertEqual(numbers, list(range(numbers[0], numbers[0] + 5)))
        for name, at in ((names[0], "0.5"), (names[3], "0.65")):
            self.run_well(*common, "--at", at, "--out", self.home.path("out", "one.png"))
            self.assertEqual(self.written("film/" + name), self.written("one.png"), name)

    def test_a_wrong_command_line_is_refused_clearly(self):
        out = ["--out", self.home.path("out", "a.png")]
        for words, named in (
                (["render"], "--out"),
                (["render", *out, "--colour"], "--colour"),
                (["render", *out, "--size"], "--size"),
                (["render", *out, "--size", "640"], "640"),
                (["render", *out, "--size", "0x360"], "0x360"),
                (["render", *out, "--size", "640x360x2"], "640x360x2"),
                (["render", *out, "--size", "99999999999x5"], "99999999999x5"),
                (["render", *out, "--displays", "640x360+0"], "640x360+0"),
                (["render", *out, "--displays", "640x360+0+0,"], "pelmora"),
                (["render", *out, "--screen", "2"], "2"),
                (["render", *out, "--screen", "one"], "one"),
                (["render", *out, "--at", "soon"], "soon"),
                (["render", *out, "--at", "-1"], "-1"),
                (["render", *out, "--at", "nan"], "nan"),
                (["render", *out, "--start", "today"], "today"),
                (["render", *out, "--start", "2026-13-01T00:00:00"], "2026-13-01"),
                (["render", *out, "--fps", "0"], "0"),
                (["render", *out, "--scale", "inf"], "inf"),
                (["render", *out, "more"], "more"),
                (["paint"], "paint")):
            with self.subTest(words=words[1:]):
                finished = self.home.run(*words)
                said = finished.stderr.decode()
                self.assertEqual(finished.returncode, 2, said)
                self.assertIn(named, said)
                self.assertFalse(os.path.exists(out[1]))

    def test_what_cannot_be_written_is_told(self):
        self.show()
        for option in ("--out", "--layers"):
            finished = self.home.run("render", "--size", "640x360", option,
                                     self.home.path("gone", "file"))
            self.assertEqual(finished.returncode, 1)
            self.assertIn(self.home.path("gone", "file"), finished.stderr.decode())

    def test_help_names_every_option(self):
        said = self.run_well("render", "--help").stdout.decode()
        for option in ("out", "size", "scale", "displays", "screen", "preview", "start", "at",
                       "frames", "fps", "from", "to", "layers", "no-settle"):
            self.assertIn("--" + option, said)


if __name__ == "__main__":
    judge.main()
