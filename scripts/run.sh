#!/usr/bin/env bash
# Installs what is missing, builds and opens the program. With --demo, or without a display, drives
# the real window over data/demo on a virtual screen and opens the image that it made.
# Usage: run.sh [--demo | PROGRAM ARGUMENTS...]
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/setup.sh run

echo "Building (release) ..."
mkdir -p build
if ! { cmake --preset release && cmake --build --preset release; } >build/run.log 2>&1; then
    tail -n 40 build/run.log >&2
    echo "run.sh: the build failed; build/run.log has it all" >&2
    exit 1
fi

if [ "${1:-}" != --demo ] && [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec build/release/bin/sealed-package-builder "$@"
fi

[ "${1:-}" = --demo ] || echo "There is no display: running the demo on a virtual one."
scratch=$(mktemp -d)
screen=
cleanup() {
    [ -z "$screen" ] || kill "$screen" 2>/dev/null || true
    rm -rf "$scratch"
}
trap cleanup EXIT

# Xvfb finds a free display by itself and writes its number once it accepts clients.
Xvfb -displayfd 3 -dpi 96 -screen 0 1920x1200x24 -nolisten tcp 3>"$scratch/display" >"$scratch/xvfb.log" 2>&1 &
screen=$!
for _ in $(seq 100); do
    [ ! -s "$scratch/display" ] || break
    kill -0 "$screen" 2>/dev/null || break
    sleep 0.1
done
if [ ! -s "$scratch/display" ]; then
    cat "$scratch/xvfb.log" >&2
    echo "run.sh: no virtual display could be started" >&2
    exit 1
fi

export DISPLAY=":$(cat "$scratch/display")" QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
    mkdir -m 700 "$scratch/runtime"
    export XDG_RUNTIME_DIR=$scratch/runtime
fi
timeout 120 build/release/demo/demo-driver data/demo build/demo
build/release/bin/spb-unpack build/demo/out.sfi --key data/demo/key.bin
