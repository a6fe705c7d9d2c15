#!/usr/bin/env bash
# Checks the layout of all sources with clang-format, and the sources themselves with clang-tidy.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need g++ cmake ninja-build libgtest-dev libcli11-dev libsimdjson-dev nlohmann-json3-dev libtbb-dev \
  clang-format clang-tidy
git ls-files -z '*.h' '*.cpp' | xargs -0 clang-format --dry-run --Werror

cmake --preset debug -DCMAKE_EXPORT_COMPILE_COMMANDS=ON >/dev/null
git ls-files -z 'cable_info/*.cpp' 'host/*.cpp' 'examples/*.cpp' |
  xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/debug --quiet
