#!/usr/bin/env bash
# Installs what is missing, then: format check, all tests, the linter over what changed last (five
# minutes, SPB_LINT_SECONDS), ten seconds of each fuzz target, and all tests again under the address and
# undefined-behaviour sanitizers.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/setup.sh test

echo "== Format"
git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror

build() {
    cmake --preset "$1" >"build-$1.log" 2>&1 || { cat "build-$1.log"; rm -f "build-$1.log"; exit 1; }
    rm -f "build-$1.log"
    cmake --build --preset "$1"
}

echo "== Tests (dev)"
build dev
ctest --preset dev -j "$(nproc)"

echo "== Lint, for five minutes at most"
./scripts/lint.sh --recent "${SPB_LINT_SECONDS:-300}"

echo "== Fuzz targets"
./scripts/fuzz.sh "${SPB_FUZZ_SECONDS:-10}"

echo "== Tests (asan)"
build asan
ctest --preset asan -j "$(nproc)"
