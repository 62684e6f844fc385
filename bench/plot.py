"""Plots as SVG, without any library: lines with points, both axes from 0 or both logarithmic."""
import math
import statistics

WIDTH, HEIGHT, LEFT, BOTTOM, TOP, RIGHT = 640, 400, 70, 50, 40, 120
LINE_HEIGHT = 14
COLOURS = ("#0b6e4f", "#b23a48", "#355c9e", "#c77d0a", "#6b4e9b")


def ticks(largest):
    step = 10 ** math.floor(math.log10(largest))
    step = next(step * part for part in (0.2, 0.5, 1, 2) if largest / (step * part) <= 6)
    return [step * i for i in range(int(largest / step) + 1)]


def decades(smallest, largest):
    return [10 ** i for i in range(math.floor(math.log10(smallest)), math.ceil(math.log10(largest)) + 1)]


def number(value):
    return f"{value:,.0f}" if value >= 10 or value == int(value) else f"{value:g}"


def lines(title, x_name, y_name, series, logarithmic=False):
    points = [point for line in series.values() for point in line]
    xs, ys = [x for x, _ in points], [y for _, y in points]
    marks = [decades(min(axis), max(axis)) if logarithmic else ticks(max(axis)) for axis in (xs, ys)]
    ends = [(marks[0][0], max(xs) if not logarithmic else marks[0][-1]),
            (marks[1][0], max(ys) if not logarithmic else marks[1][-1])]

    def part(value, low, high):
        if logarithmic:
            value, low, high = math.log10(value), math.log10(low), math.log10(high)
        return (value - low) / (high - low)

    def at(x, y):
        return (LEFT + part(x, *ends[0]) * (WIDTH - LEFT - RIGHT),
                HEIGHT - BOTTOM - part(y, *ends[1]) * (HEIGHT - TOP - BOTTOM))

    svg = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" '
           'font-family="sans-serif" font-size="12">',
           f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>',
           f'<text x="{LEFT}" y="22" font-size="15">{title}</text>']
    for x in marks[0]:
        px, bottom = at(x, ends[1][0])
        svg.append(f'<line x1="{px:.1f}" y1="{TOP}" x2="{px:.1f}" y2="{bottom:.1f}" stroke="#ddd"/>'
                   f'<text x="{px:.1f}" y="{bottom + 16:.1f}" text-anchor="middle">{number(x)}</text>')
    for y in marks[1]:
        left, py = at(ends[0][0], y)
        svg.append(f'<line x1="{left:.1f}" y1="{py:.1f}" x2="{WIDTH - RIGHT}" y2="{py:.1f}" stroke="#ddd"/>'
                   f'<text x="{left - 6:.1f}" y="{py + 4:.1f}" text-anchor="end">{number(y)}</text>')
    svg.append(f'<text x="{(LEFT + WIDTH - RIGHT) / 2}" y="{HEIGHT - 12}" text-anchor="middle">{x_name}</text>'
               f'<text x="14" y="{HEIGHT / 2}" transform="rotate(-90 14 {HEIGHT / 2})" '
               f'text-anchor="middle">{y_name}</text>')
    for colour, (name, line) in zip(COLOURS, series.items()):
        path = " ".join("%.1f,%.1f" % at(x, y) for x, y in line)
        svg.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>')
        svg += ['<circle cx="%.1f" cy="%.1f" r="3" fill="%s"/>' % (*at(x, y), colour) for x, y in line]
    ends_of_lines = sorted((at(*line[-1])[::-1], colour, name)
                           for colour, (name, line) in zip(COLOURS, series.items()))
    lowest = 0
    for (py, px), colour, name in ends_of_lines:  # names one below the other
        lowest = max(py + 4, lowest + LINE_HEIGHT)
        svg.append(f'<text x="{px + 8:.1f}" y="{lowest:.1f}" fill="{colour}">{name}</text>')
    return "\n".join([*svg, "</svg>"]) + "\n"


def scans(results):
    """`results`: (number of files, times by name)."""
    names = results[0][1]
    return lines("Processor time of a scan", "files", "ms", {
        name: [(size, statistics.median(times[name])) for size, times in results] for name in names},
        logarithmic=True)
