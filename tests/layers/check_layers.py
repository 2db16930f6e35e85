#!/usr/bin/env python3
"""Checks the order of dependence of the folders of src, that no includes form a circle, that file names are unique, and
that only the two files made for it allocate memory."""

import pathlib
import re
import sys
import tempfile

# Every folder, with the folders that it may include from besides itself.
ALLOWED = {
    "common": set(),
    "context": {"common"},
    "tags": {"common", "context"},
    "mesh": {"common", "context", "tags"},
    "io": {"common", "context", "tags", "mesh"},
    "stats": {"common", "context", "tags", "mesh"},
    "cad": {"common", "context", "tags"},
    "dcad": {"common", "context", "tags", "cad"},
}
GENERATED = {"build_date.h"}
MAY_ALLOCATE = {"common/memory.h", "common/array.h"}


def includes_of(file: pathlib.Path) -> list[str]:
    return re.findall(r'^\s*#\s*include\s*"([^"]+)"', file.read_text(), flags=re.M)


def circle(graph: dict[str, list[str]]) -> list[str]:
    """The files of one circle, or nothing."""
    done: set[str] = set()

    def visit(file: str, path: list[str]) -> list[str]:
        if file in path:
            return path[path.index(file) :] + [file]
        if file in done:
            return []
        for included in graph.get(file, []):
            if found := visit(included, path + [file]):
                return found
        done.add(file)
        return []

    return next((found for file in graph if (found := visit(file, []))), [])


def complaints(root: pathlib.Path) -> list[str]:
    source = root / "src"
    found: list[str] = []
    graph: dict[str, list[str]] = {}
    names: dict[str, str] = {}
    for file in sorted(p for p in source.rglob("*") if p.suffix in (".h", ".cpp")):
        name = file.relative_to(source).as_posix()
        folder = name.split("/")[0]
        if folder not in ALLOWED:
            found.append(f"{name}: folder {folder} has no place in the order")
            continue
        if file.name in names:
            found.append(f"{name}: {names[file.name]} has the same file name")
        names[file.name] = name
        graph[name] = [included for included in includes_of(file) if included not in GENERATED]
        for included in graph[name]:
            if not (source / included).is_file():
                found.append(f'{name}: "{included}" is not written from src/')
            elif included.split("/")[0] not in ALLOWED[folder] | {folder}:
                found.append(f"{name}: {folder} must not include {included}")
        if name not in MAY_ALLOCATE and re.search(r"\b[mc]?(re)?alloc\(|\bnew [A-Za-z]|\bfree\(", without_comments(file)):
            found.append(f"{name}: allocates by itself")
    if files := circle(graph):
        found.append("circle: " + " -> ".join(files))
    return found


def without_comments(file: pathlib.Path) -> str:
    text = re.sub(r"/\*.*?\*/", "", file.read_text(), flags=re.S)
    return re.sub(r"//.*", "", text)


def self_test() -> list[str]:
    """Each planted defect must be found, and a clean tree must pass."""
    clean = {"common/a.h": "", "mesh/b.h": '#include "common/a.h"\n', "io/c.cpp": '#include "mesh/b.h"\n'}
    defects = {
        "upwards": {"common/a.h": '#include "mesh/b.h"\n', "mesh/b.h": ""},
        "sideways": {"io/c.cpp": '#include "stats/d.h"\n', "stats/d.h": ""},
        "circle": {"mesh/b.h": '#include "mesh/e.h"\n', "mesh/e.h": '#include "mesh/b.h"\n'},
        "same name": {"io/b.h": ""},
        "relative": {"mesh/f.h": '#include "b.h"\n'},
        "unknown folder": {"misc/g.h": ""},
        "allocation": {"mesh/h.cpp": "void *p = malloc(1);\n"},
    }
    found: list[str] = []
    for name, defect in {"clean": {}, **defects}.items():
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for file, text in {**clean, **defect}.items():
                (root / "src" / file).parent.mkdir(parents=True, exist_ok=True)
                (root / "src" / file).write_text(text)
            if bool(complaints(root)) != (name != "clean"):
                found.append(f"self-test: {name} was judged wrongly")
    return found


def main() -> int:
    found = self_test() if sys.argv[1] == "--self-test" else complaints(pathlib.Path(sys.argv[1]))
    print("\n".join(found) or "in order")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
