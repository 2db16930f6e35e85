#!/usr/bin/env python3
"""Makes the sample files of the tests of mesh and solution files, independently of the library.

make_samples.py          writes the files beside this script
make_samples.py --check  fails, and says where, if the files there are not exactly what would be written

Where a mesh can be read from a file, a file of the same name and ".expected" says what it is: per kind of entity a
line with its name and count, then a line per entity with its coordinates (hexadecimal) or vertices, its tag and its
required flag. Files in bad/ are named by their defect; those without an ".expected" beside them must be refused.
"""

import pathlib
import struct
import sys

FOLDER = pathlib.Path(__file__).resolve().parent

# Keyword, code, and the letters of a line in three dimensions (r: real, i: integer).
KEYWORDS = {
    "Vertices": (4, "rrri"),
    "Edges": (5, "iii"),
    "Triangles": (6, "iiii"),
    "Quadrilaterals": (7, "iiiii"),
    "Tetrahedra": (8, "iiiii"),
    "Prisms": (9, "iiiiiii"),
    "Hexahedra": (10, "iiiiiiiii"),
    "Corners": (13, "i"),
    "Ridges": (14, "i"),
    "RequiredVertices": (15, "i"),
    "RequiredEdges": (16, "i"),
    "RequiredTriangles": (17, "i"),
    "RequiredQuadrilaterals": (18, "i"),
    "TangentAtEdgeVertices": (19, "iii"),
    "NormalAtVertices": (20, "ii"),
    "NormalAtTriangleVertices": (21, "iii"),
    "AngleOfCornerBound": (23, "r"),
    "TrianglesP2": (24, "iiiiiii"),
    "EdgesP2": (25, "iiii"),
    "Pyramids": (49, "iiiiii"),
    "BoundingBox": (50, "rrrrrr"),
    "PrivateTable": (52, "i"),
    "Tangents": (59, "rrr"),
    "Normals": (60, "rrr"),
    "TangentAtVertices": (61, "ii"),
    "SolAtVertices": (62, ""),
    "SolAtTriangles": (64, ""),
    "ISolAtVertices": (70, "i"),
    "Iterations": (77, "i"),
    "Time": (78, "r"),
}
WITHOUT_COUNT = {"AngleOfCornerBound", "BoundingBox", "Iterations", "Time"}
SOLUTION_SIZES = {2: {1: 1, 2: 2, 3: 3, 4: 4}, 3: {1: 1, 2: 3, 3: 6, 4: 9}}

COORDINATES = [
    (0.0, 0.0, 0.0),
    (1.0, 0.1, -0.1),
    (1 / 3, 2 / 3, 1e-7),
    (-1.4720000028610229, 12345.678901234567, 6.02214076e23),
    (1e-300, -1e300, 5e-324),
    (123456789012345.0, 1234567890123456.0, 12345678901234567.0),
    (-0.0, 1e15, 9.99999999999999e-5),
    (0.5, 0.25, 0.125),
    (2.0**53, 2.0**-30, 1e22),
    (1e23, 8.5, -7.25),
    (3.4028234663852886e38, 1.1754943508222875e-38, 1e-45),
    (100.0, 1000000.0, 0.0001),
]
ENTITIES = {
    "Edges": [(1, 2, 10), (2, 3, -11), (12, 1, 2147483647)],
    "Triangles": [(1, 2, 3, 1), (4, 5, 6, 2), (7, 8, 9, -2147483648)],
    "Quadrilaterals": [(1, 2, 3, 4, 20), (5, 6, 7, 8, 21)],
    "Tetrahedra": [(1, 2, 3, 4, 5), (9, 10, 11, 12, 0)],
    "Hexahedra": [(1, 2, 3, 4, 5, 6, 7, 8, 30)],
    "Pyramids": [(1, 2, 3, 4, 5, 40), (6, 7, 8, 9, 10, 41)],
}
REQUIRED = {
    "RequiredVertices": [2, 3, 12],
    "RequiredEdges": [1, 3],
    "RequiredTriangles": [2],
    "RequiredQuadrilaterals": [1, 2],
}
CARDS = {
    "Edges": "CBAR",
    "Triangles": "CTRIA3",
    "Quadrilaterals": "CQUAD4",
    "Tetrahedra": "CTETRA",
    "Hexahedra": "CHEXA",
}
READ = ["Vertices", "Edges", "Triangles", "Quadrilaterals", "Tetrahedra", "Hexahedra", "Pyramids"]
WRITTEN = READ + list(REQUIRED)


