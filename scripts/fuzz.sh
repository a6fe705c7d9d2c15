#!/usr/bin/env bash
# Builds the fuzz targets and runs all of them, or the given one, for SECONDS each (20 by default).
# usage: scripts/fuzz.sh [SECONDS [TARGET]]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need "${build_packages[@]}" clang libclang-common-14-dev libclang-rt-14-dev
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

seconds=${1:-20}
work=build/fuzz/runs
failed=0
for seeds in fuzz/corpus/"${2:-}"*; do
  target=${seeds##*/}
  mkdir -p "$work/$target"
  # libFuzzer saves new inputs in the first folder, where the next run reads them.
  if build/fuzz/fuzz/fuzz_"$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=4096 \
    -artifact_prefix="$work/$target-" "$work/$target" "$seeds" >"$work/$target.log" 2>&1; then
    echo "$target: $(tail -n 1 "$work/$target.log"), nothing found"
  else
    tail -n 40 "$work/$target.log"
    echo "$target: FAILED on $(sed -n 's/.*Test unit written to //p' "$work/$target.log")" >&2
    failed=1
  fi
done
exit "$failed"
