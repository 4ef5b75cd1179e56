#!/usr/bin/env bash
# Runs a validator on an installed file. Any complaint fails the test; without the validator
# the test is skipped (status 77) and says why.
#   validate.sh desktop-file-validate|appstreamcli DEBIAN_PACKAGE FILE
set -uo pipefail
tool="$1" package="$2" file="$3"
if ! command -v "$tool" >/dev/null; then
    echo "$tool not found (Debian package $package): $(basename "$file") is not checked"
    exit 77
fi
[[ -f "$file" ]] || { echo "FAIL: $file is not installed"; exit 1; }
case "$tool" in
appstreamcli) appstreamcli validate --no-net "$file" ;;
*)
    # It exits 0 on mere warnings: any output at all counts as a complaint.
    report="$("$tool" "$file" 2>&1)" && [[ -z "$report" ]] || { echo "$report"; exit 1; }
    echo "$(basename "$file"): valid"
    ;;
esac
