#!/usr/bin/env python3
"""Changes the library's sources one place at a time, and sees whether a test fails.

All mutants that rules.py finds in the sources are drawn from by a seed: a line for each draw, and one
of its mutants. Each is applied in a copy of the sources, the library alone is built anew, and the
tests that need no driver run; where none fails, the tests that hold code of the changed file are built
anew, too, and run again; where still none fails, the tests on a driver run. Mutants that do not
compile are counted apart, and others drawn in their place.

Usage: mutate.py ROOT [--seed N] [--count N] [--of src|include] [--list | --again]
"""

import argparse
import contextlib
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from typing import NamedTuple

sys.dont_write_bytecode = True

import rules  # noqa: E402

SUFFIXES = (".cpp", ".hpp", ".inc")


class Program(NamedTuple):
    """A program of tests. What it keeps for the whole process some suites must not share."""
    path: str
    alone: str = ""


# The quickest to find something first.
FAST_TESTS = [Program("tests/vellis_trace_tests", "Loader.EntryPointsAreNullBeforeTheFirstLoad"),
              Program("tests/vellis_platform_lookup_trace_tests"),
              Program("tests/vellis_toolbox_trace_tests"),
              Program("tests/vellis_toolbox_dispose_trace_tests"),
              Program("tests/vellis_dash_distances_trace_tests"),
              Program("tests/vellis_exit_trace_tests"),
              Program("tests/vellis_workloads_trace_tests"),
              Program("tests/docs/vellis_pages_tests"),
              Program("tests/faults/vellis_allocation_fault_tests"),
              Program("tests/faults/vellis_gl_fault_tests"),
              Program("tests/fuzz/vellis_state_machine_tests"),
              Program("tests/fuzz/vellis_context_machine_tests"),
              Program("tests/vellis_context_threads_trace_tests"),
              Program("tests/vellis_diff_gl_states_trace_tests", "DiffGlStatesTrace.*")]
FAST_TARGETS = ["vellis_tests_trace", "vellis_pages_tests"]
DRIVER_TESTS = [Program("tests/vellis_toolbox_render_tests"),
                Program("tests/vellis_context_host_render_tests"),
                Program("tests/vellis_context_hand_over_render_tests"),
                Program("tests/vellis_render_tests", "TrackedStatesRender.*")]
DRIVER_TARGETS = ["vellis_toolbox_render_tests", "vellis_context_host_render_tests",
                  "vellis_context_hand_over_render_tests", "vellis_render_tests"]
# What a test that has lost its way may use: it ends there.
MEMORY_LIMIT = 8 << 30
OUTPUT_LIMIT = 64 << 20

KILLED, SURVIVED, UNCOMPILABLE = "killed", "survived", "does not compile"


def fail(text):
    sys.exit(f"mutate.py: {text}")


def limit_resources():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    resource.setrlimit(resource.RLIMIT_FSIZE, (OUTPUT_LIMIT, OUTPUT_LIMIT))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))


def run(command, limit=None, prepare=None):
    """The exit status, None at the time limit, and the output."""
    with tempfile.TemporaryFile() as output:
        process = subprocess.Popen(command, stdout=output, stderr=subprocess.STDOUT,
                                   stdin=subprocess.DEVNULL, preexec_fn=prepare,
                                   start_new_session=True)
        try:
            status = process.wait(limit)
        except subprocess.TimeoutExpired:
            status = None
        finally:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(process.pid, signal.SIGKILL) # what it has started, too
            process.wait()
        output.seek(0)
        return status, output.read().decode("utf-8", "replace")


def test_at_the_end(output):
    """The test that failed first, or the one that ran last; nothing where none did."""
    failed = re.search(r"^\[  FAILED  \] ([^\s,]+\.[^\s,]+)", output, re.MULTILINE)
    begun = re.findall(r"^\[ RUN      \] (\S+)", output, re.MULTILINE)
    return failed[1] if failed else begun[-1] if begun else ""


