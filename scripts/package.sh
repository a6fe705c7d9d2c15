#!/usr/bin/env bash
# Builds the Debian packages from a copy of the checkout. The same commit gives the same packages, byte
# for byte, wherever and whenever they are built.
# usage: scripts/package.sh [FOLDER]      the folder of the packages, build/packages by default
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need "${build_packages[@]}" debhelper dpkg-dev git
mkdir -p "${1:-build/packages}"
packages=$(cd "${1:-build/packages}" && pwd)
export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}

rm -rf "$packages"/*
mkdir "$packages/source"
git ls-files -z | tar -c --null --mtime="@$SOURCE_DATE_EPOCH" -T - | tar -x -C "$packages/source"
cd "$packages/source"
export CCACHE_DISABLE=1  # compiled files of another folder would differ in debug information
dpkg-buildpackage --build=binary --no-sign >"$packages/build.log" 2>&1 || {
  cat "$packages/build.log" >&2
  exit 1
}
cd "$packages"
rm -rf source
ls ./*.deb
