#!/usr/bin/env bash
# Runs the tests that need no driver under valgrind's memcheck: a use of memory that is not there or
# not set, or a leak, is a failure; nothing is suppressed. In the tests of text, blocks that are still
# reachable at the end are not counted: glib and cairo keep such. Installs what is missing.
#
# Usage: scripts/checks/valgrind.sh
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

if [[ $# -gt 0 ]]; then
    fail "usage: valgrind.sh"
fi
tests="$repository/build/default/tests"

install_dependencies
command -v valgrind >/dev/null || install_packages valgrind
build_preset default --target vellis_tests_trace

scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT

# The programs count allocations by an operator new of their own, which valgrind must not replace. A
# death test's child ends without tidying up.
check() {
    valgrind --quiet --error-exitcode=99 --leak-check=full \
        --show-leak-kinds="$leaks" --errors-for-leak-kinds="$leaks" \
        --soname-synonyms=somalloc=nouserintercepts --child-silent-after-fork=yes \
        "$@" --gtest_brief=1
}

# Starts a check beside others, of which as many run as there are processors. What it prints is shown where
# it fails.
num_checks=0
start_check() {
    say "Checking $(basename "$1") ${*:2}"
    while (($(jobs -rp | wc -l) >= $(nproc))); do
        wait -n || true # it has left its output
    done
    ((++num_checks))
    { check "$@" >"$scratch/$num_checks" 2>&1 && rm "$scratch/$num_checks"; } &
}

# Waits for all checks.
finish_checks() {
    local output
    wait
    for output in "$scratch"/*; do
        if [[ -e "$output" ]]; then
            cat "$scratch"/*
            fail "tests failed under valgrind: see above."
        fi
    done
}

# Prints the tests of a program that match a filter, one on a line.
list_tests() {
    local suite name
    "$1" --gtest_list_tests "--gtest_filter=$2" | while read -r name; do
        case "$name" in
        Running* | Note:*) ;;
        *.) suite="$name" ;;
        *) echo "$suite${name%% *}" ;;
        esac
    done
}

# Those that need a process of their own say so in their source; `*` is all of a program of its own.
mapfile -t alone < <(grep -rhoP '^// needs: a process for \K\w.*' "$repository/tests" --include='*_trace_test.cpp')
alone_pattern="$(IFS=: && echo "${alone[*]}")"
leaks=all
for program in "$tests"/vellis_*trace_tests; do
    pattern="$alone_pattern"
    if [[ "$program" == */vellis_diff_gl_states_trace_tests ]]; then
        pattern='*' # the diff remembers for the whole process
    else
        start_check "$program" "--gtest_filter=-$alone_pattern"
    fi
    while read -r name; do
        start_check "$program" "--gtest_filter=$name"
    done < <(list_tests "$program" "$pattern")
done
leaks=definite,indirect,possible
if [[ -e "$tests/text/vellis_text_tests" ]]; then
    start_check "$tests/text/vellis_text_tests"
fi
finish_checks
say "No error, and no leak."
