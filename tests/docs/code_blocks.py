#!/usr/bin/env python3
"""Turns the code blocks of Markdown pages, and the examples in the comments of headers, into what a
compiler can check.

Usage: code_blocks.py [--without HEADER]... ROOT OUTPUT PAGE...
       code_blocks.py --examples ROOT FILE HEADER...

PAGE and HEADER are paths below ROOT. What includes a header that begins as one behind --without is read
and left out. For the C++ blocks of pages, OUTPUT gets
  <page>.cpp          the statements of a page, one function for each block
  <page>_<line>.cpp   each block that is a file of its own
  pictures.inc        VELLIS_PICTURE("name", function, width, height) for each block with a picture
and, for the build and the other checks,
  quoted.txt          the files that blocks quote, one a line
  sources.txt         the names of those files, one a line, but for
  picture_sources.txt the names of those that have a picture
  shell/, cmake/      the blocks of those languages, one file each

A block begins with a fence and its language: cpp, glsl, sh, cmake or text. A C++ block that has an
#include is a file of its own; any other one is a list of statements. A comment between it and the
text before says otherwise:

  <!-- before: ... -->          these lines come before the block, unseen by readers; includes that
                                they begin with go to the top of the file
  <!-- after: ... -->           these lines come after the block, which is a file of its own
  <!-- continues -->            it goes on in the scope of the block before
  <!-- file scope -->           it is declarations, not statements
  <!-- picture: name 480x320 -->  it defines void drawName(), which draws docs/images/name.png
  <!-- from: FILE -->             it quotes FILE, a path below ROOT, and is not compiled here: its lines
                                stand there in this order, one behind the other but for what a line
                                of "// ..." leaves out, and indented as FILE likes
  <!-- not compiled: reason -->   it is not C++ that compiles, and why

FILE gets the examples of the headers, which stand between \\code and \\endcode, each on a line of its
own. An example is a list of statements, unless it begins with the declaration of a type, and uses
what given_names.hpp has, and the header that it is in.
"""

import pathlib
import re
import sys

LANGUAGES = ("cpp", "glsl", "sh", "cmake", "text")

# What the statements of every page may use.
PROLOGUE = """\
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_precision.hpp>

#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>
"""

GIVEN_NAMES = "#include <docs/given_names.hpp>\n\nusing namespace given;\n"

ELLIPSIS = "// ..."

FENCE = re.compile(r"^( *)(`{3,}|~{3,})\s*(\S*)\s*$")
OPTION = re.compile(r"<!--\s*(before|after|continues|file scope|from|picture|not compiled)\b:?(.*)-->", re.DOTALL)
PICTURE = re.compile(r"^([a-z][a-z0-9-]*) (\d+)x(\d+)$")


class Mistake(Exception):
    """One sentence that begins with the page and the line."""


class Block:
    """A code block: its language, its lines, the number of the first one, and its options."""

    def __init__(self, page, line, language, options):
        self.page = page
        self.line = line
        self.language = language
        self.options = options
        self.lines = []

    def fail(self, message):
        raise Mistake(f"{self.page}:{self.line - 1}: {message}")

    def text(self):
        return "\n".join(self.lines) + "\n"

    def take_includes(self):
        """The includes in the lines before the block, which are empty lines there from now on."""
        number, text = self.options.get("before", (0, ""))
        lines = text.splitlines()
        includes = [line for line in lines if line.startswith("#include")]
        if includes:
            rest = ["" if line in includes else line for line in lines]
            self.options["before"] = (number, "\n".join(rest))
        return includes

    def has_include(self):
        return any(line.startswith("#include") for line in self.lines)


def read_comment(page, lines, start):
    """The comment that begins at a line, and the index of the line after it."""
    end = start
    while "-->" not in lines[end]:
        end += 1
        if end == len(lines):
            raise Mistake(f"{page}:{start + 1}: the comment has no end.")
    return "\n".join(lines[start:end + 1]).strip(), end + 1


