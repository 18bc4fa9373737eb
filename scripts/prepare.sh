# Sourced by the other scripts: goes to the project's folder and sees to the tools that the build
# needs.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build_packages=(g++ cmake ninja-build libcli11-dev libcsv-dev libcairo2-dev)
test_packages=(libgtest-dev python3)
bench_packages=(libbenchmark-dev)
python_packages=(pybind11-dev python3-dev python3-venv python3-pip python3-setuptools python3-wheel python3-numpy
  python3-pandas python3-pytest python3-hypothesis python3-distributed mypy)
# The second: what programs built with its sanitizers are linked with.
clang_packages=(clang libclang-rt-dev)
check_packages=("${clang_packages[@]}" clang-format clang-tidy cppcheck pybind11-dev python3-dev)

# prepare PACKAGE...: installs with apt-get what is missing when it may, else says exactly what to
# install and stops.
prepare() {
  local missing=() package sudo=()
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  if ! command -v apt-get >/dev/null; then
    echo "Please install these (named as Debian packages): ${missing[*]}" >&2
    exit 1
  fi
  if [ "$(id -u)" -ne 0 ]; then
    if ! sudo -n true 2>/dev/null; then
      echo "Packages are missing. As root, run: apt-get update && apt-get install -y ${missing[*]}" >&2
      exit 1
    fi
    sudo=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  "${sudo[@]}" apt-get update -q
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
}

# prepare_or_skip WHAT PACKAGE...: as prepare, but where the packages cannot be had it says that WHAT is left out, and
# answers 1.
prepare_or_skip() {
  local what=$1 log
  shift
  log=$(prepare "$@" 2>&1) && return 0
  echo "== $what: SKIPPED, these packages cannot be installed here: $*"
  tail -n 3 <<<"$log" | sed 's/^/   /'
  return 1
}

# build PRESET [CMAKE-OPTION...]: configures and builds it.
build() {
  cmake --preset "$@" && cmake --build --preset "$1"
}

# build_quietly LOG PRESET [CMAKE-OPTION...]: as build; the compilers' errors are shown when it fails.
build_quietly() {
  local log=$1
  shift
  build "$@" >"$log" 2>&1 || { grep -A5 error: "$log" | head -40; return 1; }
}

# Library and tool of the release build; the tests stay as they were configured.
build_programs() {
  [ -e build/release/build.ninja ] || cmake --preset release -DQV_BUILD_TESTS=OFF >/dev/null
  cmake --build --preset release --target QVLIB60 QVLIB60_static qv >/dev/null
}

# stage NAME COMMAND...: runs it and tells how long it took. (In the background, for only there a function still stops
# at its first failure.)
stage() {
  local name=$1 begin=$SECONDS status=0
  shift
  (set -e && "$@") &
  wait $! || status=$?
  echo "== $name: $([ $status -eq 0 ] && echo passed || echo FAILED) in $((SECONDS - begin)) s"
  return $status
}
