"""Reads what the measurements of this folder leave, and makes their tables, each against its limits.

Usage: reports.py times LIMITS             reports of Google Benchmark, one run after the other
       reports.py workloads LIMITS         prints the filter of Google Benchmark for those with a limit
       reports.py canvas LIMITS            lines: workload size side value; the sides of a turn together
       reports.py canvas_curves FOLDER     the same: leaves FOLDER/side, the time of a point for each size
       reports.py curves FOLDER            a report: leaves FOLDER/operation-side, a line for each size
       reports.py peers                    a report with several libraries
       reports.py instructions LIMITS      lines: workload size library runs allocations instructions
       reports.py headers UMBRELLA FAMILY  lines: name, a tab, seconds; in rounds, the reference first
       reports.py startup LIMIT            lines: bare or engine, microseconds, those of a second load
       reports.py sizes                    lines: library kilobytes, and the limit where it has one
       reports.py contexts LIMIT...        lines: what value; a limit is WHAT=most:VALUE or WHAT=least:VALUE
       reports.py held                     the file HELD_LIMITS: all limits with what was measured last

Each reads its standard input, and fails where something is beyond its limit. Where the environment names a
file HELD_LIMITS, they add a line to it for each limit: what, measured, the limit, the
room that is left; with tabs between them.
"""

import collections
import json
import os
import pathlib
import statistics
import sys

UMBRELLA = "vellis/vellis.hpp"


class Missing(Exception):
    """What a report lacks."""


# --- What is read ---

Benchmark = collections.namedtuple("Benchmark", "workload size counters")
Run = collections.namedtuple("Run", "workload size library allocations instructions")


def read_benchmarks(text):
    """The benchmarks of reports that follow one another: of `family/operation/size`, the first two are the
    workload."""
    decoder, text, found = json.JSONDecoder(), text.strip(), []
    while text:
        report, end = decoder.raw_decode(text)
        text = text[end:].strip()
        for benchmark in report["benchmarks"]:
            family, operation, size = benchmark["name"].split("/")[:3]
            found.append(Benchmark(f"{family}/{operation}", int(size), benchmark))
    if not found:
        raise Missing("nothing was measured.")
    return found


def read_limits(path):
    """The limits of each workload and size, from a file with comments behind #."""
    limits = {}
    for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines():
        if fields := line.split("#")[0].split():
            limits[fields[0], int(fields[1])] = [float(field) for field in fields[2:]]
    return limits


def read_runs(text):
    """The runs, with what one of each has cost. The first is the loop alone, which is taken off the others."""
    runs = []
    for line in text.splitlines():
        workload, size, library, *numbers = line.split()
        count, allocations, instructions = map(float, numbers)
        runs.append(Run(workload, int(size), library, allocations / count, instructions / count))
    if len(runs) < 2:
        raise Missing("nothing was counted.")
    loop = runs[0].instructions
    return [run._replace(instructions=run.instructions - loop) for run in runs[1:]]


def grouped(pairs):
    groups = {}
    for key, value in pairs:
        groups.setdefault(key, []).append(value)
    return groups


# --- What is said ---


def joined(values):
    return ", ".join(f"{value:.6g}" for value in values)


class Verdicts:
    """Holds values against limits, and remembers whether one was above its own."""

    def __init__(self):
        self.above = 0

    def of(self, what, values, limits):
        """Each value is to be at most its limit."""
        rooms = [(limit - value) / limit for value, limit in zip(values, limits) if limit != 0]
        is_within = all(value <= limit for value, limit in zip(values, limits))
        return self.judge(what, values, limits, rooms, "within" if is_within else "ABOVE")

    def of_least(self, what, value, limit):
        """The value is to be at least the limit."""
        return self.judge(what, [value], [limit], [(value - limit) / limit], "within" if value >= limit else "BELOW")

    def judge(self, what, values, limits, rooms, verdict):
        self.above += verdict != "within"
        if path := os.environ.get("HELD_LIMITS"):
            room = f"{100 * min(rooms):.0f} %" if rooms else ""
            with open(path, "a", encoding="utf-8") as lines:
                lines.write(f"{what}\t{joined(values)}\t{joined(limits)}\t{room}\n")
        return f"{verdict} {joined(limits)}"

    def missing(self, limits, measured, path):
        """A limit of what was not measured holds nothing."""
        for workload, size in limits:
            if (workload, size) not in measured:
                print(f"{path} has a limit for {workload} {size}, which was not measured", file=sys.stderr)
                self.above += 1


