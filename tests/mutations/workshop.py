"""A copy of the library's sources, what is built of it, and how its tests are run."""

import contextlib
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time

from programs import (ALL_TESTS, OWN_PROCESS, filter_of, link_of_part,
                      objects_of_tests, tests_of_folder)

SUFFIXES = (".cpp", ".hpp", ".inc")
# What a test that has lost its way may use: it ends there.
MEMORY_LIMIT = 8 << 30
OUTPUT_LIMIT = 64 << 20
LIMIT = 300 # seconds, of a program that has not been measured


def fail(text):
    sys.exit(f"mutate.py: {text}")


def limit_resources():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    resource.setrlimit(resource.RLIMIT_FSIZE, (OUTPUT_LIMIT, OUTPUT_LIMIT))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))


def run(command, limit=None, prepare=None, folder=None):
    """The exit status, None at the time limit, and the output."""
    with tempfile.TemporaryFile() as output:
        process = subprocess.Popen(command, stdout=output, stderr=subprocess.STDOUT,
                                   stdin=subprocess.DEVNULL, preexec_fn=prepare, cwd=folder,
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

    def __init__(self, root, folder):
        self.root = root
        self.folder = folder
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
        linker = "-fuse-ld=lld" if shutil.which("ld.lld") else ""
        status, output = run(["cmake", "-S", self.source, "-B", self.build_folder, "-G", "Ninja",
                              "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=",
                              f"-DCMAKE_EXE_LINKER_FLAGS={linker}",
                              f"-DCMAKE_SHARED_LINKER_FLAGS={linker}",
                              f"-DCMAKE_MODULE_LINKER_FLAGS={linker}",
                              "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON", "-DVELLIS_BUILD_TESTS=ON",
                              "-DVELLIS_BUILD_EXAMPLES=ON", "-DVELLIS_UNITE_TESTS=OFF"])
        if status != 0:
            fail(f"configuring failed:\n{output}")

    def build(self, *targets):
        """Whether the targets could be built; what the compiler says of it is in `said`."""
        status, self.said = run(["cmake", "--build", self.build_folder, "--target", *targets])
        return status == 0

    def compiles(self, header):
        """Whether a header compiles by itself, as far as that shows before its templates are used."""
        command = next(line for line in self._ninja("commands", "vellis").splitlines()
                       if " -c " in line and "/src/engine/enumerator_checks.cpp" in line)
        flags = re.search(r"(?<= )-.*?(?= -MD )", command).group().split()
        return run(["c++", *flags, "-fsyntax-only", "-w", "-x", "c++", self.source / header])[0] == 0

    def gl_header(self):
        return (self.build_folder / "loader/include/vellis/glad/gl.h").read_text(encoding="utf-8")

    def sources(self, folder):
        paths = sorted(path for path in (self.source / folder).rglob("*") if path.suffix in SUFFIXES)
        return {str(path.relative_to(self.source)): path.read_text(encoding="utf-8")
                for path in paths}

    def _ninja(self, tool, *arguments):
        return run(["ninja", "-C", self.build_folder, "-t", tool, *arguments])[1]

    def read_tests(self):
        """Finds what is known of the tests before anything is changed: their sources, their objects,
        and those that have a process of their own, which a mutant may keep from being listed."""
        self.tests = {path: text for path, text in self.sources("tests").items()
                      if path.endswith("_test.cpp")}
        self.objects = objects_of_tests(self._ninja("targets", "all"))
        for program in ALL_TESTS:
            alone = [pattern for test, text in self.tests.items()
                     if self.objects.get(test, ("", ""))[1] == program.path
                     for pattern in OWN_PROCESS.findall(text)]
            if alone:
                self.alone[program] = self._listed(program, ":".join(alone))

    def _listed(self, program, pattern):
        _, output = run([self.build_folder / program.path, "--gtest_list_tests",
                         f"--gtest_filter={pattern}"])
        suite, found = "", []
        for line in output.splitlines():
            name = line.split("#")[0].strip()
            if not line.startswith(" "):
                suite = name
            else:
                found.append(suite + name)
        return found

    def _others(self, *programs):
        """The part of a filter that leaves out what has a process of its own."""
        return "-" + ":".join(test for program in programs for test in self.alone.get(program, []))

    def commands(self, programs):
        """The commands that run the tests of those programs."""
        for program in programs:
            path = self.build_folder / program.path
            yield (path, f"--gtest_filter={self._others(program)}", "--gtest_fail_fast")
            for test in self.alone.get(program, []):
                yield (path, f"--gtest_filter={test}")

    def commands_for(self, program, tests):
        """The command that runs only the suites of these test sources of a program, if any."""
        chosen = [self.tests[test] for test in tests
                  if self.objects.get(test, ("", ""))[1] == program.path]
        if chosen:
            yield (self.build_folder / program.path, "--gtest_fail_fast",
                   f"--gtest_filter={filter_of(chosen)}{self._others(program)}")

    def parts(self, tests):
        """How to link the programs of these test sources alone, those on a driver last."""
        by_program = {program.path: set() for program in ALL_TESTS}
        for test in sorted(set(tests) & set(self.objects)):
            tested, program = self.objects[test]
            by_program.get(program, set()).add(tested)
        every = {tested for tested, _ in self.objects.values()}
        for program, objects in by_program.items():
            if not objects:
                continue
            target = pathlib.PurePath(program).name
            command = self._ninja("commands", target).splitlines()[-1]
            yield link_of_part(command, objects, every, f"{program}_part")

    def failing_part(self, tests):
        """Builds and runs these test sources alone, without those that have a process of their own. A
        test that fails, or None; raises BuildError where they do not compile."""
        for link in self.parts(tests):
            if not self.build(*link.inputs) or run(link.command, folder=self.build_folder)[0] != 0:
                raise BuildError
            program = self.build_folder / link.command[link.command.index("-o") + 1]
            others = self._others(*ALL_TESTS)
            test = self.failing([(program, f"--gtest_filter={others}", "--gtest_fail_fast")])
            if test is not None:
                return test + (" (driver)" if "render" in program.name else "")
        return None

    def failing(self, commands):
        """The name of a test that fails, or None."""
        for command in commands:
            status, output = run(command, self._limit_of(command[0]), limit_resources)
            if status != 0:
                how = "" if status == 1 else " (time limit)" if status is None else " (crash)"
                return f"{test_at_the_end(output) or command[0].name}{how}"
        return None

    def _limit_of(self, path):
        """How many seconds a program has, of whose tests all or some run."""
        return self.limits.get(path.with_name(path.name.removesuffix("_part")), LIMIT)

    def failing_test(self, programs):
        return self.failing(self.commands(programs))

    def check_unchanged(self):
        """All must be well before anything is changed; how long the tests take sets their limits."""
        for command in self.commands(ALL_TESTS):
            begin = time.monotonic()
            status, output = run(command, None, limit_resources)
            if status != 0:
                fail(f"{command[0]} fails on the unchanged sources:\n{output[-4000:]}")
            limit = 30 + 10 * (time.monotonic() - begin)
            self.limits[command[0]] = max(limit, self.limits.get(command[0], 0))

    def check_parts(self, paths):
        """The same of the tests of folders, alone."""
        for tests in {tuple(tests_of_folder(path, self.tests)) for path in paths}:
            try:
                test = self.failing_part(tests)
            except BuildError:
                test = self.said
            if test is not None:
                fail(f"{', '.join(tests)} alone fail on the unchanged sources: {test}")


class BuildError(Exception):
    """A mutant that does not compile."""
