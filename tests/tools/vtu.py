"""Reads unstructured grids of VTK's XML format with appended data that zlib packed, by rules of its own."""

import pathlib
import struct
import xml.etree.ElementTree as ElementTree
import zlib

CODES = {"Float64": "d", "Int32": "i", "Int64": "q", "UInt8": "B"}


def unpack(data, offset, order):
    """The bytes of the array at the offset, and where it ends."""
    count, size, last = struct.unpack_from(order + "3Q", data, offset)
    packed_sizes = struct.unpack_from(f"{order}{count}Q", data, offset + 24)
    at, blocks = offset + 24 + 8 * count, []
    for packed in packed_sizes:
        blocks.append(zlib.decompress(data[at : at + packed]))
        at += packed
    sizes = [len(block) for block in blocks]
    assert sizes == [size] * count or sizes == [size] * (count - 1) + [last], sizes
    return b"".join(blocks), at


def read(path):
    """The arrays by section and name; those of several components as tuples."""
    data = pathlib.Path(path).read_bytes()
    head, rest = data.split(b'<AppendedData encoding="raw">\n_', 1)
    assert rest.endswith(b"\n</AppendedData>\n</VTKFile>\n")
    root = ElementTree.fromstring(head + b"</VTKFile>")
    assert root.tag == "VTKFile" and root.get("type") == "UnstructuredGrid" and root.get("header_type") == "UInt64"
    assert root.get("compressor") == "vtkZLibDataCompressor"
    order = {"LittleEndian": "<", "BigEndian": ">"}[root.get("byte_order")]
    piece = root.find("UnstructuredGrid/Piece")
    grid = {}
    end = 0
    for section in piece:
        grid[section.tag] = {}
        for array in section:
            offset, width = int(array.get("offset")), int(array.get("NumberOfComponents"))
            assert offset == end, (array.get("Name"), offset, end)
            content, end = unpack(rest, offset, order)
            code = CODES[array.get("type")]
            values = struct.unpack(f"{order}{len(content) // struct.calcsize(order + code)}{code}", content)
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
