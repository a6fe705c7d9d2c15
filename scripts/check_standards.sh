#!/usr/bin/env bash
# Compiles each published header alone as C++17, and all of them together, with every supported compiler
# and C++ standard, and builds tests/consumer with the library as C++20 and 23; warnings are errors. Of the
# presets in CMakePresets.json, those that set CMAKE_CXX_STANDARD build the library as C++20 or 23, all
# others as C++17. --rest leaves out what they build, as .ci/run does, which runs them all.
# usage: scripts/check_standards.sh [--rest] [COMPILER...]     for example: check_standards.sh clang++-19
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need g++ clang cmake ninja-build
built=()
if [ "${1:-}" = --rest ]; then
  shift
  for preset in asan-ubsan tsan coverage; do
    built+=("$(cmake -N --preset "$preset" | awk -F '"' -v compiler=g++ '
      /CMAKE_CXX_COMPILER=/ { compiler = $2 }
      /CMAKE_CXX_STANDARD=/ { standard = $2 }
      END { print compiler "-" standard }')")
  done
fi
[ $# -gt 0 ] || set -- g++ clang++

warnings=(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
temporary=$(mktemp -d)
trap 'rm -rf "$temporary"' EXIT

git ls-files 'cable_info/*.h' | xargs grep -L 'Internal; not installed\.' >"$temporary/headers"

# Headers as an embedding project includes them, alone and together in either order, and the sources of
# such a project. The headers of libstdc++ include the fewest others in C++17, so a missing
# include shows there.
check_headers() {
  local order compile=("$1" -std=c++"$2" "${warnings[@]}" -fsyntax-only -I .)
  [ "$2" != 17 ] ||
    xargs -P "$(nproc)" -I '{}' "${compile[@]}" -include '{}' -x c++ /dev/null <"$temporary/headers"
  for order in '' -r; do
    sort $order "$temporary/headers" | sed 's/.*/#include "&"/' | "${compile[@]}" -x c++ -
  done
  "${compile[@]}" tests/consumer/*.cpp
}

# Each compiler has a core.
check_compiler() {
  local compiler=$1 standard name build
  for standard in 17 20 23; do
    echo "$compiler, C++$standard"
    name=$standard
    [ "$standard" -ne 23 ] || name=2b  # the name that older compilers have for it
    check_headers "$compiler" "$name"
    [ "$standard" -ne 17 ] || continue
    [[ " ${built[*]} " != *" $compiler-$standard "* ]] || continue
    build=$temporary/$compiler-$standard
    {
      cmake -G Ninja -S tests/consumer -B "$build" -DCMAKE_CXX_COMPILER="$compiler" \
        -DCMAKE_CXX_STANDARD="$standard" -DCMAKE_CXX_STANDARD_REQUIRED=ON \
        -DCMAKE_CXX_FLAGS="${warnings[*]}" -DCABLE_INFO_SOURCE="$PWD" &&
        cmake --build "$build" -j "$(nproc)" && "$build/consumer"
    } >"$build.log" 2>&1 || {
      cat "$build.log" >&2
      return 1
    }
  done
}

checks=()
for compiler in "$@"; do
  check_compiler "$compiler" &
  checks+=($!)
done
for check in "${checks[@]}"; do
  wait "$check"
done
