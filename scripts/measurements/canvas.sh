#!/usr/bin/env bash
# Times what Canvas draws on a driver, beside a plain draw of the same points from a buffer and beside
# Dear ImGui, in turns, and counts its memory; compares with benchmarks/canvas.txt. Fails where something is
# above its limit. Installs what is missing.
#
# Usage: scripts/measurements/canvas.sh [--limited]    --limited: what is above its limit again, a few times
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"
# shellcheck source=scripts/measurements/sides.sh
source "$repository/scripts/measurements/sides.sh"

read_attempts "$@"
install_dependencies
install_packages libbenchmark-dev libimgui-dev
build_preset bench --target vellis_canvas_benchmarks
hold_limits "$repository/build/bench/benchmarks/canvas/vellis_canvas_benchmarks" \
    "$repository/benchmarks/canvas.txt"
