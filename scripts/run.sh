#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main job on the bundled prices: `qv demo`.
# Arguments go to `qv demo`; see its --help.
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}"
build release -DQV_BUILD_TESTS=OFF
exec build/release/cli/qv demo --data data "$@"
