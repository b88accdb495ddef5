#!/usr/bin/env bash
# Checks the tests: changes the library's sources in one place at a time, and sees whether a test
# fails. The changes are made by rule and drawn by a seed. Works in build/mutations/src and
# build/mutations/include, where the reports are left, too; takes hours. Installs what is missing.
#
# Usage: scripts/checks/mutations.sh [--seed N] [--count N] [--of src|include] [--minutes N]
#                                    [--list | --again]
#
# --seed    another number draws other changes; 1 by default
# --count   changes that compile; 300 by default
# --of      include changes the public headers in place of src, the sources
# --minutes begins no more than the twenty changes at hand when they are over
# --list    lists all changes that could be drawn, and does no more
# --again   tries those changes that no test found in the last run, and no others
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

install_dependencies
for tool in git ninja; do
    command -v "$tool" >/dev/null || install_packages git ninja-build
done
exec python3 "$repository/tests/mutations/mutate.py" "$repository" "$@"
