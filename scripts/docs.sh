#!/usr/bin/env bash
# Writes the documentation as web pages: build/docs/html/index.html. Installs what is missing. A
# public entity without a comment, or a comment that is wrong, is a failure.
#
# Usage: scripts/docs.sh
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

if [[ $# -gt 0 ]]; then
    fail "usage: docs.sh"
fi
docs="$repository/build/docs"

install_dependencies
for tool in doxygen dot; do
    command -v "$tool" >/dev/null || install_packages doxygen graphviz
done
say "Configuring $docs"
cmake -S "$repository" -B "$docs/cmake" -D VELLIS_DOCS_DIR="$docs" \
    -D VELLIS_BUILD_TESTS=OFF -D VELLIS_BUILD_EXAMPLES=OFF >/dev/null ||
    fail "configuring failed (see above): mend what it names; where the build folder is stale, delete $docs. Then run this again."
cmake --build "$docs/cmake" --target docs ||
    fail "the documentation has mistakes: mend the comments named above, then run this again."
say "$docs/html/index.html"
