# Sourced by scripts that compare sides: measures them and holds their limits.
# shellcheck shell=bash

# The arguments of such a script, which knows only --limited. Sets `attempts`, how often what is above its
# limit is measured.
read_attempts() {
    attempts=1
    if [[ $# -eq 1 && "$1" == --limited ]]; then
        attempts=5 # something else may have had the processors
    elif [[ $# -gt 0 ]]; then
        fail "usage: $(basename "$0") [--limited]"
    fi
}

# hold_limits PROGRAM LIMITS: runs a program that prints the values of sides, compares them with a file of
# limits, and fails where something is above its limit in all attempts.
hold_limits() {
    local program="$1" limits="$2" attempt workloads=()

    # A driver that draws in memory allocates megabytes for each frame. Whether the C library gives these back
    # to the system in between, which takes several times as long as drawing a little, depends on what happens
    # to lie behind them: here it keeps them.
    export MALLOC_TRIM_THRESHOLD_=1000000000 MALLOC_MMAP_THRESHOLD_=1000000000

    # What is left to be within its limit: each attempt measures what was above in the one before.
    left="$(mktemp)"
    table="$(mktemp)"
    trap 'rm -f "$left" "$table"' EXIT
    cp "$limits" "$left"
    for ((attempt = 1; attempt <= attempts; ++attempt)); do
        say "Measuring"
        # shellcheck disable=SC2154 # set by scripts/setup.sh
        if "$program" "${workloads[@]}" |
            python3 "$repository/scripts/measurements/reports.py" canvas "$left" | tee "$table"; then
            return
        fi
        awk '/ ABOVE / { print $1, $2, $3, $5, $NF }' "$table" >"$left"
        [[ -s "$left" ]] || fail "nothing was measured: see above."
        mapfile -t workloads < <(cut --delimiter=' ' --fields=1 "$left" | sort --unique)
    done
    fail "above the limits: see ABOVE in the table."
}
