#!/usr/bin/env bash
# Every change of every good file of tests/corruption, under the address, undefined-behaviour and leak
# sanitizers: over a million files that lie, each judged by its format's accept list.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset asan >/dev/null
cmake --build --preset asan --target corruption_test
[ ! -w /dev/shm ] || export TMPDIR=/dev/shm
SPB_CORRUPTION=all QT_QPA_PLATFORM=offscreen build/asan/tests/corruption_test --gtest_brief=1 |
    tee build/corruption.log
awk '/ cases: / { seeds += $2; cases += $4 } END { print "all: " seeds " seeds, " cases " cases" }' \
    build/corruption.log
