#!/usr/bin/env bash
# Times velmora-pgn beside its peers on one large PGN file: grep as the floor of a header pass,
# pgn-extract (header filter, check, position and material match) and chessops (main-line
# replay), then prints one table with MB/s, games/s, peak memory and the ratio each of our
# goals asks for, followed by the index memory figures of velmora-bench-index.
#
# Usage: bash bench/compare.sh
# Installs what it needs when missing (pgn-extract, /usr/bin/time, Node.js and npm with apt;
# chessops from npm into build/compare/node), builds build/release, concatenates every *.pgn
# of ../shared/data into build/compare/all.pgn and leaves every output beside it.
# RUNS=N changes the number of timed runs (default 3; the best wall time is kept).
set -euo pipefail
export LC_ALL=C  # a dot in EPOCHREALTIME and awk numbers, and byte-wise grep
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"
cd "$velmora_root"

runs=${RUNS:-3}
chessops_version=${CHESSOPS_VERSION:-0.15.1}
work=build/compare
data=../shared/data

# --- What the run needs -----------------------------------------------------------------------
packages=(cmake ninja-build g++ pgn-extract time)
command -v node >/dev/null || packages+=(nodejs)
command -v npm >/dev/null || packages+=(npm)
velmora_install_packages "${packages[@]}"
pgn_extract=$(command -v pgn-extract || echo /usr/games/pgn-extract)

tool=build/release/cli/velmora-pgn
index_bench=build/release/bench/velmora-bench-index
mkdir -p "$work"
if ! velmora_build build/release -DCMAKE_BUILD_TYPE=Release -DVELMORA_SANITIZE=OFF \
    -DVELMORA_BUILD_TESTS=OFF -DVELMORA_BUILD_BENCH=ON >"$work/build.log" 2>&1; then
    if [ -x "$tool" ] && [ -x "$index_bench" ]; then
        echo "WARNING: the build failed (see $work/build.log); timing the programs built before" >&2
    else
        cat "$work/build.log" >&2
        exit 1
    fi
fi

installed=$(node -p 'require(process.argv[1]).version' \
    "$PWD/$work/node/node_modules/chessops/package.json" 2>/dev/null || true)
if [ "$installed" != "$chessops_version" ]; then
    echo "Installing chessops $chessops_version into $work/node"
    npm install --prefix "$work/node" --no-audit --no-fund --loglevel=error \
        "chessops@$chessops_version" >/dev/null
fi
# Bare module names resolve from the script's own folder, so it runs beside node_modules.
cp bench/chessops-replay.mjs "$work/node/"

