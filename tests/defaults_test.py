"""The preference commands: what `defaults` and `sources` say, and what they leave in the file."""

import os
import plistlib
import stat

import judge
from folder_walk import bookmarked_path
from saver_home import source

TYPES = {"UsePolaroid": int, "ShowiTunesTrack": int, "iTunesTrackType": int, "NumImages": int,
         "Delay": float}


class PreferencesCase(judge.JudgedCase):
    def refuse(self, *words, status=2, named=""):
        """Runs what must fail: with that status, a message that has `named`, nothing on output."""
        finished = self.home.run(*words)
        said = finished.stderr.decode(errors="replace")
        self.assertEqual(finished.returncode, status, f"{words}: {said}")
        self.assertEqual(finished.stdout, b"")
        self.assertTrue(said.startswith("pelmora") and said.endswith("\n"), said)
        self.assertIn(named, said)
        return said

    def say(self, *words):
        return self.run_well(*words).stdout

    def assert_stored(self, **expected):
        stored = self.home.read_preferences()
        for key, value in expected.items():
            self.assertEqual(stored.get(key), value, key)
            self.assertIs(type(stored.get(key)), type(value), key)
            judge.JudgedCase.compared += 1
        return stored


class Defaults(PreferencesCase):
    def test_what_was_never_written_reads_as_its_default(self):
        for key, value in (("UsePolaroid", b"1"), ("ShowiTunesTrack", b"0"), ("NumImages", b"5"),
                           ("iTunesTrackType", b"1")):
            self.assertEqual(self.say("defaults", "read", key), value + b"\n")
        self.assertEqual(float(self.say("defaults", "read", "Delay")), 4.0)
        everything = self.say("defaults", "read").decode()
        for key in ("Sources", *TYPES):
            self.assertIn(key, everything)
        self.assertFalse(os.path.exists(self.home.preferences_path), "reading writes nothing")

    def test_values_are_written_with_their_types(self):
        for key, text, value in (("UsePolaroid", "0", 0), ("ShowiTunesTrack", "1", 1),
                                 ("iTunesTrackType", "2", 2), ("NumImages", "12", 12),
                                 ("Delay", "7", 7.0), ("Delay", "0.75", 0.75)):
            self.say("defaults", "write", key, text)
            self.assert_stored(**{key: value})
            self.assertEqual(float(self.say("defaults", "read", key)), float(text))
        self.assertEqual({key: type(value) for key, value in self.home.read_preferences().items()},
                         TYPES)

    def test_the_file_is_a_binary_property_list_for_its_owner_alone(self):
        self.say("defaults", "write", "NumImages", "3")
        with open(self.home.preferences_path, "rb") as file:
            self.assertEqual(file.read(8), b"bplist00")
        self.assertEqual(stat.S_IMODE(os.stat(self.home.preferences_path).st_mode), 0o600)

    def test_a_written_value_is_what_the_saver_goes_by(self):
        folder = self.home.add_pictures("a", ["a.png", "b.png", "c.png"])
        self.home.age_folders()
        self.home.write_preferences({"Sources": [source(folder)]})
        self.say("defaults", "write", "Delay", "0.75")
        self.say("defaults", "write", "NumImages", "2")
        self.say("defaults", "write", "UsePolaroid", "0")
        self.judge(at=4.1)

    def test_other_values_stay_as_they_are(self):
        kept = {"Sources": [source(self.home.path("pictures"))],
                "Other": {"a": [1, 2.5, b"x", True]},
                "FilterPredicate": b"\x00\x01", "NumImages": 2**40}
        self.home.write_preferences(kept)
        self.say("defaults", "write", "Delay", "9")
        self.assertEqual(self.home.read_preferences(), kept | {"Delay": 9.0})

    def test_a_deleted_value_reads_as_its_default(self):
        self.say("defaults", "write", "NumImages", "9")
        self.say("defaults", "write", "Delay", "9")
        self.say("defaults", "delete", "NumImages")
        self.assertEqual(self.home.read_preferences(), {"Delay": 9.0})
        self.assertEqual(self.say("defaults", "read", "NumImages"), b"5\n")
        self.refuse("defaults", "delete", "NumImages", status=1, named="NumImages")

    def test_an_unknown_key_is_told(self):
        self.refuse("defaults", "read", "Colour", status=1, named="Colour")

    def test_a_wrong_command_line_is_refused_clearly(self):
        for words, named in ((["defaults"], "defaults"), (["defaults", "show"], "defaults"),
                             (["defaults", "read", "a", "b"], "defaults"),
                             (["defaults", "write", "Delay"], "defaults"),
                             (["defaults", "delete"], "defaults"),
                             (["defaults", "--all"], "--all"),
                             (["defaults", "write", "Delay", "soon"], "soon"),
                             (["defaults", "write", "Delay", "nan"], "nan"),
                             (["defaults", "write", "Delay", "-1"], "-1"),
                             (["defaults", "write", "NumImages", "5.5"], "5.5"),
                             (["defaults", "write", "NumImages", ""], "NumImages"),
                             (["defaults", "write", "UsePolaroid", "maybe"], "maybe")):
            with self.subTest(words=words):
                self.refuse(*words, named=named)
        self.assertFalse(os.path.exists(self.home.preferences_path))

    def test_help_is_no_error(self):
        for command in ("defaults", "sources"):
            self.assertIn(b"usage: pelmora " + command.encode(), self.say(command, "--help"))

    def test_a_damaged_file_is_kept_beside_and_told(self):
        for rubbish in (b"This is no property list.\n", b"bplist00" + b"\xff" * 60):
            self.home.write_preferences({})
            with open(self.home.preferences_path, "wb") as file:
                file.write(rubbish)
            status, said = self.home.run_at_terminal("defaults", "write", "NumImages", "4")
            self.assertEqual(status, 0)
            self.assertIn(b"damaged", said)
            self.assertIn(os.fsencode(self.home.preferences_path), said)
            self.assertEqual(self.home.read_preferences(), {"NumImages": 4})
            self.assertIn(rubbish, self.contents_of_configuration())

    def contents_of_configuration(self):
        folder, contents = os.path.dirname(self.home.preferences_path), []
        for name in os.listdir(folder):
            with open(os.path.join(folder, name), "rb") as file:
                contents.append(file.read())
        return contents


