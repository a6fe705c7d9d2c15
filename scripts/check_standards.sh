#!/usr/bin/env bash
# Builds tests/consumer with the library for every supported compiler and C++ standard, with warnings
# as errors, and runs it.
# usage: scripts/check_standards.sh [COMPILER...]      for example: scripts/check_standards.sh clang++-19
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need g++ clang cmake ninja-build
[ $# -gt 0 ] || set -- g++ clang++

temporary=$(mktemp -d)
trap 'rm -rf "$temporary"' EXIT
for compiler in "$@"; do
  for standard in 17 20 23; do
    echo "$compiler, C++$standard"
    build=$temporary/$compiler-$standard
    {
      cmake -G Ninja -S tests/consumer -B "$build" -DCMAKE_CXX_COMPILER="$compiler" \
        -DCMAKE_CXX_STANDARD=$standard -DCMAKE_CXX_STANDARD_REQUIRED=ON \
        -DCMAKE_CXX_FLAGS='-Wall -Wextra -Wpedantic -Werror' -DCABLE_INFO_SOURCE="$PWD" &&
        cmake --build "$build" -j "$(nproc)" && "$build/consumer"
    } >"$temporary/log" 2>&1 || {
      cat "$temporary/log" >&2
      exit 1
    }
  done
done
