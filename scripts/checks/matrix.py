"""The rows of scripts/checks/matrix.sh, and what runs them.

Usage: matrix.py REPOSITORY [--packages] [--list] [--quick] [row...]

--packages prints what the rows need to have installed beyond what building needs; matrix.sh says what
the others do.
"""

import concurrent.futures
import dataclasses
import fnmatch
import os
import pathlib
import re
import subprocess
import sys
import threading
import time

# --- Tables ---


@dataclasses.dataclass(frozen=True)
class Row:
    name: str
    driver: str
    platform: str  # for OFFSCREEN_PLATFORM
    # full, 2.1 (OpenGL 2.1, GLSL 1.20 and the three extensions), an extension it is to lack, or a core
    # profile, for OFFSCREEN_PROFILE: then of that version
    context: str
    quick: bool = False  # is a row of --quick
    whole: bool = False  # no test may skip


ROWS = [
    Row("llvmpipe-egl", "llvmpipe", "egl-surfaceless", "full", quick=True, whole=True),
    Row("llvmpipe-egl-device", "llvmpipe", "egl-device", "full", whole=True),
    Row("llvmpipe-glx", "llvmpipe", "glx", "full", whole=True),
    Row("llvmpipe-osmesa", "llvmpipe", "osmesa", "full"),
    Row("softpipe-egl", "softpipe", "egl-surfaceless", "full", quick=True),
    Row("softpipe-egl-device", "softpipe", "egl-device", "full"),
    Row("softpipe-glx", "softpipe", "glx", "full"),
    Row("softpipe-osmesa", "softpipe", "osmesa", "full"),
    Row("zink-egl", "zink", "egl-surfaceless", "full"),
    Row("llvmpipe-2.1", "llvmpipe", "egl-surfaceless", "2.1", quick=True),
    Row("softpipe-2.1", "softpipe", "egl-surfaceless", "2.1"),
    Row("without-vertex-arrays", "llvmpipe", "egl-surfaceless", "GL_ARB_vertex_array_object", quick=True),
    Row("without-framebuffers", "llvmpipe", "egl-surfaceless", "GL_ARB_framebuffer_object", quick=True),
    Row("without-mapped-ranges", "llvmpipe", "egl-surfaceless", "GL_ARB_map_buffer_range", quick=True),
    Row("core-3.2", "llvmpipe", "egl-surfaceless", "core-3.2"),
    Row("core-3.3-forward", "llvmpipe", "glx", "core-3.3-forward"),
    Row("core-4.6-forward", "llvmpipe", "egl-surfaceless", "core-4.6-forward"),
    Row("softpipe-core-3.3", "softpipe", "egl-surfaceless", "core-3.3"),
    Row("hardware-egl", "hardware", "egl-device", "full"),
    Row("hardware-glx", "hardware", "glx", "full"),
]


@dataclasses.dataclass(frozen=True)
class KnownFailure:
    """A test that fails with a driver for a reason of the driver's. It must fail as it is known to: each
    of its assertions that fail has `says` in its message, and none has `but_not`."""

    driver: str
    test: str  # with * for any characters
    says: str  # a regular expression
    reason: str
    but_not: str = r"(?!)"  # nothing


