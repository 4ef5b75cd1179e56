#!/usr/bin/env bash
# Checks an installation staged under ROOT (its files under ROOT/PREFIX) as a user meets
# it: every file in its place, the menu entry naming the launcher where it will lie, the
# installed tool charting the installed sample world in a folder of its own, and the
# launcher starting the program in the user's data folder.
#   installed_test.sh ROOT PREFIX "BRIDGE.exe;..."
set -euo pipefail
root="$1" prefix="$2" bridges="$3"
p="$root$prefix"
fail() {
    echo "FAIL: $*" >&2
    exit 1
}

for f in bin/quilmark bin/quilmark-tool libexec/quilmark/quilmark-menu; do
    [[ -x "$p/$f" ]] || fail "$f is not installed as a program"
done
files=(share/applications/org.quilmark.Quilmark.desktop
    share/metainfo/org.quilmark.Quilmark.metainfo.xml
    share/icons/hicolor/scalable/apps/quilmark.svg
    share/man/man1/quilmark.1.gz share/man/man1/quilmark-tool.1.gz
    share/quilmark/FS2002/scenery.cfg share/quilmark/FS2002/Scenery/magdec.bgl)
IFS=';' read -ra bridge_list <<<"$bridges"
for bridge in "${bridge_list[@]}"; do
    files+=("share/quilmark/$(basename "$bridge")")
done
for f in "${files[@]}"; do
    [[ -f "$p/$f" ]] || fail "$f is missing"
done

# Each icon is a PNG as wide and high as its folder says.
sizes=0
for png in "$p"/share/icons/hicolor/*x*/apps/quilmark.png; do
    size="$(basename "$(dirname "$(dirname "$png")")")"
    header="$(od -An -tx1 -N24 "$png" | tr -d ' \n')"
    [[ "${header:0:16}" == 89504e470d0a1a0a ]] || fail "$png is not a PNG"
    [[ "$((16#${header:32:8}))x$((16#${header:40:8}))" == "$size" ]] || fail "$png is not $size"
    sizes=$((sizes + 1))
done
((sizes >= 5)) || fail "only $sizes PNG icons"

grep -qx "Exec=\"$prefix/libexec/quilmark/quilmark-menu\"" \
    "$p/share/applications/org.quilmark.Quilmark.desktop" ||
    fail "the menu entry does not start $prefix/libexec/quilmark/quilmark-menu"
zcat "$p/share/man/man1/quilmark-tool.1.gz" | grep -q '^\.TH QUILMARK\\-TOOL 1' ||
    fail "the quilmark-tool man page is not readable"

work="$(mktemp -d)"
pids=()
trap 'for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done; rm -rf "$work"' EXIT

# The tool, as the README shows it, in a folder of its own.
mkdir "$work/charts"
(
    cd "$work/charts"
    "$p/bin/quilmark-tool" init "$p/share/quilmark/FS2002"
    "$p/bin/quilmark-tool" chart "KSEA (SEATTLE-TACOMA INTL)" --out k.png 2>/dev/null
) || fail "the installed quilmark-tool could not chart KSEA"
header="$(od -An -tx1 -N24 "$work/charts/k.png" | tr -d ' \n')"
[[ "${header:0:16}" == 89504e470d0a1a0a && "${header:32:16}" == 0000010f000000e4 ]] ||
    fail "k.png is not a 271 by 228 PNG"
[[ "$(stat -c %s "$work/charts/k.png")" -gt 2000 ]] || fail "k.png is nearly empty"

# The launcher: the program runs in XDG_DATA_HOME/quilmark, or in ~/.local/share/quilmark
# when XDG_DATA_HOME is unset or relative (which the XDG rules say to ignore).
launch_in() { # XDG_DATA_HOME, expected folder
    HOME="$work/home" XDG_DATA_HOME="$1" QT_QPA_PLATFORM=offscreen \
        "$p/libexec/quilmark/quilmark-menu" >/dev/null 2>&1 &
    local pid=$!
    pids+=("$pid")
    for _ in $(seq 100); do
        [[ "$(readlink "/proc/$pid/exe" 2>/dev/null)" == "$p/bin/quilmark" ]] && break
        sleep 0.1
    done
    [[ "$(readlink "/proc/$pid/exe" 2>/dev/null)" == "$p/bin/quilmark" ]] ||
        fail "the launcher did not start $p/bin/quilmark"
    [[ "$(readlink "/proc/$pid/cwd")" == "$2" ]] ||
        fail "the program runs in $(readlink "/proc/$pid/cwd"), not $2"
    kill "$pid"
}
launch_in "$work/data" "$work/data/quilmark"
launch_in "" "$work/home/.local/share/quilmark"
launch_in "relative/data" "$work/home/.local/share/quilmark"

echo "the staged installation works: tool, icons ($sizes sizes), menu entry, launcher"
