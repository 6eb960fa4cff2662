"""The program's cards against the prediction: which pictures, where, when and how they move."""

import datetime
import os
import plistlib
import urllib.parse
from zoneinfo import ZoneInfo

import judge
from predict import Preferences, Saver, reference_time
from saver_home import TIME_ZONE, source
from saver_random import Random

FULL_HD, OLD_SQUARE = (1920, 1080), (1280, 1024)


class Cards(judge.JudgedCase):
    def show(self, *sources, **preferences):
        self.home.age_folders()
        self.home.write_preferences({"Sources": list(sources)} | preferences)

    def mixed_sizes(self, folder="mixed"):
        for name, size in (("wide.png", (60, 40)), ("tall.png", (40, 60)), ("square.png", (50, 50)),
                           ("dot.png", (1, 1)), ("strip.png", (150, 7)), ("pole.png", (7, 150))):
            path = self.home.add_pictures(folder, [name], size)
        return path

    def test_one_display_three_cards_at_rest_and_in_flight(self):
        self.show(source(self.mixed_sizes()))
        saver = self.judge(at=9.2, displays=[FULL_HD])
        self.assertEqual([card.made for card in saver.views[0].cards], [0, 4.5, 9])

    def test_two_displays_share_the_random_numbers(self):
        self.show(source(self.mixed_sizes()))
        self.judge(at=9.3, displays=[FULL_HD, OLD_SQUARE])

    def test_every_moment_of_an_entrance(self):
        self.show(source(self.mixed_sizes()))
        for at in (0.0, 0.05, 0.35, 0.55, 0.95, 1.1, 1.2):
            with self.subTest(at=at):
                self.judge(at=at)

    def test_numbers_read_back_as_they_were(self):
        self.show(source(self.mixed_sizes()))
        saver = self.judge(at=0.2)
        card, = saver.views[0].cards
        found, = self.home.read_layers()["views"][0]["layers"]
        wanted = [*card.animations["FadeIn"].end, card.animations["TheRotation"].end, *card.size]
        written = [*found["position"], found["rotation"], *found["bounds"][2:]]
        for value, read in zip(wanted, written):
            self.assertLess(abs(read - value), 4 * 2.0**-52 * max(1, abs(value)))

    def test_chances_weigh_the_folders(self):
        names = [f"{i}.png" for i in range(10)]
        whole = self.home.add_pictures("whole", names)
        half = self.home.add_pictures("half", names)
        quarter = self.home.add_pictures("quarter", names[:3])
        self.show(source(whole), source(half, chance=50), source(quarter, chance=25),
                  UsePolaroid=0, Delay=0.4, NumImages=60)
        saver = self.judge(at=24.9)
        self.assertEqual([saver.source_list.weight(each) for each in saver.source_list.records],
                         [10, 5, 1])
        shown = [os.path.dirname(card.path) for card in saver.views[0].cards]
        self.assertEqual(set(shown), {whole, half, quarter})

    def test_a_chance_of_nothing_shows_nothing(self):
        some = self.home.add_pictures("some", ["a.png"])
        none = self.home.add_pictures("none", ["b.png", "c.png"])
        self.show(source(none, chance=0), source(some), UsePolaroid=0, Delay=0.4)
        saver = self.judge(at=3.2)
        self.assertEqual({card.path for card in saver.views[0].layers},
                         {os.path.join(some, b"a.png")})

    def test_days_choose_the_folders(self):
        saturday = self.home.add_pictures("saturday", ["a.png", "b.png"])
        sunday = self.home.add_pictures("sunday", ["c.png", "d.png"])
        weekend = self.home.add_pictures("weekend", ["e.png"])
        never = self.home.add_pictures("never", ["f.png", "g.png", "h.png"])
        self.show(source(saturday, days=64), source(sunday, days=1), source(weekend, days=65),
                  source(never, days=0), UsePolaroid=0, Delay=0.4, NumImages=20)
        for start, day in ((judge.START, saturday), ("2026-11-22T08:30:15", sunday)):
            saver = self.judge(at=7.1, start=start)
            shown = {os.path.dirname(card.path) for card in saver.views[0].cards}
            self.assertEqual(shown, {day, weekend})

    def test_midnight_changes_the_folders(self):
        saturday = self.home.add_pictures("saturday", ["a.png", "b.png"])
        sunday = self.home.add_pictures("sunday", ["c.png", "d.png"])
        self.show(source(saturday, days=64), source(sunday, days=1), NumImages=20)
        saver = self.judge(at=32.1, start="2026-11-21T23:59:50")
        shown = [os.path.dirname(card.path) for card in saver.views[0].cards]
        self.assertEqual(shown, 5 * [saturday] + 3 * [sunday])

    def test_three_days_and_a_change_of_the_clocks_show_each_folder_on_its_days(self):
        folders = {name: self.home.add_pictures(name, [f"{i}.png" for i in range(3)])
                   for name in ("mondays", "weekends", "every day")}
        self.show(source(folders["mondays"], days=2), source(folders["weekends"], days=65),
                  source(folders["every day"]), UsePolaroid=0, Delay=900, NumImages=1000)
        # Friday noon, and 72 hours on: one night of the three has an hour more, or less.
        for start in ("2026-10-23T12:00:00", "2026-03-27T12:00:00"):
            with self.subTest(start=start):
                saver = self.judge(at=72 * 3600, start=start)
                self.assert_shown_on_their_days(saver, start, folders)

    def assert_shown_on_their_days(self, saver, start, folders):
        begin = datetime.datetime.fromisoformat(start).replace(tzinfo=ZoneInfo(TIME_ZONE))
        shown = {}
        for card in saver.views[0].cards:
            # The day is read ten seconds after midnight.
            moment = begin.timestamp() + card.made - 10
            day = datetime.datetime.fromtimestamp(moment, ZoneInfo(TIME_ZONE)).strftime("%a")
            shown.setdefault(day, set()).add(os.path.dirname(card.path))
        everyday, weekend = folders["every day"], folders["weekends"]
        self.assertEqual(shown, {"Fri": {everyday}, "Sat": {everyday, weekend},
                                 "Sun": {everyday, weekend},
                                 "Mon": {everyday, folders["mondays"]}})

    def test_screens_choose_the_folders(self):
        names = ["a.png", "b.png", "c.png"]
        for screens in ("", "1", "2", "12", "3"):
            self.home.add_pictures("on" + screens, names)
        self.show(*(source(self.home.path("pictures", "on" + each), screens=each)
                    for each in ("", "1", "2", "12", "3")),
                  UsePolaroid=0, Delay=0.4, NumImages=30)
        saver = self.judge(at=14.9, displays=[(640, 360), (480, 400)])
        first, second = ({os.path.basename(os.path.dirname(card.path)) for card in view.cards}
                         for view in saver.views)
        self.assertEqual(first, {b"on", b"on1", b"on12"})
        self.assertEqual(second, {b"on", b"on2", b"on12"})

    def test_without_the_frame(self):
        self.show(source(self.mixed_sizes()), UsePolaroid=0)
        self.judge(at=5.0)

    def test_only_one_turns_the_frame_on(self):
        self.show(source(self.mixed_sizes()), UsePolaroid=2)
        self.judge(at=0.3)

    def test_numbers_of_the_preferences(self):
        self.show(source(self.mixed_sizes()), NumImages=2, Delay=1.25)
        saver = self.judge(at=5.3)
        self.assertEqual([card.made for card in saver.views[0].layers], [0, 1.5, 3, 4.5])
        self.assertEqual(len(saver.views[0].cards), 2)

    def test_a_delay_of_exactly_some_frames_takes_one_more(self):
        self.show(source(self.mixed_sizes()), UsePolaroid=0, Delay=0.5)
        saver = self.judge(at=3.1)
        self.assertEqual([card.made for card in saver.views[0].cards], [0, 1, 2, 3])

    def test_a_dropped_card_stays_until_its_turn_ends(self):
        self.show(source(self.mixed_sizes()), UsePolaroid=0, Delay=0.5, NumImages=1)
        for at, shown in ((1.1, 2), (1.2, 1)):
            self.judge(at=at)
            self.assertEqual(len(self.home.read_layers()["views"][0]["layers"]), shown)

    def test_more_cards_than_there_may_be(self):
        self.show(source(self.mixed_sizes()), Delay=0.4, NumImages=3)
        saver = self.judge(at=6.3)
        self.assertEqual(len(saver.views[0].layers), 13)

    def test_preferences_as_text(self):
        self.home.write_preferences({"Sources": [source(self.mixed_sizes())], "Delay": 0.4},
                                    fmt=plistlib.FMT_XML)
        self.home.age_folders()
        self.judge(at=2.2)

    def test_preferences_with_what_they_need_alone(self):
        entry = source(self.mixed_sizes())
        del entry["days"], entry["screens"]
        self.show(entry)
        self.judge(at=0.7)

    def test_the_preview(self):
        self.show(source(self.mixed_sizes()), source(self.home.add_pictures("two", ["a.png"]),
                                                     screens="2"), Delay=1)
        saver = self.judge(at=4.1, preview=(400, 300))
        self.assertEqual(saver.views[0].screen, 0)

    def test_a_preview_as_wide_as_a_display_is_none(self):
        self.show(source(self.mixed_sizes(), screens="1"))
        self.judge(at=1.3, displays=[(500, 300)], geometry=["--preview", "--size", "500x300"])
        self.judge(at=1.3, preview=(499, 300))

    def test_the_pictures_folder_stands_in_for_sources(self):
        folder = self.home.add_pictures("Bilder", ["a.png", "b.png"])
        with open(self.home.path("config", "user-dirs.dirs"), "wb") as file:
            file.write(b'XDG_PICTURES_DIR="' + folder + b'"\n')
        self.home.age_folders()
        saver = Saver(Preferences([source(folder)]), judge.START, [judge.SIZE], at=5.0)
        self.render("--start", judge.START, "--at", "5", "--size", "640x360")
        self.compare(saver.describe(), self.home.read_layers(), "listing")
        self.assertFalse(os.path.exists(self.home.preferences_path))


