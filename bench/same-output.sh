#!/usr/bin/env bash
# Records everything velmora-pgn prints for the shared collections, so that a change meant to
# keep behaviour can be checked byte for byte against the program as it was.
#
# Usage: bash bench/same-output.sh save DIR [TOOL]      writes the outputs of TOOL into DIR
#        bash bench/same-output.sh compare DIR [TOOL]   writes them again and compares with DIR
# TOOL defaults to build/release/cli/velmora-pgn (built here when missing). For every *.pgn of
# ../shared/data and ../shared/data/edge it keeps: list, check, show and fens of every game,
# and a set of searches (players, ECO, result, positions, material), each with its exit status
# and standard error. JOBS=N runs N commands at once (default 2).
set -euo pipefail
export LC_ALL=C
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"

mode=${1:-}
dir=${2:-}
tool=${3:-$velmora_root/build/release/cli/velmora-pgn}
jobs=${JOBS:-2}
data=$(cd "$velmora_root/../shared/data" && pwd)
if [ "$mode" != save ] && [ "$mode" != compare ] || [ -z "$dir" ]; then
    sed -n '5,10p' "$0" | sed 's/^# \{0,1\}//' >&2
    exit 2
fi
if [ ! -x "$tool" ]; then
    velmora_build "$velmora_root/build/release" -DCMAKE_BUILD_TYPE=Release \
        -DVELMORA_BUILD_TESTS=OFF >/dev/null
fi
tool=$(cd "$(dirname "$tool")" && pwd)/$(basename "$tool")

out=$dir
if [ "$mode" = compare ]; then
    [ -d "$dir" ] || { echo "No saved outputs in $dir" >&2; exit 2; }
    out=$(mktemp -d)
    trap 'rm -rf "$out"' EXIT
fi
mkdir -p "$out"
: >"$out/.stderr"

# Runs the tool in the data folder (so paths print as they are given, relative to it) and
# prints its output, then its standard error and exit status. Forks nothing but the tool.
run() {
    local err=${chunk_err:-$out/.stderr} status=0
    (cd "$data" && "$tool" "$@") 2>"$err" || status=$?
    [ -s "$err" ] && printf 'stderr: %s\n' "$(<"$err")"
    echo "exit: $status"
}

# show and fens of games FIRST..LAST of FILE, in order, printed to OUT. Each chunk reads its own
# copy of the file: the game list opens its file for itself alone, so two runs at once on the
# same file would turn one away.
games() {
    local file=$1 first=$2 last=$3 target=$4 n status chunk_err=$4.err
    mkdir -p "$target.d/$(dirname "$file")" && cp "$data/$file" "$target.d/$file" || return 1
    cd "$target.d" || return 1
    for ((n = first; n <= last; ++n)); do
        echo "=== show $n"
        status=0
        "$tool" show "$file" "$n" 2>"$chunk_err" || status=$?
        [ -s "$chunk_err" ] && printf 'stderr: %s\n' "$(<"$chunk_err")"
        echo "exit: $status"
        echo "=== fens $n"
        status=0
        "$tool" fens "$file" "$n" 2>"$chunk_err" || status=$?
        [ -s "$chunk_err" ] && printf 'stderr: %s\n' "$(<"$chunk_err")"
        echo "exit: $status"
    done >"$target"
    rm -rf "$chunk_err" "$target.d"
}
export -f games
export tool data

files=()
while IFS= read -r path; do files+=("${path#"$data"/}"); done \
    < <(find "$data" -name '*.pgn' | sort)

for file in "${files[@]}"; do
    name=${file//\//_}
    run list "$file" >"$out/$name.list"
    run check "$file" >"$out/$name.check"
    count=$(cd "$data" && "$tool" list "$file" 2>/dev/null | wc -l)
    # Chunks of 200 games, run JOBS at a time, joined in order.
    chunks=$(mktemp -d)
    for ((first = 1; first <= count; first += 200)); do
        last=$((first + 199 > count ? count : first + 199))
        printf '%s %d %d %s\n' "$file" "$first" "$last" "$chunks/$(printf '%06d' "$first")"
    done | xargs -r -P "$jobs" -L 1 bash -c 'games "$0" "$1" "$2" "$3"'
    if compgen -G "$chunks/*" >/dev/null; then cat "$chunks"/* >"$out/$name.games"; else : >"$out/$name.games"; fi
    if grep -q 'temporarily unavailable' "$out/$name.games"; then
        echo "$file: a run found the file in use; outputs are not reliable" >&2
        exit 1
    fi
    rm -rf "$chunks"
    echo "$file: $count games" >&2
done

# Searches over every file at once; the positions are reached in many of the games.
{
    sicilian='rnbqkbnr/pp1ppppp/8/2p5/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2'
    queens_gambit='rnbqkbnr/ppp1pppp/8/3p4/2PP4/8/PP2PPPP/RNBQKBNR b KQkq - 0 2'
    ruy_lopez='r1bqkbnr/pppp1ppp/2n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R b KQkq - 3 3'
    # One query a line, its words separated by "|".
    queries=(
        "--white|@carlsen"
        "--black|@kasparov|--ignore-colors"
        "--white|@an|--black|@ov|--result|1-0"
        "--eco|B90"
        "--eco|E97|--result|1/2-1/2"
        "--position|$sicilian"
        "--position|$queens_gambit"
        "--position|$ruy_lopez|--result|0-1"
        "--material|P6R2N1B1Q1/P6R2N1B1Q1"
        "--material|P5R2B1Q1/P5R2N1Q1"
        "--material|R1/R1"
        "--material|P1/"
    )
    for query in "${queries[@]}"; do
        echo "=== search $query"
        IFS='|' read -ra words <<<"$query"
        run search "${words[@]}" "${files[@]}"
    done
} >"$out/search"
rm -f "$out/.stderr"

if [ "$mode" = compare ]; then
    if diff -r "$dir" "$out" >"$out.diff" 2>&1; then
        echo "Identical: every output matches $dir"
        rm -f "$out.diff"
    else
        head -n 40 "$out.diff"
        echo "DIFFERENT: full differences in $out.diff" >&2
        trap - EXIT
        exit 1
    fi
fi
