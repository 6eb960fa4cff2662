"""A home folder of a test's own, and the program run in it."""

import json
import os
import plistlib
import pty
import shutil
import subprocess
import tempfile
import time

import pngfile

TIME_ZONE = "Europe/Berlin"
LONG_AGO = 1_500_000_000  # Unix seconds

# What the caller's environment may add: what sanitizers and loaders need, nothing of the session.
_KEPT = ("PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TMPDIR")

_RUN_LIMIT = 180 if "ASAN_OPTIONS" in os.environ else 50  # seconds
_LONGEST_MESSAGE = 4096  # bytes


def use_time_zone():
    """Makes this process reckon local times as the program under test does."""
    os.environ["TZ"] = TIME_ZONE
    time.tzset()


def source(path, chance=100.0, days=127, screens="", enabled=True):
    """A source entry, its bookmark a path alone."""
    bookmark = plistlib.dumps({"path": _plist_text(path)}, fmt=plistlib.FMT_BINARY)
    return {"bookmark": bookmark, "enabled": enabled, "chance": chance, "days": days,
            "screens": screens}


def _plist_text(path):
    """A path as property lists hold it: a string, or data when it is not UTF-8."""
    raw = os.fsencode(path)
    try:
        return raw.decode()
    except UnicodeDecodeError:
        return raw


class SaverHome:
    """Folders for a user: home, configuration, caches, and `pictures` for the sources."""

    def __init__(self, program):
        self._program = os.path.abspath(program)
        self.root = os.path.realpath(tempfile.mkdtemp(prefix="pelmora-test-"))
        for name in ("home", "config", "cache", "data", "runtime", "pictures", "out"):
            os.mkdir(self.path(name), mode=0o700)

    def close(self):
        shutil.rmtree(self.root)

    def path(self, *names):
        return os.path.join(self.root, *names)

    @property
    def preferences_path(self):
        return self.path("config", "Pelmora", "Preferences.plist")

    @property
    def cache_path(self):
        return self.path("cache", "Pelmora", "FolderCache.plist")

    def run(self, *arguments, environment=None):
        """The finished process; its output is bytes."""
        return subprocess.run([self._program, *arguments], env=self._variables(environment),
                              cwd=self.root, capture_output=True, timeout=_RUN_LIMIT, check=False)

    def run_at_terminal(self, *arguments):
        """Runs the program with a terminal for its standard error; its status, and what it said."""
        terminal, line = pty.openpty()
        with open(terminal, "rb", buffering=0) as reader:
            with open(line, "wb", buffering=0) as errors:
                finished = subprocess.run([self._program, *arguments], env=self._variables(None),
                                          cwd=self.root, stdout=subprocess.DEVNULL, stderr=errors,
                                          timeout=_RUN_LIMIT, check=False)
                errors.write(b"\n")  # so that there is something to read
            return finished.returncode, reader.read(_LONGEST_MESSAGE)

    def _variables(self, environment):
        variables = {key: os.environ[key] for key in _KEPT if key in os.environ}
        variables |= {
            "HOME": self.path("home"), "XDG_CONFIG_HOME": self.path("config"),
            "XDG_CACHE_HOME": self.path("cache"), "XDG_DATA_HOME": self.path("data"),
            "XDG_RUNTIME_DIR": self.path("runtime"), "TZ": TIME_ZONE, "LC_ALL": "C.UTF-8",
            "QT_QPA_PLATFORM": "offscreen",
        }
        return variables | (environment or {})

    def write_preferences(self, values, fmt=plistlib.FMT_BINARY):
        os.makedirs(os.path.dirname(self.preferences_path), exist_ok=True)
        with open(self.preferences_path, "wb") as file:
            plistlib.dump(values, file, fmt=fmt)

    def read_preferences(self):
        with open(self.preferences_path, "rb") as file:
            return plistlib.load(file)

    def add_pictures(self, folder, names, size=(60, 40), colour=(200, 100, 50)):
        """Pictures in a folder below `pictures`; its path."""
        place = os.path.join(os.fsencode(self.path("pictures")), os.fsencode(folder))
        os.makedirs(place, exist_ok=True)
        for name in names:
            with open(os.path.join(place, os.fsencode(name)), "wb") as file:
                file.write(pngfile.encode(*size, colour))
        return place

    def age_folders(self, nanoseconds=123456789):
        """Gives every folder of pictures a date long past, so that none counts as just changed."""
        when = LONG_AGO * 10**9 + nanoseconds
        for folder, _, _ in os.walk(os.fsencode(self.path("pictures"))):
            os.utime(folder, ns=(when, when))

    def read_layers(self):
        with open(self.path("out", "layers.json"), encoding="utf-8") as file:
            return json.load(file)
