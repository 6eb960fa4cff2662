"""The house rules that no compiler knows. Prints a line per breach; status 1 if there is any."""

import os
import re
import subprocess
import sys

# What each subsystem's files may include, besides their own.
BELOW = {
    "shared": [],
    "platform": ["shared"],
    "desktop": ["platform", "shared"],
    "idle": ["desktop", "platform", "shared"],
    "wayland": [],
    "render": ["platform", "shared"],
    "cache": ["platform", "shared"],
    "sandbox": ["platform", "shared"],
    "decoder": ["sandbox", "platform", "shared"],
    "inspector": ["sandbox", "platform", "shared"],
    "sources": ["cache", "platform", "shared"],
    "filtereditor": ["platform", "shared"],
    "cards": ["render", "platform", "shared"],
    "nowplaying": ["render", "platform", "shared"],
    "view": ["sources", "cards", "nowplaying", "render", "cache", "platform", "shared"],
}
BELOW["config"] = ["view", "filtereditor"] + BELOW["view"]
BELOW["host"] = ["config", "view", "idle", "desktop", "wayland"] + BELOW["view"]

WITHOUT_QT = ("src/shared/", "src/platform/", "src/cache/", "src/sources/")
MAY_USE_QT = ("src/platform/linux/",)

LONGEST_FILE = 450  # lines

INCLUDE = re.compile(r'^\s*#\s*include\s+["<]([^">]+)[">]', re.MULTILINE)

# What no file of ours holds, and why.
UNWANTED = [
    (re.compile(r"\b(TODO|FIXME|XXX)\b"), "work left open belongs into an issue"),
    (re.compile(r"\bPart [0-9]+\.[0-9]"), "refers to a text that readers do not have"),
    (re.compile(r"(?<![\w.~$}/])/(work|root)/"), "a path of one machine"),
]
UNWANTED_IN_TESTS = [
    (re.compile(r"(?<![.>])\b(u|nano)?sleep(_for|_until)?\s*\(|\bqWait\s*\("), "a test that sleeps"),
    (re.compile(r"\bDISABLED_|\bGTEST_SKIP\b|\bQSKIP\b"), "a test switched off"),
]


def subsystem(path):
    """The subsystem a source file belongs to: the folder below src."""
    parts = path.split("/")
    return parts[1] if parts[0] == "src" and len(parts) > 2 else None


def is_test(path):
    return "/tests/" in path or path.startswith("tests/")


def wrong_includes(path, text):
    """Includes that go up, or past the interfaces of the platform."""
    own = subsystem(path)
    if own is None:
        return
    if own not in BELOW:
        yield f"no rule says what {own} may include"
    at_the_platform = path.startswith(("src/platform/", "src/host/")) or is_test(path) or "/fuzz/" in path
    for include in INCLUDE.findall(text):
        first = include.split("/")[0]
        if first in BELOW and "/" in include and first != own and first not in BELOW.get(own, []):
            yield f"{own} must not include {include}"
        if include.startswith("platform/linux/") and not at_the_platform:
            yield f"only host/ names the real services, not {own}: {include}"
        if include.startswith("platform/fake/") and not at_the_platform:
            yield f"fakes are for tests, not for {own}: {include}"
        if re.match(r"Q[A-Z]|Qt", include) and is_without_qt(path):
            yield f"{own} knows no Qt: {include}"


def is_without_qt(path):
    return path.startswith(WITHOUT_QT) and not path.startswith(MAY_USE_QT)


def unwanted_lines(path, text):
    patterns = UNWANTED + (UNWANTED_IN_TESTS if is_test(path) else [])
    for number, line in enumerate(text.splitlines(), 1):
        for pattern, why in patterns:
            if pattern.search(line):
                yield number, f"{why}: {line.strip()}"


def missing_test(path, files):
    """The test file that should stand beside a source file, if it does not."""
    folder, name = os.path.split(path)
    if subsystem(path) is None or is_test(path) or not name.endswith(".cpp"):
        return None
    if name == "main.cpp" or "/fuzz/" in path:
        return None
    test = f"{name[:-4]}Test.cpp"
    if f"{folder}/tests/{test}" in files or f"src/{subsystem(path)}/tests/{test}" in files:
        return None
    return f"{folder}/tests/{test}"


def breaches(files, read):
    """Every breach in `files` (paths from the root), whose text `read` gives, as "path:line: why"."""
    for path in sorted(files):
        text = read(path)
        is_picture = "\0" in text  # whose bytes may look like any word
        for number, why in [] if is_picture else unwanted_lines(path, text):
            yield f"{path}:{number}: {why}"
        if not path.endswith((".cpp", ".h")):
            continue
        for why in wrong_includes(path, text):
            yield f"{path}:1: {why}"
        if path.endswith(".h") and not text.startswith("#pragma once\n"):
            yield f"{path}:1: a header begins with #pragma once"
        if text.count("\n") > LONGEST_FILE:
            yield f"{path}:{text.count(chr(10))}: longer than {LONGEST_FILE} lines"
        test = missing_test(path, files)
        if test is not None:
            yield f"{path}:1: has no {test}"


def read_text(path):
    with open(path, encoding="utf-8", errors="replace") as file:
        return file.read()


def main():
    listing = subprocess.run(
        ["git", "ls-files", "-z", "-co", "--exclude-standard"], check=True, capture_output=True
    )
    names = [name.decode(errors="surrogateescape") for name in listing.stdout.split(b"\0")]
    # These two files hold the words that they look for.
    exempt = ("tools/house_rules.py", "tools/tests/house_rules_test.py")
    files = {name for name in names if name and name not in exempt and os.path.isfile(name)}
    found = list(breaches(files, read_text))
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
