#!/usr/bin/env bash
# Counts the instructions and the heap allocations of the benchmarks' workloads, by hand and through
# the library, on a GL that does nothing, and compares them with benchmarks/budget.txt. The counts do
# not depend on how busy the machine is. Installs what is missing.
#
# Usage: scripts/measurements/instructions.sh [program that counts, by default the library's own]
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

if [[ $# -gt 1 ]]; then
    fail "usage: instructions.sh [program]"
fi
budget="$repository/benchmarks/budget.txt"

install_dependencies
command -v valgrind >/dev/null || install_packages valgrind
if [[ $# -eq 1 ]]; then
    program="$1"
else
    build_preset default --target vellis_instructions
    program="$repository/build/default/benchmarks/vellis_instructions"
fi

counted="$(mktemp -d)"
trap 'rm -rf "$counted"' EXIT
say "Counting"
valgrind --tool=callgrind --callgrind-out-file="$counted/profile" \
    --toggle-collect=vellis_measured_loop --dump-after=vellis_measured_loop \
    "$program" >"$counted/runs" 2>"$counted/log" || {
    cat "$counted/log" >&2
    fail "counting failed (see above)."
}

# A line for each run, in order: what was run, and the instructions from its profile.
number=0
while read -r run; do
    number=$((number + 1))
    profile="$counted/profile.$number"
    [[ -r "$profile" ]] || fail "valgrind wrote no profile of '$run'."
    printf '%s %s\n' "$run" "$(sed -n 's/^totals: //p' "$profile")"
done <"$counted/runs" >"$counted/instructions"

python3 "$repository/scripts/measurements/reports.py" instructions "$budget" <"$counted/instructions" ||
    fail "above the limits in $budget: see ABOVE in the table."
