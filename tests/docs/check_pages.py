#!/usr/bin/env python3
"""Checks what a compiler does not: links, shell blocks and CMake blocks of Markdown pages.

Usage: check_pages.py links ROOT PAGE...    links to files and headings lead somewhere
       check_pages.py shell ROOT FILE...    the shell reads each file, and the scripts it names exist
       check_pages.py cmake CMAKE FILE...   CMake reads each file, and what is linked is ours
"""

import pathlib
import re
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "docs"))

from markdown import HEADING, LINK, Anchors, marked_lines  # noqa: E402

CODE = re.compile(r"`[^`]*`")
SCRIPT = re.compile(r"(?<![\w/])scripts/[\w.-]+")

# Commands that a script may not use, and ones that would fetch: a block of them runs all the same.
CMAKE_STUBS = """\
cmake_minimum_required(VERSION 3.22)
foreach(command IN ITEMS project add_executable add_library add_subdirectory find_package
        target_compile_definitions target_compile_features target_include_directories
        FetchContent_Declare FetchContent_MakeAvailable include pkg_check_modules)
    cmake_language(EVAL CODE "function(${command})\\nendfunction()")
endforeach()
function(target_link_libraries target)
    if(NOT "vellis::vellis" IN_LIST ARGN AND NOT "PkgConfig::vellis" IN_LIST ARGN)
        message(FATAL_ERROR "${target} is not linked with vellis::vellis: ${ARGN}")
    endif()
endfunction()
file(READ "${BLOCK}" block)
cmake_language(EVAL CODE "${block}")
"""


def text_lines(page):
    """The lines of a page outside of code blocks, with their numbers."""
    lines = page.read_text(encoding="utf-8").splitlines()
    for number, (line, is_text) in enumerate(marked_lines(lines), 1):
        if is_text:
            yield number, line


def anchors(page):
    found = Anchors()
    for _, line in text_lines(page):
        heading = HEADING.match(line)
        if heading is not None:
            found.add(heading[2])
    return found.known


def broken_links(root, pages):
    for name in pages:
        page = root / name
        for number, line in text_lines(page):
            for _, target in LINK.findall(CODE.sub("", line)):
                if re.match(r"[a-z]+:", target):
                    continue
                path, _, anchor = target.partition("#")
                file = (page.parent / path).resolve() if path else page
                if not file.exists():
                    yield f"{name}:{number}: {target}: there is no such file."
                elif root.resolve() not in file.resolve().parents:
                    yield f"{name}:{number}: {target}: that is outside of the repository."
                elif anchor and file.suffix == ".md" and anchor not in anchors(file):
                    yield f"{name}:{number}: {target}: there is no such heading."


def broken_shell(root, files):
    for name in files:
        read = subprocess.run(["bash", "-n", name], capture_output=True, text=True, check=False)
        if read.returncode != 0:
            yield f"{name}: {read.stderr.strip()}"
        for script in SCRIPT.findall(pathlib.Path(name).read_text(encoding="utf-8")):
            if not (root / script).is_file():
                yield f"{name}: there is no {script}."


def broken_cmake(cmake, files):
    with tempfile.TemporaryDirectory() as folder:
        runner = pathlib.Path(folder) / "run.cmake"
        runner.write_text(CMAKE_STUBS, encoding="utf-8")
        for name in files:
            run = subprocess.run([cmake, f"-DBLOCK={name}", "-P", runner], capture_output=True,
                                 text=True, check=False)
            if run.returncode != 0:
                yield f"{name}: {run.stderr.strip()}"


def main(kind, first, *rest):
    if not rest:
        return [f"There is nothing to check for {kind}."]
    if kind == "links":
        return list(broken_links(pathlib.Path(first), rest))
    if kind == "shell":
        return list(broken_shell(pathlib.Path(first), rest))
    if kind == "cmake":
        return list(broken_cmake(first, rest))
    sys.exit(__doc__)


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    mistakes = main(*sys.argv[1:])
    for mistake in mistakes:
        print(mistake)
    sys.exit(1 if mistakes else 0)
