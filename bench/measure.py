"""Runs the benchmarks, prints the table of Quorl and its peers, and writes it with the growth of cost
and a plot to docs/performance.md: measure.py FOLDER PROGRAM... --amounts WHO=PROGRAM...

What a row's name says stands in measure.hpp, what is wanted in goals.txt. Times are CPU time of the
fastest repetition, instructions are callgrind's, where valgrind is installed.
"""
import datetime
import fnmatch
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys

import plot

HERE = pathlib.Path(__file__).resolve().parent
DOCS = HERE.parent / "docs"
STANDARD = {"name", "run_name", "run_type", "repetitions", "repetition_index", "threads", "iterations",
            "real_time", "cpu_time", "time_unit", "family_index", "per_family_instance_index"}
AMOUNTS = "amount_in_words --file, N lines"


class Figures:
    """What was measured: figures[work][who][size], in nanoseconds unless the work names a counter."""

    def __init__(self):
        self.times, self.instructions = {}, {}

    @staticmethod
    def split(name):
        parts = [part for part in name.split("/")
                 if not re.match(r"(min_time|repeats|iterations|real_time)\b", part)]
        work, who, size, case = (parts + ["0", "0"])[:4] if len(parts) < 4 else parts
        return work, who, int(size), case

    @staticmethod
    def put(table, work, who, size, figure, better=min):
        sizes = table.setdefault(work, {}).setdefault(who, {})
        sizes[size] = better(sizes.get(size, figure), figure)

    def read(self, runs):
        fastest = {}
        for run in runs:
            work, who, size, case = self.split(run["run_name"])
            counters = sorted(set(run) - STANDARD)
            for counter in counters:
                label = re.sub(r"^\d\. | ns$", "", counter)
                self.put(self.times, f"{work}: {label}", who, size, run[counter])
            if not counters:
                self.put(fastest, (work, who, size), case, 0, run["cpu_time"])
        for (work, who, size), cases in fastest.items():
            slowest_case = max(times[0] for times in cases.values())
            self.put(self.times, work, who, size, slowest_case)

    def count(self, dump):
        described = re.search(r"^desc: Trigger: Client Request: (.*)@(\d+)$", dump, re.M)
        totals = re.search(r"^totals: (\d+)", dump, re.M)
        if described and totals:
            work, who, size, _ = self.split(described[1])
            self.put(self.instructions, work, who, size, int(totals[1]) / int(described[2]), max)


def run_benchmarks(folder, program, figures):
    print(f"{program} ...", file=sys.stderr, flush=True)
    out = folder / f"{program}.json"
    subprocess.run([folder / program, f"--benchmark_out={out}", "--benchmark_out_format=json"],
                   check=True, stdout=subprocess.DEVNULL)
    runs = json.loads(out.read_text())["benchmarks"]
    figures.read([run for run in runs if run["run_type"] == "iteration"])


