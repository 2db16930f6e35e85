#!/usr/bin/env python3
"""Signals a command that is surely in the middle of writing: it has to end by the signal and to leave nothing but what was
there before.

check_signals.py COMMAND
"""

import os
import pathlib
import resource
import signal
import struct
import subprocess
import sys
import tempfile

VERTICES = 1_000_000
ATTEMPTS = 50


def write_mesh(path):
    """Many times the same vertex, which takes the command a while to write as text."""
    vertex = struct.pack("<3di", 0.123456789012345, -1.23456789012345e-5, 123456.789012345, 7)
    end = 20 + 12 + VERTICES * len(vertex)
    header = struct.pack("<8i", 1, 2, 3, 20, 3, 4, end, VERTICES)
    path.write_bytes(header + VERTICES * vertex + struct.pack("<2i", 54, 0))


def drafts(folder):
    return [name for name in os.listdir(folder) if name.startswith(".")]


def start_and_stop_while_writing(line, folder, **options):
    """The command, stopped while its output is not whole."""
    for _ in range(ATTEMPTS):
        process = subprocess.Popen(line, cwd=folder, **options)
        while not drafts(folder) and process.poll() is None:
            pass
        process.send_signal(signal.SIGSTOP)
        state = os.waitid(os.P_PID, process.pid, os.WSTOPPED | os.WEXITED | os.WNOWAIT)
        if state.si_code == os.CLD_STOPPED and drafts(folder):
            return process
        process.send_signal(signal.SIGCONT)
        process.wait()
        (folder / "out.mesh").write_text("precious")
    raise SystemExit("the command was never caught while it was writing")


def go_on_with(process, number):
    process.send_signal(number)
    process.send_signal(signal.SIGCONT)
    return process.wait()


def main():
    command = os.path.abspath(sys.argv[1])
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        write_mesh(folder / "in.meshb")
        (folder / "out.mesh").write_text("precious")
        line = [command, "convert", "in.meshb", "out.mesh"]
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            process = start_and_stop_while_writing(line, folder)
            assert go_on_with(process, number) == -number, (number, process.returncode)
            assert sorted(os.listdir(folder)) == ["in.meshb", "out.mesh"], (number, os.listdir(folder))
            assert (folder / "out.mesh").read_text() == "precious", number

        # A limit on the size of files is a problem like a full disk.
        limited = subprocess.run(
            line, cwd=folder, text=True, capture_output=True,
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 20, 1 << 20)),
        )  # fmt: skip
        assert limited.returncode == 1 and "out.mesh: " in limited.stderr, limited
        assert not drafts(folder) and (folder / "out.mesh").read_text() == "precious"

        # What nohup shields from goes on.
        shielded = start_and_stop_while_writing(
            line, folder, preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN)
        )
        assert go_on_with(shielded, signal.SIGHUP) == 0, shielded.returncode
        assert not drafts(folder) and (folder / "out.mesh").stat().st_size > VERTICES
        same = [command, "diff", "-q", "in.meshb", "out.mesh", "--tolerance", "1e-9"]
        assert subprocess.run(same, cwd=folder).returncode == 0


main()
