#!/usr/bin/env bash
# Runs the tests on a driver on each GL driver, through each way to a context, and in contexts that lack
# something. Prints what came of each row as a table and leaves it in build/matrix/results.md, the output
# of the tests beside it. Fails where a test does. Installs what is missing.
#
# Usage: scripts/matrix.sh                     every row; those that cannot run here are listed with the reason
#        scripts/matrix.sh [--quick] [row...]  only these rows; each must run. --quick: six rows that need no
#                                              X server, without the programs among the examples
#        scripts/matrix.sh --list              their names
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

# name, driver, OFFSCREEN_PLATFORM, context: full, 2.1 (OpenGL 2.1, GLSL 1.20 and the three extensions)
# or the extension that it is to lack. `quick` puts a row into --quick; no test may skip in a `whole` one.
rows=(
    "llvmpipe-egl            llvmpipe  egl-surfaceless  full                        quick whole"
    "llvmpipe-egl-device     llvmpipe  egl-device       full                        whole"
    "llvmpipe-glx            llvmpipe  glx              full                        whole"
    "llvmpipe-osmesa         llvmpipe  osmesa           full"
    "softpipe-egl            softpipe  egl-surfaceless  full                        quick"
    "softpipe-egl-device     softpipe  egl-device       full"
    "softpipe-glx            softpipe  glx              full"
    "softpipe-osmesa         softpipe  osmesa           full"
    "zink-egl                zink      egl-surfaceless  full"
    "llvmpipe-2.1            llvmpipe  egl-surfaceless  2.1                         quick"
    "softpipe-2.1            softpipe  egl-surfaceless  2.1"
    "without-vertex-arrays   llvmpipe  egl-surfaceless  GL_ARB_vertex_array_object  quick"
    "without-framebuffers    llvmpipe  egl-surfaceless  GL_ARB_framebuffer_object   quick"
    "without-mapped-ranges   llvmpipe  egl-surfaceless  GL_ARB_map_buffer_range     quick"
    "hardware-egl            hardware  egl-device       full"
    "hardware-glx            hardware  glx              full"
)

# Mesa's software drivers; a graphics card's is what comes unasked.
declare -A driver_environment=(
    [llvmpipe]="LIBGL_ALWAYS_SOFTWARE=1 GALLIUM_DRIVER=llvmpipe"
    [softpipe]="LIBGL_ALWAYS_SOFTWARE=1 GALLIUM_DRIVER=softpipe"
    [zink]="LIBGL_ALWAYS_SOFTWARE=1 GALLIUM_DRIVER=zink"
    [hardware]=""
)

# What to install for a driver or a platform, beyond what building needs.
declare -A matrix_packages=([zink]=mesa-vulkan-drivers [glx]="xvfb libx11-6" [osmesa]=libosmesa6)

# The extensions that OpenGL 2.1 has as parts of its own, under these names or later ones, and the three.
kept_extensions="GL_ARB_(vertex_array_object|framebuffer_object|map_buffer_range)
GL_EXT_framebuffer_multisample
GL_ARB_(vertex|fragment)_(shader|program)
GL_ARB_(occlusion_query|shadow|texture_non_power_of_two|pixel_buffer_object)
GL_EXT_(shadow_funcs|pixel_buffer_object|texture_sRGB|texture_env_dot3)
GL_(EXT|ATI)_blend_equation_separate
GL_ATI_separate_stencil
GL_EXT_stencil_two_side"

# The tests of the library and of the examples, and those that need a process of their own.
programs=(vellis_render_tests vellis_toolbox_render_tests vellis_example_tests)
alone="TrackedStatesRender.*"
# What --quick keeps of the examples, and what a test that hides an extension does: the programs that the
# others start have the whole context.
panels="GalleryRender.*"

build="$repository/build/default/tests/render"
results="$repository/build/matrix"
seconds_per_program=900

# --- What the rows are ---

# Prints the row of that name.
find_row() {
    local row
    for row in "${rows[@]}"; do
        if [[ "${row%% *}" == "$1" ]]; then
            printf '%s\n' "$row"
            return
        fi
    done
    fail "there is no row '$1': 'scripts/matrix.sh --list' names them."
}

