#!/usr/bin/env python3
"""Draws the figures of the guide beside this script; with --check it only tells, and fails, where a figure differs."""

import pathlib
import sys
import xml.etree.ElementTree

STYLE = """
text { font-family: "DejaVu Sans", Verdana, sans-serif; font-size: 13px; fill: #1b2a38; }
.title { font-weight: bold; }
.small { font-size: 11px; fill: #46586a; }
.mine { fill: #fdf3dc; stroke: #b58a2b; }
.library { fill: #e4eef8; stroke: #3d6d9e; }
.plain { fill: #f4f5f6; stroke: #7b8894; }
.frame { fill: none; stroke: #b9c2ca; stroke-dasharray: 2 4; }
.owns { fill: none; stroke: #3d6d9e; stroke-width: 1.8; marker-end: url(#head); }
.knows { fill: none; stroke: #b0523c; stroke-width: 1.4; stroke-dasharray: 5 4; marker-end: url(#thin); }
"""
HEADS = """
<marker id="head" markerWidth="9" markerHeight="8" refX="8" refY="4" orient="auto"><path d="M0,0 L9,4 L0,8 z" fill="#3d6d9e"/></marker>
<marker id="thin" markerWidth="9" markerHeight="8" refX="8" refY="4" orient="auto"><path d="M0,0 L9,4 L0,8 z" fill="#b0523c"/></marker>
"""


