#!/usr/bin/env bash
# Runs the fuzz targets side by side on the cores, builds them before:
#   scripts/fuzz.sh SECONDS [TARGET...]   so long each
#   scripts/fuzz.sh --runs N [TARGET...]  so many executions each
# Prints a table with the sum of all executions and ends with 1 when a target found something: a
# crash, a leak, more than ten seconds for an input or more than 2 GiB. The input then lies in
# build/fuzz, as <target>-crash-<hash> and the like. What was learnt stays in build/fuzz/corpus.
# SPB_FUZZ_JOBS sets how many run at a time; the cores are the default. Executions of XML documents
# are summed on their own, as they take longer.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() { sed -n '2,/^set/{/^#/s/^# \{0,1\}//p}' "$0" >&2; exit 3; }
limit=()
case "${1:-}" in
--runs) [[ "${2:-}" =~ ^[0-9]+$ ]] || usage; limit=("-runs=$2"); shift 2 ;;
*) [[ "${1:-}" =~ ^[0-9]+$ ]] || usage; limit=("-max_total_time=$1"); shift ;;
esac
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(fuzzers)

mkdir -p build
if ! { cmake --preset fuzz && cmake --build --preset fuzz --target "${targets[@]}"; } >build/fuzz-build.log 2>&1; then
    tail -n 60 build/fuzz-build.log
    exit 1
fi
if [ "${targets[0]}" = fuzzers ]; then
    targets=()
    for program in build/fuzz/bin/fuzz_*; do
        [ ! -x "$program" ] || targets+=("$(basename "$program")")
    done
fi

# libFuzzer looks for leaks after an input that allocates more than it frees, the first thousand
# times. Below Qt that is each input, as it keeps things for the next one, and looking takes fifty
# times as long as the input: of these targets leaks are looked for once, at the end.
keepers=" fuzz_families fuzz_settings "
documents=" fuzz_device fuzz_families fuzz_template fuzz_xml "
export keepers

run_one() {
    local name=$1 leaks=1
    shift
    [[ "$keepers" != *" $name "* ]] || leaks=0
    local corpus=build/fuzz/corpus/$name log=build/fuzz/$name.log dictionary=fuzz/dictionaries/$name.dict
    mkdir -p "$corpus"
    [ ! -f "$dictionary" ] || set -- "$@" "-dict=$dictionary"
    local status=0
    local scratch=${TMPDIR:-/tmp}
    [ ! -w /dev/shm ] || scratch=/dev/shm # files that are synced cost nothing there
    SPB_FUZZ_SEEDS=$corpus TMPDIR=$scratch QT_QPA_PLATFORM=offscreen "build/fuzz/bin/$name" "$corpus" "$@" \
        -timeout=10 -rss_limit_mb=2048 -detect_leaks=$leaks -print_final_stats=1 -close_fd_mask=1 \
        "-artifact_prefix=build/fuzz/$name-" >"$log" 2>&1 || status=$?
    echo "$status" >"build/fuzz/$name.status"
}
export -f run_one

rm -f build/fuzz/*.status
printf '%s\n' "${targets[@]}" |
    xargs -P "${SPB_FUZZ_JOBS:-$(nproc)}" -I{} bash -c 'run_one "$@"' run_one {} "${limit[@]}"

number() { grep -a -o "$2 *[0-9]*" "build/fuzz/$1.log" | tail -n 1 | grep -o '[0-9]*$' || echo 0; }
sum=0
sum_documents=0
failed=()
printf '%-20s %12s %8s %8s %10s  %s\n' Target Executions 'Per s' Coverage 'Peak MiB' Result
for name in "${targets[@]}"; do
    runs=$(number "$name" 'stat::number_of_executed_units:')
    result=fine
    if [ "$(cat "build/fuzz/$name.status")" != 0 ]; then
        result=FAILED
        failed+=("$name")
        runs=$(number "$name" '^#')
    fi
    if [[ "$documents" == *" $name "* ]]; then
        sum_documents=$((sum_documents + runs))
    else
        sum=$((sum + runs))
    fi
    printf '%-20s %12d %8d %8d %10d  %s\n' "$name" "$runs" \
        "$(number "$name" 'stat::average_exec_per_sec:')" "$(number "$name" 'cov:')" \
        "$(number "$name" 'stat::peak_rss_mb:')" "$result"
done
printf '%-20s %12d\n' 'Sum of XML documents' "$sum_documents" 'Sum of all others' "$sum"
for name in "${failed[@]}"; do
    echo "== $name"
    grep -a -v '^#' "build/fuzz/$name.log" | tail -n 40
done
[ ${#failed[@]} -eq 0 ]
