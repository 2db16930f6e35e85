#!/usr/bin/env python3
"""Installs one component after the other, checks the files that each lays down, and moves everything to the prefix that
the clients are built against: what is installed must not depend on where it was installed first."""

import argparse
import pathlib
import shutil
import subprocess
import sys


SUBCOMMANDS = ("check", "convert", "diff", "info", "periodic", "sizes", "stats")


def expected(component: str, libdir: str, version: str) -> set[str]:
    major = version.split(".")[0]
    cmake = f"{libdir}/cmake/korvane"
    return {
        "runtime": {f"{libdir}/libkorvane.so.{version}", f"{libdir}/libkorvane.so.{major}"},
        "development": {
            "include/korvane.h",
            f"{libdir}/libkorvane.so",
            f"{libdir}/pkgconfig/korvane.pc",
            f"{cmake}/korvane-config.cmake",
            f"{cmake}/korvane-config-version.cmake",
            f"{cmake}/korvane-targets.cmake",
        },
        "tools": {
            "bin/korvane",
            "share/man/man1/korvane.1",
            "share/bash-completion/completions/korvane",
        }
        | {f"share/korvane/schema/{name}.json" for name in SUBCOMMANDS},
    }[component]


def files_in(folder: pathlib.Path) -> set[str]:
    names = {p.relative_to(folder).as_posix() for p in folder.rglob("*") if p.is_symlink() or p.is_file()}
    # One file of the targets is named after the build type.
    return {name for name in names if not pathlib.Path(name).match("korvane-targets-*.cmake")}


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    for option in ("--cmake", "--build", "--prefix", "--libdir", "--version"):
        parser.add_argument(option, required=True)
    parser.add_argument("--components", nargs="+", required=True)
    arguments = parser.parse_args()

    prefix = pathlib.Path(arguments.prefix)
    first = prefix.with_name("first_prefix")
    for folder in (prefix, first):
        shutil.rmtree(folder, ignore_errors=True)
    complaints, laid_down = [], set()
    for component in arguments.components:
        install = [arguments.cmake, "--install", arguments.build, "--prefix", str(first), "--component", component]
        subprocess.run(install, check=True, stdout=subprocess.DEVNULL)
        new = files_in(first) - laid_down
        wanted = expected(component, arguments.libdir, arguments.version)
        complaints += [f"{component} lacks {name}" for name in sorted(wanted - new)]
        complaints += [f"{component} has {name} too many" for name in sorted(new - wanted)]
        laid_down |= new

    everything = prefix.with_name("everything")
    shutil.rmtree(everything, ignore_errors=True)
    install = [arguments.cmake, "--install", arguments.build, "--prefix", str(everything)]
    subprocess.run(install, check=True, stdout=subprocess.DEVNULL)
    if stray := files_in(everything) - laid_down:
        complaints.append(f"of no component: {sorted(stray)}")
    first.rename(prefix)
    print("\n".join(complaints) or f"{len(laid_down)} files of {len(arguments.components)} components")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
