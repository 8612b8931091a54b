#!/usr/bin/env bash
# Builds the libFuzzer targets with clang in build/fuzz and runs them.
# Usage: scripts/fuzz.sh [-j JOBS] [SECONDS] [TARGET...]
#   SECONDS  how long each target runs (default 60)
#   TARGET   fuzz-position-text, fuzz-san, fuzz-load-game, fuzz-scan-file, fuzz-ucb-line,
#            fuzz-star-diamond-line (default: all six)
#   -j JOBS  how many targets run at once (default 1; the machine has 2 cores)
# Each target grows its corpus in build/fuzz/corpus/TARGET, starting from the committed seeds
# (fuzz/corpus/TARGET, and tests/data for the PGN targets); crashes, timeouts and out-of-memory
# inputs go to build/fuzz/findings/TARGET/, the log to build/fuzz/logs/TARGET.log. Prints one
# line per target at the end and exits non-zero when any target found something or failed.
set -uo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

all_targets=(fuzz-position-text fuzz-san fuzz-load-game fuzz-scan-file fuzz-ucb-line
    fuzz-star-diamond-line)
jobs=1
seconds=60
targets=()
while [ $# -gt 0 ]; do
    case $1 in
        -j)
            jobs=${2:?-j needs a number}
            shift 2
            ;;
        -j*)
            jobs=${1#-j}
            shift
            ;;
        -h | --help)
            sed -n '2,11p' "${BASH_SOURCE[0]}" | sed 's/^# \{0,1\}//'
            exit 0
            ;;
        *)
            if [ ${#targets[@]} -eq 0 ] && [[ $1 =~ ^[0-9]+$ ]]; then
                seconds=$1
            elif [[ " ${all_targets[*]} " == *" $1 "* ]]; then
                targets+=("$1")
            else
                echo "Unknown target or option: $1 (targets: ${all_targets[*]})" >&2
                exit 2
            fi
            shift
            ;;
    esac
done
[ ${#targets[@]} -gt 0 ] || targets=("${all_targets[@]}")

# clang 14 is Debian bookworm's; libFuzzer and the sanitizer runtimes come with libclang-rt, the
# symbolizer that names functions in reports with llvm.
velmora_install_packages cmake ninja-build clang-14 libclang-rt-14-dev llvm-14 || exit 1
export ASAN_SYMBOLIZER_PATH=${ASAN_SYMBOLIZER_PATH:-$(command -v llvm-symbolizer-14)}

cd "$velmora_root" || exit 1
tree=build/fuzz
velmora_build "$tree" -DCMAKE_CXX_COMPILER=clang++-14 -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DVELMORA_BUILD_FUZZ=ON -DVELMORA_BUILD_TESTS=OFF -DVELMORA_BUILD_BENCH=OFF || exit 1

# Runs one target for $seconds seconds; its output goes to the target's log.
run_target() {
    local target=$1 seeds=() dict
    local corpus=$tree/corpus/$target findings=$tree/findings/$target
    mkdir -p "$corpus" "$findings" "$tree/logs"
    touch "$tree/logs/$target.start"  # findings newer than this are this run's
    [ -d "fuzz/corpus/$target" ] && seeds+=("fuzz/corpus/$target")
    case $target in
        fuzz-load-game | fuzz-scan-file)
            seeds+=(tests/data)
            dict=fuzz/pgn.dict
            ;;
        fuzz-san) dict=fuzz/san.dict ;;
        fuzz-position-text) dict=fuzz/position-text.dict ;;
        fuzz-ucb-line) dict=fuzz/ucb.dict ;;
        fuzz-star-diamond-line) dict=fuzz/star-diamond.dict ;;
    esac
    # The first folder is the working corpus that grows; the seed folders are only read.
    "$tree/fuzz/$target" "$corpus" "${seeds[@]}" -dict="$dict" \
        -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
        -artifact_prefix="$findings/" -print_final_stats=1 >"$tree/logs/$target.log" 2>&1
}

# Prints the target's executions, corpus size and findings of this run, from its log and folders.
report_target() {
    local target=$1 executions corpus findings
    local log=$tree/logs/$target.log
    executions=$(grep -o 'stat::number_of_executed_units: [0-9]*' "$log" | grep -o '[0-9]*$')
    # libFuzzer's status lines say "corp: INPUTS/SIZE"; the last one is the final corpus.
    corpus=$(grep -o 'corp: [0-9]*/[0-9]*[a-zA-Z]*' "$log" | tail -n 1 | cut -d' ' -f2)
    findings=$(find "$tree/findings/$target" -type f -newer "$tree/logs/$target.start" | wc -l)
    printf '%-20s %12s executions  corpus %6s inputs (%s)  findings %s\n' "$target" \
        "${executions:-?}" "${corpus%%/*}" "${corpus#*/}" "$findings"
    [ "$findings" -eq 0 ] && [ -n "$executions" ]
}

echo "=== fuzzing ${targets[*]} for $seconds s each, $jobs at a time"
running=0
for target in "${targets[@]}"; do
    if [ "$running" -ge "$jobs" ]; then
        wait -n
        running=$((running - 1))
    fi
    echo "--- $target (log: $tree/logs/$target.log)"
    run_target "$target" &
    running=$((running + 1))
done
wait

failed=0
echo "=== results"
for target in "${targets[@]}"; do
    report_target "$target" || failed=1
done
exit "$failed"
