#!/usr/bin/env python3
"""Tests of rules.py, programs.py and mutate.py: which changes there are, how they are drawn, and which
tests are tried.

Usage: mutations_test.py [arguments of unittest]
"""

import math
import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True

import mutate  # noqa: E402
import programs  # noqa: E402
import rules  # noqa: E402
import workshop  # noqa: E402

GL_HEADER = """\
#define GL_BLEND 0x0BE2
#define GL_BLEND_SRC 0x0BE1
#define GL_BLEND_SRC_ALPHA 0x80CB
#define GL_BLEND_SRC_RGB 0x80C9
#define GL_BLEND_SRC_RGB_EXT 0x80C9
#define GL_UNUSED 0x1
typedef void (GLAD_API_PTR *PFNGLENABLEPROC)(GLenum cap);
typedef void (GLAD_API_PTR *PFNGLDISABLEPROC)(GLenum cap);
typedef void (GLAD_API_PTR *PFNGLPOINTSIZEPROC)(GLfloat size);
GLAD_API_CALL PFNGLENABLEPROC glad_glEnable;
GLAD_API_CALL PFNGLDISABLEPROC glad_glDisable;
GLAD_API_CALL PFNGLPOINTSIZEPROC glad_glPointSize;
"""


def changes(source, *others):
    """The mutants of a source as (old, new)."""
    names = rules.Names([source, *others], GL_HEADER)
    return [(source[mutant.begin:mutant.end], mutant.new)
            for mutant in rules.mutants("file.cpp", source, names)]


def in_function(statements):
    return f"void f() {{ {statements} }}"


class Neighbours(unittest.TestCase):
    def test_gl_constant_becomes_the_nearest_by_name_that_the_sources_use(self):
        source = in_function("g(GL_BLEND_SRC_RGB);")
        self.assertIn(("GL_BLEND_SRC_RGB", "GL_BLEND_SRC_ALPHA"),
                      changes(source, "GL_BLEND GL_BLEND_SRC_ALPHA"))
        self.assertIn(("GL_BLEND_SRC_RGB", "GL_BLEND"), changes(source, "GL_BLEND"))

    def test_gl_constant_of_the_same_value_is_no_neighbour(self):
        self.assertNotIn("GL_BLEND_SRC_RGB_EXT", dict(changes("int i = GL_BLEND_SRC_RGB;",
                                                              "GL_BLEND_SRC_RGB_EXT")).values())

    def test_gl_function_becomes_one_of_the_same_type(self):
        self.assertIn(("glEnable", "glDisable"),
                      changes(in_function("glEnable(c);"), "glDisable glPointSize"))
        self.assertNotIn(("glEnable", "glPointSize"),
                         changes(in_function("glEnable(c);"), "glPointSize"))

    def test_enumerator_becomes_the_next_of_its_enumeration(self):
        enumeration = "enum class Face : unsigned int { Front = 1, Back, // the other\n Both };"
        self.assertIn(("Front", "Back"), changes("auto f = Face::Front;", enumeration))
        self.assertIn(("Both", "Front"), changes("auto f = Face::Both;", enumeration))
        self.assertEqual(changes("auto f = Front;", enumeration), [])
        self.assertIn(("CLAMP", "REPEAT"), changes("int w = CLAMP;", "enum Wrap { CLAMP, REPEAT };"))

    def test_cell_of_a_table_becomes_that_of_the_next_row_that_differs(self):
        table = "VELLIS_ROW(ONE, Float)\nVELLIS_ROW(TWO, Float)\nVELLIS_ROW(SIX, Enum)\n"
        found = changes(table)
        for change in (("ONE", "TWO"), ("SIX", "ONE"), ("Float", "Enum"), ("Enum", "Float")):
            self.assertIn(change, found)

    def test_literals(self):
        found = changes("const char* t[] = {\"a\", \"b\"}; char c[] = {'x', 'y'}; bool b = true; "
                        "float f = 0.5f; float g = 1.f;")
        for change in (('"a"', '"b"'), ('"b"', '"a"'), ("'x'", "'y'"), ("true", "false"),
                       ("0.5f", "1.0f"), ("1.f", "0.0f")):
            self.assertIn(change, found)


