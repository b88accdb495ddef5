#!/usr/bin/env bash
# Runs the tests on a library that counts, and reports which lines and branches of src/ they reach;
# fails below the limits. Branches that an exception would take are left out. A page for each source,
# with what was not reached: build/coverage/report/index.html. Installs what is missing.
#
# Usage: scripts/checks/coverage.sh
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

if [[ $# -gt 0 ]]; then
    fail "usage: coverage.sh"
fi
# Percent, at least.
lines=98
branches=90
build="$repository/build/coverage"
report="$build/report"

install_dependencies
install_window_dependencies
command -v gcovr >/dev/null || install_packages gcovr
build_preset coverage

# The counts of former runs would be added to, and those of sources that are gone stay.
find "$build" -name '*.gcda' -delete
say "Testing build/coverage"
ctest --test-dir "$build" --label-regex '^(trace|render|window|docs)$' --output-on-failure \
    --no-tests=error --parallel "$(nproc)" ||
    fail "tests failed: their names and output are above."

# The library, and text, whose tests have its sources in them.
counted=()
for folder in CMakeFiles/vellis.dir CMakeFiles/vellis_text.dir tests/text/CMakeFiles/vellis_text_tests.dir; do
    if [[ -d "$build/$folder" ]]; then
        counted+=("$build/$folder")
    fi
done

mkdir -p "$report"
gcovr --root "$repository" --filter "$repository/src/" \
    --exclude-throw-branches \
    --fail-under-line "$lines" --fail-under-branch "$branches" \
    --print-summary --txt "$report/lines.txt" --html-details "$report/index.html" \
    "${counted[@]}" || {
    cat "$report/lines.txt"
    fail "less than $lines % of the lines or $branches % of the branches: see $report/index.html."
}
say "$report/index.html"
