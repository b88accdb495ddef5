#!/usr/bin/env python3
"""Changes the library's sources one place at a time, and sees whether a test fails.

All mutants that rules.py finds in the sources are drawn from by a seed: a line for each draw, and one
of its mutants. Each is applied in a copy of the sources, and tests run until one fails:

  src        the library alone is built anew. The tests without a driver run, first those named after
             the changed file; where none fails, the tests that hold code of the file are built anew,
             too, and run again; where still none fails, the tests on a driver run that stand in the
             folder of the file's tests. Sources of vellis::text have tests of their own.
  include    the library is built anew, and of the tests without a driver only those named after the
             changed header, then those of its folder.

When all mutants have been through that, those that are left are tried with the rest: those of src with
the tests of faults and all on a driver, those of include with all tests, built anew. Mutants that do not
compile are counted apart, and others drawn in their place.

Usage: mutate.py ROOT [--seed N] [--count N] [--of src|include] [--list | --again]
"""

import argparse
import math
import pathlib
import random
import sys
import time

sys.dont_write_bytecode = True

import rules  # noqa: E402
from programs import (ALL_RENDER_TESTS, ALL_TESTS, ALL_TRACE_TESTS,  # noqa: E402
                      DRIVER_TESTS, FAST_TARGETS, FAST_TESTS, FAULT_TESTS, TEXT_DRIVER_TESTS,
                      TEXT_FAULT_TESTS, TEXT_TESTS, targets, tests_named_after, tests_of_folder)
from workshop import BuildError, Workshop, fail  # noqa: E402

KILLED, SURVIVED, UNCOMPILABLE = "killed", "survived", "does not compile"
LEFT = "not found yet" # by the tests that come first; the rest have not been tried
BATCH = 20 # mutants that are tried file by file


def by_header(path):
    """Whether tests must be built anew for a change of that file. Those that read the same table would
    change with it."""
    return path.startswith("include/") and not path.endswith(".inc")


def on_driver(test):
    return test and f"{test} (driver)"


class Trial:
    """What becomes of mutants in a workshop."""

    def __init__(self, workshop, sources):
        self.workshop = workshop
        self.sources = sources
        self.first, self.rest = True, False # which tests are tried
        self.seconds = []

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
        try:
            test = self._failing_test(mutant.path)
        except BuildError:
            return UNCOMPILABLE, ""
        if test is not None:
            return KILLED, test
        return (SURVIVED if self.rest else LEFT), ""

    def _build(self, *names):
        if not self.workshop.build(*names):
            raise BuildError

    def _failing_test(self, path):
        """The test that finds what was changed in a file, or None."""
        test = None
        if self.first:
            test = (self._failing_test_named(path) if by_header(path) else
                    self._failing_text_test() if "/text/" in path else
                    self._failing_test_of_library(path))
        if test is None and self.rest:
            test = self._failing_test_of_rest(path)
        return test

    def _failing_test_of_library(self, path):
        workshop = self.workshop
        self._build("vellis")
        named = workshop.commands_for(ALL_TRACE_TESTS, tests_named_after(path, workshop.tests))
        test = workshop.failing(named) or workshop.failing_test(FAST_TESTS)
        # Tests that read the same table would change with it.
        if test is None and not path.endswith(".inc"):
            self.stale_tests = True
            self._build(*FAST_TARGETS)
            self.stale_tests = "Building CXX object tests/" in workshop.said
            test = workshop.failing_test([program for program in FAST_TESTS
                                          if f" {program.path}\n" in workshop.said])
        return test or on_driver(workshop.failing(
            workshop.commands_for(ALL_RENDER_TESTS, tests_of_folder(path, workshop.tests))))

    def _failing_text_test(self):
        self.stale_tests = True
        self._build("vellis_text", *targets(TEXT_TESTS))
        return self.workshop.failing_test(TEXT_TESTS) or \
            on_driver(self.workshop.failing_test(TEXT_DRIVER_TESTS))

    def _failing_test_of_rest(self, path):
        """The same by what takes long: the tests on a driver and those of faults, all built anew for a
        header."""
        driver, others = DRIVER_TESTS, FAULT_TESTS
        if by_header(path):
            driver = DRIVER_TESTS + TEXT_DRIVER_TESTS
            others = [program for program in ALL_TESTS if program not in driver]
        elif "/text/" in path:
            driver, others = [], TEXT_FAULT_TESTS
        self.stale_tests = True
        self._build("vellis", "vellis_text",
                    *([] if path.endswith(".inc") else targets(driver + others)))
        self.stale_tests = "Building CXX object tests/" in self.workshop.said
        return self.workshop.failing_test(others) or on_driver(self.workshop.failing_test(driver))

    def _failing_test_named(self, path):
        """The same of a header, by the tests that concern it: those of one source at a time, since
        these take longer to compile than the library."""
        workshop = self.workshop
        if not workshop.compiles(path):
            raise BuildError
        self._build("vellis", *(["vellis_text"] if "/text/" in path else []))
        named = tests_named_after(path, workshop.tests)
        others = [test for test in tests_of_folder(path, workshop.tests) if test not in named]
        tests = in_turn(named) + in_turn(others)
        return next(filter(None, map(workshop.failing_part, tests)), None)

    def run(self, mutants, report):
        """The outcomes in the order of the mutants, which are tried file by file."""
        outcomes = {}
        self.stale_tests = False
        for mutant in sorted(mutants):
            if self.stale_tests:
                self._build("vellis", *FAST_TARGETS)
                self.stale_tests = False
            begin = time.monotonic()
            outcomes[mutant] = self.outcome(mutant)
            self.seconds.append(time.monotonic() - begin)
            what, test = outcomes[mutant]
            report(f"{what}{': ' + test if test else ''}", self.describe(mutant))
        return outcomes


