#!/usr/bin/env bash
# Installs what is missing, fetches and builds the peers (TA-Lib and Tulip Indicators, from their npm packages; kept in
# build/peers), and compares the library's speed with theirs. Arguments go to the program, for example
# --quick or --rows RSI,ADX; see --help. A whole run takes about half an hour; let nothing else run.
# QV_LIBRARY names another build of the library to measure.
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}" "${bench_packages[@]}"
command -v npm >/dev/null || prepare npm

peers=$PWD/build/peers
checksums='7587779fcf8d798b85e065a80e0625ce099fd38e71e00cb3c886f60c6d75586d  talib-1.1.6.tgz
91913ce9772326d906b0ef2ef4b222e1e9479d7d0ef827428ef9f0000953bc8e  tulind-0.8.20.tgz'
if [ ! -d "$peers/tulind" ]; then
  mkdir -p "$peers"
  (
    cd "$peers"
    npm pack --silent talib@1.1.6 tulind@0.8.20
    echo "$checksums" | sha256sum --check
    for archive in talib-1.1.6 tulind-0.8.20; do
      mkdir -p "${archive%-*}"
      tar xzf "$archive.tgz" -C "${archive%-*}"
    done
  )
fi
cmake --preset bench -DQV_PEERS_DIR="$peers" >/dev/null
cmake --build --preset bench --target qvlib60_peers >/dev/null
exec build/bench/bench/peers/qvlib60_peers "${QV_LIBRARY:-build/bench/libQVLIB60.so}" --scratch "$peers" "$@"
