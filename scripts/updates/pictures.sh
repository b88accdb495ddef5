#!/usr/bin/env bash
# Draws the pictures of the documentation anew, into docs/images: the gallery, the plot, the gears, the
# picture of a mistake, a window of SDL's, and those of the guide's pages. Installs what is missing.
#
# Usage: scripts/updates/pictures.sh
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

if [[ $# -gt 0 ]]; then
    fail "usage: pictures.sh"
fi
images="$repository/docs/images"
examples="$repository/build/default/examples"
pages="$repository/build/default/tests/docs/vellis_docs_pictures"

install_dependencies
install_window_dependencies
install_packages libsdl2-dev libimgui-dev
command -v pngquant >/dev/null || install_packages pngquant
build_preset default --target vellis_gallery vellis_gears vellis_plot vellis_diagnose vellis_docs_pictures \
    vellis_hosts_tests

drawn="$(mktemp -d)"
trap 'rm -rf "$drawn"' EXIT
say "Drawing the pictures"
"$examples/gallery/vellis_gallery" "$drawn" >/dev/null ||
    fail "the gallery failed: what is wrong, and what to do, is said above."
"$examples/plot/vellis_plot" "$drawn/plot.png" >/dev/null ||
    fail "the plot failed: what is wrong, and what to do, is said above."
"$examples/gears/vellis_gears" --frames 1 --out "$drawn" --size 480x360 >/dev/null ||
    fail "the gears failed: what is wrong, and what to do, is said above."
mv "$drawn/gears-000.png" "$drawn/gears.png"
"$examples/diagnose/vellis_diagnose" "$drawn/diagnose.png" >/dev/null 2>&1 ||
    fail "the picture of a mistake failed: run $examples/diagnose/vellis_diagnose picture.png"

VELLIS_HOST_PICTURES="$drawn" "$repository/build/default/tests/examples/vellis_hosts_tests" \
    --gtest_filter='*/Sdl' >/dev/null ||
    fail "the window of SDL's failed: run 'scripts/test.sh -R Hosts'."
mv "$drawn/Sdl0.png" "$drawn/host.png"

pictures=(gallery gears plot diagnose host)
for picture in $("$pages" --list); do
    "$pages" "$picture" "$drawn/$picture.png" >/dev/null ||
        fail "the picture $picture of a page failed: what is wrong is said above."
    pictures+=("$picture")
done

mkdir -p "$images"
for picture in "${pictures[@]}"; do
    # 256 colours suffice, in a third of the size, but for pictures of very many (status 99).
    status=0
    pngquant --quality 80-100 --speed 1 --strip --force --output "$images/$picture.png" \
        "$drawn/$picture.png" || status=$?
    if [[ $status -eq 99 ]]; then
        status=0
        cp "$drawn/$picture.png" "$images/$picture.png" || status=$?
    fi
    [[ $status -eq 0 ]] ||
        fail "the picture $images/$picture.png cannot be made: see above, then run this again."
    say "$images/$picture.png"
done
