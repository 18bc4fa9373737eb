#!/usr/bin/env python3
"""Writes a page for every calculation and candlestick pattern, out of the catalogue and the headers.

usage: scripts/make_pages.py [--compiler CC] [--pictures QV] LIBRARY DIRECTORY

LIBRARY is a built libQVLIB60.so. With a compiler the examples in C are compiled, too; with the tool each page has a
picture. Ends with 1 when a page lacks something.
"""
import argparse
import ctypes
import re
import subprocess
import sys
from ctypes import POINTER, c_char_p, c_double, c_int, c_int32, c_void_p
from pathlib import Path

import page_pictures

ROOT = Path(__file__).resolve().parent.parent


# ---- The catalogue's records, as catalogue.h declares them -------------------------------------------

def record(name, fields):
    return type(name, (ctypes.Structure,), {"_fields_": fields})


def numbers(kind, names):
    return [(name, kind) for name in names.split()]


Param = record("Param", [
    ("name", c_char_p), ("choices", POINTER(c_char_p)),
    *numbers(c_double, "defaultValue least greatest optimiseStart optimiseEnd optimiseStep"),
    *numbers(c_int32, "kind isInteger choiceCount reserved")])
Input = record("Input", [("name", c_char_p), *numbers(c_int32, "series reserved")])
Output = record("Output", [
    ("name", c_char_p), *numbers(c_double, "low high"), ("zones", c_double * 2),
    *numbers(c_int32, "zoneCount place style repaints")])
Entry = record("Entry", [
    *numbers(c_char_p, "name shortName title group summary source note"),
    ("params", POINTER(Param)), ("inputs", POINTER(Input)), ("outputs", POINTER(Output)),
    *numbers(c_int32, "barsCount inputCount outputCount paramCount mainOutput series flags reserved")])

SERIES = {1: "date", 2: "open", 4: "high", 8: "low", 16: "close", 32: "volume", 64: "openInterest"}
PERIOD, INTEGER, REAL, METHOD, DATE, CHOICE = range(6)
KINDS = ["period", "integer", "number", "average", "date", "choice"]
STYLES = ["line", "histogram", "dots", "edge of a band", "signals", "the side that holds"]
IN_PLACE, RECURSIVE, WHOLE_SERIES = 1, 2, 4


def load(path):
    library = ctypes.CDLL(str(path))
    library.qvCatalogueItem.restype = POINTER(Entry)
    library.qvCatalogueFirstValid.argtypes = [POINTER(Entry), c_void_p, c_int]
    library.qvCatalogueSettle.argtypes = [POINTER(Entry), c_void_p, c_double]
    library.qvVersion.restype = c_char_p
    if hasattr(library, "qvFormulaOpen"):
        library.qvFormulaOpen.restype = c_void_p
        library.qvFormulaOpen.argtypes = [c_char_p, c_char_p, c_int]
        library.qvFormulaClose.argtypes = [c_void_p]
    return library


# ---- The headers ---------------------------------------------------------------------------------

class Declaration:
    """A function as its header declares it: the comment, the family's rules, the section, the arguments."""

    def __init__(self, header, rules, section, comment, text):
        self.header, self.rules, self.section, self.comment, self.text = header, rules, section, comment, text
        self.arguments = [a.strip() for a in re.search(r"\((.*)\)", text).group(1).split(",")]


def plain(comment):
    lines = [line.strip() for line in re.sub(r"^/\*|\*/$", "", comment.strip()).strip().split("\n")]
    return "\n".join(lines).strip()


def declarations():
    result = {}
    for path in sorted((ROOT / "include/qvlib60").rglob("*.h")):
        rules = section = comment = ""
        text = path.read_text()
        for m in re.finditer(r"/\*.*?\*/|QVAPI [^;]*?QVCALL (qv\w+)\([^;]*;", text, re.S):
            if m.group(1):
                words = " ".join(re.sub("QVAPI |QVCALL |QVNOEXCEPT", "", m.group(0)).split())
                words = words.replace(" ;", ";")
                result[m.group(1)] = Declaration(path.relative_to(ROOT / "include"), rules, section, comment, words)
            elif heading := re.fullmatch(r"/\* ---- (.*?) -+ \*/", m.group(0)):
                section, comment = heading.group(1), ""
            else:
                comment = plain(m.group(0))
                rules = rules or comment
    return result


