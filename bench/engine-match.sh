#!/usr/bin/env bash
# Plays Velmora's UCI engine against Stockfish (the Debian package, installed when missing)
# limited to an Elo rating, at a fixed time per move for both sides, and prints the score, the
# Elo difference with its 95% margin and the time losses. Openings are the first PLIES moves
# of games from ../shared/data, each played with both colours. The games are saved in
# build/match/. Runs under nice: the match shares the machine.
# Usage: bash bench/engine-match.sh [GAMES [MOVETIME_MS [STOCKFISH_ELO]]]   (default 20 100 2000)
# Environment: PLIES (default 8), SEED (default 1, picks the openings), MARGIN_MS (default 200:
# an answer later than the move time plus this loses on time).
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"

games=${1:-20}
movetime=${2:-100}
elo=${3:-2000}

velmora_install_packages cmake ninja-build g++ stockfish
cd "$velmora_root"
generator=()
[ -f build/release/CMakeCache.txt ] || generator=(-G Ninja)
cmake -S . -B build/release "${generator[@]}" -DCMAKE_BUILD_TYPE=Release -DVELMORA_SANITIZE=OFF \
    -DVELMORA_BUILD_TESTS=OFF -DVELMORA_BUILD_BENCH=ON >/dev/null
nice -n 10 cmake --build build/release -j2 --target velmora-engine velmora-engine-match

stockfish=$(command -v stockfish || echo /usr/games/stockfish)
mkdir -p build/match
pgn=build/match/velmora-vs-stockfish-$elo-${movetime}ms.pgn
command=(build/release/bench/velmora-engine-match
    --engine build/release/engine/uci/velmora-engine
    --engine "$stockfish" --option Threads=1 --option Hash=16
    --option UCI_LimitStrength=true --option "UCI_Elo=$elo"
    --games "$games" --movetime "$movetime" --plies "${PLIES:-8}" --seed "${SEED:-1}"
    --margin "${MARGIN_MS:-200}" --pgn "$pgn" ../shared/data/*.pgn)
echo "\$ nice -n 10 ${command[*]}" >&2
nice -n 10 "${command[@]}"
echo "Games saved in $pgn" >&2
