#!/usr/bin/env bash
# The whole-process benchmark of docs/benchmarks.md from one command: the packages, the
# build, the full-size world and the world four times its size, then quilmark-process-bench
# under an X server with a window manager, so that the desktop program's real forms run as
# on a user's desktop. Arguments go to quilmark-process-bench:
#   scripts/bench.sh [--repetitions N] [--only CASE,...]
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
bash "$root/scripts/install-deps.sh"
bash "$root/scripts/build.sh"
cmake --build "$root/build" --target full_world full_world_4 full_world_fs2004
bash "$root/tests/ui/under_window_manager.sh" "$root/build/quilmark-process-bench" \
    --world "$root/build/full-world/FS2002" --world4 "$root/build/full-world-4/FS2002" \
    --world2004 "$root/build/full-world-fs2004/FS2004" "$@"
