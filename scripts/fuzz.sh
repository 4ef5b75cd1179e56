#!/usr/bin/env bash
# Builds the fuzz targets with clang and runs each for SECONDS (default 60), as many at
# once as there are cores. Corpora grow in build/fuzz-corpus/TARGET from run to run;
# crashes, leaks and timeouts go to build/fuzz-artifacts; each run's report is in
# build/fuzz-logs/TARGET.log.
#   scripts/fuzz.sh [SECONDS] [TARGET...]
# With --coverage instead, the corpora (and seeds) run once through a build with
# source-based coverage, and the line coverage of the decoders' files is printed.
#   scripts/fuzz.sh --coverage [TARGET...]
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
coverage=0
if [[ "${1:-}" == "--coverage" ]]; then
    coverage=1
    seconds=0
else
    seconds="${1:-60}"
fi
shift || true
targets=("$@")
if ((${#targets[@]} == 0)); then
    targets=(airport_section boundary_section magdec scenery_cfg config_file database_file fs2004)
fi
clang="${CXX_FUZZ:-clang++}"

if ((coverage)); then
    build="$root/build/fuzz-coverage"
    cmake -S "$root/fuzz" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER="$clang" \
        -DCMAKE_BUILD_TYPE=RelWithDebInfo -DFUZZ_COVERAGE=ON -DFUZZ_WARNINGS_AS_ERRORS=ON >/dev/null
    cmake --build "$build"
    profiles="$build/profiles"
    rm -rf "$profiles"
    mkdir -p "$profiles"
    objects=()
    for target in "${targets[@]}"; do
        corpus="$root/build/fuzz-corpus/$target"
        mkdir -p "$corpus"
        LLVM_PROFILE_FILE="$profiles/$target.profraw" "$build/fuzz_$target" -runs=0 \
            "$corpus" "$build/seeds/$target" >/dev/null 2>&1
        objects+=(-object "$build/fuzz_$target")
    done
    llvm-profdata-14 merge -sparse "$profiles"/*.profraw -o "$profiles/all.profdata"
    # The first object is given plainly, the others with -object.
    llvm-cov-14 report "$build/fuzz_${targets[0]}" "${objects[@]:2}" \
        -instr-profile="$profiles/all.profdata" \
        "$root/src/bgl" "$root/src/airspace/boundary_walker.cpp" "$root/src/scenery" \
        "$root/src/shell/config_file.cpp" "$root/src/fs2004"
    exit 0
fi

build="$root/build/fuzz"
cmake -S "$root/fuzz" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER="$clang" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo -DFUZZ_WARNINGS_AS_ERRORS=ON >/dev/null
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
