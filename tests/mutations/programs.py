"""The programs of tests, and which of their tests are named after a file of the library."""

import pathlib
import re
import shlex
from typing import NamedTuple


class Program(NamedTuple):
    path: str

    @property
    def target(self):
        return pathlib.PurePath(self.path).name


ALL_TRACE_TESTS = Program("tests/vellis_trace_tests")
# The quickest to find something first.
FAST_TESTS = [ALL_TRACE_TESTS,
              Program("tests/vellis_platform_lookup_trace_tests"),
              Program("tests/vellis_toolbox_trace_tests"),
              Program("tests/vellis_toolbox_dispose_trace_tests"),
              Program("tests/vellis_dash_distances_trace_tests"),
              Program("tests/vellis_debug_output_trace_tests"),
              Program("tests/vellis_exit_trace_tests"),
              Program("tests/vellis_workloads_trace_tests"),
              Program("tests/docs/vellis_pages_tests"),
              Program("tests/fuzz/vellis_state_machine_tests"),
              Program("tests/fuzz/vellis_context_machine_tests"),
              Program("tests/vellis_context_threads_trace_tests"),
              Program("tests/vellis_context_swap_trace_tests"),
              Program("tests/vellis_debug_output_threads_trace_tests"),
              Program("tests/vellis_diff_gl_states_trace_tests")]
# Minutes, where those take seconds.
FAULT_TESTS = [Program("tests/faults/vellis_gl_fault_tests"),
               Program("tests/faults/vellis_allocation_fault_tests")]
FAST_TARGETS = ["vellis_tests_trace", "vellis_pages_tests"]
ALL_RENDER_TESTS = Program("tests/vellis_render_tests")
DRIVER_TESTS = [Program("tests/vellis_toolbox_render_tests"),
                Program("tests/vellis_context_host_render_tests"),
                Program("tests/vellis_context_hand_over_render_tests"),
                ALL_RENDER_TESTS]
# Those of vellis::text: the first has its sources compiled into it, the others are linked to it.
TEXT_TESTS = [Program("tests/text/vellis_text_tests")]
TEXT_DRIVER_TESTS = [Program("tests/text/vellis_text_render_tests")]
TEXT_FAULT_TESTS = [Program("tests/faults/vellis_text_fault_tests")]
ALL_TESTS = [*FAST_TESTS, *TEXT_TESTS, *DRIVER_TESTS, *TEXT_DRIVER_TESTS, *TEXT_FAULT_TESTS,
             *FAULT_TESTS]

# What the first lines of a source say of tests that must not share a process with others.
OWN_PROCESS = re.compile(r"^// needs: a process for (\S+)$", re.MULTILINE)
SUITE = re.compile(r"^(?:TYPED_)?TEST(?:_F|_P)?\(\s*(\w+)", re.MULTILINE)
TEST_OBJECT = re.compile(r"^((?:\w+/)*)CMakeFiles/(\w+)\.dir/((?:\w+/)*\w+_(?:trace|render)_test\.cpp|"
                         r"\w+_test\.cpp)\.o(?=:)", re.MULTILINE)


def targets(programs):
    return [program.target for program in programs]


def folder_of(path):
    """The folder of a file below src or include/vellis, and of its tests below tests."""
    parts = pathlib.PurePath(path).parent.parts
    return "/".join(parts[2:] if parts[0] == "include" else parts[1:])


def tests_of_folder(path, tests):
    """Those of these test sources that stand in the folder of a file's tests."""
    return sorted(test for test in tests if str(pathlib.PurePath(test).parent) ==
                  f"tests/{folder_of(path)}")


def tests_named_after(path, tests):
    """Those of these test sources that bear the name of a file of the library: class_trace_test.cpp is
    one for class.hpp, class_use_render_test.cpp another. Where none does, those of its folder."""
    stem = pathlib.PurePath(path).stem
    candidates = tests_of_folder(path, tests) if folder_of(path) else sorted(tests)
    return [test for test in candidates if pathlib.PurePath(test).name.startswith(f"{stem}_")] or \
        tests_of_folder(path, tests)


def filter_of(sources):
    """What chooses the suites of test sources, the ones with parameters, too."""
    suites = sorted({suite for source in sources for suite in SUITE.findall(source)})
    return ":".join(f"{suite}.*:*/{suite}.*:{suite}/*" for suite in suites)


def objects_of_tests(ninja_targets):
    """What `ninja -t targets all` says of the objects of tests: by their sources, the object and the
    path of its program."""
    return {folder + source: (match.group(), folder + program)
            for match in TEST_OBJECT.finditer(ninja_targets)
            for folder, program, source in [match.groups()]}


class Link(NamedTuple):
    """How a program is linked of a part of its objects."""
    command: list
    inputs: list


def link_of_part(command, objects, tests, output):
    """The line that links a program, changed to have only these of its tests' objects; `tests` are all
    objects of tests. What it takes beside is to be built before, too."""
    words = [word for word in shlex.split(command) if word not in (":", "&&")]
    words = [word for word in words if word not in tests or word in objects]
    words[words.index("-o") + 1] = output
    inputs = [word for word in words if not word.startswith(("/", "-")) and
              re.search(r"\.(o|a|so[\d.]*)$", word)]
    return Link(words, inputs)
