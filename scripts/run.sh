#!/usr/bin/env bash
# The README's run command: installs what is needed, builds, and starts the program on the
# bundled sample world, in a working folder of its own (build/run) whose settings file
# points at the sample world, so the chooser fills at once.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
bash "$root/scripts/install-deps.sh"
bash "$root/scripts/build.sh"

work="$root/build/run"
mkdir -p "$work"
cd "$work"
if [[ ! -f quilmark_config.cfg ]]; then
    "$root/build/tools/quilmark-tool" init "$root/build/sample-world/FS2002"
fi
if [[ -z "${DISPLAY:-}" && -z "${WAYLAND_DISPLAY:-}" ]]; then
    echo "No display here: walking the program under Xvfb and saving its pictures in build/screenshots."
    exec xvfb-run -a -s "-screen 0 1280x1024x24" \
        "$root/build/quilmark-screenshots" "$root/build/sample-world/FS2002" \
        "$root/build/screenshots-work" "$root/build/screenshots"
fi
echo "Starting Quilmark in $work"
exec "$root/build/quilmark"
