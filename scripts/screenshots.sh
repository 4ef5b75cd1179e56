#!/usr/bin/env bash
# Pictures of the splash, the wizard, the chooser and a chart of the sample world's major
# airport, taken in a real X server (Xvfb) and written to docs/.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
bash "$root/scripts/install-deps.sh"
bash "$root/scripts/build.sh"
xvfb-run -a -s "-screen 0 1280x1024x24" \
    "$root/build/quilmark-screenshots" "$root/build/sample-world/FS2002" \
    "$root/build/screenshots-work" "$root/docs"
