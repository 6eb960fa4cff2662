"""Tests of the predictor's arithmetic: curves, single precision, draws, folders."""

import os
import plistlib
import struct
import tempfile
import unittest
import zlib

import pngfile
from folder_walk import FolderCache, Walk, resolve_sources
from keyedarchive import ArchiveError, KeyedArchive
from predict import includes_screen, reference_time, seconds_to_day_change, weekday
from saver_home import source, use_time_zone
from saver_random import Random, float32, float32_of_int
from timing_curves import progress


class TimingCurves(unittest.TestCase):
    def test_hit_the_points_of_their_curve(self):
        for t in (0.1, 0.25, 0.5, 0.9):
            x = 3 * (1 - t) * t * t * 0.58 + t**3
            y = 3 * (1 - t) * t * t + t**3
            self.assertAlmostEqual(progress("easeOut", x), y, places=14)

    def test_ease_in_is_ease_out_backwards(self):
        for x in (0.01, 0.3, 0.77):
            self.assertAlmostEqual(progress("easeIn", x), 1 - progress("easeOut", 1 - x), places=14)

    def test_known_values(self):
        self.assertEqual(progress("linear", 0.375), 0.375)
        self.assertAlmostEqual(progress("default", 0.5), 0.8024033876, places=10)
        self.assertEqual((progress("easeIn", -1), progress("easeIn", 2)), (0, 1))


class SinglePrecision(unittest.TestCase):
    def test_rounds_half_to_even_at_24_bits(self):
        self.assertEqual(float32_of_int(16777217), 16777216.0)
        self.assertEqual(float32_of_int(16777219), 16777220.0)
        self.assertEqual(float32_of_int(2**31 - 1), 2.0**31)
        self.assertEqual(float32_of_int(-16777217), -16777216.0)
        self.assertEqual(float32(0.1), 0.10000000149011612)

    def test_rounds_large_integers_once(self):
        # By way of a double this one would become a tie, and round down.
        self.assertEqual(float32_of_int((1 << 60) + (1 << 36) + 1), float((1 << 60) + (1 << 37)))


class Draws(unittest.TestCase):
    def test_are_the_c_librarys(self):
        random = Random()
        random.seed(1)
        self.assertEqual([random.draw(), random.draw()], [1804289383, 846930886])

    def test_the_largest_number_gives_the_lower_end(self):
        largest = Random(lambda: 2**31 - 1)
        self.assertEqual(largest.int_between(1, 10), 1)
        self.assertEqual(largest.index_between(0, 14), 0)
        self.assertEqual(largest.double_between(2, 5), 5)

    def test_reach_both_ends_and_reversed_ranges(self):
        self.assertEqual(Random(lambda: 0).int_between(1, 10), 1)
        self.assertEqual(Random(lambda: 2**31 - 200).int_between(1, 10), 10)
        self.assertEqual(Random(lambda: 2**31 - 200).int_between(10, 1), 1)
        self.assertEqual(Random(lambda: 2**31 - 1).double_between(10, -20), -20)

    def test_an_empty_range_draws_and_gives_its_lower_end(self):
        drawn = []
        random = Random(lambda: drawn.append(1) or 12345)
        self.assertEqual(random.index_between(0, 2**64 - 1), 0)
        self.assertEqual(len(drawn), 1)


class Calendar(unittest.TestCase):
    def setUp(self):
        use_time_zone()

    def test_counts_from_2001_in_local_time(self):
        self.assertEqual(reference_time("2001-01-01T01:00:00"), 0)
        self.assertEqual(reference_time("2026-07-01T12:00:00"), 804592800)

    def test_knows_the_day_and_its_end(self):
        saturday = reference_time("2026-11-21T23:59:50")
        self.assertEqual(weekday(saturday), 6)
        self.assertEqual(seconds_to_day_change(saturday), 20)
        spring = reference_time("2026-03-29T00:30:00")  # a day of 23 hours
        self.assertEqual(seconds_to_day_change(spring), 22.5 * 3600 + 10)

    def test_screens_strings(self):
        self.assertTrue(includes_screen("12", 1) and includes_screen("", 40))
        self.assertTrue(includes_screen("2", 0) and includes_screen("3,10", 10))
        self.assertFalse(includes_screen("112", 12) or includes_screen("3, 10", 10))


