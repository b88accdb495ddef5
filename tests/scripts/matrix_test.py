#!/usr/bin/env python3
"""Tests of scripts/checks/matrix.py: what it makes of the output of tests, and of its tables.

Usage: matrix_test.py [arguments of unittest]
"""

import pathlib
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "scripts/checks"))

import matrix  # noqa: E402

DASHES = "ToolboxDashesRender/2D.PatternGoesOnAroundTheCorner"
GALLERY = "GalleryRender.EveryPanelShowsWhatItMust"


def test(name, *lines, ended="       OK "):
    return "\n".join([f"[ RUN      ] {name}", *lines, f"[{ended}] {name} (3 ms)"]) + "\n"


def failure(*message):
    return ["../some_test.cpp:7: Failure", *message]


class Results(unittest.TestCase):
    def count(self, *tests, driver="zink"):
        return matrix.count_results(driver, "".join(tests))

    def test_passed_and_skipped_tests_are_counted_with_the_reasons(self):
        skip = ["../some_test.cpp:3: Skipped", "no multisampling"]
        counts = self.count(test("A.a"), test("A.b", *skip, ended="  SKIPPED "),
                            test("A.c", *skip, ended="  SKIPPED "))
        self.assertEqual((counts.passed, counts.skips), (1, ["no multisampling"] * 2))
        self.assertEqual(list(matrix.notes_on(counts)), ["2 skipped: no multisampling"])

    def test_failure_that_is_not_known_is_one(self):
        counts = self.count(test("A.a", *failure("i", "  Which is: 1"), ended="  FAILED  "))
        self.assertEqual((counts.failures, counts.known), (["A.a"], []))

    def test_failure_is_known_with_its_driver_alone(self):
        output = test(DASHES, *failure("found.size()"), ended="  FAILED  ")
        self.assertEqual(self.count(output).known[0][1], DASHES)
        self.assertEqual(self.count(output).failures, [])
        self.assertEqual(self.count(output, driver="llvmpipe").failures, [DASHES])

    def test_failure_of_another_assertion_is_not_known(self):
        for more in (failure("what is there"), failure("C++ exception thrown")):
            counts = self.count(test(DASHES, *failure("found.size()"), *more, ended="  FAILED  "))
            self.assertEqual((counts.failures, counts.known), ([DASHES], []))

    def test_failure_without_an_assertion_is_not_known(self):
        self.assertEqual(self.count(test(DASHES, ended="  FAILED  ")).failures, [DASHES])

    def test_failure_of_another_panel_is_not_known(self):
        known = "Panel blending-constants: at (75, 130) the colour is #e7c369, not #e26c4d."
        counts = self.count(test(GALLERY, *failure(known), ended="  FAILED  "))
        self.assertEqual((len(counts.known), counts.failures), (1, []))
        counts = self.count(test(GALLERY, *failure(known, "Panel points: is grey."), ended="  FAILED  "))
        self.assertEqual((len(counts.known), counts.failures), (0, [GALLERY]))

    def test_known_failure_that_passes_is_reported(self):
        counts = self.count(test(DASHES))
        self.assertEqual((counts.passed, counts.unneeded, counts.failures), (1, [DASHES], []))
        self.assertIn("known to fail, but passes: " + DASHES, next(matrix.notes_on(counts)))

    def test_end_within_a_test_is_a_failure(self):
        counts = self.count(f"[ RUN      ] {DASHES}\n", *failure("found.size()\n"),
                            "\nENDED EARLY with status 139: program -A\n")
        self.assertEqual(counts.failures, [DASHES + ": ENDED EARLY with status 139: program -A"])


class Tables(unittest.TestCase):
    def test_rows_have_names_of_their_own_and_drivers_that_are_there(self):
        names = [row.name for row in matrix.ROWS]
        self.assertEqual(len(names), len(set(names)))
        for row in matrix.ROWS:
            self.assertIn(row.driver, matrix.DRIVER_ENVIRONMENT)
            self.assertRegex(row.context, r"^(full|2\.1|GL_ARB_\w+|core-\d\.\d(-forward)?)$")
            self.assertEqual(row.context in matrix.CORE_LIMITS, row.context.startswith("core-"))

    def test_known_failures_are_of_drivers_of_rows_and_have_reasons(self):
        drivers = {row.driver for row in matrix.ROWS}
        for known in matrix.KNOWN_FAILURES:
            self.assertIn(known.driver, drivers)
            self.assertGreater(len(known.reason), 20)

    def test_no_failure_is_known_of_a_row_that_must_be_whole(self):
        known = {failure.driver for failure in matrix.KNOWN_FAILURES}
        self.assertFalse(known & {row.driver for row in matrix.ROWS if row.whole})

    def test_wrong_driver_is_named(self):
        self.assertEqual(matrix.wrong_driver("zink", "zink (llvmpipe)"), "")
        self.assertEqual(matrix.wrong_driver("zink", "softpipe"), "the driver is softpipe")
        self.assertIn("no graphics card", matrix.wrong_driver("hardware", "llvmpipe (LLVM 15)"))
        self.assertEqual(matrix.wrong_driver("hardware", "A card"), "")

    def test_rows_are_chosen_by_name(self):
        self.assertEqual(matrix.choose(False, []), matrix.ROWS)
        self.assertEqual([row.name for row in matrix.choose(False, ["zink-egl"])], ["zink-egl"])
        self.assertTrue(all(row.quick for row in matrix.choose(True, [])))
        with self.assertRaises(SystemExit):
            matrix.choose(False, ["zink"])


if __name__ == "__main__":
    unittest.main()
