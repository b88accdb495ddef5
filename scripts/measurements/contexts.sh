#!/usr/bin/env bash
# Measures what several Contexts cost: how long Context::use takes where nothing waits, and what a second
# thread with a Context of its own gains, beside what it gains for GL by hand. Fails, after a few attempts,
# where one is beyond its limit. Installs what is missing.
#
# Usage: scripts/measurements/contexts.sh
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

limits=(
    "use/again at most 50"
    "use/in_turns at most 50"
    "threads/ratio at least 0.95"
)
attempts=5 # something else may have had the processors

if [[ $# -gt 0 ]]; then
    fail "usage: contexts.sh"
fi
install_dependencies
install_packages libbenchmark-dev
build_preset bench --target vellis_context_benchmarks
program="$repository/build/bench/benchmarks/vellis_context_benchmarks"

# Prints what was measured, each beside its limit; fails where one is beyond.
measure() {
    # Each thread draws by itself: the driver's own would be shared.
    LP_NUM_THREADS=0 "$program" | awk -v limits="$(printf '%s\n' "${limits[@]}")" '
        BEGIN {
            count = split(limits, lines, "\n")
            for (i = 1; i <= count; ++i) {
                split(lines[i], words, " ")
                sign[words[1]] = words[3] == "most" ? 1 : -1
                limit[words[1]] = words[4]
            }
        }
        {
            verdict = ""
            if ($1 in limit) {
                isWithin = sign[$1] * $2 <= sign[$1] * limit[$1]
                verdict = (isWithin ? "within " : "BEYOND ") limit[$1]
                beyond += !isWithin
                ++judged
            }
            printf "%-18s %8s   %s\n", $1, $2, verdict
        }
        END { exit beyond > 0 || judged != count }'
}

for ((attempt = 1; attempt <= attempts; ++attempt)); do
    say "Measuring"
    if measure; then
        exit 0
    fi
done
fail "beyond the limits: see BEYOND in the table."
