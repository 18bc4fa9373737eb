#!/usr/bin/env python3
"""What scripts/mutate.sh runs once the release build stands."""
import argparse
import collections
import itertools
import json
import os
import pathlib
import random
import re
import resource
import shlex
import signal
import subprocess
import sys

root = pathlib.Path(__file__).resolve().parent.parent
build = root / "build/release"
work = root / "build/mutate"

SOURCES_SEARCHED, SOURCES_TRIED = 24, 3  # for code of a changed header, the smallest first; beside the tests
WIDE = "src/kernels/wide.cpp"  # what most machines run of the headers of its room: tried before all others
MEMORY = 8 << 30
MORE_TESTS = {"kernels": ["indicators", "stream"], "indicators": ["stream"], "patterns": ["stream"],
              "core": ["indicators", "dates", "datafiles"], "platform": ["datafiles"]}  # beside those of a room
OF_ANY_ROOM = "interface/missing_arguments_test.cpp.o"

# Binary operators stand between blanks (clang-format sees to it), so template brackets and signs are left alone.
SWAPS = {" < ": [" <= ", " >= "], " <= ": [" < "], " > ": [" >= ", " <= "], " >= ": [" > "], " == ": [" != "],
         " != ": [" == "], " + ": [" - "], " - ": [" + "], " * ": [" / "], " / ": [" * "], " && ": [" || "],
         " || ": [" && "], " += ": [" -= "], " -= ": [" += "], " *= ": [" = "], " & ": [" | "], " | ": [" & "],
         "std::min(": ["std::max("], "std::max(": ["std::min("], "true": ["false"], "false": ["true"], "++": ["--"]}
TOKEN = re.compile("|".join(re.escape(t) for t in sorted(SWAPS, key=len, reverse=True)) + r"|(?<![\w.\"'])\d+(\.\d+)?(?![\w.])")
SKIPPED = re.compile(r"^\s*(//|#|static_assert|using |template|namespace|extern)")


def mutants(text):
    """(line number, changed line) for each change."""
    for number, line in enumerate(text.split("\n")):
        if SKIPPED.match(line):
            continue
        code = re.sub(r'"(\\.|[^"\\])*"' + r"|'(\\.|[^'\\])*'", lambda m: "\"" * len(m.group()), line).split("//")[0]
        for m in TOKEN.finditer(code):
            token = m.group()
            if token in SWAPS:
                replacements = SWAPS[token]
            elif "<" in code[:m.start()] and re.search(r"[<,] ?$", code[:m.start()]) and ">" in code[m.end():]:
                continue  # a template's number
            else:
                replacements = [str(int(token) + 1)] if "." not in token else [str(float(token) + 1.0)]
            for replacement in replacements:
                yield number, line[:m.start()] + replacement + line[m.end():]


class Build:
    """The release build and what it says of itself."""

    def __init__(self):
        self.commands = {os.path.relpath(c["file"], root): (c["command"], c["directory"])
                         for c in json.loads((build / "compile_commands.json").read_text())}
        self.files, self.sizes = {}, {}  # of a source: all it includes; of its object
        for block in subprocess.check_output(["ninja", "-t", "deps"], cwd=build, text=True).split("\n\n"):
            files = [os.path.relpath(build / f.strip(), root) for f in block.split("\n")[1:]]
            files = [f for f in files if not f.startswith("..")]
            if files and files[0] in self.commands:
                self.files[files[0]] = files
                self.sizes[files[0]] = (build / block.strip().split(":")[0]).stat().st_size
        rules = (build / "build.ninja").read_text().split("build tests/qvlib60_tests:")[1]
        words = re.search(r"LINK_LIBRARIES = (.*)", rules).group(1).split()
        self.libraries = [str(build / w) if w.endswith(".a") and not w.startswith("/") else w for w in words]
        self.wraps = re.findall(r"-Wl,--wrap\S+", rules.split("\n\n")[0])

    def including(self, path):
        return [s for s, files in self.files.items() if path in files and (
                    s.startswith("src/") or s.startswith("tests/") and s.split("/")[1] == path.split("/")[1])]

    def compile(self, source, output, *options):
        """Quickly rather than well, by clang; whether it compiles."""
        command, directory = self.commands[source]
        words = [w for w in shlex.split(command)[1:] if w not in ("ccache", "-Werror") and not re.match("-[OW]", w)
                 and not w.endswith(("/c++", "/g++", "/clang++"))]
        words[words.index("-o") + 1] = str(output)
        quick = ["-O0", "-w", "-g1", "-gno-column-info", "-DQV_INLINE=inline"]
        return subprocess.run(["clang++", *words, *quick, *options], cwd=directory,
                              capture_output=True).returncode == 0


