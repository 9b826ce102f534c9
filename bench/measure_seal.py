#!/usr/bin/env python3
"""Compares sealing and opening of a 64 MiB image with OpenSSL's own AES-128-GCM on its firmware.

Usage: measure_seal.py BENCH_SEAL ROUNDS [--check]
Not counted are the pass that makes the image's nonce of all inputs, check blocks and the check of
the finished image. The medians of the rounds count. With --check the exit status is 1 when a share
of OpenSSL's speed is below the bar.
"""
import json
import subprocess
import sys

BAR = 0.5


def medians(program, rounds):
    """Returns milliseconds by name of the benchmark."""
    done = subprocess.run(
        [program, "--benchmark_filter=^paired", "--benchmark_format=json",
         f"--benchmark_repetitions={rounds}", "--benchmark_min_time=0.05",
         "--benchmark_enable_random_interleaving=true",
         "--benchmark_report_aggregates_only=true"],
        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True)
    found = {}
    for entry in json.loads(done.stdout)["benchmarks"]:
        if entry.get("error_occurred"):
            sys.exit(f"{entry['name']}: {entry['error_message']}")
        if entry.get("aggregate_name") == "median":
            found[entry["run_name"]] = entry["real_time"]
    return found


def main():
    times = medians(sys.argv[1], int(sys.argv[2]))
    nonce = times["pairedNonce"]
    is_missed = False
    for name, own, other in (
            ("sealing", times["pairedSealing"] - nonce, times["pairedCipher/seal"]),
            ("opening", times["pairedOpening"], times["pairedCipher/open"])):
        share = other / own
        is_missed |= share < BAR
        print(f"{name} 64 MiB {own:6.1f} ms  OpenSSL {other:6.1f} ms  share {share:5.2f} "
              f"bar {BAR} {'MISSED' if share < BAR else 'ok'}")
    print(f"not counted: {nonce:.1f} ms for the image's nonce")
    if is_missed and "--check" in sys.argv:
        sys.exit(1)


if __name__ == "__main__":
    main()
