"""Prints the table of ratios from the medians of the benchmarks, and writes it as JSON: used by scripts/bench."""
import json
import pathlib
import sys

SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


def machine():
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith(("model name", "Model")):
            return line.split(":", 1)[1].strip()
    return "unknown processor"


def medians(path):
    """Seconds, items a second and ratio of each benchmark; processor time unless a benchmark asks for real time."""
    found = {}
    for run in json.loads(path.read_text())["benchmarks"]:
        if run.get("aggregate_name") != "median" or run.get("error_occurred"):
            continue
        time = run["real_time" if "/real_time" in run["run_name"] else "cpu_time"] * SECONDS[run["time_unit"]]
        found[run["run_name"]] = (time, run.get("items_per_second"), run.get("ratio"))
    return found


def values(runs, ours, peer, sense, sizes):
    for size in sizes or [""]:
        name, other = ours.replace("{}", size), peer.replace("{}", size)
        alternating = other == "alternating"
        if name not in runs or (other and not alternating and other not in runs):
            continue
        seconds, rate, ratio = runs[name]
        if alternating:
            yield ratio
        elif not other:
            yield rate if sense == ">=" else seconds
        elif sense == "<=":
            yield seconds / runs[other][0]
        else:
            yield runs[other][0] / seconds


def rows_of(path):
    """Returns the fields of each row. A row with the size in its name becomes one row per size."""
    for line in pathlib.Path(path).read_text().splitlines():
        if not line or line.startswith("#"):
            continue
        work, *fields, sizes = (part.strip() for part in line.split(";"))
        for group in sizes.split() if "{}" in work else [sizes]:
            yield work.replace("{}", group), *fields, group.split()


def main(rows, results, programs):
    results, table, runs = pathlib.Path(results), [], {}
    for program in programs:
        path = results / f"{program}.json"
        runs[program] = medians(path) if path.exists() and path.stat().st_size else {}
    for work, program, ours, peer, goal, sizes in rows_of(rows):
        sense, bound, *unit = goal.split()
        found = list(values(runs.get(program, {}), ours, peer, sense, sizes))
        if not found:
            continue
        worst = max(found) if sense == "<=" else min(found)
        reached = worst <= float(bound) if sense == "<=" else worst >= float(bound)
        table.append({"work": work, "goal": goal, "measured": found, "reached": reached})
    print(f"Machine: {machine()}\n\n| work | must reach | measured | |\n|---|---|---|---|")
    for row in table:
        measured = " ".join(f"{value:.3g}" for value in row["measured"])
        print(f"| {row['work']} | {row['goal']} | {measured} | {'' if row['reached'] else 'missed'} |")
    report = {"machine": machine(), "rows": table}
    (results / "table.json").write_text(json.dumps(report, indent=1) + "\n")


main(sys.argv[1], sys.argv[2], sys.argv[3:])
