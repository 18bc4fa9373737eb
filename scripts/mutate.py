#!/usr/bin/env python3
"""What scripts/mutate.sh runs once the release build stands."""
import argparse
import json
import os
import pathlib
import random
import re
import shlex
import shutil
import subprocess
import sys
import time

root = pathlib.Path(__file__).resolve().parent.parent
build = root / "build/release"
work = root / "build/mutate"

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


def commands():
    return {os.path.relpath(c["file"], root): (c["command"], c["directory"])
            for c in json.loads((build / "compile_commands.json").read_text())}


def compile_to(source, original, output, command, directory, overlay):
    words = shlex.split(command)
    words = [w for w in words if w not in ("ccache", "-O3", "-O2", "-Werror") and not w.startswith("-W")]
    words[words.index("-o") + 1] = str(output)
    words[words.index("-c") + 1] = str(source)
    words[1:1] = ["-I" + str(overlay), "-I" + str((root / original).parent)]
    return subprocess.run(words + ["-O0", "-w"], cwd=directory, capture_output=True, timeout=300).returncode == 0


def dependents(path, all_commands):
    """The sources that a header is tried through: that of its name, or the nearest few that include it."""
    own = str(path.with_suffix(".cpp"))
    if own in all_commands:
        return [own]
    texts = {str(f.relative_to(root)): f.read_text() for f in (root / "src").rglob("*") if f.suffix in (".h", ".cpp")}
    headers = [str(path)]
    for header in headers:
        name = header.removeprefix("src/")
        including = [f for f, text in texts.items() if f'"{name}"' in text]
        sources = sorted((f for f in including if f in all_commands), key=lambda f: len(texts[f]))
        if sources:
            return sources[:3]
        headers += [f for f in including if f not in headers]
    return []


def tests_of(path):
    room = path.parts[1]
    objects = sorted((build / "tests/CMakeFiles/qvlib60_tests.dir" / room).glob("*.o"))
    if room in ("kernels", "core", "platform"):
        for more in ("indicators", "dates", "datafiles"):
            objects += sorted((build / "tests/CMakeFiles/qvlib60_tests.dir" / more).glob("*.o"))
    return objects


def libraries():
    """What the test program is linked with."""
    rules = (build / "build.ninja").read_text().split("build tests/qvlib60_tests:")[1]
    words = re.search(r"LINK_LIBRARIES = (.*)", rules).group(1).split()
    return [str(build / w) if w.endswith(".a") and not w.startswith("/") else w for w in words]


class Undecided(Exception):
    """The tests could not be built or did not come to an end."""


def passes(name, objects, seconds, *arguments):
    program = work / name
    if subprocess.run(["g++", "-o", str(program), *map(str, objects), *libraries(), "-lpthread"],
                      capture_output=True).returncode:
        raise Undecided("is not linked")
    try:
        return subprocess.run([program, *arguments], cwd=root, capture_output=True, timeout=seconds).returncode == 0
    except subprocess.TimeoutExpired:
        raise Undecided("does not end") from None


def survives(path, objects, seconds=120):
    """Whether the tests of the changed source's room and the digests pass: those of its name first."""
    stem = path.stem.split("_")[0]
    own = [o for o in tests_of(path) if o.name.startswith(stem)]
    rest = [o for o in tests_of(path) if o not in own]
    for tests in (own, rest):
        if tests and not passes("tests", objects + tests, seconds, "--gtest_fail_fast", "--gtest_brief=1"):
            return False
    digests = sorted((build / "tests/CMakeFiles/qv_digest.dir/digest").glob("*.o"))
    return passes("digest", objects + digests, seconds, "data", "tests/digest/same_bits.txt")


def compiled(path, text, sources, all_commands):
    """The objects of the sources with this text in the file's place; none where it does not compile."""
    overlay = work / "overlay"
    shutil.rmtree(overlay, ignore_errors=True)
    header = path.suffix == ".h"
    copy = overlay / path.relative_to("src") if header else work / path.name
    copy.parent.mkdir(parents=True, exist_ok=True)
    copy.write_text(text)
    objects = []
    for source in sources:
        output = work / (source.replace("/", "_") + ".o")
        command, directory = all_commands[source]
        if not compile_to(root / source if header else copy, source, output, command, directory, overlay):
            return []
        objects.append(output)
    return objects


def mutate(path, sample, all_commands):
    text = (root / path).read_text()
    sources = dependents(path, all_commands) if path.suffix == ".h" else [str(path)]
    unchanged = compiled(path, text, sources, all_commands)
    begin = time.monotonic()
    if not unchanged or not survives(path, unchanged):
        print(f"{path}: its tests do not pass as it stands, nothing tried", flush=True)
        return
    seconds = 20 + 10 * (time.monotonic() - begin)
    changes = list(mutants(text))
    random.Random(str(path)).shuffle(changes)
    changes = sorted(changes[:sample] if sample else changes)
    found = survived = undecided = 0
    for number, line in changes:
        lines = text.split("\n")
        was = lines[number]
        lines[number] = line
        objects = compiled(path, "\n".join(lines), sources, all_commands)
        if not objects:
            continue
        try:
            if survives(path, objects, seconds):
                survived += 1
                print(f"{path}:{number + 1}: survives\n  - {was.strip()}\n  + {line.strip()}", flush=True)
            else:
                found += 1
        except Undecided as reason:
            undecided += 1
            print(f"{path}:{number + 1}: {reason}\n  + {line.strip()}", flush=True)
    print(f"{path}: {found} of {found + survived} changes found, {undecided} undecided", flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--sample", type=int, default=0)
    parser.add_argument("files", nargs="+")
    arguments = parser.parse_args()
    work.mkdir(parents=True, exist_ok=True)
    all_commands = commands()
    for file in arguments.files:
        mutate(pathlib.Path(os.path.relpath(file, root)), arguments.sample, all_commands)


sys.exit(main())
