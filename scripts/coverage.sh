#!/usr/bin/env bash
# Counts which lines and branches of the rooms without widgets the tests run. A branch is an outcome of
# a condition as it stands in the source; what the compiler adds doesn't count.
# Usage: coverage.sh [--lines]      --lines lists what no test runs
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/setup.sh test
./scripts/setup.sh coverage
cmake --preset coverage >/dev/null
cmake --build --preset coverage
profiles=build/coverage/profile
rm -rf "$profiles"
# Those left out run tools on other builds or look at what the other compiler exports. Tests that measure time may fail in a build that counts.
ctest --preset coverage -j "$(nproc)" -E 'Packaging|Machine|CryptoExports' >build/coverage/ctest.log ||
    sed -n '/The following tests FAILED/,$p' build/coverage/ctest.log
llvm-profdata-14 merge -sparse -o build/coverage/tests.profdata "$profiles"/*.profraw
objects=()
while read -r program; do
    objects+=(-object "$program")
done < <(find build/coverage/bin build/coverage/tests -name CMakeFiles -prune -o -type f -executable -print)
export_as() {
    llvm-cov-14 export "$@" -instr-profile build/coverage/tests.profdata "${objects[@]:1}" src
}
export_as -format=lcov >build/coverage/lines.info
export_as -skip-functions -skip-expansions >build/coverage/branches.json
python3 scripts/coverage-table.py build/coverage/lines.info build/coverage/branches.json "$@"