class Workshop:
    """A copy of the sources, and a build of it."""

    def __init__(self, root):
        self.root = root
        self.folder = root / "build/mutations"
        self.source = self.folder / "source"
        self.build_folder = self.folder / "build"
        self.alone = {}
        self.limits = {}

    def copy_sources(self):
        """Files that are as they were keep their time, so that nothing is built in vain."""
        listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others",
                                 "--exclude-standard"], cwd=self.root, check=True,
                                capture_output=True, text=True).stdout.split("\0")
        wanted = {name for name in listed if name and (self.root / name).is_file()}
        for path in sorted(self.source.rglob("*")):
            if path.is_file() and str(path.relative_to(self.source)) not in wanted:
                path.unlink()
        for name in wanted:
            source, copy = self.root / name, self.source / name
            if not copy.exists() or copy.read_bytes() != source.read_bytes():
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(source, copy)

    def configure(self):
        # Without optimisation and debug information an object takes the least time. A changed
        # shared library needs no test to be linked anew.
        status, output = run(["cmake", "-S", self.source, "-B", self.build_folder, "-G", "Ninja",
                              "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=",
                              "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON", "-DVELLIS_BUILD_TESTS=ON",
                              "-DVELLIS_BUILD_EXAMPLES=ON"])
        if status != 0:
            fail(f"configuring failed:\n{output}")

    def build(self, *targets):
        """Whether the targets could be built; what the compiler says of it is in `said`."""
        status, self.said = run(["cmake", "--build", self.build_folder, "--target", *targets])
        return status == 0

    def gl_header(self):
        return (self.build_folder / "loader/include/vellis/glad/gl.h").read_text(encoding="utf-8")

    def sources(self, folder):
        paths = sorted(path for path in (self.source / folder).rglob("*") if path.suffix in SUFFIXES)
        return {str(path.relative_to(self.source)): path.read_text(encoding="utf-8")
                for path in paths}

    def commands(self, programs):
        """The commands that run the tests of those programs."""
        for program in programs:
            path = self.build_folder / program.path
            yield (path, f"--gtest_filter=-{program.alone}", "--gtest_fail_fast")
            for test in self.alone.get(program, []):
                yield (path, f"--gtest_filter={test}")

    def list_tests(self):
        """Finds the tests that have a process of their own: a mutant may keep them from being listed."""
        for program in filter(lambda program: program.alone, FAST_TESTS + DRIVER_TESTS):
            _, output = run([self.build_folder / program.path, "--gtest_list_tests",
                             f"--gtest_filter={program.alone}"])
            suite = ""
            for line in output.splitlines():
                name = line.split("#")[0].strip()
                if not line.startswith(" "):
                    suite = name
                else:
                    self.alone.setdefault(program, []).append(suite + name)

    def failing_test(self, programs):
        """The name of a test that fails, or None."""
        for command in self.commands(programs):
            status, output = run(command, self.limits[command], limit_resources)
            if status != 0:
                how = "" if status == 1 else " (time limit)" if status is None else " (crash)"
                return f"{test_at_the_end(output) or command[0].name}{how}"
        return None

    def check_unchanged(self):
        """All must be well before anything is changed; how long the tests take sets their limits."""
        self.list_tests()
        for command in self.commands(FAST_TESTS + DRIVER_TESTS):
            begin = time.monotonic()
            status, output = run(command, None, limit_resources)
            if status != 0:
                fail(f"{command[0]} fails on the unchanged sources:\n{output[-4000:]}")
            self.limits[command] = 30 + 10 * (time.monotonic() - begin)


class Trial:
    """What becomes of mutants in a workshop."""

    def __init__(self, workshop, sources):
        self.workshop = workshop
        self.sources = sources

    def describe(self, mutant):
        source = self.sources[mutant.path]
        line = source.count("\n", 0, mutant.begin) + 1
        column = mutant.begin - source.rfind("\n", 0, mutant.begin)
        return (f"{mutant.path}:{line}:{column}: {mutant.rule}: {source[mutant.begin:mutant.end]!r} -> "
                f"{mutant.new!r}")

    def outcome(self, mutant):
        """What became of it, and the test that found it."""
        path = self.workshop.source / mutant.path
        source = self.sources[mutant.path]
        path.write_text(mutant.applied(source), encoding="utf-8")
        try:
            return self._outcome_of_change(mutant)
        finally:
            path.write_text(source, encoding="utf-8")

    def _outcome_of_change(self, mutant):
        workshop = self.workshop
        public = mutant.path.startswith("include/")
        if not workshop.build("vellis", *(FAST_TARGETS if public else [])):
            return UNCOMPILABLE, ""
        test, by_driver = workshop.failing_test(FAST_TESTS), ""
        # Tests that read the same table would change with it.
        if test is None and not public and not mutant.path.endswith(".inc"):
            if not workshop.build(*FAST_TARGETS):
                return UNCOMPILABLE, ""
            if "Building CXX object tests/" in workshop.said:
                test = workshop.failing_test(FAST_TESTS)
                self.stale_tests = True
        if test is None:
            test = workshop.failing_test(DRIVER_TESTS)
            by_driver = " (driver)"
        return (SURVIVED, "") if test is None else (KILLED, test + by_driver)

    def run(self, mutants, report):
        """The outcomes in the order of the mutants, which are tried file by file."""
        outcomes = {}
        self.stale_tests = False
        for mutant in sorted(mutants):
            if self.stale_tests:
                self.workshop.build("vellis", *FAST_TARGETS)
                self.stale_tests = False
            outcomes[mutant] = self.outcome(mutant)
            what, test = outcomes[mutant]
            report(f"{what}{': ' + test if test else ''}", self.describe(mutant))
        return outcomes


