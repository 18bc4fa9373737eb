#!/usr/bin/env bash
# Installs what is missing and tries the installation as a user does: a program outside the tree by CMake, by pkg-config
# and with the library as a subproject; the unpacked archive; the Debian packages under lintian; and, with root, the
# Debian packages in a clean Debian 12 (debootstrap), where a C program is linked and run.
source "$(dirname "$0")/prepare.sh"
scripts/package.sh deb archive

work=$PWD/build/test-package
rm -rf "$work"
mkdir -p "$work"
expected=$work/expected.txt

# consumes NAME CMAKE-OPTION...: builds the program outside the tree and runs it.
consumes() {
  local name=$1
  shift
  cmake -S packaging/consumer -B "$work/$name" -G Ninja -DCMAKE_BUILD_TYPE=Release "$@" >/dev/null
  cmake --build "$work/$name" -j2 >/dev/null
  "$work/$name/consumer" data | diff "$expected" -
  "$work/$name/consumer_cpp"
  [ ! -e "$work/$name/consumer_static" ] || "$work/$name/consumer_static" data | diff "$expected" -
}

by_cmake() {
  mkdir "$work/unpacked"
  tar xzf build/packages/qvlib60-*-Linux.tar.gz -C "$work/unpacked" --strip-components=1
  consumes cmake -DCMAKE_PREFIX_PATH="$work/unpacked"
}
by_pkg_config() {
  local flags
  export PKG_CONFIG_PATH=$work/unpacked/lib/pkgconfig
  read -ra flags <<<"$(pkg-config --cflags --libs qvlib60)"
  cc -std=c99 examples/crossover.c "${flags[@]}" -o "$work/by_pkg_config"
  LD_LIBRARY_PATH=$work/unpacked/lib "$work/by_pkg_config" data | diff "$expected" -
}
tool_runs_anywhere() {
  (cd "$work/unpacked/share/qvlib60" && env -i ../../bin/qv demo --data data) | diff "$work/demo.txt" -
}

clean_root() {
  local root=$work/root suite=bookworm
  debootstrap --variant=minbase "$suite" "$root" >"$work/debootstrap.log" || { tail "$work/debootstrap.log"; return 1; }
  cp build/packages/*.deb "$root/root"
  cp examples/crossover.c examples/stop_on_error.h "$root/root"
  chroot "$root" bash -ec "
    cd /root
    export DEBIAN_FRONTEND=noninteractive
    apt-get install -y --no-install-recommends ./*.deb gcc libc6-dev pkg-config >install.log || { tail install.log; exit 1; }
    (cd /usr/share/qvlib60 && qv demo --data data) >demo.txt
    cc crossover.c \$(pkg-config --cflags --libs qvlib60) -o crossover
    ./crossover /usr/share/qvlib60/data >crossover.txt"
  diff "$work/demo.txt" "$root/root/demo.txt"
  diff "$expected" "$root/root/crossover.txt"
  rm -rf "$root"
}

gcc -std=c99 -Iinclude examples/crossover.c -Lbuild/release -lQVLIB60 -Wl,-rpath,build/release -o "$work/in_tree"
"$work/in_tree" data >"$expected"
build/release/cli/qv demo --data data >"$work/demo.txt"

stage "installed, by CMake" by_cmake
if prepare_or_skip "installed, by pkg-config" pkg-config; then stage "installed, by pkg-config" by_pkg_config; fi
stage "as a subproject" consumes subproject -DQVLIB60_SOURCES="$PWD"
stage "unpacked tool" tool_runs_anywhere
if prepare_or_skip lintian lintian; then
  # A tool that cannot write its manual page has none to install.
  mute=$(build/package/cli/qv man >/dev/null 2>&1 || echo no-manual-page)
  stage "lintian" lintian --allow-root --fail-on error,warning ${mute:+--suppress-tags "$mute"} build/packages/*.deb
fi
if [ "$(id -u)" -ne 0 ]; then
  echo "== Debian packages in a clean root: SKIPPED, it takes root"
elif prepare_or_skip "Debian packages in a clean root" debootstrap; then
  stage "Debian packages in a clean root" clean_root
fi
