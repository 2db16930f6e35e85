#!/usr/bin/env python3
"""Compares the symbols that the built library exports with the checked-in list and with the header, and checks that
each has the version node."""

import argparse
import pathlib
import re
import subprocess
import sys


def exported(nm: str, library: str) -> dict[str, str]:
    """The names of the symbols, with the version node of each."""
    lines = subprocess.run([nm, "--dynamic", "--defined-only", library], check=True, text=True, capture_output=True).stdout
    symbols = (line.split() for line in lines.splitlines())
    names = (name.partition("@@") for _, kind, name in symbols if kind != "A")  # A: the version node itself
    return {name: node for name, _, node in names}


def declared(header: str) -> set[str]:
    text = re.sub(r"/\*.*?\*/", "", pathlib.Path(header).read_text(), flags=re.S)
    return set(re.findall(r"KORVANE_API\s[^;]*?\b(korvane_\w+)\(", text))


def differences(what: str, found: set[str], wanted: set[str]) -> list[str]:
    return [f"{what} lacks {name}" for name in sorted(wanted - found)] + [
        f"{what} has {name} too many" for name in sorted(found - wanted)
    ]


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    for option in ("--nm", "--library", "--header", "--list", "--node"):
        parser.add_argument(option, required=True)
    arguments = parser.parse_args()
    lines = pathlib.Path(arguments.list).read_text().split()
    wanted = set(lines)
    nodes = exported(arguments.nm, arguments.library)
    complaints = differences("the library", set(nodes), wanted)
    complaints += [f"{name} has no version {arguments.node}" for name, node in nodes.items() if node != arguments.node]
    complaints += differences("the header", declared(arguments.header), wanted)
    if lines != sorted(wanted):
        complaints.append("the list is not sorted or names a symbol twice")
    print("\n".join(complaints) or f"{len(wanted)} functions exported, declared and listed")
    return 1 if complaints or not wanted else 0


if __name__ == "__main__":
    sys.exit(main())
