#!/usr/bin/env bash
# Makes the pictures of the help pages: the real window, filled with the demo inputs on a virtual screen
# by the steps of scripts/help-pictures.txt. They stand in docs/help/pictures, small enough to ship.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

./scripts/setup.sh pictures
mkdir -p build
if ! { cmake --preset release && cmake --build --preset release; } >build/pictures.log 2>&1; then
    tail -n 40 build/pictures.log >&2
    echo "make-screenshots.sh: the build failed; build/pictures.log has it all" >&2
    exit 1
fi

# In a mount namespace of its own the program stands in /opt and the inputs in /srv/firmware, so that no
# picture depends on the machine.
scratch=$(mktemp -d)
screen=
cleanup() {
    [ -z "$screen" ] || kill "$screen" 2>/dev/null || true
    rm -rf "$scratch"
}
trap cleanup EXIT
mkdir -p "$scratch"/{inputs/{keys,licences},pictures,home,tokens}
mkdir -m 700 "$scratch/runtime"
cd "$scratch/inputs"
cp "$root"/data/demo/* "$root"/data/templates/*.xml .
head -c 16 /dev/zero >version.bin
head -c 16 /dev/urandom >ssp-nonce.bin
head -c 148 /dev/zero >secrets.bin
head -c 4096 /dev/zero >external.bin
openssl ecparam -name prime256v1 -genkey -noout -out private.pem 2>/dev/null
openssl ec -in private.pem -pubout -out public.pem 2>/dev/null
for key in chip-1 chip-2 keys/auth_secure keys/encryption keys/image_p256; do
    openssl ecparam -name prime256v1 -genkey -noout -out $key.pem 2>/dev/null
done
openssl ec -in keys/auth_secure.pem -pubout -out keys/auth_secure_pub.pem 2>/dev/null
openssl genpkey -algorithm x25519 -out keys/wrapping.pem
for chip in chip-1 chip-2; do
    openssl ec -in $chip.pem -pubout -out $chip.pub 2>/dev/null
done
printf 'directories.tokendir = %s\nlog.level = ERROR\n' "$scratch/tokens" >"$scratch/softhsm2.conf"
export SOFTHSM2_CONF=$scratch/softhsm2.conf
softhsm2-util --init-token --free --label "Line 2" --so-pin 12345678 --pin 1234 >/dev/null

Xvfb -displayfd 3 -dpi 96 -screen 0 1920x1200x24 -nolisten tcp 3>"$scratch/display" >"$scratch/xvfb.log" 2>&1 &
screen=$!
for _ in $(seq 100); do
    [ ! -s "$scratch/display" ] || break
    sleep 0.1
done
DISPLAY=":$(cat "$scratch/display")" QT_QPA_PLATFORM=xcb LC_ALL=C.UTF-8 HOME=$scratch/home XDG_RUNTIME_DIR=$scratch/runtime \
    timeout 120 unshare --map-root-user --mount bash -ec '
        mount -t tmpfs none /opt
        mount -t tmpfs none /srv
        cp -rL "$1" /opt/sealed-package-builder
        mkdir /srv/firmware
        mount --bind "$2" /srv/firmware
        cd /srv/firmware
        exec /opt/sealed-package-builder/demo-driver "${@:3}"' \
    - "$root/build/release/demo" "$scratch/inputs" --pictures "$root/scripts/help-pictures.txt" \
    "$root/data/demo" "$scratch/pictures"

cd "$root"
mkdir -p docs/help/pictures
for picture in "$scratch"/pictures/*.png; do
    # A window has few colours, and a page has no room for all its width.
    convert "$picture" -resize 920x -strip png:- | pngquant --speed 1 128 - >"docs/help/pictures/${picture##*/}"
done
du -cb docs/help/pictures/*.png | tail -1
