#!/usr/bin/env bash
# Runs one fuzz target for a number of seconds from its seeds.
#   run_target.sh FUZZ_BUILD_DIR TARGET SECONDS CORPUS_DIR [ARTIFACT_DIR]
# New inputs go to CORPUS_DIR (the seeds stay as they are); a crash, leak or timeout is
# written to ARTIFACT_DIR (default CORPUS_DIR/../artifacts) and fails the run. The last
# lines of libFuzzer's report (executions, coverage, peak memory) are printed.
set -euo pipefail
build="$1" target="$2" seconds="$3" corpus="$4"
artifacts="${5:-$(dirname "$corpus")/artifacts}"
binary="$build/fuzz_$target"
seeds="$build/seeds/$target"

# Largest input per target: magdec.bgl holds a grid of 130 KB; the text files are small.
case "$target" in
    magdec) max_len=140000 ;;
    scenery_cfg) max_len=16384 ;;
    config_file) max_len=4096 ;;
    *) max_len=65536 ;;
esac

mkdir -p "$corpus" "$artifacts"
log="$(mktemp)"
trap 'rm -f "$log"' EXIT
status=0
"$binary" -max_total_time="$seconds" -max_len="$max_len" -timeout=10 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="$artifacts/$target-" "$corpus" "$seeds" \
    >"$log" 2>&1 || status=$?
if [[ $status -ne 0 ]]; then
    tail -n 60 "$log"
    echo "fuzz_$target: FAILED (exit $status); inputs in $artifacts"
    exit 1
fi
grep -E '^(#[0-9]+[[:space:]]+DONE|Done [0-9]+ runs|stat::number_of_executed_units|stat::peak_rss_mb|stat::new_units_added)' "$log" || true
echo "fuzz_$target: $(grep -Eo 'cov: [0-9]+ ft: [0-9]+ corp: [0-9]+/[0-9]+[a-zA-Z]+' "$log" | tail -n 1), no crash"
