#!/usr/bin/env python3
"""Holds figures that pages of the guide state to the sources: the keyword codes by reading both tables, other figures by
pairs of texts of which the page has one and the source the other. Who changes a source finds the page here."""

import pathlib
import re
import sys
import tempfile

FACTS = [
    ("callbacks-and-threads.md", "table of open files (100 of them)", "src/io/gmf.h", "GMF_MAX_FILES = 100;"),
    ("cad.md", "h = max(1e-7, (tmax - tmin) / 1000)", "src/cad/derived/edge_finite_difference.cpp",
     "std::max(1e-7, 0.001 * (tmax - tmin))"),
    ("files.md", "looked for in its last six bytes", "src/io/gmf.cpp", "looked_at = 6;"),
    ("files.md", "a name has at most 1016 bytes", "src/io/gmf.cpp", "reserve = 7;"),
    ("files.md", "a name has at most 1016 bytes", "src/io/gmf_file.h", "std::array<char, 1024> file_name"),
    ("files.md", "number of types (at most 20)", "src/io/gmf_file.h", "GMF_MAX_TYPES = 20;"),
    ("files.md", "| 1 | scalar |", "src/io/gmf_file.h", "gmf_scalar = 1,"),
    ("files.md", "| 2 | vector |", "src/io/gmf_file.h", "gmf_vector = 2,"),
    ("files.md", "| 3 | symmetric matrix |", "src/io/gmf_file.h", "gmf_symmetric_matrix = 3,"),
    ("files.md", "| 4 | full matrix |", "src/io/gmf_file.h", "gmf_full_matrix = 4"),
    ("periodicity.md", r"at most 0.001 \|d2\|", "src/cad/affine_fit.cpp", "offset_tolerance = 0.001;"),
    ("periodicity.md", "at most 0.99 without its sign", "src/cad/affine_fit.cpp", "largest_cosine = 0.99;"),
    ("periodicity.md", "at least 0.02 without its sign", "src/cad/affine_fit.cpp", "smallest_volume = 0.02;"),
    ("periodicity.md", "within 0.2 of one another", "src/cad/affine_fit.cpp", "shape_tolerance = 0.2;"),
    ("periodicity.md", "differ by at most 8 percent", "src/cad/affine_fit.cpp", "length_tolerance = 0.08;"),
    ("quality.md", "c = 0.7174389352143008", "src/stats/measures.cpp", "normalisation = 0.7174389352143008;"),
    ("quality.md", "angles take 3.141593 for pi", "src/stats/measures.cpp", "180.0 / 3.141593;"),
    ("quality.md", "1, 5, 25, 50, 75, 95, 99 percent", "tools/distributions.cpp", "{1, 5, 25, 50, 75, 95, 99};"),
    ("quality.md", "in ten ranges", "tools/distributions.cpp", "range_count = 10;"),
    ("quality.md", "sqrt(3)/12 hmax", "src/stats/measures.h", "// sqrt(3) / 12"),
    ("quality.md", "sqrt(6)/36 hmax", "src/stats/measures.h", "// sqrt(6) / 36"),
]


def keywords_of_page(page: str) -> dict[int, str]:
    """The rows "| code, code | `Keyword`, `Keyword` | ..." of the table of keywords."""
    found: dict[int, str] = {}
    for codes, names in re.findall(r"^\| ([0-9, ]+) \| ((?:`\w+`(?:, )?)+) \|", page, flags=re.M):
        found.update(zip(map(int, codes.split(",")), re.findall(r"\w+", names), strict=True))
    return found


def complaints(root: pathlib.Path, facts: list[tuple[str, str, str, str]]) -> list[str]:
    guide = root / "docs" / "guide"
    found = []
    for page, stated, source, text in facts:
        # A page may break its lines anywhere.
        if stated not in " ".join((guide / page).read_text().split()):
            found.append(f"{page} does not say {stated!r}")
        if text not in (root / source).read_text():
            found.append(f"{source} does not say {text!r}, which {page} tells as {stated!r}")
    table = (root / "src/io/gmf_keywords.cpp").read_text()
    named = {int(code): name for code, name in re.findall(r'\{(\d+), \{"(\w+)"', table)}
    for code, name in keywords_of_page((guide / "files.md").read_text()).items():
        if named.get(code) != name:
            found.append(f"files.md: {code} is not the code of {name}")
    return found


def self_test(root: pathlib.Path) -> list[str]:
    """A tree in which one figure is another has to be found."""
    page, stated, source, text = FACTS[0]
    with tempfile.TemporaryDirectory() as name:
        copy = pathlib.Path(name)
        keywords, files = "src/io/gmf_keywords.cpp", "docs/guide/files.md"
        for file in (f"docs/guide/{page}", source, keywords, files):
            (copy / file).parent.mkdir(parents=True, exist_ok=True)
            (copy / file).write_text((root / file).read_text())
        first = len(complaints(copy, FACTS[:1]))
        (copy / source).write_text((root / source).read_text().replace(text, ""))
        (copy / files).write_text((root / files).read_text().replace("| 49 |", "| 50 |"))
        changed = len(complaints(copy, FACTS[:1]))
    codes = len(keywords_of_page((root / files).read_text()))
    return [] if (first, changed, codes) == (0, 2, 14) else [f"self-test: {first}, {changed}, {codes}"]


def main() -> int:
    root = pathlib.Path(sys.argv[1])
    found = self_test(root) + complaints(root, FACTS)
    print("\n".join(found) or "as the sources say")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
