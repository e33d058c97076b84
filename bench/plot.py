"""Bars as SVG: how many times as long as Quorl each peer takes, on a logarithmic scale."""
import html
import math

ROW, LEFT, WIDTH, TOP = 18, 430, 480, 46
LOW, HIGH = 0.1, 100.0
MET, MISSED, NO_GOAL, INK = "#2f7d4f", "#c0792a", "#9aa3ab", "#333"


def x_of(times):
    share = math.log(min(max(times, LOW), HIGH) / LOW) / math.log(HIGH / LOW)
    return LEFT + share * WIDTH


def text(x, y, content, anchor="start"):
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}">{html.escape(content)}</text>'


def grid(height):
    for power in range(-1, 3):
        x = x_of(10.0 ** power)
        yield f'<line x1="{x:.1f}" y1="{TOP - 6}" x2="{x:.1f}" y2="{height - 8}" stroke="#bbb"/>'
        yield text(x, TOP - 12, f"{10.0 ** power:g}", "middle")


def bar(y, label, who, times, verdicts):
    start, end = sorted((x_of(1.0), x_of(times)))
    colour = MISSED if "missed" in verdicts else MET if verdicts else NO_GOAL
    yield text(LEFT - 8, y + 12, f"{label}: {who}", "end")
    yield (f'<rect x="{start:.1f}" y="{y + 2}" width="{end - start:.1f}" height="{ROW - 5}" '
           f'fill="{colour}"/>')
    yield text(end + 5, y + 12, f"{times:.3g}")


def bars(rows):
    """`rows` of label, peer, how many times as long as Quorl it takes, and what became of goals."""
    height = TOP + ROW * len(rows) + 12
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{LEFT + WIDTH + 60}" height="{height}" '
             f'font-family="sans-serif" font-size="11" fill="{INK}">',
             '<rect width="100%" height="100%" fill="#fff"/>',
             text(12, 18, "Peer's cost / Quorl's: right of 1 Quorl is ahead. "
                  "Green: the goal is met; ochre: it is missed; grey: there is none."), *grid(height)]
    for i, row in enumerate(rows):
        parts += bar(TOP + ROW * i, *row)
    return "\n".join(parts) + "\n</svg>\n"
