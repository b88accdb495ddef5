#!/usr/bin/env python3
"""Tests of folders.py on trees that are made for it."""

import pathlib
import re
import tempfile
import unittest

import folders


class Folders(unittest.TestCase):
    def wrong(self, files):
        with tempfile.TemporaryDirectory() as root:
            for path, text in files.items():
                file = pathlib.Path(root, path)
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_text(text, encoding="utf-8")
            return folders.wrong(folders.includes(root))

    def test_allows_what_is_further_down(self):
        self.assertEqual(self.wrong({
            "src/texture/texture.cpp": '#include <vellis/texture/texture.hpp>\n#include "gl/a.hpp"\n',
            "src/gl/a.hpp": "#include <vellis/gl.hpp>\n#include <vector>\n",
            "include/vellis/texture/texture.hpp": "#include <vellis/state.hpp>\n",
        }), [])

    def test_names_what_goes_up(self):
        found = self.wrong({
            "src/gl/a.cpp": '#include "state/b.hpp"\n',
            "src/state/b.hpp": "",
        })
        self.assertEqual(len(found), 1)
        self.assertIn("src/gl/a.cpp", found[0])
        self.assertIn("'state'", found[0])

    def test_counts_headers_and_sources_of_a_name_as_one(self):
        self.assertEqual(len(self.wrong({
            "include/vellis/buffers/a.hpp": "#include <vellis/engine.hpp>\n",
        })), 1)

    def test_lets_those_on_one_floor_include_each_other(self):
        self.assertEqual(self.wrong({
            "src/shading/a.cpp": "#include <vellis/drawing/b.hpp>\n",
            "src/drawing/b.cpp": "#include <vellis/shading.hpp>\n",
        }), [])

    def test_asks_for_the_floor_of_a_new_folder(self):
        found = self.wrong({"src/cellar/a.cpp": "#include <vellis/gl.hpp>\n"})
        self.assertEqual(len(found), 1)
        self.assertIn("'cellar'", found[0])

    def test_contributing_has_the_same_floors(self):
        page = pathlib.Path(__file__).parents[2] / "CONTRIBUTING.md"
        rows = re.findall(r"^\| (\d) \| ((?:`\w+`(?:, )?)+) \|", page.read_text(encoding="utf-8"), re.M)
        told = {int(floor): set(re.findall(r"`(\w+)`", names)) for floor, names in rows}
        self.assertEqual(told, dict(enumerate(folders.FLOORS[:-1])))


if __name__ == "__main__":
    unittest.main()
