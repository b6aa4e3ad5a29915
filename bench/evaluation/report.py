"""The results as Markdown, and as the lines that the chart is drawn from."""

from results import GROWTH_GOAL, LIBRARY, halved, others, peers_by_speed, verdicts


def number(value):
    if value is None:
        return ""
    return "%.0f" % value if value >= 100 else "%.3g" % value


def table(header, rows):
    lines = ["| " + " | ".join(header) + " |", "|" + "---|" * len(header)]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows]) + "\n"


def figure(value, measure):
    return number(value) + " " + measure


def described(verdict):
    actual = number(verdict.actual)
    goal = verdict.goal
    text = goal.text.replace("<=", "≤").replace(">=", "≥").replace(" x ", " × ")
    if goal.peer or goal.unit:
        text += " (%s)" % actual
    return text if verdict.reached else "**" + text + "**"


def judged(goals):
    if not goals:
        return ""
    return "reached" if all(verdict.reached for verdict in goals) else "**missed**"


def result_row(row, figures):
    ours, peers = figures[LIBRARY], peers_by_speed(figures)
    goals = verdicts(row, figures)
    best = figures[peers[0]] if peers else None
    rest = [name for name in others(figures) if not peers or name != peers[0]]
    return [
        row.title,
        figure(ours.value, row.measure),
        "%s %s" % (peers[0], number(best.value)) if peers else "",
        number(best.time / ours.time) + " ×" if peers else "",
        ", ".join("%s %s" % (name, number(figures[name].value)) for name in rest),
        "; ".join(described(verdict) for verdict in goals),
        judged(goals),
        cost(figures, ours, best),
    ]


def cost(figures, ours, best):
    unit = " MB" if ours.megabytes else ""
    values = [ours.megabytes or ours.allocations] + ([best.megabytes or best.allocations] if best else [])
    return " / ".join(number(value) for value in values) + unit


def measured(rows, figures):
    return [row for row in rows if LIBRARY in figures.get(row.workload, {})]


def results_table(rows, figures):
    header = ["workload", LIBRARY, "best peer", "times as fast", "others", "goal (actual)", "",
              "allocations or memory"]
    return table(header, [result_row(row, figures[row.workload]) for row in measured(rows, figures)])


def growth_table(growths):
    header = ["shape", "doubled from", "to", "worst ratio per doubling", "at", "mean ratio", "",
              "control, there"]
    return table(header, [growth_row(growth) for growth in growths])


def growth_row(growth):
    return [growth.shape, str(growth.first), str(growth.last), number(growth.worst), str(growth.at), number(growth.mean),
            "reached" if growth.worst <= GROWTH_GOAL else "**missed**", number(growth.control)]


def i386_table(rows, figures, figures32):
    lines = []
    for row in rows:
        ours, small = figures.get(row.workload, {}).get(LIBRARY), figures32.get(row.workload, {}).get(LIBRARY)
        if ours and small:
            goals = verdicts(halved(row), figures32[row.workload])
            lines.append([row.title, figure(ours.value, row.measure), figure(small.value, row.measure),
                          "; ".join(described(verdict) for verdict in goals), judged(goals)])
    return table(["workload", "x86-64", "i386", "goal (actual)", ""], lines)


def missed_rows(rows, figures):
    return [row.title for row in measured(rows, figures)
            if not all(verdict.reached for verdict in verdicts(row, figures[row.workload]))]


def missed(rows, figures, figures32, growths):
    """The titles of what is not reached."""
    return (missed_rows(rows, figures)
            + ["Growth: " + growth.shape for growth in growths if growth.worst > GROWTH_GOAL]
            + ["i386: " + title for title in missed_rows([halved(row) for row in rows], figures32)])


def markdown(rows, figures, figures32, growths, facts, left_out):
    not_reached = missed(rows, figures, figures32, growths)
    parts = [
        "# Results\n",
        "Written by `scripts/bench`; `bench/README.md` says what is measured and how to read it.\n",
        "\n".join("- %s: %s" % fact for fact in facts) + "\n",
        "Not reached: " + "; ".join(not_reached) + ".\n" if not_reached else "Every goal is reached.\n",
        "\n".join("- Left out: " + line for line in left_out) + "\n" if left_out else "",
        "![The library and its peers](results.svg)\n",
        "## Side by side\n",
        results_table(rows, figures),
        "## Growth\n",
        "The time for twice the input, divided by the time for the input; the goal is at most %s.\n" % GROWTH_GOAL,
        growth_table(growths),
    ]
    if figures32:
        parts += ["## 32-bit x86\n", "The library alone; the goals are half the speed of those above.\n",
                  i386_table(rows, figures, figures32)]
    return "\n".join(part for part in parts if part)


def chart_lines(rows, figures):
    """For bench/chart: one line per competitor, the workload's title and measure in front of it."""
    for row in measured(rows, figures):
        competitors = figures[row.workload]
        if not row.goals or not peers_by_speed(competitors):
            continue
        for name, result in sorted(competitors.items(), key=lambda item: item[1].time):
            yield "\t".join([row.title, row.measure, name, repr(result.value), repr(result.time)])
