#!/usr/bin/env bash
# Fails where a shared library exports something else than the kept list says.
#
# Usage: compare_symbols.sh <library> <list>
set -euo pipefail

"$(dirname "${BASH_SOURCE[0]}")/exported_symbols.sh" "$1" |
    diff --unified=0 --label "kept in ${2##*/}" "$2" --label "exported by ${1##*/}" - || {
    printf '%s\n' "Exported by accident (+) or lost (-): see above. Where it is meant, 'scripts/checks/abi.sh --update' keeps the new list." >&2
    exit 1
}
