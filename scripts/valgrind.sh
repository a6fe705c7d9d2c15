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
# kind of memory access. Float16 is excluded because valgrind computes long doubles with 64
# bits, and Allocation because it replaces the operators that count.
#
# run_tests NUMBER: runs one of as many shares of the tests as there are cores.
run_tests() {
  GTEST_TOTAL_SHARDS=$(nproc) GTEST_SHARD_INDEX=$1 \
    watched --show-mismatched-frees=no "build/$preset/tests/cable_info_tests" --gtest_brief=1 \
    --gtest_filter='-*AsPrintfDoes:*AsADefaultStreamDoes:*ShowsTenthsOfMicrowatts:*EveryValueOfItsMonitors:*WhateverTheRecordHolds:*ScansAsTheCLibraryDoes:Float16.*:Allocation.*'
}

tests=()
for ((share = 0; share < $(nproc); ++share)); do
  run_tests "$share" &
  tests+=($!)
done

cableinfo=build/$preset/cli/cableinfo
temporary=$(mktemp -d)
trap 'rm -rf "$temporary"' EXIT

# program STATUS ARGUMENT...: runs the program, which must end with this exit status.
program() {
  local expected=$1 status=0
  shift
  watched "$cableinfo" "$@" >/dev/null 2>"$temporary/log" || status=$?
  [ "$status" -eq "$expected" ] || {
    cat "$temporary/log" >&2
    printf 'error: exit status %d instead of %d: cableinfo %s\n' "$status" "$expected" "$*" >&2
    exit 1
  }
}

ports=examples/fabric.jsonl
dump=fuzz/corpus/module_memory/cmis_optic
echo '{"port_num": "x"}' >"$temporary/bad.jsonl"
program 0 columns
program 0 table -j 1 "$ports"
program 0 table -j 2 "$ports"
program 0 table -j 1 --rfc4180 "$ports"
program 0 report -j 1 "$ports"
program 0 report -j 1 --module "$dump"
program 0 export -j 1 "$ports"
program 0 module -j 1 "$dump"
program 0 module -j 1 --json "$dump"
program 6 check -j 1 examples/faults.jsonl
program 0 diff -j 1 "$ports" "$ports"
program 0 metrics -j 1 "$ports"
program 0 page -j 1 "$ports"
program 0 store -j 1 "$temporary/store.db" "$ports"
program 0 read fuzz/corpus/module_memory/qsfp_optic  # an EEPROM file
mkdir "$temporary/no-ports"
program 1 read --sysfs "$temporary/no-ports"
program 1 table -j 1 -o "$temporary/table.csv" "$temporary/bad.jsonl"  # a rejected port
for share in "${tests[@]}"; do
  wait "$share"
done
echo 'valgrind: nothing found'
