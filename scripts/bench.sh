#!/usr/bin/env bash
# Installs what is missing, builds and runs the benchmarks. Arguments go to them, for example
# --benchmark_filter='Copy|SimpleMA' or --shape=flat. Compare ratios to Copy within one run.
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}" "${bench_packages[@]}"
build bench
exec build/bench/bench/qvlib60_bench --benchmark_counters_tabular=true "$@"
