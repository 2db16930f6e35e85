#!/usr/bin/env python3
"""Reads the grids that the command writes and compares them with their meshes.

check_grids.py COMMAND
"""

import math
import pathlib
import struct
import subprocess
import sys
import tempfile

import vtu

MESH = """MeshVersionFormatted 2 Dimension 3
Vertices 7  0 0 0 1  1 0 0 2  1 1 0 3  0 1 0 4  0 0 1 5  9 9 9 6  0.5 0.25 2 7
Triangles 3  1 2 3 11  1 3 4 12  1 2 99 13
Tetrahedra 2  1 2 4 5 21  2 1 4 5 22
RequiredTriangles 1 1
End
"""


def read_stl(path):
    """The normals and corners of the triangles."""
    data = path.read_bytes()
    (count,) = struct.unpack_from("<I", data, 80)
    assert len(data) == 84 + 50 * count
    values = [struct.unpack_from("<12fH", data, 84 + 50 * i) for i in range(count)]
    assert all(triangle[12] == 0 for triangle in values)
    return [[triangle[at : at + 3] for at in (0, 3, 6, 9)] for triangle in values]


def check_conversion(command, folder):
    mesh, grid_file, surface = (pathlib.Path(folder, name) for name in ("b.mesh", "b.vtu", "b.stl"))
    mesh.write_text(
        "MeshVersionFormatted 2 Dimension 3 Vertices 5 0 0 0 1 1 0 0 2 1 1 0 3 0 1 0 4 0 0 1 5 "
        "Edges 1 4 5 9 Triangles 1 1 5 2 6 Quadrilaterals 1 1 2 3 4 7 Pyramids 1 1 2 3 4 5 8 RequiredVertices 1 2 End"
    )
    subprocess.run([command, "convert", mesh, grid_file, surface], check=True, capture_output=True)
    grid = vtu.read(grid_file)
    assert grid["Cells"]["types"] == (3, 5, 9, 14) and grid["CellData"]["tag"] == (9, 6, 7, 8)
    assert grid["Cells"]["points"] == [(3, 4), (0, 4, 1), (0, 1, 2, 3), (0, 1, 2, 3, 4)]
    assert grid["PointData"]["required"] == (0, 1, 0, 0, 0) and len(grid["Points"]["Points"]) == 5
    assert grid["CellData"]["planarity"][2] == 1 and math.isnan(grid["CellData"]["planarity"][1])
    zero, x, y, z, xy = (0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1), (1, 1, 0)
    assert read_stl(surface) == [[y, zero, z, x], [z, zero, x, xy], [z, zero, xy, y]], read_stl(surface)


def main():
    command = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        check_conversion(command, folder)
        mesh, bad = pathlib.Path(folder, "a.mesh"), pathlib.Path(folder, "bad.vtu")
        mesh.write_text(MESH)
        run = subprocess.run([command, "check", mesh, "--bad", bad, "--limit", "triangle.angle<89"], capture_output=True)
        assert run.returncode == 1, run
        grid = vtu.read(bad)
        cells, data = grid["Cells"], grid["CellData"]
        # Triangle 3 names a vertex that there is not; tetrahedron 2 has the vertices of tetrahedron 1.
        assert cells["types"] == (1, 1, 5, 5, 10), cells
        assert data["number"] == (6, 7, 1, 2, 2) and data["tag"] == (6, 7, 11, 12, 22), data
        assert data["required"] == (0, 0, 1, 0, 0)
        numbers = grid["PointData"]["number"]
        assert numbers == (1, 2, 3, 4, 5, 6, 7) and grid["PointData"]["tag"] == numbers
        assert grid["Points"]["Points"][6] == (0.5, 0.25, 2.0)
        named = [[numbers[point] for point in cell] for cell in cells["points"]]
        assert named == [[6], [7], [1, 2, 3], [1, 3, 4], [2, 1, 4, 5]], named
        assert abs(data["maximum_angle"][2] - 90) < 1e-4 and abs(data["minimum_angle"][3] - 45) < 1e-4
        assert math.isinf(data["aspect_ratio"][4]) and all(map(math.isnan, data["planarity"]))


main()
