#!/usr/bin/env python3
"""Checks what pages and comments must say.

Usage: check_contents.py examples ROOT PAGE           each page of the table of families in PAGE has an
                                                      example in C++, and a picture where it draws;
                                                      all pages beside PAGE show the pictures they draw
       check_contents.py first_screen ROOT PAGE       the first screen of PAGE, below its picture, says all
                                                      that it must, without a link
       check_contents.py version ROOT PAGE HEADER     the newest release in PAGE has the version of HEADER
       check_contents.py enumerators ROOT HEADER...   each enumerator of a commented enumeration has a
                                                      comment
"""

import pathlib
import re
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "docs"))

from code_blocks import Mistake, read_blocks  # noqa: E402
from markdown import FENCE, HEADING, LINK, marked_lines  # noqa: E402

SCREEN_LINES = 45
SCREEN_COLUMNS = 100
DRAWS = re.compile(r"(\bprogram->|\bToolbox::|[cC]anvas->|\btext::)draw")
COMMENT = re.compile(r"<!--.*?-->\n?", re.DOTALL)
# One without a comment of its own is Doxygen's to find, or no public one.
ENUMERATION = re.compile(r"^ *///[^\n]*\n *enum (?:class )?\w+[^;{]*\{(.*?)\};", re.DOTALL | re.MULTILINE)


def read(root, name):
    return (root / name).read_text(encoding="utf-8")


def families(root, index):
    """The pages that the table of families names first in their rows, as paths below the root."""
    within = False
    for line, is_text in marked_lines(read(root, index).splitlines()):
        heading = HEADING.match(line) if is_text else None
        if heading is not None:
            within = heading[2] == "The families"
        row = re.match(r"\| (.*?) \|", line) if within and is_text else None
        for _, target in LINK.findall(row[1]) if row is not None else ():
            yield (pathlib.PurePosixPath(index).parent / target).as_posix()


def cpp_blocks(root, page):
    return [block for block in read_blocks(page, read(root, page).splitlines()) if block.language == "cpp"]


def shown_pictures(root, page):
    lines = marked_lines(read(root, page).splitlines())
    return {target for line, is_text in lines if is_text for _, target in LINK.findall(line)}


def missing_examples(root, index):
    named = list(families(root, index))
    if not named:
        yield f"{index}: there is no table of families."
    for page in named:
        blocks = cpp_blocks(root, page)
        if not blocks:
            yield f"{page}: it has no example in C++."
        draws = any(DRAWS.search(block.text()) for block in blocks)
        if draws and not any("picture" in block.options for block in blocks):
            yield f"{page}: it draws, and has no picture."
    for path in sorted((root / index).parent.glob("*.md")):
        page = path.relative_to(root).as_posix()
        shown = shown_pictures(root, page)
        for block in cpp_blocks(root, page):
            picture = block.options.get("picture", (0, ""))[1].split()
            if picture and f"images/{picture[0]}.png" not in shown:
                yield f"{page}:{block.line - 1}: it does not show images/{picture[0]}.png."


def screen_rows(text):
    """The lines of a page from its first heading on, as many times as each is shown."""
    begun = False
    for line in COMMENT.sub("", text).splitlines():
        begun = begun or line.startswith("# ")
        if begun and FENCE.match(line) is None:
            yield from [line] * max(1, -(-len(line) // SCREEN_COLUMNS))


def missing_on_first_screen(root, page):
    rows = list(screen_rows(read(root, page)))[:SCREEN_LINES]
    if any(LINK.search(row) for row in rows[:-1]):
        rows = rows[:next(at for at, row in enumerate(rows) if LINK.search(row))]
    blocks = cpp_blocks(root, page)[:1]
    if not blocks or any(line not in rows for line in blocks[0].lines):
        yield f"{page}: its first screen does not show how it looks in C++."
    for what in ("scripts/gallery.sh", "scripts/test.sh", "cmake --install", "find_package(vellis",
                 "It is for "):
        if not any(row.startswith(what) for row in rows):
            yield f"{page}: its first screen does not say {what!r}."


def enumerators_without_comment(root, names):
    for name in names:
        text = read(root, name)
        for body in ENUMERATION.finditer(text):
            number = text.count("\n", 0, body.start(1))
            commented = False
            for line in body[1].split("\n"):
                number += 1
                word = re.match(r"\s*(\w+)", line)
                if word is not None and not commented and "///<" not in line:
                    yield f"{name}:{number}: {word[1]} has no comment."
                commented = line.lstrip().startswith("///")


def wrong_version(root, page, header):
    numbers = re.findall(r"#define VELLIS_VERSION_[A-Z]+ (\d+)", read(root, header))
    newest = re.search(r"^## (\S*?),? ", read(root, page), re.MULTILINE)
    if newest is None or newest[1] != ".".join(numbers):
        yield f"{page}: its newest release is not {'.'.join(numbers)}, as {header} has it."


def main(kind, root, *names):
    root = pathlib.Path(root)
    if kind == "examples":
        return list(missing_examples(root, names[0]))
    if kind == "first_screen":
        return list(missing_on_first_screen(root, names[0]))
    if kind == "version":
        return list(wrong_version(root, *names))
    if kind == "enumerators":
        return list(enumerators_without_comment(root, names))
    sys.exit(__doc__)


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    try:
        mistakes = main(*sys.argv[1:])
    except Mistake as mistake:
        mistakes = [mistake]
    for mistake in mistakes:
        print(mistake)
    sys.exit(1 if mistakes else 0)
