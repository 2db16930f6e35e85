#!/usr/bin/env python3
"""Transcripts in pages: "```console" blocks of command lines behind "$ " and what they print, on both streams.

The commands of a page run in a folder that starts with a few files, one after the other, with the korvane command of the
build in front of all others. Each has to succeed.

transcripts.py --command COMMAND --files FILE... --page PAGE  writes what the commands print now into the page
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

BLOCK = re.compile(r"^```console\n(.*?)^```[ ]*$", flags=re.M | re.S)
PROMPT = "$ "


def lines_of(text: str) -> list[str]:
    """The lines without the blanks at their ends, which a page should not have."""
    return [line.rstrip() for line in text.splitlines()]


def run_line(line: str, command: pathlib.Path, folder: pathlib.Path) -> subprocess.CompletedProcess:
    path = f"{command.resolve().parent}{os.pathsep}{os.environ['PATH']}"
    return subprocess.run(
        ["sh", "-c", line],
        cwd=folder,
        env={**os.environ, "PATH": path, "LC_ALL": "C"},
        text=True,
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        timeout=60,
    )


def run_again(shown: str, command: pathlib.Path, folder: pathlib.Path) -> tuple[str, list[str]]:
    """What a block should show, and what is wrong with its commands."""
    lines, wrong = [], []
    for line in shown.splitlines():
        if not line.startswith(PROMPT):
            continue
        run = run_line(line.removeprefix(PROMPT), command, folder)
        if run.returncode != 0:
            wrong.append(f"{line}: exit status {run.returncode}")
        lines += [line, *lines_of(run.stdout)]
    if not lines:
        wrong.append("a transcript without a command")
    return "".join(line + "\n" for line in lines), wrong


def renewed(page: str, command: pathlib.Path, folder: pathlib.Path) -> tuple[str, list[str]]:
    """The page with the transcripts that it should have, and what is wrong with their commands."""
    wrong: list[str] = []

    def renew(block: re.Match) -> str:
        shown, found = run_again(block[1], command, folder)
        wrong.extend(found)
        return f"```console\n{shown}```"

    return BLOCK.sub(renew, page), wrong


def main() -> None:
    parser = argparse.ArgumentParser()
    parser.add_argument("--command", type=pathlib.Path, required=True)
    parser.add_argument("--files", type=pathlib.Path, nargs="*", default=[])
    parser.add_argument("--page", type=pathlib.Path, required=True)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        for file in options.files:
            shutil.copy(file, folder)
        page, wrong = renewed(options.page.read_text(), options.command, pathlib.Path(folder))
    if wrong:
        raise SystemExit("\n".join(wrong))
    options.page.write_text(page)


if __name__ == "__main__":
    main()