BLEND_COLOR = "a change of glBlendColor between two draws has no effect; so it is in a program of nothing but GL"
ANOTHER_PANEL = r"Panel (?!blending-constants:)"
MULTISAMPLE = "glDisable(GL_MULTISAMPLE) has no effect on what is drawn"
KNOWN_FAILURES = [
    KnownFailure("zink", "GalleryRender.EveryPanelShowsWhatItMust", r"Panel blending-constants:",
                 BLEND_COLOR, ANOTHER_PANEL),
    KnownFailure("zink", "GalleryProgram.LeavesAPictureOfEachPanelAndAContactSheetAndSaysWhere",
                 r"Panel blending-constants:", BLEND_COLOR, ANOTHER_PANEL),
    KnownFailure("zink", "GalleryProgramOnAnOldDriver.NeedsNoMoreThan21WithTheExtensions",
                 r"Panel blending-constants:", BLEND_COLOR, ANOTHER_PANEL),
    KnownFailure("zink", "FragmentStateRender.StencilMaskWritesItsBitsAlone", r"\bstencil\(\)",
                 "a clear under a stencil mask clears the other bits, too; so it is in a program of nothing but GL"),
    KnownFailure("zink", "OffscreenFramebuffer.IsReadFromTheTopRowDown", r"\bimage\.at\(1, [012]\)",
                 "clears under three scissors, with nothing but GL, and two of them are lost, not always the same"),
    KnownFailure("zink", "BlitRender.MultiSamplingThatIsOffGivesNoIntermediateColors", r"\bnumGreys\(",
                 MULTISAMPLE),
    KnownFailure("zink", "CanvasLinesRender.MultisamplingLeavesStrokesTheirGeometry", r"\bshows\(scene", MULTISAMPLE),
    KnownFailure("zink", "ToolboxDashesRender/*.PatternGoesOnAroundTheCorner", r"\bfound\.size\(\)",
                 "one pixel differs where a line turns a corner"),
]

# Mesa's software drivers; a graphics card's is what comes unasked.
DRIVER_ENVIRONMENT = {
    "llvmpipe": {"LIBGL_ALWAYS_SOFTWARE": "1", "GALLIUM_DRIVER": "llvmpipe"},
    "softpipe": {"LIBGL_ALWAYS_SOFTWARE": "1", "GALLIUM_DRIVER": "softpipe"},
    "zink": {"LIBGL_ALWAYS_SOFTWARE": "1", "GALLIUM_DRIVER": "zink"},
    "hardware": {},
}

# The settings that have Mesa offer the version that a core profile is named by, and no other.
CORE_LIMITS = {
    f"core-{version}{forward}": {"MESA_GL_VERSION_OVERRIDE": version, "MESA_GLSL_VERSION_OVERRIDE": glsl}
    for version, glsl in (("3.2", "150"), ("3.3", "330"), ("4.1", "410"), ("4.5", "450"), ("4.6", "460"))
    for forward in ("", "-forward")
}

# What to install for a driver or a platform, beyond what building needs.
PACKAGES = {"zink": ["mesa-vulkan-drivers"], "glx": ["xvfb", "libx11-6"], "osmesa": ["libosmesa6"]}

# The extensions that OpenGL 2.1 has as parts of its own, under these names or later ones, and the three.
KEPT_EXTENSIONS = re.compile("|".join([
    "GL_ARB_(vertex_array_object|framebuffer_object|map_buffer_range)",
    "GL_EXT_framebuffer_multisample",
    "GL_ARB_(vertex|fragment)_(shader|program)",
    "GL_ARB_(occlusion_query|shadow|texture_non_power_of_two|pixel_buffer_object)",
    "GL_EXT_(shadow_funcs|pixel_buffer_object|texture_sRGB|texture_env_dot3)",
    "GL_(EXT|ATI)_blend_equation_separate",
    "GL_ATI_separate_stencil",
    "GL_EXT_stencil_two_side",
]))

# The tests of the libraries and of the examples, and those that need a process of their own. Those of text
# are there where that is built.
EXAMPLES = "examples/vellis_example_tests"
TEXT = "text/vellis_text_render_tests"
PROGRAMS = ["vellis_render_tests", "vellis_toolbox_render_tests", "vellis_context_host_render_tests",
            "vellis_context_threads_render_tests", "vellis_context_hand_over_render_tests", TEXT, EXAMPLES]
ALONE = "TrackedStatesRender.*"
# What --quick keeps of the examples, and what a test that hides an extension does: the programs that the
# others start have the whole context.
PANELS = "GalleryRender.*"

SECONDS_PER_PROGRAM = 900

COLUMNS = ["row", "driver", "OpenGL", "passed", "skipped", "known", "failed", "seconds"]


# --- What tests say ---


