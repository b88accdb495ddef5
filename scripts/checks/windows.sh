#!/usr/bin/env bash
# Builds the library, its tests and its examples for Windows with mingw-w64, and runs the tests with
# Wine on an X server of its own. Installs what is missing.
#
# Usage: scripts/checks/windows.sh [trace | docs | render | package]   (builds and runs one label's tests alone)
#
# The first run makes what the build needs beside the compiler: build/windows-root, with the headers
# of glm and stb and with GoogleTest built for Windows, and build/windows-wine, Wine's files.
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

labels=(trace docs render package)
any_label="$(IFS='|' && printf '%s' "${labels[*]}")"
if [[ $# -gt 1 || ! "${1:-trace}" =~ ^($any_label)$ ]]; then
    fail "usage: windows.sh [$any_label]"
fi
root="$repository/build/windows-root"
build="$repository/build/windows"

# The folder as Wine names it, whose drive Z: is the root of the system.
windows_path() {
    printf 'Z:%s' "${1//\//\\}"
}

# GoogleTest has no package for Windows, and the system's include folder, where glm's and stb's
# headers stand, must stay out of the compiler's sight.
make_root() {
    say "Making $root"
    mkdir -p "$root/include" "$root/share/cmake"
    ln -sfn /usr/include/glm "$root/include/glm"
    ln -sfn /usr/include/stb "$root/include/stb"
    cp -r /usr/share/cmake/glm "$root/share/cmake"
    local googletest="$repository/build/windows-googletest"
    {
        cmake -S /usr/src/googletest -B "$googletest" -G Ninja \
            -DCMAKE_TOOLCHAIN_FILE="$repository/cmake/toolchains/mingw-w64.cmake" \
            -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$root" &&
            cmake --build "$googletest" --parallel "$(nproc)" --target install
    } >"$root/googletest.log" ||
        fail "building GoogleTest failed: see above and $root/googletest.log, then run this again."
}

# Starts an X server and Wine, which both end with this script. Even hidden windows need an X server.
start_wine() {
    local display_file="$build/display"
    rm -f "$display_file" # what an earlier run has left must not be read
    Xvfb -displayfd 3 -noreset -nolisten tcp -screen 0 1280x1024x24 3>"$display_file" 2>/dev/null &
    x_server=$!
    trap stop_wine EXIT
    until [[ -s "$display_file" ]]; do
        kill -0 "$x_server" 2>/dev/null || fail "Xvfb does not start: run it by hand to see why."
        sleep 0.1
    done
    DISPLAY=":$(<"$display_file")"
    WINEPREFIX="$repository/build/windows-wine"
    # Neither its messages nor its offers to install .NET and a browser.
    WINEDEBUG=-all
    WINEDLLOVERRIDES="mscoree,mshtml="
    # Where the DLLs of the library, the compiler and its threads are.
    WINEPATH="$(windows_path "$build")"
    local dll
    for dll in libstdc++-6.dll libwinpthread-1.dll; do
        WINEPATH+=";$(windows_path "$(dirname "$(x86_64-w64-mingw32-g++-posix -print-file-name="$dll")")")"
    done
    export DISPLAY WINEPREFIX WINEDEBUG WINEDLLOVERRIDES WINEPATH
    mkdir -p "$WINEPREFIX"
    # Wine's own programs start with the first of ours, keep its output open for as long as they live,
    # and live as long as its server: here they start, and stay for all tests.
    say "Starting Wine"
    # A server that a run has left, which was not let end, would keep to the X server of that run.
    wineserver --kill || true
    wineserver --wait
    wineserver --persistent
    wine wineboot >/dev/null 2>&1 ||
        fail "Wine does not start: delete $WINEPREFIX, then run this again."
}

stop_wine() {
    wineserver --kill 2>/dev/null || true
    kill "$x_server" 2>/dev/null || true
}

install_dependencies
install_packages g++-mingw-w64-x86-64-posix googletest wine wine64 xvfb
[[ -e "$root/lib/libgtest.a" ]] || make_root
if [[ $# -eq 1 ]]; then
    build_preset windows --target "vellis_tests_$1"
else
    build_preset windows
fi
start_wine
say "Testing build/windows"
# Most programs are one test to ctest: they say themselves how many tests passed.
GTEST_BRIEF=1 ctest --test-dir "$build" --verbose --no-tests=error --parallel "$(nproc)" \
    --label-regex "^(${1:-$any_label})$" ||
    fail "tests failed: their names and output are above."
