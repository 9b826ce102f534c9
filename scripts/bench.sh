#!/usr/bin/env bash
# Measures reading and writing of firmware beside srec_cat and two objcopy programs, sealing and
# opening beside OpenSSL's own cipher, one request of the SFI tab, and start-up beside a bare window.
# Usage: scripts/bench.sh [--check] [ROUNDS]      --check fails when a result is below its bar
set -euo pipefail
cd "$(dirname "$0")/.."

check=
rounds=5
for argument in "$@"; do
    case $argument in
        --check) check=--check ;;
        [1-9]*) rounds=$argument ;;
        *) echo "Usage: scripts/bench.sh [--check] [ROUNDS]" >&2; exit 3 ;;
    esac
done

./scripts/setup.sh bench
cmake --preset bench >/dev/null
cmake --build --preset bench --target bench-convert bench_seal bench_generate bench_startup

# Kept between runs: making them takes longer than the measurement.
payloads=build/bench/payloads
if [ ! -e "$payloads/complete" ] || [ bench/make_payloads.py -nt "$payloads/complete" ]; then
    echo "Making the payloads"
    rm -rf "$payloads"
    mkdir -p "$payloads"
    python3 bench/make_payloads.py "$payloads"
    touch "$payloads/complete"
fi

memory=/dev/shm
[ -w "$memory" ] || memory=${TMPDIR:-/tmp}
outputs=$(mktemp -d "$memory/spb-bench.XXXXXX")
trap 'rm -rf "$outputs"' EXIT
missed=0
python3 bench/compare_tools.py build/bench/bin/bench-convert "$payloads" "$outputs" "$rounds" $check || missed=1
python3 -B bench/measure_seal.py "$(find build/bench -name bench_seal -type f)" "$rounds" $check || missed=1
"$(find build/bench -name bench_generate -type f)" "$((rounds * 2))" $check || missed=1
python3 -B bench/measure_startup.py "$(find build/bench -name bench_startup -type f)" "$((rounds * 3))" $check || missed=1
exit "$missed"