def count_instructions(folder, program, figures):
    print(f"{program} under callgrind ...", file=sys.stderr, flush=True)
    for old in folder.glob(f"{program}.callgrind*"):
        old.unlink()
    subprocess.run(["valgrind", "--tool=callgrind", "--collect-atstart=no", "-q",
                    f"--callgrind-out-file={folder / program}.callgrind", folder / program,
                    "--benchmark_filter=-/[0-9]{5,}|worst case"],
                   check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    for dump in folder.glob(f"{program}.callgrind.*"):
        figures.count(dump.read_text(errors="replace"))


def invoices(folder, lines):
    """A file of so many invoices, the same in each run."""
    path = folder / f"invoices_{lines}.csv"
    if not path.exists():
        seeded = random.Random(17)
        with path.open("w") as file:
            file.write("reference,date,amount,currency,language\n")
            for i in range(lines):
                hundredths = int(10 ** seeded.uniform(2, 7))
                file.write(f"F-{i:07},2024-{i % 12 + 1:02}-{i % 28 + 1:02},{hundredths // 100}."
                           f"{hundredths % 100:02},EUR,{'FR UK NL DE'.split()[i % 4]}\n")
    return path


def run_whole(who, program, folder, figures):
    print(f"{program} ...", file=sys.stderr, flush=True)
    options = ["--file"] if who == "Quorl" else []
    for lines in (10_000, 100_000, 1_000_000):
        for _ in range(3):
            with open(os.devnull, "wb") as nowhere:
                process = subprocess.Popen([program, *options, invoices(folder, lines)], stdout=nowhere)
                _, status, used = os.wait4(process.pid, 0)
            if status != 0:
                sys.exit(f"{program} failed")
            time = (used.ru_utime + used.ru_stime) * 1e9
            figures.put(figures.times, f"{AMOUNTS}: time", who, lines, time)
            figures.put(figures.times, f"{AMOUNTS}: MB of memory", who, lines, used.ru_maxrss / 1024)


# --- Goals ---

def read_goals():
    lines = (HERE / "goals.txt").read_text().splitlines()
    rows = [line.split(" = ") for line in lines if line and not line.startswith("#")]
    return [(work, goals.split("; ")) for work, goals in rows]


def goals_of(goals, work, size):
    return [goal for pattern, wanted in goals for goal in wanted
            if fnmatch.fnmatch(work, pattern) or fnmatch.fnmatch(f"{work}/{size}", pattern)]


def limit_of(goal, peers):
    """The peer that a goal names and the most that Quorl may take; None where it is not installed."""
    figure = re.fullmatch(r"([\d.]+)(?: (ns|us|ms))?", goal)
    if figure:
        return "", float(figure[1]) * {"ns": 1, "us": 1e3, "ms": 1e6, None: 1}[figure[2]]
    who, sign, factor = re.fullmatch(r"(.*) ([*/]) ([\d.]+)", goal).groups()
    if who == "best" and peers:
        who = min(peers, key=peers.get)
    if who not in peers:
        return None
    return who, peers[who] * float(factor) if sign == "*" else peers[who] / float(factor)


def verdict(goal, quorl, limit):
    return f"{goal}: " + ("met" if quorl <= limit else f"missed, {ratio(quorl / limit)} times that"
                          if limit else "missed")


# --- Tables ---

def ratio(number):
    return f"{number:.2f}" if number < 9.995 else f"{number:.0f}" if number > 99 else f"{number:.1f}"


def shown(figure, work):
    if ": " in work and not re.search(r": (median|time)$", work):
        return f"{figure:,.0f}" if figure >= 100 or figure == int(figure) else f"{figure:.1f}"
    for unit, scale in (("s", 1e9), ("ms", 1e6), ("us", 1e3), ("ns", 1)):
        if figure >= scale or unit == "ns":
            value = figure / scale
            return f"{value:.3g} {unit}" if value < 1000 else f"{value:.0f} {unit}"


def at_size(work, size):
    return re.sub(r"\bN\b", f"{size:,}", work)


def table(heading, rows):
    widths = [max(len(row[i]) for row in [heading, *rows]) for i in range(len(heading))]
    lines = [heading, ["-" * width for width in widths], *rows]
    return "\n".join("| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |"
                     for line in lines) + "\n"


def compare(figures, goals):
    """Rows of the table of Quorl beside its peers, and of its plot: label, peer, ratio, met."""
    rows, bars = [], []
    for work, by_who in figures.times.items():
        for size, quorl in sorted(by_who.get("Quorl", {}).items()):
            peers = {who: sizes[size] for who, sizes in by_who.items() if who != "Quorl" and size in sizes}
            wanted = [(goal, limit_of(goal, peers)) for goal in goals_of(goals, work, size)]
            counts = figures.instructions.get(work, {})
            count = lambda who: f"{counts[who][size]:,.0f}" if size in counts.get(who, {}) else ""
            label, first = at_size(work, size), True
            for who in [""] * any(limit and limit[0] == "" for _, limit in wanted) + list(peers):
                verdicts = [verdict(goal, quorl, limit[1]) for goal, limit in wanted
                            if limit and limit[0] == who]
                times = peers[who] / quorl if who and quorl else 0
                rows.append([label if first else "", shown(quorl, work) if first else "",
                             count("Quorl") if first else "", who, shown(peers[who], work) if who else "",
                             count(who), ratio(times) if times else "", "; ".join(verdicts)])
                if times:
                    bars.append((label, who, times, "missed" not in rows[-1][-1]))
                first = False
    return rows, bars


def growth(figures):
    rows = []
    for work, by_who in figures.times.items():
        sizes = sorted(by_who.get("Quorl", {}).items())
        if len(sizes) > 1:
            (small, before), (large, after) = sizes[0], sizes[-1]
            rows.append([work, ", ".join(f"{size:,}" for size, _ in sizes),
                         ", ".join(shown(time, work) for _, time in sizes), f"{large / small:,.0f}",
                         ratio(after / before), ratio(after / before / (large / small))])
    return rows


def processor():
    info = pathlib.Path("/proc/cpuinfo").read_text()
    return re.search(r"model name\s*: (.*)", info)[1] + f", {os.cpu_count()} cores"


def check(figures, goals):
    """A name that was mistyped must not hide a row or a goal."""
    orphans = [work for work, by_who in figures.times.items() if "Quorl" not in by_who]
    idle = [pattern for pattern, _ in goals
            if not any(goals_of([(pattern, ["0"])], work, size)
                       for work, by_who in figures.times.items() for size in by_who.get("Quorl", {}))]
    if orphans or idle:
        sys.exit(f"Without a row of Quorl: {orphans}; goals without a row: {idle}")


def main():
    folder = pathlib.Path(sys.argv[1])
    split = sys.argv.index("--amounts")
    programs, whole = sys.argv[2:split], sys.argv[split + 1:]
    # One locale for all, and the settings on the disk of the build, whatever /tmp is.
    os.environ.update(LC_ALL="C", TMPDIR=str(folder))
    figures, goals = Figures(), read_goals()
    for program in programs:
        run_benchmarks(folder, program, figures)
    for entry in whole:
        run_whole(*entry.split("=", 1), folder, figures)
    check(figures, goals)
    if shutil.which("valgrind"):
        for program in programs:
            if program != "store_bench":
                count_instructions(folder, program, figures)

    rows, bars = compare(figures, goals)
    comparison = table(["Work", "Quorl", "instructions", "Peer", "its figure", "instructions",
                        "peer / Quorl", "Goal, the most Quorl may take"], rows)
    grown = table(["Work", "N", "Quorl", "N grows", "cost grows", "cost / N"], growth(figures))
    about = [f"date: {datetime.date.today()}", f"processor: {processor()}",
             *(folder / "about.txt").read_text().splitlines()]
    page = (HERE / "performance.md.in").read_text()
    for mark, content in (("ABOUT", "\n".join(f"- {line}" for line in about)), ("COMPARISON", comparison),
                          ("GROWTH", grown)):
        page = page.replace(f"@{mark}@\n", content.rstrip() + "\n")
    (DOCS / "performance.md").write_text(page)
    (DOCS / "performance.svg").write_text(plot.bars(bars))
    print("\n".join(about), comparison, grown, sep="\n\n")


if __name__ == "__main__":
    main()
