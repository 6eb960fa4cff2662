"""What a run leaves behind: the folder cache and the display lists."""

import os

import judge
from folder_walk import DATE_TOLERANCE
from keyedarchive import KeyedArchive
from predict import read_cache
from saver_home import LONG_AGO, source


class SavedFilesCase(judge.JudgedCase):
    def show(self, *sources, **preferences):
        self.home.write_preferences({"Sources": list(sources), "UsePolaroid": 0} | preferences)

    def tree(self):
        top = self.home.add_pictures("top", ["a.png", "b.png"])
        for folder in ("top/one", "top/one/deep", "top/two", "top/two/Old.app"):
            self.home.add_pictures(folder, [os.path.basename(folder) + ".png"])
        os.mkdir(os.path.join(top, b"empty"))
        return top


class FolderCacheFile(SavedFilesCase):
    def archived(self):
        with open(self.home.cache_path, "rb") as file:
            return KeyedArchive(file.read())

    def assert_cache_holds(self, expected):
        """The file against the entries that a save keeps."""
        found = read_cache(self.home.cache_path).entries
        self.assertEqual(sorted(found), sorted(expected))
        for path, entry in expected.items():
            self.assertEqual(found[path].names, entry.names, path)
            self.assertEqual(found[path].folder_names, entry.folder_names, path)
            self.assertAlmostEqual(found[path].mdate, entry.mdate, delta=DATE_TOLERANCE)
            judge.JudgedCase.compared += 3

    def test_tells_what_the_disk_holds(self):
        self.show(source(self.tree()))
        self.home.age_folders()
        saver = self.judge()
        self.assert_cache_holds(saver.cache.saved())
        self.assertEqual(len(saver.cache.saved()), 5)

    def test_is_a_keyed_archive_of_plain_classes(self):
        self.show(source(self.tree()))
        self.home.age_folders()
        self.judge()
        archive = self.archived()
        self.assertLessEqual(archive.class_names(), {
            "NSDictionary", "NSMutableDictionary", "NSArray", "NSMutableArray", "NSDate"})
        for folder, entry in archive.root().items():
            self.assertLessEqual(set(entry), {"mdate", "names", "folderNames"}, folder)

    def test_keeps_dates_to_the_nanosecond(self):
        self.show(source(self.home.add_pictures("a", ["a.png"])))
        for nanoseconds in (0, 1000, 999999999):
            self.home.age_folders(nanoseconds)
            self.judge()
            entry, = self.archived().root().values()
            self.assertAlmostEqual(entry["mdate"] + 978307200 - LONG_AGO, nanoseconds / 1e9,
                                   delta=DATE_TOLERANCE)
            os.remove(self.home.cache_path)

    def test_keeps_folders_that_have_just_changed(self):
        self.show(source(self.tree()))
        saver = self.judge()
        self.assert_cache_holds(saver.cache.saved())

    def test_an_unchanged_second_run_leaves_it_alone(self):
        self.show(source(self.tree()))
        self.home.age_folders()
        self.judge()
        before = os.stat(self.home.cache_path)
        saver = self.judge(cache=read_cache(self.home.cache_path), at=2.5)
        self.assertFalse(saver.cache.dirty)
        after = os.stat(self.home.cache_path)
        self.assertEqual((before.st_ino, before.st_mtime_ns), (after.st_ino, after.st_mtime_ns))

    def test_the_cached_names_stand_while_the_date_does(self):
        top = self.tree()
        self.show(source(top), Delay=0.4, NumImages=20)
        self.home.age_folders()
        self.judge()
        self.home.add_pictures("top", ["new.png"])
        self.home.add_pictures("top/two", ["newer.png"])
        self.home.age_folders()
        saver = self.judge(cache=read_cache(self.home.cache_path), at=5.7)
        self.assertNotIn(b"new.png", saver.source_list.records[0].names)

    def test_a_changed_folder_is_listed_anew_and_the_unused_are_dropped(self):
        top = self.tree()
        other = self.home.add_pictures("other", ["c.png"])
        self.show(source(top), source(other))
        self.home.age_folders()
        self.judge()
        self.assertIn(other, read_cache(self.home.cache_path).entries)
        self.home.add_pictures("top/one", ["new.png"])
        self.home.add_pictures("top/one/newer", ["d.png"])
        self.show(source(top), Delay=0.4, NumImages=20)
        saver = self.judge(cache=read_cache(self.home.cache_path), at=6.8)
        kept = saver.cache.saved()
        self.assert_cache_holds(kept)
        self.assertNotIn(other, kept)
        self.assertIn(os.path.join(top, b"one", b"newer"), kept)

    def test_names_that_are_no_text_are_kept_as_data(self):
        names = [b"caf\xe9.png", "ü\n.png".encode(), b"\xff\xfe"]
        folder = self.home.add_pictures(b"f\xfc", names)
        self.home.add_pictures(os.path.join(folder, b"s\xfcb"), [b"x.png"])
        self.show(source(folder))
        self.home.age_folders()
        saver = self.judge()
        self.assert_cache_holds(saver.cache.saved())
        entries = self.archived().root()
        self.assertTrue(all(isinstance(path, bytes) for path in entries))
        self.assertEqual({type(name) for name in entries[folder]["names"]}, {str, bytes})
        # And they are found again.
        self.judge(cache=read_cache(self.home.cache_path), at=5.2)

    def test_rubbish_in_its_place_is_written_over(self):
        self.show(source(self.tree()))
        self.home.age_folders()
        os.makedirs(os.path.dirname(self.home.cache_path))
        for rubbish in (b"", b"bplist00", b"bplist00" + b"\xff" * 200, b"text\n" * 20):
            with open(self.home.cache_path, "wb") as file:
                file.write(rubbish)
            saver = self.judge()
            self.assert_cache_holds(saver.cache.saved())


class DisplayLists(SavedFilesCase):
    def assert_list_holds(self, name, view):
        with open(self.home.path("cache", "Pelmora", name), "rb") as file:
            data = file.read()
        self.assertTrue(data.startswith(b"\xff\xfe"), data[:4])
        paths = "".join(card.path.decode(errors="replace") + "\r" for card in view.cards)
        self.assertEqual(data[2:].decode("utf-16-le"), paths)
        judge.JudgedCase.compared += 1

    def test_name_the_cards_on_each_display(self):
        self.show(source(self.tree()), Delay=0.4, NumImages=3)
        saver = self.judge(at=4.7, displays=[(640, 360), (480, 400)])
        for view in saver.views:
            self.assertEqual(len(view.cards), 3)
            self.assert_list_holds(f"Screen {view.screen} Log.txt", view)

    def test_name_the_cards_of_the_preview(self):
        self.show(source(self.tree()))
        saver = self.judge(at=5.1, preview=(400, 300))
        self.assert_list_holds("System Prefs Log.txt", saver.views[0])

    def test_show_what_is_no_text_with_replacement_characters(self):
        names = [b"caf\xe9.png", "日本 \U0001f600.png".encode(), b"a\nb.png", b"\xff.png"]
        self.show(source(self.home.add_pictures("names", names)), Delay=0.4, NumImages=20)
        saver = self.judge(at=7.7)
        self.assert_list_holds("Screen 1 Log.txt", saver.views[0])

    def test_are_empty_when_there_is_no_card(self):
        self.show(source(self.home.path("pictures")))
        self.judge()
        with open(self.home.path("cache", "Pelmora", "Screen 1 Log.txt"), "rb") as file:
            self.assertEqual(file.read(), b"")


if __name__ == "__main__":
    judge.main()
