"""A module over ctypes, which needs nothing but Python."""
KEYWORDS = set("in from is as with lambda def class pass global import and or not".split())
SCALARS = {"int8": "c_int8", "uint8": "c_uint8", "char": "c_char", "int16": "c_int16", "int32": "c_int32", "uint32": "c_uint32",
           "float": "c_float", "double": "c_double"}


def type_name(t):
    if t.name == "void":
        return "None" if t.pointers == 0 else "c_void_p"
    base = SCALARS.get(t.name, t.name)
    if t.length:
        return f"{base} * {t.length}"
    if t.pointers and t.name == "char":
        base, pointers = "c_char_p", t.pointers - 1
    else:
        pointers = t.pointers
    for _ in range(pointers):
        base = f"POINTER({base})"
    return base


def comment(lines, indent):
    return "".join(f"{indent}# {line}\n" for line in lines)


def generate(interface, note):
    out = [f"# {note}\n", "import ctypes\nimport os\nimport sys\nfrom ctypes import (POINTER, c_char, c_char_p, c_double, "
           "c_float, c_int8, c_int16, c_int32, c_uint8, c_uint32, c_void_p)\n\n"
           "_wide = ctypes.sizeof(c_void_p) == 8\n_windows = sys.platform == \"win32\"\n"
           "_library = (ctypes.WinDLL if _windows else ctypes.CDLL)(\n"
           "    os.environ.get(\"QVLIB60_LIBRARY\", \"QVLIB60.dll\" if _windows else \"libQVLIB60.so.0\"))\n\n"]
    for lines, constants in interface.constants:
        out.append(comment(lines, ""))
        for c in constants:
            out.append(comment(c.comment, "") + f"{c.name} = {c.value}\n")
        out.append("\n")
    for r in interface.records:
        out.append("\n" + comment(r.comment, "") + f"class {r.name}(ctypes.Structure):\n")
        if r.opaque:
            out.append("    pass\n\n")
            continue
        out.append(f"    _pack_ = {'4' if r.pack == 4 else '8 if _wide else 4'}\n    _fields_ = [\n")
        for f in r.fields:
            out.append(comment(f.comment, "        ") + f"        (\"{f.name}\", {type_name(f.type)}),\n")
        out.append("    ]\n\n\n"
                   f"assert ctypes.sizeof({r.name}) == ({r.size[64]} if _wide else {r.size[32]}), \"{r.name}\"\n\n")
    for f in interface.functions:
        parameters = ", ".join(type_name(p.type) for p in f.parameters)
        out.append(f"\n{comment(f.comment, '')}{f.name} = _library.{f.name}\n"
                   f"{f.name}.argtypes = [{parameters}]\n{f.name}.restype = {type_name(f.result)}\n")
    return "".join(out)
