#!/usr/bin/env python3
"""Writes declarations of the whole interface for other languages, out of the headers.

usage: bindings/generate.py HEADERS DIRECTORY      (scripts/test-bindings.sh calls it with include and build/bindings)

Needs clang, and libclang's Python module (Debian's python3-clang, for /usr/bin/python3).
"""
import sys
from pathlib import Path

import csharp
import model
import pascal
import python_ctypes
import rust
import vba

LANGUAGES = {"QVLIB60.cs": csharp, "qvlib60.pas": pascal, "qvlib60.rs": rust, "QVLIB60.bas": vba,
             "qvlib60_ctypes.py": python_ctypes}


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    headers, directory = Path(sys.argv[1]), Path(sys.argv[2])
    interface = model.read(headers)
    directory.mkdir(parents=True, exist_ok=True)
    note = f"QVLIB60 {interface.version}: made out of the headers by bindings/generate.py, not to be edited."
    for name, language in LANGUAGES.items():
        (directory / name).write_text(language.generate(interface, note), newline="")
    records = [r for r in interface.records if not r.opaque]
    print(f"{len(interface.functions)} functions, {len(records)} records, "
          f"{sum(len(c) for _, c in interface.constants)} constants in {', '.join(LANGUAGES)}")


main()