class Figure:
    def __init__(self, width: int, height: int, title: str):
        self.width, self.height = width, height
        self.parts = [f"<title>{title}</title>", f"<style>{STYLE}</style>", f"<defs>{HEADS}</defs>"]
        self.parts.append(f'<rect width="{width}" height="{height}" fill="#ffffff"/>')

    def text(self, x: int, y: int, text: str, kind: str = "", anchor: str = "middle") -> None:
        self.parts.append(f'<text x="{x}" y="{y}" class="{kind}" text-anchor="{anchor}">{text}</text>')

    def box(self, x: int, y: int, width: int, height: int, kind: str, title: str, *lines: str) -> None:
        self.parts.append(f'<rect x="{x}" y="{y}" width="{width}" height="{height}" rx="6" class="{kind}"/>')
        top = y + (height - 16 * len(lines)) // 2 + 5
        self.text(x + width // 2, top, title, "title")
        for i, line in enumerate(lines):
            self.text(x + width // 2, top + 16 * (i + 1), line, "small")

    def frame(self, x: int, y: int, width: int, height: int, title: str) -> None:
        self.parts.append(f'<rect x="{x}" y="{y}" width="{width}" height="{height}" rx="10" class="frame"/>')
        self.text(x + width // 2, y + 20, title, "title")

    def arrow(self, kind: str, *points: tuple[int, int]) -> None:
        path = " L".join(f"{x},{y}" for x, y in points)
        self.parts.append(f'<path d="M{path}" class="{kind}"/>')

    def svg(self) -> str:
        size = f'width="{self.width}" height="{self.height}" viewBox="0 0 {self.width} {self.height}"'
        body = "\n".join(self.parts)
        return f'<svg xmlns="http://www.w3.org/2000/svg" {size}>\n{body}\n</svg>\n'


def concepts() -> str:
    """Who holds what, and who calls whom."""
    figure = Figure(800, 390, "The library between a program and what works on its meshes and models")
    figure.frame(10, 10, 210, 330, "your program")
    figure.frame(290, 10, 220, 330, "korvane")
    figure.frame(580, 10, 210, 330, "whoever works on them")
    rows = [
        (42, "geometry", "surfaces and curves", "CAD model", "faces, edges, points", "mesh generators", "evaluate, discretize"),
        (114, "mesh data", "counts, coordinates, ...", "mesh", "36 attributes, get and set", "files", "GMF, NASTRAN"),
        (186, "wanted sizes", "per vertex", "size map", "", "statistics", "quality, topology"),
    ]
    for y, mine, my_line, table, line, user, user_line in rows:
        figure.box(25, y, 180, 56, "mine", mine, my_line)
        figure.box(305, y, 190, 56, "library", table, *([line] if line else []))
        figure.box(595, y, 180, 56, "plain", user, user_line)
        figure.arrow("owns", (305, y + 28), (207, y + 28))
    for target, source in ((0, 0), (1, 0), (1, 1), (1, 2), (2, 0), (2, 1)):
        figure.arrow("owns", (595, 70 + 72 * source), (497, 70 + 72 * target))
    figure.box(25, 270, 180, 56, "mine", "message function", "prints, logs, counts")
    figure.box(305, 270, 190, 56, "library", "context", "keeps the objects above")
    figure.arrow("owns", (305, 298), (207, 298))
    figure.arrow("owns", (685, 243), (685, 298), (497, 298))
    figure.text(590, 315, "reports", "small", "start")
    figure.arrow("owns", (280, 372), (240, 372))
    figure.text(290, 376, "calls: asks for data, or hands a message over", "small", "start")
    return figure.svg()


def ownership() -> str:
    """Who deletes whom, and who only knows whom."""
    figure = Figure(800, 430, "Who deletes whom")
    figure.box(300, 12, 200, 46, "library", "context")
    figure.box(30, 112, 150, 46, "library", "mesh")
    figure.box(230, 112, 150, 46, "library", "size map")
    figure.box(470, 112, 150, 46, "library", "CAD model")
    figure.arrow("owns", (340, 58), (105, 85), (105, 110))
    figure.arrow("owns", (380, 58), (305, 85), (305, 110))
    figure.arrow("owns", (440, 58), (545, 85), (545, 110))
    figure.box(20, 222, 80, 46, "plain", "arrays", "if in memory")
    figure.box(112, 222, 96, 46, "library", "tag system", "if one was set")
    figure.arrow("owns", (80, 158), (60, 220))
    figure.arrow("owns", (130, 158), (160, 220))
    figure.arrow("knows", (230, 135), (182, 135))
    figure.box(230, 222, 150, 46, "mine", "user data", "with delete function")
    figure.arrow("owns", (305, 158), (305, 220))
    figure.box(400, 222, 96, 46, "library", "tag system", "if one was set")
    figure.arrow("owns", (520, 158), (455, 220))
    figure.box(520, 222, 130, 46, "library", "faces")
    figure.arrow("owns", (560, 158), (580, 220))
    figure.box(400, 322, 110, 46, "library", "points")
    figure.box(535, 322, 100, 46, "library", "edges")
    figure.box(660, 322, 125, 46, "mine", "user data", "with delete function")
    figure.arrow("owns", (550, 268), (462, 320))
    figure.arrow("owns", (582, 268), (585, 320))
    figure.arrow("owns", (625, 268), (710, 320))
    figure.arrow("owns", (635, 345), (658, 345))
    figure.box(670, 112, 118, 46, "library", "discrete CAD")
    figure.arrow("knows", (670, 135), (622, 135))
    figure.box(670, 222, 118, 46, "plain", "edge vertices")
    figure.arrow("owns", (729, 158), (729, 220))
    figure.arrow("owns", (30, 396), (75, 396))
    figure.text(85, 400, "deletes", "small", "start")
    figure.arrow("knows", (170, 396), (215, 396))
    figure.text(225, 400, "points to, and does not keep alive", "small", "start")
    return figure.svg()


def main() -> int:
    differing = []
    for name, draw in (("concepts.svg", concepts), ("ownership.svg", ownership)):
        file = pathlib.Path(__file__).with_name(name)
        drawn = draw()
        xml.etree.ElementTree.fromstring(drawn)  # raises if it is not well-formed
        if "--check" not in sys.argv[1:]:
            file.write_text(drawn)
        elif not file.exists() or file.read_text() != drawn:
            differing.append(f"{name} is not what {pathlib.Path(__file__).name} draws")
    print("\n".join(differing) or "as drawn")
    return 1 if differing else 0


if __name__ == "__main__":
    sys.exit(main())
