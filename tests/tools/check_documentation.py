#!/usr/bin/env python3
"""Compares what the command lists in its help with its manual page and its completion: every subcommand and every option
has to be in both. The examples of the help have to be in the manual page, and to work.

check_documentation.py COMMAND PAGE COMPLETION MESH
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile


def help_of(command: str, *subcommand: str) -> str:
    return subprocess.run([command, *subcommand, "--help"], check=True, text=True, capture_output=True).stdout


def subcommands_of(text: str) -> list[str]:
    listing = text.split("Subcommands:\n", 1)[1].split("\n\n")[0]
    return [line.split()[0] for line in listing.splitlines()]


def options_of(text: str) -> set[str]:
    lines = re.findall(r"^  (-\S+)", text, flags=re.M)
    return {option for line in lines for option in line.split(",")}


def examples_of(text: str) -> list[str]:
    listing = text.partition("Examples:\n")[2].split("\n\n")[0]
    return [line.strip() for line in listing.splitlines()]


def failing_examples(command: str, examples: list[str], mesh: str) -> list[str]:
    solution = "MeshVersionFormatted 2 Dimension 3 SolAtVertices 526 1 1 " + "0.3 " * 526 + "End"
    found = []
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "wing.mesh").write_bytes(pathlib.Path(mesh).read_bytes())
        (folder / "wing.sol").write_text(solution)
        (folder / "limits.txt").write_text("triangle.angle > 5\n")
        subprocess.run([command, "convert", "wing.mesh", "wing.meshb"], check=True, cwd=folder)
        path = f"{os.path.dirname(command)}:{os.environ['PATH']}"
        for line in examples:
            run = subprocess.run(line, shell=True, capture_output=True, cwd=folder, env={**os.environ, "PATH": path})
            if run.returncode != 0:
                found.append(f"{line}: exit status {run.returncode} {run.stderr.decode()}")
    return found


def page_as_text(page: str) -> str:
    """The page in plain words: fonts, the escapes of dashes and quotes and the quotes of arguments taken away."""
    text = pathlib.Path(page).read_text()
    return re.sub(r"\\f.|\"", "", text.replace("\\-", "-").replace("\\(aq", "'"))


def completed(completion: str, *words: str) -> set[str]:
    """What bash offers for the last of the words of a command line, in a folder with a few files."""
    script = f"""source {completion}
compopt() {{ :; }}
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
_korvane
printf '%s\\n' "${{COMPREPLY[@]}}" """
    with tempfile.TemporaryDirectory() as folder:
        for name in ("a.mesh", "b.meshb", "c.sol", "d.solb", "e.bdf", "f.txt", "h.vtu", "i.stl"):
            pathlib.Path(folder, name).touch()
        pathlib.Path(folder, "g").mkdir()
        shell = ["bash", "--norc", "-c", script, "bash", *words]
        run = subprocess.run(shell, check=True, text=True, capture_output=True, cwd=folder)
    return set(run.stdout.split())


def files_complaints(completion: str) -> list[str]:
    meshes = {"a.mesh", "b.meshb", "g"}
    cases = {
        ("info", ""): meshes | {"c.sol", "d.solb"},
        ("stats", "a.mesh", ""): meshes,
        ("stats", "--valid", ""): set(),
        ("stats", "--worst", ""): set(),
        ("sizes", ""): meshes,
        ("sizes", "a.mesh", ""): {"c.sol", "d.solb", "g"},
        ("check", "a.mesh", ""): meshes,
        ("check", "--limit", ""): set(),
        ("check", "--bad", "a.mesh", ""): meshes,
        ("diff", "a.mesh", ""): meshes,
        ("diff", "--tolerance", ""): set(),
        ("periodic", ""): meshes,
        ("periodic", "--tags", ""): set(),
        ("convert", "b"): {"b.meshb"},
        ("convert", "a.mesh", ""): meshes | {"e.bdf", "h.vtu", "i.stl"},
        ("convert", "a.mesh", "b.meshb", ""): meshes | {"e.bdf", "h.vtu", "i.stl"},
        ("check", "--bad", ""): {"h.vtu", "g"},
    }
    return [
        f"completion of {words}: {sorted(offered)} instead of {sorted(wanted)}"
        for words, wanted in cases.items()
        if (offered := completed(completion, "korvane", *words)) != wanted
    ]


def named(word: str, text: str) -> bool:
    return re.search(rf"(?<![\w-]){re.escape(word)}(?![\w-])", text) is not None


def lint(page: str) -> list[str]:
    try:
        run = subprocess.run(["groff", "-man", "-ww", "-z", page], text=True, capture_output=True)
    except FileNotFoundError:
        return []
    return run.stderr.splitlines()


def main() -> int:
    command, page, completion, mesh = map(os.path.abspath, sys.argv[1:])
    text, overview = page_as_text(page), help_of(command)
    subcommands = subcommands_of(overview)
    complaints = lint(page) + files_complaints(completion)
    version = subprocess.run([command, "--version"], check=True, text=True, capture_output=True).stdout.strip()
    if f" {version} " not in text.splitlines()[0]:
        complaints.append(f"the manual page is not of {version}")
    complaints += [f"the manual page lacks {name}" for name in subcommands if not named(f"korvane {name}", text)]
    if lacking := set(subcommands) - completed(completion, "korvane", ""):
        complaints.append(f"completion lacks {sorted(lacking)}")
    for words, listing in [((), overview)] + [((name,), help_of(command, name)) for name in subcommands]:
        options = options_of(listing)
        complaints += [f"the manual page lacks {option}" for option in sorted(options) if not named(option, text)]
        if lacking := options - completed(completion, "korvane", *words, "-"):
            complaints.append(f"completion of korvane {' '.join(words)} lacks {sorted(lacking)}")
        if not options:
            complaints.append(f"no options found in the help of korvane {' '.join(words)}")
        examples = examples_of(listing)
        complaints += [f"the manual page lacks {line}" for line in examples if line not in text.splitlines()]
        complaints += failing_examples(command, examples, mesh)
        if words and not examples:
            complaints.append(f"no examples found in the help of korvane {' '.join(words)}")
    print("\n".join(complaints) or f"{len(subcommands)} subcommands and their options are in both")
    return 1 if complaints or not subcommands else 0


if __name__ == "__main__":
    sys.exit(main())
