#!/usr/bin/env bash
# Installs missing packages, builds, and runs all tests.
# CABLE_INFO_PRESET selects the preset of CMakePresets.json, "release" by default.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

preset=${CABLE_INFO_PRESET:-release}
need "${build_packages[@]}" libgtest-dev \
  python3 python3-jsonschema python3-pandas sqlite3 miller prometheus chromium chromium-driver \
  zsh fish mandoc parallel
case $preset in *clang* | asan-ubsan) need clang libclang-common-14-dev libclang-rt-14-dev ;; esac
[ "$preset" != asan-ubsan ] || need nlohmann-json3-dev  # for a fuzz target
cmake --preset "$preset" -DCABLE_INFO_BUILD_TESTS=ON
cmake --build --preset "$preset"
ctest --preset "$preset" -j "$(nproc)"
