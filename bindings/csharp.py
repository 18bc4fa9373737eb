"""C# declarations for P/Invoke. Compile with -unsafe: texts in records are fixed buffers."""
from xml.sax.saxutils import escape

KEYWORDS = set("in out ref params object string base event operator fixed lock long short is as checked".split())
SCALARS = {"int8": "sbyte", "uint8": "byte", "char": "byte", "int16": "short", "int32": "int", "uint32": "uint", "float": "float",
           "double": "double", "void": "void"}


def safe(name):
    return "@" + name if name in KEYWORDS else name


def summary(lines, indent):
    if not lines:
        return ""
    return "".join(f"{indent}/// {line}\n" for line in ["<summary>", *map(escape, lines), "</summary>"])


WIDTHS = {"int8": 1, "uint8": 1, "char": 1, "int16": 2, "int32": 4, "uint32": 4, "float": 4, "double": 8}


def layout(record, pack, bits, records):
    """Size and alignment that the runtime gives a record under this Pack."""
    at, widest = 0, 1
    for f in record.fields:
        if f.type.pointers:
            size = align = bits // 8
        elif f.type.name in WIDTHS:
            size = align = WIDTHS[f.type.name]
        else:
            inner = records[f.type.name]
            size, align = layout(inner, pack_of(inner, records) or bits // 8, bits, records)
        align = min(align, pack)
        at = -(-at // align) * align + size * max(f.type.length, 1)
        widest = max(widest, align)
    return -(-at // widest) * widest, widest


def pack_of(record, records):
    """0 where no number is right on both, and the program says by QVLIB60_X86 what it is compiled for."""
    for pack in (4, 8):
        if all(layout(record, pack, bits, records)[0] == record.size[bits] for bits in (32, 64)):
            return pack
    return 0


def fields_of(f):
    t = f.type
    if t.pointers:
        return [f"public IntPtr {safe(f.name)};"]
    if t.length and t.name in SCALARS:
        return [f"public unsafe fixed {SCALARS[t.name]} {safe(f.name)}[{t.length}];"]
    if t.length:
        return [f"public {t.name} {f.name}{i};" for i in range(t.length)]
    return [f"public {SCALARS.get(t.name, t.name)} {safe(f.name)};"]


def parameter(p, handles):
    t = p.type
    if not t.pointers:
        kind = SCALARS.get(t.name, t.name)
    elif t.pointers > 1 or t.name in handles or t.name == "void":
        kind = "IntPtr"
    elif t.name == "char":
        kind = "[MarshalAs(UnmanagedType.LPStr)] " + ("string" if t.constant else "StringBuilder")
    else:
        kind = "ref " + SCALARS.get(t.name, t.name)
    return f"{kind} {safe(p.name)}"


def result(t):
    return "IntPtr" if t.pointers else SCALARS[t.name]


def generate(interface, note):
    out = [f"// {note}\n", "using System;\nusing System.Runtime.InteropServices;\nusing System.Text;\n\n",
           "namespace QVLIB60 {\n\n"]
    records = {r.name: r for r in interface.records}
    for r in interface.records:
        if r.opaque:
            continue
        out.append(summary(r.comment, "") + f"[StructLayout(LayoutKind.Sequential, Pack = {pack_of(r, records) or 'Qv.Pack'})]\n"
                   f"public struct {r.name} {{\n")
        for f in r.fields:
            out.append(summary(f.comment, "  "))
            out += [f"  {line}\n" for line in fields_of(f)]
        out.append("}\n\n")
    out.append("public static class Qv {\n  const string Library = \"QVLIB60\";\n\n"
               "  // Programs for 32-bit Windows are compiled with -define:QVLIB60_X86.\n"
               "#if QVLIB60_X86\n  internal const int Pack = 4;\n#else\n  internal const int Pack = 8;\n#endif\n\n")
    for comment, constants in interface.constants:
        out += [f"  // {line}\n" for line in comment]
        for c in constants:
            out.append(summary(c.comment, "  ") + f"  public const int {c.name} = {c.value};\n")
        out.append("\n")
    for f in interface.functions:
        parameters = ", ".join(parameter(p, interface.handles) for p in f.parameters)
        out.append(summary(f.comment, "  ") +
                   "  [DllImport(Library, CallingConvention = CallingConvention.StdCall)]\n"
                   f"  public static extern {result(f.result)} {f.name}({parameters});\n\n")
    out.append("  /// <summary>Throws when a record is not laid out as the library's.</summary>\n"
               "  public static void CheckLayouts() {\n")
    for r in interface.records:
        if not r.opaque:
            out.append(f"    Check(\"{r.name}\", Marshal.SizeOf(typeof({r.name})), {r.size[32]}, {r.size[64]});\n")
    out.append("  }\n\n  static void Check(string name, int size, int size32, int size64) {\n"
               "    if (size != (IntPtr.Size == 4 ? size32 : size64)) throw new Exception(name + \": \" + size);\n"
               "  }\n}\n\n}\n")
    return "".join(out)
