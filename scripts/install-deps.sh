#!/usr/bin/env bash
# Installs the Debian packages that the build and the tests need.
# The lists live in scripts/packages/*.txt, one package a line, '#' starts a comment.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"

mapfile -t wanted < <(cat "$here"/packages/*.txt | sed -e 's/#.*//' -e 's/[[:space:]]//g' | grep -v '^$' | sort -u)

missing=()
for pkg in "${wanted[@]}"; do
    status=$(dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null || true)
    [[ "$status" == "install ok installed" ]] || missing+=("$pkg")
done

if ((${#missing[@]} == 0)); then
    echo "install-deps: all ${#wanted[@]} packages present"
    exit 0
fi

echo "install-deps: installing ${missing[*]}"
sudo_cmd=()
if [[ $(id -u) -ne 0 ]]; then
    sudo_cmd=(sudo)
fi
# wine wants the i386 architecture for its 32-bit half; harmless when not needed.
if printf '%s\n' "${missing[@]}" | grep -q '^wine'; then
    if ! dpkg --print-foreign-architectures | grep -q i386; then
        "${sudo_cmd[@]}" dpkg --add-architecture i386
    fi
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
