"""Sums a table of gcovr up by subsystem: python3 coverage_table.py FILE.csv

Status 1 when a subsystem of WANTED has less than 90 % of its lines reached."""

import collections
import csv
import sys

WANTED = ("cache", "sources", "cards", "nowplaying", "view", "config", "render")
LEAST = 0.9
LEAST_REACHED = 12  # files that are listed

Counts = collections.namedtuple("Counts", "lines reached branches taken")


def read(rows):
    """(path, counts) of each file."""
    for row in rows:
        yield row["filename"], Counts(*(int(row[name] or 0) for name in (
            "line_total", "line_covered", "branch_total", "branch_covered")))


def subsystem(path):
    """The folder below src; of the platform's, with the one below."""
    parts = path.split("/")[1:-1]
    return "/".join(parts[:2] if parts[:1] == ["platform"] else parts[:1])


def by_subsystem(files):
    sums = {}
    for path, counts in files:
        before = sums.get(subsystem(path), Counts(0, 0, 0, 0))
        sums[subsystem(path)] = Counts(*map(sum, zip(before, counts)))
    return sums


def share(part, whole):
    return part / whole if whole else 1.0


def missed(sums):
    """The wanted subsystems of which too little is reached, or that are not there."""
    return [name for name in WANTED
            if name not in sums or share(sums[name].reached, sums[name].lines) < LEAST]


def table(sums):
    yield f"{'subsystem':20} {'lines':>6} {'reached':>8} {'branches':>9} {'taken':>6}"
    for name, counts in sorted(sums.items()):
        yield (f"{name:20} {counts.lines:6} {share(counts.reached, counts.lines):8.1%}"
               f" {counts.branches:9} {share(counts.taken, counts.branches):6.1%}")


def least_reached(files):
    """The files with most lines that no test reaches."""
    ranked = sorted(files, key=lambda file: file[1].reached - file[1].lines)
    for path, counts in ranked[:LEAST_REACHED]:
        yield f"{counts.lines - counts.reached:5} of {counts.lines:4} lines  {path}"


def main():
    with open(sys.argv[1], encoding="utf-8", newline="") as file:
        files = list(read(csv.DictReader(file)))
    sums = by_subsystem(files)
    print("\n".join(table(sums)))
    print("\nNot reached, most lines first:")
    print("\n".join(least_reached(files)))
    for name in missed(sums):
        print(f"{name}: less than {LEAST:.0%} of the lines are reached")
    return 1 if missed(sums) else 0


if __name__ == "__main__":
    sys.exit(main())
