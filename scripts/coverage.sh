#!/usr/bin/env bash
# Prints the line coverage of the library by its unit tests; fails if it is below the given percentage.
# usage: scripts/coverage.sh [PERCENT]      98 by default
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need g++ cmake ninja-build libgtest-dev gcovr
cmake --preset coverage >/dev/null
cmake --build --preset coverage --target cable_info_tests
find build/coverage -name '*.gcda' -delete  # the counts of former runs
seq 0 $(($(nproc) - 1)) | GTEST_TOTAL_SHARDS=$(nproc) xargs -P "$(nproc)" -I '{}' \
  env GTEST_SHARD_INDEX='{}' build/coverage/tests/cable_info_tests --gtest_brief=1
gcovr --root . --filter 'cable_info/' --object-directory build/coverage \
  --exclude-throw-branches --fail-under-line "${1:-98}"