# Prints the settings with which Mesa limits a context to OpenGL 2.1 and the three extensions, given the
# settings of the row. Every extension that the driver can do without is switched off, but for those
# that are kept: switching off one that it cannot do without takes others with it.
limited_environment() {
    local limit=(MESA_GL_VERSION_OVERRIDE=2.1 MESA_GLSL_VERSION_OVERRIDE=120) offered fixed off
    mapfile -t offered < <(env "$@" "${limit[@]}" "$build/vellis_driver" --extensions |
        grep --invert-match --line-regexp --extended-regexp "$kept_extensions")
    off="$(printf -- '-%s ' "${offered[@]}")"
    fixed="$(env "$@" "${limit[@]}" MESA_EXTENSION_OVERRIDE="$off" "$build/vellis_driver" 2>&1 |
        sed --quiet "s/.*extension '\(.*\)' cannot be disabled/\1/p")"
    mapfile -t offered < <(printf '%s\n' "${offered[@]}" |
        grep --invert-match --line-regexp --fixed-strings "${fixed:-none}")
    off="$(printf -- '-%s ' "${offered[@]}")"
    printf '%s\n' "${limit[@]}" "MESA_EXTENSION_OVERRIDE=$off"
}

# Starts an X server without a screen, once; sets `display`.
display=""
start_x_server() {
    if [[ -n "$display" ]]; then
        return
    fi
    local number="$results/display"
    rm -f "$number" # of an earlier run
    Xvfb -displayfd 3 -noreset 3>"$number" >"$results/xvfb.log" 2>&1 &
    x_server=$!
    local tries
    for ((tries = 0; tries < 100; ++tries)); do
        if [[ -s "$number" ]]; then
            display=":$(<"$number")"
            return
        fi
        sleep 0.1
    done
    fail "Xvfb does not start: see $results/xvfb.log."
}

# --- What comes of them ---

# Runs a program of tests with the given arguments; its output goes to the end of a file.
run_tests() {
    local output="$1" program="$2" status=0
    shift 2
    env "${environment[@]}" timeout --kill-after=10 "$seconds_per_program" \
        "$build/$program" --gtest_color=no "$@" >"$output.part" 2>&1 || status=$?
    if ! grep --quiet '^\[==========\] .* ran\.' "$output.part"; then
        printf '\nENDED EARLY with status %d: %s\n' "$status" "$program $*" >>"$output.part"
    fi
    cat "$output.part" >>"$output"
    rm "$output.part"
}

# Runs the tests of a row in that context; their output goes to a file.
run_programs() {
    local output="$1" context="$2" program filter test
    for program in "${programs[@]}"; do
        filter="-$alone"
        if [[ "$program" == vellis_example_tests ]] && { "$quick" || [[ "$context" == GL_* ]]; }; then
            filter="$panels"
        fi
        run_tests "$output" "$program" "--gtest_filter=$filter"
    done
    for test in $("$build/${programs[0]}" --gtest_list_tests "--gtest_filter=$alone" |
        awk '/^[^ ]+\.$/ { suite = $1 } /^ / { print suite $1 }'); do
        run_tests "$output" "${programs[0]}" "--gtest_filter=$test"
    done
}

# Reads the output of tests. Prints how many passed, were skipped and failed, then a line for each
# reason to skip and for each failure.
count_results() {
    awk '
        /^\[ RUN      \] / { running = $4 }
        /: Skipped$/ { getline reason }
        /^\[       OK \] .* ms\)$/ { passed++; running = "" }
        /^\[  SKIPPED \] .* ms\)$/ { skipped++; skips[reason]++; running = "" }
        /^\[  FAILED  \] .* ms\)$/ { failures[++failed] = running; running = "" }
        /^ENDED EARLY / { failures[++failed] = running ": " $0; running = "" }
        END {
            print passed + 0, skipped + 0, failed + 0
            for (reason in skips)
                printf "%d skipped: %s\n", skips[reason], reason
            for (i = 1; i <= failed; i++)
                print "failed: " failures[i]
        }' "$1"
}

# Adds a line to the table: row, driver, OpenGL, passed, skipped, failed, seconds.
add_result() {
    local line
    printf -v line '| %s | %s | %s | %s | %s | %s | %s |' "$@"
    say "$line"
    say "$line" >>"$results/results.md"
}

# Lists a row that cannot run.
leave_out() {
    add_result "$1" "-" "-" "-" "-" "-" "-"
    notes+=("$1: not run: $2")
    not_run+=("$1")
}

# Why the driver is not the one that the row is about; empty where it is.
wrong_driver() {
    local wanted="$1" renderer="$2"
    if [[ "$wanted" == hardware ]]; then
        if [[ "$renderer" =~ llvmpipe|softpipe ]]; then
            printf 'no graphics card can be reached; the driver is %s' "$renderer"
        fi
    elif [[ "$renderer" != *"$wanted"* ]]; then
        printf 'the driver is %s' "$renderer"
    fi
}

