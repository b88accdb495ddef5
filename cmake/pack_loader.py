#!/usr/bin/env python3
"""Packs the load functions that glad has generated: the names of their entry points and the places of
their pointers become tables, which one loop walks. It loads the same, in a quarter of the room.

Usage: pack_loader.py SOURCE    changes the file
"""

import pathlib
import re
import sys

FUNCTION = re.compile(
    r"(static void glad_gl_load_\w+\(GladGLContext \*context, GLADuserptrloadfunc load, void\* userptr\) \{\n"
    r"    if\(!context->\w+\) return;\n)((?:    context->\w+ = \(\w+\) load\(userptr, \"\w+\"\);\n)+)\}")
ENTRY = re.compile(r"context->(\w+) = \(\w+\) load\(userptr, \"(\w+)\"\);")

LOOP = """
static void vellis_load(GladGLContext *context, GLADuserptrloadfunc load, void *userptr,
                        const char *names, const unsigned short *places, unsigned int count) {
    for (; count > 0; --count, ++places) {
        const GLADapiproc entry_point = load(userptr, names);
        memcpy((char *) context + *places, &entry_point, sizeof entry_point);
        while (*names++ != '\\0') { /* on to the next one: what is small is slow in strlen() */
        }
    }
}

"""


def packed(match):
    entries = ENTRY.findall(match.group(2))
    names = " ".join(f'"{name}\\0"' for _, name in entries)
    places = ", ".join(f"offsetof(GladGLContext, {member})" for member, _ in entries)
    return (f"{match.group(1)}    static const char names[] = {names};\n"
            f"    static const unsigned short places[] = {{{places}}};\n"
            f"    vellis_load(context, load, userptr, names, places, {len(entries)});\n}}")


def main():
    path = pathlib.Path(sys.argv[1])
    source = path.read_text(encoding="utf-8")
    result, count = FUNCTION.subn(packed, source)
    # One is left, which asks GL for its version.
    if count == 0 or len(ENTRY.findall(result)) > 1:
        sys.exit(f"{path}: glad's load functions are not what they were.")
    first = result.index("static void glad_gl_load_")
    includes = "#include <stddef.h>\n#include <string.h>\n"
    path.write_text(includes + result[:first] + LOOP.lstrip() + result[first:], encoding="utf-8")


if __name__ == "__main__":
    main()