class Dropped(unittest.TestCase):
    def dropped(self, source):
        return [old for old, new in changes(source) if new == ";"]

    def test_statements_that_are_expressions(self):
        self.assertEqual(self.dropped(in_function("a(); b = 2; ++c; d->e(f, {1}); g << h;")),
                         ["a();", "b = 2;", "++c;", "d->e(f, {1});", "g << h;"])

    def test_statements_over_several_lines(self):
        self.assertEqual(self.dropped(in_function("a(b,\n  c);")), ["a(b,\n  c);"])

    def test_bodies_of_conditions_and_loops(self):
        self.assertEqual(self.dropped(in_function("if (a) return 1; else b(); for (int i = 0; i < n; "
                                                  "++i) { c(); break; } return 2;")),
                         ["return 1;", "b();", "c();", "break;"])

    def test_no_declaration_and_nothing_outside_of_functions(self):
        self.assertEqual(self.dropped(in_function("int a = 1; const auto b = c(); std::vector<T> d(4); "
                                                  "Guard guard; T* const e = f();")), [])
        self.assertEqual(self.dropped("struct S { S(int i); int j = f(); }; MACRO(a);"), [])


class OffByOne(unittest.TestCase):
    def test_comparisons(self):
        found = changes(in_function("return a < b && c != d;"))
        self.assertEqual(found, [("<", "<="), ("&&", "||"), ("!=", "==")])

    def test_template_brackets_and_references_are_no_operators(self):
        self.assertEqual(changes("template <class T> std::vector<T> f(T&& t, std::array<T, N>* a);"),
                         [])

    def test_numbers_and_indices(self):
        self.assertEqual(changes("int i = 2;"), [("2", "1"), ("2", "3")])
        self.assertEqual(changes("int i = 0u;"), [("0u", "1u")])
        self.assertEqual(changes("int i = 0x1F;"), [("0x1F", "0x20")])
        self.assertIn(("i", "i + 1"), changes(in_function("return a[i];")))
        self.assertNotIn(("i", "i + 1"), changes(in_function("h([i] { return i; });")))

    def test_sums_and_negations(self):
        self.assertEqual(changes(in_function("return a + b;")), [("+", "-")])
        self.assertEqual(changes(in_function("return !a;")), [("!", "")])


class Exchanged(unittest.TestCase):
    def test_neighbouring_arguments(self):
        self.assertIn(("a, b(c, d)", "b(c, d), a"), changes(in_function("f(a, b(c, d), e);")))
        self.assertIn(("c, d", "d, c"), changes(in_function("f(a, b(c, d), e);")))
        self.assertIn(("a, b", "b, a"), changes(in_function("f<T>(a, b);")))

    def test_equal_arguments_and_parameters_stay(self):
        self.assertEqual(changes(in_function("f(a, a);")), [("f(a, a);", ";")])
        self.assertEqual(changes("void f(int a, const std::vector<T>& b, T* c);"), [])


class Places(unittest.TestCase):
    def test_no_change_of_what_is_no_code_of_ours(self):
        self.assertEqual(changes("// g(1, 2);\n/* 3 */\n#include <a/b2.hpp>\n#undef A\n"
                                 "static_assert(f(1, 2) == 3);\n"), [])
        self.assertEqual(changes("VELLIS_SAME(1, 2)\n",
                                 "#define VELLIS_SAME(a, b) \\\n    static_assert(a < b)\n"), [])

    def test_windows_is_left_out_and_the_other_side_is_not(self):
        self.assertEqual(changes("#ifdef _WIN32\n#ifndef N\nint i = 1;\n#endif\nint j = 2;\n#else\n"
                                 "int k = 0;\n#endif\n"), [("0", "1")])

    def test_bodies_of_macros(self):
        self.assertEqual(changes("#define CALL(a, b) \\\n    void f() { g(a, b); }\n"),
                         [("g(a, b);", ";"), ("a, b", "b, a")])

    def test_mutant_changes_its_place_only(self):
        source = "int i = 1;\nint j = 1;\n"
        found = rules.mutants("file.cpp", source, rules.Names([source], GL_HEADER))
        self.assertEqual([mutant.applied(source) for mutant in found],
                         ["int i = 0;\nint j = 1;\n", "int i = 2;\nint j = 1;\n",
                          "int i = 1;\nint j = 0;\n", "int i = 1;\nint j = 2;\n"])


class Draw(unittest.TestCase):
    sources = {"file.cpp": "".join(f"int i{n} = 1;\n" for n in range(50))}

    def order(self, seed):
        source = self.sources["file.cpp"]
        found = rules.mutants("file.cpp", source, rules.Names([source], GL_HEADER))
        return mutate.drawn(found, self.sources, seed)

    def test_seed_decides(self):
        self.assertEqual(self.order(1), self.order(1))
        self.assertNotEqual(self.order(1)[:50], self.order(2)[:50])

    def test_every_line_comes_before_one_comes_again(self):
        order = self.order(1)
        lines = [self.sources["file.cpp"].count("\n", 0, mutant.begin) for mutant in order]
        self.assertEqual(len(order), 100)
        self.assertEqual(sorted(lines[:50]), list(range(50)))
        self.assertNotEqual(lines[:50], list(range(50)))


