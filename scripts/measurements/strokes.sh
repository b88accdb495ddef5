#!/usr/bin/env bash
# Measures how far strokes are from their geometry, scene by scene: those of Canvas, beside cairo's with its
# best antialiasing and GL's smooth lines. Prints a table. Installs what is missing.
#
# Usage: scripts/measurements/strokes.sh
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

if [[ $# -gt 0 ]]; then
    fail "usage: strokes.sh"
fi
install_dependencies
install_packages libbenchmark-dev libcairo2-dev
build_preset bench --target vellis_stroke_errors
"$repository/build/bench/benchmarks/strokes/vellis_stroke_errors"
