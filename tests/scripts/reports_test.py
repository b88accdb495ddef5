#!/usr/bin/env python3
"""Tests of scripts/measurements/reports.py: what it reads, and what it takes for above a limit.

Usage: reports_test.py [arguments of unittest]
"""

import contextlib
import io
import json
import pathlib
import sys
import tempfile
import unittest
from unittest import mock

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "scripts/measurements"))

import reports  # noqa: E402


def benchmarks(*runs):
    """A report of runs: name, by hand, vellis, their ratio."""
    return json.dumps({"benchmarks": [
        {"name": name, "raw_ns": raw, "vellis_ns": own, "vellis_ratio": ratio}
        for name, raw, own, ratio in runs]}) + "\n"


class Reports(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def limits(self, *lines):
        path = self.folder / "limits"
        path.write_text("# a comment\n\n" + "\n".join(lines) + "\n", encoding="utf-8")
        return str(path)

    def report(self, text, *arguments):
        """The status of the script, and the words of each line that it prints."""
        said = io.StringIO()
        with mock.patch.object(sys, "stdin", io.StringIO(text)), contextlib.redirect_stdout(said), \
                contextlib.redirect_stderr(said), self.assertRaises(SystemExit) as ended:
            reports.main(*arguments)
        return ended.exception.code, [line.split() for line in said.getvalue().splitlines()]

    def test_times_are_medians_of_runs_that_follow_one_another(self):
        text = "".join(benchmarks(("draw/handles/1/x", 100, own, own / 100)) for own in (103, 101, 102))
        status, lines = self.report(text, "times", self.limits("draw/handles 1 1.02 # why"))
        self.assertEqual(lines[1], "draw/handles 1 100 102 1.020 1.010 to 1.030 within 1.02".split())
        self.assertEqual(status, 0)
        status, lines = self.report(text, "times", self.limits("draw/handles 1 1.01"))
        self.assertEqual((status, lines[1][-2:]), (1, ["ABOVE", "1.01"]))

    def test_limit_of_what_was_not_measured_fails(self):
        text = benchmarks(("draw/handles/1", 100, 100, 1))
        status, lines = self.report(text, "times", self.limits("draw/handles 8 1.02"))
        self.assertEqual(status, 1)
        self.assertIn("draw/handles 8, which was not measured", " ".join(lines[-1]))

    def test_nothing_measured_fails(self):
        for kind in (["times", self.limits()], ["peers"], ["startup", "1"], ["headers", "1", "1"],
                     ["instructions", self.limits()], ["canvas", self.limits()], ["contexts", "use=most:1"],
                     ["held"]):
            self.assertNotEqual(self.report("", *kind)[0], 0, kind)

    def test_filter_names_the_workloads_with_limits(self):
        _, lines = self.report("", "workloads", self.limits("draw/handles 1 1", "program/link 1 1"))
        self.assertEqual(lines, [["^(draw/handles|program/link)/"]])

    def test_canvas_holds_ratios_of_sides_and_numbers_alone(self):
        turns = "".join(f"strip/thin 10 {side} {value}\n" for values in ((10, 30, 20), (20, 50, 20), (10, 31, 10))
                        for side, value in zip(("raw", "vellis", "other"), values))
        text = turns + "memory 2 bytes 20\n"
        limits = self.limits("strip/thin 10 vellis raw 3 # why", "strip/thin 10 vellis other 2.5", "memory 2 bytes - 20")
        status, lines = self.report(text, "canvas", limits)
        self.assertEqual([line[2:] for line in lines[1:]], [
            "raw 10.0 -".split(), "vellis 31.0 raw 3.000 2.500 to 3.100 within 3".split(),
            "vellis 31.0 other 2.500 1.500 to 3.100 within 2.5".split(), "other 20.0 raw 1.000 1.000 to 2.000".split(),
            "bytes 20.0 - within 20".split()])
        self.assertEqual(status, 0)
        for limit in ("strip/thin 10 vellis raw 2.99", "memory 2 bytes - 19", "strip/thin 10 vellis absent 9",
                      "strip/thin 11 vellis raw 3"):
            self.assertEqual(self.report(text, "canvas", self.limits(limit))[0], 1, limit)

    def test_canvas_curves_are_files_with_the_time_of_a_point(self):
        self.report("strip/growth 10 raw 50\nstrip/growth 10 raw 70\nstrip/growth 10 raw 60\nstrip/growth 20 raw 60\n",
                    "canvas_curves", str(self.folder))
        self.assertEqual((self.folder / "raw").read_text(encoding="ascii"), "10 6.0\n20 3.0\n")

    def test_curves_are_files_with_a_line_for_each_size(self):
        text = benchmarks(("registry/programs/1", 10, 20, 2), ("registry/programs/8", 11, 21, 2))
        self.report(text, "curves", str(self.folder))
        self.assertEqual((self.folder / "programs-raw").read_text(encoding="ascii"), "1 10\n8 11\n")
        self.assertEqual((self.folder / "programs-vellis").read_text(encoding="ascii"), "1 20\n8 21\n")

    def test_peers_begin_with_raw_gl_and_vellis(self):
        text = json.dumps({"benchmarks": [{"name": "draw/plain/1", "other_ns": 30, "other_ratio": 3,
                                           "vellis_ns": 20, "vellis_ratio": 2, "raw_ns": 10}]})
        _, lines = self.report(text, "peers")
        self.assertEqual(lines[1:], [["draw/plain", "raw", "10", "1.00"], ["draw/plain", "vellis", "20", "2.00"],
                                     ["draw/plain", "other", "30", "3.00"]])

    def test_instructions_are_those_added_to_raw_gl_without_the_loop(self):
        text = "loop 1 raw 10 0 50\ndraw 1 raw 10 0 1050\ndraw 1 vellis 10 20 1950\n"
        status, lines = self.report(text, "instructions", self.limits("draw 1 90 2"))
        self.assertEqual(lines[1], ["draw", "1", "raw", "100"])
        self.assertEqual(lines[2], ["vellis", "190", "+90", "2", "within", "90,", "2"])
        self.assertEqual(status, 0)
        self.assertEqual(self.report(text, "instructions", self.limits("draw 1 89 2"))[0], 1)
        self.assertEqual(self.report(text, "instructions", self.limits("draw 1 90 1"))[0], 1)
        self.assertEqual(self.report(text, "instructions", self.limits("draw 2 90 2"))[0], 1)

    def test_headers_are_held_against_the_reference_of_their_round(self):
        rounds = [(0.1, 0.09, 0.05), (0.4, 0.32, 0.2), (0.1, 0.08, 0.07)]
        names = ("other.hpp", "vellis/vellis.hpp", "vellis/state.hpp")
        text = "".join(f"{name}\t{seconds}\n" for times in rounds for name, seconds in zip(names, times))
        status, lines = self.report(text, "headers", "0.8", "0.5")
        self.assertEqual(lines[2], ["vellis/vellis.hpp", "90", "0.80", "within", "0.8"])
        self.assertEqual(lines[3], ["vellis/state.hpp", "70", "0.50", "within", "0.5"])
        self.assertEqual(status, 0)
        self.assertEqual(self.report(text, "headers", "0.79", "0.5")[0], 1)
        self.assertEqual(self.report(text, "headers", "0.8", "0.49")[0], 1)

    def test_start_is_held_against_the_loader_of_its_round(self):
        text = "bare 100 10\nengine 110 5\nbare 200 10\nengine 210 5\nbare 100 10\nengine 106 5\n"
        status, lines = self.report(text, "startup", "1.06")
        self.assertEqual(lines[2], ["engine::init", "110", "1.06", "within", "1.06"])
        self.assertEqual(status, 0)
        self.assertEqual(self.report(text, "startup", "1.05")[0], 1)

    def test_sizes_are_held_where_they_have_a_limit(self):
        status, lines = self.report("own.so 370 370\nother.so 900\n", "sizes")
        self.assertEqual(lines, ["own.so 370 kB within 370".split(), "other.so 900 kB".split()])
        self.assertEqual(status, 0)
        self.assertEqual(self.report("own.so 371 370\n", "sizes"), (1, ["own.so 371 kB ABOVE 370".split()]))

    def test_contexts_have_limits_of_both_kinds(self):
        text = "use 50\nratio 0.95\nother 7\n"
        status, lines = self.report(text, "contexts", "use=most:50", "ratio=least:0.95")
        self.assertEqual(lines, ["use 50 within 50".split(), "ratio 0.95 within 0.95".split(), "other 7".split()])
        self.assertEqual(status, 0)
        status, lines = self.report(text, "contexts", "use=most:49", "ratio=least:0.96")
        self.assertEqual([line[2] for line in lines[:2]], ["ABOVE", "BELOW"])
        self.assertEqual(status, 1)
        self.assertEqual(self.report(text, "contexts", "absent=most:9")[0], 1)

    def test_limits_are_held_in_one_table_by_what_was_measured_last(self):
        path = self.folder / "held"
        with mock.patch.dict("os.environ", {"HELD_LIMITS": str(path)}):
            self.report("own.so 371 370\n", "sizes")
            self.report("ratio 0.99\n", "contexts", "ratio=least:0.9")
            self.report("loop 1 raw 10 0 50\ndraw 1 raw 10 0 1050\ndraw 1 vellis 10 0 1950\n", "instructions",
                        self.limits("draw 1 100 0"))
            self.report("own.so 333 370\n", "sizes")
        status, lines = self.report(path.read_text(encoding="utf-8"), "held")
        self.assertEqual(lines[1:], ["own.so 333 370 10 %".split(), "ratio 0.99 0.9 10 %".split(),
                                     "instructions, allocations draw 1 90, 0 100, 0 10 %".split()])
        self.assertEqual(status, 0)


if __name__ == "__main__":
    unittest.main()
