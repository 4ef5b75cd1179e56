#!/usr/bin/env bash
# The link's tests under Wine. Starts the mock module and quilmark-bridge.exe in a throwaway
# Wine prefix and checks the native client against them.
#
#   wine_bridge_test.sh end-to-end|malformed|bridge32 WINDOWS_BIN_DIR BRIDGE_CHECK PREFIX_DIR
#
# end-to-end: the Win32 client straight to the mock module, then the native client through
#             the bridge to the mock module (the chart's four values), then the bridge with
#             the module gone (Link_Open reports 2).
# malformed:  broken frames to the bridge's port get no answer and leave it running; a
#             client that trickles is dropped while another is served, and a burst of
#             connections is all answered; then Ctrl+C stops the bridge cleanly.
# bridge32:   a 32-bit module, as FS2002's FSUIPC is, through quilmark-bridge32.exe and
#             then through the 64-bit bridge (both ways work in a 64-bit prefix).
#
# Exits 77 (skipped) when Wine isn't there or can't run a windowed program at all, and in
# bridge32 when it can't run 32-bit programs.
set -uo pipefail

mode=$1 win_dir=$2 bridge_check=$3 prefix=$4
say() { printf '[wine %s] %s\n' "$mode" "$*"; }
skip() {
    say "SKIPPED: $*"
    exit 77
}
fail() {
    say "FAILED: $*"
    for log in "$work"/*.log; do
        [[ -f $log ]] && { say "--- $(basename "$log")"; tr -d '\r' <"$log"; }
    done
    exit 1
}

command -v wine >/dev/null && command -v wineserver >/dev/null ||
    skip "wine is not installed (Debian packages wine, wine64)"

export WINEPREFIX=$prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" WINEARCH=win64
unset DISPLAY WAYLAND_DISPLAY
work=$(mktemp -d "${TMPDIR:-/tmp}/quilmark-wine.XXXXXX")
pids=()
cleanup() {
    wineserver -k 2>/dev/null
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null; done
    wait 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT

# wait_for FILE PATTERN SECONDS PID: until a line of FILE matches, PID ends, or time runs out.
wait_for() {
    local file=$1 pattern=$2 seconds=$3 pid=$4 end=$((SECONDS + $3))
    while ((SECONDS < end)); do
        grep -qE "$pattern" "$file" 2>/dev/null && return 0
        kill -0 "$pid" 2>/dev/null || { grep -qE "$pattern" "$file" 2>/dev/null; return; }
        sleep 0.1
    done
    return 1
}

# A prefix of our own, made once per build directory. With no display, windows need Wine's
# null graphics driver, which is chosen in the registry and read when the prefix starts.
if [[ ! -f $prefix/.quilmark-ready ]]; then
    rm -rf "$prefix"
    mkdir -p "$(dirname "$prefix")"
    say "creating the Wine prefix $prefix (the first time takes a while)"
    start=$SECONDS
    if ! timeout 300 wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f \
        >"$work/prefix.log" 2>&1 </dev/null; then
        cat "$work/prefix.log"
        skip "Wine cannot create a prefix here"
    fi
    # Let the prefix's wineserver end by itself, so that it saves the registry.
    timeout 60 wineserver -w 2>/dev/null || wineserver -k 2>/dev/null
    touch "$prefix/.quilmark-ready"
    say "prefix ready after $((SECONDS - start)) s"
fi

# Leftovers of an interrupted run would hold the window class or the port.
wineserver -k 2>/dev/null

# start_mock [EXE]: the 64-bit mock module unless another is named.
start_mock() {
    local exe=${1:-quilmark-mock-module.exe}
    say "starting $exe"
    wine "$win_dir/$exe" >"$work/mock.log" 2>&1 </dev/null &
    mock_pid=$!
    pids+=("$mock_pid")
    if ! wait_for "$work/mock.log" '^mock module ready' 120 "$mock_pid"; then
        grep -q 'cannot create a window' "$work/mock.log" &&
            skip "Wine cannot create a window here, even with the null graphics driver"
        fail "the mock module did not come up"
    fi
}

# start_bridge [EXE]: the 64-bit bridge unless another is named.
start_bridge() {
    local exe=${1:-quilmark-bridge.exe}
    say "starting $exe on a free loopback port"
    wine "$win_dir/$exe" --port 0 >"$work/bridge.log" 2>&1 </dev/null &
    bridge_pid=$!
    pids+=("$bridge_pid")
    wait_for "$work/bridge.log" 'listening on 127\.0\.0\.1:[0-9]+' 60 "$bridge_pid" ||
        fail "the bridge did not come up"
    port=$(grep -oE 'listening on 127\.0\.0\.1:[0-9]+' "$work/bridge.log" | grep -oE '[0-9]+$')
    say "bridge listening on port $port"
}

lists_answered() { grep -c '^mock module: list' "$work/mock.log"; }

stop_bridge() {
    kill "$bridge_pid" 2>/dev/null
    wait "$bridge_pid" 2>/dev/null
}

# Wine runs 32-bit programs only with its 32-bit half, which on a 64-bit Debian comes from
# the i386 architecture. Without it Wine starts nothing and says so only in its debug output,
# so ask the 32-bit bridge for its usage line.
if [[ $mode == bridge32 ]]; then
    [[ -f $win_dir/quilmark-bridge32.exe ]] ||
        skip "quilmark-bridge32.exe was not built (Debian package g++-mingw-w64-i686)"
    timeout 60 wine "$win_dir/quilmark-bridge32.exe" --port x >"$work/probe.log" 2>&1 </dev/null
    grep -q 'usage: quilmark-bridge32.exe' "$work/probe.log" ||
        skip "this machine's Wine cannot run 32-bit programs (it lacks Wine's 32-bit half:" \
            "on Debian the package wine32:i386, from the i386 architecture);" \
            "quilmark-bridge32.exe is built but not run"
    start_mock quilmark-mock-module32.exe
else
    start_mock
fi
case $mode in
end-to-end)
    say "the Win32 client straight to the mock module"
    timeout 60 wine "$win_dir/link-win32-check.exe" </dev/null 2>&1 | tr -d '\r' ||
        fail "the Win32 client did not read the mock's values"
    start_bridge
    say "the native client through the bridge"
    timeout 120 "$bridge_check" values --port "$port" || fail "the values through the bridge"
    say "mock module answered $(lists_answered) lists"
    say "stopping the mock module; the bridge stays"
    kill "$mock_pid"
    wait "$mock_pid" 2>/dev/null
    timeout 60 "$bridge_check" no-window --port "$port" || fail "no window through the bridge"
    ;;
malformed)
    start_bridge
    timeout 200 "$bridge_check" malformed --port "$port" || fail "broken frames"
    kill -0 "$bridge_pid" 2>/dev/null || fail "the bridge has stopped"
    [[ $(lists_answered) == 0 ]] || fail "a broken frame reached the module"
    say "bridge still running; it logged $(grep -c 'dropped a malformed frame' "$work/bridge.log") dropped frames; the module saw none of them"
    timeout 120 "$bridge_check" values --port "$port" || fail "the bridge no longer serves"
    timeout 120 "$bridge_check" hold-up --port "$port" || fail "a client held the bridge up"
    say "Ctrl+C to the bridge (Wine passes it on as the console's Ctrl+C event)"
    kill -INT "$bridge_pid"
    wait_for "$work/bridge.log" '^quilmark-bridge: stopped' 30 "$bridge_pid" ||
        fail "the bridge did not stop cleanly"
    wait "$bridge_pid" || fail "the bridge ended with status $?"
    say "bridge stopped cleanly"
    ;;
bridge32)
    start_bridge quilmark-bridge32.exe
    timeout 120 "$bridge_check" values --port "$port" || fail "the values through the 32-bit bridge"
    stop_bridge
    start_bridge
    timeout 120 "$bridge_check" values --port "$port" ||
        fail "the 32-bit module's values through the 64-bit bridge"
    ;;
*) fail "unknown mode $mode" ;;
esac
say "passed"
exit 0
