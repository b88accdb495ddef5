#!/usr/bin/env bash
# Measures how cost grows: with the uniforms of a program, with registered objects, with the points of
# a call and of a canvas. Draws the curves of docs/performance.md from what was measured. Installs what is missing.
#
# Usage: scripts/measurements/growth.sh [folder for the plots, by default docs/images]
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

if [[ $# -gt 1 ]]; then
    fail "usage: growth.sh [folder]"
fi
plots="${1:-$repository/docs/images}"

install_dependencies
install_packages libbenchmark-dev
command -v gnuplot >/dev/null || install_packages gnuplot-nox
build_preset bench --target vellis_benchmarks --target vellis_canvas_benchmarks

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

# Measures the workloads that a pattern names, on the null driver or a driver. Leaves a file for each
# workload and side, folder/operation-side, with a line for each size: the size, and the nanoseconds.
measure() {
    local where="$1" pattern="$2"
    say "Measuring $pattern ($where)"
    # With the driver's cache of shaders, linking would be reading a file.
    MESA_SHADER_CACHE_DISABLE=true "$repository/build/bench/benchmarks/vellis_benchmarks" "$where" \
        --benchmark_filter="$pattern" --benchmark_format=json 2>/dev/null |
        python3 "$repository/scripts/measurements/reports.py" curves "$work"
}

# Measures a strip of the canvas on the driver, as scripts/measurements/canvas.sh does. Leaves a file for each
# side, with a line for each size: the size, and the nanoseconds of a point.
measure_canvas() {
    say "Measuring strips of the canvas (driver)"
    MALLOC_TRIM_THRESHOLD_=1000000000 MALLOC_MMAP_THRESHOLD_=1000000000 \
        "$repository/build/bench/benchmarks/canvas/vellis_canvas_benchmarks" growth |
        python3 "$repository/scripts/measurements/reports.py" canvas_curves "$work"
}

# Draws curves into plots/NAME.svg: axis, unit of the times and how many nanoseconds it has, then a file
# and a title for each curve. The times have a logarithmic scale where $scale says so.
scale=""
plot() {
    local name="$1" axis="$2" unit="$3" nanoseconds="$4" curves=""
    shift 4
    while [[ $# -gt 0 ]]; do
        curves+="${curves:+, }'$work/$1' using 1:(\$2/$nanoseconds) with linespoints linewidth 2 pointtype 7 pointsize 0.5 title '$2'"
        shift 2
    done
    gnuplot <<GNUPLOT
set terminal svg size 640,360 font 'sans-serif,13' background 'white'
set output '$plots/$name.svg'
set logscale x
${scale:-set yrange [0:]}
set format x '%.0f'
set xlabel '$axis'
set ylabel '$unit'
set offsets graph 0, graph 0, graph 0.05, graph 0
set key above
set grid
plot $curves
GNUPLOT
    say "$plots/$name.svg"
}

mkdir -p "$plots"
measure null '^program/set_by_name/'
plot growth-uniforms 'active uniforms of the program' nanoseconds 1 \
    set_by_name-vellis 'setUniform by name' set_by_name-raw 'raw GL with a kept location'
measure null '^registry/'
plot growth-registries 'registered objects' nanoseconds 1 \
    programs-vellis 'add, find and remove a program' buffers-vellis 'add and remove a buffer'
measure null '^toolbox/(line_strip|dashes)/'
plot growth-points 'points of the call' nanoseconds 1 \
    dashes-vellis 'drawDashLineStrip' dashes-raw 'the same GL by hand' \
    line_strip-vellis 'drawLineStrip' line_strip-raw 'the same GL by hand'
measure driver '^program/link/'
plot growth-link 'active uniforms of the program' microseconds 1000.0 \
    link-vellis 'Program::make, on the driver' link-raw 'the same GL by hand'
measure_canvas
scale="set logscale y" plot growth-canvas 'points of the strip' 'nanoseconds for a point' 1 \
    vellis 'own data' picture 'kept picture' raw 'GL_LINE_STRIP from a buffer'
