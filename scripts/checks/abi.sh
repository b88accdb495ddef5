#!/usr/bin/env bash
# Compares the binary interfaces of the libraries, vellis and vellis::text, with the kept ones, and says
# what has changed: types, functions, layouts. Installs what is missing.
#
# Usage: scripts/checks/abi.sh             report; succeeds whatever has changed
#        scripts/checks/abi.sh --strict    the same, but fails where anything was changed or removed
#        scripts/checks/abi.sh --update    keep the interfaces, and the lists of exported symbols, as they are now
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

mode="${1:---report}"
if [[ $# -gt 1 || ! "$mode" =~ ^--(report|strict|update)$ ]]; then
    fail "usage: abi.sh [--strict | --update]"
fi
kept="$repository/tests/abi"
build="$repository/build/default"

# Only types of the public headers count, and neither paths nor lines: the dump does not depend on
# the folder, nor change with every edit.
dump_interface() {
    abidw --headers-dir "$repository/include" \
        --headers-dir "$build/include" \
        --headers-dir "$build/loader/include" \
        --drop-private-types \
        --suppressions "$kept/dropped.ini" \
        --no-corpus-path --no-comp-dir-path --no-show-locs --type-id-style hash \
        --out-file "$2" "$1" ||
        fail "abidw cannot read $1: see above."
    sed --in-place "s|$repository/||g" "$2"
}

keep_interface() {
    local library="$build/lib$1.so"
    dump_interface "$library" "$dumps/now.abi"
    xz -9 --stdout "$dumps/now.abi" >"$kept/$1.abi.xz"
    "$kept/exported_symbols.sh" "$library" >"$kept/$1.symbols.txt"
    say "Kept: $kept/$1.abi.xz and $kept/$1.symbols.txt ($(wc -l <"$kept/$1.symbols.txt") symbols)"
}

compare_interface() {
    local library="$build/lib$1.so" status=0
    dump_interface "$library" "$dumps/now.abi"
    xz --decompress --stdout "$kept/$1.abi.xz" >"$dumps/kept.abi"
    say "Comparing $library with the kept interface"
    abidiff "$dumps/kept.abi" "$dumps/now.abi" || status=$?
    # The bits of the status: 1 and 2 for a failure, 4 for a change, 8 for one that breaks programs.
    if ((status & 3)); then
        fail "abidiff failed: see above."
    elif ((status == 0)); then
        say "The interface has not changed."
    elif abidiff --no-added-syms "$dumps/kept.abi" "$dumps/now.abi" >/dev/null; then
        say "The interface has grown; what was there is unchanged."
    elif [[ "$mode" == --strict ]]; then
        fail "what was there has changed or gone: programs that were built against it need a new SOVERSION. Where that is meant, run 'scripts/checks/abi.sh --update'."
    else
        say "What was there has changed or gone: programs that were built against it would break."
    fi
}

install_dependencies
for tool in abidw abidiff; do
    command -v "$tool" >/dev/null || install_packages abigail-tools
done
build_preset default --target vellis_tests_package
dumps="$(mktemp -d)"
trap 'rm -rf "$dumps"' EXIT
for library in vellis vellis-text; do
    if [[ ! -e "$build/lib$library.so" ]]; then
        say "Leaving out lib$library.so, which is not built"
    elif [[ "$mode" == --update ]]; then
        keep_interface "$library"
    else
        compare_interface "$library"
    fi
done
