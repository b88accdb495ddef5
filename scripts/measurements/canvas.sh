#!/usr/bin/env bash
# Times what Canvas draws on a driver, beside a plain draw of the same points from a buffer and beside
# Dear ImGui, in turns, and counts its memory; compares with benchmarks/canvas.txt. Fails where something is
# above its limit. Installs what is missing.
#
# Usage: scripts/measurements/canvas.sh [--limited]    --limited: what is above its limit again, a few times
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

limits="$repository/benchmarks/canvas.txt"
attempts=1

if [[ $# -eq 1 && "$1" == --limited ]]; then
    attempts=5 # something else may have had the processors
elif [[ $# -gt 0 ]]; then
    fail "usage: canvas.sh [--limited]"
fi

install_dependencies
install_packages libbenchmark-dev libimgui-dev
build_preset bench --target vellis_canvas_benchmarks

# A driver that draws in memory allocates megabytes for each frame. Whether the C library gives these back
# to the system in between, which takes several times as long as drawing a little, depends on what happens
# to lie behind them: here it keeps them.
export MALLOC_TRIM_THRESHOLD_=1000000000 MALLOC_MMAP_THRESHOLD_=1000000000

# What is left to be within its limit: each attempt measures what was above in the one before.
left="$(mktemp)"
table="$(mktemp)"
trap 'rm -f "$left" "$table"' EXIT
cp "$limits" "$left"
workloads=()
for ((attempt = 1; attempt <= attempts; ++attempt)); do
    say "Measuring"
    if "$repository/build/bench/benchmarks/canvas/vellis_canvas_benchmarks" "${workloads[@]}" |
        python3 "$repository/scripts/measurements/reports.py" canvas "$left" | tee "$table"; then
        exit 0
    fi
    awk '/ ABOVE / { print $1, $2, $3, $5, $NF }' "$table" >"$left"
    [[ -s "$left" ]] || fail "nothing was measured: see above."
    mapfile -t workloads < <(cut --delimiter=' ' --fields=1 "$left" | sort --unique)
done
fail "above the limits: see ABOVE in the table."
