#!/usr/bin/env bash
# Builds the native tree (with AddressSanitizer and UndefinedBehaviorSanitizer) and the Windows
# tree (mingw-w64, tests under Wine, windows on a virtual display) and runs every test of both.
# Exits non-zero if any build or test fails.
set -uo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

velmora_install_packages cmake ninja-build g++ libgtest-dev googletest \
    g++-mingw-w64-x86-64-posix wine wine64 xvfb xauth || exit 1

failed=0
cd "$velmora_root" || exit 1

run_tree() {
    local name=$1
    shift
    echo "=== $name: build"
    velmora_build "build/$name" "$@" || failed=1
    if [ -f "build/$name/CTestTestfile.cmake" ]; then
        echo "=== $name: test"
        ctest --test-dir "build/$name" -j2 --output-on-failure --no-tests=error || failed=1
    else
        failed=1
    fi
}

run_tree native -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELMORA_SANITIZE=ON
# The Windows tests open real windows: they get a virtual display when there is none.
if ! velmora_start_display; then
    echo "No X display and Xvfb did not start: the window tests will be skipped" >&2
fi
trap velmora_stop_display EXIT
run_tree windows -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$velmora_root/cmake/mingw-w64-x86_64.cmake"

if [ "$failed" -ne 0 ]; then
    echo "FAILED: see the messages above" >&2
fi
exit "$failed"
