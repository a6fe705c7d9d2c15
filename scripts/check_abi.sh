#!/usr/bin/env bash
# Compares the interface of the shared library with the recorded one of its SONAME, abi/SONAME.abi.xz:
# fails if a program linked with the recorded one could not use the library. Additions are shown. The
# interface of a minor version may still change until it is released; differences are shown, too.
# usage: scripts/check_abi.sh [--record] PACKAGES     PACKAGES: the folder filled by scripts/package.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need abigail-tools dpkg xz-utils
record=0
[ "${1-}" != --record ] || { record=1; shift; }
[ $# -eq 1 ] || { sed -n 's/^# usage: //p' "${BASH_SOURCE[0]}" >&2; exit 2; }

temporary=$(mktemp -d)
trap 'rm -rf "$temporary"' EXIT
for package in "$1"/libcable-info*.deb; do
  dpkg-deb -x "$package" "$temporary"
done
library=$(find "$temporary/usr/lib" -name 'libcable_info.so.*.*.*')
soname=$(basename "${library%.*}")
recorded=abi/$soname.abi.xz

abidw --no-show-locs --no-comp-dir-path --no-corpus-path --exported-interfaces-only \
  --headers-dir "$temporary/usr/include" --drop-private-types \
  --debug-info-dir "$temporary/usr/lib/debug" --out-file "$temporary/new.abi" "$library"
if [ $record -eq 1 ]; then
  xz -9e <"$temporary/new.abi" >"$recorded"
  echo "recorded: $recorded"
  exit
fi

[ -f "$recorded" ] || {
  echo "error: the interface of $soname is not recorded; scripts/check_abi.sh --record does it" >&2
  exit 1
}
xz -d <"$recorded" >"$temporary/old.abi"
abidiff --no-added-syms "$temporary/old.abi" "$temporary/new.abi" || {
  if grep -qF "## ${soname#libcable_info.so.}.0 - unreleased" CHANGELOG.md; then
    echo "note: $soname is not released yet; record its interface again before it is"
    exit
  fi
  echo "error: the interface of $soname has changed: the minor version must be raised, and the" \
    "interface recorded with scripts/check_abi.sh --record" >&2
  exit 1
}
abidiff --added-fns --added-vars "$temporary/old.abi" "$temporary/new.abi" || true
echo "$soname: compatible with the recorded interface"
