#!/usr/bin/env python3
"""Reads the grids that the command writes and compares them with their meshes.

check_grids.py COMMAND
"""

import math
import pathlib
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


def main():
    command = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
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