# --- The input: every collection, each ending with a line break ------------------------------
all=$work/all.pgn
: >"$all.part"
for file in "$data"/*.pgn; do
    cat "$file" >>"$all.part"
    if [ -s "$file" ] && [ "$(tail -c 1 "$file" | od -An -c | tr -d ' ')" != '\n' ]; then
        echo >>"$all.part"
    fi
done
mv "$all.part" "$all"
bytes=$(stat -c %s "$all")
games=$(grep -a -c '^\[Event ' "$all")
echo "all.pgn: $bytes bytes, $games games (from $(ls "$data"/*.pgn | wc -l) files of $data)"

# --- Timing -----------------------------------------------------------------------------------
declare -A secs rss status commands
order=()

# Prints the arguments as one command line, quoting only those that need it.
shell_words() {
    local word line=
    for word in "$@"; do
        [[ $word =~ ^[A-Za-z0-9_./=:+@%-]+$ ]] || word=${word@Q}
        line+="${line:+ }$word"
    done
    echo "$line"
}

# Runs a command RUNS times with stdout in KEY.out and stderr in KEY.out.err and keeps the
# best wall time, then once more under /usr/bin/time for the peak resident size. Exit status 1
# is kept for the notes (check exits 1 when some game fails to load); 2 or more (a usage error,
# a crash) leaves the row without figures.
# Usage: measure KEY COMMAND...
measure() {
    local key=$1 out=$1.out best=1e9 start end code i
    shift
    for ((i = 0; i < runs; ++i)); do
        code=0
        start=$EPOCHREALTIME
        "$@" >"$out" 2>"$out.err" || code=$?
        end=$EPOCHREALTIME
        best=$(awk -v s="$start" -v e="$end" -v b="$best" \
            'BEGIN { d = e - s; printf "%.6f", (d < b) ? d : b }')
        [ "$code" -lt 2 ] || break
    done
    commands[$key]=$(shell_words "$@")
    status[$key]=$code
    order+=("$key")
    if [ "$code" -ge 2 ]; then  # a usage error, a missing program or a crash: nothing to time
        return 0
    fi
    /usr/bin/time -f %M -o "$out.rss" "$@" >"$out" 2>"$out.err" || true
    secs[$key]=$best
    rss[$key]=$(tail -n 1 "$out.rss")
}

# Prints how many times faster the second key ran than the first, or n/a.
# Usage: speedup REFERENCE_KEY KEY
speedup() {
    if [ -n "${secs[$1]:-}" ] && [ -n "${secs[$2]:-}" ]; then
        awk -v s="${secs[$1]}" -v f="${secs[$2]}" 'BEGIN { printf "%.2f", s / f }'
    else
        echo n/a
    fi
}

cd "$work"
tool=../../$tool
index_bench=../../$index_bench
all=all.pgn

# a. The floor of a header pass: find every game's first tag line with its offset.
measure grep grep -a -b '^\[Event ' "$all"

# b. pgn-extract reading every header: a tag criterion that no game meets, so every game's tags
#    are read and compared while its moves are passed over.
echo 'White "no player is named so"' >tags-none.txt
measure px-tags "$pgn_extract" -s --quiet -ttags-none.txt -opx-tags.pgn "$all"

# c. The game list.
measure list "$tool" list "$all"

# d. Checking every game.
measure px-check "$pgn_extract" -s --quiet -r "$all"
measure check "$tool" check "$all"

# e. chessops replaying every main line.
measure chessops node node/chessops-replay.mjs "$all"

# f. Position match: the Najdorf after 5...a6, written by velmora-pgn play.
moves=(e4 c5 Nf3 d6 d4 cxd4 Nxd4 Nf6 Nc3 a6)
position=$("$tool" play "${moves[@]}" | tail -n 1 | cut -f 2)
printf 'FEN "%s"\n' "$position" >tags-fen.txt
measure px-fen "$pgn_extract" -s --quiet -ttags-fen.txt -opx-fen.pgn "$all"

# g. Material match: queen, rook and five pawns each (no minor pieces).
echo 'QRP5 QRP5' >material.txt
material=P5R1Q1/P5R1Q1
measure px-mat "$pgn_extract" -s --quiet -zmaterial.txt -opx-mat.pgn "$all"

search_ready=0
if "$tool" search --help >/dev/null 2>&1; then
    search_ready=1
    measure search-fen "$tool" search --position "$position" "$all"
    measure search-mat "$tool" search --material "$material" "$all"
fi

# The index memory: games, heap held, bytes per game, load time.
measure index "$index_bench" "$all"

# --- Counts -----------------------------------------------------------------------------------
list_games=$(wc -l <list.out)
px_fen_found=$(grep -a -c '^\[Event ' px-fen.pgn || true)
px_mat_found=$(grep -a -c '^\[Event ' px-mat.pgn || true)
# Prints the M of the "N games searched in F files, M found" summary, else n/a.
found_of() {
    [ -f "$1.err" ] || { echo n/a; return; }
    sed -n 's/.* \([0-9][0-9]*\) found.*/\1/p' "$1.err" | tail -n 1 | grep . || echo '?'
}
# Prints what a search row found: the summary's count and the lines printed, else n/a.
search_found() {
    if [ -n "${secs[$1]:-}" ]; then
        echo "$(found_of "$1.out") ($(wc -l <"$1.out") lines)"
    else
        echo n/a
    fi
}
vm_fen_found=$(search_found search-fen)
vm_mat_found=$(search_found search-mat)
bytes_per_game=$(sed -n 's/.*, \([0-9.]*\) bytes per game.*/\1/p' index.out)
bytes_per_game=${bytes_per_game:-n/a}

