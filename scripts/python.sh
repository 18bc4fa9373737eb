#!/usr/bin/env bash
# Installs what is missing, builds the Python package as a wheel, without the network, installs it into a virtual
# environment of the distribution's Python and runs its tests there, also over a library with AddressSanitizer. Arguments
# go to pytest.
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}" "${test_packages[@]}"
prepare_or_skip "Python package" "${python_packages[@]}" "${clang_packages[@]}" || exit 0

# Another Python may come first in the path; this one sees Debian's numpy and pandas.
python=/usr/bin/python3
wheels=$PWD/build/wheels
environment=$PWD/build/venv

wheel() {
  rm -rf "$wheels" python/build
  $python -m pip wheel --quiet --no-deps --no-build-isolation --no-index --wheel-dir "$wheels" ./python
  rm -rf python/build python/*.egg-info
}
# A clean environment each time; no compiler is in its path.
install_wheel() {
  rm -rf "$environment"
  $python -m venv --system-site-packages "$environment"
  mkdir "$environment/without-compiler"
  PATH=$environment/without-compiler "$environment/bin/pip" install --quiet --no-index --no-deps "$wheels"/*.whl
  cd / && PATH=$environment/without-compiler "$environment/bin/python" -c 'import qvlib60; print(qvlib60.__version__)'
}
installed() { "$environment/bin/python" -P -c 'import qvlib60; print(qvlib60.__path__[0])'; }
# What the extension loads is in the wheel, or wherever C++ programs run.
check_libraries() {
  local others
  others=$(ldd "$(installed)"/_core.*.so | awk '{ print $1 }' |
    grep -vE '^(linux-vdso|lib(QVLIB60|csv|stdc\+\+|gcc_s|m|c)\.so|/lib.*/ld-linux)' || true)
  [ -z "$others" ] || { echo "the extension loads: $others"; return 1; }
  [ "$(ldd "$(installed)"/_core.*.so | grep -cE "(libQVLIB60|libcsv).*$(installed)")" = 2 ]
}
# -P: the installed package, not the folder beside the tests.
tests() { cd python && "$environment/bin/python" -P -m pytest -q -p no:cacheprovider "$@"; }
# A copy of the package whose library watches over its memory. Python loads the sanitizer first; what it never frees
# itself is no finding.
sanitized_tests() {
  local copy=$PWD/build/sanitized
  cmake --preset asan >build/sanitized.log && cmake --build --preset asan --target QVLIB60 >>build/sanitized.log
  rm -rf "$copy" && mkdir "$copy"
  cp -r "$(installed)" "$copy"
  cp build/asan/libQVLIB60.so.0 "$copy/qvlib60"
  cd python
  LD_PRELOAD="$(clang -print-file-name="libclang_rt.asan-$(uname -m).so") $(g++ -print-file-name=libstdc++.so)" \
    PYTHONPATH=$copy \
    ASAN_OPTIONS=detect_leaks=0:allocator_may_return_null=1 UBSAN_OPTIONS=halt_on_error=1 \
    "$environment/bin/python" -P -m pytest -q -p no:cacheprovider \
    --ignore=tests/test_cluster.py --ignore=tests/test_documentation.py
}
types() {
  cd python
  "$environment/bin/python" -m mypy --config-file pyproject.toml --cache-dir ../build/mypy "$(installed)"
}

stage "Python wheel" wheel
stage "Python wheel in a clean environment" install_wheel
stage "libraries of the Python wheel" check_libraries
stage "Python tests" tests "$@"
stage "Python tests under AddressSanitizer" sanitized_tests
stage "Python types" types
