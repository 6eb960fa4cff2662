#!/usr/bin/env python3
"""Runs the saver over folders that lead nowhere, cannot be read, or go away:
python3 folders_test.py --pelmora PATH"""

import os

import faulting
import live

FOLDERS = 300
# A disk of many folders, which is pulled when the file "pull" comes.
STICK = faulting.in_shell(f"""
mkdir -p "$HOME/stick" && mount -t tmpfs none "$HOME/stick"
i=0
while [ $i -lt {FOLDERS} ]; do
  mkdir "$HOME/stick/$i" && cp "$HOME/pictures/0.png" "$HOME/stick/$i"
  i=$((i + 1))
done
(while [ ! -e "$HOME/pull" ] && kill -0 $$; do sleep 0.02; done
 umount -l "$HOME/stick" && mv "$HOME/pull" "$HOME/pulled") >/dev/null 2>&1 &""")


class Folders(faulting.FaultCase):
    def test_passes_over_links_that_lead_nowhere_or_in_circles(self):
        loop = os.path.join(self.home, "loop")
        os.symlink(loop, loop)
        gone, target, link = (os.path.join(self.home, name) for name in ("gone", "target", "link"))
        os.mkdir(gone)
        os.mkdir(target)
        os.symlink(target, link)
        for source in (gone, link):
            self.run_tool("sources", "add", source)
        os.rmdir(gone)
        os.rmdir(target)
        for name, target in (("up", ".."), ("self", "."), ("nowhere", "/nowhere/at/all"),
                             ("loop", "loop"), ("picture.png", "nowhere.png"), ("etc", loop)):
            os.symlink(target, os.path.join(self.pictures, name))
        self.begin()
        self.wait_for_first_picture()
        self.wait_for_cards(4)
        self.end()
        self.assertEqual(self.saver.log.count(b"Error resolving bookmark"), 2, self.log())
        self.assert_files_are_whole()

    def test_passes_over_folders_and_files_that_cannot_be_read(self):
        for name in ("closed", "unlisted", "unsearched"):
            self.add_folder("pictures", name)
        modes = (("closed", 0), ("unlisted", 0o311), ("unsearched", 0o644), ("0.png", 0))
        closed_source = self.add_folder("closed source")
        self.run_tool("sources", "add", closed_source)
        try:
            os.chmod(closed_source, 0)
            for name, mode in modes:
                os.chmod(os.path.join(self.pictures, name), mode)
            self.begin(within=faulting.as_ordinary_user())
            self.wait_for_first_picture()
            self.wait_for_cards(4)
            self.end()
        finally:
            for path in [closed_source, *(os.path.join(self.pictures, name) for name, _ in modes)]:
                os.chmod(path, 0o700)
        self.assert_files_are_whole()

    def test_goes_on_when_a_disk_is_pulled_while_it_is_walked(self):
        stick = os.path.join(self.home, "stick")
        os.mkdir(stick)
        # Each of its folders weighs as much as is subtracted when it is given up.
        self.run_tool("sources", "add", stick, "--chance", "1")
        self.begin(within=STICK)
        self.wait_for_line(b"loaded folder " + os.fsencode(stick), "the walk")
        with open(os.path.join(self.home, "pull"), "wb"):
            pass
        self.wait_until(self.saver, lambda: os.path.exists(os.path.join(self.home, "pulled")),
                        "the disk's end")
        self.wait_for_cards(6)
        self.end()
        self.assert_files_are_whole()

    def test_goes_on_when_a_folder_is_taken_away_while_it_shows(self):
        folder = self.add_folder("taken", count=8)
        self.run_tool("sources", "add", folder)
        self.begin()
        self.wait_for_first_picture()
        os.rename(folder, os.path.join(self.home, "elsewhere"))
        self.wait_for_cards(6)
        self.end()
        self.assert_files_are_whole()


if __name__ == "__main__":
    live.main()