class Sources(PreferencesCase):
    def setUp(self):
        super().setUp()
        self.home.write_preferences({"Sources": []})

    def add(self, folder, *options):
        self.say("sources", "add", folder, *options)
        return self.home.read_preferences()["Sources"][-1]

    def assert_entry(self, entry, path, **expected):
        self.assertEqual(set(entry), {"bookmark", "enabled", "chance", "days", "screens"})
        self.assertEqual(bookmarked_path(entry["bookmark"]), os.fsencode(path))
        values = {"enabled": True, "chance": 100.0, "days": 127, "screens": ""} | expected
        for key, value in values.items():
            self.assertEqual(entry[key], value, key)
            self.assertIs(type(entry[key]), type(value), key)
            judge.JudgedCase.compared += 1

    def folder(self, name):
        return self.home.add_pictures(name, ["a.png"])

    def test_an_added_folder_has_the_five_values(self):
        a, b, c = self.folder("a"), self.folder("b"), self.folder("c")
        self.assert_entry(self.add(a), a)
        self.assert_entry(self.add(b, "--chance", "12.5", "--days", "sun,mon", "--screens", "1,2",
                                   "--disabled"),
                          b, chance=12.5, days=3, screens="1,2", enabled=False)
        self.assert_entry(self.add("--days", "sat", c), c, days=64)
        self.assertEqual(len(self.home.read_preferences()["Sources"]), 3)

    def test_a_relative_folder_is_stored_whole(self):
        folder = self.folder("a")
        self.assert_entry(self.add("./pictures/a/"), folder)

    def test_added_folders_are_shown(self):
        self.add(self.folder("a"), "--chance", "50")
        self.add(self.folder("b"), "--screens", "2")
        self.add(self.folder("c"), "--disabled")
        self.home.age_folders()
        saver = self.judge(at=4.9)
        self.assertEqual(len(saver.source_list.records), 2)

    def test_the_first_one_added_follows_the_pictures_folder(self):
        os.remove(self.home.preferences_path)
        pictures = self.folder("own")
        with open(self.home.path("config", "user-dirs.dirs"), "wb") as file:
            file.write(b'XDG_PICTURES_DIR="' + pictures + b'"\n')
        added = self.folder("added")
        self.add(added)
        self.assertEqual([bookmarked_path(entry["bookmark"])
                          for entry in self.home.read_preferences()["Sources"]], [pictures, added])

    def test_the_list_tells_each_entry(self):
        a, b = self.folder("a"), self.folder("b")
        self.assertEqual(self.say("sources", "list"), b"")
        self.add(a)
        self.add(b, "--chance", "25", "--days", "mon,fri", "--screens", "2", "--disabled")
        lines = self.say("sources", "list").splitlines()
        self.assertEqual(len(lines), 2)
        self.assertIn(a, lines[0])
        for part in (b, b"25", b"mon,fri", b"2", b"off"):
            self.assertIn(part, lines[1])
        os.rename(a, a + b".gone")
        os.rename(b, b + b".gone")
        os.remove(os.path.join(b + b".gone", b"a.png"))
        self.assertEqual(len(self.say("sources", "list").splitlines()), 2)

    def test_a_removed_folder_is_gone_from_the_list(self):
        a, b = self.folder("a"), self.folder("b")
        self.add(a)
        self.add(b)
        self.say("sources", "remove", a)
        entry, = self.home.read_preferences()["Sources"]
        self.assert_entry(entry, b)
        self.refuse("sources", "remove", a, status=1, named=os.fsdecode(a))
        os.remove(os.path.join(b, b"a.png"))
        os.rmdir(b)
        self.say("sources", "remove", b)
        self.assertEqual(self.home.read_preferences()["Sources"], [])

    def test_names_that_are_no_text(self):
        folder = self.folder(b"f\xfc\xff \n")
        self.assert_entry(self.add(folder), folder)
        lines = self.say("sources", "list").splitlines()
        self.assertEqual(len(lines), 1)
        lines[0].decode()  # what is printed is text
        self.home.age_folders()
        self.judge(at=0.4)
        self.say("sources", "remove", folder)
        self.assertEqual(self.home.read_preferences()["Sources"], [])

    def test_a_folder_is_added_once(self):
        folder = self.folder("a")
        self.add(folder)
        self.refuse("sources", "add", folder, status=1, named=os.fsdecode(folder))
        self.assertEqual(len(self.home.read_preferences()["Sources"]), 1)

    def test_what_is_no_folder_is_told(self):
        picture = os.path.join(self.folder("a"), b"a.png")
        gone = os.fsencode(self.home.path("gone"))
        for path in (picture, gone):
            self.refuse("sources", "add", path, status=1, named=os.fsdecode(path))
        self.assertEqual(self.home.read_preferences(), {"Sources": []})

    def test_a_wrong_command_line_is_refused_clearly(self):
        folder = self.folder("a")
        for words, named in ((["sources"], "sources"), (["sources", "show"], "sources"),
                             (["sources", "add"], "add"), (["sources", "remove"], "remove"),
                             (["sources", "list", "more"], "sources"),
                             (["sources", "add", folder, "--chance", "0"], "--chance"),
                             (["sources", "add", folder, "--chance", "101"], "--chance"),
                             (["sources", "add", folder, "--chance", "much"], "much"),
                             (["sources", "add", folder, "--days", "sun,someday"], "someday"),
                             (["sources", "add", folder, "--screens", "1,x"], "x"),
                             (["sources", "add", folder, "--screens", "1, 2"], "--screens"),
                             (["sources", "add", folder, "--colour"], "--colour")):
            with self.subTest(words=words):
                self.refuse(*words, named=named)
        self.assertEqual(self.home.read_preferences(), {"Sources": []})

    def test_entries_of_other_makes_are_left_alone(self):
        stored = {"Sources": [source(self.folder("a"), chance=40.0), {"enabled": True}, "rubbish"]}
        self.home.write_preferences(stored)
        added = self.folder("b")
        self.add(added)
        self.assertEqual(self.home.read_preferences()["Sources"][:3], stored["Sources"])
        self.assertIn(b"40", self.say("sources", "list"))

    def test_xml_preferences_are_read(self):
        folder = self.folder("a")
        self.home.write_preferences({"Sources": [source(folder)], "Delay": 2.5},
                                    fmt=plistlib.FMT_XML)
        self.assertIn(folder, self.say("sources", "list"))
        self.assertEqual(float(self.say("defaults", "read", "Delay")), 2.5)


if __name__ == "__main__":
    judge.main()