# ---- Pages ---------------------------------------------------------------------------------------

def text(value):
    return value.decode()


def number(value):
    return f"{value:g}"


def table(head, rows):
    lines = ["| " + " | ".join(cells) + " |" for cells in [head, ["---"] * len(head), *rows]]
    return "\n".join(lines) + "\n"


def usual(param):
    """The default as a person writes it, and as C does."""
    if param.kind in (METHOD, CHOICE):
        return text(param.choices[int(param.defaultValue)])
    return number(param.defaultValue)


def example(name, declaration, entry, choice=None):
    """Lines in C: a call with ordinary numbers, of `bars` and where need be of `bars2` and series of the caller's."""
    params = {text(p.name): p for p in entry.params[:entry.paramCount]}
    inputs = {text(i.name): i for i in entry.inputs[:entry.inputCount]}
    call, outputs, sets, before, after = [], [], 0, [], []
    for argument in declaration.arguments:
        kind, word = argument.rsplit(" ", 1)
        if kind.endswith("QvBars*"):
            sets += 1
            call.append("&bars" if sets == 1 else "&bars2")
        elif kind.endswith("QvCandles*"):
            before, after = ["qvCandleConstruct(&bars, &candles);"], ["qvCandleFree(&candles);"]
            call.append("&candles")
        elif kind == "const QvArray*":
            series = SERIES.get(inputs[word].series)
            call.append(f"&bars.{series}" if series else f"&{word}")
        elif kind == "QvArray*":
            outputs.append(word)
            call.append(f"&{word}")
        elif word in ("end", "last"):
            call.append("INT32_MAX")
        elif kind == "const char*":
            call.append(f'"qv{choice or usual(params[word])}"')
        elif word in params:
            value = number(params[word].defaultValue)
            call.append(value + (".0" if kind == "double" and re.fullmatch(r"-?\d+", value) else ""))
        else:
            call.append("0")
    records = ["QvCandles candles = {0};"] if before else []
    return [*records, "QvArray " + ", ".join(f"{o} = {{0}}" for o in outputs) + ";", *before,
            f"int status = {name}({', '.join(call)});", "/* ... */", *(f"qvFreeArray(&{o});" for o in outputs), *after]


def formula(entry, output=None, choice=None, stand_ins=None):
    """The entry as a formula; empty where it takes what a bar set does not hold and nothing stands in for it."""
    series = [SERIES.get(i.series) or (stand_ins or {}).get(text(i.name)) for i in entry.inputs[:entry.inputCount]]
    if entry.barsCount > 1 or None in series:
        return ""
    if entry.paramCount and entry.params[0].kind == CHOICE and text(entry.params[0].name) == "name":
        return f'{text(entry.shortName)}("{choice or usual(entry.params[0])}")'
    params = entry.params[:entry.paramCount]
    words = series if series != ["close"] else []
    words = words + [usual(p) for p in sorted(params, key=lambda p: p.kind in (METHOD, CHOICE))]
    return text(entry.shortName) + (f"({', '.join(words)})" if words else "") + (f".{output}" if output else "")


def described(entry):
    """Parameters, series and outputs of an entry."""
    parts = []
    if entry.paramCount:
        rows = []
        for p in entry.params[:entry.paramCount]:
            sensible = f"{number(p.least)} .. {number(p.greatest)}"
            if p.kind in (METHOD, CHOICE):
                sensible = ", ".join(f"{k} {text(p.choices[k])}" for k in range(p.choiceCount))
            search = f"{number(p.optimiseStart)} .. {number(p.optimiseEnd)} by {number(p.optimiseStep)}"
            rows.append([f"`{text(p.name)}`", KINDS[p.kind], usual(p), sensible, search if p.optimiseStep else ""])
        parts.append("## Parameters\n\n" + table(["name", "kind", "usual", "sensible", "search"], rows))
    read = [name for bit, name in SERIES.items() if entry.series & bit]
    takes = [f"{'a bar set' if entry.barsCount == 1 else 'two bar sets'} ({', '.join(read)})"] * bool(entry.barsCount)
    takes += [f"the series `{text(i.name)}`" + (f" (usually {SERIES[i.series]})" if i.series else "")
              for i in entry.inputs[:entry.inputCount]]
    rows = []
    for k, o in enumerate(entry.outputs[:entry.outputCount]):
        drawn = STYLES[o.style] + (" over the prices" if o.place == 0 and o.style < 4 else "")
        span = f"{number(o.low)} .. {number(o.high)}" if o.low < o.high else ""
        zones = ", ".join(number(z) for z in o.zones[:o.zoneCount])
        rows.append([f"`{text(o.name)}`" + (" (main)" if entry.outputCount > 1 and k == entry.mainOutput else ""),
                     drawn, span, zones, "looks at later bars" if o.repaints else ""])
    parts.append(f"## Takes and gives\n\nTakes {', '.join(takes)}."
                 + (" May run in place." if entry.flags & IN_PLACE else "") + "\n\n"
                 + table(["output", "drawn as", "range", "lines at", ""], rows))
    return parts


