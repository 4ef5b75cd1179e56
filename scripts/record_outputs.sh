#!/usr/bin/env bash
# Records everything the program puts out on the sample world and the full-size world: the
# database and settings files, the JSON of every quilmark-tool command, the chart's drawing
# operations at every zoom level, PNG and SVG charts and diagrams, and pictures of the
# desktop program's windows. A change that must leave behaviour alone is checked by
# recording with the programs of the tree before it and after it, and comparing the two
# folders:
#
#   bash scripts/record_outputs.sh OLD_BIN WORLDS before
#   bash scripts/record_outputs.sh build WORLDS after
#   diff -r before after
#
# BIN is a build folder, or a folder holding copies of quilmark-tool and
# quilmark-screenshots. WORLDS holds sample/FS2002 and full/FS2002 (copies of the generated
# worlds, so that both runs read the same bytes; full/ may be left out). OUT is emptied
# first. Outputs over 1 MB are kept as their SHA-256 sums.
set -uo pipefail
bin="$(realpath "$1")"
worlds="$(realpath "$2")"
out="$(realpath -m "$3")"
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
tool="$bin/quilmark-tool"
[[ -x "$tool" ]] || tool="$bin/tools/quilmark-tool"
screenshots="$bin/quilmark-screenshots"
diagram="$bin/quilmark-diagram-dev"
export QT_QPA_PLATFORM=offscreen

rm -rf "$out"
mkdir -p "$out"
# A fixed working folder: the wizard's picture shows paths inside it.
work="${TMPDIR:-/tmp}/quilmark-record-outputs"
rm -rf "$work"
mkdir -p "$work"
trap 'rm -rf "$work"' EXIT

# run NAME ARGS...: the tool's standard output, its error output and its exit status.
run() {
    local name="$1"
    shift
    "$tool" "$@" >"$out/$name.out" 2>"$out/$name.err"
    echo "exit $?" >>"$out/$name.err"
}

# The list of a scan's JSON, one entry a line.
list_entries() {
    python3 -c 'import json,sys; [print(e) for e in json.load(open(sys.argv[1]))["list"]]' "$1"
}

