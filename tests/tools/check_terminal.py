#!/usr/bin/env python3
"""Looks at what a terminal gets beside what a file gets.

check_terminal.py COMMAND MESH  exits with 77 where the system has no terminals to give
"""

import os
import pty
import subprocess
import sys


def on_terminal(command, **environment):
    """All that the command writes to a terminal."""
    leader, follower = pty.openpty()
    process = subprocess.Popen(
        command, stdin=subprocess.DEVNULL, stdout=follower, stderr=follower, env={**os.environ, **environment}
    )
    os.close(follower)
    written = b""
    try:
        while part := os.read(leader, 4096):
            written += part
    except OSError:
        pass  # all that was written is read
    os.close(leader)
    process.wait()
    return written.decode().replace("\r\n", "\n")


def skip_without_terminals():
    try:
        for end in pty.openpty():
            os.close(end)
    except OSError as problem:
        print("no terminals here:", problem)
        sys.exit(77)


def main():
    command, mesh = sys.argv[1:]
    skip_without_terminals()
    os.environ.pop("NO_COLOR", None)
    plain = f"{mesh}: valid\n"
    assert subprocess.run([command, "check", mesh], text=True, capture_output=True).stdout == plain
    # Short work shows no progress.
    assert on_terminal([command, "check", mesh]) == f"{mesh}: \033[32mvalid\033[0m\n"
    bad = on_terminal([command, "check", mesh, "--limit", "triangle.angle>90"])
    assert bad.startswith(f"{mesh}: \033[31mfindings\033[0m: "), bad
    assert on_terminal([command, "check", mesh], NO_COLOR="1") == plain
    assert on_terminal([command, "check", mesh], NO_COLOR="") != plain
    assert "\033" not in on_terminal([command, "check", "--json", mesh])


main()
