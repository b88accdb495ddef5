#!/usr/bin/env bash
# Runs the tests on a driver on each GL driver, through each way to a context, and in contexts that lack
# something. Prints what came of each row as a table and leaves it in build/matrix/results.md, the output
# of the tests beside it. Fails where a test does that is not known to fail there; the known failures, and
# the rows, stand in matrix.py. Installs what is missing.
#
# Usage: scripts/checks/matrix.sh                     every row; those that cannot run here are listed with
#                                                     the reason
#        scripts/checks/matrix.sh [--quick] [row...]  only these rows; each must run. --quick: six rows that
#                                                     need no X server, without the programs among the
#                                                     examples
#        scripts/checks/matrix.sh --list              their names
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

matrix=(python3 "$repository/scripts/checks/matrix.py" "$repository")
if [[ " $* " == *" --list "* ]]; then
    exec "${matrix[@]}" "$@"
fi
install_dependencies
needed="$("${matrix[@]}" --packages "$@")"
if is_debian && [[ -n "$needed" ]]; then
    mapfile -t needed <<<"$needed"
    install_packages "${needed[@]}"
fi
build_preset default --target vellis_tests_render vellis_driver
exec "${matrix[@]}" "$@"
