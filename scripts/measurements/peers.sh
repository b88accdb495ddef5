#!/usr/bin/env bash
# Compares the library with Qt's OpenGL classes, globjects, SFML and Dear ImGui: instructions and allocations
# on a GL that does nothing, times on a driver, headers and libraries. Installs what is missing.
#
# Usage: scripts/measurements/peers.sh
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

install_dependencies
install_packages libbenchmark-dev xvfb "${peer_packages[@]}"
build_preset peers --target vellis_peer_instructions --target vellis_peer_benchmarks \
    --target vellis_sfml_benchmarks
programs="$repository/build/peers/benchmarks/peers"
status=0

say "Versions"
for package in libqt6opengl6-dev libglobjects-dev libglbinding-dev libsfml-dev libimgui-dev; do
    dpkg-query --show "$package"
done

say "Instructions and allocations, on a GL that does nothing"
"$repository/scripts/measurements/instructions.sh" "$programs/vellis_peer_instructions" || status=1

# Prints the counters of a report, one line for each library of a workload.
print_times() {
    python3 "$repository/scripts/measurements/reports.py" peers
}

say "Times, on the driver"
"$programs/vellis_peer_benchmarks" driver --benchmark_format=json 2>/dev/null | print_times

say "Times of a scope of state and of lines, in SFML's own context"
display="$(mktemp)"
Xvfb -displayfd 3 -noreset 3>"$display" 2>/dev/null &
server=$!
trap 'kill "$server"; rm -f "$display"' EXIT
until [[ -s "$display" ]]; do
    kill -0 "$server" 2>/dev/null || fail "Xvfb does not start."
    sleep 0.1
done
DISPLAY=":$(<"$display")" "$programs/vellis_sfml_benchmarks" --benchmark_format=json 2>/dev/null |
    print_times

say "Times of lines, beside Dear ImGui's"
"$repository/scripts/measurements/canvas.sh" || status=1

"$repository/scripts/measurements/footprint.sh" --peers || status=1
exit "$status"
