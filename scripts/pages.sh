#!/usr/bin/env bash
# Writes the generated parts of the documentation's pages anew: the tables of GL calls and of GL state,
# and the texts of the portable preamble. Installs what is missing.
#
# Usage: scripts/pages.sh
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

if [[ $# -gt 0 ]]; then
    fail "usage: pages.sh"
fi

install_dependencies
build_preset default --target vellis_pages_tests
VELLIS_WRITE_PAGES=1 "$repository/build/default/tests/docs/vellis_pages_tests" >/dev/null ||
    fail "the pages could not be written: run '$repository/build/default/tests/docs/vellis_pages_tests' to see why."
say "The generated parts of $repository/docs are written; 'git diff docs' shows what is new."
