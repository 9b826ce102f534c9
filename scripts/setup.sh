#!/usr/bin/env bash
# Installs what is missing through apt. Idempotent: when all is there, apt isn't called.
# Usage: setup.sh [run|test|bench|package|pictures|coverage]
set -euo pipefail

purpose=${1:-run}
packages=(g++ cmake ninja-build pkg-config git
    qtbase5-dev libqt5xmlpatterns5-dev libssl-dev libexpected-dev libbotan-2-dev libp11-kit-dev
    librsvg2-bin cmark-gfm qttools5-dev-tools fonts-dejavu-core xvfb)
case $purpose in
    run) ;;
    test) packages+=(libgtest-dev libgmock-dev clang clang-format libclang-rt-14-dev
              clang-tidy desktop-file-utils appstream locales python3 python3-cryptography
              openssl srecord softhsm2 strace) ;;
    bench) packages+=(libbenchmark-dev srecord binutils-arm-none-eabi gcc-arm-none-eabi elfutils llvm python3) ;;
    pictures) packages+=(imagemagick pngquant openssl softhsm2) ;;
    package) packages+=(lintian debootstrap dpkg-dev xdotool file desktop-file-utils appstream python3) ;;
    coverage) packages+=(libgtest-dev libgmock-dev openssl softhsm2 python3 clang llvm) ;;
    *) echo "setup.sh: unknown purpose '$purpose'" >&2; exit 3 ;;
esac

missing=()
for package in "${packages[@]}"; do
    if [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
        missing+=("$package")
    fi
done
if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "setup.sh: these packages are missing and need root to install: ${missing[*]}" >&2
        exit 1
    fi
    root=(sudo)
fi
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { "${root[@]}" apt-get update && "${root[@]}" apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    echo "setup.sh: apt could not install: ${missing[*]}" >&2
    exit 1
fi
