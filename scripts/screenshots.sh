#!/usr/bin/env bash
# Pictures of the splash, the wizard, the chooser, a chart of the sample world's major
# airport (classic, and as a diagram by day and by night), the About box, a message above
# a chart and the notice of changed scenery, taken in a real X server (Xvfb) with a window
# manager (openbox) and written to docs/. The diagram's printed page is left in
# build/screenshots-work/chart-print.pdf.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
bash "$root/scripts/install-deps.sh"
bash "$root/scripts/build.sh"
bash "$root/tests/ui/under_window_manager.sh" \
    "$root/build/quilmark-screenshots" "$root/build/sample-world/FS2002" \
    "$root/build/screenshots-work" "$root/docs"
