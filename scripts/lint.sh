#!/usr/bin/env bash
# clang-tidy over sources and the headers that they include. Any finding fails.
# Usage: lint.sh [REVISION | --all | --recent SECONDS]
#   REVISION  what changed since (default HEAD~1);  --all  every source
#   --recent  begins with what changed last and takes no further file after SECONDS
set -euo pipefail
cd "$(dirname "$0")/.."
command -v clang-tidy >/dev/null || { echo "lint.sh: scripts/setup.sh test installs clang-tidy" >&2; exit 1; }
[ -f build/dev/compile_commands.json ] || cmake --preset dev >/dev/null
seconds=100000

changed_last() {
    git status --porcelain --untracked-files=all | awk '$1 != "D" {print $NF}'
    git log --format= --name-only --diff-filter=d -n 200
    git ls-files
}
case ${1:-} in
    --all) names=$(git ls-files) ;;
    --recent) names=$(changed_last); seconds=${2:?lint.sh: --recent needs seconds} ;;
    *) names=$(git diff --name-only --diff-filter=d "${1:-HEAD~1}") ;;
esac

# A header is looked at through the sources that include it, so its change counts as that of the source
# of its name. What isn't built has no compile command.
files=$(echo "$names" | sed 's/\.h$/.cpp/' | awk '/^(src|tools)\/.*\.cpp$/ && !seen[$0]++' |
    while read -r name; do
        if [ -f "$name" ] && grep -qF "\"$PWD/$name\"" build/dev/compile_commands.json; then
            echo "$name"
        fi
    done)
[ -n "$files" ] || { echo "nothing to look at"; exit 0; }

deadline=$(($(date +%s) + seconds))
export deadline
log=$(mktemp)
trap 'rm -f "$log"' EXIT
# shellcheck disable=SC2016
if ! echo "$files" | xargs -P "$(nproc)" -n 1 sh -c '
    [ "$(date +%s)" -lt "$deadline" ] || exit 0
    echo "$1"
    out=$(clang-tidy -p build/dev --quiet --warnings-as-errors="*" "$1" 2>&1) && exit 0
    echo "$out" | grep -vE "warnings? generated|^QStandardPaths" >&2
    exit 1' lint >"$log"; then
    echo "lint.sh: findings above" >&2
    exit 1
fi
echo "$(wc -l <"$log") of $(echo "$files" | wc -l) sources looked at, no finding"
