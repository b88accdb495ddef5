#!/usr/bin/env bash
# Times the benchmarks' workloads on a driver, by hand and through the library in turns, several times
# over, and compares the medians of the ratios with benchmarks/ratios.txt. Fails where one is above its
# limit. Installs what is missing.
#
# Usage: scripts/measurements/times.sh [--limited]    --limited: only the workloads that have a limit, and those
#                                        that are above it again, a few times
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

limits="$repository/benchmarks/ratios.txt"
reports=(python3 "$repository/scripts/measurements/reports.py")
runs=9
attempts=1

pattern=.
if [[ $# -eq 1 && "$1" == --limited ]]; then
    attempts=12 # something else may have had the processors
    pattern="$("${reports[@]}" workloads "$limits")"
elif [[ $# -gt 0 ]]; then
    fail "usage: times.sh [--limited]"
fi

install_dependencies
install_packages libbenchmark-dev
build_preset bench --target vellis_benchmarks

# Prints the reports of all runs.
measure() {
    local run
    for ((run = 0; run < runs; ++run)); do
        # With the driver's cache of shaders, linking would be reading a file.
        MESA_SHADER_CACHE_DISABLE=true "$repository/build/bench/benchmarks/vellis_benchmarks" driver \
            --benchmark_filter="$pattern" --benchmark_format=json 2>/dev/null
    done
}

# What is left to be within its limit: each attempt measures what was above in the one before.
left="$(mktemp)"
table="$(mktemp)"
trap 'rm -f "$left" "$table"' EXIT
cp "$limits" "$left"
for ((attempt = 1; attempt <= attempts; ++attempt)); do
    say "Timing, $runs times"
    if measure | "${reports[@]}" times "$left" | tee "$table"; then
        exit 0
    fi
    if ((attempts > 1)); then
        awk '/ ABOVE / { print $1, $2, $NF }' "$table" >"$left"
        [[ -s "$left" ]] || fail "nothing was measured: see above."
        pattern="$("${reports[@]}" workloads "$left")"
    fi
done
fail "above the limits: see ABOVE in the table."
