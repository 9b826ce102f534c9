#!/usr/bin/env bash
# Counts which lines and branches of the rooms without widgets the tests run. Edges that only an
# exception takes aren't branches of ours and don't count.
# Usage: coverage.sh [--lines]      --lines lists what no test runs
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/setup.sh test
./scripts/setup.sh coverage
cmake --preset coverage >/dev/null
cmake --build --preset coverage
find build/coverage -name '*.gcda' -delete
# Those left out run tools on other builds. Tests that measure time may fail in a build that counts.
ctest --preset coverage -j "$(nproc)" -E 'Packaging|Machine' >build/coverage/ctest.log ||
    sed -n '/The following tests FAILED/,$p' build/coverage/ctest.log
gcovr --root . --filter src/ --exclude-throw-branches --exclude-unreachable-branches \
    -j "$(nproc)" --json build/coverage/coverage.json build/coverage/src build/coverage/tools
python3 scripts/coverage-table.py build/coverage/coverage.json "$@"