@dataclasses.dataclass
class Counts:
    passed: int = 0
    skips: list = dataclasses.field(default_factory=list)  # the reason of each
    known: list = dataclasses.field(default_factory=list)  # (KnownFailure, test)
    failures: list = dataclasses.field(default_factory=list)  # what failed
    unneeded: list = dataclasses.field(default_factory=list)  # tests that passed, and were known to fail


def messages(lines):
    """The messages of the assertions that failed, of the lines that a test printed."""
    found = []
    for line in lines:
        if re.fullmatch(r".*: Failure", line):
            found.append("")
        if found:
            found[-1] += line + "\n"
    return found


def known_failure(driver, test):
    for known in KNOWN_FAILURES:
        if known.driver == driver and fnmatch.fnmatchcase(test, known.test):
            return known
    return None


def is_as_known(known, failed):
    return bool(failed) and all(re.search(known.says, message) and not re.search(known.but_not, message)
                                for message in failed)


def count_results(driver, output):
    """What came of the tests that printed this with that driver."""
    counts = Counts()
    running, printed, reason = "", [], ""
    for line in output.splitlines():
        if match := re.match(r"\[ RUN      \] (\S+)", line):
            running, printed, reason = match[1], [], ""
        elif re.match(r"\[       OK \] .* ms\)$", line):
            counts.passed += 1
            if known_failure(driver, running):
                counts.unneeded.append(running)
            running = ""
        elif re.match(r"\[  SKIPPED \] .* ms\)$", line):
            counts.skips.append(reason)
            running = ""
        elif re.match(r"\[  FAILED  \] .* ms\)$", line):
            known = known_failure(driver, running)
            if known and is_as_known(known, messages(printed)):
                counts.known.append((known, running))
            else:
                counts.failures.append(running)
            running = ""
        elif line.startswith("ENDED EARLY "):
            counts.failures.append(f"{running}: {line}")
            running = ""
        else:
            if printed and printed[-1].endswith(": Skipped"):
                reason = line
            printed.append(line)
    return counts


def notes_on(counts):
    """A line for each reason to skip, each known failure and each failure."""
    for reason in dict.fromkeys(counts.skips):
        yield f"{counts.skips.count(reason)} skipped: {reason}"
    for known, test in counts.known:
        yield f"known to fail: {test}: {known.reason}"
    for test in counts.unneeded:
        yield f"known to fail, but passes: {test}: take it from the known failures in matrix.py"
    for failure in counts.failures:
        yield f"failed: {failure}"


# --- What the rows are ---


class NotRun(Exception):
    """Why a row cannot run."""


def wrong_driver(wanted, renderer):
    """Why the driver is not the one that the row is about; empty where it is."""
    if wanted == "hardware":
        if re.search("llvmpipe|softpipe", renderer):
            return f"no graphics card can be reached; the driver is {renderer}"
    elif wanted not in renderer:
        return f"the driver is {renderer}"
    return ""


class XServer:
    """An X server without a screen, which is started when the first row asks for it."""

    def __init__(self, results):
        self._log = results / "xvfb.log"
        self._lock = threading.Lock()
        self._process = None
        self._display = None

    def display(self):
        with self._lock:
            if self._display is None:
                self._display = self._start()
            return self._display

    def _start(self):
        reading, writing = os.pipe()
        with open(self._log, "wb") as log:
            try:
                self._process = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-noreset"],
                                                 stdout=log, stderr=log, pass_fds=[writing])
            except FileNotFoundError as error:
                raise NotRun("Xvfb is not here") from error
            finally:
                os.close(writing)
        with open(reading, encoding="ascii") as numbers:
            number = numbers.readline().strip()
        if not number:
            sys.exit(f"matrix.sh: Xvfb does not start: see {self._log}.")
        return ":" + number

    def stop(self):
        if self._process is not None:
            self._process.terminate()
            self._process.wait()


