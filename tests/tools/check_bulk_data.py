#!/usr/bin/env python3
"""Reads bulk data by the rules of its fields and compares it with the mesh that it was converted from.

check_bulk_data.py COMMAND MESH...  converts each text mesh with the command into a temporary file and checks that
vertices come back to nine digits, and elements with their numbers, tags and vertices.

Small fields are 8 characters wide; a name that ends in "*" announces fields of 16 between the first and the last one,
which stay 8 wide, and a continuation line that carries on with the fifth value.
"""

import pathlib
import struct
import subprocess
import sys
import tempfile

KINDS = {  # keyword: values per line with the tag, card
    "Edges": (3, "CBAR"),
    "Triangles": (4, "CTRIA3"),
    "Quadrilaterals": (5, "CQUAD4"),
    "Tetrahedra": (5, "CTETRA"),
    "Hexahedra": (9, "CHEXA"),
}


def read_mesh(path):
    """Coordinates of vertices, and per kind the elements, of a text mesh without comments."""
    tokens = path.read_text().split()
    single = tokens[1] == "1"
    blocks = {}
    for keyword, width in [("Vertices", 4)] + [(name, width) for name, (width, _) in KINDS.items()]:
        if keyword not in tokens:
            blocks[keyword] = []
            continue
        start = tokens.index(keyword) + 2
        values = tokens[start : start + int(tokens[start - 1]) * width]
        blocks[keyword] = [values[i : i + width] for i in range(0, len(values), width)]
    real = (lambda text: struct.unpack("f", struct.pack("f", float(text)))[0]) if single else float
    blocks["Vertices"] = [[real(value) for value in vertex[:3]] for vertex in blocks["Vertices"]]
    return blocks


def large_fields(line, continuation):
    """The values of a card with fields of 16 characters."""
    assert line[72:80].strip() == "*" and continuation[:8].strip() == "*", line
    return [line[at : at + 16].strip() for at in (8, 24, 40, 56)] + [continuation[8:24].strip()]


def read_bulk_data(path):
    lines = path.read_text().splitlines()
    assert lines[0] == "BEGIN BULK" and lines[-2:] == ["$", "ENDDATA"], path
    grid, elements = {}, []
    body = iter(lines[1:-2])
    for line in body:
        if line[:8].strip() == "GRID*":
            number, system, *coordinates = large_fields(line, next(body))
            assert system == "0" and int(number) not in grid, line
            grid[int(number)] = [float(value) for value in coordinates]
        else:
            # Two blanks follow the name whatever its length; the fields of 8 characters start behind them.
            name = line.split()[0]
            values = line[len(name) + 2 :]
            assert line[len(name) : len(name) + 2] == "  " and len(values) % 8 == 0, line
            elements.append((name, *(int(values[at : at + 8]) for at in range(0, len(values), 8))))
    return grid, elements


def check(command, mesh):
    with tempfile.TemporaryDirectory() as folder:
        output = pathlib.Path(folder) / "converted.bdf"
        subprocess.run([command, "convert", str(mesh), str(output)], check=True, stderr=subprocess.DEVNULL)
        grid, elements = read_bulk_data(output)
    blocks = read_mesh(mesh)
    assert list(grid) == list(range(1, len(blocks["Vertices"]) + 1)), mesh
    for number, vertex in enumerate(blocks["Vertices"], 1):
        for read, stated in zip(grid[number], vertex):
            assert read == float("%.8e" % stated), (mesh, number, read, stated)
    expected = []
    for keyword, (_, card) in KINDS.items():
        for *vertices, tag in blocks[keyword]:
            expected.append((card, len(expected) + 1, int(tag), *map(int, vertices)))
    assert elements == expected, mesh
    return len(grid), len(elements)


def main():
    command, *meshes = sys.argv[1:]
    assert meshes
    for mesh in meshes:
        if not pathlib.Path(mesh).exists():
            print(mesh, "is not here: skipped")
            continue
        print(mesh, "vertices and elements:", *check(command, pathlib.Path(mesh)))


main()
