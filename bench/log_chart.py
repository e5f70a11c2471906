"""A picture of lines over logarithmic axes, several panels beside each other, as SVG."""
import math
from xml.sax.saxutils import escape

WIDTH, HEIGHT = 340, 300  # of a panel's plane
LEFT, TOP, RIGHT, BOTTOM = 70, 44, 24, 84
COLOURS = ["#0072b2", "#d55e00", "#009e73", "#aa4499", "#56b4e9"]  # told apart by everybody
STYLE = ("text{fill:#222}.t{font-size:15px;font-weight:bold}.n{font-size:12px}.g{stroke:#ddd}.b{fill:none;stroke:#555}"
         ".l{fill:none;stroke-width:2}.p{fill:none;stroke:#999;stroke-dasharray:5 4}")


def label(value):
    return f"{value:,.10g}"


class Axis:
    """Along so many pixels: whole decades around the values, or a little more than the values."""

    def __init__(self, values, pixels, whole_decades=True):
        low, high = math.log10(min(values)), math.log10(max(values))
        self.low, self.high = (math.floor(low), math.ceil(high)) if whole_decades else (low - 0.1, high + 0.1)
        self.pixels = pixels

    def at(self, value):
        return (math.log10(value) - self.low) / (self.high - self.low) * self.pixels

    def decades(self):
        return [10.0 ** power for power in range(self.low, self.high + 1)]


class Panel:
    """Lines of (x, y) by name, and what the axes say. `guide` draws a line of that slope in the logarithms below the line
    of that name."""

    def __init__(self, title, x_label, lines, guide=None):
        self.title, self.x_label, self.lines, self.guide = title, x_label, lines, guide

    def xs(self):
        return sorted({x for line in self.lines.values() for x, _ in line})

    def svg(self, left, y_label, y_values):
        x, y = Axis(self.xs(), WIDTH, whole_decades=False), Axis(y_values, HEIGHT)
        parts = [f'<g transform="translate({left} {TOP})">', f'<text class="t" x="{WIDTH / 2}" y="-18" text-anchor="middle">'
                 f'{escape(self.title)}</text>']
        for value in y.decades():
            at = HEIGHT - y.at(value)
            parts.append(f'<path class="g" d="M0 {at:.1f}h{WIDTH}"/>'
                         f'<text class="n" x="-8" y="{at + 4:.1f}" text-anchor="end">{label(value)}</text>')
        for value in self.xs():
            parts.append(f'<path class="g" d="M{x.at(value):.1f} 0v{HEIGHT}"/><text class="n" x="{x.at(value):.1f}" '
                         f'y="{HEIGHT + 18}" text-anchor="middle">{label(value)}</text>')
        parts.append(f'<rect class="b" width="{WIDTH}" height="{HEIGHT}"/>')
        parts.append(f'<text class="n" x="{WIDTH / 2}" y="{HEIGHT + 38}" text-anchor="middle">{escape(self.x_label)}</text>')
        if y_label:
            parts.append(f'<text class="n" transform="translate(-52 {HEIGHT / 2}) rotate(-90)" text-anchor="middle">'
                         f'{escape(y_label)}</text>')
        if self.guide is not None:
            parts.append(self._guide(x, y))
        for colour, line in zip(COLOURS, self.lines.values()):
            points = [(x.at(a), HEIGHT - y.at(b)) for a, b in line]
            path = "L".join(f"{a:.1f} {b:.1f}" for a, b in points)
            dots = "".join(f'<circle cx="{a:.1f}" cy="{b:.1f}" r="3.5" fill="{colour}"/>' for a, b in points)
            parts.append(f'<path class="l" stroke="{colour}" d="M{path}"/>{dots}')
        return "\n".join(parts + ["</g>"])

    def _guide(self, x, y):
        slope, name = self.guide
        line = self.lines[name]
        middle = line[len(line) // 2]
        ends = []
        for at in (self.xs()[0], self.xs()[-1]):
            value = middle[1] / 3 * (at / middle[0]) ** slope
            ends.append(f"{x.at(at):.1f} {HEIGHT - y.at(value):.1f}")
        return f'<path class="p" d="M{"L".join(ends)}"/>'


def chart(description, y_label, panels, guide_name):
    """The whole picture; all panels have the same y axis and the same lines."""
    y_values = [value for panel in panels for line in panel.lines.values() for _, value in line]
    width, height = len(panels) * (LEFT + WIDTH + RIGHT), TOP + HEIGHT + BOTTOM
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" font-family="sans-serif" role="img" '
             f'aria-label="{escape(description)}">', f"<style>{STYLE}</style>",
             f'<rect width="{width}" height="{height}" fill="#fff"/>']
    for i, panel in enumerate(panels):
        parts.append(panel.svg(i * (LEFT + WIDTH + RIGHT) + LEFT, y_label if i == 0 else "", y_values))
    names = list(panels[0].lines)
    step = (width - LEFT - RIGHT) / (len(names) + 1)
    for i, name in enumerate(names + [guide_name]):
        kind = f'class="l" stroke="{COLOURS[i]}"' if i < len(names) else 'class="p"'
        parts.append(f'<path {kind} d="M{LEFT + i * step:.1f} {height - 22}h26"/>'
                     f'<text class="n" x="{LEFT + i * step + 32:.1f}" y="{height - 18}">{escape(name)}</text>')
    return "\n".join(parts + ["</svg>"]) + "\n"