class Folders(unittest.TestCase):
    def test_are_walked_one_level_after_another(self):
        with tempfile.TemporaryDirectory() as top:
            for path in ("a/deep", "b", "b/x.app", "empty/full"):
                os.makedirs(os.path.join(top, path))
            for path in ("one", "a/two", "a/deep/three", "b/four", "b/x.app/five",
                         "empty/full/six"):
                with open(os.path.join(top, path), "wb") as file:
                    file.write(pngfile.encode(1, 1, (0, 0, 0)))
            records = Walk(resolve_sources([source(top)]), FolderCache()).run()
            levels = [os.fsdecode(os.path.relpath(each.path, os.fsencode(top))).count("/")
                      for each in records]
            self.assertEqual(levels, sorted(levels))
            self.assertEqual({name for each in records for name in each.names},
                             {b"one", b"two", b"three", b"four", b"six"})


class PngFiles(unittest.TestCase):
    def picture(self, data):
        with tempfile.NamedTemporaryFile() as file:
            file.write(data)
            file.flush()
            return pngfile.Picture(file.name)

    def test_are_read_as_they_were_written(self):
        picture = self.picture(pngfile.encode(3, 2, (1, 2, 3)))
        self.assertEqual((picture.width, picture.height), (3, 2))
        self.assertEqual(picture.pixel(2, 1), (1, 2, 3))

    def test_every_filter_is_undone(self):
        rows = [bytes([kind, 10, 20, 30, 1, 2, 3]) for kind in range(5)]
        data = pngfile.encode(2, 5, (0, 0, 0))
        plain = zlib.compress((b"\0" + bytes(6)) * 5)
        filtered = zlib.compress(b"".join(rows))
        packed = struct.pack(">I", len(plain)) + b"IDAT" + plain
        self.assertIn(packed, data)
        picture = self.picture(
            data.replace(packed, struct.pack(">I", len(filtered)) + b"IDAT" + filtered))
        # From the top: none, left, above, mean, Paeth.
        self.assertEqual([picture.pixel(1, y) for y in (4, 3, 2, 1, 0)], [
            (1, 2, 3), (11, 22, 33), (12, 24, 36), (17, 34, 51), (31, 62, 93)])


class KeyedArchives(unittest.TestCase):
    def archive(self, **changes):
        uid = plistlib.UID
        objects = ["$null", {"NS.keys": [uid(2)], "NS.objects": [uid(3)], "$class": uid(5)}, "when",
                   {"NS.time": 1.5, "$class": uid(4)},
                   {"$classname": "NSDate", "$classes": ["NSDate", "NSObject"]},
                   {"$classname": "NSDictionary", "$classes": ["NSDictionary", "NSObject"]}]
        return plistlib.dumps({"$archiver": "NSKeyedArchiver", "$version": 100000,
                               "$objects": objects, "$top": {"root": uid(1)}} | changes,
                              fmt=plistlib.FMT_BINARY)

    def test_are_read(self):
        archive = KeyedArchive(self.archive())
        self.assertEqual(archive.root(), {"when": 1.5})
        self.assertEqual(archive.class_names(), {"NSDate", "NSDictionary"})

    def test_are_refused_when_they_are_others(self):
        for changes in ({"$archiver": "Other"}, {"$version": 1}, {"more": 1}):
            with self.assertRaises(ArchiveError):
                KeyedArchive(self.archive(**changes))
        with self.assertRaises(ArchiveError):
            KeyedArchive(self.archive(**{"$top": {"root": plistlib.UID(9)}})).root()


if __name__ == "__main__":
    unittest.main()
