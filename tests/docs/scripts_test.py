#!/usr/bin/env python3
"""Tests of code_blocks.py, check_pages.py and check_contents.py: what they must find wrong, and what they
must make.

Usage: scripts_test.py COMPILER [arguments of unittest]
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True

import check_contents  # noqa: E402
import check_pages  # noqa: E402
import code_blocks  # noqa: E402

COMPILER = "c++"


class WithFolder(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)

    def write(self, name, *lines):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text("\n".join(lines) + "\n", encoding="utf-8")
        return path

    def extract(self, *lines, options=()):
        self.write("page.md", *lines)
        code_blocks.main(*options, self.root, self.root / "out", "page.md")
        return self.root / "out"


class CodeBlocks(WithFolder):
    def expect_mistake(self, text, *lines):
        with self.assertRaisesRegex(code_blocks.Mistake, text):
            self.extract(*lines)

    def test_statements_become_a_function_under_the_line_of_the_page(self):
        out = self.extract("# Page", "", "```cpp", "int i = 1;", "```")
        source = (out / "page.cpp").read_text(encoding="utf-8")
        self.assertIn('void page_4() {\n#line 4 "page.md"\nint i = 1;\n}', source)
        self.assertEqual((out / "sources.txt").read_text(encoding="utf-8"), "page.cpp\n")

    def test_block_with_an_include_is_a_file_as_it_stands(self):
        out = self.extract("```cpp", "#include <cmath>", "int i = 1;", "```")
        self.assertEqual((out / "page_2.cpp").read_text(encoding="utf-8"),
                         '#line 2 "page.md"\n#include <cmath>\nint i = 1;\n')

    def test_unseen_lines_come_first(self):
        out = self.extract("<!-- before:", "int i = 0;", "-->", "```cpp", "++i;", "```")
        source = (out / "page.cpp").read_text(encoding="utf-8")
        self.assertIn('#line 1 "page.md"\n\nint i = 0;\n#line 5 "page.md"\n++i;\n}', source)

    def test_unseen_includes_go_to_the_top(self):
        out = self.extract("<!-- before:", "#include <map>", "int i = 0;", "-->", "```cpp", "++i;",
                           "```")
        source = (out / "page.cpp").read_text(encoding="utf-8")
        self.assertLess(source.index("#include <map>"), source.index("void page_6()"))
        self.assertIn('#line 1 "page.md"\n\n\nint i = 0;\n#line 6 "page.md"\n++i;\n}', source)

    def test_unseen_lines_can_come_after_a_file(self):
        out = self.extract("<!-- picture: name 4x2 -->", "<!-- after:", "void drawName() {}", "-->",
                           "```cpp", "#include <cmath>", "```")
        source = (out / "page_6.cpp").read_text(encoding="utf-8")
        self.assertIn('#include <cmath>\n#line 2 "page.md"\n\nvoid drawName() {}\n', source)
        self.assertIn("drawName", (out / "pictures.inc").read_text(encoding="utf-8"))

    def test_unseen_lines_cannot_come_after_statements(self):
        self.expect_mistake("not after statements", "<!-- after:", "++i;", "-->", "```cpp",
                            "int i = 0;", "```")

    def test_block_that_continues_shares_the_scope(self):
        out = self.extract("```cpp", "int i = 0;", "```", "Then:", "<!-- continues -->", "```cpp",
                           "++i;", "```")
        source = (out / "page.cpp").read_text(encoding="utf-8")
        self.assertEqual(source.count("void page_2() {"), 1)
        self.assertNotIn("page_7", source)
        self.assertIn("++i;", source)

    def test_picture_names_the_function_that_draws_it(self):
        out = self.extract("<!-- picture: two-words 4x2 -->", "```cpp", "#include <cmath>",
                           "void drawTwoWords() {}", "```")
        self.assertEqual((out / "pictures.inc").read_text(encoding="utf-8"),
                         'VELLIS_PICTURE("two-words", drawTwoWords, 4, 2)\n')
        self.assertEqual((out / "picture_sources.txt").read_text(encoding="utf-8"), "page_3.cpp\n")
        self.assertEqual((out / "sources.txt").read_text(encoding="utf-8"), "")

    def test_what_needs_a_missing_header_is_left_out(self):
        lines = ("<!-- picture: name 4x2 -->", "```cpp", "#include <lib/a.hpp>", "void drawName() {}", "```",
                 "```cpp", "#include <lib/b.hpp>", "```", "```cpp", "#include <cmath>", "```",
                 "<!-- before:", "#include <lib/c.hpp>", "-->", "```cpp", "int i = 1;", "```")

        def made(*options):
            out = self.extract(*lines, options=options)
            names = ("sources.txt", "picture_sources.txt", "pictures.inc")
            return [(out / name).read_text(encoding="utf-8").split("\n")[:-1] for name in names]

        everything = [["page_7.cpp", "page_10.cpp", "page.cpp"], ["page_3.cpp"],
                      ['VELLIS_PICTURE("name", drawName, 4, 2)']]
        self.assertEqual(made(), everything)
        self.assertEqual(made("--without", "library/"), everything)
        self.assertEqual(made("--without", "GLFW/", "--without", "lib/"), [["page_10.cpp"], [], []])
        self.assertEqual(made("--without", "lib/b"), [["page_10.cpp", "page.cpp"], *everything[1:]])

    def test_files_of_blocks_that_are_gone_go(self):
        out = self.extract("```cpp", "#include <cmath>", "```", "```sh", "true", "```")
        self.assertTrue((out / "page_2.cpp").exists() and (out / "shell/page_5.sh").exists())
        out = self.extract("Text.")
        self.assertEqual(list(out.glob("*.cpp")) + list(out.glob("shell/*")), [])

    def test_mistakes_are_named(self):
        self.expect_mistake("page.md:1: the language", "```", "text", "```")
        self.expect_mistake("page.md:1: the language", "```c++", "text", "```")
        self.expect_mistake("page.md:1: the code block has no end", "```cpp", "int i;")
        self.expect_mistake("page.md:1: the comment has no end", "<!-- before:", "int i;")
        self.expect_mistake("page.md:2: a comment on a code block has none", "<!-- continues -->",
                            "Text.")
        self.expect_mistake("no block of statements to continue", "<!-- continues -->", "```cpp",
                            "```")
        self.expect_mistake("needs a reason", "<!-- not compiled: -->", "```cpp", "```")
        self.expect_mistake("does not define void drawName", "<!-- picture: name 4x2 -->", "```cpp",
                            "#include <cmath>", "```")
        self.expect_mistake("a name and a size", "<!-- picture: name -->", "```cpp",
                            "#include <cmath>", "```")
        self.expect_mistake("are for C\\+\\+", "<!-- continues -->", "```sh", "```")

    def test_quotation_stands_in_its_file(self):
        self.write("code.cpp", "class A {", "    int a;", "    int b;", "    int c;", "};", "int d;")
        quote = ("<!-- from: code.cpp -->", "```cpp")
        out = self.extract(*quote, "int a;", "int b;", "```")
        self.assertEqual((out / "quoted.txt").read_text(encoding="utf-8"), "code.cpp\n")
        self.assertEqual((out / "sources.txt").read_text(encoding="utf-8"), "")
        self.extract(*quote, "class A {", "    int a;", "    // ...", "};", "// ...", "int d;", "```")
        for lines in (["int a;", "int c;"], ["int b;", "// ...", "int a;"], ["int"], ["int d;", "int e;"]):
            self.expect_mistake("page.md:2: this does not stand in code.cpp", *quote, *lines, "```")
        self.expect_mistake("there is no a.cpp", "<!-- from: a.cpp -->", "```cpp", "```")

    def test_compiler_names_the_line_of_the_page(self):
        out = self.extract("# Page", "```cpp", "#include <cmath>", "int i = missing;", "```")
        run = subprocess.run([COMPILER, "-std=c++17", "-fsyntax-only", out / "page_3.cpp"],
                             capture_output=True, text=True, check=False)
        self.assertNotEqual(run.returncode, 0)
        self.assertIn("page.md:4:", run.stderr)


class Examples(WithFolder):
    def examples(self, *lines):
        self.write("header.hpp", *lines)
        code_blocks.main("--examples", self.root, self.root / "out.cpp", "header.hpp")
        return (self.root / "out.cpp").read_text(encoding="utf-8")

    def test_example_becomes_a_function_under_the_line_of_the_header(self):
        source = self.examples("/// Text.", "/// \\code", "/// int i = 1;", "///", "/// ++i;",
                               "/// \\endcode", "int f();")
        self.assertIn('inline auto header_hpp_3() {\n#line 3 "header.hpp"\nint i = 1;\n\n++i;\n}',
                      source)
        self.assertNotIn("int f();", source)

    def test_declaration_of_a_type_stays_outside_of_functions(self):
        source = self.examples("    /// \\code", "    /// struct S {", "    ///     int i;",
                               "    /// };", "    /// \\endcode")
        self.assertIn('\n#line 2 "header.hpp"\nstruct S {\n    int i;\n};\n', source)
        self.assertNotIn("inline auto", source)

    def test_example_has_its_header(self):
        self.write("include/a/b.hpp", "/// \\code", "/// int i = 1;", "/// \\endcode")
        self.write("include/a/c.hpp", "/// Text.")
        code_blocks.main("--examples", self.root, self.root / "out.cpp", "include/a/b.hpp",
                         "include/a/c.hpp")
        source = (self.root / "out.cpp").read_text(encoding="utf-8")
        self.assertIn("#include <a/b.hpp>\n", source)
        self.assertNotIn("c.hpp", source)

    def test_text_behind_the_command_is_a_mistake(self):
        with self.assertRaisesRegex(code_blocks.Mistake, "header.hpp:1: .* a line of its own"):
            self.examples("/// \\code int i;", "/// \\endcode")


class Pages(WithFolder):
    def links(self, *lines):
        self.write("page.md", *lines)
        self.write("docs/other.md", "# One heading: `code`, and more", "## Twice", "## Twice")
        return list(check_pages.broken_links(self.root, ["page.md"]))

    def test_links_that_lead_somewhere(self):
        self.assertEqual(self.links("# Here", "[a](docs/other.md) [b](#here) [c](docs)",
                                    "[d](docs/other.md#one-heading-code-and-more)",
                                    "[e](docs/other.md#twice-1) [f](https://example.org/x.md)",
                                    "`[g](none.md)`", "```text", "[h](none.md)", "```"), [])

    def test_links_that_do_not(self):
        found = self.links("[a](none.md)", "![b](docs/none.png)", "[c](#nothing)",
                           "[d](docs/other.md#twice-2)", "[e](../outside.md)", '<img src="docs/none.png">')
        self.assertEqual(len(found), 6)
        for number in range(1, 7):
            self.assertIn(f"page.md:{number}:", found[number - 1])

    def test_shell(self):
        self.write("scripts/there.sh", "true")
        good = self.write("good.sh", "scripts/there.sh # comment")
        absent = self.write("absent.sh", "scripts/absent.sh")
        broken = self.write("broken.sh", "if true; then")
        self.write("scripts/group/there.sh", "true")
        group = self.write("group.sh", "scripts/group/there.sh && scripts/group/absent.sh")
        self.assertEqual(list(check_pages.broken_shell(self.root, [good])), [])
        self.assertEqual(len(list(check_pages.broken_shell(self.root, [absent]))), 1)
        self.assertEqual(len(list(check_pages.broken_shell(self.root, [broken]))), 1)
        self.assertEqual(list(check_pages.broken_shell(self.root, [group])),
                         [f"{group}: there is no scripts/group/absent.sh."])

    def test_scripts_that_the_text_names(self):
        self.write("scripts/there.sh", "true")
        self.assertEqual(self.links("Run `scripts/there.sh --all`, or scripts/there.sh."), [])
        self.assertEqual(self.links("Run `scripts/absent.sh` first."),
                         ["page.md:1: there is no scripts/absent.sh."])

    def folders(self, *rows):
        self.write("page.md", "| folder | what stands there |", "|---|---|", *rows, "", "| `no` | |")
        for folder in ("src/state", "tests/state", "tests/support", "docs"):
            self.write(folder + "/file", "")
        known = {pathlib.PurePosixPath(folder) for folder in
                 ("src", "src/state", "tests", "tests/state", "tests/support", "docs")}
        return list(check_pages.wrong_folders(self.root, "page.md", known))

    def test_table_with_every_folder(self):
        self.assertEqual(self.folders("| `src`, `docs` | a |", "| `tests/state` | b |",
                                      "| `tests/support` | c |"), [])
        self.assertEqual(self.folders("| `src`, `docs` | a |", "| `tests/<family>` | b |",
                                      "| `tests/support` | `tests/absent` |"), [])

    def test_folder_that_is_missing_twice_there_or_absent(self):
        self.assertEqual(self.folders("| `src` | a |", "| `tests` | b |"),
                         ["page.md: docs is not in the table of folders."])
        self.assertEqual(self.folders("| `src`, `docs` | a |", "| `tests/state` | b |"),
                         ["page.md: tests/support is not in the table of folders."])
        self.assertEqual(self.folders("| `src`, `docs`, `tests` | a |", "| `src` | b |"),
                         ["page.md:4: src: it is there twice."])
        self.assertEqual(self.folders("| `src`, `docs`, `tests` | a |", "| `other` | b |"),
                         ["page.md:4: other: there is no such folder."])
        self.write("empty.md", "Text.")
        self.assertEqual(list(check_pages.wrong_folders(self.root, "empty.md", set())),
                         ["empty.md: there is no table of folders."])

    def test_table_of_scripts(self):
        for name in ("scripts/one.sh", "scripts/group/two.sh"):
            self.write(name, "true").chmod(0o755)
        self.write("scripts/shared.sh", "true")

        def unnamed(*rows):
            self.write("page.md", *rows, "Text on `scripts/one.sh`.")
            return list(check_pages.unnamed_scripts(self.root, "page.md"))

        both = ("| `scripts/one.sh` | a |", "| `scripts/group/two.sh` | `scripts/one.sh` |")
        self.assertEqual(unnamed(*both), [])
        self.assertEqual(unnamed(both[0]), ["page.md: scripts/group/two.sh is there 0 times."])
        self.assertEqual(unnamed(*both, both[0]), ["page.md: scripts/one.sh is there 2 times."])

    def test_cmake(self):
        good = self.write("good.cmake", "add_subdirectory(vellis)",
                          "target_link_libraries(a PRIVATE vellis::vellis)")
        name = self.write("name.cmake", "target_link_libraries(a PRIVATE vellis::velis)")
        command = self.write("command.cmake", "ad_subdirectory(vellis)")
        self.assertEqual(list(check_pages.broken_cmake("cmake", [good])), [])
        self.assertEqual(len(list(check_pages.broken_cmake("cmake", [name]))), 1)
        self.assertEqual(len(list(check_pages.broken_cmake("cmake", [command]))), 1)


class Contents(WithFolder):
    def examples(self, *lines):
        self.write("docs/README.md", "## First", "| [b](b.md) |", "## The families",
                   "| page | what |", "|---|---|", "| [a](a.md) | see [c](c.md) |", "## Others", "| [d](d.md) |")
        self.write("docs/a.md", *lines)
        return list(check_contents.missing_examples(self.root, "docs/README.md"))

    def test_page_of_a_family_has_an_example(self):
        self.assertEqual(self.examples("```cpp", "int i;", "```"), [])
        self.assertEqual(self.examples("Text.", "```sh", "true", "```"),
                         ["docs/a.md: it has no example in C++."])
        self.write("docs/README.md", "## The families", "None.")
        self.assertEqual(list(check_contents.missing_examples(self.root, "docs/README.md")),
                         ["docs/README.md: there is no table of families."])

    def test_page_that_draws_shows_its_picture(self):
        for call in ("program->draw(*mesh);", "vellis::Toolbox::drawLines();", "otherCanvas->drawRect();"):
            self.assertEqual(self.examples("```cpp", call, "```"), ["docs/a.md: it draws, and has no picture."])
        block = ("<!-- picture: a-b 4x2 -->", "```cpp", "canvas->end();", "program->draw(*mesh);", "```")
        self.assertEqual(self.examples("![A](images/a-b.png)", *block), [])
        self.assertEqual(self.examples("![A](images/c.png)", *block),
                         ["docs/a.md:3: it does not show images/a-b.png."])

    def first_screen(self, *lines):
        self.write("page.md", "[picture](a.png)", "# Title", *lines)
        return list(check_contents.missing_on_first_screen(self.root, "page.md"))

    def test_first_screen(self):
        hidden = ("<!-- before:", *["int i;"] * 50, "-->")
        said = ("It is for all.", *hidden, "```cpp", "int i;", "```", "```sh", "scripts/gallery.sh",
                "scripts/test.sh", "cmake --install build", "```", "```cmake", "find_package(vellis)", "```")
        self.assertEqual(self.first_screen(*said, "[Link](a.md)"), [])
        self.assertEqual(len(self.first_screen("A [link](a.md).", *said)), 6)
        self.assertEqual(len(self.first_screen(*["Text."] * 50, *said)), 6)
        self.assertEqual(len(self.first_screen("a" * 100 * 50, *said)), 6)
        self.assertEqual(self.first_screen(*said[:-3]),
                         ["page.md: its first screen does not say 'find_package(vellis'."])

    def test_changes_have_the_version(self):
        self.write("a.hpp", "#define VELLIS_VERSION_MAJOR 1", "#define VELLIS_VERSION_MINOR 20",
                   "#define VELLIS_VERSION_PATCH 3", "#define VELLIS_VERSION 12003")
        for heading, mistakes in (("## 1.20.3, not released yet", 0), ("## 1.20.3 of today", 0),
                                  ("## 1.20.4, not released yet", 1), ("Text.", 1)):
            self.write("page.md", "# Changes", heading, "## 1.20.2, long ago" if mistakes else "")
            self.assertEqual(len(list(check_contents.wrong_version(self.root, "page.md", "a.hpp"))), mistakes)

    def test_enumerators_have_comments(self):
        self.write("a.hpp", "/// A", "enum class A : int {", "    One = 1, ///< one", "    /// Two.", "    Two,",
                   "    Three,", "};", "enum B { Four };", "/// C", "enum C {", "    Five,", "};")
        self.assertEqual(list(check_contents.enumerators_without_comment(self.root, ["a.hpp"])),
                         ["a.hpp:6: Three has no comment.", "a.hpp:11: Five has no comment."])


if __name__ == "__main__":
    COMPILER = sys.argv.pop(1)
    unittest.main()
