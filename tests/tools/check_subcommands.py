#!/usr/bin/env python3
"""Runs every subcommand on every kind of file, in words, quietly and as JSON, and judges exit statuses, where texts go,
the documents by their schemas, and what is left behind.

check_subcommands.py COMMAND SCHEMAS SAMPLE REAL  REAL is a folder of files of other programs, which may be absent
"""

import dataclasses
import json
import pathlib
import subprocess
import sys
import tempfile

import jsonschema

import vtu

HEAD = "MeshVersionFormatted 2 Dimension 3 "
ODD = HEAD + "Vertices 4 0 0 0 1 1 0 0 1 0 1 0 2 9 9 9 2 Triangles 1 1 2 3 7 End"
PAIR = (
    HEAD + "Vertices 6 0 0 0 0 3 0 0 0 0 1 0 0 0 0 2 0 3 0 2 0 0 1 2 0 Triangles 2 1 2 3 1 4 5 6 2 "
    "Edges 1 1 9 0 RequiredTriangles 1 1 End"
)
SIZES = HEAD + "SolAtVertices 4 1 1 1 1 0.5 1 End"
FLAT = "MeshVersionFormatted 2 Dimension 2 Vertices 1 0 0 0 End"

OUTPUTS = ("out.mesh", "out.meshb", "out.bdf", "out.vtu", "out.stl")
TELLING = {"check", "diff", "periodic"}  # whose status 1 tells what was found, so that what cannot be read is 3


@dataclasses.dataclass
class Input:
    name: str
    readable: bool = True
    vertices: int = 0
    # The statuses that the verdicts may have.
    check: tuple[int, ...] = (0, 1)
    periodic: tuple[int, ...] = (0, 1)


def lines(file: Input):
    """Command lines on a file, and the files that they leave if all goes well."""
    name = file.name
    yield ["info", name], ()
    yield ["info", "--header", name], ()
    yield ["stats", name], ()
    yield ["stats", "--valid", "x", name], ()
    yield ["stats", "--histogram", "--by-tag", "--worst", "3", name], ()
    yield ["sizes", name, "wanted.sol"], ()
    yield ["check", name], ()
    yield ["check", name, "--limit", "triangle.angle>0", "--bad-ids", "ids", "--bad", "bad.vtu"], ("ids", "bad.vtu")
    yield ["diff", name, name], ()
    yield ["convert", name, *OUTPUTS], OUTPUTS
    if name == "sample.mesh":
        for output in OUTPUTS:
            yield ["convert", name, output], (output,)
    yield ["periodic", name, "--tags", "1,3"], ()


def sound_files(folder, command, sample):
    """The sample and meshes that are nearly empty, as texts and binary."""
    texts = {
        "sample": (sample.read_text(), Input("sample", vertices=526, check=(0,), periodic=(0,))),
        "none": (HEAD + "Vertices 0 End", Input("none", check=(0,), periodic=(1,))),
        "bare": (HEAD + "End", Input("bare", check=(0,), periodic=(1,))),
        "points": (HEAD + "Vertices 2 0 0 0 1 1 0 0 2 End", Input("points", vertices=2, check=(1,), periodic=(1,))),
    }
    for name, (text, file) in texts.items():
        (folder / f"{name}.mesh").write_text(text)
        subprocess.run([command, "convert", f"{name}.mesh", f"{name}.meshb"], cwd=folder, check=True)
        yield dataclasses.replace(file, name=f"{name}.mesh")
        yield dataclasses.replace(file, name=f"{name}.meshb")


