#!/usr/bin/env bash
# Measures rows, reports and whole tables, as ratios to lower bounds: installs missing packages,
# builds, runs the benchmarks, and decodes a generated fabric with `cableinfo table`.
# usage: bench/run.sh [PORTS]      a million ports by default
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

ports=${1:-1000000}
need "${build_packages[@]}" libbenchmark-dev nlohmann-json3-dev python3 sqlite3
{
  cmake --preset release -DCABLE_INFO_BUILD_TESTS=OFF -DCABLE_INFO_BUILD_BENCH=ON
  cmake --build --preset release --target rows modules make_fabric parse_floor cableinfo
} >&2
build/release/bench/rows
printf "\n"
build/release/bench/modules

fabric=build/fabric-$ports.jsonl
[ -s "$fabric" ] || {
  build/release/bench/make_fabric "$ports" >"$fabric.part"
  mv "$fabric.part" "$fabric"
}
printf '\n'
python3 bench/table.py "$fabric"
printf '\n'
head -n 20000 "$fabric" >"$fabric.head"
python3 bench/store.py "$fabric.head"
