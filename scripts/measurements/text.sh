#!/usr/bin/env bash
# Times words on a driver, beside a plain draw of the same quads from a buffer and beside Dear ImGui, in turns,
# and what new words and new glyphs take; compares with benchmarks/text.txt. Fails where something is above its
# limit. Installs what is missing.
#
# Usage: scripts/measurements/text.sh [--limited]    --limited: what is above its limit again, a few times
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"
# shellcheck source=scripts/measurements/sides.sh
source "$repository/scripts/measurements/sides.sh"

read_attempts "$@"
install_dependencies
install_packages libbenchmark-dev libimgui-dev
build_preset bench --target vellis_text_benchmarks
hold_limits "$repository/build/bench/benchmarks/text/vellis_text_benchmarks" \
    "$repository/benchmarks/text.txt"
