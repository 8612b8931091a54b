#!/usr/bin/env bash
# Times velmora-pgn list and check on the largest collection of ../shared/data (or FILE) and
# prints MB/s and games/s. Build first: bash scripts/run.sh play (it builds build/release).
# Usage: bash bench/pgn-baseline.sh [FILE.pgn]
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
tool=$root/build/release/cli/velmora-pgn
file=${1:-$(ls -S "$root"/../shared/data/*.pgn | head -n 1)}
[ -x "$tool" ] || { echo "build the tool first: bash scripts/run.sh play" >&2; exit 1; }

bytes=$(stat -c %s "$file")
games=$("$tool" list "$file" 2>/dev/null | wc -l)
measure() {
    local best=999999 start end
    for _ in 1 2 3; do
        start=$(date +%s.%N)
        "$tool" "$@" >/dev/null 2>&1 || true
        end=$(date +%s.%N)
        best=$(echo "$end - $start" | bc -l | awk -v b="$best" '{print ($1 < b) ? $1 : b}')
    done
    echo "$best"
}
printf '%s: %d bytes, %d games\n' "$(basename "$file")" "$bytes" "$games"
printf '%-6s %10s %10s %12s\n' command seconds MB/s games/s
for command in list check; do
    s=$(measure "$command" "$file")
    awk -v c="$command" -v s="$s" -v b="$bytes" -v g="$games" \
        'BEGIN { printf "%-6s %10.3f %10.1f %12.0f\n", c, s, b / s / 1e6, g / s }'
done
