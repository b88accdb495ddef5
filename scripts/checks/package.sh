#!/usr/bin/env bash
# Makes Debian packages of vellis and of vellis::text, and checks them: lintian has no error to report,
# and programs build and run with what they unpack to. Installs what is missing.
#
# Usage: scripts/checks/package.sh [--install]
#
# By default the packages are unpacked into a temporary folder, so that this system stays as it is.
# --install installs them on this system with apt-get, builds and runs the programs there, and removes
# them again: for a machine that may be changed, such as one of continuous integration.
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

if [[ $# -gt 1 || "${1:---install}" != --install ]]; then
    fail "usage: package.sh [--install]"
fi
build="$repository/build/package"
debs="$repository/build/packages"
consumers="$repository/tests/consumer"
font=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf

# As Debian builds its packages: with the distribution's flags, for /usr, where the library folder is
# the one of the architecture.
make_packages() {
    local flags linker_flags
    flags="$(DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --get CXXFLAGS) $(dpkg-buildflags --get CPPFLAGS)"
    linker_flags="$(DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --get LDFLAGS)"
    rm -rf "$debs"
    cmake -S "$repository" -B "$build" \
        -DCMAKE_INSTALL_PREFIX=/usr \
        -DCMAKE_BUILD_TYPE=None \
        -DCMAKE_SKIP_INSTALL_RPATH=ON \
        -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" \
        -DCMAKE_SHARED_LINKER_FLAGS="$linker_flags" \
        -DVELLIS_BUILD_TEXT=ON -DVELLIS_BUILD_TESTS=OFF -DVELLIS_BUILD_EXAMPLES=OFF >/dev/null ||
        fail "configuring failed: see above."
    cmake --build "$build" --parallel "$(nproc)" || fail "building failed: mend the first error above."
    cpack -G DEB --config "$build/CPackConfig.cmake" -B "$debs" || fail "cpack failed: see above."
    rm -rf "$debs/_CPack_Packages"
}

# The packages that a package depends on, of the given ones.
dependencies_of() {
    dpkg-deb --field "$1" Depends | grep --only-matching --extended-regexp "\b($2)[0-9a-z]*" | sort --unique
}

check_dependencies() {
    local package library
    for package in "$debs"/libvellis[0-9]*.deb "$debs"/libvellis-text[0-9]*.deb; do
        # A library with packed relocations needs a C library that unpacks them, which no symbol tells of.
        rm -rf "$scratch/runtime"
        dpkg-deb --extract "$package" "$scratch/runtime"
        library="$(find "$scratch/runtime" -name 'libvellis*.so.*' -type f)"
        if readelf --dynamic "$library" | grep '(RELR)' >/dev/null; then
            dpkg-deb --field "$package" Depends | grep 'libc6 (>= 2\.36)' >/dev/null ||
                fail "$package does not depend on the C library that its library needs, libc6 (>= 2.36)."
        fi
    done
    # What text is built on is the matter of its packages alone.
    local needs='libvellis|libfreetype|libharfbuzz|libfribidi'
    [[ "$(dependencies_of "$debs"/libvellis-text[0-9]*.deb "$needs" | wc -l)" -eq 4 ]] ||
        fail "libvellis-text does not depend on each of $needs: see dpkg-deb --field."
    [[ -z "$(dependencies_of "$debs"/libvellis[0-9]*.deb "$needs")" ]] ||
        fail "libvellis depends on one of $needs: see dpkg-deb --field."
}

# Runs a command, which is quiet unless it fails.
quietly() {
    "$@" >"$scratch/log" 2>&1 || { cat "$scratch/log"; fail "'$*' failed: see above."; }
}

# Builds and runs programs outside the repository, against the given prefix or, without one, what is
# installed on this system.
use_packages() {
    local common=(-Dsettings="$repository/build/default/tests/consumer/settings.cmake" -Dkind=shared)
    if [[ $# -gt 0 ]]; then
        common+=(-Dprefix="$1")
    fi
    local project
    for project in find_package text; do
        quietly cmake "${common[@]}" -Dproject="$consumers/$project" \
            -Dfolder="$scratch/$project" -P "$consumers/consume.cmake"
    done
    common+=(-Dpkg_config=pkg-config -Dfolder="$scratch/pkg_config")
    quietly cmake "${common[@]}" -Dpackage=vellis -Dprogram="$consumers/programs/triangle.cpp" \
        -Darguments=shared -P "$consumers/pkg_config.cmake"
    quietly cmake "${common[@]}" -Dpackage=vellis-text -Dprogram="$consumers/programs/words.cpp" \
        -Darguments="shared $font" -P "$consumers/pkg_config.cmake"
    say "Programs build and run with find_package and with pkg-config."
}

unpack_and_use() {
    local package library
    for package in "$debs"/*.deb; do
        dpkg-deb --extract "$package" "$scratch/root"
    done
    # The loader knows the folder where they are installed, and must be told of this one.
    library="$(find "$scratch/root" -name 'libvellis.so')"
    LD_LIBRARY_PATH="$(dirname "$library")" use_packages "$scratch/root/usr"
}

# apt-get, which waits while another one works.
apt() {
    local as_root=()
    [[ "$(id -u)" -eq 0 ]] || as_root=(sudo)
    quietly "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get --option DPkg::Lock::Timeout=300 --yes "$@"
}

# How many of the libraries the linker knows.
num_known_libraries() {
    ldconfig -p | grep --count --extended-regexp "libvellis(-text)?\.so\." || true
}

install_and_use() {
    local names=() files package file
    for package in "$debs"/*.deb; do
        names+=("$(dpkg-deb --field "$package" Package)")
    done
    [[ "$(missing_packages "${names[@]}" | wc -l)" -eq ${#names[@]} ]] ||
        fail "some of ${names[*]} are installed: remove them first, this would do it unasked."

    say "Installing ${names[*]} on this system"
    installed=("${names[@]}")
    apt install --no-install-recommends "$debs"/*.deb
    mapfile -t files < <(dpkg --listfiles "${names[@]}" | grep vellis)
    [[ "$(num_known_libraries)" -eq 2 ]] || fail "the linker does not know the two libraries."
    use_packages

    say "Removing ${names[*]}"
    installed=()
    apt purge "${names[@]}"
    for file in "${files[@]}"; do
        [[ ! -e "$file" ]] || fail "$file is left behind."
    done
    [[ "$(num_known_libraries)" -eq 0 ]] || fail "the linker still knows a library."
    say "Nothing is left behind."
}

# Leaves nothing behind, also where something fails.
clean_up() {
    if [[ ${#installed[@]} -gt 0 ]]; then
        apt purge "${installed[@]}"
    fi
    rm -rf "$scratch"
}

install_dependencies
install_packages dpkg-dev lintian
scratch="$(mktemp -d)"
installed=()
trap clean_up EXIT

say "Making the packages"
make_packages
say "Checking them with lintian"
lintian --allow-root --fail-on error "$debs"/*.deb || fail "lintian has errors to report: see above."
check_dependencies
# The programs get their context from a library of the tests.
build_preset default --target vellis_offscreen >/dev/null
if [[ "${1:-}" == --install ]]; then
    install_and_use
else
    unpack_and_use
fi
say "The packages:"
printf '%s\n' "$debs"/*.deb
