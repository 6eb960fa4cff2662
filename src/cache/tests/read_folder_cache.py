"""Prints a folder cache as Python's own property list reader sees it: a line per folder with its path,
its date in seconds since 2001, its names and the names of its subfolders."""

import plistlib
import sys

with open(sys.argv[1], "rb") as file:
    archive = plistlib.load(file, fmt=plistlib.FMT_BINARY)

assert archive["$archiver"] == "NSKeyedArchiver" and archive["$version"] == 100000
objects = archive["$objects"]
assert objects[0] == "$null"


def value(uid):
    found = objects[uid.data]
    if not isinstance(found, dict):
        return found
    entry = objects[found["$class"].data]
    name = entry["$classname"]
    assert entry["$classes"][0] == name and entry["$classes"][-1] == "NSObject"
    if name == "NSDate":
        return found["NS.time"]
    if name == "NSArray":
        return [value(element) for element in found["NS.objects"]]
    assert name == "NSMutableDictionary"
    return {value(k): value(v) for k, v in zip(found["NS.keys"], found["NS.objects"], strict=True)}


def sort_key(path):
    return path if isinstance(path, bytes) else path.encode()


cache = value(archive["$top"]["root"])
for path in sorted(cache, key=sort_key):
    folder = cache[path]
    print(
        ascii(path),
        folder["mdate"],
        ascii(folder["names"]),
        ascii(folder.get("folderNames")),
    )
