#!/usr/bin/env python3
"""Plants small faults in the rooms without widgets, one at a time, and counts which ones the tests catch.

Usage: plant-faults.py [--count N] [--seed S] [--list] [--at FILE:LINE[:KIND]]... BUILD_FOLDER

A bound removed, "<" for "<=", a result ignored, a wipe dropped, a mode loosened, "&&" for "||": the places
are drawn by lot, the same for the same seed, as evenly over rooms and kinds as there are places. Where the
compiler refuses a fault another is drawn. The tests of the room run on each.

A test that fails or crashes before any fault is planted is never credited. One that fails with a fault is
credited when it fails again alone, and passes alone once the fault is gone. Faults that change nothing
anybody could see are for the reader to strike out. Works in a checkout of its own: the sources change
meanwhile."""
import argparse
import collections
import contextlib
import os
import pathlib
import random
import re
import signal
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
TESTS = {
    "files": ["files_base_test", "files_test", "memory_test", "corruption_test", "preparation_test"],
    "xml": ["xml_test", "obk_test", "device_test"],
    "process": ["process_test", "wiping/wiping_test"],
    "crypto": ["crypto_primitives_test", "crypto_test", "token_test", "wiping/wiping_test", "preparation_test",
               "library_test"],
    "device": ["device_test", "workbench_test"],
    "obk": ["obk_test", "wiping/wiping_test", "memory_test", "workbench_test"],
    "certif": ["certif_test", "da/da_test", "workbench_test"],
    "preparation": ["preparation_test", "imgtool_test", "token_test", "console_test", "wiping/wiping_test",
                    "memory_test", "library_test"],
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
# What a fault may make the compiler warn of: the tests are to catch it. "a && b || c" stands for "(a && b) || c".
WARNINGS = ["parentheses", "type-limits"]
WHOLE = "*"


class Program:
    """A test program, and the tests of it that may be credited."""

    def __init__(self, build, name):
        self.file = build / "tests" / name
        self.name = self.file.name
        self.refused = set()
        self.filters = [WHOLE]
        failed = self.run(WHOLE)
        if failed and failed[-1][1] != "fails":  # what ends the program hides the tests behind it
            self.filters = self.suites()
            failed += [fault for suite in self.filters for fault in self.run(suite)]
        self.refused = {test for test, _ in failed}
        for test, how in dict(failed).items():
            print(f"{self.name}: {test} {how} without a fault, and isn't credited", flush=True)

    def suites(self):
        listed = subprocess.run([self.file, "--gtest_list_tests"], capture_output=True, text=True, check=True,
                                env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
        return [line.split()[0] + "*" for line in listed.stdout.splitlines() if re.match(r"\S+\.(\s|$)", line)]

    def run(self, tests, *options):
        """@return (test, "fails" or how it ended the program) of each that failed; WHOLE for one outside all"""
        with tempfile.TemporaryDirectory(prefix="planted") as folder:
            os.chmod(folder, 0o755)  # some tests give up the rights of the superuser
            ran = subprocess.Popen([self.file, f"--gtest_filter={tests}", *options], text=True, errors="replace",
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, cwd=self.file.parent,
                                   start_new_session=True,
                                   env={**os.environ, "QT_QPA_PLATFORM": "offscreen", "TMPDIR": folder})
            ended = "crashes"
            try:
                out, _ = ran.communicate(timeout=240)
            except subprocess.TimeoutExpired:
                ended = "hangs"
                os.killpg(ran.pid, signal.SIGKILL)
                out, _ = ran.communicate()
        running, failed = None, []
        for line in out.splitlines():
            if found := re.search(r"\[ RUN      \] (\S+)", line):
                running = found[1]
            elif running and re.search(r"\[ +(OK|FAILED|SKIPPED) +\] " + re.escape(running), line):
                if "FAILED" in line:
                    failed.append((running, "fails"))
                running = None
        if running or (ran.returncode != 0 and not failed):
            failed.append((running or WHOLE, ended))
        return failed

    def first_failure(self, passed_over):
        for tests in self.filters:
            without = sorted((self.refused | passed_over) - {WHOLE})
            failed = self.run(tests + "-" + ":".join(without), "--gtest_fail_fast")
            if failed and failed[0][0] not in self.refused | passed_over:
                return failed[0]
        return None


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


def draw(seed):
    """One of each kind and room in turn, as long as there are any."""
    lot = random.Random(seed)
    heaps = places()
    for heap in heaps.values():
        lot.shuffle(heap)
    while any(heaps.values()):
        order = sorted(key for key in heaps if heaps[key])
        lot.shuffle(order)
        for key in order:
            yield (*key, *heaps[key].pop())


def at(wanted):
    """The faults at "FILE:LINE" or "FILE:LINE:KIND", FILE below src."""
    for place in wanted:
        file, number, *kind = place.split(":", 2)
        found = [(*key, *fault) for key, heap in places().items() for fault in heap
                 if fault[0] == ROOT / "src" / file and fault[1] + 1 == int(number) and kind in ([], [key[0]])]
        if not found:
            sys.exit(f"{place}: no fault can be planted there")
        yield from found


@contextlib.contextmanager
def planted(path, number, faulty):
    before = path.read_text()
    lines = before.splitlines()
    lines[number] = faulty
    silent = [f'#pragma GCC diagnostic ignored "-W{warning}"' for warning in WARNINGS]
    path.write_text("\n".join(silent + ["#line 1"] + lines) + "\n")
    try:
        yield
    finally:
        path.write_text(before)


def is_built(build, room):
    targets = [pathlib.PurePath(test).name for test in TESTS[room]]
    return subprocess.run(["cmake", "--build", build, "--target", *targets], capture_output=True,
                          check=False).returncode == 0


def try_fault(build, room, programs, fault):
    """@return whether it could be built, and the test that catches it, or None"""
    passed_over = set()
    while True:
        with planted(*fault):
            if not is_built(build, room):
                return False, None
            for program in programs:
                first = program.first_failure(passed_over)
                if first:
                    break
            else:
                return True, None
            test, how = first
            again = program.run(test)
        if not is_built(build, room):
            sys.exit("the sources without a fault can't be built")
        if again and not program.run(test):
            return True, test + (f" of {program.name}" if test == WHOLE else "") + (
                f", which {how}" if how != "fails" else "")
        print(f"{program.name}: {test} fails not only with the fault, or not alone: passed over", flush=True)
        passed_over.add(test)


def main():
    options = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    options.add_argument("--count", type=int, default=60)
    options.add_argument("--seed", type=int, default=1)
    options.add_argument("--list", action="store_true", help="names the faults and tries none")
    options.add_argument("--at", action="append", metavar="FILE:LINE[:KIND]", help="these in place of drawn ones")
    options.add_argument("build", type=lambda text: pathlib.Path(text).resolve())
    given = options.parse_args()
    programs = {}
    tried = caught = 0
    for kind, room, *fault in at(given.at) if given.at else draw(given.seed):
        path, number, faulty = fault
        what = f"{kind}: {path.relative_to(ROOT)}:{number + 1}: {faulty.strip()}"
        if given.list:
            print(what)
            tried += 1
        else:
            if not is_built(given.build, room):
                sys.exit("the sources without a fault can't be built")
            for test in TESTS[room]:
                if test not in programs:
                    programs[test] = Program(given.build, test)
            compiles, by = try_fault(given.build, room, [programs[test] for test in TESTS[room]], fault)
            tried += compiles
            caught += by is not None
            print(f"caught  {what}  [{by}]" if by else f"MISSED  {what}" if compiles else
                  f"        the compiler refuses {what}", flush=True)
        if tried == given.count and not given.at:
            break
    if not given.list:
        print(f"{caught} of {tried} caught")
    return 0


if __name__ == "__main__":
    sys.exit(main())