class Matrix:
    def __init__(self, repository, quick):
        self._build = repository / "build/default/tests"
        self._results = repository / "build/matrix"
        self._shaders = self._results / "shaders"
        self._quick = quick
        self._x_server = XServer(self._results)

    def run(self, rows):
        """Runs the rows, as many at a time as there are processors; prints and keeps the table. Returns
        the names of those that failed, and of those that did not run."""
        subprocess.run(["rm", "-rf", self._results], check=True)
        self._shaders.mkdir(parents=True)  # which Mesa does not make
        notes, failed, not_run = [], [], []
        with open(self._results / "results.md", "w", encoding="utf-8") as table:

            def say(text):
                print(text, flush=True)
                print(text, file=table, flush=True)

            say(table_line(COLUMNS))
            say(table_line(["---"] * 3 + ["---:"] * (len(COLUMNS) - 3)))
            with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
                # The slowest first, so that none is left alone at the end.
                slowest_first = sorted(rows, key=lambda row: row.driver != "softpipe")
                outcomes = {row: pool.submit(self._run_row, row) for row in slowest_first}
                for row in rows:
                    try:
                        cells, counts = outcomes[row].result()
                    except NotRun as reason:
                        say(table_line([row.name] + ["-"] * (len(COLUMNS) - 1)))
                        notes.append(f"{row.name}: not run: {reason}")
                        not_run.append(row.name)
                        continue
                    say(table_line(cells))
                    notes += [f"{row.name}: {note}" for note in notes_on(counts)]
                    if counts.failures:
                        failed.append(row.name)
            if notes:
                say("")
            for note in notes:
                say(f"- {note}")
        self._x_server.stop()
        print(f"This table, and the output of the tests: {self._results}")
        return failed, not_run

    def _run_row(self, row):
        begin = time.monotonic()
        environment = self._environment(row)
        log = self._results / f"{row.name}.log"
        found = self._driver(environment, log=log).splitlines()
        if reason := wrong_driver(row.driver, found[0]):
            raise NotRun(reason)
        if row.context == "2.1":
            environment |= self._limits(environment)
        elif row.context.startswith("GL_"):
            environment["RENDER_WITHOUT"] = row.context
        version = self._driver(environment).splitlines()[1]
        if row.context == "2.1" and not version.startswith("2.1"):
            raise NotRun(f"the driver does not let itself be limited; it offers OpenGL {version}")
        self._run_programs(row, environment, log)
        counts = count_results(row.driver, log.read_text(encoding="utf-8", errors="replace"))
        if row.whole and counts.skips:
            counts.failures.append("no test may skip here")
        cells = [row.name, found[0], version, counts.passed, len(counts.skips), len(counts.known),
                 len(counts.failures), round(time.monotonic() - begin)]
        return cells, counts

    def _environment(self, row):
        # What Mesa has compiled since this run began need not be compiled for each test anew.
        environment = dict(os.environ, OFFSCREEN_PLATFORM=row.platform, MESA_SHADER_CACHE_DIR=str(self._shaders))
        environment |= DRIVER_ENVIRONMENT[row.driver]
        # Of the compatibility kind, unless the row has another.
        environment["OFFSCREEN_PROFILE"] = row.context if row.context in CORE_LIMITS else ""
        environment |= CORE_LIMITS.get(row.context, {})
        # Vulkan, which zink draws with, asks for a folder of its own.
        environment.setdefault("XDG_RUNTIME_DIR", str(self._results))
        if row.platform == "glx" and row.driver != "hardware":
            environment["DISPLAY"] = self._x_server.display()
        return environment

    def _driver(self, environment, *arguments, log=None):
        """What the driver says about itself; what it says on standard error goes to a file."""
        run = subprocess.run([self._build / "vellis_driver", *arguments], env=environment,
                             capture_output=True, text=True, check=False)
        if log is not None:
            log.write_text(run.stderr, encoding="utf-8")
        if run.returncode != 0:
            raise NotRun((run.stderr.strip().splitlines() or [f"status {run.returncode}"])[-1])
        return run.stdout

    def _limits(self, environment):
        """The settings with which Mesa limits a context to OpenGL 2.1 and the three extensions. Every
        extension that the driver can do without is switched off, but for those that are kept: switching
        off one that it cannot do without takes others with it."""
        limits = {"MESA_GL_VERSION_OVERRIDE": "2.1", "MESA_GLSL_VERSION_OVERRIDE": "120"}

        def without(extensions):
            return limits | {"MESA_EXTENSION_OVERRIDE": " ".join("-" + name for name in extensions)}

        offered = [name for name in self._driver(environment | limits, "--extensions").split()
                   if not KEPT_EXTENSIONS.fullmatch(name)]
        run = subprocess.run([self._build / "vellis_driver"], env=environment | without(offered),
                             capture_output=True, text=True, check=False)
        fixed = re.findall(r"extension '(.*)' cannot be disabled", run.stdout + run.stderr)
        return without([name for name in offered if name not in fixed])

    def _run_programs(self, row, environment, log):
        for program in PROGRAMS:
            if program == TEXT and not (self._build / program).exists():
                continue
            only_panels = program == EXAMPLES and (self._quick or row.context.startswith("GL_"))
            self._run_tests(environment, log, program, PANELS if only_panels else "-" + ALONE)
        listed = subprocess.run([self._build / PROGRAMS[0], "--gtest_list_tests", f"--gtest_filter={ALONE}"],
                                capture_output=True, text=True, check=True).stdout
        suite = ""
        for line in listed.splitlines():
            if line.startswith(" "):
                self._run_tests(environment, log, PROGRAMS[0], suite + line.split()[0])
            elif line.endswith("."):
                suite = line

    def _run_tests(self, environment, log, program, tests):
        """Runs tests of a program; their output goes to the end of the file."""
        command = ["timeout", "--kill-after=10", str(SECONDS_PER_PROGRAM), self._build / program,
                   "--gtest_color=no", f"--gtest_filter={tests}"]
        run = subprocess.run(command, env=environment, check=False, stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT)
        output = run.stdout.decode("utf-8", errors="replace")
        if not re.search(r"^\[==========\] .* ran\.", output, re.MULTILINE):
            output += f"\nENDED EARLY with status {run.returncode}: {program} {tests}\n"
        with open(log, "a", encoding="utf-8") as end:
            end.write(output)


