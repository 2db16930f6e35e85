#!/usr/bin/env python3
"""Compiles and runs the C programs of a page of the guide and compares what they print with what the page shows.

A block that opens with "```c" is a complete program. One that opens with "```c fragment" becomes the body of a main
function that has a context, with room for the declarations that every fragment may need. A "```text" block is what the
program before it prints. All programs of a page run in one folder, one after the other, so that a later one can read
what an earlier one wrote; the folder starts with spindle.mesh. After them the transcripts of the page are made again there
(see transcripts.py). Other blocks are passed over.

Complaints: a program or a command that does not compile, fails, or prints something else than the page shows; a text
block without a program; a link to a file that does not exist; a file of the folder that the page should have a link to.
"""

import argparse
import difflib
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

import transcripts

BLOCK = re.compile(r"^```([^\n`]*)\n(.*?)^```[ ]*$", flags=re.M | re.S)
LINK = re.compile(r"\]\(([^)#\s]+)(?:#[^)]*)?\)")
PROLOGUE = """#include <korvane.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
int main(void)
{
    korvane_context_t *context = korvane_context_new();
    if (context == NULL)
        return 1;
"""
EPILOGUE = "    korvane_context_delete(context);\n    return 0;\n}\n"


class Program:
    def __init__(self, source: str, line: int):
        self.source = source
        self.line = line
        self.shown: str | None = None


def programs_of(page: str) -> tuple[list[Program], list[str]]:
    """The programs of a page with the outputs that it shows, and what is wrong with its blocks."""
    programs: list[Program] = []
    wrong: list[str] = []
    for block in BLOCK.finditer(page):
        kind, text = block[1].strip(), block[2]
        line = page.count("\n", 0, block.start()) + 2
        if kind == "c":
            programs.append(Program(text, line))
        elif kind == "c fragment":
            programs.append(Program(f'{PROLOGUE}#line {line} "fragment"\n{text}{EPILOGUE}', line))
        elif kind == "text":
            if not programs or programs[-1].shown is not None:
                wrong.append(f"line {line}: output without a program")
            else:
                programs[-1].shown = text
        elif kind.startswith(("c", "C")) and kind not in ("cmake", "console"):
            wrong.append(f"line {line}: no rule for blocks of {kind!r}")
    return programs, wrong


def links_complaints(page: str, folder: pathlib.Path) -> list[str]:
    prose = BLOCK.sub("", page)
    targets = {target for target in LINK.findall(prose) if "://" not in target}
    return [f"link to {target}, which is not there" for target in sorted(targets) if not (folder / target).exists()]


def difference(shown: str, printed: str) -> str:
    """Empty if there is none beyond blanks at the ends of lines."""
    lines = map(transcripts.lines_of, (shown, printed))
    return "\n".join(difflib.unified_diff(*lines, "shown", "printed", lineterm=""))


def run_program(
    program: Program, compile_command: list[str], libraries: list[str], folder: pathlib.Path, any_output: bool
) -> list[str]:
    source, executable = folder / "program.c", folder / "program"
    source.write_text(program.source)
    built = subprocess.run(
        [*compile_command, str(source), "-o", str(executable), *libraries], text=True, capture_output=True
    )
    if built.returncode != 0:
        return [f"line {program.line}: does not compile\n{built.stderr}"]
    run = subprocess.run([str(executable)], cwd=folder, text=True, capture_output=True, timeout=60)
    found = []
    if run.returncode != 0 or run.stderr:
        found.append(f"line {program.line}: exit status {run.returncode}\n{run.stderr}")
    if not any_output and (lines := difference(program.shown or "", run.stdout)):
        found.append(f"line {program.line}: prints something else\n{lines}")
    return found


def transcripts_complaints(page: str, command: pathlib.Path, folder: pathlib.Path) -> list[str]:
    wanted, found = transcripts.renewed(page, command, folder)
    if lines := difference(page, wanted):
        found.append(f"a transcript is out of date; transcripts.py makes it again\n{lines}")
    return found