def vertices(version=2):
    largest = 1e308 if version > 1 else 3e38  # single precision is not to overflow
    return [
        (*(max(-largest, min(x, largest)) for x in xyz), number * 7 - 20) for number, xyz in enumerate(COORDINATES, 1)
    ]


def all_blocks(version=2):
    """Every keyword that is read, and some that are passed over, in an order of its own."""
    return [
        ("Tangents", [(1.0, 0.5, 0.25)]),
        ("Vertices", vertices(version)),
        ("Corners", [(1,), (4,)]),
        ("RequiredVertices", [(i,) for i in REQUIRED["RequiredVertices"]]),
        ("BoundingBox", [(-1.5, -2.5, -3.5, 1.5, 2.5, 3.5)]),
        ("Edges", ENTITIES["Edges"]),
        ("Ridges", [(2,)]),
        ("RequiredEdges", [(i,) for i in REQUIRED["RequiredEdges"]]),
        ("Triangles", ENTITIES["Triangles"]),
        ("RequiredTriangles", [(i,) for i in REQUIRED["RequiredTriangles"]]),
        ("Quadrilaterals", ENTITIES["Quadrilaterals"]),
        ("RequiredQuadrilaterals", [(i,) for i in REQUIRED["RequiredQuadrilaterals"]]),
        ("Time", [(0.75,)]),
        ("Tetrahedra", ENTITIES["Tetrahedra"]),
        ("Prisms", [(1, 2, 3, 4, 5, 6, 50)]),
        ("Hexahedra", ENTITIES["Hexahedra"]),
        ("Pyramids", ENTITIES["Pyramids"]),
        ("Normals", [(0.0, 0.0, 1.0), (0.0, 1.0, 0.0)]),
        ("NormalAtVertices", [(1, 2)]),
        ("SolAtVertices", [1, 3], [(1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0)] * 2),
        ("ISolAtVertices", [(3,)]),
        ("Iterations", [(12,)]),
    ]


def parts(block):
    """Keyword, type header or None, lines."""
    return block if len(block) == 3 else (block[0], None, block[1])


def single(value):
    return struct.unpack("<f", struct.pack("<f", value))[0]


# Text


def number(value, version):
    if isinstance(value, int):
        return f"{value:d}"
    return f"{single(value):.9g}" if version == 1 else f"{value:.17g}"


def text_header(version, dimension):
    return f"MeshVersionFormatted {version}\n\nDimension {dimension}\n"


def text_block(block, version):
    keyword, types, lines = parts(block)
    text = f"\n{keyword}\n"
    if keyword not in WITHOUT_COUNT:
        text += f"{len(lines)}\n"
    if types is not None:
        text += " ".join(map(str, [len(types), *types])) + "\n\n"
    return text + "".join(" ".join(number(value, version) for value in line) + "\n" for line in lines)


def text_file(blocks, version=2, dimension=3):
    text = text_header(version, dimension) + "".join(text_block(block, version) for block in blocks)
    return (text + "\nEnd\n").encode()


def written_text(blocks):
    """What a writer with 15 digits makes."""
    text = text_header(2, 3)
    for keyword, lines in blocks:
        text += f"\n{keyword}\n{len(lines)}\n"
        for line in lines:
            text += "".join((f"{v:d} " if isinstance(v, int) else f"{v:.15g} ") for v in line) + "\n"
    return (text + "\nEnd\n").encode()


def bulk_data(blocks):
    """NASTRAN cards."""
    text = "BEGIN BULK\n"
    for number, (x, y, z, _) in enumerate(blocks[0][1], 1):
        text += "GRID*   %16d%16d%16.8E%16.8E*\n*       %16.8E\n" % (number, 0, x, y, z)
    element = 0
    for keyword, lines in blocks[1:]:
        for *corners, tag in lines if keyword in CARDS else []:
            element += 1
            text += "%s  %8d%8d" % (CARDS[keyword], element, tag) + "".join("%8d" % corner for corner in corners) + "\n"
    return (text + "$\nENDDATA\n").encode()