def in_turn(tests):
    """Each of these test sources that need no driver by itself, the shortest names first."""
    return [[test] for test in sorted(tests, key=lambda test: (len(test), test))
            if not test.endswith("_render_test.cpp")]


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
    parser.add_argument("--minutes", type=float, default=math.inf,
                        help="begin no batch when they are over")
    parser.add_argument("--list", action="store_true", help="list all candidates, and do no more")
    parser.add_argument("--again", action="store_true", help="the survivors of the last run only")
    return parser.parse_args(arguments)


def try_drawn(trial, order, count, report, deadline=math.inf):
    """Tries mutants in their order until `count` of them have compiled, none is left, or the time is
    over. They are tried batch by batch, so that what was tried is the beginning of the draw."""
    outcomes = {}
    tried = 0
    while tried < count and order and time.monotonic() < deadline:
        size = min(count - tried, BATCH)
        batch, order = order[:size], order[size:]
        outcomes.update(trial.run(batch, report))
        tried = sum(what != UNCOMPILABLE for what, _ in outcomes.values())
    return outcomes


def try_left(trial, outcomes, report, deadline):
    """Tries with the rest of the tests what those that come first did not find."""
    trial.first, trial.rest = False, True
    for mutant in [mutant for mutant, (what, _) in outcomes.items() if what == LEFT]:
        if time.monotonic() < deadline:
            outcomes.update(trial.run([mutant], report))


def summary(outcomes, seconds):
    results = [what for what, _ in outcomes.values()]
    by_driver = sum(test.endswith("(driver)") for _, test in outcomes.values())
    left = results.count(LEFT)
    text = (f"{len(results) - results.count(UNCOMPILABLE)} mutants: {results.count(KILLED)} found, "
            f"{by_driver} of them only by a driver test; {results.count(SURVIVED)} survived. "
            f"{results.count(UNCOMPILABLE)} more did not compile.")
    if left:
        text += f" {left} were not found by the tests that come first, and not tried with the rest."
    return f"{text} A trial took {sum(seconds) / max(len(seconds), 1):.1f} seconds in the mean."


def prepare(workshop, options):
    workshop.copy_sources()
    workshop.configure()
    sources = workshop.sources(options.of)
    names = rules.Names([*workshop.sources("src").values(), *workshop.sources("include").values()],
                        workshop.gl_header())
    return sources, [mutant for path, source in sources.items()
                     for mutant in rules.mutants(path, source, names)]


def to_be_tried(candidates, trial, options, survivors_file):
    """The mutants in their order, and how many of them."""
    if not options.again:
        return drawn(candidates, trial.sources, options.seed), options.count
    last = set(survivors_file.read_text(encoding="utf-8").splitlines())
    order = [mutant for mutant in candidates if trial.describe(mutant) in last]
    print(f"{len(order)} of {len(last)} survivors are still candidates", flush=True)
    return order, len(order)


def main(arguments):
    options = read_arguments(arguments)
    root = options.root.resolve()
    workshop = Workshop(root, root / "build/mutations" / options.of)
    sources, candidates = prepare(workshop, options)
    trial = Trial(workshop, sources)
    if options.list:
        print(*map(trial.describe, candidates), sep="\n")
        return

    survivors_file = workshop.folder / "survivors"
    order, count = to_be_tried(candidates, trial, options, survivors_file)
    if not workshop.build("vellis", *FAST_TARGETS, *targets(ALL_TESTS)):
        fail(f"the unchanged sources do not build:\n{workshop.said[-4000:]}")
    workshop.read_tests()
    workshop.check_unchanged()
    workshop.check_parts([path for path in sources if by_header(path)])
    deadline = time.monotonic() + 60 * options.minutes
    with open(workshop.folder / "report", "w", encoding="utf-8") as file:
        def report(*texts):
            for stream in (sys.stdout, file):
                print(*texts, sep="  ", file=stream, flush=True)

        report(f"{len(candidates)} candidates in {options.of}/, seed {options.seed}")
        trial.rest = options.again
        outcomes = try_drawn(trial, order, count, report, deadline)
        try_left(trial, outcomes, report, deadline)
        report(f"\n{summary(outcomes, trial.seconds)}")
        survivors = sorted(trial.describe(mutant) for mutant, (what, _) in outcomes.items()
                           if what in (SURVIVED, LEFT))
        for survivor in survivors:
            report("survived", survivor)
    survivors_file.write_text("\n".join(survivors) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main(sys.argv[1:])
