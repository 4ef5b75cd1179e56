#!/usr/bin/env bash
# Runs a command in a fresh X server with a window manager (Xvfb and openbox), so that
# windows are placed, framed and stacked as on a user's desktop. Exits 77, which the test
# runner counts as skipped, where either is not installed.
set -euo pipefail
if [[ "${1:-}" != --inside ]]; then
    for tool in xvfb-run openbox xprop; do
        if ! command -v "$tool" >/dev/null; then
            echo "skipped: $tool is not installed (scripts/packages/ui.txt lists it)"
            exit 77
        fi
    done
    exec xvfb-run -a -s "-screen 0 1280x1024x24" bash "${BASH_SOURCE[0]}" --inside "$@"
fi
shift
openbox --sm-disable >/dev/null 2>&1 &
wm=$!
trap 'kill "$wm" 2>/dev/null || true' EXIT
# The window manager is up once it has named itself on the root window.
for _ in $(seq 100); do
    if xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; then
        break
    fi
    sleep 0.05
done
QT_QPA_PLATFORM=xcb QUILMARK_WINDOW_MANAGER=openbox "$@"