# Binary


class Binary:
    def __init__(self, version, dimension=3, order="<", head=None):
        self.version, self.order = version, order
        self.bytes = b""
        self.integers(*(head or (1, version, 3, 20, dimension)))

    def integers(self, *values):
        self.bytes += struct.pack(f"{self.order}{len(values)}i", *values)
        return self

    def reals(self, *values):
        letter = "f" if self.version == 1 else "d"
        self.bytes += struct.pack(f"{self.order}{len(values)}{letter}", *values)
        return self

    def block(self, block, code=None, last=False):
        keyword, types, lines = parts(block)
        body = Binary(self.version, order=self.order)
        body.bytes = b""
        if keyword not in WITHOUT_COUNT:
            body.integers(len(lines))
        if types is not None:
            body.integers(len(types), *types)
        for line in lines:
            for value in line:
                body.integers(value) if isinstance(value, int) else body.reals(value)
        end = 0 if last else len(self.bytes) + 8 + len(body.bytes)
        self.integers(KEYWORDS[keyword][0] if code is None else code, end)
        self.bytes += body.bytes
        return self

    def end(self):
        return self.integers(54, 0).bytes


def binary_file(blocks, version=2, dimension=3, order="<"):
    file = Binary(version, dimension, order)
    for block in blocks:
        file.block(block)
    return file.end()


# What is to be read


def expected(blocks, version=2, required=True):
    """From the blocks that count."""
    content = {keyword: lines for keyword, _, lines in map(parts, blocks)}
    text = ""
    for keyword in READ:
        lines = content.get(keyword, [])
        flags = {line[0] for line in content.get("Required" + keyword, [])} if required else set()
        text += f"{keyword} {len(lines)}\n"
        for position, line in enumerate(lines, 1):
            values = [
                str(v) if isinstance(v, int) else (single(v) if version == 1 else v).hex() for v in line
            ]
            text += " ".join(values + [str(int(position in flags))]) + "\n"
    return text.encode()


# The files


def good_files():
    files = {}
    for version in (1, 2, 3):
        files[f"all-v{version}.mesh"] = text_file(all_blocks(version), version)
        files[f"all-v{version}.mesh.expected"] = expected(all_blocks(version), version)
    for version in (1, 2):
        for order, name in (("<", "little"), (">", "big")):
            files[f"all-v{version}-{name}.meshb"] = binary_file(all_blocks(version), version, order=order)
            files[f"all-v{version}-{name}.meshb.expected"] = expected(all_blocks(version), version)
    written = [("Vertices", vertices())]
    written += [(keyword, ENTITIES[keyword]) for keyword in READ[1:]]
    written += [(keyword, [(i,) for i in numbers]) for keyword, numbers in REQUIRED.items()]
    files["written.mesh"] = written_text(written)
    files["written.meshb"] = binary_file(written)
    files["written.meshb.expected"] = expected(written)
    files["written.bdf"] = bulk_data(written)
    for keyword in CARDS:
        files[f"written-{keyword.lower()}.bdf"] = bulk_data([written[0], (keyword, ENTITIES[keyword])])
    files["empty.bdf"] = bulk_data([("Vertices", [])])
    files["empty.mesh"] = written_text([])
    files["empty.meshb"] = binary_file([])
    files["empty.mesh.expected"] = files["empty.meshb.expected"] = expected([])
    files.update(odd_layouts())
    plane = [("Vertices", [(0.0, 0.5, 1), (1.0, 0.25, 2)]), ("Edges", [(1, 2, 3)])]
    files["plane-v2.mesh"] = text_file(plane, dimension=2)
    files["plane-v1-big.meshb"] = binary_file(plane, 1, 2, ">")
    files.update(solutions())
    return files


