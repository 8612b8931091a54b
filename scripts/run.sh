#!/usr/bin/env bash
# Builds Velmora20.exe (mingw-w64) and opens it under Wine on examples/, a folder of PGN files
# assembled from ../shared/data/. With arguments, builds the command-line tool instead and runs
# velmora-pgn with them (for example: bash scripts/run.sh list examples/lichess-32games.pgn).
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

cd "$velmora_root"
if [ $# -gt 0 ]; then
    velmora_install_packages cmake ninja-build g++
    velmora_build build/release -DCMAKE_BUILD_TYPE=Release -DVELMORA_SANITIZE=OFF \
        -DVELMORA_BUILD_TESTS=OFF -DVELMORA_BUILD_BENCH=ON
    echo "\$ velmora-pgn $*" >&2
    exec build/release/cli/velmora-pgn "$@"
fi

velmora_install_packages cmake ninja-build g++-mingw-w64-x86-64-posix wine wine64
generator=()
[ -f build/windows/CMakeCache.txt ] || generator=(-G Ninja)
cmake -S . -B build/windows "${generator[@]}" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$velmora_root/cmake/mingw-w64-x86_64.cmake" >/dev/null
cmake --build build/windows -j2 --target Velmora20

# The examples are copied from the shared collections, never committed: a few files in the
# top folder and one in a subfolder, so the folder chooser has something to choose.
data="$velmora_root/../shared/data"
mkdir -p examples/tournaments
for file in lichess-32games.pgn edge/kasparov-deep-blue-1997.pgn edge/stockfish-learning.pgn; do
    [ -f "$data/$file" ] && cp -f "$data/$file" examples/
done
[ -f "$data/twic-232games.pgn" ] && cp -f "$data/twic-232games.pgn" examples/tournaments/
cp -f tests/data/variations-and-comments.pgn examples/annotated-game.pgn

if [ -z "${DISPLAY:-}" ]; then
    cat >&2 <<'TEXT'
Velmora is built (build/windows/Velmora20.exe) but there is no display to open it on.
Run this command from a desktop session, or start a virtual display and look at it remotely:
    sudo apt-get install xvfb x11vnc
    Xvfb :1 -screen 0 800x600x24 &  x11vnc -display :1 -localhost &
    DISPLAY=:1 bash scripts/run.sh        # then connect a VNC viewer to localhost:5900
TEXT
    exit 1
fi
export WINEPREFIX="${WINEPREFIX:-$HOME/.velmora-wine}" WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
echo "Opening Velmora on $velmora_root/examples (Wine prefix $WINEPREFIX)" >&2
cd examples
exec wine "$velmora_root/build/windows/Velmora20.exe"
