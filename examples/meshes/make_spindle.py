#!/usr/bin/env python3
"""Writes spindle.mesh: a turned body of hexahedra below, tetrahedra above and a layer of pyramids between them, closed by
quadrilaterals and triangles, with its two rims as required edges.

A grid of cells over the unit cube is divided by layers and then mapped onto the body."""

import math
import pathlib

CELLS = 6  # across
HEXAHEDRAL_LAYERS, TETRAHEDRAL_LAYERS = 4, 4
LAYERS = HEXAHEDRAL_LAYERS + 1 + TETRAHEDRAL_LAYERS
HEXAHEDRA_TAG, PYRAMIDS_TAG, TETRAHEDRA_TAG = 10, 11, 12
BOTTOM_TAG, SIDE_TAG, TOP_TAG, RIM_TAG = 1, 2, 3, 4


def body(i: float, j: float, k: float) -> tuple[float, float, float]:
    """The place of a grid point: squares become discs, whose radius swells half-way up."""
    x, y, z = 2 * i / CELLS - 1, 2 * j / CELLS - 1, k / LAYERS
    radius = 0.6 + 0.4 * math.sin(math.pi * z)
    return radius * x * math.sqrt(1 - y * y / 2), radius * y * math.sqrt(1 - x * x / 2), 3 * z


def grid(i: int, j: int, k: int) -> int:
    return 1 + i + (CELLS + 1) * (j + (CELLS + 1) * k)


vertices = [
    body(i, j, k) for k in range(LAYERS + 1) for j in range(CELLS + 1) for i in range(CELLS + 1)
]
hexahedra, pyramids, tetrahedra, quadrilaterals, triangles, edges = [], [], [], [], [], []


def corners(i: int, j: int, k: int) -> list[int]:
    ring = [(0, 0), (1, 0), (1, 1), (0, 1)]
    return [grid(i + a, j + b, k + c) for c in (0, 1) for a, b in ring]


# The six faces of a cell, turning counter-clockwise as seen from outside.
FACES = [(0, 3, 2, 1), (0, 1, 5, 4), (1, 2, 6, 5), (2, 3, 7, 6), (3, 0, 4, 7), (4, 5, 6, 7)]
# Six tetrahedra around the diagonal from corner 0 to corner 6.
DIAGONAL = [(0, 1, 2, 6), (0, 2, 3, 6), (0, 3, 7, 6), (0, 7, 4, 6), (0, 4, 5, 6), (0, 5, 1, 6)]
# The faces of a cell as two triangles each, divided as the tetrahedra divide them.
TRIANGLES = [
    ((0, 2, 1), (0, 3, 2)), ((0, 1, 5), (0, 5, 4)), ((1, 2, 6), (1, 6, 5)),
    ((2, 3, 6), (3, 7, 6)), ((3, 0, 7), (0, 4, 7)), ((4, 5, 6), (4, 6, 7)),
]  # fmt: skip


def outer_faces(i: int, j: int, k: int) -> list[tuple[int, int]]:
    """The numbers of the cell's faces on the surface, with their tags."""
    sides = [(k == 0, BOTTOM_TAG), (j == 0, SIDE_TAG), (i == CELLS - 1, SIDE_TAG), (j == CELLS - 1, SIDE_TAG),
             (i == 0, SIDE_TAG), (k == LAYERS - 1, TOP_TAG)]  # fmt: skip
    return [(face, tag) for face, (outside, tag) in enumerate(sides) if outside]


for k in range(LAYERS):
    for j in range(CELLS):
        for i in range(CELLS):
            cell = corners(i, j, k)
            if k < HEXAHEDRAL_LAYERS:
                hexahedra.append(cell + [HEXAHEDRA_TAG])
            elif k == HEXAHEDRAL_LAYERS:
                vertices.append(body(i + 0.5, j + 0.5, k + 0.5))
                centre = len(vertices)
                for face in FACES[:5]:  # a pyramid's base turns counter-clockwise as seen from its top
                    pyramids.append([cell[c] for c in reversed(face)] + [centre, PYRAMIDS_TAG])
                for a, b, c in TRIANGLES[5]:
                    tetrahedra.append([cell[a], cell[c], cell[b], centre, TETRAHEDRA_TAG])
            else:
                tetrahedra += [[cell[c] for c in corner] + [TETRAHEDRA_TAG] for corner in DIAGONAL]
            for face, tag in outer_faces(i, j, k):
                if k <= HEXAHEDRAL_LAYERS:
                    quadrilaterals.append([cell[c] for c in FACES[face]] + [tag])
                else:
                    triangles += [[cell[c] for c in triangle] + [tag] for triangle in TRIANGLES[face]]

for k in (0, LAYERS):
    for a in range(CELLS):
        b = CELLS
        rim = [((a, 0), (a + 1, 0)), ((b, a), (b, a + 1)), ((a, b), (a + 1, b)), ((0, a), (0, a + 1))]
        edges += [[grid(*start, k), grid(*end, k), RIM_TAG] for start, end in rim]

lines = ["MeshVersionFormatted 2", "", "Dimension 3", "", "# Made by make_spindle.py"]


def block(keyword: str, rows: list) -> None:
    lines.extend(["", keyword, str(len(rows))])
    lines.extend(" ".join(map(str, row)) for row in rows)


block("Vertices", [(*(f"{value:.12g}" for value in vertex), 0) for vertex in vertices])
block("Edges", edges)
block("RequiredEdges", [[number] for number in range(1, len(edges) + 1)])
block("Triangles", triangles)
block("Quadrilaterals", quadrilaterals)
block("Tetrahedra", tetrahedra)
block("Hexahedra", hexahedra)
block("Pyramids", pyramids)
lines += ["", "End", ""]
pathlib.Path(__file__).with_name("spindle.mesh").write_text("\n".join(lines))