class Batches(unittest.TestCase):
    order = [rules.Mutant("f", i, i + 1, "rule", "") for i in range(200)]

    def tried(self, count, deadline=math.inf):
        batches = []

        class Trial:
            def run(self, mutants, report):
                batches.append(len(mutants))
                return {mutant: (mutate.UNCOMPILABLE if mutant.begin % 2 else mutate.KILLED, "")
                        for mutant in mutants}

        outcomes = mutate.try_drawn(Trial(), self.order, count, None, deadline)
        self.assertEqual(list(outcomes), self.order[:len(outcomes)])
        self.assertTrue(all(size <= mutate.BATCH for size in batches))
        return [what for what, _ in outcomes.values()].count(mutate.KILLED)

    def test_others_are_tried_for_those_that_do_not_compile(self):
        self.assertEqual(self.tried(40), 40)
        self.assertEqual(self.tried(90), 90)
        self.assertEqual(self.tried(1000), 100)

    def test_no_batch_is_begun_when_the_time_is_over(self):
        self.assertEqual(self.tried(90, deadline=0), 0)


class Outcomes(unittest.TestCase):
    def test_name_of_the_test(self):
        self.assertEqual(workshop.test_at_the_end("[ RUN      ] A.B\n[       OK ] A.B (0 ms)\n"
                                                "[ RUN      ] A.C\n"), "A.C")
        self.assertEqual(workshop.test_at_the_end("[ RUN      ] A.B\n[  FAILED  ] A.B (0 ms)\n"
                                                "[  FAILED  ] 1 test, listed below:\n"), "A.B")
        self.assertEqual(workshop.test_at_the_end("[  FAILED  ] 0 tests, listed below:\n"), "")

    def test_part_of_a_program_has_the_limit_of_all(self):
        bench = workshop.Workshop(pathlib.Path("root"), pathlib.Path("folder"))
        program = bench.build_folder / "tests/p"
        bench.limits[program] = 40
        self.assertEqual(bench._limit_of(program), 40)
        self.assertEqual(bench._limit_of(program.with_name("p_part")), 40)
        self.assertEqual(bench._limit_of(program.with_name("q")), workshop.LIMIT)

    def test_program_that_goes_on_for_ever_is_ended(self):
        status, output = workshop.run(["sh", "-c", "echo begun; sleep 60 & wait"], 0.5)
        self.assertEqual((status, output), (None, "begun\n"))


class Tests(unittest.TestCase):
    tests = ["tests/canvas/canvas_trace_test.cpp", "tests/canvas/canvas_points_render_test.cpp",
             "tests/canvas/recorder_trace_test.cpp", "tests/engine/context_trace_test.cpp"]

    def test_named_after_a_file(self):
        self.assertEqual(programs.tests_named_after("src/canvas/recorder.cpp", self.tests),
                         ["tests/canvas/recorder_trace_test.cpp"])
        self.assertEqual(programs.tests_named_after("include/vellis/canvas/canvas.hpp", self.tests),
                         ["tests/canvas/canvas_points_render_test.cpp",
                          "tests/canvas/canvas_trace_test.cpp"])

    def test_those_of_the_folder_where_none_has_the_name(self):
        self.assertEqual(programs.tests_named_after("src/canvas/renderer.cpp", self.tests),
                         sorted(self.tests[:3]))
        self.assertEqual(programs.tests_named_after("src/texture/rbo.cpp", self.tests), [])

    def test_header_outside_of_the_folders_finds_its_tests_in_all(self):
        self.assertEqual(programs.tests_named_after("include/vellis/context.hpp", self.tests),
                         ["tests/engine/context_trace_test.cpp"])

    def test_filter_has_suites_of_every_kind(self):
        chosen = programs.filter_of(["TEST_F(A, B)\nTEST_P(C, D)\n", "  TEST(E, F)\nTEST(A, G)\n"])
        self.assertEqual(chosen, "A.*:*/A.*:A/*:C.*:*/C.*:C/*")

    def test_objects_and_their_programs(self):
        found = programs.objects_of_tests(
            "tests/CMakeFiles/p.dir/canvas/a_trace_test.cpp.o: CXX_COMPILER__p_Debug\n"
            "tests/text/CMakeFiles/q.dir/b_test.cpp.o: CXX_COMPILER__q_Debug\n"
            "tests/support/CMakeFiles/r.dir/fake_gl.cpp.o: CXX_COMPILER__r_Debug\n")
        self.assertEqual(found, {
            "tests/canvas/a_trace_test.cpp": ("tests/CMakeFiles/p.dir/canvas/a_trace_test.cpp.o",
                                              "tests/p"),
            "tests/text/b_test.cpp": ("tests/text/CMakeFiles/q.dir/b_test.cpp.o", "tests/text/q")})

    def test_part_is_linked_without_the_other_tests(self):
        link = programs.link_of_part(": && c++ a_test.o b_test.o own.o -o p -Wl,-x lib.a /usr/g.a "
                                     "libv.so.1.0 && :", {"a_test.o"}, {"a_test.o", "b_test.o"}, "p2")
        self.assertEqual(link.command, ["c++", "a_test.o", "own.o", "-o", "p2", "-Wl,-x", "lib.a",
                                        "/usr/g.a", "libv.so.1.0"])
        self.assertEqual(link.inputs, ["a_test.o", "own.o", "lib.a", "libv.so.1.0"])