def needs(library, pointer):
    entry = pointer.contents
    first = library.qvCatalogueFirstValid(pointer, None, 0)
    lines = [f"First valid index with the usual numbers: {first}." if first >= 0 else
             "The data decide where the values begin, or the calculation does not set it."]
    settle = [library.qvCatalogueSettle(pointer, None, t) for t in (0.01, 0.0001, 1e-6)]
    if settle[-1] < 0:
        lines.append("The values never forget where the data began, or the data decide when.")
    elif settle[-1] == 0:
        lines.append("A window: earlier bars do not matter.")
    elif settle[0] == settle[-1]:
        lines.append(f"A window: earlier bars do not matter from {settle[0]} bars later on.")
    else:
        lines.append(f"Where the data began no longer matters {settle[0]} bars later (to 1 %), {settle[1]} (to 0.01 %), "
                     f"{settle[2]} (to 0.0001 %).")
    if entry.flags & WHOLE_SERIES:
        lines.append("**Looks at later bars:** what an output marked so shows at a bar was not known at that bar.")
    return "## How many bars\n\n" + "\n".join(lines) + "\n"


def comparison(entry):
    """The call of an entry that compares two bar sets, for the tool; dates are left to their usual value."""
    words = [usual(p) for p in entry.params[:entry.paramCount] if p.kind != DATE]
    return text(entry.shortName) + (f"({', '.join(words)})" if words else "")


def picture(entry, pictures, name, title, choice=None):
    """The lines that show a picture; notes it down to be drawn."""
    compares = entry.barsCount > 1
    drawn = comparison(entry) if compares else formula(entry, choice=choice, stand_ins=page_pictures.STAND_INS)
    if pictures is None or not drawn:
        return ""
    main = entry.outputs[max(entry.mainOutput, 0)]
    open_interest = "openInterest" in [name for bit, name in SERIES.items() if entry.series & bit]
    open_interest = open_interest or any(i.series == 64 for i in entry.inputs[:entry.inputCount])
    pictures.append((f"{name}.svg", title, drawn, main.style >= 4, open_interest, compares))
    notes = []
    if compares:
        notes.append(f"Against the same index 252 bars earlier: `qv chart FILE '{drawn}' --against OTHER`.")
    elif formula(entry, choice=choice) != drawn:
        notes.append(f"As an example of the series it takes: `{drawn}`.")
    if open_interest:
        notes.append("The volumes stand for the open interest.")
    return f"![{title}]({name}.svg)\n" + "".join(f"\n{note}\n" for note in notes) + "\n"


def page(library, pointer, declaration, pictures):
    entry = pointer.contents
    name = text(entry.name)
    parts = [f"# {text(entry.title)}\n\n`{name}`, in {'formulas' if entry.barsCount < 2 else 'the tool'} `{text(entry.shortName)}`; {text(entry.group)}\n\n"
             f"{text(entry.summary)}\n", picture(entry, pictures, name, text(entry.title))]
    if entry.note:
        parts.append(f"**Why other charts may differ:** {text(entry.note)}\n")
    parts += described(entry) + [needs(library, pointer)]
    parts.append(f"## The function\n\n    {declaration.text}\n\n{declaration.comment}\n")
    if declaration.rules != declaration.comment:
        parts.append(f"`{declaration.header}`: {declaration.rules}\n")
    parts.append("## In C\n\n" + "".join(f"    {line}\n" for line in example(name, declaration, entry)))
    texts = [formula(entry)] + [formula(entry, text(entry.outputs[k].name)) for k in range(entry.outputCount)
                                if k != entry.mainOutput]
    texts = [t for t in texts if t]
    parts.append("## As a formula\n\n" + ("".join(f"    {t}\n" for t in texts) if texts else
                                          "Not in formulas: it takes what one bar set does not hold.\n"))
    if entry.source:
        parts.append(f"## Source\n\n{text(entry.source)}\n")
    return "\n".join(parts), texts


