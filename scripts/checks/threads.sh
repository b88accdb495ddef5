#!/usr/bin/env bash
# Runs the tests that have several threads under the thread sanitizer, on the fake GL and on a driver. What
# happens inside the driver's libraries is not looked at. Installs what is missing.
#
# Usage: scripts/checks/threads.sh [arguments of ctest]
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

install_dependencies
build_preset tsan --target vellis_tests_threads
say "Testing build/tsan"
TSAN_OPTIONS="suppressions=$repository/tests/support/thread_sanitizer.supp halt_on_error=1" \
    ctest --test-dir "$repository/build/tsan" --output-on-failure --no-tests=error \
    --label-regex threads --parallel "$(nproc)" "$@" ||
    fail "tests failed: see above."
