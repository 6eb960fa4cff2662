"""What tests of faults share: a saver in a small window, from which something of the system is
taken, and a judge of the files that it leaves behind."""

import contextlib
import ctypes
import os
import plistlib
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

import keyedarchive  # noqa: E402 (the folder above is searched only now)
import live  # noqa: E402
import pngfile  # noqa: E402

FIRST_PICTURE = b"The first picture is up."
# Seconds, from the signal on; a sanitizer then looks for leaks.
ENDING_LIMIT = 12 if "ASAN_OPTIONS" in os.environ else 4
SET_CHILD_SUBREAPER = 36

CACHE, INDEX = "FolderCache.plist", "Metadata.sqlite"

# Runs a command where nobody else sees what it mounts.
NAMESPACE = ("unshare", "--user", "--map-root-user", "--mount")


def in_shell(preparation, namespace=True):
    """A command that goes before another one, in a namespace of mounts: first does the preparation."""
    shell = ("sh", "-ec", preparation + '\nexec "$@"', "sh")
    return (*NAMESPACE, *shell) if namespace else shell


def as_ordinary_user():
    """What goes before a command for which the rights of files are to count, even those of root."""
    if os.geteuid() != 0:
        return ()
    return ("setpriv", "--bounding-set=-dac_override,-dac_read_search,-fowner")