class Undecided(Exception):
    """The tests could not be built or wait for ever."""


def run_tests(built, objects, seconds, digest=False):
    """Whether they pass. What takes more of the processor's time does not."""
    program = work / "tests"
    wraps = built.wraps if any(b"__wrap_" in pathlib.Path(o).read_bytes() for o in objects) else []
    if subprocess.run(["g++", "-fuse-ld=gold", "-o", str(program), *map(str, objects), *wraps, *built.libraries,
                       "-lpthread"], capture_output=True).returncode:
        raise Undecided("is not linked")
    arguments = ["data", "tests/digest/same_bits.txt"] if digest else ["--gtest_fail_fast", "--gtest_brief=1"]

    def limit():
        resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))

    try:
        return subprocess.run([program, *arguments], cwd=root, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              preexec_fn=limit, timeout=1800).returncode == 0
    except subprocess.TimeoutExpired:
        raise Undecided("waits for ever") from None


class Source:
    """A source as it stands, compiled as the changed ones are."""

    def __init__(self, built, name):
        self.built, self.name = built, name
        self.object = work / "unchanged" / (name.replace("/", "_") + ".o")
        self.changed = work / self.object.name
        record = self.object.with_suffix(".json")
        newest = max((root / f).stat().st_mtime for f in built.files[name])
        if not record.exists() or record.stat().st_mtime < newest:
            self.object.parent.mkdir(parents=True, exist_ok=True)
            if not built.compile(name, self.object):
                sys.exit(f"{name} does not compile")
            record.write_text(json.dumps({"lines": self.lines_with_code(), "seconds": {}}))
        self.record = json.loads(record.read_text())

    def lines_with_code(self):
        """For each file of the project the lines that instructions come from."""
        lines, of = collections.defaultdict(set), None
        for row in subprocess.check_output(["objdump", "--dwarf=decodedline", str(self.object)], text=True).split("\n"):
            if row.endswith(":"):
                of = os.path.relpath(build / row[:-1], root)
            elif m := re.match(r"\S+ +(\d+) +(0x|0 )", row):
                lines[of].add(int(m.group(1)))
        return {f: sorted(numbers) for f, numbers in lines.items() if not f.startswith("..")}

    def has_code_of(self, path, number):
        return number in self.record["lines"].get(path, [])

    def tests(self):
        """Objects to link with, in turn: the tests of the source's name, the digests, all tests of its room."""
        folder = build / "tests/CMakeFiles/qvlib60_tests.dir"
        if self.name.startswith("tests/"):
            return {"itself": []}
        room = self.name.split("/")[1]
        objects = [o for r in (room, *MORE_TESTS.get(room, [])) for o in sorted((folder / r).glob("*.o"))]
        objects.append(folder / OF_ANY_ROOM)
        stem = pathlib.Path(self.name).stem.split("_")[0]
        own = [o for o in objects if o.name.startswith(stem)]
        digests = sorted((build / "tests/CMakeFiles/qv_digest.dir/digest").glob("*.o"))
        return {k: v for k, v in {"own": own, "digests": digests, "room": objects}.items() if v}

    def survives(self):
        """Whether the tests pass with the change, in a multiple of the time they take without."""
        for name, objects in self.tests().items():
            if name not in self.record["seconds"]:
                begin = os.times().children_user
                if not run_tests(self.built, [self.object, *objects], 1000, name == "digests"):
                    raise Undecided(f"tests do not pass with {self.name} as it stands")
                self.record["seconds"][name] = int(os.times().children_user - begin)
                self.object.with_suffix(".json").write_text(json.dumps(self.record))
            limit = 5 + 4 * self.record["seconds"][name]
            if not run_tests(self.built, [self.changed, *objects], limit, name == "digests"):
                return False
        return True

    def compile_changed(self, path, text):
        """None: does not compile; False: the same code."""
        copy, overlay = work / ("changed" + pathlib.Path(path).suffix), work / "overlay.json"
        copy.write_text(text)
        overlay.write_text(json.dumps({"version": 0, "use-external-names": False, "roots": [
            {"name": str((root / path).parent), "type": "directory", "contents": [
                {"name": pathlib.Path(path).name, "type": "file", "external-contents": str(copy)}]}]}))
        if not self.built.compile(self.name, self.changed, "-ivfsoverlay", str(overlay)):
            return None
        return self.changed.read_bytes() != self.object.read_bytes()


