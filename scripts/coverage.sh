#!/usr/bin/env bash
# Prints the line coverage of the library; fails if it is below the given percentage.
# usage: scripts/coverage.sh [PERCENT]      98 by default
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need gcovr
CABLE_INFO_PRESET=coverage scripts/test.sh >build-coverage.log 2>&1 || {
  cat build-coverage.log
  exit 1
}
rm build-coverage.log
gcovr --root . --filter 'cable_info/' --object-directory build/coverage \
  --exclude-throw-branches --fail-under-line "${1:-98}"
