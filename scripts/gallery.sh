#!/usr/bin/env bash
# Builds the gallery and draws it off screen: one picture for each panel, and gallery.png with all of
# them. Installs what is missing.
#
# Usage: scripts/gallery.sh [folder for the pictures, by default build/gallery in the checkout]
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

if [[ $# -gt 1 ]]; then
    fail "usage: gallery.sh [folder for the pictures]"
fi
folder="${1:-$repository/build/gallery}"

install_dependencies
build_preset default --target vellis_gallery
say "Drawing the gallery"
"$repository/build/default/examples/gallery/vellis_gallery" "$folder" ||
    fail "the gallery failed: what is wrong, and what to do, is said above."
