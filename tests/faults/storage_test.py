#!/usr/bin/env python3
"""Takes the disk, the home or the rights from the running saver:
python3 storage_test.py --pelmora PATH"""

import fcntl
import os
import shutil
import stat
import time

import faulting
import live

# A disk that has no room for one more byte.
FULL_DISK = faulting.in_shell("""
for folder in "$HOME/.cache" "$HOME/.config"; do
  mkdir -p "$folder" && cp -a "$folder" "$HOME/before" && mount -t tmpfs -o size=64k none "$folder"
  cp -a "$HOME/before/." "$folder" && rm -r "$HOME/before"
  cat /dev/zero >"$folder/junk" 2>/dev/null || true
done""")
READ_ONLY_HOME = faulting.in_shell(
    'mount --bind "$HOME" "$HOME" && mount -o remount,bind,ro "$HOME" && cd "$HOME"')
LOCK_LIMIT = 6  # seconds


class Storage(faulting.FaultCase):
    def wait_for_light(self):
        """A picture on the screen, where no file tells of it."""
        self.wait_for_first_picture()
        self.wait_until(self.saver, lambda: self.display.lit(0, 0, 640, 480) > 0.005, "a picture")

    def test_goes_on_with_a_full_disk(self):
        self.begin(within=FULL_DISK)
        self.wait_for_light()
        with self.looking_as_the_saver():
            self.end()
            self.assert_files_are_whole(written=())
        self.assert_said_once(b"Error writing folder cache.")

    def test_keeps_the_preferences_when_the_disk_is_full(self):
        copy = 'cp "$HOME/.config/Pelmora/Preferences.plist" "$HOME/after"'
        within = (*FULL_DISK, "sh", "-c", f'"$@"; status=$?; {copy}; exit $status', "sh")
        done, _ = self.tool("defaults", "write", "NumImages", "7", within=within)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr.count(b"\n"), 1, done.stderr)
        self.assertIn(b"No space left on device", done.stderr)
        with open(os.path.join(self.home, ".config/Pelmora/Preferences.plist"), "rb") as before:
            with open(os.path.join(self.home, "after"), "rb") as after:
                self.assertEqual(before.read(), after.read())

    def test_goes_on_in_a_home_that_cannot_be_written(self):
        os.mkdir(os.path.join(self.home, ".cache"))
        self.begin(within=READ_ONLY_HOME)
        self.wait_for_light()
        self.end()
        self.assert_said_once(b"creating cache folder: Read-only file system")
        self.assert_files_are_whole(written=())
        self.assertFalse(os.path.exists(os.path.join(self.home, ".cache", "Pelmora")))

    def test_goes_on_without_a_home(self):
        system = {key: value for key, value in self.env.items() if not key.startswith("XDG_")}
        for home in (None, "", os.path.join(self.home, "nowhere"), "relative/home", "/dev/null"):
            with self.subTest(home=home):
                self.env = {key: value for key, value in system.items() if key != "HOME"}
                if home is not None:
                    self.env["HOME"] = home
                # The folder of pictures is the user's own, by the configuration that is left.
                self.env["XDG_CONFIG_HOME"] = os.path.join(self.home, ".config")
                self.begin()
                self.wait_for_light()
                self.end()
                self.assert_files_are_whole(written=())
        shutil.rmtree(os.path.join(self.home, "nowhere"), ignore_errors=True)

    def test_keeps_what_it_writes_to_the_user_whatever_the_mask_is(self):
        for mask in ("0", "022"):
            with self.subTest(mask=mask):
                shutil.rmtree(os.path.join(self.home, ".config"))
                shutil.rmtree(os.path.join(self.home, ".cache"), ignore_errors=True)
                within = faulting.in_shell(f"umask {mask}", namespace=False)
                for words in (("sources", "add", self.pictures),
                              ("defaults", "write", "Delay", str(live.DELAY)),
                              ("defaults", "write", "FilterPredicate", self.filter)):
                    done, _ = self.tool(*words, within=within)
                    self.assertEqual(done.returncode, 0, done.stderr)
                self.begin(within=within)
                self.wait_for_light()
                self.wait_until(self.saver, lambda: os.path.exists(
                    os.path.join(self.home, ".cache/Pelmora/Metadata.sqlite-wal")), "the index")
                self.assert_private()
                self.end()
                self.assert_private()
                self.assert_files_are_whole()

    def assert_private(self):
        kept = [os.path.join(self.home, folder, "Pelmora") for folder in (".cache", ".config")]
        for top in kept:
            for folder, _, names in os.walk(top):
                self.assertEqual(stat.S_IMODE(os.stat(folder).st_mode), 0o700, folder)
                for name in names:
                    path = os.path.join(folder, name)
                    self.assertEqual(stat.S_IMODE(os.stat(path).st_mode), 0o600, path)

    def test_goes_on_where_the_mask_takes_all_rights(self):
        for name in (".cache", ".config/none"):
            os.makedirs(os.path.join(self.home, name), exist_ok=True)
        self.begin(within=(*faulting.as_ordinary_user(),
                           *faulting.in_shell("umask 0777", namespace=False)))
        self.wait_for_light()
        self.end()
        made = os.path.join(self.home, ".cache", "Pelmora")
        self.assertEqual(stat.S_IMODE(os.stat(made).st_mode), 0)
        os.chmod(made, 0o700)

    def test_does_not_wait_for_ever_for_another_program_that_writes_preferences(self):
        preferences = os.path.join(self.home, ".config/Pelmora/Preferences.plist")
        with open(preferences, "rb") as file:
            before = file.read()
        with open(preferences + ".lock", "wb") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            done, took = self.tool("defaults", "write", "NumImages", "7")
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"Another program holds it locked", done.stderr)
        self.assertLess(took, LOCK_LIMIT)
        with open(preferences, "rb") as file:
            self.assertEqual(file.read(), before)

    def test_starts_anew_from_files_that_are_damaged(self):
        self.begin()
        self.wait_for_first_picture()
        self.wait_for_cards()
        self.end()
        for name in (faulting.CACHE, faulting.INDEX):
            with open(os.path.join(self.kept, name), "r+b") as file:
                file.write(os.urandom(4096))
        self.begin()
        self.wait_for_first_picture()
        self.wait_for_cards()
        self.end()
        self.assert_said_once(b"Error unarchiving folder cache")
        self.assert_said_once(b"the index of metadata begins anew")
        self.assert_files_are_whole()
        self.assert_nothing_is_left_over()


if __name__ == "__main__":
    live.main()