def broken_files(folder):
    """Made from the sample, which is there in both encodings."""
    text, binary = (folder / "sample.mesh").read_bytes(), (folder / "sample.meshb").read_bytes()
    contents = {
        "cut_off.mesh": text[: len(text) // 2],
        "cut_off.meshb": binary[: len(binary) // 2],
        "cut_off_late.mesh": text[:-10],
        "cut_off_late.meshb": binary[:-10],
        "begun.mesh": text[:20],
        "begun.meshb": binary[:10],
        "boasting.mesh": text.replace(b"936", b"2000000000"),
        "miscounted.mesh": text.replace(b"Edges\n48", b"Edges\n49"),
        "nothing.mesh": b"",
        "picture.mesh": b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR",
        "picture.meshb": b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR",
        "name.txt": text,
    }
    for name, content in contents.items():
        (folder / name).write_bytes(content)
    (folder / "folder.mesh").mkdir()
    yield from (Input(name, readable=False) for name in (*contents, "folder.mesh", "missing.mesh"))


def real_files(real, command):
    for path in sorted([*real.glob("*.mesh"), *real.glob("*.meshb")]):
        run = subprocess.run([command, "info", "--json", path], check=True, text=True, capture_output=True)
        (vertices,) = [one for one in json.loads(run.stdout)["results"][0]["entities"] if one["kind"] == "vertex"]
        yield Input(str(path), vertices=vertices["count"])


def refuse(constant):
    raise ValueError(f"{constant} is not JSON")


class Judge:
    def __init__(self, command, schemas, folder):
        self.command, self.folder = command, folder
        self.validators = {}
        for path in schemas.iterdir():
            schema = json.loads(path.read_text())
            jsonschema.Draft202012Validator.check_schema(schema)
            self.validators[path.stem] = jsonschema.Draft202012Validator(schema)
        self.seen = set()
        self.runs = 0

    def run(self, line):
        self.runs += 1
        return subprocess.run([self.command, *line], cwd=self.folder, text=True, capture_output=True)

    def document(self, line, statuses):
        """What the command prints with --json, judged by its schema and the status."""
        run = self.run([*line, "--json"])
        assert run.returncode in statuses, (line, run)
        document = json.loads(run.stdout, parse_constant=refuse)
        self.validators[line[0]].validate(document)
        assert document["status"] == run.returncode, (line, document)
        self.seen.add(line[0])
        return document["results"], run

    def files(self):
        return {path.name for path in self.folder.iterdir()}

    def judge_sound(self, file):
        (self.folder / "wanted.sol").write_text(
            f"{HEAD}SolAtVertices {file.vertices} 1 1 {'0.5 ' * file.vertices} End" if file.vertices else HEAD
        )
        for line, outputs in lines(file):
            subcommand, before = line[0], self.files()
            statuses = {"check": file.check, "periodic": file.periodic}.get(subcommand, (0,))
            if subcommand == "sizes" and file.vertices == 0:
                statuses = (1,)  # no sizes, no size map
            plain = self.run(line)
            assert plain.returncode in statuses, (line, plain)
            assert plain.stdout or subcommand in ("convert", "sizes"), (line, plain)
            if "--limit" in line:
                vtu.read(self.folder / "bad.vtu")
                assert bool((self.folder / "ids").read_text()) == plain.returncode, line
            if "--valid" in line:
                assert all(row.startswith("VALID.x.") for row in plain.stdout.splitlines()), (line, plain)
            else:
                quiet = self.run([*line, "-q"])
                results, as_json = self.document(line, (plain.returncode,))
                assert len(results) == max(1, len(outputs) if subcommand == "convert" else 1), (line, results)
                assert (quiet.returncode, quiet.stdout) == (plain.returncode, ""), (line, quiet)
                assert plain.stderr == quiet.stderr == as_json.stderr, line
            assert self.files() - before == set(outputs), (line, self.files() - before)
            if line[1:] == [file.name, *OUTPUTS]:
                self.judge_outputs(file)
            for output in outputs:
                (self.folder / output).unlink()

    def judge_outputs(self, file):
        for copy, tolerance in (("out.mesh", "1e-9"), ("out.meshb", "0")):  # a text has fifteen digits
            assert self.run(["diff", file.name, copy, "--tolerance", tolerance]).returncode == 0, (file, copy)
        assert len(vtu.read(self.folder / "out.vtu")["Points"]["Points"]) == file.vertices, file
        triangles = (self.folder / "out.stl").read_bytes()[80:]
        assert len(triangles) == 4 + 50 * int.from_bytes(triangles[:4], "little"), file
        assert (self.folder / "out.bdf").read_text().endswith("ENDDATA\n"), file

    def judge_broken(self, file):
        (self.folder / "wanted.sol").write_text(SIZES)
        for line, outputs in lines(file):
            if "--header" in line and file.name in ("cut_off.mesh", "cut_off_late.mesh", "miscounted.mesh"):
                assert self.run(line).returncode == 0, line  # the lines of a text are not looked at
                continue
            for output in outputs:
                (self.folder / output).write_text("precious")
            before = self.files()
            wanted = 3 if line[0] in TELLING else 1
            plain = self.run(line)
            assert plain.returncode == wanted, (line, plain)
            complaints = plain.stderr.splitlines()
            assert complaints and all(text.startswith(f"korvane: {file.name}: ") for text in complaints), (line, plain)
            # Info tells what the header of a file says even if the rest is not there.
            assert not plain.stdout or line[0] == "info", (line, plain)
            if "--valid" not in line:
                results, _ = self.document(line, (wanted,))
                assert all(result["file"] == file.name and result["problem"] for result in results), (line, results)
                quiet = self.run([*line, "-q"])
                assert (quiet.returncode, quiet.stdout, quiet.stderr) == (wanted, "", plain.stderr), (line, quiet)
            assert self.files() == before, (line, self.files() - before)
            for output in outputs:
                assert (self.folder / output).read_text() == "precious", line
                (self.folder / output).unlink()

    def judge_mixtures(self, sample):
        """Several files and files that have something to be found, with the number of results."""
        for name, text in {"odd.mesh": ODD, "sizes.sol": SIZES, "flat.mesh": FLAT, "pair.mesh": PAIR}.items():
            (self.folder / name).write_text(text)
        cases = (
            (["check", sample, "odd.mesh", "missing.mesh"], 3, 3),
            (["check", "-v", "odd.mesh", "--limit", "triangle.angle<1"], 1, 1),
            (["diff", sample, "odd.mesh", "--tolerance", "0.5"], 1, 1),
            (["diff", "missing.mesh", "odd.mesh"], 3, 1),
            (["convert", sample, "a.meshb", "missing/b.vtu", "c.stl"], 1, 3),
            (["info", sample, "odd.mesh", "sizes.sol", "flat.mesh", "missing.mesh"], 1, 5),
            (["info", "--header", "sizes.sol", "flat.mesh"], 0, 2),
            (["sizes", "odd.mesh", "sizes.sol"], 0, 1),
            (["sizes", "odd.mesh", "cut_off.mesh"], 1, 1),
            (["sizes", sample, "sizes.sol"], 1, 1),
            (["stats", sample, "odd.mesh", "missing.mesh"], 1, 3),
            (["stats", "flat.mesh"], 1, 1),
            (["stats", "odd.mesh", "--histogram", "--by-tag", "--worst", "3"], 0, 1),
            (["periodic", "pair.mesh", "--tags", "1,2"], 0, 1),
            (["periodic", "pair.mesh", sample, "missing.mesh", "--tags", "1,3"], 3, 3),
        )
        for line, status, results in cases:
            found, _ = self.document(line, (status,))
            assert len(found) == results, (line, found)


def main():
    command, schemas, sample, real = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        judge = Judge(command, schemas, folder)
        for file in [*sound_files(folder, command, sample), *real_files(real, command)]:
            judge.judge_sound(file)
        for file in broken_files(folder):
            judge.judge_broken(file)
        judge.judge_mixtures("sample.mesh")
    assert judge.seen == set(judge.validators), judge.seen
    print(f"{judge.runs} runs", "" if real.is_dir() else f"but none on files of other programs: there is no {real}")


main()
