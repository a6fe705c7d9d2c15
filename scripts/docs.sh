#!/usr/bin/env bash
# Writes the reference of the public headers to build/docs/html; fails when a name has no comment.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need doxygen
mkdir -p build/docs
doxygen docs/Doxyfile
