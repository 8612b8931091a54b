#!/usr/bin/env bash
# Builds the programs natively (the command-line tool and the benchmarks) and runs velmora-pgn;
# the arguments, if any, replace the example.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

velmora_install_packages cmake ninja-build g++

cd "$velmora_root"
velmora_build build/release -DCMAKE_BUILD_TYPE=Release -DVELMORA_SANITIZE=OFF \
    -DVELMORA_BUILD_TESTS=OFF -DVELMORA_BUILD_BENCH=ON

if [ $# -eq 0 ]; then
    set -- play e4 e5 Nf3 Nc6 Bb5 a6 Ba4 Nf6 O-O
fi
echo "\$ velmora-pgn $*" >&2
exec build/release/cli/velmora-pgn "$@"
