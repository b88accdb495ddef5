#!/usr/bin/env bash
# Feeds the fuzz targets with random inputs, with clang's libFuzzer and the address and
# undefined-behaviour sanitizers, each for a fixed time. Installs what is missing.
#
# Usage: scripts/checks/fuzz.sh [--keep] [seconds for each target, by default 20]
#
# --keep adds the inputs that reached new code to the corpus in tests/fuzz/corpus.
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup.sh"

keep=false
if [[ "${1:-}" == --keep ]]; then
    keep=true
    shift
fi
seconds="${1:-20}"
if [[ $# -gt 1 || ! "$seconds" =~ ^[1-9][0-9]*$ ]]; then
    fail "usage: fuzz.sh [--keep] [seconds]"
fi

install_dependencies
if ! command -v clang++-14 >/dev/null; then
    install_packages clang-14 libclang-rt-14-dev
fi
build_preset fuzz --target vellis_fuzzers

finds="$repository/build/fuzz/finds"
for corpus in "$repository"/tests/fuzz/corpus/*/; do
    name="$(basename "$corpus")"
    fresh="$repository/build/fuzz/corpus/$name"
    fuzzer="$repository/build/fuzz/tests/fuzz/vellis_${name}_fuzz"
    if [[ "$name" == text && ! -e "$fuzzer" ]]; then
        say "Leaving out text: FreeType, HarfBuzz and FriBidi are not installed"
        continue
    fi
    mkdir -p "$finds" "$fresh"
    say "Fuzzing $name for $seconds s"
    "$fuzzer" -max_total_time="$seconds" -timeout=10 -print_final_stats=1 -verbosity=0 \
        -artifact_prefix="$finds/$name-" "$fresh" "$corpus" ||
        fail "a find: '$fuzzer FILE' with the file named above repeats it. Mend it, and make it a test."
    if "$keep"; then
        # New code counts, not how often it runs: that keeps the corpus small.
        "$fuzzer" -merge=1 -use_counters=0 -verbosity=0 "$corpus" "$fresh"
    fi
done
