#!/usr/bin/env bash
# Checks installation and packaging, once with a static and once with a shared library: installs the
# project, embeds the library in tests/consumer in every supported way, and makes, installs and
# removes the Debian packages.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need "${build_packages[@]}" pkg-config dpkg-dev file
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)

packages=(cableinfo libcable-info-dev)
version=$(sed -n 's/.*kVersion = "\(.*\)".*/\1/p' cable_info/version.h)
temporary=$(mktemp -d)
installed=0
clean_up() {
  [ $installed -eq 0 ] || "${as_root[@]}" dpkg -P "${packages[@]}" || true
  rm -rf "$temporary"
}
trap clean_up EXIT

fail() {
  printf 'error: %s\n' "$*" >&2
  exit 1
}

# Runs a command and shows its output only if it fails.
quietly() { "$@" >"$temporary/log" 2>&1 || { cat "$temporary/log" >&2; fail "$*"; }; }

# build LINKAGE PREFIX: builds in $build.
build() {
  local shared=OFF
  [ "$1" = static ] || shared=ON
  build=build/install-$1
  quietly cmake --preset package -B "$build" -DBUILD_SHARED_LIBS=$shared \
    -DCMAKE_INSTALL_PREFIX="$2" -DCABLE_INFO_WERROR=ON
  quietly cmake --build "$build" -j "$(nproc)"
}

# consume NAME [CMAKE-OPTION...]: builds the consumer with CMake and runs it.
consume() {
  local consumer=$temporary/$1
  shift
  quietly cmake -G Ninja -S tests/consumer -B "$consumer" "$@"
  quietly cmake --build "$consumer" -j "$(nproc)"
  quietly "$consumer/consumer"
}

# Builds the consumer with the compiler and pkg-config only, and runs it.
consume_with_pkg_config() {
  local flags consumer=$temporary/$linkage-pkg-config
  read -ra flags <<<"$(pkg-config --cflags --libs cable_info)"
  quietly g++ -std=c++17 tests/consumer/main.cpp "${flags[@]}" -o "$consumer"
  LD_LIBRARY_PATH=$(pkg-config --variable=libdir cable_info) quietly "$consumer"
  [ "$(pkg-config --modversion cable_info)" = "$version" ] || fail "cable_info.pc: other version"

  # A C linker needs all dependencies of a static library from pkg-config.
  [ "$linkage" = static ] || return 0
  quietly g++ -std=c++17 -c tests/consumer/main.cpp "${flags[@]}" -o "$consumer.o"
  read -ra flags <<<"$(pkg-config --static --libs cable_info)"
  quietly gcc "$consumer.o" "${flags[@]}" -o "$consumer"
  quietly "$consumer"
}

# Published headers are installed and compile alone; internal ones, which say so, are not.
check_headers() {
  local header
  while read -r header; do
    if grep -q 'Internal; not installed\.' "$header"; then
      [ ! -e "$1/include/$header" ] || fail "$header: internal, but installed"
      continue
    fi
    [ -f "$1/include/$header" ] || fail "$header: not installed"
    quietly g++ -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I"$1/include" \
      -include "$header" -x c++ /dev/null
  done < <(git ls-files 'cable_info/*.h')
}

# Checks the name and the exported symbols of the shared library.
check_shared_library() {
  local library=$1/lib/libcable_info.so alien
  readelf -d "$library" | grep -q "SONAME.*\[libcable_info\.so\.${version%.*}\]" ||
    fail "$library: wrong SONAME"
  nm -DC --defined-only "$library" | cut -d' ' -f3- >"$temporary/symbols"
  grep -q '^cable_info::CombinedCableInfo::ToCSVStream' "$temporary/symbols" ||
    fail "$library: does not export its functions"
  alien=$(sed 's/(.*//' "$temporary/symbols" | grep -vE '^(.* )?cable_info::' || true)
  [ -z "$alien" ] || fail "$library: exports symbols outside its namespace: $alien"
  alien=$(grep -E '^(.* )?cable_info::(text|decode|cable|phy)::' \
    "$temporary/symbols" || true)
  [ -z "$alien" ] || fail "$library: exports internals: $alien"
}

# Checks that an embedding project gets only the library: no program, no tests, nothing to install.
check_embedded_alone() {
  local consumer=$1
  quietly cmake --install "$consumer" --prefix "$consumer/installed"
  [ ! -e "$consumer/installed" ] || fail "an embedded checkout installs something"
  [ -z "$(find "$consumer" -name cableinfo -o -name cable_info_tests -o -name embed)" ] ||
    fail "an embedded checkout builds more than the library"
}

check_packages() {
  quietly cpack --config "$build/CPackConfig.cmake" -B "$temporary/$linkage-packages"
  local package files=()
  for package in "$temporary/$linkage-packages"/*.deb; do
    mapfile -t -O ${#files[@]} files < <(dpkg-deb -c "$package" | awk '!/^d/ { print substr($6, 2) }')
  done

  installed=1
  quietly "${as_root[@]}" dpkg -i "$temporary/$linkage-packages"/*.deb
  [ "$(/usr/bin/cableinfo --version)" = "cableinfo $version" ] || fail "the packaged program fails"
  consume "$linkage-packaged"
  consume_with_pkg_config
  quietly "${as_root[@]}" dpkg -P "${packages[@]}"
  installed=0

  local file
  for file in "${files[@]}"; do
    [ ! -e "$file" ] || fail "$file: not removed with the packages"
  done
}

for package in "${packages[@]}"; do
  if dpkg-query -W "$package" >/dev/null 2>&1; then
    fail "$package is installed on this system; remove it first, as this check installs its own"
  fi
done

for linkage in static shared; do
  echo "An installed tree, $linkage library"
  build $linkage "$temporary/prefix"
  quietly cmake --install "$build"
  tree=$temporary/$linkage-moved  # nothing may remember where it was installed
  mv "$temporary/prefix" "$tree"
  [ "$("$tree/bin/cableinfo" --version)" = "cableinfo $version" ] || fail "the installed program fails"
  for file in man/man1/cableinfo.1 bash-completion/completions/cableinfo \
    zsh/site-functions/_cableinfo; do
    [ -f "$tree/share/$file" ] || fail "$file: not installed"
  done
  check_headers "$tree"
  [ $linkage = static ] || check_shared_library "$tree"
  consume $linkage-config -DCMAKE_PREFIX_PATH="$tree" -DCABLE_INFO_VERSION="$version"
  PKG_CONFIG_PATH=$tree/lib/pkgconfig consume_with_pkg_config

  echo "A checkout inside another project, $linkage library"
  shared=OFF
  [ $linkage = static ] || shared=ON
  consume $linkage-embedded -DCABLE_INFO_SOURCE="$PWD" -DBUILD_SHARED_LIBS=$shared
  check_embedded_alone "$temporary/$linkage-embedded"

  echo "Debian packages, $linkage library"
  build $linkage /usr
  check_packages
done
echo "Installed, embedded, packaged and removed: all good."