def table_line(cells):
    return "| " + " | ".join(str(cell) for cell in cells) + " |"


# --- The command line ---


def choose(quick, names):
    """The rows of the command line."""
    chosen = [row for row in ROWS if row.quick] if quick else []
    for name in names:
        row = next((row for row in ROWS if row.name == name), None)
        if row is None:
            sys.exit(f"matrix.sh: there is no row '{name}': 'scripts/checks/matrix.sh --list' names them.")
        chosen.append(row)
    return chosen or ROWS


def main(repository, *arguments):
    options = [argument for argument in arguments if argument.startswith("-")]
    names = [argument for argument in arguments if not argument.startswith("-")]
    quick = "--quick" in options
    if set(options) - {"--packages", "--list", "--quick"} or ("--list" in options and len(arguments) > 1):
        sys.exit("usage: matrix.sh [--list | [--quick] row...]")
    if "--list" in options:
        for row in ROWS:
            print(f"{row.name:22} {row.driver:9} {row.platform:16} {row.context}")
        return
    rows = choose(quick, names)
    if "--packages" in options:
        needed = {package for row in rows for of in (row.driver, row.platform)
                  for package in PACKAGES.get(of, [])}
        print("\n".join(sorted(needed)))
        return
    failed, not_run = Matrix(pathlib.Path(repository), quick).run(rows)
    if failed:
        sys.exit(f"matrix.sh: tests failed in the rows {' '.join(failed)}: see the .log files of these names "
                 f"in {repository}/build/matrix.")
    if not_run and (quick or names):
        sys.exit(f"matrix.sh: the rows {' '.join(not_run)} did not run: see above for what is missing.")


if __name__ == "__main__":
    main(*sys.argv[1:])
