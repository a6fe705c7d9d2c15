#!/usr/bin/env bash
# Checks the Debian packages: builds them twice, in different folders and environments, and compares
# them; runs lintian; installs them, uses the program and the library, and removes them.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh
. scripts/checks.sh

need "${build_packages[@]}" debhelper dpkg-dev lintian pkg-config binutils
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)

interface=${version%.*}
names=(cableinfo cableinfo-doc libcable-info-dev "libcable-info$interface")
temporary=$(mktemp -d)
installed=0
clean_up() {
  wait  # for a build that still runs
  [ $installed -eq 0 ] || "${as_root[@]}" dpkg -P "${names[@]}" || true
  rm -rf "$temporary"
}
trap clean_up EXIT

for name in "${names[@]}"; do
  if dpkg-query -W "$name" >/dev/null 2>&1; then
    fail "$name is installed on this system; remove it first, as this check installs its own"
  fi
done

packages=$temporary/packages
# Run both builds at once: while one runs a sequential step, the other uses the idle core.
check_reproducibility() {
  local again=$temporary/a/longer/folder package first
  scripts/package.sh "$packages" >"$temporary/first.log" 2>&1 &
  first=$!
  (umask 077 && TZ=Pacific/Auckland LC_ALL=C.UTF-8 quietly scripts/package.sh "$again")
  wait "$first" || { cat "$temporary/first.log" >&2; fail "scripts/package.sh"; }
  [ "$(find "$again" -name '*.deb' | wc -l)" -gt 0 ] || fail "no packages were built"
  for package in "$packages"/*.deb; do
    cmp "$package" "$again/${package##*/}" || fail "${package##*/}: two builds differ"
  done
  rm -rf "$temporary/a"
}

check_contents() {
  local package file alien
  [ "$(dpkg-parsechangelog -S Version)" = "$version" ] ||
    fail "debian/changelog and cable_info/version.h name different versions"
  for package in "${names[@]}"; do
    ls "$packages/${package}_${version}"_*.deb >/dev/null || fail "$package: not built"
  done
  quietly lintian --fail-on error,warning "$packages"/*.changes

  # Another version of the library can be installed at the same time: no file has the same path.
  alien=$(dpkg-deb -c "$packages/libcable-info${interface}_"*.deb | awk '!/^d/ { print $6 }' |
    grep -vF "$interface" || true)
  [ -z "$alien" ] || fail "in the way of other versions of the library: $alien"

  quietly scripts/check_abi.sh "$packages"

  # Hardening: immediate binding of all symbols, and checked functions of the C library where the
  # compiler can use them.
  for package in "$packages/cableinfo_"*.deb "$packages/libcable-info${interface}_"*.deb; do
    dpkg-deb -x "$package" "$temporary/hardened"
  done
  for file in "$temporary"/hardened/usr/bin/cableinfo "$temporary"/hardened/usr/lib/*/*.so.*.*.*; do
    readelf -d "$file" | grep BIND_NOW >/dev/null || fail "${file##*/}: not bound immediately"
  done
  grep ' -c .*\.cpp$' "$packages/build.log" >"$temporary/compiled" ||
    fail "the log of the build lists no compiled file"
  ! grep -vF -- '-D_FORTIFY_SOURCE=2' "$temporary/compiled" || fail "compiled without fortification"
}

# Embeds the installed library: with CMake, and with pkg-config only.
check_library() {
  local consumer=$temporary/consumer flags
  quietly cmake -G Ninja -S tests/consumer -B "$consumer" -DCABLE_INFO_VERSION="$version"
  quietly cmake --build "$consumer"
  quietly ctest --test-dir "$consumer" --output-on-failure --no-tests=error
  read -ra flags <<<"$(pkg-config --cflags --libs cable_info)"
  quietly g++ -std=c++17 tests/consumer/main.cpp "${flags[@]}" -o "$temporary/shared"
  quietly "$temporary/shared"
  readelf -d "$temporary/shared" | grep "NEEDED.*libcable_info.so.$interface" >/dev/null ||
    fail "pkg-config does not link the shared library"
  read -ra flags <<<"$(pkg-config --static --cflags --libs cable_info)"
  quietly g++ -std=c++17 -static tests/consumer/main.cpp "${flags[@]}" -o "$temporary/static"
  quietly "$temporary/static"
}

check_installation() {
  local package file left=()
  for package in "${names[@]}"; do
    dpkg-deb -c "$packages/${package}_"*.deb | awk '!/^d/ { print substr($6, 2) }'
  done >"$temporary/files"

  installed=1
  quietly "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq \
    --no-install-recommends $(printf "$packages/%s_*.deb " "${names[@]}")
  [ "$(/usr/bin/cableinfo --version)" = "cableinfo $version" ] || fail "the packaged program fails"
  check_library
  quietly "${as_root[@]}" dpkg -P "${names[@]}"
  installed=0

  while read -r file; do
    [ ! -e "$file" ] && [ ! -L "$file" ] || left+=("$file")
  done <"$temporary/files"
  mapfile -t -O ${#left[@]} left < <(find /usr /etc /var/lib -xdev -iname '*cableinfo*' -o -xdev \
    -iname '*cable_info*' -o -xdev -iname '*cable-info*')
  [ ${#left[@]} -eq 0 ] || fail "left after the removal of the packages: ${left[*]}"
}

echo "Reproducible packages"
check_reproducibility
echo "Contents of the packages"
check_contents
echo "Installation and removal of the packages"
check_installation
echo "Built twice, installed, used and removed: all good."
