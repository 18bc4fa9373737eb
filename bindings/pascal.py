"""A unit for Free Pascal and Delphi."""
KEYWORDS = set("""in out type end begin var const file string array record unit of to set with object name date
    interface implementation exports program library close open high low index read write message""".split())
FIELD_KEYWORDS = set("in type end begin var const file string array record unit of to set with object".split())
SCALARS = {"int8": "ShortInt", "uint8": "Byte", "char": "AnsiChar", "int16": "SmallInt", "int32": "LongInt", "uint32": "LongWord",
           "float": "Single", "double": "Double"}


def comment(lines, indent):
    return "".join(f"{indent}// {line}\n" for line in lines)


# Pascal does not tell QvFormulaNeeds from qvFormulaNeeds: records are T-names, as is the custom.
def type_name(t, records):
    if t.pointers == 0:
        base = SCALARS.get(t.name, "T" + t.name)
        return f"array[0..{t.length - 1}] of {base}" if t.length else base
    known = t.name in SCALARS or t.name in records
    if not known or t.pointers > 2:
        return "Pointer"
    return "P" * t.pointers + SCALARS.get(t.name, t.name)


def generate(interface, note):
    records = {r.name for r in interface.records}
    out = [f"// {note}\n", "unit qvlib60;\n\n{$ifdef FPC}{$mode delphi}{$endif}\n"
           "{$ifdef CPU64}{$define CPU64BITS}{$endif}\n{$ifdef CPUX64}{$define CPU64BITS}{$endif}\n\ninterface\n\nconst\n",
           "  QVLIB60_LIBRARY = {$ifdef MSWINDOWS}'QVLIB60.dll'{$else}'libQVLIB60.so.0'{$endif};\n\n"]
    for lines, constants in interface.constants:
        out.append(comment(lines, "  "))
        for c in constants:
            out.append(comment(c.comment, "  ") + f"  {c.name} = {c.value};\n")
        out.append("\n")
    out.append("type\n")
    out += [f"  P{name} = ^{name};\n" for name in sorted(set(SCALARS.values()) - {"AnsiChar"})]
    out += ["  PAnsiChar = System.PAnsiChar;\n  PPAnsiChar = ^PAnsiChar;\n\n"]
    for r in interface.records:
        out.append(comment(r.comment, "  "))
        if r.opaque:
            out.append(f"  T{r.name} = record end;\n")
        else:
            # Packed, with the gaps spelled out: Free Pascal's own alignment is not C's.
            # P-names stand before the records that hold them.
            out.append(f"  P{r.name} = ^T{r.name};\n  PP{r.name} = ^P{r.name};\n  T{r.name} = packed record\n")
            for i, f in enumerate(r.fields):
                name = f.name + "_" if f.name.lower() in FIELD_KEYWORDS else f.name
                out.append(comment(f.comment, "    ") + f"    {name}: {type_name(f.type, records)};\n")
                for bits, symbol in ((64, "ifdef"), (32, "ifndef")):
                    if r.gaps[bits][i]:
                        out.append(f"    {{${symbol} CPU64BITS}}gap{i}: array[0..{r.gaps[bits][i] - 1}] of Byte;"
                                   "{$endif}\n")
            out.append("  end;\n\n")
            continue
        out.append(f"  P{r.name} = ^T{r.name};\n  PP{r.name} = ^P{r.name};\n\n")
    for f in interface.functions:
        parameters = "; ".join(f"{p.name + '_' if p.name.lower() in KEYWORDS else p.name}: {type_name(p.type, records)}"
                               for p in f.parameters)
        head = f"procedure {f.name}" if f.result.name == "void" and not f.result.pointers else f"function {f.name}"
        tail = "" if head.startswith("procedure") else f": {type_name(f.result, records)}"
        brackets = f"({parameters})" if parameters else ""
        out.append(comment(f.comment, "") + f"{head}{brackets}{tail};\n"
                   "  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external QVLIB60_LIBRARY;\n\n")
    out.append("implementation\n\nuses\n  Math;\n\n")
    # The compiler stops where a record is not laid out as the library's.
    for r in interface.records:
        if not r.opaque:
            out.append(f"{{$if (sizeof(T{r.name}) <> {r.size[64]}) and (sizeof(Pointer) = 8)"
                       f" or (sizeof(T{r.name}) <> {r.size[32]}) and (sizeof(Pointer) = 4)}}"
                       f"{{$message fatal '{r.name}'}}{{$ifend}}\n")
    # Pascal's run time traps what the library computes and throws away, such as a division behind a choice.
    out.append("\n// The library computes with floating-point exceptions masked, as C programs do. A thread that calls it\n"
               "// masks them, too; for the first one it is done here.\ninitialization\n"
               "  SetExceptionMask([exInvalidOp, exDenormalized, exZeroDivide, exOverflow, exUnderflow, exPrecision]);\n"
               "\nend.\n")
    return "".join(out)