def say(text):
    print(text.rstrip())


def times(verdicts, text, path):
    limits = read_limits(path)
    measured = grouped(((run.workload, run.size), run.counters) for run in read_benchmarks(text))
    say(f"{'workload':24} {'size':>7} {'by hand, ns':>12} {'vellis, ns':>12} {'ratio':>7}  of all runs")
    for (workload, size), runs in measured.items():
        raw, own = (statistics.median(run[key] for run in runs) for key in ("raw_ns", "vellis_ns"))
        ratios = [run["vellis_ratio"] for run in runs]
        ratio = round(statistics.median(ratios), 3)
        limit = limits.get((workload, size))
        verdict = verdicts.of(f"time {workload} {size}", [ratio], limit) if limit else ""
        say(f"{workload:24} {size:7} {raw:12.0f} {own:12.0f} {ratio:7.3f}  "
            f"{min(ratios):.3f} to {max(ratios):.3f}   {verdict}")
    verdicts.missing(limits, measured, path)


def workloads(_verdicts, _text, path):
    say(f"^({'|'.join(workload for workload, _ in read_limits(path))})/")


def read_sides(text):
    """By workload and size, the values of each side, in turns."""
    measured = {}
    for line in text.splitlines():
        workload, size, side, value = line.split()
        measured.setdefault((workload, int(size)), {}).setdefault(side, []).append(float(value))
    if not measured:
        raise Missing("nothing was measured.")
    return measured


def read_side_limits(path):
    """The limits of sides beside another one or alone: by workload, size, side and the other one."""
    limits = {}
    for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines():
        if fields := line.split("#")[0].split():
            workload, size, side, other, limit = fields
            limits[workload, int(size), side, other] = float(limit)
    return limits


def canvas(verdicts, text, path):
    measured, limits = read_sides(text), read_side_limits(path)
    say(f"{'workload':20} {'size':>8} {'side':14} {'value':>12} {'beside':8} {'ratio':>8}  of all turns")
    for (workload, size), sides in measured.items():
        first = next(iter(sides))
        for side, values in sides.items():
            others = [other for *key, other in limits if key == [workload, size, side]]
            for other in others or ([first] if side != first else ["-"]):
                if other not in sides and other != "-":
                    continue
                beside = sides.get(other, [1.0] * len(values))
                ratios = [value / base for value, base in zip(values, beside)]
                ratio = round(statistics.median(ratios), 3)
                limit = limits.pop((workload, size, side, other), None)
                verdict = verdicts.of(f"{workload} {size}, {side} beside {other}", [ratio],
                                      [limit]) if limit is not None else ""
                numbers = "" if other == "-" else f"{ratio:8.3f}  {min(ratios):.3f} to {max(ratios):.3f}"
                say(f"{workload:20} {size:8} {side:14} {statistics.median(values):12.1f} {other:8} "
                    f"{numbers:27} {verdict}")
    for workload, size, side, other in limits:
        print(f"{path} has a limit for {workload} {size}, {side} beside {other}, which was not measured",
              file=sys.stderr)
        verdicts.above += 1


def canvas_curves(_verdicts, text, folder):
    for (_, size), sides in read_sides(text).items():
        for side, values in sides.items():
            with open(pathlib.Path(folder) / side, "a", encoding="ascii") as curve:
                curve.write(f"{size} {statistics.median(values) / size}\n")


def curves(_verdicts, text, folder):
    for side in ("raw", "vellis"):
        for operation, runs in grouped((run.workload.split("/")[1], run)
                                       for run in read_benchmarks(text)).items():
            lines = [f"{run.size} {run.counters[side + '_ns']}\n" for run in runs]
            with open(pathlib.Path(folder) / f"{operation}-{side}", "a", encoding="ascii") as curve:
                curve.writelines(lines)


def peers(_verdicts, text):
    say(f"{'workload':20} {'library':10} {'ns':>10} {'ratio':>8}")
    for run in read_benchmarks(text):
        libraries = [name[:-len("_ns")] for name in run.counters if name.endswith("_ns")]
        for library in sorted(libraries, key=lambda name: (name != "raw", name != "vellis", name)):
            ratio = run.counters.get(f"{library}_ratio", 1)
            say(f"{run.workload:20} {library:10} {run.counters[f'{library}_ns']:10.0f} {ratio:8.2f}")


