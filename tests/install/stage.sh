#!/usr/bin/env bash
# Installs the build into STAGE/root through DESTDIR, under the prefix the Debian package
# uses (/usr), as a package build does.
#   stage.sh CMAKE BUILD STAGE
set -euo pipefail
cmake="$1" build="$2" stage="$3"
rm -rf "$stage"
mkdir -p "$stage"
DESTDIR="$stage/root" "$cmake" --install "$build" --prefix /usr >"$stage/install.log"
echo "installed $(find "$stage/root" -type f | wc -l) files under $stage/root"
