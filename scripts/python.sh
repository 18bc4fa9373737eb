#!/usr/bin/env bash
# Installs what is missing, builds the Python package as a wheel, without the network, installs it into a virtual
# environment of the distribution's Python and runs its tests there. Arguments go to pytest.
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}"
prepare_or_skip "Python package" "${python_packages[@]}" || exit 0

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
# -P: the installed package, not the folder beside the tests.
tests() { cd python && "$environment/bin/python" -P -m pytest -q -p no:cacheprovider "$@"; }
types() {
  cd python && "$environment/bin/python" -m mypy --config-file pyproject.toml --cache-dir ../build/mypy \
    "$("$environment/bin/python" -P -c 'import qvlib60; print(qvlib60.__path__[0])')"
}

stage "Python wheel" wheel
stage "Python wheel in a clean environment" install_wheel
stage "Python tests" tests "$@"
stage "Python types" types
