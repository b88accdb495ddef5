#!/usr/bin/env bash
# Times the benchmarks' workloads on a driver, by hand and through the library in turns, several times
# over, and compares the medians of the ratios with benchmarks/ratios.txt. Fails where one is above its
# limit. Installs what is missing.
#
# Usage: scripts/measurements/times.sh [--limited]    --limited: only the workloads that have a limit, and again for
#                                        as long as one is above it, a few times
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

limits="$repository/benchmarks/ratios.txt"
runs=9
attempts=1

pattern=.
if [[ $# -eq 1 && "$1" == --limited ]]; then
    attempts=8 # something else may have had the processors
    pattern="^($(awk '!/^#/ { printf "%s%s/%s", separator, $1, $2; separator = "|" }' "$limits"))/"
elif [[ $# -gt 0 ]]; then
    fail "usage: times.sh [--limited]"
fi

install_dependencies
install_packages libbenchmark-dev
build_preset bench --target vellis_benchmarks

# Prints a line for each workload: its name and size, by hand and vellis in nanoseconds, the ratio, the
# lowest and the highest, and the limit if there is one.
measure() {
    local run
    for ((run = 0; run < runs; ++run)); do
        # With the driver's cache of shaders, linking would be reading a file.
        MESA_SHADER_CACHE_DISABLE=true "$repository/build/bench/benchmarks/vellis_benchmarks" driver \
            --benchmark_filter="$pattern" --benchmark_format=json 2>/dev/null
    done | python3 -c '
import json, statistics, sys

limits = {}
for line in open(sys.argv[1]):
    fields = line.split("#")[0].split()
    if fields:
        limits[fields[0], fields[1]] = fields[2:]

decoder, text, measured = json.JSONDecoder(), sys.stdin.read().strip(), {}
while text:
    report, end = decoder.raw_decode(text)
    text = text[end:].strip()
    for benchmark in report["benchmarks"]:
        family, operation, size = benchmark["name"].split("/")[:3]
        measured.setdefault((f"{family}/{operation}", size), []).append(benchmark)
for workload, benchmarks in measured.items():
    def values(key):
        return [benchmark[key] for benchmark in benchmarks]
    ratios = values("vellis_ratio")
    times = [statistics.median(values(key)) for key in ("raw_ns", "vellis_ns")]
    print(*workload, *(f"{time:.0f}" for time in times), f"{statistics.median(ratios):.3f}",
          f"{min(ratios):.3f}", f"{max(ratios):.3f}", *limits.get(workload, []))
' "$limits"
}

# Prints the table; fails where a limit is passed.
report() {
    awk '
        BEGIN {
            printf "%-24s %7s %12s %12s %7s  %-16s\n", "workload", "size", "by hand, ns", "vellis, ns",
                "ratio", "of all runs"
        }
        {
            verdict = ""
            if (NF > 7)
                verdict = ($5 <= $8 ? "within " : "ABOVE ") $8
            above += verdict ~ /^ABOVE/
            printf "%-24s %7d %12d %12d %7s  %s to %s   %s\n", $1, $2, $3, $4, $5, $6, $7, verdict
        }
        END { exit above > 0 }'
}

for ((attempt = 1; attempt <= attempts; ++attempt)); do
    say "Timing, $runs times"
    measured="$(measure)"
    [[ -n "$measured" ]] || fail "nothing was measured."
    if report <<<"$measured"; then
        exit 0
    fi
done
fail "above the limits: see ABOVE in the table."
