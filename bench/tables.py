"""The figures as tables, and what goals.txt wants of them."""
import fnmatch
import re

SCALES = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def read_goals(text):
    """(work, goal) for each goal."""
    rows = [line.split(" = ") for line in text.splitlines() if line and not line.startswith("#")]
    return [(work, goal) for work, goals in rows for goal in goals.split("; ")]


def is_for(pattern, work, size):
    return fnmatch.fnmatch(work, pattern) or fnmatch.fnmatch(f"{work}/{size}", pattern)


def limit_of(goal, peers):
    """The peer that a goal names, empty for a figure, and the most that Quorl may take; None where the
    peer is not installed."""
    figure = re.fullmatch(r"([\d.]+) ?(ns|us|ms|s|)", goal)
    if figure:
        return "", float(figure[1]) * SCALES.get(figure[2], 1)
    who, sign, factor = re.fullmatch(r"(.*) ([*/]) ([\d.]+)", goal).groups()
    who = min(peers, key=peers.get, default="") if who == "best" else who
    if who not in peers:
        return None
    return who, peers[who] * float(factor) if sign == "*" else peers[who] / float(factor)


def verdict(goal, quorl, limit):
    if quorl <= limit:
        return f"{goal}: met"
    return f"{goal}: missed" + (f", {quorl / limit:.2f} times that" if limit else "")


def ratio(number):
    return f"{number:,.0f}" if number >= 99.5 else f"{number:#.2g}" if number < 9.95 else f"{number:.1f}"


def shown(cost, work):
    counter = re.search(r": (.*)", work)
    if counter and counter[1] not in ("median", "time"):
        return f"{cost:,.0f}" if cost >= 100 or cost == int(cost) else f"{cost:.1f}"
    unit = next((unit for unit, scale in reversed(SCALES.items()) if cost >= scale), "ns")
    return f"{cost / SCALES[unit]:#.3g} {unit}".replace(". ", " ")


def table(heading, rows):
    widths = [max(len(row[i]) for row in [heading, *rows]) for i in range(len(heading))]
    lines = [heading, ["-" * width for width in widths], *rows]
    return "\n".join("| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |"
                     for line in lines) + "\n"


def comparison(figures, goals):
    """The table of Quorl beside its peers, and its bars: label, peer, ratio, what became of goals.
    A work without a peer and without a goal is no row of it."""
    rows, bars = [], []
    for work, by_who in figures.costs.items():
        for size, quorl in by_who.get("Quorl", {}).items():
            peers = {who: sizes[size] for who, sizes in by_who.items() if who != "Quorl" and size in sizes}
            verdicts = {}
            for goal in (goal for pattern, goal in goals if is_for(pattern, work, size)):
                if limit := limit_of(goal, peers):
                    verdicts.setdefault(limit[0], []).append(verdict(goal, quorl, limit[1]))
            counts = {who: f"{sizes[size]:,.0f}" for who, sizes in figures.instructions.get(work, {}).items()
                      if size in sizes}
            label = re.sub(r"\bN\b", f"{size:,}", work)
            own = [label, shown(quorl, work), counts.get("Quorl", "")]
            for who in [""] * ("" in verdicts) + list(peers):
                times = peers[who] / quorl if who and quorl else None
                rows.append(own + [who, shown(peers[who], work) if who else "", counts.get(who, ""),
                                   ratio(times) if times else "", "; ".join(verdicts.get(who, []))])
                own = ["", "", ""]
                if times:
                    bars.append((label, who, times, rows[-1][-1]))
    return table(["Work", "Quorl", "instructions", "Peer", "its cost", "instructions", "peer / Quorl",
                  "Goal, the most Quorl may take"], rows), bars


def growth(figures):
    rows = []
    for work, by_who in figures.costs.items():
        sizes = sorted(by_who.get("Quorl", {}).items())
        if len(sizes) > 1:
            (small, before), (large, after) = sizes[0], sizes[-1]
            rows.append([work, ", ".join(f"{size:,}" for size, _ in sizes),
                         ", ".join(shown(cost, work) for _, cost in sizes), f"{large / max(small, 1):,.0f}",
                         ratio(after / before), ratio(after / before / (large / max(small, 1)))])
    return table(["Work", "N", "Quorl", "N grows", "cost grows", "cost / N"], rows)


def unmatched(figures, goals):
    """Works without Quorl and goals without a work: a name that was mistyped."""
    works = [work for work, by_who in figures.costs.items() if "Quorl" not in by_who]
    sizes = [(work, size) for work, by_who in figures.costs.items() for size in by_who.get("Quorl", {})]
    return works + [pattern for pattern, _ in goals if not any(is_for(pattern, *row) for row in sizes)]
