"""Reads unstructured grids of VTK's XML format with raw appended data, by rules of its own."""

import pathlib
import struct
import xml.etree.ElementTree as ElementTree

CODES = {"Float64": "d", "Int32": "i", "Int64": "q", "UInt8": "B"}


def read(path):
    """The arrays by section and name; those of several components as tuples."""
    data = pathlib.Path(path).read_bytes()
    head, rest = data.split(b'<AppendedData encoding="raw">\n_', 1)
    assert rest.endswith(b"\n</AppendedData>\n</VTKFile>\n")
    root = ElementTree.fromstring(head + b"</VTKFile>")
    assert root.tag == "VTKFile" and root.get("type") == "UnstructuredGrid" and root.get("header_type") == "UInt64"
    order = {"LittleEndian": "<", "BigEndian": ">"}[root.get("byte_order")]
    piece = root.find("UnstructuredGrid/Piece")
    grid = {}
    end = 0
    for section in piece:
        grid[section.tag] = {}
        for array in section:
            offset, width = int(array.get("offset")), int(array.get("NumberOfComponents"))
            assert offset == end, (array.get("Name"), offset, end)
            (size,) = struct.unpack_from(order + "Q", rest, offset)
            code = CODES[array.get("type")]
            values = struct.unpack_from(f"{order}{size // struct.calcsize(order + code)}{code}", rest, offset + 8)
            end = offset + 8 + size
            if width > 1:
                values = tuple(values[at : at + width] for at in range(0, len(values), width))
            grid[section.tag][array.get("Name")] = values
    assert end == len(rest) - len(b"\n</AppendedData>\n</VTKFile>\n")
    points, cells = int(piece.get("NumberOfPoints")), int(piece.get("NumberOfCells"))
    assert all(len(values) == points for tag in ("PointData", "Points") for values in grid[tag].values())
    assert all(len(values) == cells for values in grid["CellData"].values())
    offsets = grid["Cells"]["offsets"]
    assert len(offsets) == len(grid["Cells"]["types"]) == cells
    assert len(grid["Cells"]["connectivity"]) == (offsets[-1] if cells else 0)
    grid["Cells"]["points"] = [
        grid["Cells"]["connectivity"][start:stop] for start, stop in zip((0, *offsets), offsets)
    ]
    return grid
