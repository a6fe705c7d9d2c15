#!/usr/bin/env bash
# Builds the fuzz targets and runs all of them, or the given one, for SECONDS each (20 by default), as
# many at a time as there are cores.
# usage: scripts/fuzz.sh [SECONDS [TARGET]]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need "${build_packages[@]}" libgtest-dev nlohmann-json3-dev python3 clang libclang-common-14-dev \
  libclang-rt-14-dev
cmake --preset asan-ubsan >/dev/null
cmake --build --preset asan-ubsan --target fuzz/all

# fuzz TARGET: runs a target, and prints its result as one text, since several run at a time.
fuzz() {
  local target=$1 built=build/asan-ubsan/fuzz
  local work=$built/runs log=$built/runs/$target.log
  mkdir -p "$work/$target"
  # libFuzzer saves new inputs in the first folder, where the next run reads them.
  if "$built/fuzz_$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=4096 \
    -artifact_prefix="$work/$target-" "$work/$target" "fuzz/corpus/$target" >"$log" 2>&1; then
    echo "$target: $(tail -n 1 "$log"), nothing found"
  else
    printf '%s\n%s: FAILED on %s\n' "$(tail -n 40 "$log")" "$target" \
      "$(sed -n 's/.*Test unit written to //p' "$log")" >&2
    return 1
  fi
}
export -f fuzz
export seconds=${1:-20}

for seeds in fuzz/corpus/"${2:-}"*; do
  echo "${seeds##*/}"
done | xargs -P "$(nproc)" -I '{}' bash -c 'fuzz {}'
