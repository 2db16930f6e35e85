#!/usr/bin/env python3
"""Looks at what a terminal gets beside what a file gets: colour, a progress bar for work that lasts, and Ctrl-C.

check_terminal.py COMMAND MESH  exits with 77 where the system has no terminals to give
"""

import os
import pathlib
import pty
import signal
import subprocess
import sys
import tempfile
import time

CLEARED = "\r\033[K"


def environment(**changes):
    """Ours, with what the tests are about as a terminal usually has it."""
    plain = {name: value for name, value in os.environ.items() if name != "NO_COLOR"}
    return {**plain, "TERM": "xterm", **changes}


class OnTerminal:
    """A command whose standard error, and standard output unless `output` says otherwise, are a terminal."""

    def __init__(self, command, output=None, **changes):
        self.leader, follower = pty.openpty()
        self.process = subprocess.Popen(
            command,
            stdin=subprocess.DEVNULL,
            stdout=follower if output is None else output,
            stderr=follower,
            env=environment(**changes),
        )
        os.close(follower)

    def written(self):
        """All that the terminal got."""
        parts = []
        try:
            while part := os.read(self.leader, 4096):
                parts.append(part)
        except OSError:
            pass  # all that was written is read
        os.close(self.leader)
        self.process.wait()
        return b"".join(parts).decode().replace("\r\n", "\n")


def on_terminal(command, **changes):
    return OnTerminal(command, **changes).written()


def skip_without_terminals():
    try:
        for end in pty.openpty():
            os.close(end)
    except OSError as problem:
        print("no terminals here:", problem)
        sys.exit(77)


def check_colour(command, mesh):
    plain = f"{mesh}: valid\n"
    assert subprocess.run([command, "check", mesh], text=True, capture_output=True).stdout == plain
    # Short work shows no progress.
    assert on_terminal([command, "check", mesh]) == f"{mesh}: \033[32mvalid\033[0m\n"
    bad = on_terminal([command, "check", mesh, "--limit", "triangle.angle>90"])
    assert bad.startswith(f"{mesh}: \033[31mfindings\033[0m: "), bad
    assert on_terminal([command, "check", mesh], NO_COLOR="1") == plain
    assert on_terminal([command, "check", mesh], NO_COLOR="") != plain
    assert on_terminal([command, "check", mesh], TERM="dumb") == plain
    assert "\033" not in on_terminal([command, "check", "--json", mesh])


def new_pipe(folder):
    pipe = folder / f"pipe{len(os.listdir(folder))}.mesh"
    os.mkfifo(pipe)
    return pipe


def open_and_close(pipe):
    """Waits until the command opens the pipe; it gives up pipes at once."""
    os.close(os.open(pipe, os.O_WRONLY))


class Lasting:
    """A command that has begun and waits for a pipe before it works on a file with many elements."""

    def __init__(self, folder, command, options, **changes):
        first, self.pipe = new_pipe(folder), new_pipe(folder)
        self.run = OnTerminal([command, "check", first, self.pipe, folder / "long.mesh", *options], **changes)
        open_and_close(first)

    def shown(self):
        """What the terminal got after the complaints about the pipes."""
        open_and_close(self.pipe)
        return self.run.written().split("solution file\n", 2)[2]


def check_progress(command, folder):
    count = 10000
    edges = "".join(f"{i} {i + 1} 0\n" for i in range(1, count))
    (folder / "long.mesh").write_text(
        f"MeshVersionFormatted 2 Dimension 3 Vertices {count}\n{'0 0 0 0 ' * count} Edges {count - 1}\n{edges} End"
    )
    verdict = f"{folder}/long.mesh: valid\n"
    plain = Lasting(folder, command, [])
    uncoloured = Lasting(folder, command, [], NO_COLOR="1")
    quiet = Lasting(folder, command, ["-q"])
    dumb = Lasting(folder, command, [], TERM="dumb")
    as_json = Lasting(folder, command, ["--json"], output=subprocess.DEVNULL)
    time.sleep(1.1)  # the bar is for commands that have lasted a second

    bar, end = plain.shown().rsplit(CLEARED, 1)
    assert end == verdict.replace("valid", "\033[32mvalid\033[0m"), end
    assert bar.startswith(CLEARED + "...") and "long.mesh [####" in bar and bar.endswith(" %"), bar
    assert all(len(line) <= 80 for line in bar.split(CLEARED)), bar
    assert uncoloured.shown() == bar + CLEARED + verdict
    assert quiet.shown() == ""
    assert dumb.shown() == verdict
    assert as_json.shown() == bar + CLEARED


def check_interrupt(command, folder):
    """Ctrl-C ends a command that waits for a pipe."""
    first, endless = new_pipe(folder), new_pipe(folder)
    child, leader = pty.fork()
    if child == 0:
        os.execve(command, [command, "info", first, endless], environment())
    open_and_close(first)
    os.write(leader, b"\x03")
    _, status = os.waitpid(child, 0)
    os.close(leader)
    assert os.WIFSIGNALED(status) and os.WTERMSIG(status) == signal.SIGINT, status


def main():
    command, mesh = sys.argv[1:]
    skip_without_terminals()
    check_colour(command, mesh)
    with tempfile.TemporaryDirectory() as folder:
        check_progress(command, pathlib.Path(folder))
        check_interrupt(command, pathlib.Path(folder))


main()
