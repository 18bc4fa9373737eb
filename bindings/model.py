"""What the headers declare, read by libclang: constants, records with their layouts on 32 and 64 bits, functions."""
import re
import subprocess
from dataclasses import dataclass, field

from clang import cindex

TARGETS = {32: "i686-w64-mingw32", 64: "x86_64-linux-gnu"}


@dataclass
class Type:
    """`name` is int8 .. int32, uint8, uint32, float, double, char, void or a record's; then come pointers and arrays."""
    name: str
    pointers: int = 0
    length: int = 0  # items of an array in a record
    constant: bool = False  # what it points to is only read


@dataclass
class Named:
    name: str
    type: Type
    comment: list


@dataclass
class Constant:
    name: str
    value: int
    comment: list


@dataclass
class Record:
    name: str
    comment: list
    fields: list
    size: dict  # by the bits of an address
    offsets: dict
    gaps: dict  # bytes that lie unused behind each field
    opaque: bool = False
    pack: int = 4  # 0: as the platform aligns on 64 bits, 4 on 32 bits


@dataclass
class Function:
    name: str
    comment: list
    result: Type
    parameters: list


@dataclass
class Interface:
    version: str = ""
    constants: list = field(default_factory=list)  # lists, with the comment of their enumeration: (comment, [Constant])
    records: list = field(default_factory=list)
    functions: list = field(default_factory=list)
    # Records that the library hands out by their address; callers give back that address, never a copy.
    handles: set = field(default_factory=set)


def comment_of(cursor):
    raw = cursor.raw_comment or ""
    lines = re.sub(r"^/\*+<?|\*+/$", "", raw.strip()).splitlines()
    lines = [line.strip() for line in lines]
    if len(lines) == 1 and lines[0].startswith("----"):
        return []  # a heading
    return [line for line in lines if line]


SCALARS = {
    cindex.TypeKind.INT: "int32", cindex.TypeKind.SHORT: "int16", cindex.TypeKind.SCHAR: "int8",
    cindex.TypeKind.UCHAR: "uint8", cindex.TypeKind.CHAR_S: "char", cindex.TypeKind.FLOAT: "float",
    cindex.TypeKind.DOUBLE: "double", cindex.TypeKind.VOID: "void", cindex.TypeKind.UINT: "uint32",
}


def type_of(clang_type):
    kind = clang_type.get_canonical()
    if kind.kind == cindex.TypeKind.CONSTANTARRAY:
        inner = type_of(kind.element_type)
        inner.length = kind.element_count
        return inner
    if kind.kind == cindex.TypeKind.POINTER and kind.get_pointee().kind == cindex.TypeKind.FUNCTIONPROTO:
        return Type("void", 1)  # an address, whose signature the header tells
    if kind.kind == cindex.TypeKind.POINTER:
        inner = type_of(kind.get_pointee())
        inner.pointers += 1
        if inner.pointers == 1:
            inner.constant = kind.get_pointee().is_const_qualified()
        return inner
    if kind.kind == cindex.TypeKind.RECORD:
        return Type(kind.get_declaration().spelling)
    if kind.kind not in SCALARS:
        raise SystemExit(f"a type that the bindings do not know: {clang_type.spelling}")
    return Type(SCALARS[kind.kind])


def parse(headers, bits):
    """The compiler's own headers are enough, and no platform's are looked for: each machine then reads the same."""
    own = subprocess.run(["clang", "-print-resource-dir"], check=True, capture_output=True, text=True).stdout.strip()
    unit = cindex.Index.create().parse(
        str(headers / "qvlib60.h"),
        ["-x", "c", "-std=c99", "-ffreestanding", "-fparse-all-comments", f"-I{headers}", "-target", TARGETS[bits],
         "-nostdlibinc", "-resource-dir", own])
    errors = [d for d in unit.diagnostics if d.severity >= cindex.Diagnostic.Error]
    if errors:
        raise SystemExit("\n".join(map(str, errors)))
    return [c for c in unit.cursor.get_children() if c.location.file and str(headers) in c.location.file.name]


def read_record(cursor, twin):
    fields = list(cursor.type.get_fields())
    record = Record(cursor.spelling, comment_of(cursor), [], {}, {}, {}, opaque=not cursor.type.get_size() > 0)
    if record.opaque:
        return record
    record.fields = [Named(f.spelling, type_of(f.type), comment_of(f)) for f in fields]
    for bits, one in ((64, cursor), (32, twin)):
        record.size[bits] = one.type.get_size()
        members = list(one.type.get_fields())
        record.offsets[bits] = [f.get_field_offsetof() // 8 for f in members]
        ends = [f.get_field_offsetof() // 8 + f.type.get_size() for f in members]
        begins = record.offsets[bits][1:] + [record.size[bits]]
        record.gaps[bits] = [begin - end for begin, end in zip(begins, ends)]
    return record


def read(headers):
    interface = Interface()
    numbers = re.findall(r"^#define QVLIB60_VERSION_\w+ +(\d+)$", (headers / "qvlib60/version.h").read_text(), re.M)
    interface.version = ".".join(numbers)
    narrow = {c.spelling: c for c in parse(headers, 32)
              if c.kind == cindex.CursorKind.STRUCT_DECL and c.is_definition()}
    seen = set()
    for cursor in parse(headers, 64):
        if cursor.kind == cindex.CursorKind.ENUM_DECL:
            interface.constants.append((comment_of(cursor), [
                Constant(c.spelling, c.enum_value, comment_of(c)) for c in cursor.get_children()]))
        elif cursor.kind == cindex.CursorKind.STRUCT_DECL:
            declaration = cursor.get_definition() or cursor
            if cursor.spelling not in seen:
                seen.add(cursor.spelling)
                interface.records.append(read_record(declaration, narrow.get(cursor.spelling)))
        elif cursor.kind == cindex.CursorKind.FUNCTION_DECL and cursor.spelling not in seen:
            seen.add(cursor.spelling)
            interface.functions.append(Function(
                cursor.spelling, comment_of(cursor), type_of(cursor.result_type),
                [Named(a.spelling, type_of(a.type), []) for a in cursor.get_arguments()]))
    records = {r.name: r for r in interface.records}
    for record in interface.records:
        if holds_addresses(record, records):
            record.pack = 0
    interface.handles = {f.result.name for f in interface.functions if f.result.name in records}
    interface.handles |= {r.name for r in interface.records if r.opaque}
    return interface


def holds_addresses(record, records):
    return any(f.type.pointers or (f.type.name in records and holds_addresses(records[f.type.name], records))
               for f in record.fields)