class Bench:
    """Stands for a workshop: says what was built and run. The tests whose names are in `failing_ones`
    fail, what is in `broken` does not compile."""

    def __init__(self, folder, failing_ones=(), broken=()):
        self.source = folder
        self.failing_ones, self.broken = failing_ones, broken
        self.said = ""
        self.tests = {"tests/shading/program_trace_test.cpp": "",
                      "tests/shading/uniform_trace_test.cpp": ""}
        self.log = []

    def build(self, *names):
        self.log.append("build")
        return not set(names) & set(self.broken)

    def compiles(self, header):
        return header not in self.broken

    def failing(self, commands):
        return next((name for name in commands if name in self.failing_ones), None)

    def commands_for(self, program, tests):
        return [f"{program.target} of {test}" for test in tests]

    def failing_test(self, tried):
        self.log += [program.target for program in tried]
        return self.failing(program.target for program in tried)

    def failing_part(self, tests):
        self.log += tests
        return self.failing(tests)


class Stages(unittest.TestCase):
    header = "include/vellis/shading/program.hpp"

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def outcome(self, path, rest=False, **bench):
        file = self.folder / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text("int i = 1;\n", encoding="utf-8")
        self.bench = Bench(self.folder, **bench)
        trial = mutate.Trial(self.bench, {path: "int i = 1;\n"})
        trial.rest = rest
        found = trial.outcome(rules.Mutant(path, 8, 9, "off by one", "2"))
        self.assertEqual(file.read_text(encoding="utf-8"), "int i = 1;\n")
        return found

    def test_those_named_after_a_source_come_before_all(self):
        path = "src/shading/program.cpp"
        test = "vellis_trace_tests of tests/shading/program_trace_test.cpp"
        self.assertEqual(self.outcome(path, failing_ones=[test]), ("killed", test))
        self.assertEqual(self.bench.log, ["build"])

    def test_driver_comes_last_with_the_folder_and_is_told(self):
        test = "vellis_render_tests of tests/shading/uniform_trace_test.cpp"
        self.assertEqual(self.outcome("src/shading/program.cpp", failing_ones=[test]),
                         ("killed", f"{test} (driver)"))

    def test_what_takes_long_is_left_to_the_end(self):
        path = "src/shading/program.cpp"
        self.assertEqual(self.outcome(path, rest=True, failing_ones=["vellis_render_tests"]),
                         ("killed", "vellis_render_tests (driver)"))
        self.assertEqual(self.outcome(path, failing_ones=["vellis_gl_fault_tests"]),
                         ("not found yet", ""))
        self.assertEqual(self.outcome(path, rest=True, failing_ones=["vellis_gl_fault_tests"]),
                         ("killed", "vellis_gl_fault_tests"))
        self.assertEqual(self.outcome(path, rest=True), ("survived", ""))

    def test_text_has_tests_of_its_own(self):
        self.assertEqual(self.outcome("src/text/face.cpp", failing_ones=["vellis_text_tests"]),
                         ("killed", "vellis_text_tests"))
        self.outcome("src/text/face.cpp")
        self.assertNotIn("vellis_trace_tests", self.bench.log)

    def test_header_is_left_to_all_tests_where_those_of_its_folder_find_nothing(self):
        self.assertEqual(self.outcome(self.header), ("not found yet", ""))
        self.assertEqual([name for name in self.bench.log if name != "build"],
                         sorted(self.bench.tests))
        self.assertEqual(self.outcome(self.header, rest=True), ("survived", ""))
        self.assertEqual(self.outcome(self.header, True, failing_ones=["vellis_exit_trace_tests"])[0],
                         "killed")

    def test_header_that_does_not_compile_costs_no_build(self):
        self.assertEqual(self.outcome(self.header, broken=[self.header])[0], "does not compile")
        self.assertEqual(self.bench.log, [])

    def test_source_that_does_not_compile(self):
        self.assertEqual(self.outcome("src/shading/program.cpp", broken=["vellis"])[0],
                         "does not compile")


if __name__ == "__main__":
    unittest.main()
