#!/usr/bin/env python3
"""Compares the program's start, up to the first turn of the event loop, with a bare window's.

Usage: measure_startup.py BENCH_STARTUP ROUNDS [--check]
In each round both start in turn; the medians of the rounds count. Under Xvfb it is measured only
where Xvfb is installed. With --check the exit status is 1 when a ratio misses its bar.
"""
import os
import shutil
import statistics
import subprocess
import sys

from compare_tools import run

# platform of Qt, most times the bare window's time, most times its memory
BARS = {"offscreen": (2.0, 1.6), "xcb": (1.3, 1.2)}


def measure(program, rounds):
    """Returns the medians of milliseconds and MiB: of the program, then of the bare window."""
    commands = ([program], [program, "bare"])
    for command in commands:
        run(command)  # the first start reads the libraries from the disk
    found = ([], [])
    for _ in range(rounds):
        for command, results in zip(commands, found):
            seconds, _, memory = run(command)
            results.append((seconds * 1000, memory))
    return [[statistics.median(column) for column in zip(*results)] for results in found]


def missed(platform, program, rounds):
    """Prints the figures of a platform. Returns whether one is above its bar."""
    os.environ["QT_QPA_PLATFORM"] = platform
    ours, bare = measure(program, rounds)
    is_missed = False
    for name, unit, own, other, bar in zip(("time", "memory"), ("ms", "MiB"), ours, bare,
                                           BARS[platform]):
        ratio = own / other
        is_missed |= ratio > bar
        print(f"start-up {platform:9} {name:6} {own:7.1f} {unit:3} bare {other:7.1f} "
              f"ratio {ratio:5.2f} bar {bar} {'MISSED' if ratio > bar else 'ok'}")
    return is_missed


def with_screen(program, rounds):
    """The same under a screen of its own."""
    reader, writer = os.pipe()
    screen = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x1024x24"],
                              pass_fds=[writer], stderr=subprocess.DEVNULL)
    os.close(writer)
    try:
        with os.fdopen(reader) as number:
            os.environ["DISPLAY"] = ":" + number.readline().strip()
        return missed("xcb", program, rounds)
    finally:
        screen.terminate()
        screen.wait()


def main():
    program, rounds = os.path.abspath(sys.argv[1]), int(sys.argv[2])
    is_missed = missed("offscreen", program, rounds)
    if shutil.which("Xvfb"):
        is_missed |= with_screen(program, rounds)
    else:
        print("start-up xcb: not measured, Xvfb is not installed")
    if is_missed and "--check" in sys.argv:
        sys.exit(1)


if __name__ == "__main__":
    main()