def odd_layouts():
    files = {}
    blocks = all_blocks()
    text = text_file(blocks).decode()
    head, body = text.split("\n\n", 1)
    comments = (("Edges\n", "Edges # not Triangles\n#9\n"), ("\n-", "\n#-1 -1\n-"), (" 10\n", " 10#11 12\n"))
    commented = body
    for plain, comment in comments:
        commented = commented.replace(plain, comment)
    files["comments.mesh"] = f"# Vertices 3\n{head}# a comment\n#\n{commented}# no end of line".encode()
    files["line-ends.mesh"] = text.replace("\n", "\r\n").encode()
    files["one-line.mesh"] = " ".join(text.split()).encode()
    files["one-per-line.mesh"] = "\t\v\f\n".join(text.split()).encode()
    files["unknown-words.mesh"] = text.replace("\nEdges", "\nUnknown 3 Vertices2 1 vertices 7 xEdges 2\nEdges").encode()
    for name in list(files):
        files[name + ".expected"] = expected(blocks)

    reversed_blocks = list(reversed(blocks))
    files["reversed.mesh"] = text_file(reversed_blocks)
    files["reversed.meshb"] = binary_file(reversed_blocks)
    files["reversed.mesh.expected"] = files["reversed.meshb.expected"] = expected(blocks)

    last = [("Vertices", [(1.0, 2.0, 3.0, 4)]), ("Edges", [(1, 1, 1)]), ("RequiredVertices", [(1,)])]
    files["repeated.mesh"] = text_file(blocks[:6] + last)
    files["repeated.meshb"] = binary_file(blocks[:6] + last)
    files["repeated.mesh.expected"] = files["repeated.meshb.expected"] = expected(last)

    file = Binary(2, order=">")
    file.block(("Corners", [(1,), (2,)]), code=99).block(("Corners", [(7,)]), code=0)
    file.block(("Vertices", vertices())).block(("Corners", []), code=-5)
    files["unknown-codes.meshb"] = file.block(("RequiredVertices", [(2,)]), last=True).bytes
    files["unknown-codes.meshb.expected"] = expected([("Vertices", vertices()), ("RequiredVertices", [(2,)])])

    inf = float("inf")
    numbers = (
        "Vertices 6\n+1 +0x1.8p3 -0X.8P-1 +7\ninf -Infinity INF -0\n1e400 -1e400 1e-400 2147483648\n"
        "1.5-2.5+3.5 -99999999999\n.5 5. 1e2x 1.9\n0.30000000000000004 " + "3" * 400 + "e-399 0."
        + "0" * 400 + "12345678901234567890e401 007\n"
    )
    files["numbers.mesh"] = (text_header(2, 3) + numbers).encode()
    files["numbers.mesh.expected"] = expected([("Vertices", [
        (1.0, 12.0, -0.25, 7),
        (inf, -inf, inf, 0),
        (inf, -inf, 0.0, 2147483647),
        (1.5, -2.5, 3.5, -2147483648),
        (0.5, 5.0, 100.0, 1),
        (0.30000000000000004, float("3" * 400 + "e-399"), 1.2345678901234567, 7),
    ])])
    return files


def solutions():
    scalar = [("SolAtVertices", [1], [(0.5,), (1 / 3,), (-2.0,)])]
    mixed = [
        ("SolAtVertices", [1, 2, 3, 4], [tuple(i / 7 + j for j in range(19)) for i in range(2)]),
        ("SolAtTriangles", [2], [(1.0, 2.0, 3.0)]),
        ("Time", [(2.5,)]),
    ]
    plane = [("SolAtVertices", [3, 1], [(1.0, 2.0, 3.0, 4.0)])]
    files = {
        "scalar-v1.sol": text_file(scalar, 1),
        "scalar-v2.sol": text_file(scalar),
        "scalar-v3.sol": text_file(scalar, 3),
        "scalar-v1-little.solb": binary_file(scalar, 1),
        "scalar-v2-big.solb": binary_file(scalar, order=">"),
        "mixed-v2.sol": text_file(mixed),
        "mixed-v1-big.solb": binary_file(mixed, 1, order=">"),
        "plane-v2-little.solb": binary_file(plane, dimension=2),
    }
    return files