record_world() {
    local tag="$1" fs="$2" zooms="$3"
    local dir="$work/$tag"
    mkdir -p "$dir"
    cd "$dir"
    run "$tag-init" init "$fs"
    cp quilmark_config.cfg "$out/$tag-config-after-init.cfg"
    run "$tag-scan-first" scan
    cp all_fs_airports.dat "$out/$tag-all_fs_airports.dat"
    cp quilmark_config.cfg "$out/$tag-config-after-scan.cfg"
    run "$tag-scan-later" scan
    local count
    count="$(python3 -c 'import json,sys; print(json.load(open(sys.argv[1]))["airport_count"])' \
        "$out/$tag-scan-first.out")"
    run "$tag-db" db all_fs_airports.dat "$count"
    run "$tag-db-short" db all_fs_airports.dat "$((count + 1))"

    # Every BGL file on its own with the variation table, and all of them together without.
    local magdec="$fs/Scenery/magdec.bgl" n=0 files=()
    while IFS= read -r file; do
        files+=("$file")
    done < <(find "$fs" -iname '*.bgl' ! -iname magdec.bgl | sort | head -n "${BGL_FILES:-1000}")
    for file in "${files[@]}"; do
        run "$tag-bgl-$n" bgl --magdec "$magdec" "$file"
        n=$((n + 1))
    done
    run "$tag-bgl-all" bgl "${files[@]}"

    # The airports to fetch and chart: all of a small world; of a large one a spread of the
    # list and the airport with the largest ground network.
    local entries=()
    while IFS= read -r entry; do
        entries+=("$entry")
    done < <(list_entries "$out/$tag-scan-first.out" | python3 -c '
import sys
lines = [l.rstrip("\n") for l in sys.stdin]
if len(lines) <= 12:
    print("\n".join(lines))
else:
    for i in (0, 1, len(lines) // 3, len(lines) // 2, len(lines) - 1):
        print(lines[i])')
    entries+=("$(python3 -c '
import json, sys
airports = json.load(open(sys.argv[1]))["airports"]
best = max(airports, key=lambda a: a["taxi_path_count"])
print(best["ident"] + " (" + best["name"] + ")")' "$out/$tag-db.out")")
    n=0
    for entry in "${entries[@]}"; do
        echo "$n $entry" >>"$out/$tag-entries.txt"
        run "$tag-fetch-$n" fetch "$entry"
        for zoom in $zooms; do
            run "$tag-chart-$n-z$zoom" chart "$entry" --zoom "$zoom" --ops
            run "$tag-chart-$n-z$zoom-aircraft" chart "$entry" --zoom "$zoom" --size 1200x900 \
                --aircraft 47.4600,-122.3080,-90 --ops
        done
        n=$((n + 1))
    done
    local last="${entries[$((${#entries[@]} - 1))]}"
    run "$tag-chart-hidden" chart "$last" --zoom 14 --hide taxiway_ids,gates --ops
    run "$tag-chart-no-airspace" chart "$last" --zoom 7 --hide airspace --ops
    for zoom in 9 14; do
        for kind in png svg; do
            run "$tag-image-z$zoom-$kind" chart "$last" --zoom "$zoom" --size 1200x900 \
                --aircraft 47.4600,-122.3080,180 --out "$out/$tag-z$zoom.$kind"
        done
    done
    # The airport diagram as the command line draws it, and the trip kit (a PDF carries its
    # time of making: only what the command says is kept).
    for kind in png svg; do
        run "$tag-diagram-$kind" chart "$last" --style diagram --size 1200x900 \
            --aircraft 47.4600,-122.3080,180 --out "$out/$tag-diagram.$kind"
    done
    run "$tag-diagram-night" chart "$last" --style diagram --night \
        --out "$out/$tag-diagram-night.png"
    run "$tag-kit" kit "$last" --out "$work/$tag-kit.pdf"
    run "$tag-fetch-unknown" fetch "NOWHERE (NO SUCH AIRPORT)"
}

record_world sample "$worlds/sample/FS2002" "$(seq 1 20)"
if [[ -d "$worlds/full/FS2002" ]]; then
    BGL_FILES=6 record_world full "$worlds/full/FS2002" "3 9 12 14 17"
fi

# Commands that read no world.
cd "$work"
run help --help
run version --version
for command in bgl init scan db fetch chart kit link; do
    run "help-$command" "$command" --help
done
run no-command
run unknown-command frobnicate
run chart-bad-zoom chart "X" --zoom 21 --ops
run chart-both chart "X" --ops --out x.png
run chart-diagram-ops chart "X" --style diagram --ops
run kit-no-out kit "X"
run link-nothing-listening link --port 1
run db-missing db none.dat 3

# The airport diagram and the trip kit, drawn by the developer's tool that makes them (PDF
# files carry their time of making and are left out).
record_diagram() {
    local name="$1" fs="$2"
    shift 2
    "$diagram" "$fs" "$work/diagram-$name" "$@" >"$out/diagram-$name.log" 2>&1
    echo "exit $?" >>"$out/diagram-$name.log"
    for file in "$work/diagram-$name"/*.png "$work/diagram-$name"/*.svg; do
        [[ -e "$file" ]] && cp "$file" "$out/diagram-$name-$(basename "$file")"
    done
}
if [[ -x "$diagram" ]]; then
    record_diagram sample "$worlds/sample/FS2002" --aircraft 47.4600,-122.3080,-90 \
        "KSEA (SEATTLE-TACOMA INTL)" "KBFI (BOEING FLD KING CO INTL)" "KOLM (OLYMPIA)"
    record_diagram follow "$worlds/sample/FS2002" --size 800x600 --zoom 3 --follow \
        --aircraft 47.4500,-122.3000,45 "KSEA (SEATTLE-TACOMA INTL)"
    if [[ -d "$worlds/full/FS2002" ]]; then
        record_diagram full "$worlds/full/FS2002" --largest
    fi
fi

# The desktop program's windows, under a window manager.
if [[ -x "$screenshots" ]]; then
    bash "$root/tests/ui/under_window_manager.sh" "$screenshots" "$worlds/sample/FS2002" \
        "$work/screens-work" "$out/screens" 2>&1 | sed "s|$out/||" >"$out/screens.log"
    echo "exit ${PIPESTATUS[0]}" >>"$out/screens.log"
fi

# Large outputs by their sums.
find "$out" -type f -size +1M | while IFS= read -r file; do
    sha256sum "$file" | sed "s| .*| $(stat -c %s "$file") bytes|" >"$file.sha256"
    rm "$file"
done
echo "recorded $(find "$out" -type f | wc -l) files in $out"
