#!/usr/bin/env bash
# Draws the pictures of the documentation anew, into docs/images.
# Installs what is missing.
#
# Usage: scripts/pictures.sh
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

if [[ $# -gt 0 ]]; then
    fail "usage: pictures.sh"
fi
images="$repository/docs/images"
examples="$repository/build/default/examples"

install_dependencies
command -v pngquant >/dev/null || install_packages pngquant
build_preset default --target vellis_gallery vellis_plot vellis_diagnose

drawn="$(mktemp -d)"
trap 'rm -rf "$drawn"' EXIT
say "Drawing the pictures"
"$examples/gallery/vellis_gallery" "$drawn" >/dev/null ||
    fail "the gallery failed: what is wrong, and what to do, is said above."
"$examples/plot/vellis_plot" "$drawn/plot.png" >/dev/null ||
    fail "the plot failed: what is wrong, and what to do, is said above."
"$examples/diagnose/vellis_diagnose" "$drawn/diagnose.png" >/dev/null 2>&1 ||
    fail "the picture of a mistake failed: run $examples/diagnose/vellis_diagnose picture.png"

mkdir -p "$images"
for picture in gallery plot diagnose; do
    # 256 colours suffice, in a third of the size.
    pngquant --quality 80-100 --speed 1 --strip --force --output "$images/$picture.png" \
        "$drawn/$picture.png" ||
        fail "the picture $images/$picture.png cannot be made: see above, then run this again."
    say "$images/$picture.png"
done
