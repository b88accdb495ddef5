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
    use/again=most:50
    use/in_turns=most:50
    threads/ratio=least:0.95
)
attempts=5 # something else may have had the processors

if [[ $# -gt 0 ]]; then
    fail "usage: contexts.sh"
fi
install_dependencies
install_packages libbenchmark-dev
build_preset bench --target vellis_context_benchmarks
program="$repository/build/bench/benchmarks/vellis_context_benchmarks"

for ((attempt = 1; attempt <= attempts; ++attempt)); do
    say "Measuring"
    # Each thread draws by itself: the driver's own would be shared.
    if LP_NUM_THREADS=0 "$program" |
        python3 "$repository/scripts/measurements/reports.py" contexts "${limits[@]}"; then
        exit 0
    fi
done
fail "beyond the limits: see ABOVE and BELOW in the table."