def drawn(mutants, sources, seed):
    """All mutants in the order of the draw: a first one of each line, then a second one of each ..."""
    lines = {}
    for mutant in mutants:
        number = sources[mutant.path].count("\n", 0, mutant.begin)
        lines.setdefault((mutant.path, number), []).append(mutant)
    draw = random.Random(seed)
    rounds = []
    for key in sorted(lines):
        draw.shuffle(lines[key])
        rounds += [(place, draw.random(), mutant) for place, mutant in enumerate(lines[key])]
    return [mutant for _, _, mutant in sorted(rounds)]


def read_arguments(arguments):
    parser = argparse.ArgumentParser(prog="mutations.sh", description="Checks the tests by mutants.")
    parser.add_argument("root", type=pathlib.Path)
    parser.add_argument("--seed", type=int, default=1, help="another seed draws other mutants")
    parser.add_argument("--count", type=int, default=300, help="mutants that compile")
    parser.add_argument("--of", choices=("src", "include"), default="src",
                        help="the sources, or the public headers, for which the tests are built anew")
    parser.add_argument("--list", action="store_true", help="list all candidates, and do no more")
    parser.add_argument("--again", action="store_true", help="the survivors of the last run only")
    return parser.parse_args(arguments)


def try_drawn(trial, order, count, report):
    """Tries mutants in their order until `count` of them have compiled, or none is left."""
    outcomes = {}
    tried = 0
    while tried < count and order:
        batch, order = order[:count - tried], order[count - tried:]
        outcomes.update(trial.run(batch, report))
        tried = sum(what != UNCOMPILABLE for what, _ in outcomes.values())
    return outcomes


def main(arguments):
    options = read_arguments(arguments)
    workshop = Workshop(options.root.resolve())
    workshop.copy_sources()
    workshop.configure()
    sources = workshop.sources(options.of)
    names = rules.Names([*workshop.sources("src").values(), *workshop.sources("include").values()],
                        workshop.gl_header())
    candidates = [mutant for path, source in sources.items()
                  for mutant in rules.mutants(path, source, names)]
    trial = Trial(workshop, sources)
    if options.list:
        print(*map(trial.describe, candidates), sep="\n")
        return

    survivors_file = workshop.folder / "survivors"
    order, count = drawn(candidates, sources, options.seed), options.count
    if options.again:
        last = set(survivors_file.read_text(encoding="utf-8").splitlines())
        order = [mutant for mutant in candidates if trial.describe(mutant) in last]
        count = len(order)
        print(f"{count} of {len(last)} survivors are still candidates", flush=True)

    if not workshop.build("vellis", *FAST_TARGETS, *DRIVER_TARGETS):
        fail(f"the unchanged sources do not build:\n{workshop.said[-4000:]}")
    workshop.check_unchanged()
    with open(workshop.folder / "report", "w", encoding="utf-8") as file:
        def report(*texts):
            for stream in (sys.stdout, file):
                print(*texts, sep="  ", file=stream, flush=True)

        report(f"{len(candidates)} candidates in {options.of}/, seed {options.seed}")
        outcomes = try_drawn(trial, order, count, report)
        results = [what for what, _ in outcomes.values()]
        by_driver = sum(test.endswith("(driver)") for _, test in outcomes.values())
        survivors = [trial.describe(mutant) for mutant, (what, _) in outcomes.items()
                     if what == SURVIVED]
        report(f"\n{len(results) - results.count(UNCOMPILABLE)} mutants: "
               f"{results.count(KILLED)} found, {by_driver} of them only by a driver test; "
               f"{len(survivors)} survived. {results.count(UNCOMPILABLE)} more did not compile.")
        for survivor in sorted(survivors):
            report("survived", survivor)
    survivors_file.write_text("\n".join(sorted(survivors)) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main(sys.argv[1:])
