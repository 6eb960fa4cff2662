"""The walk over the sources' folders: which records it makes, in which order, and what it caches.

One worker takes the folders first in, first out. Paths and names are bytes throughout.
"""

import collections
import os
import plistlib
import stat
import urllib.parse
from dataclasses import dataclass, field

REFERENCE_EPOCH = 978307200  # 2001-01-01T00:00:00Z in Unix seconds

PACKAGE_SUFFIXES = (
    b".app .bundle .framework .photoslibrary .photolibrary .aplibrary .lrdata .lrlibrary .rtfd "
    b".pages .key .numbers .fcpbundle .sparsebundle"
).split()

# A date survives a trip through a file as a double of this many seconds at worst.
DATE_TOLERANCE = 1e-6


@dataclass
class Source:
    """A source entry whose folder was found."""

    path: bytes
    enabled: bool
    chance: float
    days: int
    screens: str
    identity: tuple


@dataclass
class Folder:
    """A folder record."""

    path: bytes
    is_base: bool
    names: list
    priority: float
    screens: str
    days: int
    identity: tuple


@dataclass
class CacheEntry:
    mdate: float
    names: list
    folder_names: list = None
    accessed: bool = True


@dataclass
class FolderCache:
    """What is remembered of folders, by path."""

    entries: dict = field(default_factory=dict)
    dirty: bool = False

    def is_current(self, path):
        """Whether the folder is as it was when it was cached. Asking keeps the entry."""
        entry = self.entries.get(path)
        if entry is None:
            return False
        entry.accessed = True
        date = content_date(path)
        return date is not None and abs(date - entry.mdate) < DATE_TOLERANCE

    def add(self, path, names, folder_names):
        date = content_date(path)
        if date is not None:
            self.entries[path] = CacheEntry(date, list(names), folder_names)
            self.dirty = True

    def names(self, path):
        return list(self.entries[path].names)

    def folder_names(self, path):
        entry = self.entries.get(path)
        return None if entry is None or entry.folder_names is None else list(entry.folder_names)

    def set_folder_names(self, path, names):
        if path in self.entries:
            self.entries[path].folder_names = list(names)

    def saved(self):
        """The entries that a save keeps."""
        return {path: entry for path, entry in self.entries.items() if entry.accessed}


def content_date(path):
    """Seconds since 2001 as a double, or None."""
    try:
        seconds, nanoseconds = divmod(os.stat(path).st_mtime_ns, 10**9)
    except OSError:
        return None
    return (seconds - REFERENCE_EPOCH) + nanoseconds / 1e9


def identity(path):
    try:
        facts = os.stat(path)
    except OSError:
        return None
    return (facts.st_dev, facts.st_ino)


def list_folder(path):
    """The names that are not hidden, in the order in which the system lists them.

    Pipes, sockets and devices are left out; links to them are not.
    """
    if os.path.islink(path):
        return []
    try:
        with os.scandir(path) as entries:
            names = [entry.name for entry in entries
                     if entry.is_symlink() or entry.is_file() or entry.is_dir()]
    except OSError:
        return []
    hidden = set()
    if b".hidden" in names:
        with open(os.path.join(path, b".hidden"), "rb") as file:
            hidden = set(file.read().split(b"\n"))
    return [name for name in names if not name.startswith(b".") and name not in hidden]


def is_real_folder(path):
    try:
        return stat.S_ISDIR(os.lstat(path).st_mode)
    except OSError:
        return False


def alias_target(path):
    """Where a link or a desktop entry that is a link leads, or None for anything else."""
    if os.path.islink(path):
        return os.path.realpath(path)
    if not path.endswith(b".desktop") or not os.path.isfile(path):
        return None
    with open(path, "rb") as file:
        fields = dict(line.split(b"=", 1) for line in file.read().split(b"\n") if b"=" in line)
    url = fields.get(b"URL", b"")
    if fields.get(b"Type") != b"Link" or not url.startswith(b"file://"):
        return None
    return urllib.parse.unquote_to_bytes(url[len(b"file://"):])


def is_directory(path):
    """A folder, or an alias that leads to one."""
    if is_real_folder(path):
        return True
    target = alias_target(path)
    return target is not None and is_real_folder(target)


def is_package(path):
    if os.path.splitext(path)[1].lower() in PACKAGE_SUFFIXES:
        return True
    return os.path.isfile(os.path.join(path, b"Contents", b"Info.plist"))


def bookmarked_path(bookmark):
    path = plistlib.loads(bookmark)["path"]
    return path if isinstance(path, bytes) else os.fsencode(path)


def resolve_sources(stored):
    """The stored entries whose folders are found."""
    sources = []
    for entry in stored:
        path = bookmarked_path(entry["bookmark"])
        if identity(path) is None:
            continue
        sources.append(Source(path, bool(entry["enabled"]), float(entry["chance"]),
                              entry.get("days", 127), entry.get("screens", ""), identity(path)))
    return sources


class Walk:
    """Makes the records of `sources`. `run` leaves them in `records`."""

    def __init__(self, sources, cache):
        self.sources = sources
        self.cache = cache
        self.records = []
        self._queue = collections.deque()

    def run(self):
        self._queue.extend((source.path, True) for source in self.sources if source.enabled)
        while self._queue:
            path, is_base = self._queue.popleft()
            subfolders = self._walk_base(path) if is_base else self._subfolder_names(path)
            for name in subfolders:
                self._visit_subfolder(os.path.join(path, name))
        return self.records

    def _deciding_source(self, path):
        """The source with the longest path that the text of `path` begins with."""
        matching = [source for source in self.sources if path.startswith(source.path)]
        return max(matching, key=lambda source: len(source.path), default=None)

    def _values(self, path):
        source = self._deciding_source(path)
        if source is None:
            return (1.0, "", 0)
        return (source.chance / 100.0, source.screens, source.days)

    def _record(self, path):
        wanted = identity(path)
        return next((each for each in self.records if each.identity == wanted), None)

    def _add(self, path, is_base, names):
        if names:
            self.records.append(Folder(path, is_base, names, *self._values(path), identity(path)))

    def _is_enabled(self, path):
        wanted = identity(path)
        return next((each.enabled for each in self.sources if each.identity == wanted), True)

    def _walk_base(self, path):
        """A source's own folder: its files and its subfolders, links not followed."""
        from_cache = self.cache.is_current(path)
        if from_cache:
            names, folders = self.cache.names(path), self.cache.folder_names(path) or []
        else:
            listed = list_folder(path)
            folders = [name for name in listed if is_real_folder(os.path.join(path, name))]
            names = [name for name in listed if name not in set(folders)]
        known = self._record(path)
        if names and known is None:
            self._add(path, True, names)
        elif names:
            known.priority, known.screens, _ = self._values(path)
        if not from_cache:
            self.cache.add(path, names, folders)
        return folders

    def _subfolder_names(self, path):
        cached = self.cache.folder_names(path)
        if cached is not None:
            return cached
        names = [name for name in list_folder(path) if is_directory(os.path.join(path, name))]
        if names:
            self.cache.set_folder_names(path, names)
        return names

    def _file_names(self, path):
        """The files of a folder that gets its record now."""
        if self.cache.is_current(path):
            return self.cache.names(path)
        names = [name for name in list_folder(path) if not is_directory(os.path.join(path, name))]
        self.cache.add(path, names, None)
        return names

    def _visit_subfolder(self, path):
        if not os.path.lexists(path) or is_package(path):
            return
        target = alias_target(path) or path
        if self._record(target) is not None or not self._is_enabled(target):
            return
        self._add(target, False, self._file_names(target))
        self._queue.append((path, False))