def instructions(verdicts, text, path):
    """The first library of a workload is raw GL."""
    limits = read_limits(path)
    measured = grouped(((run.workload, run.size), run) for run in read_runs(text))
    say(f"{'workload':24} {'size':>7}  {'library':10} {'instructions':>12} {'added':>8} {'allocations':>12}")
    held = set()
    for (workload, size), (raw, *others) in measured.items():
        say(f"{workload:24} {size:7}  {raw.library:10} {raw.instructions:12.0f}")
        for run in others:
            added = run.instructions - raw.instructions
            verdict = ""
            if run.library == "vellis" and (workload, size) in limits:
                held.add((workload, size))
                verdict = verdicts.of(f"instructions, allocations {workload} {size}",
                                      [added, run.allocations], limits[workload, size])
            say(f"{'':24} {'':7}  {run.library:10} {run.instructions:12.0f} {added:+8.0f} "
                f"{run.allocations:12.4g}   {verdict}")
    verdicts.missing(limits, held, path)


def headers(verdicts, text, umbrella, family):
    """The headers take turns: the ratios are those of one round."""
    measured = grouped((name, float(seconds)) for name, seconds in
                       (line.split("\t") for line in text.splitlines()))
    if not measured:
        raise Missing("nothing was measured.")
    reference = next(iter(measured.values()))
    say(f"{'header':80} {'ms':>8} {'ratio':>8}")
    for name, seconds in measured.items():
        ratio = statistics.median(own / other for own, other in zip(seconds, reference))
        verdict = ""
        if name.startswith("vellis/"):
            verdict = verdicts.of(name, [ratio], [float(umbrella if name == UMBRELLA else family)])
        say(f"{name:80} {1000 * statistics.median(seconds):8.0f} {ratio:8.2f}   {verdict}")


def startup(verdicts, text, limit):
    measured = grouped((name, [float(first), float(again)]) for name, first, again in
                       (line.split() for line in text.splitlines()))
    if {"bare", "engine"} - measured.keys():
        raise Missing("nothing was measured.")
    (bare, bare_again), (engine, engine_again) = (zip(*measured[name]) for name in ("bare", "engine"))
    ratio = statistics.median(own / other for own, other in zip(engine, bare))
    say(f"{'load':28} {'µs':>8} {'ratio':>8}")
    say(f"{'the loader alone':28} {statistics.median(bare):8.0f}")
    say(f"{'engine::init':28} {statistics.median(engine):8.0f} {ratio:8.2f}   "
        f"{verdicts.of('engine::init', [ratio], [float(limit)])}")
    say(f"{'the loader alone, again':28} {statistics.median(bare_again):8.0f}")
    say(f"{'engine::init, again':28} {statistics.median(engine_again):8.0f}")


def sizes(verdicts, text):
    for line in text.splitlines():
        name, size, *limit = line.split()
        verdict = verdicts.of(name, [int(size)], [int(limit[0])]) if limit else ""
        say(f"{name:40} {size:>6} kB   {verdict}")


def contexts(verdicts, text, *limits):
    left = dict(limit.split("=") for limit in limits)
    for line in text.splitlines():
        what, value = line.split()
        verdict = ""
        if what in left:
            kind, limit = left.pop(what).split(":")
            if kind == "least":
                verdict = verdicts.of_least(what, float(value), float(limit))
            else:
                verdict = verdicts.of(what, [float(value)], [float(limit)])
        say(f"{what:18} {value:>8}   {verdict}")
    for what in left:
        print(f"{what} was not measured", file=sys.stderr)
        verdicts.above += 1


def held(_verdicts, text):
    """Of what was measured again, the last counts."""
    rows = {line.split("\t")[0]: line.split("\t") for line in text.splitlines()}
    if not rows:
        raise Missing("no limit was held.")
    for row in [["what", "measured", "limit", "room"], *rows.values()]:
        say("{:56} {:>14} {:>14} {:>7}".format(*row))


def main(kind="", *arguments):
    kinds = {report.__name__: report
             for report in (times, workloads, canvas, canvas_curves, curves, peers, instructions, headers, startup,
                            sizes, contexts, held)}
    if kind not in kinds:
        sys.exit(__doc__)
    verdicts = Verdicts()
    try:
        kinds[kind](verdicts, "" if kind == "workloads" else sys.stdin.read(), *arguments)
    except Missing as missing:
        sys.exit(str(missing))
    sys.exit(1 if verdicts.above else 0)


if __name__ == "__main__":
    main(*sys.argv[1:])
