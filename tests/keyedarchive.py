"""Reads keyed archives strictly, with the standard property list reader alone."""

import plistlib

_LISTS = ("NSArray", "NSMutableArray")
_DICTIONARIES = ("NSDictionary", "NSMutableDictionary")


class ArchiveError(Exception):
    """The file is not a keyed archive as the format has it."""


class KeyedArchive:
    """An archive's objects. Dates read as seconds since 2001, data as bytes."""

    def __init__(self, data):
        self.plist = plistlib.loads(data, fmt=plistlib.FMT_BINARY)
        expected = {"$archiver": "NSKeyedArchiver", "$version": 100000}
        for key, value in expected.items():
            if self.plist.get(key) != value:
                raise ArchiveError(f"{key} is {self.plist.get(key)!r}, not {value!r}")
        if set(self.plist) != {"$archiver", "$version", "$objects", "$top"}:
            raise ArchiveError(f"keys are {sorted(self.plist)}")
        self._objects = self.plist["$objects"]
        if self._objects[0] != "$null":
            raise ArchiveError("the first object is not $null")

    def root(self):
        return self._object(self.plist["$top"]["root"])

    def class_names(self):
        """The names of all classes that the archive describes."""
        return {each["$classname"] for each in self._objects
                if isinstance(each, dict) and "$classname" in each}

    def _object(self, reference):
        if not isinstance(reference, plistlib.UID):
            raise ArchiveError(f"{reference!r} is no reference")
        if not 0 < reference.data < len(self._objects):
            raise ArchiveError(f"reference {reference.data} leads nowhere")
        stored = self._objects[reference.data]
        return self._instance(stored) if isinstance(stored, dict) else stored

    def _class_of(self, stored):
        described = self._objects[stored["$class"].data]
        if described["$classes"][0] != described["$classname"]:
            raise ArchiveError(f"class entry {described!r}")
        if described["$classes"][-1] != "NSObject":
            raise ArchiveError(f"class entry {described!r} does not end in NSObject")
        return described["$classname"]

    def _instance(self, stored):
        name = self._class_of(stored)
        if name in _DICTIONARIES:
            keys = [self._object(each) for each in stored["NS.keys"]]
            values = [self._object(each) for each in stored["NS.objects"]]
            if len(keys) != len(values):
                raise ArchiveError("as many keys as values are needed")
            return dict(zip(keys, values))
        if name in _LISTS:
            return [self._object(each) for each in stored["NS.objects"]]
        if name == "NSDate":
            return stored["NS.time"]
        if name in ("NSData", "NSMutableData"):
            return stored["NS.data"]
        raise ArchiveError(f"class {name} does not belong here")
