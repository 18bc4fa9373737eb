#!/usr/bin/env bash
# Installs what is missing and makes packages in build/packages.
#   usage: scripts/package.sh [deb] [archive] [windows]
# deb (the default): Debian packages of the library, its development files and the tool; archive: a .tar.gz to unpack
# anywhere; windows: a .zip with the DLLs, import libraries and tools for 32 and 64 bits.
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}" file dpkg-dev

pack() {
  local preset=$1 generator=$2
  shift 2
  cpack -G "$generator" --config "build/$preset/CPackConfig.cmake" "$@" >build/packages/cpack.log ||
    { cat build/packages/cpack.log; return 1; }
}
deb() {
  build package >/dev/null
  pack package DEB
}
archive() {
  build_programs
  pack release TGZ
}
windows() {
  prepare g++-mingw-w64
  build win32 -DQV_WARNINGS_AS_ERRORS=OFF >/dev/null
  build win64 -DQV_WARNINGS_AS_ERRORS=OFF >/dev/null
  pack win64 ZIP -D CPACK_SYSTEM_NAME=windows \
    -D CPACK_INSTALL_CMAKE_PROJECTS="$PWD/build/win32;QVLIB60;ALL;/win32;$PWD/build/win64;QVLIB60;ALL;/win64"
}

mkdir -p build/packages
for kind in "${@:-deb}"; do
  case $kind in
    deb | archive | windows) stage "$kind" "$kind" ;;
    *) echo "usage: $0 [deb] [archive] [windows]" >&2; exit 2 ;;
  esac
done
rm -rf build/packages/_CPack_Packages build/packages/cpack.log
ls -l build/packages