class Folders(judge.JudgedCase):
    def show(self, *sources, **preferences):
        self.home.age_folders()
        preferences = {"UsePolaroid": 0, "Delay": 0.4, "NumImages": 40} | preferences
        self.home.write_preferences({"Sources": list(sources)} | preferences)

    def showable(self, saver):
        """The paths below the pictures folder of all that may be shown on this day."""
        top = os.fsencode(self.home.path("pictures"))
        return {os.path.relpath(os.path.join(record.path, name), top)
                for record in saver.source_list.records if record.days for name in record.names}

    def tree(self):
        """A folder with every sort of thing below it."""
        top = self.home.add_pictures("top", ["a.png", ".hidden.png", "secret.png"])
        with open(os.path.join(top, b".hidden"), "wb") as file:
            file.write(b"secret.png\nshy\n")
        for folder in ("top/one", "top/one/deep", "top/two", "top/shy", "top/.dot", "top/Old.app",
                       "top/bundle/Contents", "top/Shots.photoslibrary/originals", "elsewhere",
                       "elsewhere/below", "quiet"):
            self.home.add_pictures(folder, [os.path.basename(folder).strip(".") + ".png"])
        with open(os.path.join(top, b"bundle", b"Contents", b"Info.plist"), "wb") as file:
            file.write(plistlib.dumps({}))
        os.makedirs(os.path.join(top, b"hollow", b"full"))
        self.home.add_pictures("top/hollow/full", ["found.png"])
        return top

    def test_nested_folders_packages_and_hidden_ones(self):
        self.show(source(self.tree()))
        saver = self.judge(at=9.9)
        self.assertEqual(self.showable(saver), {
            b"top/a.png", b"top/one/one.png", b"top/one/deep/deep.png", b"top/two/two.png",
            b"top/hollow/full/found.png"})

    def test_linked_folders_are_shown_where_a_source_has_them(self):
        top = self.tree()
        elsewhere = self.home.path("pictures", "elsewhere")
        os.symlink(elsewhere, os.path.join(top, b"one", b"link"))
        os.symlink(os.path.join(top, b"one"), os.path.join(top, b"one", b"loop"))
        with open(os.path.join(top, b"two", b"other.desktop"), "w", encoding="ascii") as file:
            url = "file://" + urllib.parse.quote(self.home.path("pictures", "quiet"))
            file.write(f"[Desktop Entry]\nType=Link\nName=Other\nURL={url}\n")
        self.show(source(top))
        saver = self.judge(at=15.1)
        days = {os.path.basename(each.path): each.days for each in saver.source_list.records}
        self.assertEqual((days[b"elsewhere"], days[b"quiet"], days[b"one"]), (0, 0, 127))
        # With a source above it, switched off or not, the target has that source's values.
        self.show(source(top), source(self.home.path("pictures"), chance=300, enabled=False))
        saver = self.judge(at=15.2)
        self.assertIn(b"elsewhere/elsewhere.png", self.showable(saver))
        self.assertNotIn(b"elsewhere/below/below.png", self.showable(saver))

    def test_links_in_a_sources_own_folder_count_as_files(self):
        top = self.tree()
        os.symlink(self.home.path("pictures", "elsewhere"), os.path.join(top, b"folderlink"))
        os.symlink(self.home.path("pictures", "elsewhere", "elsewhere.png"),
                   os.path.join(top, b"filelink.png"))
        os.symlink(self.home.path("pictures", "gone.png"), os.path.join(top, b"broken.png"))
        self.show(source(top))
        saver = self.judge(at=9.8)
        base = saver.source_list.records[0]
        self.assertLessEqual({b"folderlink", b"filelink.png", b"broken.png"}, set(base.names))
        self.assertIn(b"top/filelink.png", self.showable(saver))

    def test_a_source_below_a_source(self):
        top = self.tree()
        one, deep = os.path.join(top, b"one"), os.path.join(top, b"one", b"deep")
        self.show(source(top), source(one, chance=20, days=64), source(deep, enabled=False))
        saver = self.judge(at=9.9)
        self.assertNotIn(b"top/one/deep/deep.png", self.showable(saver))
        # The record that the walk above it made keeps the days of then, which are the same.
        record, = (each for each in saver.source_list.records if each.path == one)
        self.assertEqual((record.is_base, record.priority, record.days), (False, 0.2, 64))

    def test_the_longest_beginning_of_a_path_decides(self):
        for folder in ("Pic", "Pictures", "Pictures/sub"):
            self.home.add_pictures(folder, ["a.png", "b.png", "c.png"])
        paths = [self.home.path("pictures", each) for each in ("Pic", "Pictures", "Pictures/sub")]
        os.symlink(paths[2], os.path.join(paths[0], "x"))
        os.makedirs(os.path.join(paths[0], "in"))
        os.symlink(paths[1], os.path.join(paths[0], "in", "link"))
        self.show(source(paths[0], chance=40, screens="1"), source(paths[2], chance=10))
        saver = self.judge(at=12.0)
        values = {os.fsdecode(each.path): (each.priority, each.screens)
                  for each in saver.source_list.records}
        self.assertEqual(values, {paths[0]: (0.4, "1"), paths[1]: (0.4, "1"), paths[2]: (0.1, "")})

    def test_sources_that_are_gone_are_left_out(self):
        here = self.home.add_pictures("here", ["a.png"])
        self.show(source(self.home.path("pictures", "gone")), source(here),
                  source(self.home.path("pictures", "off"), enabled=False))
        self.judge(at=3.3)

    def test_no_pictures_at_all(self):
        self.show(source(self.home.path("pictures")))
        saver = self.judge(at=3.1)
        self.assertEqual(len(saver.source_list.log), 7)  # one miss for each frame

    def test_names_of_every_kind(self):
        names = [b"caf\xe9.png", b"new\nline.png", b"\"quo'te\\\".png", b"tab\there.png",
                 "日本語 ü.png".encode(), b"%41%zz #?.png", b"n" * 251 + b".png", b"\xff\xfe",
                 b" "]
        # A display for each, on which nothing else may be shown.
        folders = [self.home.add_pictures(b"f\xfclder %d" % i, [name])
                   for i, name in enumerate(names)]
        self.show(*(source(folder, screens=str(i)) for i, folder in enumerate(folders, 1)),
                  UsePolaroid=1)
        saver = self.judge(at=0.3, displays=[(320, 200)] * len(names))
        self.assertEqual([os.path.basename(view.cards[0].path) for view in saver.views], names)


