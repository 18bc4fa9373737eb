"""A Rust module: raw declarations, to be taken in as `mod qvlib60;`."""
KEYWORDS = set("in type fn let mut ref use mod match move where loop as box final override priv yield abstract become do macro try typeof unsized virtual".split())
SCALARS = {"int8": "i8", "uint8": "u8", "char": "c_char", "int16": "i16", "int32": "i32", "uint32": "u32", "float": "f32",
           "double": "f64", "void": "c_void"}


def safe(name):
    return name + "_" if name in KEYWORDS else name


def doc(lines, indent):
    return "".join(f"{indent}/// {line}\n" for line in lines)


def type_name(t):
    base = SCALARS.get(t.name, t.name)
    if t.length:
        return f"[{base}; {t.length}]"
    if t.pointers == 0:
        return base
    return "*const " * (t.pointers - 1) + ("*const " if t.constant else "*mut ") + base


def generate(interface, note):
    out = [f"// {note}\n", "#![allow(non_snake_case, non_camel_case_types, dead_code)]\n"
           "#![allow(clippy::all, unused_imports)]\n\nuse std::os::raw::{c_char, c_void};\n\n"]
    for lines, constants in interface.constants:
        out += [f"// {line}\n" for line in lines]
        for c in constants:
            out.append(doc(c.comment, "") + f"pub const {c.name}: i32 = {c.value};\n")
        out.append("\n")
    for r in interface.records:
        out.append(doc(r.comment, ""))
        if r.opaque:
            out.append(f"#[repr(C)]\npub struct {r.name} {{\n    _private: [u8; 0],\n}}\n\n")
            continue
        layout = ("#[repr(C, packed(4))]" if r.pack == 4 else
                  '#[cfg_attr(target_pointer_width = "32", repr(C, packed(4)))]\n'
                  '#[cfg_attr(not(target_pointer_width = "32"), repr(C))]')
        out.append(f"{layout}\n#[derive(Clone, Copy)]\npub struct {r.name} {{\n")
        for f in r.fields:
            out.append(doc(f.comment, "    ") + f"    pub {safe(f.name)}: {type_name(f.type)},\n")
        out.append("}\n")
        out.append(f"const _: () = assert!(std::mem::size_of::<{r.name}>() == "
                   f"if cfg!(target_pointer_width = \"32\") {{ {r.size[32]} }} else {{ {r.size[64]} }});\n\n")
    out.append("#[link(name = \"QVLIB60\")]\nextern \"system\" {\n")
    for f in interface.functions:
        parameters = ", ".join(f"{safe(p.name)}: {type_name(p.type)}" for p in f.parameters)
        result = "" if f.result.name == "void" and not f.result.pointers else f" -> {type_name(f.result)}"
        out.append(doc(f.comment, "    ") + f"    pub fn {f.name}({parameters}){result};\n")
    out.append("}\n")
    return "".join(out)
