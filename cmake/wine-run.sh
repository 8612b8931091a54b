#!/bin/sh
# Runs a Windows program under Wine in a given prefix, creating the prefix on first use.
# Usage: wine-run.sh PREFIX WINE PROGRAM [ARGUMENT...]
# Used as CMAKE_CROSSCOMPILING_EMULATOR, so every test program of a build shares one prefix and
# never touches the user's own ~/.wine. Works without a display and without standard input.
set -eu
prefix=$1
wine=$2
shift 2

export WINEPREFIX="$prefix"
export WINEARCH=win64
export WINEDEBUG=-all
# No Mono or Gecko install dialog, and no menu entries written into the user's home.
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
# A fixed locale gives the tests the Western ANSI code page (1252) and UTF-8 file names,
# whatever the user's locale is. VELMORA_WINE_LC_ALL replaces it for a test that needs another
# system language (Wine reads the language from LC_ALL, e.g. fr_FR.UTF-8 gives French).
export LC_ALL="${VELMORA_WINE_LC_ALL:-C.UTF-8}"

ready="$prefix/.velmora-ready"
if [ ! -e "$ready" ]; then
    mkdir -p "$(dirname "$prefix")"
    # One creator at a time; the others wait here and find the prefix ready.
    (
        flock 9
        if [ ! -e "$ready" ]; then
            echo "wine-run.sh: creating the Wine prefix $prefix" >&2
            "$wine" wineboot --init </dev/null >"$prefix.log" 2>&1 || {
                echo "wine-run.sh: wineboot failed for $prefix:" >&2
                cat "$prefix.log" >&2
                exit 1
            }
            touch "$ready"
        fi
    ) 9>"$prefix.lock"
fi

exec "$wine" "$@"
