#!/usr/bin/env bash
# Installs the Debian packages that the build and the tests need.
# The lists live in scripts/packages/*.txt, one package a line, '#' starts a comment.
#
# A package mirror in the middle of a sync, or the index of an architecture we don't use,
# must not stop the install: a failed 'apt-get update' is tried once more and then left
# behind, and the install goes on with the lists there are. Only a needed package that
# cannot be installed fails the script, and it is named.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"

mapfile -t wanted < <(cat "$here"/packages/*.txt | sed -e 's/#.*//' -e 's/[[:space:]]//g' | grep -v '^$' | sort -u)

installed() {
    local status
    status=$(dpkg-query -W -f='${Status}' "$1" 2>/dev/null || true)
    [[ "$status" == "install ok installed" ]]
}

missing=()
for pkg in "${wanted[@]}"; do
    installed "$pkg" || missing+=("$pkg")
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
export DEBIAN_FRONTEND=noninteractive

# apt-get update fails as a whole when any one index fails, although it keeps every list
# it did fetch. So: try, try once more after a pause, then go on with what is there.
update_ok=0
for attempt in 1 2; do
    if "${sudo_cmd[@]}" apt-get update -qq; then
        update_ok=1
        break
    fi
    if ((attempt == 1)); then
        echo "install-deps: apt-get update failed; trying once more in 5 s" >&2
        sleep 5
    fi
done
if ((!update_ok)); then
    echo "install-deps: apt-get update failed twice; going on with the package lists there are" >&2
fi

if "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"; then
    exit 0
fi

# The install as a whole failed: find and name the packages that can't be had, and
# install the rest, so that the message says exactly what is wrong.
echo "install-deps: the install failed; trying the packages one by one" >&2
failed=()
for pkg in "${missing[@]}"; do
    installed "$pkg" && continue
    if ! "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "$pkg" >/dev/null 2>&1; then
        failed+=("$pkg")
    fi
done
if ((${#failed[@]} > 0)); then
    echo "install-deps: these needed packages cannot be installed: ${failed[*]}" >&2
    if ((!update_ok)); then
        echo "install-deps: the package lists could not be refreshed; a mirror may be mid-sync, try again later" >&2
    fi
    exit 1
fi
