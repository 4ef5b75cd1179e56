#!/usr/bin/env bash
# The README's test command: installs what is needed, builds, and runs every test.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
bash "$root/scripts/install-deps.sh"
bash "$root/scripts/build.sh"
ctest --test-dir "$root/build" --output-on-failure -j "$(nproc)" --timeout 600
