#!/usr/bin/env bash
# Installs missing packages, builds, and shows the table and the report of a small fabric, and what is
# wrong with its ports.
# CABLE_INFO_PRESET selects the preset of CMakePresets.json, "release" by default.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

preset=${CABLE_INFO_PRESET:-release}
need "${build_packages[@]}"
{
  cmake --preset "$preset" -DCABLE_INFO_BUILD_TESTS=OFF
  cmake --build --preset "$preset" --target cableinfo
} >&2

cableinfo=build/$preset/cli/cableinfo
fabric=(examples/fabric.jsonl examples/faults.jsonl)  # ports of every kind, and one for each kind of fault
table=build/cables.csv
report=build/cables.txt
echo 'For two links of the sample no length can be computed, and a checksum of one module does not match;' \
  'cableinfo prints a remark for each:' >&2
"$cableinfo" table "${fabric[@]}" -o "$table"
"$cableinfo" report "${fabric[@]}" -o "$report" 2>"$report.log" || {  # the same remarks
  cat "$report.log" >&2
  exit 1
}

printf '\n%s: %d rows after a header of 177 columns; the first columns:\n\n' \
  "$table" "$(($(wc -l <"$table") - 1))"
cut -d, -f3-9,18,26 "$table" | sed -n 1,12p  # not head, which may close the pipe too early for cut
printf '\n%s: one block per port; the first of %d:\n\n' "$report" "$(grep -c '^NodeGuid: ' "$report")"
awk '/^$/ { exit } { print }' "$report"

printf '\nWhat is wrong with the ports of one switch, the worst first:\n\n'
"$cableinfo" check -q --guid 0xa0b1c20000e20000 "${fabric[@]}" || {
  status=$?
  [ "$status" -eq 6 ] || exit "$status"  # the worst verdict is critical
}
