#!/usr/bin/env python3
"""Packs the load functions that glad has generated: what each loads becomes a table, which
src/gl/entry_points.cpp walks. It loads the same, in little room.

Usage: pack_loader.py SOURCE TABLE    changes glad's file; writes for each entry point, in the order of
                                      their names, VELLIS_ENTRY_POINT_OF(the version, the extension)
                                      that it comes with, or None
"""

import pathlib
import re
import sys

FUNCTION = re.compile(
    r"static void glad_gl_load_GL_(\w+)\(GladGLContext \*context, GLADuserptrloadfunc load, void\* userptr\) \{\n"
    r"    if\(!context->\w+\) return;\n((?:    context->\w+ = \(\w+\) load\(userptr, \"\w+\"\);\n)+)\}\n")
ENTRY = re.compile(r"load\(userptr, \"(\w+)\"\);")
CALLS = r"(?:    glad_gl_load_GL_{}\w+\(context, load, userptr\);\n)+"

DECLARATION = """
/* Loads what a version has that the context is of, or an extension that it has. */
void vellis_loadEntryPoints(GladGLContext *context, GLADuserptrloadfunc load, void *userptr,
                            int are_of_extensions);
"""


def rows_of(functions):
    """Rows of the table: for each name the version and the extension, in the order of the names."""
    found = {}
    for feature, body in functions:
        place = 0 if feature.startswith("VERSION_") else 1
        for name in ENTRY.findall(body):
            row = found.setdefault(name, [None, None])
            if row[place] is None:
                row[place] = feature
            elif place == 1: # later versions have what earlier ones have
                sys.exit(f"pack_loader.py: {name} is of {row[place]} and of {feature}.")
    return [f"VELLIS_ENTRY_POINT_OF({version}, {extension})" for _, (version, extension) in sorted(found.items())]


def main():
    source, table = map(pathlib.Path, sys.argv[1:])
    text = source.read_text(encoding="utf-8")
    functions = FUNCTION.findall(text)
    result = DECLARATION.join((text[:text.index("static void glad_gl_load_")],
                               text[text.index("static void glad_gl_load_"):]))
    result = FUNCTION.sub("", result)
    for prefix, are_of_extensions in (("VERSION", 0), ("", 1)):
        result, count = re.subn(CALLS.format(prefix),
                                f"    vellis_loadEntryPoints(context, load, userptr, {are_of_extensions});\n",
                                result)
        if count != 1:
            sys.exit(f"{source}: glad's load functions are not what they were.")
    # One is left, which asks GL for its version.
    if len(ENTRY.findall(result)) != 1:
        sys.exit(f"{source}: glad's load functions are not what they were.")
    source.write_text(result, encoding="utf-8")
    table.write_text("\n".join(rows_of(functions)) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
