#!/usr/bin/env python3
"""Leaves out of glad's generated files what extensions have beyond the entry points that the library
calls: each costs room in the library.

Usage: trim_loader.py FOLDER...    changes the files of glad's that it finds in them
"""

import pathlib
import re
import sys

# Extension: what is called of it.
KEPT = {
    "ARB_debug_output": {"glDebugMessageCallbackARB", "glDebugMessageControlARB"},
    "ARB_sampler_objects": {"glBindSampler", "glDeleteSamplers", "glGenSamplers", "glIsSampler"},
    "ARB_separate_shader_objects": {"glBindProgramPipeline", "glDeleteProgramPipelines",
                                    "glGenProgramPipelines", "glIsProgramPipeline"},
    "KHR_debug": {"glDebugMessageCallback", "glDebugMessageControl", "glGetPointerv", "glObjectLabel",
                  "glPopDebugGroup", "glPushDebugGroup"},
}

LOADED = re.compile(r'load\(userptr, "(\w+)"\);')


def left_out(source):
    """The names of the entry points that nobody calls, as a set."""
    names = set()
    for extension, kept in KEPT.items():
        body = re.search(rf"static void glad_gl_load_GL_{extension}\(.*?\n}}", source, re.DOTALL)
        if body is None:
            sys.exit(f"trim_loader.py: glad's loader has no {extension}.")
        loaded = set(LOADED.findall(body.group()))
        if not kept <= loaded:
            sys.exit(f"trim_loader.py: {extension} has no {', '.join(sorted(kept - loaded))}.")
        names |= loaded - kept
    return names


def trim(path, names):
    types = {f"PFN{name.upper()}PROC" for name in names}
    members = {f"PFN{name.upper()}PROC {name[2:]};" for name in names}

    def stays(line):
        if line.strip() in members:
            return False
        words = set(re.findall(r"\w+", line))
        return not (words & types or words & names)

    lines = path.read_text(encoding="utf-8").splitlines(keepends=True)
    path.write_text("".join(line for line in lines if stays(line)), encoding="utf-8")


def main():
    for folder in map(pathlib.Path, sys.argv[1:]):
        source = folder / "src/gl.c"
        names = left_out(source.read_text(encoding="utf-8"))
        for path in (source, folder / "include/glad/gl.h"):
            trim(path, names)


if __name__ == "__main__":
    main()
