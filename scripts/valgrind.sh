#!/usr/bin/env bash
# Runs the tests of the library and every command of the program under valgrind; fails on any error
# or leak. CABLE_INFO_PRESET selects the preset of CMakePresets.json, "release" by default.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

preset=${CABLE_INFO_PRESET:-release}
need "${build_packages[@]}" libgtest-dev valgrind
cmake --preset "$preset" -DCABLE_INFO_BUILD_TESTS=ON >/dev/null
cmake --build --preset "$preset" --target cable_info_tests cableinfo

watched() {
  valgrind --quiet --error-exitcode=99 --leak-check=full --show-leak-kinds=all \
    --errors-for-leak-kinds=definite,indirect,possible "$@"
}

# Mismatched frees are not reported: the tests replace operators new and delete to count allocations,
# and valgrind intercepts only those calls that are not inlined.
#
# Tests with hundreds of thousands of numbers or records are excluded: they take long and add no new
# kind of memory access.
watched --show-mismatched-frees=no "build/$preset/tests/cable_info_tests" --gtest_brief=1 \
  --gtest_filter='-*OfAnyDouble*:*ThousandthsOfFloats*:*OfThePlainExpression*:*EveryValueOfItsMonitors:*WhateverTheRecordHolds:*ScansAsTheCLibraryDoes'

cableinfo=build/$preset/cli/cableinfo
for command in table report export columns; do
  inputs=()
  [ "$command" = columns ] || inputs=(-j 1 examples/fabric.jsonl)
  watched "$cableinfo" "$command" "${inputs[@]}" >/dev/null 2>"build/valgrind.log" || {
    cat build/valgrind.log >&2
    exit 1
  }
done
watched "$cableinfo" table -j 2 examples/fabric.jsonl >/dev/null 2>build/valgrind.log || {
  cat build/valgrind.log >&2
  exit 1
}
# Other code paths: a dump of a module, a rejected port, and a file as output.
status=0
watched "$cableinfo" report -j 1 --module fuzz/corpus/module_memory/cmis_optic >/dev/null
echo '{"port_num": "x"}' | watched "$cableinfo" table -j 1 -o build/valgrind.csv \
  2>build/valgrind.log || status=$?
if [ "$status" -ne 1 ]; then
  cat build/valgrind.log >&2
  exit 1
fi
rm -f build/valgrind.log build/valgrind.csv
echo 'valgrind: nothing found'
