#!/usr/bin/env bash
# Configures and builds everything into build/.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cmake -S "$root" -B "$root/build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DQUILMARK_WARNINGS_AS_ERRORS=ON
cmake --build "$root/build" -j "$(nproc)"
