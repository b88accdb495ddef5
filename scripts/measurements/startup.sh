#!/usr/bin/env bash
# Measures what loading GL's entry points takes in a fresh process: engine::init, and the generated
# loader alone with EGL's own lookup, one process after the other in turns. Fails where the median of
# engine::init is above its limit. Installs what is missing.
#
# Usage: scripts/measurements/startup.sh
# shellcheck disable=SC2016 # what is in single quotes is awk's
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

limit=1.1 # of the loader's time, for the first engine::init
rounds=101

if [[ $# -gt 0 ]]; then
    fail "usage: startup.sh"
fi
install_dependencies
install_packages libbenchmark-dev
build_preset bench --target vellis_startup
program="$repository/build/bench/benchmarks/vellis_startup"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
say "Starting $((2 * rounds)) processes"
for ((round = 0; round < rounds; ++round)); do
    for what in bare engine; do
        printf '%s %s\n' "$what" "$("$program" "$what" | tr '\n' ' ')"
    done
done >"$work/times"

# Prints the median of the numbers that awk's program takes from the times.
median() {
    awk "$1" "$work/times" | sort --general-numeric-sort | sed -n "$((rounds / 2 + 1))p"
}

bare="$(median '$1 == "bare" { print $2 }')"
engine="$(median '$1 == "engine" { print $2 }')"
ratio="$(median '$1 == "bare" { bare = $2 } $1 == "engine" { print $2 / bare }')"
printf '%-28s %8s %8s\n' load µs ratio
printf '%-28s %8.0f\n' "the loader alone" "$bare"
verdict=within
if awk "BEGIN { exit !($ratio > $limit) }"; then
    verdict=ABOVE
fi
printf '%-28s %8.0f %8.2f   %s %s\n' engine::init "$engine" "$ratio" "$verdict" "$limit"
printf '%-28s %8.0f\n' "the loader alone, again" "$(median '$1 == "bare" { print $3 }')"
printf '%-28s %8.0f\n' "engine::init, again" "$(median '$1 == "engine" { print $3 }')"
[[ "$verdict" == within ]] || fail "above the limit: see ABOVE in the table."