class Failures(judge.JudgedCase):
    def show(self, *sources):
        self.home.age_folders()
        self.home.write_preferences({"Sources": list(sources), "UsePolaroid": 0, "Delay": 0.4,
                                     "NumImages": 30})

    def no_pictures(self, folder, count):
        contents = (b"", b"This is text.\n", b"\xff\xd8\xff\xe0 no more", b"\x89PNG\r\n")
        path = self.home.add_pictures(folder, [])
        for i in range(count):
            with open(os.path.join(path, b"%d.jpg" % i), "wb") as file:
                file.write(contents[i % 4])
        return path

    @staticmethod
    def start_that_draws_below(limit, total):
        """A start whose first draw of `total` takes the first `limit`."""
        random = Random()
        for second in range(60):
            start = f"2026-11-21T12:00:{second:02}"
            random.seed(reference_time(start))
            if random.index_between(0, total - 1) < limit:
                return start
        raise AssertionError("no start found")

    def given_up(self, saver):
        return [line.split("'")[1] for line in saver.source_list.log if "Giving up" in line]

    def test_a_folder_without_pictures_is_given_up(self):
        bad = self.no_pictures("bad", 3)
        good = self.home.add_pictures("good", [f"{i}.png" for i in range(12)])
        mixed = self.home.add_pictures("mixed", [f"{i}.png" for i in range(4)])
        self.no_pictures("mixed", 4)
        # Its weight is 2 of 22; what leaves the sum for it is its number of files, once a folder.
        self.show(source(bad, chance=50), source(good), source(mixed))
        saver = self.judge(at=14.9, start=self.start_that_draws_below(2, 22))
        self.assertEqual(self.given_up(saver)[0], os.fsdecode(bad))
        self.assertGreater(len(saver.views[0].cards), 1)

    def test_the_sums_may_wrap_when_a_folder_is_given_up(self):
        bad = self.no_pictures("bad", 6)
        good = self.home.add_pictures("good", ["a.png"])
        more = self.home.add_pictures("more", ["b.png"])
        self.show(source(bad), source(good), source(more))
        saver = self.judge(at=6.2, start=self.start_that_draws_below(6, 8))
        self.assertEqual(self.given_up(saver), [os.fsdecode(bad)])
        self.assertEqual(len(saver.source_list.log), 14)
        for miss in saver.source_list.log[1:]:  # one a frame, of a huge number
            self.assertGreater(int(miss.split()[4].strip(",")), 1 << 50)

    def test_one_folder_after_the_other_is_given_up(self):
        folders = [self.no_pictures(name, count) for name, count in (("a", 1), ("b", 25), ("c", 4))]
        self.show(*map(source, folders))
        saver = self.judge(at=4.2, displays=[(640, 360), (480, 400)])
        self.assertTrue(self.given_up(saver))

    def test_things_that_are_no_files(self):
        odd = self.home.add_pictures("odd", ["a.png"])
        os.mkfifo(os.path.join(odd, b"pipe.png"))
        os.symlink("/dev/zero", os.path.join(odd, b"endless.png"))
        os.symlink("a.png", os.path.join(odd, b"same.png"))
        self.show(source(odd))
        self.judge(at=6.9)


if __name__ == "__main__":
    judge.main()
