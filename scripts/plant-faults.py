#!/usr/bin/env python3
"""Plants small faults in the rooms without widgets, one at a time, and counts which ones the tests catch.

Usage: plant-faults.py [--count N] [--seed S] [--list] BUILD_FOLDER

A bound removed, "<" for "<=", a result ignored, a wipe dropped, a mode loosened, "&&" for "||": the places
are drawn by lot, the same for the same seed, as evenly over rooms and kinds as there are places. The tests
of the room run on each. Faults that change nothing anybody could see are for the reader to strike out.
Works in a checkout of its own: the sources change meanwhile."""
import argparse
import collections
import os
import pathlib
import random
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
TESTS = {
    "files": ["files_base_test", "files_test", "corruption_test", "preparation_test"],
    "xml": ["xml_test", "obk_test", "device_test"],
    "process": ["process_test"],
    "crypto": ["crypto_primitives_test", "crypto_test", "token_test", "wiping_test", "preparation_test"],
    "device": ["device_test", "workbench_test"],
    "obk": ["obk_test", "workbench_test"],
    "certif": ["certif_test", "da/da_test", "workbench_test"],
    "preparation": ["preparation_test", "imgtool_test", "token_test", "console_test"],
}
KINDS = {
    "bound removed": (r"^(\s*(?:\} else )?if \()(?!auto|const)(.*)(\) \{)$", r"\1false && (\2)\3"),
    "result ignored": (r"^(\s*if \((?:auto|const auto) .*; )(!\w+)(\) \{)$", r"\1false && \2\3"),
    "< for <=": (r"^(\s*(?:if|while|for|return|const bool)\b.* )<( .*)$", r"\1<=\2"),
    "> for >=": (r"^(\s*(?:if|while|return|const bool)\b.* )>( .*)$", r"\1>=\2"),
    "<= for <": (r"^(\s*(?:if|while|for|return|const bool)\b.* )<=( .*)$", r"\1<\2"),
    "|| for &&": (r"^(\s*(?:if|while|return|const bool)\b.*[^&]) &&( [^&]*)$", r"\1 ||\2"),
    "one more": (r"^(.*\w) \+ 1\b(.*;)$", r"\1 + 2\2"),
    "wipe dropped": (r"^(\s*)((?:files::)?wipe\(.*\);|const files::WipeAtEnd .*;)$", r"\1;"),
    "mode loosened": (r"^(.*)(Secrecy::Secret\b|0600)(.*)$", r"\1\2\3"),
}


def places():
    """By kind and room: (file, number of the line, the faulty line)."""
    found = collections.defaultdict(list)
    for room in TESTS:
        for path in sorted((ROOT / "src" / room).rglob("*.cpp")):
            lines = path.read_text().splitlines()
            for number, line in enumerate(lines):
                for kind, (pattern, change) in KINDS.items():
                    if not re.match(pattern, line) or "<<" in line:
                        continue
                    if kind == "bound removed" and "return" not in "".join(lines[number + 1:number + 2]):
                        continue
                    faulty = (line.replace("Secrecy::Secret", "Secrecy::Public").replace("0600", "0644")
                              if kind == "mode loosened" else re.sub(pattern, change, line))
                    found[kind, room].append((path, number, faulty))
    return found


def draw(count, seed):
    """One of each kind and room in turn, until there are enough."""
    lot = random.Random(seed)
    heaps = places()
    for heap in heaps.values():
        lot.shuffle(heap)
    drawn = []
    while len(drawn) < count and any(heaps.values()):
        order = sorted(key for key in heaps if heaps[key])
        lot.shuffle(order)
        for key in order[:count - len(drawn)]:
            drawn.append((*key, *heaps[key].pop()))
    return drawn


def try_fault(build, room, path, number, faulty):
    """@return the test that failed; "no build" when the compiler caught it; none"""
    before = path.read_text()
    lines = before.splitlines()
    lines[number] = faulty
    path.write_text("\n".join(lines) + "\n")
    try:
        targets = [pathlib.PurePath(test).name for test in TESTS[room]]
        made = subprocess.run(["cmake", "--build", build, "--target", *targets], capture_output=True,
                              text=True, check=False)
        if made.returncode != 0:
            return "the compiler"
        for test in TESTS[room]:
            try:
                ran = subprocess.run([build / "tests" / test, "--gtest_fail_fast", "--gtest_brief=1"],
                                     capture_output=True, text=True, check=False, timeout=240,
                                     cwd=build / "tests",
                                     env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
            except subprocess.TimeoutExpired:
                return f"{test}, which hangs"
            if ran.returncode != 0:
                name = re.search(r"FAILED  \] ([\w./]+)", ran.stdout)
                return name[1] if name else f"{test}, which crashes"
        return None
    finally:
        path.write_text(before)


def main():
    options = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    options.add_argument("--count", type=int, default=60)
    options.add_argument("--seed", type=int, default=1)
    options.add_argument("--list", action="store_true", help="names the faults and tries none")
    options.add_argument("build", type=lambda text: pathlib.Path(text).resolve())
    given = options.parse_args()
    caught = 0
    faults = draw(given.count, given.seed)
    for kind, room, path, number, faulty in faults:
        place = f"{path.relative_to(ROOT)}:{number + 1}"
        if given.list:
            print(f"{kind}: {place}: {faulty.strip()}")
            continue
        by = try_fault(given.build, room, path, number, faulty)
        caught += by is not None
        print(f"{'caught' if by else 'MISSED'}  {kind}: {place}: {faulty.strip()}" +
              (f"  [{by}]" if by else ""), flush=True)
    if not given.list:
        print(f"{caught} of {len(faults)} caught")
    return 0


if __name__ == "__main__":
    sys.exit(main())
