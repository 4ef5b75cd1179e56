#!/usr/bin/env bash
# Charts of the sample world's major airport at zoom levels 9 and 14, as PNG, SVG and PDF,
# written to the folder given (default build/chart-samples) for a person to look at; each
# file is checked to be what its extension says.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${QUILMARK_BUILD:-$root/build}"
out="$(realpath -m "${1:-$build/chart-samples}")"
tool="$build/tools/quilmark-tool"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
mkdir -p "$out"
cd "$work"
"$tool" init "$build/sample-world/FS2002"
for level in 9 14; do
    for kind in png svg pdf; do
        file="$out/ksea-level$level.$kind"
        "$tool" chart "KSEA (SEATTLE-TACOMA INTL)" --zoom "$level" --size 1200x900 \
            --aircraft 47.4600,-122.3080,180 --out "$file" 2>/dev/null
        case "$kind" in
        png) head -c 8 "$file" | od -An -tx1 | grep -q '89 50 4e 47 0d 0a 1a 0a' ;;
        svg) grep -q '<svg' "$file" ;;
        pdf) head -c 5 "$file" | grep -q '%PDF-' ;;
        esac
        echo "wrote $file ($(stat -c %s "$file") bytes)"
    done
done