def candle_page(choice, declaration, fill, entry, pictures):
    words = re.sub(r"(?<=[a-z])(?=[A-Z0-9])", " ", choice)
    call = formula(entry, choice=choice)
    return (f"# {words}\n\n`{'qv' + choice}`, candlestick pattern; {declaration.section.lower()}\n\n{declaration.comment}\n\n"
            f"{picture(entry, pictures, choice, words, choice)}**Why other charts may differ:** {text(entry.note)}\n\n## In C\n\n"
            + "".join(f"    {line}\n" for line in example("qvCandleFill", fill, entry, choice))
            + f"\n`{declaration.text}` tells of one bar.\n\n## As a formula\n\n    {call}\n\n"
              f"A formula measures bodies against those of the bars before, without looking ahead.\n\n"
              f"## Source\n\n{text(entry.source)}\n\n{declaration.rules}\n"), [call]


def main(library_path, directory, compiler, tool):
    library, declared, missing = load(library_path), declarations(), []
    pictures = [] if tool else None
    out = Path(directory)
    (out / "candles").mkdir(parents=True, exist_ok=True)
    index, group, examples = [f"# Calculations\n\nQVLIB60 {text(library.qvVersion())}\n"], None, []

    def write(path, content, formulas, lines):
        (out / path).write_text(content)
        examples.append(lines)
        for words in formulas if hasattr(library, "qvFormulaOpen") else []:
            error = ctypes.create_string_buffer(200)
            opened = library.qvFormulaOpen(words.encode(), error, 200)
            library.qvFormulaClose(opened)
            if not opened:
                missing.append(f"{path}: {words}: {text(error.value)}")

    for k in range(library.qvCatalogueSize()):
        pointer = library.qvCatalogueItem(k)
        entry = pointer.contents
        name, declaration = text(entry.name), declared[text(entry.name)]
        if not declaration.comment:
            missing.append(f"{name}: no text in {declaration.header}")
        content, formulas = page(library, pointer, declaration, pictures)
        write(f"{name}.md", content, formulas, example(name, declaration, entry))
        if entry.group != group:
            group = entry.group
            index.append(f"\n## {text(group)}\n")
        index.append(f"- [{text(entry.title)}]({name}.md) `{text(entry.shortName)}`")
        if name == "qvCandleFill":
            for choice in map(text, entry.params[0].choices[:entry.params[0].choiceCount]):
                pattern = declared["qv" + choice]
                if not pattern.comment:
                    missing.append(f"qv{choice}: no text")
                write(f"candles/{choice}.md", *candle_page(choice, pattern, declaration, entry, pictures),
                      example(name, declaration, entry, choice))
                index.append(f"  - [{choice}](candles/{choice}.md)")
    (out / "index.md").write_text("\n".join(index) + "\n")
    source = out / "examples.c"
    own = sorted({w for lines in examples for line in lines for w in re.findall(r"&(\w+)", line)}
                 - {w for lines in examples for line in lines for w in re.findall(r"(\w+) = \{0\}", line)} - {"bars", "bars2"})
    source.write_text("#include <stdint.h>\n#include \"qvlib60.h\"\nQvBars bars, bars2;\n"
                      + "".join(f"QvArray {w};\n" for w in own)
                      + "".join(f"int example{k}(void) {{\n  " + "\n  ".join(lines) + "\n  return status;\n}\n"
                                for k, lines in enumerate(examples)))
    if compiler:
        subprocess.run([compiler, "-std=gnu99", "-Wall", "-fsyntax-only", "-I", ROOT / "include", source], check=True)
    if tool:
        page_pictures.draw(tool, out, pictures)
    print(f"{len(examples)} pages, {len(pictures or [])} pictures in {out}")
    print("\n".join(missing), end="\n" if missing else "")
    return 1 if missing else 0


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("library")
    parser.add_argument("directory")
    parser.add_argument("--compiler")
    parser.add_argument("--pictures")
    given = parser.parse_args()
    sys.exit(main(given.library, given.directory, given.compiler, given.pictures))
