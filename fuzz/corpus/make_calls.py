#!/usr/bin/env python3
"""Makes the seeds of the targets that read calls from the bytes of their input: random bytes of which many
are small, so that most of them choose calls and usual arguments. They are the same on every machine."""
import pathlib
import random

TARGETS = ("cad_calls", "memory_mesh_calls", "tag_calls")
SIZES = (40, 150, 400, 1000)


def seed(name, size):
    source = random.Random(f"{name} {size}")
    return bytes(source.choice((source.randrange(16), source.randrange(80), source.randrange(256)))
                 for _ in range(size))


def main():
    for name in TARGETS:
        folder = pathlib.Path(__file__).parent / name
        folder.mkdir(exist_ok=True)
        for size in SIZES:
            (folder / f"seed-{size}").write_bytes(seed(name, size))


if __name__ == "__main__":
    main()
