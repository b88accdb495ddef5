# Sourced by the scripts beside it, not run: makes the tools and libraries ready that building needs,
# and builds. Sets `repository`, the root of the checkout.
# shellcheck shell=bash

repository="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"

# What a bare Debian 12 lacks: the build, then the library's dependencies, then those of the tests
# and the examples, with a GL driver that needs no hardware.
packages=(
    g++ cmake ninja-build
    libglm-dev python3 python3-glad
    libegl-dev libegl1 libgl1 libgl1-mesa-dri libstb-dev libgtest-dev libgmock-dev
    pkgconf
)

# What vellis::text and its tests need, which are left out without: the libraries, and fonts.
text_packages=(libfreetype-dev libharfbuzz-dev libfribidi-dev fonts-dejavu-core fonts-noto-core)

# What the programs with a window and their tests need beyond: a library for windows, and an X server
# without a screen. On a bare Debian 12 that is 9 MB more to download, 20 MB installed.
window_packages=(libglfw3-dev libx11-dev libxrandr-dev xvfb)

# The toolkits in whose windows the examples of hosts draw: each is left out without its own.
# shellcheck disable=SC2034 # used by the scripts that source this one
host_packages=(
    libsdl2-dev libimgui-dev
    qt6-base-dev libqt6opengl6-dev
    libgtk-3-dev
    libwxgtk3.2-dev
)

# Other libraries, for those scripts that compare.
# shellcheck disable=SC2034 # used by the scripts that source this one
peer_packages=(
    qt6-base-dev qt6-base-private-dev libqt6opengl6-dev
    libglobjects-dev
    libsfml-dev
    libimgui-dev
)

# What the first of these lists gives, for systems of another kind.
tools=(c++ cmake python3)

say() {
    printf '%s\n' "$*"
}

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# Prints those of the given Debian packages that are not installed.
missing_packages() {
    local package
    for package in "$@"; do
        # shellcheck disable=SC2016 # the format is dpkg's, not the shell's
        if [[ "$(dpkg-query --show --showformat '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]]; then
            printf '%s\n' "$package"
        fi
    done
}

# Installs what is missing of the given Debian packages; does nothing where all is there.
install_packages() {
    local missing as_root=()
    mapfile -t missing < <(missing_packages "$@")
    if [[ ${#missing[@]} -eq 0 ]]; then
        return
    fi
    if [[ "$(id -u)" -ne 0 ]]; then
        command -v sudo >/dev/null ||
            fail "packages are missing and sudo is not there: run 'apt-get install ${missing[*]}' as root, then run this again."
        as_root=(sudo)
    fi
    say "Installing ${missing[*]}"
    local install=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive
        apt-get install --yes --quiet --no-install-recommends "${missing[@]}")
    # The lists of packages may be missing, as in a fresh container, or too old.
    "${install[@]}" >/dev/null 2>&1 ||
        { "${as_root[@]}" apt-get update --quiet && "${install[@]}"; } ||
        fail "'apt-get install ${missing[*]}' failed (see above): install them, then run this again."
}

# On a system without apt-get and dpkg: says what is needed, and goes on where the tools are there.
require_tools() {
    local tool
    for tool in "${tools[@]}"; do
        command -v "$tool" >/dev/null ||
            fail "'$tool' is missing: install what your system calls ${packages[*]}, then run this again."
    done
    say "Not a Debian system: nothing is installed. What is needed, by Debian's names: ${packages[*]}"
    say "For vellis::text, which is left out without: ${text_packages[*]}"
}

is_debian() {
    command -v apt-get >/dev/null && command -v dpkg-query >/dev/null
}

# CMake would take make, which a bare system lacks. A build folder keeps the generator that it was made
# with, whatever this says.
prefer_ninja() {
    if command -v ninja >/dev/null; then
        export CMAKE_GENERATOR=Ninja
    fi
}

# Makes everything ready that building and running need.
install_dependencies() {
    if is_debian; then
        install_packages "${packages[@]}" "${text_packages[@]}"
    else
        require_tools
    fi
    prefer_ninja
}

# Makes ready what the programs with a window and their tests need beyond that. They are left out
# without it, so on other systems it is up to the user.
install_window_dependencies() {
    if is_debian; then
        install_packages "${window_packages[@]}"
    else
        say "For programs with a window and their tests, by Debian's names: ${window_packages[*]}"
    fi
}

# Configures the given preset in build/<preset> and builds it; further arguments go to the build, for
# instance --target and a name.
build_preset() {
    local preset="$1"
    shift
    prefer_ninja
    say "Configuring build/$preset"
    (cd "$repository" && cmake --preset "$preset") ||
        fail "configuring failed (see above): mend what it names; where the build folder is stale, delete $repository/build/$preset. Then run this again."
    say "Building build/$preset"
    cmake --build "$repository/build/$preset" --parallel "$(nproc)" "$@" ||
        fail "building failed: mend the first error above, then run this again."
}
