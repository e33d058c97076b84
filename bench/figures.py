"""What was measured, as the names of rows in measure.hpp have it."""
import re

# What Google Benchmark says of each run; anything else is a counter.
STANDARD = {"name", "run_name", "run_type", "repetitions", "repetition_index", "threads", "iterations",
            "real_time", "cpu_time", "time_unit", "family_index", "per_family_instance_index"}


def split(name):
    """Work, who, size and case; without the settings that Google Benchmark adds to a name."""
    parts = [part for part in name.split("/")
             if not re.match(r"(min_time|repeats|iterations|real_time)\b", part)]
    work, who, size, case = (parts + ["0", "0"])[:4]
    return work, who, int(size), case


class Figures:
    """`costs[work][who][size]` in nanoseconds, or as the counter says that ends the work's name;
    `instructions` for one call in the same form."""

    def __init__(self):
        self.costs, self.instructions = {}, {}

    def add(self, work, who, size, cost, table=None, better=min):
        sizes = (self.costs if table is None else table).setdefault(work, {}).setdefault(who, {})
        sizes[size] = better(sizes.get(size, cost), cost)

    def add_runs(self, runs):
        """Of repetitions the fastest counts, of cases the slowest."""
        fastest = {}
        for run in runs:
            row = split(run["run_name"])
            counters = sorted(set(run) - STANDARD)
            for counter in counters:
                label = re.sub(r"^\d\. | ns$", "", counter)
                self.add(f"{row[0]}: {label}", row[1], row[2], run[counter])
            if not counters:
                fastest[row] = min(fastest.get(row, run["cpu_time"]), run["cpu_time"])
        for (work, who, size, _), time in fastest.items():
            self.add(work, who, size, time, better=max)

    def add_counts(self, dump):
        """A dump of callgrind under the name ROW@CALLS."""
        described = re.search(r"^desc: Trigger: Client Request: (.*)@(\d+)$", dump, re.M)
        totals = re.search(r"^totals: (\d+)", dump, re.M)
        if described and totals:
            work, who, size, _ = split(described[1])
            self.add(work, who, size, int(totals[1]) / int(described[2]), self.instructions)
