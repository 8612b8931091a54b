#!/usr/bin/env bash
# Times the game list of a file of some 40,000 games in the program's real dialog under Wine:
# the list shown, re-sorted by a tap on a header, and a search over the file stopped half a
# second in. grep counting the games' White tags gives the floor of reading the file, for scale.
#
# Usage: bash bench/game-list.sh [COPIES]
# Concatenates every *.pgn of ../shared/data COPIES times (default 3: 41,112 games) into
# build/compare/games40k.pgn, builds build/windows, and runs velmora-bench-game-list on a
# virtual display when there is none. RUNS=N repeats the dialog run (default 3).
set -euo pipefail
export LC_ALL=C
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"
cd "$velmora_root"

copies=${1:-3}
runs=${RUNS:-3}
work=build/compare
mkdir -p "$work"
velmora_install_packages cmake ninja-build g++-mingw-w64-x86-64-posix wine wine64 xvfb xauth

velmora_build build/windows -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$velmora_root/cmake/mingw-w64-x86_64.cmake" >"$work/build-windows.log" 2>&1 ||
    { tail -30 "$work/build-windows.log" >&2; exit 1; }

file=$work/games40k.pgn
: >"$file"
for copy in $(seq 1 "$copies"); do
    for pgn in ../shared/data/*.pgn; do
        cat "$pgn" >>"$file"
        echo >>"$file"
    done
done
echo "$(du -h "$file" | cut -f1) in $file"

start=$EPOCHREALTIME
games=$(grep -c '^\[White ' "$file")
floor=$(awk -v a="$start" -v b="$EPOCHREALTIME" 'BEGIN { printf "%.3f", b - a }')
echo "grep floor:               $floor s to count $games White tags"

if ! velmora_start_display; then
    echo "No X display and Xvfb did not start" >&2
    exit 1
fi
trap velmora_stop_display EXIT
for run in $(seq 1 "$runs"); do
    echo "--- run $run"
    sh cmake/wine-run.sh "$PWD/build/windows/wineprefix" wine \
        build/windows/bench/velmora-bench-game-list.exe "Z:$PWD/$file" 2>/dev/null
done
echo "Reproduce: bash bench/game-list.sh $copies"
