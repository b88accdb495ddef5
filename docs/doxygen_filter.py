#!/usr/bin/env python3
"""Prints a page for Doxygen, which follows other rules for links than hosts of Markdown do.

Usage: doxygen_filter.py PAGE

Headings get the anchors by which other pages link to them, links to headers lead to the reference,
links to what is not among the web pages become plain text, and comments are left out.
"""

import pathlib
import re
import sys

sys.dont_write_bytecode = True

from markdown import HEADING, LINK, Anchors, marked_lines  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parent.parent
WEB_PAGES = (ROOT / "CHANGELOG.md", ROOT / "CONTRIBUTING.md")
COMMENT = re.compile(r"<!--.*?-->", re.DOTALL)


def without_comments(text):
    """The text without comments; its lines keep their numbers."""
    return COMMENT.sub(lambda comment: "\n" * comment[0].count("\n"), text)


def label(page, anchor):
    return f"{page.stem.lower()}-{anchor}"


def linked(page, match):
    text, target = match.groups()
    if re.match(r"[a-z]+:", target):
        return match[0]
    path, _, anchor = target.partition("#")
    file = (page.parent / path).resolve() if path else page
    if file.suffix == ".hpp":
        return f"{text}(@ref {file.relative_to(ROOT / 'include')})"
    if file.suffix == ".md" and (file.parent == ROOT / "docs" or file in WEB_PAGES):
        return f"{text}(@ref {label(file, anchor)})" if anchor else match[0]
    return match[0] if file.suffix == ".png" else text[1:-1]


def main(name):
    page = pathlib.Path(name).resolve()
    anchors = Anchors()
    for line, is_text in marked_lines(without_comments(page.read_text(encoding="utf-8")).split("\n")):
        heading = HEADING.match(line) if is_text else None
        if heading is not None:
            anchor = anchors.add(heading[2])
            # The first heading is the title of the page, and has the page's own anchor.
            if len(heading[1]) > 1:
                line += f" {{#{label(page, anchor)}}}"
        elif is_text:
            line = LINK.sub(lambda match: linked(page, match), line)
        print(line)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(sys.argv[1])
