"""Runs the benchmarks, prints the table of Quorl and its peers and that of growth, and writes both to
docs/performance.md with a plot: measure.py FOLDER PROGRAM... --amounts WHO=PROGRAM...

Times are CPU time; instructions are callgrind's, where valgrind is installed.
"""
import datetime
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import time

import plot
import tables
from figures import Figures

HERE = pathlib.Path(__file__).resolve().parent
DOCS = HERE.parent / "docs"


def tell(what):
    print(what, file=sys.stderr, flush=True)


def run_benchmarks(folder, program, figures):
    tell(f"{program} ...")
    run = subprocess.run([folder / program, "--benchmark_format=json"], check=True, capture_output=True)
    figures.add_runs(run for run in json.loads(run.stdout)["benchmarks"] if run["run_type"] == "iteration")


def count_instructions(folder, program, figures):
    tell(f"{program} under callgrind ...")
    for old in folder.glob(f"{program}.callgrind*"):
        old.unlink()
    subprocess.run(["valgrind", "--tool=callgrind", "--collect-atstart=no", "-q",
                    f"--callgrind-out-file={folder / program}.callgrind", folder / program,
                    "--benchmark_filter=-/[0-9]{4,}|worst case"], check=True, capture_output=True)
    for dump in folder.glob(f"{program}.callgrind.*"):
        figures.add_counts(dump.read_text(errors="replace"))


def invoices(folder, lines):
    """A file of so many invoices in euros, the same in each run."""
    path = folder / f"invoices_{lines}.csv"
    seeded = random.Random(17)
    with path.open("w") as file:
        file.write("reference,date,amount,currency,language\n")
        for i in range(lines):
            hundredths = int(10 ** seeded.uniform(2, 7))
            file.write(f"F-{i:07},2024-{i % 12 + 1:02}-{i % 28 + 1:02},{hundredths // 100}."
                       f"{hundredths % 100:02},EUR,{('FR', 'UK', 'NL', 'DE')[i % 4]}\n")
    return path


def run_whole(command):
    """CPU time in nanoseconds and the most memory in megabytes; a process that has ended tells the
    latter no more, and its parent would be told its own."""
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    memory, ended = 0, 0
    while not ended:
        status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
        memory = max([memory, *map(int, re.findall(r"^VmHWM:\s*(\d+) kB", status, re.M))])
        time.sleep(0.005)
        ended, code, used = os.wait4(process.pid, os.WNOHANG)
    if code != 0:
        sys.exit(f"{command[0]} failed")
    return (used.ru_utime + used.ru_stime) * 1e9, memory / 1024


def run_amounts(folder, programs, figures):
    """Whole processes, which read a file and write to nowhere."""
    work = "amount_in_words --file, N lines"
    for lines in (10_000, 100_000, 1_000_000):
        path = invoices(folder, lines)
        for who, program in programs * 3:
            tell(f"{program}, {lines:,} lines ...")
            cpu_time, memory = run_whole([program, *["--file"] * (who == "Quorl"), path])
            figures.add(f"{work}: time", who, lines, cpu_time)
            figures.add(f"{work}: MB of memory", who, lines, memory, better=max)


def measure(folder, programs, whole):
    figures = Figures()
    for program in programs:
        run_benchmarks(folder, program, figures)
    run_amounts(folder, whole, figures)
    if shutil.which("valgrind"):
        # The store's calls wait for the disk.
        for program in (program for program in programs if program != "store_bench"):
            count_instructions(folder, program, figures)
    return figures


def about(folder):
    processor = re.search(r"model name\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text())
    yield f"date: {datetime.date.today()}"
    yield f"processor: {processor[1] if processor else 'unknown'}, {os.cpu_count()} cores"
    yield from (folder / "about.txt").read_text().splitlines()


def main():
    folder = pathlib.Path(sys.argv[1])
    split = sys.argv.index("--amounts")
    # One locale for all, and the settings on the disk of the build, whatever /tmp is.
    os.environ.update(LC_ALL="C", TMPDIR=str(folder))
    figures = measure(folder, sys.argv[2:split], [entry.split("=", 1) for entry in sys.argv[split + 1:]])
    goals = tables.read_goals((HERE / "goals.txt").read_text())
    if unmatched := tables.unmatched(figures, goals):
        sys.exit(f"Works without Quorl, or goals without a work: {unmatched}")

    comparison, bars = tables.comparison(figures, goals)
    growth = tables.growth(figures)
    facts = "".join(f"- {line}\n" for line in about(folder))
    page = (HERE / "performance.md.in").read_text()
    for mark, content in (("@ABOUT@\n", facts), ("@COMPARISON@\n", comparison), ("@GROWTH@\n", growth)):
        page = page.replace(mark, content)
    (DOCS / "performance.md").write_text(page)
    (DOCS / "performance.svg").write_text(plot.bars(bars))
    print(facts, comparison, growth, sep="\n")


if __name__ == "__main__":
    main()
