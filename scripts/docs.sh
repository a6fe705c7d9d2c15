#!/usr/bin/env bash
# Generates the reference of the public headers in build/docs/html; fails if a name has no comment.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need doxygen
mkdir -p build/docs
doxygen docs/Doxyfile
