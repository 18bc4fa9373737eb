#!/usr/bin/env bash
# Installs what is missing, makes the declarations for other languages in build/bindings out of the headers, and tries
# them wherever a compiler can be had: each program of bindings/examples reads a file, computes three indicators and
# must show what the others show. Compilers also hold the records' sizes against the library's. VBA has no compiler here.
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}"
build_programs

made=$PWD/build/bindings
examples=$PWD/bindings/examples
library=$PWD/build/release
rm -rf "$made"

prepare_or_skip "declarations" python3 python3-clang clang || exit 0
stage "declarations" /usr/bin/python3 bindings/generate.py include "$made"
cd "$made"

# shows NAME COMMAND...: its output is that of the first.
shows() {
  local name=$1
  shift
  LD_LIBRARY_PATH=$library "$@" "$OLDPWD/data/text" >"$name.txt"
  [ "$(wc -l <"$name.txt")" -eq 3 ]
  diff python.txt "$name.txt"
}
python() { PYTHONPATH=$made shows python /usr/bin/python3 "$examples/three.py"; }
pascal() {
  fpc -v0 -Fu"$made" -FU"$made" -FE"$made" -Fl"$library" -k-rpath-link -k"$library" "$examples/three.pas" >pascal.log 2>&1 ||
    { cat pascal.log; return 1; }
  shows pascal ./three
}
csharp() {
  mcs -unsafe -out:three.exe QVLIB60.cs "$examples/three.cs"
  mcs -unsafe -define:QVLIB60_X86 -target:library -out:x86.dll QVLIB60.cs
  shows csharp mono three.exe
}
rust() {
  cp "$examples/three.rs" .
  rustc --edition 2021 -L "$library" -o three_rust three.rs
  shows rust ./three_rust
}

stage "Python (ctypes)" python
cat python.txt
if prepare_or_skip "Free Pascal" fp-compiler; then stage "Free Pascal" pascal; fi
if prepare_or_skip "C#" mono-mcs mono-runtime libmono-system-core4.0-cil; then stage "C#" csharp; fi
if command -v rustc >/dev/null || prepare_or_skip "Rust" rustc; then stage "Rust" rust; fi
