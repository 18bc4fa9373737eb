#!/usr/bin/env bash
# Installs what is missing, builds the fuzz targets and runs each for a while on the kept inputs, one after the other. A
# finding's input is left in build/fuzz/findings and fails the run.
#   usage: scripts/fuzz.sh [--keep] [SECONDS [TARGET...]]      (10 seconds; fuzz/TARGET_fuzz.cpp, all)
# With --keep the inputs that reach something are put back into fuzz/corpus, as few of them as do.
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}" "${clang_packages[@]}"

keep=false
if [ "${1:-}" = --keep ]; then keep=true; shift; fi
seconds=${1:-10}
shift || true
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for source in fuzz/*_fuzz.cpp; do targets+=("$(basename "$source" _fuzz.cpp)"); done
fi

mkdir -p build
{ cmake --preset asan && cmake --build --preset asan --target "${targets[@]/%/_fuzz}"; } >build/fuzz.log 2>&1 ||
  { tail -n 30 build/fuzz.log; exit 1; }
# A request for absurd memory must come back; a bound on time is the targets' own, this one is for a machine at work.
export ASAN_OPTIONS=allocator_may_return_null=1 UBSAN_OPTIONS=print_stacktrace=1
limits=(-rss_limit_mb=2500 -timeout=100)
work=$PWD/build/fuzz/corpus findings=$PWD/build/fuzz/findings
rm -rf "$work"
mkdir -p "$work" "$findings"
python3 fuzz/seeds.py "$work"

status=0
for target in "${targets[@]}"; do
  # As long as a formula may be; the others find nothing behind their first bytes.
  length=-max_len=$([ "$target" = formula ] && echo 65536 || echo 2048)
  program=build/asan/fuzz/${target}_fuzz log=build/fuzz/$target.log
  mkdir -p "$work/$target"
  [ ! -e "fuzz/corpus/$target.tar.gz" ] || tar -xzf "fuzz/corpus/$target.tar.gz" -C "$work/$target"
  "$program" "$work/$target" "${limits[@]}" "$length" -max_total_time="$seconds" -print_final_stats=1 \
    -artifact_prefix="$findings/$target-" >"$log" 2>&1 || { status=1; grep -a -E 'not so|ERROR|runtime error' "$log"; }
  awk -v target="$target" '/^#[0-9]+.* cov: / { for (i = 1; i < NF; ++i) if ($i == "cov:") edges = $(i + 1) }
    /number_of_executed_units/ { runs = $2 }
    END { printf "%-14s %9d inputs %6d edges\n", target, runs, edges }' "$log"
  if $keep; then
    rm -rf "$work/$target.least" && mkdir "$work/$target.least"
    "$program" -merge=1 "${limits[@]}" "$length" "$work/$target.least" "$work/$target" >>"$log" 2>&1
    # The same bytes whenever the inputs are the same ones.
    mkdir -p fuzz/corpus
    tar -C "$work/$target.least" --sort=name --mtime=@0 --owner=0 --group=0 -cf - . | gzip -9n >"fuzz/corpus/$target.tar.gz"
  fi
done
exit $status