def read_blocks(page, lines):
    """The code blocks of a page, each with the options between it and the text before."""
    blocks = []
    options = {}
    at = 0
    while at < len(lines):
        line = lines[at]
        if line.lstrip().startswith("<!--"):
            start = at
            comment, at = read_comment(page, lines, at)
            option = OPTION.fullmatch(comment)
            if option is not None:
                # Lines before a block keep their number, for the compiler's messages.
                options[option[1]] = (start + 1, option[2].rstrip())
            continue
        fence = FENCE.match(line)
        if fence is None:
            if line.strip() and options:
                raise Mistake(f"{page}:{at + 1}: a comment on a code block has none behind it.")
            at += 1
            continue
        indent, mark, language = fence.groups()
        block = Block(page, at + 2, language, options)
        options = {}
        if language not in LANGUAGES:
            block.fail(f"the language of a code block is one of {', '.join(LANGUAGES)}.")
        at += 1
        while at < len(lines) and lines[at].strip() != mark:
            block.lines.append(lines[at].removeprefix(indent))
            at += 1
        if at == len(lines):
            block.fail("the code block has no end.")
        at += 1
        blocks.append(block)
    return blocks


def read_examples(page, lines):
    """The examples in the comments of a header."""
    examples = []
    block = None
    for number, line in enumerate(lines, 1):
        comment = line.strip().removeprefix("///").removeprefix(" ")
        if comment.startswith("\\code"):
            block = Block(page, number + 1, "cpp", {})
            if comment != "\\code":
                block.fail("\\code stands on a line of its own.")
        elif comment == "\\endcode":
            examples.append(block)
            block = None
        elif block is not None:
            block.lines.append(comment)
    return examples


def identifier(page):
    return re.sub(r"\W", "_", page.removesuffix(".md")).lower()


def camel_case(name):
    return "".join(word.capitalize() for word in name.split("-"))


def pieces(lines):
    """What stands between the ellipses of a quotation, each as its lines without indentation."""
    piece = []
    for line in (*lines, ELLIPSIS):
        if line.strip() != ELLIPSIS:
            piece.append(line.strip())
        elif piece:
            yield piece
            piece = []


def quotes(lines, file_lines):
    """Whether lines with ellipses stand in a file."""
    text = [line.strip() for line in file_lines]
    at = 0
    for piece in pieces(lines):
        while text[at:at + len(piece)] != piece:
            at += 1
            if at >= len(text):
                return False
        at += len(piece)
    return True


class Writer:
    """Collects the translation units of all pages."""

    def __init__(self, root, missing=()):
        self.root = root
        self.missing = tuple(f"#include <{header}" for header in missing)
        self.quoted = set()
        self.sources = {}
        self.picture_sources = {}
        self.pictures = []
        self.others = {}

    def add_page(self, page, blocks):
        functions = []
        for block in blocks:
            if block.language != "cpp":
                if block.options:
                    block.fail("comments on code blocks are for C++.")
                if block.language in ("sh", "cmake"):
                    suffix = "sh" if block.language == "sh" else "cmake"
                    folder = "shell" if block.language == "sh" else "cmake"
                    name = f"{folder}/{identifier(page)}_{block.line}.{suffix}"
                    self.others[name] = block.text()
                continue
            if "from" in block.options:
                self.check_quotation(block)
                continue
            if "not compiled" in block.options:
                if not block.options["not compiled"][1].strip():
                    block.fail("a block that is not compiled needs a reason.")
                continue
            if block.has_include() or "file scope" in block.options:
                self.add_file(block)
            elif "picture" in block.options:
                block.fail("a block with a picture is a file of its own, with its includes.")
            else:
                self.add_statements(block, functions)
        if functions:
            includes = [line for group in functions for block in group
                        for line in block.take_includes()]
            bodies = [self.function(page, group) for group in functions]
            text = "\n".join((PROLOGUE, *includes, *bodies))
            if not self.is_left_out(text):
                self.sources[f"{identifier(page)}.cpp"] = text

    def is_left_out(self, text):
        """Whether it needs a header that is missing."""
        return any(line.startswith(self.missing) for line in text.splitlines())

    def check_quotation(self, block):
        name = block.options["from"][1].strip()
        file = self.root / name
        if not file.is_file():
            block.fail(f"there is no {name} to quote.")
        if not quotes(block.lines, file.read_text(encoding="utf-8").splitlines()):
            block.fail(f"this does not stand in {name}.")
        self.quoted.add(name)

    def add_file(self, block):
        if "continues" in block.options:
            block.fail("a block that is a file of its own continues none.")
        text = "" if block.has_include() else PROLOGUE
        text += self.hidden(block, "before") + self.shown(block) + self.hidden(block, "after")
        name = f"{identifier(block.page)}_{block.line}.cpp"
        if "picture" in block.options:
            row = self.picture_row(block)
            if not self.is_left_out(text):
                self.pictures.append(row)
                self.picture_sources[name] = text
        elif not self.is_left_out(text):
            self.sources[name] = text

    @staticmethod
    def picture_row(block):
        picture = PICTURE.match(block.options["picture"][1].strip())
        if picture is None:
            block.fail("a picture has a name and a size: <!-- picture: name 480x320 -->.")
        name, width, height = picture.groups()
        function = "draw" + camel_case(name)
        if f"void {function}()" not in block.text() + block.options.get("after", (0, ""))[1]:
            block.fail(f"the block does not define void {function}().")
        return f'VELLIS_PICTURE("{name}", {function}, {width}, {height})'

    @staticmethod
    def add_statements(block, functions):
        if "after" in block.options:
            block.fail("lines can come after a block that is a file of its own, not after statements.")
        if "continues" in block.options:
            if not functions:
                block.fail("there is no block of statements to continue.")
            functions[-1].append(block)
        else:
            functions.append([block])

    def function(self, page, group):
        body = "".join(self.hidden(block, "before") + self.shown(block) for block in group)
        name = f"{identifier(page)}_{group[0].line}"
        return f"void {name}();\nvoid {name}() {{\n{body}}}\n"

    @staticmethod
    def shown(block):
        """The lines of the block, under the numbers of the page."""
        return f'#line {block.line} "{block.page}"\n{block.text()}'

    @staticmethod
    def hidden(block, option):
        """The lines that come before or after the block, under the numbers of the page."""
        if option not in block.options:
            return ""
        line, text = block.options[option]
        return f'#line {line} "{block.page}"\n{text}\n'


