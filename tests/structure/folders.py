#!/usr/bin/env python3
"""Checks that the folders of the library include one another in one direction.

A folder of `src` and the folder of that name in `include/vellis` are one. FLOORS says what stands on
what: a file includes what is in its own folder or further down. Folders that share a floor may include
each other; only those whose classes know each other by design do.

Usage: folders.py ROOT           says what goes the other way, and fails then
       folders.py ROOT --print   prints which folder includes which, and how many of them in a circle
"""

import pathlib
import re
import sys

FLOORS = [
    {"detail", "gl"},
    {"state"},
    {"buffers"},
    {"texture"},
    {"shading", "drawing"},  # a Program draws a Drawable, which is made for a Program
    {"framebuffer"},
    {"canvas"},
    {"engine"},
    {"text"},
    {"all"},
]

# Headers beside the folders: the family headers bear their folder's name.
PLACES = {
    "export": "gl",
    "gl": "gl",
    "version": "gl",
    "context": "engine",
    "diagnostics": "all",
    "internal": "all",
    "vellis": "all",
}


def folder_of(path):
    """The folder that a path below `src` or `include` counts for, or None for what is not ours."""
    parts = pathlib.PurePosixPath(path).parts
    if parts[0] == "vellis":
        parts = parts[1:]
    if len(parts) == 1:
        name = pathlib.PurePosixPath(parts[0]).stem
        return PLACES.get(name, name)
    return "gl" if parts[0] == "glad" else parts[0]


def includes(root):
    """Yields (file, folder, included path, its folder) for every include of ours."""
    root = pathlib.Path(root)
    for base in ("src", "include"):
        for path in sorted((root / base).rglob("*")):
            if path.suffix not in {".cpp", ".hpp", ".inc"}:
                continue
            own = folder_of(path.relative_to(root / base).as_posix())
            for line in path.read_text(encoding="utf-8").splitlines():
                match = re.match(r'\s*#include (?:<(vellis/[^>]+)>|"([^"]+)")', line)
                if not match:
                    continue
                included = match.group(1) or match.group(2)
                if match.group(2) and not (root / "src" / included).exists():
                    continue  # a generated table
                yield path.relative_to(root).as_posix(), own, included, folder_of(included)


def floor_of(folder):
    for number, floor in enumerate(FLOORS):
        if folder in floor:
            return number
    return None


def wrong(found):
    """The includes that go up, and those of a folder that has no floor, as lines of text."""
    lines = []
    for path, own, included, other in found:
        for folder in (own, other):
            if floor_of(folder) is None:
                lines.append(f"{path}: which floor is '{folder}' on?")
        if floor_of(own) is not None and floor_of(other) is not None and floor_of(other) > floor_of(own):
            lines.append(f"{path} of '{own}' includes <{included}> of '{other}', which stands above it")
    return lines


def edges_of(found):
    edges = {}
    for _, own, _, other in found:
        if own != other:
            edges.setdefault(own, set()).add(other)
    return edges


def reached(edges, start):
    seen, waiting = set(), [start]
    while waiting:
        for other in edges.get(waiting.pop(), ()):
            if other not in seen:
                seen.add(other)
                waiting.append(other)
    return seen


def main(arguments):
    if len(arguments) not in (1, 2) or arguments[1:] not in ([], ["--print"]):
        sys.exit(__doc__)
    found = list(includes(arguments[0]))
    if not found:
        sys.exit(f"{arguments[0]}: there are no includes to check")
    if arguments[1:]:
        edges = edges_of(found)
        for own in sorted(edges):
            print(f"{own}: {', '.join(sorted(edges[own]))}")
        pairs = [(a, b) for a in sorted(edges) for b in sorted(edges[a])
                 if a < b and a in edges.get(b, ())]
        print(f"pairs that include each other: {len(pairs)} {pairs}")
        circle = sorted(folder for folder in edges if folder in reached(edges, folder))
        print(f"folders in a circle: {len(circle)} {circle}")
    lines = wrong(found)
    if lines:
        sys.exit("\n".join(lines))


if __name__ == "__main__":
    main(sys.argv[1:])
