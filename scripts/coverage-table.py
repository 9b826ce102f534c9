#!/usr/bin/env python3
"""Prints the share of lines and branches that ran, by room.

Usage: coverage-table.py COVERAGE_JSON [--lines]      --lines lists those that didn't run"""
import collections
import json
import pathlib
import sys

ROOMS = ("report", "files", "xml", "process", "crypto", "device", "obk", "certif", "preparation")
LINES, BRANCHES = 98, 90  # per cent: what is aimed at


def main():
    if len(sys.argv) not in (2, 3) or sys.argv[2:] not in ([], ["--lines"]):
        print(__doc__)
        return 3
    counts = collections.defaultdict(lambda: [0, 0, 0, 0])
    for file in json.loads(pathlib.Path(sys.argv[1]).read_text())["files"]:
        room = pathlib.PurePath(file["file"]).parts[1]
        if room not in ROOMS:
            continue
        for line in file["lines"]:
            if line.get("gcovr/noncode"):
                continue
            ran = [branch["count"] > 0 for branch in line["branches"]]
            for total in (counts[room], counts["all"]):
                total[0] += line["count"] > 0
                total[1] += 1
                total[2] += sum(ran)
                total[3] += len(ran)
            if sys.argv[2:] and (line["count"] == 0 or not all(ran)):
                print(f"{file['file']}:{line['line_number']}: {sum(ran)} of {len(ran)} branches"
                      if line["count"] else f"{file['file']}:{line['line_number']}: never")
    for room in (*ROOMS, "all"):
        lines, of, branches, of_branches = counts[room]
        print(f"{room:12} lines {100 * lines / max(1, of):5.1f} %  of {of:6}   "
              f"branches {100 * branches / max(1, of_branches):5.1f} %  of {of_branches:6}")
    print(f"aimed at     lines {LINES:5.1f} %             branches {BRANCHES:5.1f} %")
    return 0


if __name__ == "__main__":
    sys.exit(main())
