#!/usr/bin/env python3
"""Checks what a compiler does not: links, shell blocks, CMake blocks and tables of folders of Markdown
pages. What the pages and the comments must say is in check_contents.py.

Usage: check_pages.py links ROOT PAGE...    links to files and headings lead somewhere, and scripts that
                                            are named exist
       check_pages.py shell ROOT FILE...    the shell reads each file, and the scripts it names exist
       check_pages.py cmake CMAKE FILE...   CMake reads each file, and what is linked is ours
       check_pages.py folders ROOT PAGE     the table of folders has each folder of the repository, once
       check_pages.py scripts ROOT PAGE     the page names each shell script of scripts once in its tables
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
SCRIPT = re.compile(r"(?<![\w/])scripts/[\w/-]+\.[a-z]+")
IMAGE = re.compile(r'<img src="([^"]*)"')
FOLDERS = re.compile(r"\| folder \|")

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


def absent_scripts(root, text):
    return [script for script in SCRIPT.findall(text) if not (root / script).is_file()]


def broken_links(root, pages):
    for name in pages:
        page = root / name
        for number, line in text_lines(page):
            for script in absent_scripts(root, line):
                yield f"{name}:{number}: there is no {script}."
            prose = CODE.sub("", line)
            for target in [link[1] for link in LINK.findall(prose)] + IMAGE.findall(prose):
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
        for script in absent_scripts(root, pathlib.Path(name).read_text(encoding="utf-8")):
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


def table_of_folders(page):
    """The folders in the first cells of the table of folders, with the numbers of their lines."""
    within = False
    for number, line in text_lines(page):
        within = bool(FOLDERS.match(line)) or (within and line.startswith("|"))
        if within:
            for folder in CODE.findall(line.split("|")[1]):
                yield number, folder.strip("`")


def folders_of(root):
    """The folders that git knows at the root, but for hidden ones; None without git."""
    listed = subprocess.run(["git", "-C", root, "ls-files"], capture_output=True, text=True, check=False)
    if listed.returncode != 0:
        return None
    return {pathlib.PurePosixPath(parent) for file in listed.stdout.splitlines()
            for parent in pathlib.PurePosixPath(file).parents if not file.startswith(".")}


def families(root, folder):
    """The folders that a name such as tests/<family> stands for: those that the sources have, too."""
    return [path.relative_to(root) for path in (root / folder).parent.iterdir()
            if path.is_dir() and (root / "src" / path.name).is_dir()]


def wrong_folders(root, name, known):
    """What is wrong with a page's table of folders. Where the table names a folder within another, it
    must name all of that one's."""
    there = set()
    for number, folder in table_of_folders(root / name):
        path = pathlib.PurePosixPath(folder)
        named = families(root, path) if path.name == "<family>" else [path]
        for each in named:
            if not (root / each).is_dir():
                yield f"{name}:{number}: {each}: there is no such folder."
            if each in there:
                yield f"{name}:{number}: {each}: it is there twice."
            there.add(each)
    if not there:
        yield f"{name}: there is no table of folders."
    parents = {parent for path in there for parent in path.parents}
    for folder in sorted(known or []):
        if folder.parent in parents and folder not in there and folder not in parents:
            yield f"{name}: {folder} is not in the table of folders."


def unnamed_scripts(root, name):
    """The scripts that the tables of a page do not name first in one row."""
    named = [script for _, line in text_lines(root / name) if line.startswith("| `")
             for script in SCRIPT.findall(line.split("|")[1])]
    for path in sorted((root / "scripts").rglob("*.sh")):
        script = path.relative_to(root).as_posix()
        is_shared = not path.stat().st_mode & 0o100
        if named.count(script) != (0 if is_shared else 1):
            yield f"{name}: {script} is there {named.count(script)} times."


def main(kind, first, *rest):
    if not rest:
        return [f"There is nothing to check for {kind}."]
    if kind == "links":
        return list(broken_links(pathlib.Path(first), rest))
    if kind == "shell":
        return list(broken_shell(pathlib.Path(first), rest))
    if kind == "cmake":
        return list(broken_cmake(first, rest))
    if kind == "folders":
        root = pathlib.Path(first)
        return list(wrong_folders(root, rest[0], folders_of(root)))
    if kind == "scripts":
        return list(unnamed_scripts(pathlib.Path(first), rest[0]))
    sys.exit(__doc__)


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    mistakes = main(*sys.argv[1:])
    for mistake in mistakes:
        print(mistake)
    sys.exit(1 if mistakes else 0)
