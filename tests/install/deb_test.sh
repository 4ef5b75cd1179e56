#!/usr/bin/env bash
# Builds the Debian package as a packager does (cpack -G DEB), checks that its dependencies
# were worked out from the binaries, and runs the checks of an installation on what it
# unpacks to.
#   deb_test.sh CPACK BUILD OUT "BRIDGE.exe;..."
set -euo pipefail
cpack="$1" build="$2" out="$3" bridges="$4"
here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
for tool in dpkg-deb dpkg-shlibdeps file; do
    if ! command -v "$tool" >/dev/null; then
        echo "$tool not found (Debian packages dpkg-dev and file): the package is not built"
        exit 77
    fi
done
rm -rf "$out"
mkdir -p "$out"
if ! "$cpack" -G DEB --config "$build/CPackConfig.cmake" -B "$out" >"$out/cpack.log" 2>&1; then
    cat "$out/cpack.log"
    exit 1
fi
debs=("$out"/quilmark_*.deb)
depends="$(dpkg-deb -f "${debs[0]}" Depends)"
echo "Depends: $depends"
for package in libc6 libstdc++6 libqt6widgets6 libqt6svg6 qt6-qpa-plugins fonts-dejavu-extra; do
    sed -e 's/ ([^)]*)//g' -e 's/, /\n/g' <<<"$depends" | grep -qxF "$package" || {
        echo "FAIL: the package does not depend on $package"
        exit 1
    }
done
dpkg-deb -x "${debs[0]}" "$out/root"
bash "$here/installed_test.sh" "$out/root" /usr "$bridges"
