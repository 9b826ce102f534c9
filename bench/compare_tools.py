#!/usr/bin/env python3
"""Compares bench-convert with the tools an engineer would use instead.

Usage: compare_tools.py BENCH_CONVERT PAYLOADS OUTPUTS ROUNDS [--check]
In each round every program converts the same file, in turn; the ratio of a round is the time of the
fastest other tool over ours, and the median of the rounds counts. With --check the exit status is 1
when a ratio, the peak memory or the growth misses its bar.
"""
import filecmp
import os
import shutil
import statistics
import sys
import time

MIB = 1024 * 1024
START = "0x08000000"
# source, ending of the target, times faster than the fastest other tool
CASES = [("dense16.hex", "bin", 4), ("dense32.hex", "bin", 3), ("dense.srec", "bin", 2.5),
         ("dense.elf", "bin", 1.1), ("scattered.hex", "bin", 2.2), ("small.srec", "bin", 5),
         ("dense.bin", "hex", 1.8), ("dense.bin", "srec", 2)]
MEMORY_CASES = ("dense16.hex", "dense32.hex")
MOST_MEMORY = 64 * 1.5 + 16  # MiB
GROWTH = (125000, 250000, 500000, 1000000)
MOST_GROWTH = 2.3
SREC_CAT = {"hex": "-Intel", "srec": "-Motorola", "bin": "-Binary"}
BFD = {"hex": "ihex", "srec": "srec", "bin": "binary", "elf": "elf32-littlearm"}


def commands(source, target):
    """The other tools' commands, each where it reads and writes the formats."""
    read, write = source.rsplit(".", 1)[1], target.rsplit(".", 1)[1]
    found = {}
    if read != "elf":
        shift = ["-offset", "-" + START] if write == "bin" else []
        found["srec_cat"] = ["srec_cat", source, SREC_CAT[read], *shift, "-o", target,
                             SREC_CAT[write]]
    fill = ["--gap-fill=0xff"] if write == "bin" else []
    found["arm-none-eabi-objcopy"] = ["arm-none-eabi-objcopy", "-I", BFD[read], "-O", BFD[write],
                                      *fill, source, target]
    if "srec" not in (read, write):
        kind = [] if read == "elf" else ["-I", BFD[read]]
        found["llvm-objcopy"] = ["llvm-objcopy", *kind, "-O", BFD[write], source, target]
    return found


def run(command):
    """Returns seconds on the clock, seconds of processor time, MiB of peak memory."""
    start = time.perf_counter()
    quiet = [(os.POSIX_SPAWN_OPEN, 2, os.devnull, os.O_WRONLY, 0)]
    pid = os.posix_spawnp(command[0], command, os.environ, file_actions=quiet)
    _, status, usage = os.wait4(pid, 0)
    seconds = time.perf_counter() - start
    if status != 0:
        sys.exit("failed: " + " ".join(command))
    return seconds, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def compare(convert, source, ending, outputs, rounds):
    """Returns the median ratio and, for each program, median seconds and peak memory."""
    target = f"{outputs}/out.{ending}"
    ours = f"{outputs}/ours.{ending}"
    programs = {"bench-convert": [convert, source, ours], **commands(source, target)}
    programs = {name: command for name, command in programs.items() if shutil.which(command[0])}
    times = {name: [] for name in programs}
    memory = {}
    ratios = []
    for _ in range(rounds):
        for name, command in programs.items():
            seconds, _, memory[name] = run(command)
            times[name].append(seconds)
            if name != "bench-convert":
                # The other two leave holes at 0; text differs in its line lengths.
                comparable = ending == "bin" and name == "arm-none-eabi-objcopy"
                if comparable and not filecmp.cmp(ours, target, shallow=False):
                    sys.exit(f"{source}: {name} writes other bytes")
                os.unlink(target)
        os.unlink(ours)
        others = [values[-1] for name, values in times.items() if name != "bench-convert"]
        ratios.append(min(others) / times["bench-convert"][-1])
    return statistics.median(ratios), {
        name: (statistics.median(values), memory[name]) for name, values in times.items()}


def growth(convert, payloads, outputs, rounds):
    """The largest time(2n) / time(n), by the least processor time of several runs."""
    target = f"{outputs}/growth.bin"
    best = []
    for count in GROWTH:
        command = [convert, f"{payloads}/growth{count}.srec", target]
        seconds = []
        for _ in range(max(rounds, 5)):
            seconds.append(run(command)[1])
            os.unlink(target)
        best.append(min(seconds))
        print(f"  {count:8} segments  {best[-1] * 1000:8.1f} ms")
    return max(after / before for before, after in zip(best, best[1:]))


def main(arguments):
    convert, payloads, outputs, rounds = arguments[0], arguments[1], arguments[2], int(arguments[3])
    misses = []
    for name, ending, bar in CASES:
        ratio, details = compare(convert, f"{payloads}/{name}", ending, outputs, rounds)
        print(f"{name} to {ending}: {ratio:.2f} times the fastest other tool (bar {bar})")
        for program, (seconds, memory) in details.items():
            print(f"  {program:22} {seconds * 1000:8.1f} ms  {memory:6.1f} MiB")
        if ratio < bar:
            misses.append(f"{name} to {ending}: {ratio:.2f}, bar {bar}")
        if name in MEMORY_CASES and details["bench-convert"][1] > MOST_MEMORY:
            misses.append(f"{name}: {details['bench-convert'][1]:.1f} MiB, bar {MOST_MEMORY}")
    print("Growth")
    worst = growth(convert, payloads, outputs, rounds)
    print(f"  time(2n)/time(n) at most {worst:.2f} (bar {MOST_GROWTH})")
    if worst > MOST_GROWTH:
        misses.append(f"growth: {worst:.2f}, bar {MOST_GROWTH}")
    for miss in misses:
        print("below the bar: " + miss)
    return 1 if misses and "--check" in arguments else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
