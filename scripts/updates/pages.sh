#!/usr/bin/env bash
# Writes the generated parts of the documentation's pages anew: the tables of GL calls, of GL state and
# of faults, and the texts of the portable preamble. Installs what is missing.
#
# Usage: scripts/updates/pages.sh
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

if [[ $# -gt 0 ]]; then
    fail "usage: pages.sh"
fi

install_dependencies
programs=(
    docs/vellis_pages_tests
    faults/vellis_allocation_fault_tests
    faults/vellis_gl_fault_tests
)
build_preset default --target "${programs[@]##*/}"
for program in "${programs[@]}"; do
    path="$repository/build/default/tests/$program"
    VELLIS_WRITE_PAGES=1 "$path" >/dev/null ||
        fail "the pages could not be written: run '$path' to see why."
done
say "The generated parts of $repository/docs are written; 'git diff docs' shows what is new."
