#!/usr/bin/env bash
# Runs a Windows test program under Wine with device simulators (tools/simulators) behind COM
# ports of its Wine prefix.
#
# Usage: with-simulators.sh WINE_RUN PREFIX WINE PROGRAM SIMULATOR_DIR [BOARD...] [-- ARGUMENT...]
#   WINE_RUN       cmake/wine-run.sh (it creates the prefix on first use)
#   PREFIX WINE    the Wine prefix and the wine program, as the build's tests use them
#   PROGRAM        the Windows test program; ARGUMENTS after -- go to it (e.g. a gtest filter)
#   SIMULATOR_DIR  where the simulator programs are (simulators/ of the Windows build)
#   BOARD          VARIABLE=comN:SIMULATOR [OPTION...], one shell word, e.g.
#                    "VELMORA_SIM_UCB_COM=com21:velmora-ucb-sim --script serial-exchange.txt"
#                  starts SIMULATOR_DIR/SIMULATOR OPTIONS --link PREFIX/dosdevices/comN (options
#                  split at blanks, run from tests/win32/scripts/ so that a script is named by
#                  its file name) and exports VARIABLE=N to the program: Wine hands the Unix
#                  environment to Windows programs, and a test skips when its variable is absent.
#
# Use COM numbers from 21 up: Wine's mount manager makes com1, com2, ... for the machine's own
# serial ports when the prefix starts. Under Wine only "\\.\COM21" opens ports above 9 (the
# program's SerialPort falls back to it), while "COM5:" works for 1 to 9. A link made while the
# wineserver runs is seen at once, and Wine leaves links it did not make alone.
#
# Each simulator's output goes to standard output at the end. When the program has ended, the
# simulators get VELMORA_SIM_GRACE seconds (default 3) to end by themselves, then SIGTERM: a
# scripted simulator stopped before the end of its script exits 1, an answering one exits 0.
# Exit status: the program's when it failed, else 1 when a simulator failed (an expect timed
# out, a bad script), else 0.
set -uo pipefail

if [ $# -lt 5 ]; then
    sed -n '2,/^$/s/^# \{0,1\}//p' "$0" >&2
    exit 2
fi
wine_run=$1 prefix=$2 wine=$3 program=$4 simulator_dir=$5
shift 5
# Simulators start in another folder: their paths must not be relative.
mkdir -p "$prefix" && prefix=$(cd "$prefix" && pwd) || exit 1
simulator_dir=$(cd "$simulator_dir" && pwd) || exit 1
boards=()
while [ $# -gt 0 ] && [ "$1" != "--" ]; do
    boards+=("$1")
    shift
done
[ "${1:-}" = "--" ] && shift

script_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
logs=$(mktemp -d "${TMPDIR:-/tmp}/velmora-simulators.XXXXXX")
pids=()
names=()

# Stops the simulators still running (only running jobs of this shell: a pid that has ended may
# belong to another program by now).
stop_simulators() {
    local pid
    for pid in $(jobs -pr); do
        kill -TERM "$pid" 2>/dev/null
    done
}
trap 'stop_simulators; rm -rf "$logs"' EXIT

# The prefix must exist before links go into its dosdevices folder.
if [ ! -e "$prefix/.velmora-ready" ]; then
    sh "$wine_run" "$prefix" "$wine" cmd /c exit </dev/null >/dev/null || exit 1
fi

for board in "${boards[@]}"; do
    variable=${board%%=*}
    rest=${board#*=}
    port=${rest%%:*}
    read -ra command <<<"${rest#*:}"
    number=${port#com}
    if [ "$variable" = "$board" ] || [[ ! "$port" =~ ^com[0-9]+$ ]] || [ ${#command[@]} -eq 0 ]; then
        echo "with-simulators.sh: bad simulator entry '$board' (want VARIABLE=comN:SIMULATOR ...)" >&2
        exit 2
    fi
    log="$logs/$port.log"
    (cd "$script_dir/scripts" &&
        exec "$simulator_dir/${command[0]}" "${command[@]:1}" --link "$prefix/dosdevices/$port") \
        >"$log" 2>&1 &
    pids+=($!)
    names+=("$port: ${rest#*:}")
    # The link exists once the simulator printed its port.
    for _ in $(seq 1 100); do
        grep -q '^pty: ' "$log" 2>/dev/null && break
        kill -0 "${pids[-1]}" 2>/dev/null || break
        sleep 0.05
    done
    if ! grep -q '^pty: ' "$log"; then
        echo "with-simulators.sh: ${names[-1]} did not start:" >&2
        cat "$log" >&2
        exit 1
    fi
    export "$variable=$number"
done

sh "$wine_run" "$prefix" "$wine" "$program" "$@"
status=$?

# Gives the simulators their grace, then stops the rest and collects every exit status.
deadline=$((SECONDS + ${VELMORA_SIM_GRACE:-3}))
for pid in "${pids[@]}"; do
    while kill -0 "$pid" 2>/dev/null && [ $SECONDS -lt $deadline ]; do
        sleep 0.1
    done
done
stop_simulators
failed=0
for index in "${!pids[@]}"; do
    wait "${pids[$index]}"
    code=$?
    echo "=== simulator ${names[$index]} (exit $code)"
    cat "$logs/$(echo "${names[$index]}" | cut -d: -f1).log"
    [ "$code" -ne 0 ] && failed=1
done
pids=()

if [ "$status" -ne 0 ]; then
    exit "$status"
fi
exit "$failed"