def write_if_different(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    if not path.exists() or path.read_text(encoding="utf-8") != text:
        path.write_text(text, encoding="utf-8")


def write_all(writer, output):
    files = {**writer.sources, **writer.picture_sources, **writer.others}
    files["pictures.inc"] = "".join(row + "\n" for row in writer.pictures)
    files["quoted.txt"] = "".join(name + "\n" for name in sorted(writer.quoted))
    files["sources.txt"] = "".join(name + "\n" for name in writer.sources)
    files["picture_sources.txt"] = "".join(name + "\n" for name in writer.picture_sources)
    for old in list(output.glob("*/*")) + list(output.glob("*.cpp")):
        if old.relative_to(output).as_posix() not in files:
            old.unlink()
    for name, text in files.items():
        write_if_different(output / name, text)


def write_examples(root, file, *headers):
    parts = [PROLOGUE + GIVEN_NAMES]
    for header in headers:
        lines = (root / header).read_text(encoding="utf-8").splitlines()
        examples = read_examples(header, lines)
        if examples and header.startswith("include/"):
            parts.append(f"#include <{header.removeprefix('include/')}>\n")
        for block in examples:
            text = Writer.shown(block)
            if re.match(r"(class|struct|template)\b", block.lines[0]):
                parts.append(text)
            else:
                # An example may return, with a value or without one.
                name = f"{identifier(header)}_{block.line}"
                parts.append(f"inline auto {name}() {{\n{text}}}\n")
    write_if_different(file, "\n".join(parts))


def write_blocks(root, output, *pages, missing=()):
    writer = Writer(root, missing)
    for page in pages:
        lines = (root / page).read_text(encoding="utf-8").splitlines()
        writer.add_page(page, read_blocks(page, lines))
    write_all(writer, output)


def main(*arguments):
    if arguments[0] == "--examples":
        root, output, *headers = arguments[1:]
        write_examples(pathlib.Path(root), pathlib.Path(output), *headers)
        return
    missing = []
    while arguments[0] == "--without":
        missing.append(arguments[1])
        arguments = arguments[2:]
    root, output, *pages = arguments
    write_blocks(pathlib.Path(root), pathlib.Path(output), *pages, missing=missing)


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    try:
        main(*sys.argv[1:])
    except Mistake as mistake:
        sys.exit(str(mistake))
