#!/usr/bin/env bash
# Installs what is missing, builds the Debian package, and lets lintian judge it: an error or a warning
# that packaging/debian/lintian-overrides doesn't explain fails. The package is left in build/package.
# Usage: package.sh [--try]
#   --try  also installs it in a clean Debian 12 root, starts it there, makes and opens a package with
#          it, and removes it without remains (needs root and a mirror)
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/setup.sh package
mkdir -p build
if ! { cmake --preset release && cmake --build --preset release; } >build/package.log 2>&1; then
    tail -n 40 build/package.log >&2
    echo "package.sh: the build failed; build/package.log has it all" >&2
    exit 1
fi
rm -rf build/package
if ! (umask 022 && cpack --config build/release/CPackConfig.cmake -B build/package) >>build/package.log 2>&1; then
    tail -n 40 build/package.log >&2
    echo "package.sh: cpack failed; build/package.log has it all" >&2
    exit 1
fi
rm -rf build/package/_CPack_Packages
package=$(ls build/package/*.deb)
echo "Package: $package ($(stat -c %s "$package") bytes)"
as=()
[ "$(id -u)" -ne 0 ] || as=(--allow-root)
lintian "${as[@]}" --fail-on error,warning --tag-display-limit 0 "$package"
echo "lintian: no error, no warning"

if [ "${1:-}" = --try ]; then
    python3 scripts/try-package.py "$package" build/release/demo
fi
