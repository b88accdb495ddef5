#!/usr/bin/env bash
# Builds the library with its tests and runs them all. Installs what is missing.
#
# Usage: scripts/test.sh [arguments of ctest, for instance -L trace or -R Shader]
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

install_dependencies
install_window_dependencies
build_preset default
say "Testing build/default"
ctest --test-dir "$repository/build/default" --output-on-failure --no-tests=error \
    --parallel "$(nproc)" "$@" ||
    fail "tests failed: their names and output are above; 'scripts/test.sh -R NAME' runs one again."