def refused_files():
    text = text_file([("Vertices", vertices())]).decode()
    solution = "\nSolAtVertices\n1\n"
    texts = {
        "nothing": "",
        "no-version": text.split("\n", 1)[1],
        "version-cut": "MeshVersionFormatted",
        "version-no-number": text.replace("ed 2", "ed two"),
        "version-0": text.replace("ed 2", "ed 0"),
        "version-4": text.replace("ed 2", "ed 4"),
        "no-dimension": text.replace("Dimension", "dimension"),
        "dimension-cut": "MeshVersionFormatted 2 Dimension ",
        "dimension-1": text.replace("ion 3", "ion 1"),
        "dimension-4": text.replace("ion 3", "ion 4"),
        "comment-hides-dimension": text.replace("Dimension", "# Dimension"),
        "type-count-21": text + solution + "21 " + "1 " * 21,
        "type-count-negative": text + solution + "-1",
        "type-count-missing": text + solution,
        "types-cut": text + solution + "3 1 1",
        "types-no-number": text + solution + "2 1 x",
    }
    files = {f"bad/{name}.mesh": content.encode() for name, content in texts.items()}

    def head(*values):
        return Binary(2, head=values)

    block = ("Vertices", vertices())
    whole = binary_file([block])
    binaries = {
        "nothing": b"",
        "header-cut": whole[:18],
        "byte-order-2": head(2, 2, 3, 20, 3).block(block).end(),
        "byte-order-mixed": struct.pack(">i", 1) + whole[4:],
        "version-0": head(1, 0, 3, 20, 3).block(block).end(),
        "version-3": head(1, 3, 3, 20, 3).block(block).end(),
        "first-keyword-4": head(1, 2, 4, 20, 3).block(block).end(),
        "dimension-1": head(1, 2, 3, 20, 1).block(block).end(),
        "dimension-4": head(1, 2, 3, 20, 4).block(block).end(),
        "position-beyond-end": head(1, 2, 3, 20, 3).integers(15, 1000, 1, 1, 54, 0).bytes,
        "position-negative": head(1, 2, 3, 20, 3).integers(15, -36, 1, 1, 54, 0).bytes,
        "chain-in-a-circle": head(1, 2, 3, 20, 3).integers(15, 36, 1, 1, 16, 20, 1, 1, 54, 0).bytes,
        "chain-to-itself": head(1, 2, 3, 20, 3).integers(15, 20, 1, 1, 54, 0).bytes,
        "chain-backwards": head(1, 2, 3, 20, 3).integers(15, 4, 1, 1, 54, 0).bytes,
        "chain-backwards-over-unknown-code": head(1, 2, 3, 20, 3).integers(99, 8, 1, 1, 54, 0).bytes,
        "file-cut": whole[:-40],
        "type-count-21": head(1, 2, 3, 20, 3).integers(62, 0, 1, 21, *[1] * 21).bytes,
        "type-count-negative": head(1, 2, 3, 20, 3).integers(62, 0, 1, -1).bytes,
        "types-cut": head(1, 2, 3, 20, 3).integers(62, 0, 1, 3, 1).bytes,
    }
    files.update({f"bad/{name}.meshb": content for name, content in binaries.items()})
    return files


