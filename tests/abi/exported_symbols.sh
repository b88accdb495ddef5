#!/usr/bin/env bash
# Prints what a shared library exports, demangled and sorted.
#
# Usage: exported_symbols.sh <library>
#
# Left out is what the compiler emits where it is needed, so that the list is the same for every
# compiler and optimisation: weak symbols of the standard library, and weak data that are no table of
# virtual functions or type information, such as inline constants.
set -euo pipefail

standard_library='^_Z(T[ISVT])?(N[KVrRO]*)?(S[tabsiod]|9__gnu_cxx)'
nm --dynamic --defined-only "$1" |
    awk -v standard_library="$standard_library" '
        $2 ~ /[WVuwv]/ && $3 ~ standard_library { next }
        $2 ~ /[Vuv]/ && $3 !~ /^_ZT/ { next }
        { print $3 }' |
    c++filt | LC_ALL=C sort --unique