run_row() {
    local name driver platform context marks
    read -r name driver platform context marks <<<"$1"
    local output="$results/$name.log"

    # Vulkan, which zink draws with, asks for a folder of its own.
    environment=("OFFSCREEN_PLATFORM=$platform" MESA_SHADER_CACHE_DISABLE=true
        "XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$results}")
    read -ra settings <<<"${driver_environment[$driver]}"
    environment+=("${settings[@]}")
    if [[ "$platform" == glx && "$driver" != hardware ]]; then
        if ! command -v Xvfb >/dev/null; then
            leave_out "$name" "Xvfb is not here"
            return
        fi
        start_x_server
        environment+=("DISPLAY=$display")
    fi

    local found renderer version reason
    if ! found="$(env "${environment[@]}" "$build/vellis_driver" 2>"$output")"; then
        leave_out "$name" "$(tail -n 1 "$output")"
        return
    fi
    renderer="$(head -n 1 <<<"$found")"
    reason="$(wrong_driver "$driver" "$renderer")"
    if [[ -n "$reason" ]]; then
        leave_out "$name" "$reason"
        return
    fi
    if [[ "$context" == 2.1 ]]; then
        mapfile -t settings < <(limited_environment "${environment[@]}")
        environment+=("${settings[@]}")
    elif [[ "$context" == GL_* ]]; then
        environment+=("RENDER_WITHOUT=$context")
    fi
    version="$(env "${environment[@]}" "$build/vellis_driver" 2>/dev/null | sed --quiet 2p)"
    if [[ "$context" == 2.1 && "$version" != 2.1* ]]; then
        leave_out "$name" "the driver does not let itself be limited; it offers OpenGL $version"
        return
    fi

    local begin="$SECONDS" counts passed skipped failed
    run_programs "$output" "$context"
    mapfile -t counts < <(count_results "$output")
    read -r passed skipped failed <<<"${counts[0]}"
    if [[ " $marks " == *" whole "* && "$skipped" -gt 0 ]]; then
        counts+=("failed: no test may skip here")
        failed=$((failed + 1))
    fi
    add_result "$name" "$renderer" "$version" "$passed" "$skipped" "$failed" "$((SECONDS - begin))"
    for reason in "${counts[@]:1}"; do
        notes+=("$name: $reason")
    done
    if ((failed > 0)); then
        failed_rows+=("$name")
    fi
}

# --- The command line ---

chosen=()
every=true
quick=false
case "${1:-}" in
--list)
    printf '%s\n' "${rows[@]}"
    exit
    ;;
--quick)
    shift
    every=false
    quick=true
    for row in "${rows[@]}"; do
        if [[ "$row" == *" quick"* ]]; then
            chosen+=("$row")
        fi
    done
    ;;
-*)
    fail "usage: matrix.sh [--list | [--quick] row...]"
    ;;
esac
for name in "$@"; do
    every=false
    chosen+=("$(find_row "$name")")
done
if "$every"; then
    chosen=("${rows[@]}")
fi

install_dependencies
if is_debian; then
    for row in "${chosen[@]}"; do
        read -r _ driver platform _ <<<"$row"
        read -ra needed <<<"${matrix_packages[$driver]:-} ${matrix_packages[$platform]:-}"
        if [[ ${#needed[@]} -gt 0 ]]; then
            install_packages "${needed[@]}"
        fi
    done
fi
build_preset default --target vellis_tests_render vellis_driver

rm -rf "$results"
mkdir -p "$results"
x_server=""
trap '[[ -z "$x_server" ]] || kill "$x_server"' EXIT

notes=()
not_run=()
failed_rows=()
add_result row driver OpenGL passed skipped failed seconds
add_result --- --- --- ---: ---: ---: ---:
for row in "${chosen[@]}"; do
    run_row "$row"
done
if [[ ${#notes[@]} -gt 0 ]]; then
    printf '\n' | tee --append "$results/results.md"
    printf -- '- %s\n' "${notes[@]}" | tee --append "$results/results.md"
fi
say "This table, and the output of the tests: $results"

if [[ ${#failed_rows[@]} -gt 0 ]]; then
    fail "tests failed in the rows ${failed_rows[*]}: see the .log files of these names in $results."
fi
if ! "$every" && [[ ${#not_run[@]} -gt 0 ]]; then
    fail "the rows ${not_run[*]} did not run: see above for what is missing."
fi