# --- The table --------------------------------------------------------------------------------
# Prints one row: tool, task, key, ratio text.
row() {
    local name=$1 task=$2 key=$3 ratio=${4:-}
    if [ -z "${secs[$key]:-}" ]; then
        if [ -n "${status[$key]:-}" ]; then
            ratio="FAILED with exit status ${status[$key]}"
        fi
        printf '%-13s %-34s %8s %8s %10s %8s  %s\n' "$name" "$task" n/a n/a n/a n/a "$ratio"
        return
    fi
    awk -v n="$name" -v t="$task" -v s="${secs[$key]}" -v b="$bytes" -v g="$games" \
        -v m="${rss[$key]}" -v r="$ratio" \
        'BEGIN { printf "%-13s %-34s %8.3f %8.1f %10.0f %8.1f  %s\n", n, t, s, b / s / 1e6,
                 g / s, m * 1024 / 1e6, r }'
}
# Prints "Nx X (goal Gx, met|NOT met)" for how many times faster key runs than reference.
goal() {
    local reference=$1 key=$2 target=$3 what=$4 ratio
    ratio=$(speedup "$reference" "$key")
    if [ "$ratio" = n/a ]; then
        echo "n/a vs $what (goal ${target}x)"
    else
        awk -v r="$ratio" -v t="$target" -v w="$what" \
            'BEGIN { printf "%.2fx %s (goal %gx, %s)", r, w, t, (r >= t) ? "met" : "NOT met" }'
    fi
}

echo
printf '%-13s %-34s %8s %8s %10s %8s  %s\n' tool task seconds MB/s games/s 'peak MB' \
    'ratio asked by the goal'
printf '%s\n' "$(printf '%.0s-' {1..130})"
row grep "header floor: grep -b '^[Event '" grep
row pgn-extract "header pass (-t, no game matches)" px-tags
row velmora-pgn "list" list "$(goal grep list 1 'grep')"
row pgn-extract "check (-r)" px-check
row chessops "replay main lines (parseSan+play)" chessops
row velmora-pgn "check" check \
    "$(goal px-check check 3 'pgn-extract -r'); $(goal chessops check 10 'chessops')"
row pgn-extract "position match (-t FEN)" px-fen "found $px_fen_found"
row velmora-pgn "search --position" search-fen \
    "$(goal px-fen search-fen 3 'pgn-extract'); found $vm_fen_found"
row pgn-extract "material match (-z)" px-mat "found $px_mat_found"
row velmora-pgn "search --material" search-mat \
    "$(goal px-mat search-mat 3 'pgn-extract'); found $vm_mat_found"
row velmora "index load (velmora-bench-index)" index \
    "$bytes_per_game bytes/game (goal at most 128)"

echo
echo "best of $runs wall times; MB/s and games/s over the whole file ($bytes bytes, $games games);"
echo "peak MB is the maximum resident size of one more run (/usr/bin/time -f %M)."
echo
echo "Index memory (velmora-bench-index):"
sed 's/^/  /' index.out
echo
echo "Notes:"
echo "  velmora-pgn list lines: $list_games"
echo "  chessops: $(tail -n 1 chessops.out) (chessops $chessops_version, node $(node --version))"
echo "  velmora-pgn check: $(tail -n 1 check.out.err)"
echo "  position: ${moves[*]} -> $position"
echo "  material: velmora-pgn $material, pgn-extract -z '$(cat material.txt)' (either colour,"
echo "    held for at least 2 half-moves by default); the two count matches differently"
[ "$search_ready" = 1 ] || echo "  velmora-pgn search is not available in this build: its rows are n/a"
[ "$px_fen_found" != 0 ] || echo "  WARNING: pgn-extract found no game with the position"
if [ -n "${secs[search-fen]:-}" ] && [ "${vm_fen_found%% *}" != "$px_fen_found" ]; then
    echo "  the position counts differ: both tools compare the squares of the main line only"
fi
for key in "${order[@]}"; do
    if [ "${status[$key]}" != 0 ]; then
        echo "  exit status ${status[$key]}: ${commands[$key]} (output in $work/$key.out*)"
    fi
done

echo
echo "Reproduce: bash bench/compare.sh   (or, in $work, each timed command:)"
for key in "${order[@]}"; do
    echo "  ${commands[$key]}"
done
