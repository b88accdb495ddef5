#!/usr/bin/env bash
# Runs all measurements that have limits, and prints one table of them: what was measured, the limit, and how
# much room is left. Fails where something is beyond its limit. Installs what is missing.
#
# Usage: scripts/measurements/limits.sh
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

if [[ $# -gt 0 ]]; then
    fail "usage: limits.sh"
fi
measurements="$repository/scripts/measurements"

HELD_LIMITS="$(mktemp)"
export HELD_LIMITS
trap 'rm -f "$HELD_LIMITS"' EXIT

beyond=()
while read -r name arguments; do
    say ""
    # shellcheck disable=SC2086 # several words
    "$measurements/$name" $arguments </dev/null || beyond+=("$name")
done <<'END'
instructions.sh
footprint.sh
startup.sh
times.sh --limited
canvas.sh --limited
text.sh --limited
contexts.sh
END

say ""
python3 "$measurements/reports.py" held <"$HELD_LIMITS"
((${#beyond[@]} == 0)) || fail "beyond their limits: ${beyond[*]}"
