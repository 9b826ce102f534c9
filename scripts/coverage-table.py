#!/usr/bin/env python3
"""Prints the share of lines and branches that ran, by room.

Usage: coverage-table.py LINES BRANCHES [--lines]      --lines lists those that didn't run

LINES and BRANCHES are what llvm-cov exports as lcov and as text. A branch is one outcome of a condition;
copies of a template are one place."""
import collections
import json
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
ROOMS = ("report", "files", "xml", "process", "crypto", "device", "obk", "certif", "preparation")
LINES, BRANCHES = 98, 90  # per cent: what is aimed at


def read_lines(path):
    """By file: by line, how often it ran."""
    found = collections.defaultdict(lambda: collections.defaultdict(int))
    name = ""
    for text in pathlib.Path(path).read_text().splitlines():
        kind, _, rest = text.partition(":")
        if kind == "SF":
            name = rest
        elif kind == "DA":
            line, count = rest.split(",")[:2]
            found[name][int(line)] += int(count)
    return found


def read_branches(path):
    """By file: by place (first and last line and column), how often it was true and false."""
    found = collections.defaultdict(lambda: collections.defaultdict(lambda: [0, 0]))
    for file in json.loads(pathlib.Path(path).read_text())["data"][0]["files"]:
        for branch in file["branches"]:
            counts = found[file["filename"]][tuple(branch[:4])]
            counts[0] += branch[4]
            counts[1] += branch[5]
    return found


def main():
    if len(sys.argv) not in (3, 4) or sys.argv[3:] not in ([], ["--lines"]):
        print(__doc__)
        return 3
    lines, branches = read_lines(sys.argv[1]), read_branches(sys.argv[2])
    counts = collections.defaultdict(lambda: [0, 0, 0, 0])
    for name in sorted(lines):
        path = pathlib.Path(name).relative_to(ROOT)
        if path.parts[1] not in ROOMS:
            continue
        missed = [f"{path}:{line}: never" for line, count in lines[name].items() if count == 0]
        for place, outcomes in branches[name].items():
            if 0 in outcomes and lines[name].get(place[0], 1) != 0:
                missed.append(f"{path}:{place[0]}:{place[1]}: {'never false' if outcomes[0] else 'never true'}")
        if sys.argv[3:]:
            print(*missed, sep="\n", end="\n" if missed else "")
        for total in (counts[path.parts[1]], counts["all"]):
            total[0] += sum(count > 0 for count in lines[name].values())
            total[1] += len(lines[name])
            total[2] += sum(outcome > 0 for outcomes in branches[name].values() for outcome in outcomes)
            total[3] += 2 * len(branches[name])
    for room in (*ROOMS, "all"):
        ran, of, outcomes, of_outcomes = counts[room]
        print(f"{room:12} lines {100 * ran / max(1, of):5.1f} %  of {of:6}   "
              f"branches {100 * outcomes / max(1, of_outcomes):5.1f} %  of {of_outcomes:6}")
    print(f"aimed at     lines {LINES:5.1f} %             branches {BRANCHES:5.1f} %")
    return 0


if __name__ == "__main__":
    sys.exit(main())
