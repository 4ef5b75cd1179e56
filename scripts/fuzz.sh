#!/usr/bin/env bash
# Builds the fuzz targets with clang and runs each for SECONDS (default 60), as many at
# once as there are cores. Corpora grow in build/fuzz-corpus/TARGET from run to run;
# crashes, leaks and timeouts go to build/fuzz-artifacts; each run's report is in
# build/fuzz-logs/TARGET.log.
#   scripts/fuzz.sh [SECONDS] [TARGET...]
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
seconds="${1:-60}"
shift || true
targets=("$@")
if ((${#targets[@]} == 0)); then
    targets=(airport_section boundary_section magdec scenery_cfg config_file database_file)
fi

build="$root/build/fuzz"
cmake -S "$root/fuzz" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER="${CXX_FUZZ:-clang++}" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build"

logs="$root/build/fuzz-logs"
mkdir -p "$logs"
jobs="$(nproc)"
failed=0
running=0
for target in "${targets[@]}"; do
    if ((running >= jobs)); then
        wait -n || failed=1
        running=$((running - 1))
    fi
    echo "fuzz: $target for $seconds s"
    bash "$root/fuzz/run_target.sh" "$build" "$target" "$seconds" \
        "$root/build/fuzz-corpus/$target" "$root/build/fuzz-artifacts" >"$logs/$target.log" 2>&1 &
    running=$((running + 1))
done
while ((running > 0)); do
    wait -n || failed=1
    running=$((running - 1))
done
for target in "${targets[@]}"; do
    tail -n 1 "$logs/$target.log"
done
exit "$failed"
