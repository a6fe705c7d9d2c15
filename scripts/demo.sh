#!/usr/bin/env bash
# Installs what is missing, builds, and shows the table and the report of two ports.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need g++ cmake ninja-build
{
  cmake --preset release -DCABLE_INFO_BUILD_TESTS=OFF
  cmake --build --preset release --target embed
} >&2
build/release/examples/embed