def survived_files():
    """Files with a defect that a reader lives with: what is missing reads as zeros."""
    head = text_header(2, 3)
    zero = (0.0, 0.0, 0.0, 0)
    one = (1.0, 2.0, 3.0, 4)
    texts = {
        "block-cut": ("Vertices 3 1 2 3 4 5 6", [("Vertices", [one, (5.0, 6.0, 0.0, 0), zero])]),
        "number-cut": ("Edges 1 1 2 12", [("Edges", [(1, 2, 12)])]),
        "count-missing": ("Vertices\nEdges 1 1 2 3", [("Edges", [(1, 2, 3)])]),
        "count-negative": ("Vertices -3 1 2 3 4 Edges 1 1 2 3", [("Edges", [(1, 2, 3)])]),
        "count-no-number": ("Vertices many 1 2 3 4", []),
        "keyword-in-a-block": (
            "Vertices 3 1 2 3 4 Edges 1 1 2 3",
            [("Vertices", [one, zero, zero]), ("Edges", [(1, 2, 3)])],
        ),
        "comment-inside-a-token": ("Vertices 1 1 2 3 4 5#c Edges 1 1 2 3", [("Vertices", [one]), ("Edges", [(1, 2, 3)])]),
        "no-number-in-a-block": ("Vertices 3 1 2 3 4 5 x 7 8 9 1 2 3", [("Vertices", [one, (5.0, 0.0, 0.0, 0), zero])]),
        "comment-without-end": ("Vertices 1 1 2 3 4 # and no more", [("Vertices", [one])]),
        "token-too-long": ("Vertices 1 1 2 3 4 " + "Edges" * 1000 + " 1 1 2 3", [("Vertices", [one])]),
        "comment-too-long": ("#" * 5000 + "\nVertices 1 1 2 3 4", [("Vertices", [one])]),
        "required-out-of-range": (
            "Vertices 2 1 2 3 4 1 2 3 4 RequiredVertices 5 0 -1 3 2147483647 2",
            [("Vertices", [one, one]), ("RequiredVertices", [(2,)])],
        ),
        "required-without-entities": ("RequiredEdges 1 1 RequiredVertices 1 1 Vertices 0", []),
        "no-end": ("Vertices 1 1 2 3 4", [("Vertices", [one])]),
    }
    files = {}
    for name, (text, blocks) in texts.items():
        files[f"bad/{name}.mesh"] = (head + text).encode()
        files[f"bad/{name}.mesh.expected"] = expected(blocks)

    def file():
        return Binary(2)

    edges = ("Edges", [(1, 2, 3)])
    binaries = {
        "block-cut": (
            file().integers(4, 0, 3).reals(1.0, 2.0, 3.0).integers(4).reals(5.0).bytes,
            [("Vertices", [one, (5.0, 0.0, 0.0, 0), zero])],
        ),
        "count-cut": (file().block(edges).integers(4, 0).bytes, [edges]),
        "count-negative": (file().block(edges).integers(4, 0, -3, 1, 2, 3).bytes, [edges]),
        "block-header-cut": (file().block(edges).integers(4).bytes, [edges]),
        "no-end": (file().block(edges).bytes, [edges]),
        "dimension-position-negative": (Binary(2, head=(1, 2, 3, -20, 3)).block(edges).end(), [edges]),
        "blocks-in-any-order": (
            file().integers(99, 52).integers(5, 0, 1, 1, 2, 3).integers(4, 28, 1).reals(1.0, 2.0, 3.0).integers(4).bytes,
            [("Vertices", [one]), edges],
        ),
        "block-longer-than-its-place": (
            file().integers(5, 44, 3, 1, 2, 3).integers(54, 0).bytes,
            [("Edges", [(1, 2, 3), (54, 0, 0), (0, 0, 0)])],
        ),
        "required-out-of-range": (
            file().block(edges).block(("RequiredEdges", [(0,), (-1,), (2,), (1,)])).end(),
            [edges, ("RequiredEdges", [(1,)])],
        ),
    }
    for name, (content, blocks) in binaries.items():
        files[f"bad/{name}.meshb"] = content
        files[f"bad/{name}.meshb.expected"] = expected(blocks)
    return files


def all_files():
    files = {}
    for group in (good_files(), refused_files(), survived_files()):
        assert not files.keys() & group.keys()
        files.update(group)
    return files


def on_disk():
    paths = (path for path in FOLDER.rglob("*") if path.is_file() and path.suffix != ".pyc" and path.name[0] != ".")
    return {path.relative_to(FOLDER).as_posix() for path in paths} - {pathlib.Path(__file__).name}


def check(files):
    complaints = [f"{name}: not made by this script" for name in on_disk() - files.keys()]
    for name, content in files.items():
        path = FOLDER / name
        if not path.is_file():
            complaints.append(f"{name}: missing")
        elif path.read_bytes() != content:
            complaints.append(f"{name}: differs")
    print("\n".join(sorted(complaints)) or f"{len(files)} files are as they should be")
    return 1 if complaints else 0


def main():
    files = all_files()
    if sys.argv[1:] == ["--check"]:
        return check(files)
    (FOLDER / "bad").mkdir(exist_ok=True)
    for name, content in files.items():
        (FOLDER / name).write_bytes(content)
    return 0


if __name__ == "__main__":
    sys.exit(main())
