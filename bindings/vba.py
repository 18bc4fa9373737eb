"""A module for VBA 7, in 32-bit and 64-bit Office. No line is longer than VBA takes."""
KEYWORDS = set("""in out date open close type end next name index low high loop mod is as string text get put let set
    stop step select case to until with and or not print write line input seek lock left right mid""".split())
SCALARS = {"int8": "Byte", "uint8": "Byte", "char": "Byte", "int16": "Integer", "int32": "Long", "uint32": "Long", "float": "Single",
           "double": "Double"}


def safe(name):
    return name + "_" if name.lower() in KEYWORDS else name


def comment(lines, indent):
    return "".join(f"{indent}' {line}\n" for line in lines)


def is_packed(record):
    """64-bit VBA aligns a Double on 8 bytes: true where that would move one in a record without addresses."""
    return record.pack == 4 and (record.size[64] % 8 != 0 or any(
        offset % 8 for f, offset in zip(record.fields, record.offsets[64]) if f.type.name == "double"))


def field_type(t, packed):
    if t.pointers:
        return "LongPtr"
    return "QvPackedDouble" if packed and t.name == "double" else SCALARS.get(t.name, t.name)


def parameter(p, handles):
    t = p.type
    if t.pointers == 0:
        kind, way = SCALARS.get(t.name, t.name), "ByVal"
    elif t.pointers > 1 or t.name in handles or t.name == "void":
        kind, way = "LongPtr", "ByVal"
    elif t.name == "char":
        kind, way = "String", "ByVal"
    else:
        kind, way = SCALARS.get(t.name, t.name), "ByRef"
    return f"{way} {safe(p.name)} As {kind}"


def generate(interface, note):
    # VBA does not tell QvFormulaNeeds from qvFormulaNeeds.
    taken = {f.name.lower() for f in interface.functions}
    SCALARS.update({r.name: r.name + "Record" for r in interface.records if r.name.lower() in taken})
    out = [f"' {note}\n", "Attribute VB_Name = \"QVLIB60\"\nOption Explicit\n\n"]
    for lines, constants in interface.constants:
        out.append(comment(lines, ""))
        for c in constants:
            out.append(comment(c.comment, "") + f"Public Const {c.name} As Long = {c.value}\n")
        out.append("\n")
    out.append("' A Double that lies on a 4-byte boundary, as in records without addresses: QvUnpack and QvPack convert it.\n"
               "Public Type QvPackedDouble\n    Low As Long\n    High As Long\nEnd Type\n\n"
               "Private Type QvPlainDouble\n    Value As Double\nEnd Type\n\n")
    for r in interface.records:
        if r.opaque:
            continue
        packed = any(f.type.name == "double" for f in r.fields) and is_packed(r)
        out.append(comment(r.comment, "") + f"Public Type {SCALARS.get(r.name, r.name)}\n")
        for f in r.fields:
            bounds = f"(0 To {f.type.length - 1})" if f.type.length else ""
            out.append(comment(f.comment, "    ") +
                       f"    {safe(f.name)}{bounds} As {field_type(f.type, packed)}\n")
        out.append("End Type\n\n")
    for f in interface.functions:
        is_sub = f.result.name == "void" and not f.result.pointers
        parameters = ", _\n    ".join(parameter(p, interface.handles) for p in f.parameters)
        result = "" if is_sub else " As " + ("LongPtr" if f.result.pointers else SCALARS[f.result.name])
        out.append(comment(f.comment, "") +
                   f"Public Declare PtrSafe {'Sub' if is_sub else 'Function'} {f.name} Lib \"QVLIB60.dll\" (" +
                   (" _\n    " + parameters if parameters else "") + f"){result}\n\n")
    out.append("Public Function QvUnpack(ByRef packed As QvPackedDouble) As Double\n"
               "    Dim plain As QvPlainDouble\n    LSet plain = packed\n    QvUnpack = plain.Value\nEnd Function\n\n"
               "Public Function QvPack(ByVal Value As Double) As QvPackedDouble\n"
               "    Dim plain As QvPlainDouble\n    plain.Value = Value\n    LSet QvPack = plain\nEnd Function\n")
    return "".join(out).replace("\n", "\r\n")
