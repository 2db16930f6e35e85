#!/usr/bin/env python3
"""Validates the JSON documents of the command against their schemas.

check_documents.py COMMAND SCHEMAS MESH
"""

import json
import pathlib
import subprocess
import sys
import tempfile

import jsonschema

BAD = "MeshVersionFormatted 2 Dimension 3 Vertices 4 0 0 0 1 1 0 0 1 0 1 0 2 9 9 9 2 Triangles 1 1 2 3 7 End"
SIZES = "MeshVersionFormatted 2 Dimension 3 SolAtVertices 4 1 1 1 1 0.5 1 End"
FLAT = "MeshVersionFormatted 2 Dimension 2 Vertices 1 0 0 0 End"
PAIR = (
    "MeshVersionFormatted 2 Dimension 3 Vertices 6 0 0 0 0 3 0 0 0 0 1 0 0 0 0 2 0 3 0 2 0 0 1 2 0 "
    "Triangles 2 1 2 3 1 4 5 6 2 End"
)


def runs(mesh):
    """Command lines, their exit statuses and the number of their results."""
    yield ["check", mesh, "bad.mesh", "missing.mesh"], 3, 3
    yield ["check", "-v", "bad.mesh", "--limit", "triangle.angle<1"], 1, 1

    yield ["diff", mesh, mesh], 0, 1
    yield ["diff", mesh, "bad.mesh", "--tolerance", "0.5"], 1, 1
    yield ["diff", "missing.mesh", "bad.mesh"], 3, 1

    yield ["convert", mesh, "a.meshb", "b.vtu", "c.stl"], 0, 3
    yield ["convert", mesh, "missing/a.meshb", "b.vtu"], 1, 2
    yield ["convert", "missing.mesh", "b.vtu"], 1, 1

    yield ["info", mesh, "bad.mesh", "sizes.sol", "flat.mesh", "missing.mesh"], 1, 5
    yield ["sizes", "bad.mesh", "sizes.sol"], 0, 1
    yield ["sizes", mesh, "sizes.sol"], 1, 1
    yield ["stats", mesh, "bad.mesh", "missing.mesh"], 1, 3
    yield ["stats", mesh, "--histogram", "--by-tag", "--worst", "3"], 0, 1
    yield ["periodic", "pair.mesh", "--tags", "1,2"], 0, 1
    yield ["periodic", "pair.mesh", "--tags", "1,3"], 1, 1
    yield ["periodic", "missing.mesh", "--tags", "1,3"], 3, 1


def main():
    command, schemas, mesh = map(pathlib.Path, sys.argv[1:])
    seen = set()
    with tempfile.TemporaryDirectory() as folder:
        pathlib.Path(folder, "bad.mesh").write_text(BAD)
        pathlib.Path(folder, "sizes.sol").write_text(SIZES)
        pathlib.Path(folder, "flat.mesh").write_text(FLAT)
        pathlib.Path(folder, "pair.mesh").write_text(PAIR)
        for line, status, results in runs(mesh):
            run = subprocess.run([command, *line, "--json"], cwd=folder, text=True, capture_output=True)
            assert run.returncode == status, (line, run)
            document = json.loads(run.stdout)
            schema = json.loads((schemas / f"{line[0]}.json").read_text())
            jsonschema.Draft202012Validator.check_schema(schema)
            jsonschema.validate(document, schema, jsonschema.Draft202012Validator)
            assert document["status"] == status and len(document["results"]) == results, (line, document)
            seen.add(line[0])
    assert seen == {path.stem for path in schemas.iterdir()}, seen


main()
