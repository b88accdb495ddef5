#!/usr/bin/env bash
# Measures what the libraries cost to include and to ship: how long the compiler takes over each public
# header, beside <SFML/Graphics.hpp> in the same run, and the sizes of the stripped shared libraries. Fails
# above the limits. Installs what is missing.
#
# Usage: scripts/measurements/footprint.sh [--peers]    --peers: the headers and libraries of Qt and globjects, too
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

reference=SFML/Graphics.hpp
umbrella_limit=1.0 # of the reference's time, for <vellis/vellis.hpp>
family_limit=0.8   # the same, for every other header
size_limit=370     # kB, for the stripped library
text_limit=80      # the same, for that of text
rounds=15
compiler="${CXX:-c++}"

peers=false
if [[ $# -eq 1 && "$1" == --peers ]]; then
    peers=true
elif [[ $# -gt 0 ]]; then
    fail "usage: footprint.sh [--peers]"
fi

install_dependencies
install_packages libsfml-dev
if "$peers"; then
    install_packages "${peer_packages[@]}"
fi
build_preset default --target vellis_tests_package # with text, where that is built
build="$repository/build/default"
multiarch="/usr/lib/$("$compiler" -dumpmachine | sed 's/-pc//')"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

# --- Headers ---

flags=(-std=c++17 -fPIC -fsyntax-only -I "$repository/include" -I "$build/include" -I "$build/loader/include")
headers=("$reference")
for header in "$repository"/include/vellis/*.hpp; do
    if [[ "$header" != */text.hpp || -e "$build/libvellis-text.so" ]]; then
        headers+=("vellis/${header##*/}")
    fi
done
if "$peers"; then
    qt="/usr/include/${multiarch##*/}/qt6"
    flags+=(-I "$qt" -I "$qt/QtCore" -I "$qt/QtGui" -I "$qt/QtOpenGL" -DGLM_FORCE_RADIANS)
    headers+=(globjects/globjects.h
        "QOpenGLFunctions QOpenGLShaderProgram QOpenGLBuffer QOpenGLVertexArrayObject")
fi

for i in "${!headers[@]}"; do
    for header in ${headers[$i]}; do
        printf '#include <%s>\n' "$header"
    done >"$work/$i.cpp"
    "$compiler" "${flags[@]}" "$work/$i.cpp" || fail "${headers[$i]} does not compile (see above)."
done

# The headers take turns, so that what else the machine does meets all of them alike.
say "Timing ${#headers[@]} headers, $rounds times each"
TIMEFORMAT='%3U %3S'
for ((round = 0; round < rounds; ++round)); do
    for i in "${!headers[@]}"; do
        read -r user system <<<"$({ time "$compiler" "${flags[@]}" "$work/$i.cpp"; } 2>&1)"
        printf '%s\t%s\n' "${headers[$i]}" "$(awk "BEGIN { print $user + $system }")"
    done
done >"$work/times"

above=0
python3 "$repository/scripts/measurements/reports.py" headers "$umbrella_limit" "$family_limit" <"$work/times" ||
    above=1

# --- Library ---

# Prints the size of a library in kB, stripped.
size() {
    strip -o "$work/stripped" "$1"
    echo $((($(stat --format %s "$work/stripped") + 500) / 1000))
}

# Prints the names of the libraries with their sizes, and with their limits where they have one.
list_sizes() {
    local library
    echo "libvellis.so $(size "$build/libvellis.so") $size_limit"
    if [[ -e "$build/libvellis-text.so" ]]; then
        echo "libvellis-text.so $(size "$build/libvellis-text.so") $text_limit"
    fi
    for library in "${libraries[@]}"; do
        echo "$library.so $(size "$(readlink -f "$multiarch/$library.so")")"
    done
}

say ""
libraries=(libsfml-graphics libsfml-window libsfml-system)
if "$peers"; then
    libraries+=(libglobjects libglbinding libQt6OpenGL libQt6Gui)
fi
list_sizes | python3 "$repository/scripts/measurements/reports.py" sizes || above=1

((above == 0)) || fail "above the limits: see ABOVE in the tables."