class Mutation:
    def __init__(self):
        self.built = Build()
        self.sources = {}
        self.counts = collections.defaultdict(collections.Counter)

    def source(self, name):
        if name not in self.sources:
            self.sources[name] = Source(self.built, name)
        return self.sources[name]

    def candidates(self, path, number):
        """The sources to try a change of this line in: that of its name, of its room, the smallest; and the tests."""
        if path in self.built.commands:
            return [self.source(path)]
        names = sorted(self.built.including(path), key=lambda s: (
            os.path.dirname(s) != os.path.dirname(path), s != WIDE, s != path.replace(".h", ".cpp"),
            self.built.sizes[s]))
        tests = [s for s in names if s.startswith("tests/")]
        sources = [s for s in names if s not in tests]
        with_code = (s for s in map(self.source, sources[:SOURCES_SEARCHED]) if s.has_code_of(path, number))
        if chosen := list(itertools.islice(with_code, SOURCES_TRIED)):
            return itertools.chain(chosen, map(self.source, tests))
        return map(self.source, tests + sources[:SOURCES_TRIED])  # a constant

    def attempt(self, path, number, text):
        """What becomes of a change; None where it changes nothing or does not compile."""
        differed = False
        for source in self.candidates(path, number):
            differs = source.compile_changed(path, text)
            if differs is None:
                return None
            if differs and not source.survives():
                return "found"
            differed |= differs
        return "survived" if differed else None

    def change(self, path, number, line):
        lines = (root / path).read_text().split("\n")
        was, lines[number] = lines[number], line
        head = f"{path}:{number + 1}: "
        tail = f"\n  - {was.strip()}\n  + {line.strip()}"
        try:
            result = self.attempt(path, number + 1, "\n".join(lines))
            if result == "survived":
                print(head + "survives" + tail, flush=True)
        except Undecided as reason:
            result = "undecided"
            print(head + str(reason) + tail, flush=True)
        if result:
            self.counts[path][result] += 1
        return result

    def mutate(self, path, sample, seed):
        """Changes of a file or of a folder's files, so many by lot."""
        files = sorted(f for f in path.rglob("*") if f.suffix in (".h", ".cpp")) if path.is_dir() else [path]
        changes = [(str(f.relative_to(root)), *c) for f in files for c in mutants(f.read_text())]
        random.Random(f"{path.relative_to(root)} {seed}").shuffle(changes)
        done = 0
        for change in changes:
            if sample and done == sample:
                break
            done += self.change(*change) is not None

    def again(self, log):
        for path, number, was, line in re.findall(r"^(\S+):(\d+): survives\n  - (.*)\n  \+ (.*)$", log, re.M):
            places = [i for i, there in enumerate((root / path).read_text().split("\n")) if there.strip() == was]
            if places:
                self.change(path, min(places, key=lambda i: abs(i - int(number))), line)
            else:
                print(f"{path}:{number}: no longer there\n  - {was}")

    def report(self):
        rooms = collections.defaultdict(collections.Counter)
        for path, counts in sorted(self.counts.items()):
            rooms[os.path.dirname(path)].update(counts)
        for name, c in [*sorted(self.counts.items()), *rooms.items()]:
            decided = c["found"] + c["survived"]
            print(f"{name}: {c['found']} of {decided} changes found ({100 * c['found'] // max(decided, 1)} %), "
                  f"{c['undecided']} undecided")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--sample", type=int, default=0)
    parser.add_argument("--seed", type=int, default=0)
    parser.add_argument("--again", action="store_true")
    parser.add_argument("paths", nargs="+")
    arguments = parser.parse_args()
    work.mkdir(parents=True, exist_ok=True)
    mutation = Mutation()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended early"))
    try:
        for path in map(pathlib.Path, arguments.paths):
            if arguments.again:
                mutation.again(path.read_text())
            else:
                mutation.mutate(path.resolve(), arguments.sample, arguments.seed)
    finally:
        mutation.report()


main()
