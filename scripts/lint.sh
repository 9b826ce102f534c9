#!/usr/bin/env bash
# clang-tidy over the files changed since a revision (default: main's upstream state, HEAD~1).
# Usage: lint.sh [REVISION | --all]
set -euo pipefail
cd "$(dirname "$0")/.."
command -v clang-tidy >/dev/null || { echo "lint.sh: install clang-tidy first" >&2; exit 1; }
[ -f build/dev/compile_commands.json ] || cmake --preset dev >/dev/null
if [ "${1:-}" = --all ]; then
    files=$(git ls-files 'src/*.cpp' 'tools/*.cpp')
else
    files=$(git diff --name-only --diff-filter=d "${1:-HEAD~1}" -- 'src/*.cpp' 'tools/*.cpp')
fi
[ -n "$files" ] || { echo "nothing changed"; exit 0; }
echo "$files" | xargs -P "$(nproc)" -n 1 clang-tidy -p build/dev --quiet
