#!/usr/bin/python3
"""Works the settings as users do, with pointer and keys under a window manager, and by way of
assistive technology: live_settings_test.py --pelmora PATH"""

import os
import plistlib
import shutil
import subprocess
import tempfile

import accessible
import live
import pngfile


# Columns of the list.
ON, PICTURES, DAYS, CHANCE, SCREENS = 0, 2, 3, 4, 5


class Settings(live.LiveCase):
    screen = "1600x1000"

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        # One bus for all: assistive technology connects once in the life of a process.
        folder = tempfile.mkdtemp()
        cls.addClassCleanup(shutil.rmtree, folder)
        config = os.path.join(os.path.dirname(os.path.abspath(__file__)), "dbus-session.conf")
        bus = subprocess.Popen(["dbus-daemon", f"--config-file={config}", "--nofork",
                                f"--address=unix:path={folder}/bus", "--print-address"],
                               stdout=subprocess.PIPE)
        cls.addClassCleanup(bus.wait)
        cls.addClassCleanup(bus.kill)
        cls.addClassCleanup(bus.stdout.close)
        cls.bus = {"DBUS_SESSION_BUS_ADDRESS": bus.stdout.readline().decode().strip()}
        accessible.start_service(cls, {"PATH": os.environ["PATH"], "HOME": folder} | cls.bus)

    def setUp(self):
        super().setUp()
        self.env |= self.bus | {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        manager = subprocess.Popen(["openbox"], env=self.env, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        self.addCleanup(manager.wait)
        self.addCleanup(manager.kill)
        accessible.wait_until(self.is_managed, "the window manager")

    def is_managed(self):
        return subprocess.run(["xdotool", "get_desktop"], env=self.env, capture_output=True,
                              timeout=live.LIMIT).returncode == 0

    # What a user does -----------------------------------------------------------------------------

    def xdotool(self, *words):
        subprocess.run(["xdotool", *words], env=self.env, check=True, timeout=live.LIMIT)

    def click(self, node):
        x, y = accessible.middle(node)
        self.xdotool("mousemove", str(x), str(y), "click", "1")

    def type(self, text):
        self.xdotool("type", "--delay", "1", text)

    def key(self, *keys):
        self.xdotool("key", *keys)

    def wait_for(self, role, name, within=None):
        def find():
            root = within or accessible.program("pelmora")
            return root and accessible.find(root, role, name)
        return accessible.wait_until(find, f"the {role} '{name}'")

    def wait_for_window(self, name):
        """Until it is where the window manager puts it, and has the keys."""
        accessible.wait_until(lambda: accessible.is_active(self.wait_for("dialog", name)),
                              f"the window '{name}'")

    def open_settings(self):
        settings = self.start("settings")
        self.wait_for_window("Pelmora Screen Saver")
        return settings

    def open_options(self):
        self.click(self.wait_for("push button", "Options…"))
        self.wait_for_window("Pelmora Options")

    def preferences(self):
        with open(os.path.join(self.home, ".config", "Pelmora", "Preferences.plist"), "rb") as file:
            return file.read()

    def add_folder(self, path):
        self.click(self.wait_for("push button", "Add Folders"))
        self.wait_for_window("Add Folders")
        self.type(path)
        self.key("Return")
        accessible.wait_until(lambda: self.cell(os.path.basename(path)), f"the row of {path}")

    def cell(self, folder, column=1):
        """A cell of the row of a folder, whose path ends so."""
        table = accessible.find(accessible.program("pelmora"), "table", "Folders")
        rows = table.get_n_rows()
        for row in range(rows):
            if table.get_accessible_at(row, 1).get_name().endswith("/" + folder):
                return table.get_accessible_at(row, column)
        return None

    def choose_no_days(self, folder):
        self.click(self.cell(folder, DAYS))
        self.key("Down", "Down", "Return")  # behind "Every Day"
        accessible.wait_until(lambda: self.cell(folder, DAYS).get_name() == "No Days", "no days")

    def edit(self, folder, column, text):
        self.click(self.cell(folder, column))
        self.key("F2", "ctrl+a")
        self.type(text)
        self.key("Return")
        accessible.wait_until(lambda: self.cell(folder, column).get_name() == text,
                              f"{text} in the row of {folder}")

    def make_pictures(self, folder, *names):
        path = os.path.join(self.home, folder)
        os.mkdir(path)
        for name in names:
            with open(os.path.join(path, name), "wb") as file:
                file.write(pngfile.encode(60, 40, (200, 90, 90)))
        return path

    def shown(self, count):
        """The files that a run of the saver shows, that many of them at least."""
        path = os.path.join(self.home, ".cache", "Pelmora", "Screen 1 Log.txt")
        names = set()

        def has_shown():
            if not os.path.exists(path):
                return False
            with open(path, encoding="utf-16", errors="ignore") as file:
                names.update(line.strip() for line in file if line.strip())
            return len(names) >= count
        saver = self.start("window", "--size", "300x200")
        self.wait_until(saver, has_shown, "the pictures")
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)
        return names

    def test_chooses_exactly_the_pictures_that_are_shown(self):
        wanted = self.make_pictures("wanted", "show 1.png", "show 2.png", "other.png")
        self.make_pictures("never", "show 3.png")
        settings = self.open_settings()
        self.open_options()
        self.add_folder(wanted)
        self.add_folder(os.path.join(self.home, "never"))
        self.choose_no_days("never")
        self.edit("wanted", CHANCE, "55.5")
        self.edit("wanted", SCREENS, "1, 3")
        self.click(self.wait_for("text", "Text"))
        self.type("show")
        self.click(self.wait_for("push button", "OK"))
        self.click(self.wait_for("push button", "Close"))
        self.assertEqual(self.finish(settings), 0)

        stored = plistlib.loads(self.preferences())["Sources"]
        self.assertEqual([(source["days"], source["chance"], source["screens"]) for source in stored],
                         [(127, 100, ""), (127, 55.5, "1,3"), (0, 100, "")])
        self.assertEqual(self.shown(2), {os.path.join(wanted, f"show {i}.png") for i in (1, 2)})

    def test_leaves_the_preferences_alone_when_it_is_cancelled(self):
        def cancelled():
            settings = self.open_settings()
            self.open_options()
            self.click(self.cell("pictures"))
            self.key("Delete")
            self.click(self.wait_for("check box", "Show pictures as instant photos"))
            self.click(self.wait_for("push button", "Cancel"))
            self.click(self.wait_for("push button", "Close"))
            self.assertEqual(self.finish(settings), 0)
            return self.preferences()

        before = plistlib.loads(self.preferences())
        first = cancelled()
        after = plistlib.loads(first)
        self.assertEqual(set(after.pop("ConfigWindowSize")), {"Width", "Height"})
        self.assertEqual(after, before)
        self.assertEqual(cancelled(), first)

    # What assistive technology does ---------------------------------------------------------------

    def all(self, role, name):
        return [each for each in accessible.walk(accessible.program("pelmora"))
                if each.get_role_name() == role and each.get_name() == name
                and accessible.is_showing(each)]

    def press(self, name, which=0):
        accessible.act(self.all("push button", name)[which])

    def change_selected(self, *items):
        """Chooses in the menu for the selected folders, and in those that its items open."""
        accessible.open_menu(self.wait_for("push button", "Change Selected Folders"))
        for item in items:
            found = accessible.wait_until(
                lambda: next((each for role in ("menu item", "check menu item", "menu")
                              for each in self.all(role, item)), None), f"the item '{item}'")
            accessible.act(found)

    def test_has_a_name_for_all_that_can_be_focused(self):
        settings = self.open_settings()
        self.open_options()
        accessible.wait_until(lambda: self.cell("pictures", PICTURES).get_name() == "8", "the count")
        nodes = [each for each in accessible.walk(accessible.program("pelmora"))
                 if accessible.is_focusable(each) and accessible.is_showing(each)]
        self.assertGreater(len(nodes), 20)
        self.assertEqual([each.get_role_name() for each in nodes if not each.get_name()], [])
        for name in ("How the track is shown", "Attribute", "Operator", "Match"):
            self.assertIn(name, [each.get_description() for each in nodes])
        settings.terminate()
        self.assertEqual(self.finish(settings), 0)

    def test_is_worked_by_assistive_technology(self):
        settings = self.open_settings()
        self.open_options()
        for name in ("Show pictures as instant photos", "Show the track that is playing"):
            box = self.wait_for("check box", name)
            was_checked = accessible.is_checked(box)
            accessible.act(box)
            accessible.wait_until(lambda: accessible.is_checked(box) != was_checked, name)
        accessible.set_value(self.wait_for("slider", "Pictures on each display"), 9)
        self.wait_for("label", "9")
        accessible.set_value(self.wait_for("spin button", "New picture after, in seconds"), 7)
        accessible.act(self.wait_for("combo box", "Fades in and out"))
        self.key("Down", "Return")
        self.wait_for("combo box", "Flies around")

        self.press("Add row")
        accessible.wait_until(lambda: len(self.all("text", "Text")) == 2, "a second row")
        for field, text in zip(self.all("text", "Text"), ("beach", "sun")):
            accessible.set_text(field, text)
        self.press("Add group")
        accessible.wait_until(lambda: len(self.all("combo box", "Any of the following")) == 1,
                              "a group")
        self.press("Remove", -1)
        accessible.wait_until(lambda: len(self.all("text", "Text")) == 2, "no group any more")

        accessible.select_row(self.wait_for("table", "Folders"), 0)
        self.change_selected("On")
        accessible.wait_until(lambda: self.cell("pictures", ON).get_name() == "Off", "a folder off")
        for column, *items in ((DAYS, "Days", "No Days"), (CHANCE, "Chance", "25"),
                               (SCREENS, "Screens", "1")):
            self.change_selected(*items)
            accessible.wait_until(lambda: self.cell("pictures", column).get_name() == items[-1],
                                  f"{items[-1]} in the list")
        self.change_selected("Chance", "Other…")
        self.key("ctrl+a")  # the field has the keys
        self.type("12.5")
        self.key("Return")
        accessible.wait_until(lambda: self.cell("pictures", CHANCE).get_name() == "12.5", "12.5")
        self.press("OK")
        self.press("Close")
        self.assertEqual(self.finish(settings), 0)
        stored = plistlib.loads(self.preferences())
        self.assertEqual([stored[key] for key in ("UsePolaroid", "ShowiTunesTrack", "NumImages",
                                                  "Delay", "iTunesTrackType")], [0, 1, 9, 7.0, 2])
        source = stored["Sources"][0]
        self.assertEqual([source[key] for key in ("enabled", "days", "chance", "screens")],
                         [False, 0, 12.5, "1"])
        for text in (b"beach", b"sun"):
            self.assertIn(text, stored["FilterPredicate"])


if __name__ == "__main__":
    live.main()