def page_complaints(
    page: pathlib.Path,
    compile_command: list[str],
    libraries: list[str],
    files: list[pathlib.Path],
    any_output: bool = False,
    command: pathlib.Path | None = None,
) -> list[str]:
    text = page.read_text()
    programs, found = programs_of(text)
    found += links_complaints(text, page.parent)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for file in files:
            shutil.copy(file, folder)
        for program in programs:
            found += run_program(program, compile_command, libraries, folder, any_output)
        if command:
            found += transcripts_complaints(text, command, folder)
    return found


def listing_complaints(page: pathlib.Path, pattern: str) -> list[str]:
    """Files beside the page that match the pattern and that it has no link to."""
    linked = set(LINK.findall(page.read_text())) | {page.name}
    names = sorted(file.name for file in page.parent.glob(pattern))
    return [f"{name} is not listed" for name in names if name not in linked]


def untested(folder: pathlib.Path, tested: set[str]) -> list[str]:
    pages = {page.name for page in folder.glob("*.md")}
    return [f"{name} is not tested" for name in sorted(pages - tested)]


def self_test(compile_command: list[str], libraries: list[str]) -> list[str]:
    """Each planted defect must be found, and a good page must pass."""
    good = 'Text.\n\n```c fragment\nputs("one");\n```\nprints\n\n```text\none\n```\n'
    pages = {
        "good": (good, False),
        "unused": (good + "```sh\nexit 1\n```\n", False),
        "other output": (good.replace("one\n```\n", "two\n```\n"), True),
        "hidden output": (good.replace("text", "txt"), True),
        "status": ("```c\nint main(void)\n{\n    return 1;\n}\n```\n", True),
        "warning": ("```c fragment\nint unused;\n```\n", True),
        "not C99": ("```c fragment\nint a = ({ 1; });\n(void)a;\n```\n", True),
        "text alone": ("```text\none\n```\n", True),
        "link": ("[page](missing.md)\n", True),
        "unknown kind": ("```c program\n```\n", True),
        "transcript": ("```console\n$ echo one; echo two >&2\none\ntwo\n$ true\n```\n", False),
        "old transcript": ("```console\n$ echo one\ntwo\n```\n", True),
        "failing command": ("```console\n$ false\n```\n", True),
        "no command": ("```console\none\n```\n", True),
    }
    found = []
    with tempfile.TemporaryDirectory() as name:
        for title, (text, is_wrong) in pages.items():
            page = pathlib.Path(name, "page.md")
            page.write_text(text)
            if bool(page_complaints(page, compile_command, libraries, [], command=page)) != is_wrong:
                found.append(f"self-test: {title} was judged wrongly")
        pathlib.Path(name, "other.md").touch()
        if not listing_complaints(page, "*.md") or not untested(page.parent, {page.name}):
            found.append("self-test: a page that is not listed or tested was not found")
    return found


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--flags", default="")
    parser.add_argument("--include", required=True)
    parser.add_argument("--library", type=pathlib.Path, required=True)
    parser.add_argument("--files", type=pathlib.Path, nargs="*", default=[])
    parser.add_argument("--command", type=pathlib.Path, help="the korvane command; without it, transcripts are passed over")
    parser.add_argument("--page", type=pathlib.Path)
    parser.add_argument("--any-output", action="store_true", help="the page does not show what its programs print")
    parser.add_argument("--lists", metavar="PATTERN", help="the page has links to all such files beside it")
    parser.add_argument("--tested", nargs="*", default=[], help="all pages of the folder, by name")
    parser.add_argument("--self-test", action="store_true")
    options = parser.parse_args()
    compile_command = [options.compiler, *options.flags.split(), "-std=c99", "-pedantic", "-Wall", "-Wextra", "-Werror"]
    compile_command += ["-I", options.include]
    libraries = [str(options.library), f"-Wl,-rpath,{options.library.parent}", "-lm"]
    found = []
    if options.self_test:
        found += self_test(compile_command, libraries)
    if options.page:
        found += page_complaints(options.page, compile_command, libraries, options.files, options.any_output, options.command)
    if options.lists:
        found += listing_complaints(options.page, options.lists)
    if options.tested:
        found += untested(options.page.parent, set(options.tested))
    print("\n".join(found) or "as shown")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