class FaultCase(live.LiveCase):
    screen = "640x480"
    # All pictures, by the index of metadata, which is then one of the files that must stay whole.
    filter = "kMDItemFSName ENDSWITH 'png'"

    def setUp(self):
        super().setUp()
        self.pictures = os.path.join(self.home, "pictures")
        self.kept = os.path.join(self.home, ".cache", "Pelmora")
        self.configured = os.path.join(self.home, ".config", "Pelmora")
        if self.filter:
            self.run_tool("defaults", "write", "FilterPredicate", self.filter)
        self.saver = None
        # The bus's thread is there, as it is for users, and finds nobody.
        self.env["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + os.path.join(self.home, "no bus")

    # The run -------------------------------------------------------------------------------------

    def begin(self, within=()):
        self.began = time.monotonic()
        self.saver = self.start("window", "--size", "300x200", within=within)

    def wait_for_line(self, line, what):
        self.wait_until(self.saver, lambda: line in self.saver.log, what)

    def wait_for_first_picture(self):
        self.wait_for_line(FIRST_PICTURE, "the first picture")
        print(f"first picture after {time.monotonic() - self.began:.2f} s")

    def display_list(self):
        return os.path.join(self.kept, "Screen 1 Log.txt")

    def time_of_list(self):
        try:
            return os.stat(self.display_list()).st_mtime_ns
        except FileNotFoundError:  # it comes with the first card, or after it
            return 0

    def wait_for_cards(self, count=2):
        """So many more, by the display list, which is written with each."""
        for _ in range(count):
            before = self.time_of_list()
            self.wait_until(self.saver, lambda: self.time_of_list() != before, "the next card")

    def end(self):
        """Asks it to end, and holds it to what it promises."""
        begin = time.monotonic()
        self.saver.terminate()
        status = self.finish(self.saver)
        took = time.monotonic() - begin
        print(f"ended after {took:.2f} s")
        self.assertEqual(status, 0, self.log())
        self.assertLess(took, ENDING_LIMIT, self.log())
        self.assert_no_crash()

    def assert_said_once(self, *parts):
        """One line of the log has one of these parts in it."""
        lines = [line for line in self.saver.log.splitlines() if any(part in line for part in parts)]
        self.assertEqual(len(lines), 1, self.log())

    def log(self):
        return self.saver.log.decode(errors="replace")

    def assert_no_crash(self):
        for word in (b"terminate called", b"Sanitizer", b"runtime error"):
            self.assertNotIn(word, self.saver.log, self.log())

    def tool(self, *words, within=(), limit=live.LIMIT):
        """A finished run of one of the commands, and how many seconds it took."""
        begin = time.monotonic()
        done = subprocess.run([*within, self.program, *words], env=self.env, capture_output=True,
                              timeout=limit, check=False)
        return done, time.monotonic() - begin

    def add_folder(self, *names, count=2):
        folder = os.path.join(self.home, *names)
        os.makedirs(folder, exist_ok=True)
        for number in range(count):
            with open(os.path.join(folder, f"picture {number}.png"), "wb") as file:
                file.write(pngfile.encode(40, 30, (10, 20 * number % 256, 200)))
        return folder

    # The judge -----------------------------------------------------------------------------------

    @contextlib.contextmanager
    def looking_as_the_saver(self):
        """What it sees of its files, to be judged even when it has ended, and with it what was
        mounted for it alone."""
        places = self.kept, self.configured
        root = f"/proc/{self.saver.pid}/root"
        with contextlib.ExitStack() as stack:
            def held(folder):
                descriptor = os.open(root + folder, os.O_PATH | os.O_DIRECTORY)
                stack.callback(os.close, descriptor)
                return f"/proc/self/fd/{descriptor}"

            self.kept, self.configured = (held(folder) for folder in places)
            try:
                yield
            finally:
                self.kept, self.configured = places

    def assert_files_are_whole(self, written=(CACHE, INDEX)):
        """What has been written can be read by others, the preferences are those of the user, and
        nothing half-written lies about. `written` has been, the rest of it perhaps."""
        preferences = self.preferences()
        self.assertEqual(float(preferences["Delay"]), live.DELAY)
        self.assertGreater(len(preferences["Sources"]), 0)
        self.assertTrue(all(source["bookmark"] for source in preferences["Sources"]), preferences)
        for name in written:
            if name != INDEX or self.filter:
                self.assertGreater(os.path.getsize(os.path.join(self.kept, name)), 0, name)
        self.assert_archive_is_whole(os.path.join(self.kept, CACHE))
        self.assert_index_is_whole(os.path.join(self.kept, INDEX))
        self.assert_list_is_whole(self.display_list())

    def preferences(self):
        with open(os.path.join(self.configured, "Preferences.plist"), "rb") as file:
            return plistlib.load(file)

    def assert_archive_is_whole(self, path):
        with contextlib.suppress(FileNotFoundError):
            with open(path, "rb") as file:
                self.assertIsInstance(keyedarchive.KeyedArchive(file.read()).root(), dict)

    def assert_index_is_whole(self, path):
        """By a copy: opening the database itself would mend it."""
        if not os.path.exists(path) or os.path.getsize(path) == 0:
            return
        with tempfile.TemporaryDirectory() as folder:
            for suffix in ("", "-wal"):
                if os.path.exists(path + suffix):
                    shutil.copy(path + suffix, folder)
            with contextlib.closing(sqlite3.connect(os.path.join(folder,
                                                                 "Metadata.sqlite"))) as database:
                self.assertEqual(database.execute("PRAGMA integrity_check").fetchall(), [("ok",)])

    def assert_list_is_whole(self, path):
        """Empty, or the names of pictures, each ended by a carriage return."""
        with contextlib.suppress(FileNotFoundError):
            with open(path, "rb") as file:
                text = file.read().decode("utf-16")
            for name in text.split("\r")[:-1]:
                self.assertTrue(os.path.exists(name), text)
            self.assertTrue(text == "" or text.endswith("\r"), text)

    def assert_nothing_is_left_over(self):
        """No temporary file, once a run has ended that could sweep."""
        for folder, _, names in os.walk(self.home):
            for name in names:
                self.assertNotIn(".tmp-", name, folder)


def become_reaper():
    """Processes whose parents die become this one's, and can be counted."""
    ctypes.CDLL(None).prctl(SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def children():
    """The process ids of this one's children."""
    with open(f"/proc/self/task/{os.getpid()}/children", encoding="ascii") as file:
        return [int(word) for word in file.read().split()]


def main():
    live.main()
