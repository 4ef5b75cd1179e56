#!/usr/bin/env bash
# The README's run command: installs what is needed, builds, and runs the program on the
# bundled sample world in a working folder of its own (build/run).
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
bash "$root/scripts/install-deps.sh"
bash "$root/scripts/build.sh"

work="$root/build/run"
mkdir -p "$work"
cd "$work"
tool="$root/build/tools/quilmark-tool"
if [[ ! -f quilmark_config.cfg ]]; then
    "$tool" init "$root/build/sample-world/FS2002"
fi
echo "== Scanning the sample world (working folder: $work)"
"$tool" scan
echo
echo "== Seattle-Tacoma as decoded from its BGL file"
"$tool" bgl --magdec "$root/build/sample-world/FS2002/Scenery/magdec.bgl" \
    "$root/build/sample-world/FS2002/Scenery/NAmW/scenery/AP934170.BGL" | head -c 2000
echo
