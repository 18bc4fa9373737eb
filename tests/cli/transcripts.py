#!/usr/bin/env python3
"""Runs the commands that a text shows and compares what they print with what the text says.

usage: transcripts.py [--update] DIRECTORY-OF-QV TEXT...

A command is a line "$ qv ..."; what follows, up to the next command, an empty line or the end of the block, is its
output, standard error included, and "[exit N]" where the exit code is not 0. A line "..." stands for any number of
lines, a line that ends in "\\" is continued. In a .md file commands stand in indented blocks or between fences; other
commands of a block ("$ cd") are not run. --update writes what the commands print now into the text. Commands run in
the project's folder; $TMP is a directory of its own for each text.
"""
import os
import re
import subprocess
import sys
import tempfile


def run(command, environment):
    done = subprocess.run(["bash", "-c", command], env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120)
    lines = done.stdout.decode().replace(environment["TMP"], "$TMP").splitlines()
    if done.returncode:
        lines.append(f"[exit {done.returncode}]")
    return lines


def as_expected(expected, printed):
    if "..." not in expected:
        return expected == printed
    pattern = "\n".join(".*?" if line == "..." else re.escape(line) for line in expected)
    return re.fullmatch(pattern, "\n".join(printed), re.DOTALL) is not None


def check(text, environment, update):
    with open(text) as f:
        lines = f.read().splitlines()
    margin = "    " if text.endswith(".md") else ""
    out, i, wrong, commands = [], 0, 0, 0
    while i < len(lines):
        line = lines[i]
        out.append(line)
        i += 1
        if not line.startswith(margin + "$ "):
            continue
        command = line[len(margin) + 2:]
        while command.endswith("\\"):
            command = command[:-1] + lines[i].strip()
            out.append(lines[i])
            i += 1
        begin = i
        while i < len(lines) and lines[i].startswith(margin) and lines[i] and not lines[i].startswith(margin + "$ "):
            i += 1
        expected = [shown[len(margin):] for shown in lines[begin:i]]
        if not re.match(r"(\w+=\w+ )*(qv|printf|cat|mkdir|cp)\b", command):
            out += lines[begin:i]
            continue
        commands += 1
        # An empty line would end the output: it is shown as a dot.
        printed = [shown or "." for shown in run(command, environment)]
        if as_expected(expected, printed):
            out += lines[begin:i]
            continue
        wrong += 1
        out += [margin + shown for shown in printed]
        if not update:
            print(f"{text}:{begin}: $ {command}\n--- shown")
            print("\n".join(expected) + "\n--- printed\n" + "\n".join(printed) + "\n---")
    if update and wrong:
        with open(text, "w") as f:
            f.write("\n".join(out) + "\n")
    print(f"{text}: {commands} commands, {wrong} {'updated' if update else 'wrong'}")
    return wrong == 0 or update


def main():
    arguments = sys.argv[1:]
    update = arguments[:1] == ["--update"]
    if update:
        arguments = arguments[1:]
    good = True
    for text in arguments[1:]:
        with tempfile.TemporaryDirectory() as folder:
            environment = dict(os.environ, TMP=folder, LC_ALL="C",
                               PATH=os.path.abspath(arguments[0]) + ":" + os.environ["PATH"])
            good = check(text, environment, update) and good
    return 0 if good else 1


sys.exit(main())
