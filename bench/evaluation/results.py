"""Results of one run: read from Google Benchmark's JSON, and held against the goals."""

import collections
import json
import os
import re
import statistics

LIBRARY = "zutarnex"
GROWTH_GOAL = 2.5

# What one competitor did in one workload. `time` is in seconds: CPU time per operation, or that of a process.
Figure = collections.namedtuple("Figure", "value time allocations megabytes")
Row = collections.namedtuple("Row", "workload title measure goals")
Goal = collections.namedtuple("Goal", "text relation number unit peer")
Verdict = collections.namedtuple("Verdict", "goal reached actual")
Growth = collections.namedtuple("Growth", "shape first last worst at mean control")


def parse_goal(text):
    match = re.fullmatch(r"(<=|>=) ([0-9.]+)(?: (MB)| x (.+))?", text)
    if not match:
        raise ValueError("not a goal: " + text)
    relation, number, unit, peer = match.groups()
    return Goal(text, relation, float(number), unit, peer)


def read_rows(path):
    rows = []
    for line in open(path):
        if line.startswith("#") or not line.strip():
            continue
        workload, title, measure, goals = line.rstrip("\n").split("\t")
        goals = [parse_goal(goal.strip()) for goal in goals.split(";") if goal.strip()]
        rows.append(Row(workload, title, measure, goals))
    return rows


def repetitions(path):
    """The repetitions of each benchmark of a JSON file, by its name."""
    runs = collections.defaultdict(list)
    for run in json.load(open(path))["benchmarks"]:
        if run["run_type"] == "iteration" and not run.get("error_occurred"):
            runs[run["run_name"]].append(run)
    return runs


SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


def times(runs):
    return [run["cpu_time"] * SECONDS[run["time_unit"]] for run in runs]


def read_figures(path, measures):
    """{workload: {competitor: Figure}} of the workloads that `measures` has a measure for."""
    figures = collections.defaultdict(dict)
    for name, runs in repetitions(path).items():
        workload, competitor = name.split("/", 1)
        if workload not in measures:
            continue
        round_time, units = statistics.median(times(runs)), runs[0]["units"]
        time = round_time / units
        value = runs[0]["bytes"] / round_time / 1e9 if measures[workload] == "GB/s" else time * 1e9
        figures[workload][competitor] = Figure(value, time, runs[0]["allocations"] / units, None)
    return figures


def read_growth(path):
    """The shortest times count: what else the machine does can only add, and would pass for growth."""
    kinds = {"growth": collections.defaultdict(dict), "control": collections.defaultdict(dict)}
    for name, runs in repetitions(path).items():
        shape, size = name.split("/")[:2]
        kind, shape = shape.split(".", 1)
        kinds[kind][shape][int(size)] = min(times(runs))
    return [growth_of(shape, by_size, kinds["control"].get(shape, {}))
            for shape, by_size in kinds["growth"].items() if len(by_size) > 1]


def ratios_of(by_size):
    sizes = sorted(by_size)
    return {large: by_size[large] / by_size[small] for small, large in zip(sizes, sizes[1:])}


def growth_of(shape, by_size, control):
    sizes = sorted(by_size)
    ratios = ratios_of(by_size)
    at = max(ratios, key=ratios.get)
    mean = (by_size[sizes[-1]] / by_size[sizes[0]]) ** (1 / (len(sizes) - 1))
    return Growth(shape, sizes[0], sizes[-1], ratios[at], at, mean, ratios_of(control).get(at))


def verdicts(row, figures):
    """One Verdict per goal that could be judged: a goal that names a missing peer is left out."""
    judged = []
    ours = figures[LIBRARY]
    for goal in row.goals:
        if goal.peer:
            if goal.peer not in figures:
                continue
            theirs = figures[goal.peer].time
            actual = theirs / ours.time if goal.relation == ">=" else ours.time / theirs
        else:
            actual = ours.megabytes if goal.unit == "MB" else ours.value
        reached = actual <= goal.number if goal.relation == "<=" else actual >= goal.number
        judged.append(Verdict(goal, reached, actual))
    return judged


def halved(row):
    """The goals of the 32-bit build: half the speed, the same memory."""
    factors = {"<=": 2, ">=": 0.5}
    goals = []
    for goal in row.goals:
        amount = goal.number if goal.unit else goal.number * factors[goal.relation]
        rest = goal.text.split(" ", 2)[2:]
        goals.append(goal._replace(number=amount, text=" ".join([goal.relation, "%g" % amount] + rest)))
    return row._replace(goals=goals)


def is_peer(competitor):
    """Not the library in another mode, nor what only reads."""
    return not competitor.startswith(LIBRARY) and not competitor.endswith("(empty)")


def peers_by_speed(figures):
    return sorted((name for name in figures if is_peer(name)), key=lambda name: figures[name].time)


def others(figures):
    """Everybody but the library itself, the fastest first."""
    return sorted((name for name in figures if name != LIBRARY), key=lambda name: figures[name].time)


def read_peers(path):
    """[(name, version or None)]"""
    if not os.path.exists(path):
        return []
    rows = [line.rstrip("\n").split("\t") for line in open(path)]
    return [(name, None if version == "missing" else version) for name, version in rows]
