#!/usr/bin/env bash
# Checks installation, once with a static and once with a shared library: installs the project, embeds
# the library in tests/consumer in every supported way, and uninstalls it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh
. scripts/checks.sh

need "${build_packages[@]}" pkg-config binutils
temporary=$(mktemp -d)
trap 'rm -rf "$temporary"' EXIT

# consume FOLDER [CMAKE-OPTION...]: builds the consumer and its plug-in with CMake, and runs them.
consume() {
  local consumer=$1
  shift
  quietly cmake -G Ninja -S tests/consumer -B "$consumer" "$@"
  quietly cmake --build "$consumer" -j "$(nproc)"
  quietly ctest --test-dir "$consumer" --output-on-failure --no-tests=error
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

# Published headers are installed; internal ones, which say so, are not.
check_headers() {
  local header
  while read -r header; do
    if grep -q 'Internal; not installed\.' "$header"; then
      [ ! -e "$1/include/$header" ] || fail "$header: internal, but installed"
    else
      [ -f "$1/include/$header" ] || fail "$header: not installed"
    fi
  done < <(git ls-files 'cable_info/*.h')
}

# Checks the name of the shared library, and that it exports what published headers declare, only.
check_shared_library() {
  local library=$1/lib/libcable_info.so symbol name
  readelf -d "$library" | grep "SONAME.*\[libcable_info\.so\.${version%.*}\]" >/dev/null ||
    fail "$library: wrong SONAME"
  nm -DC --defined-only "$library" | cut -d' ' -f3- >"$temporary/symbols"
  grep -q '^cable_info::CombinedCableInfo::ToCSVStream' "$temporary/symbols" ||
    fail "$library: does not export its functions"
  cat "$1"/include/cable_info/*.h "$1"/include/cable_info/*/*.h >"$temporary/headers"
  while read -r symbol; do
    [[ $symbol =~ (^|\ )cable_info:: ]] || fail "$library: exports $symbol"
    # The last word before the arguments: the name of a function, a variable or a class.
    name=$(sed -E 's/\[abi:cxx11\]//; s/[(<].*//; s/.*(::|^)//' <<<"${symbol#*cable_info::}")
    grep -qwF -- "$name" "$temporary/headers" || fail "$library: exports an internal: $symbol"
  done <"$temporary/symbols"
}

# Checks that an embedding project gets only the library: no program, no tests, nothing to install.
check_embedded_alone() {
  local consumer=$1
  quietly cmake --install "$consumer" --prefix "$consumer/installed"
  [ ! -e "$consumer/installed" ] || fail "an embedded checkout installs something"
  [ -z "$(find "$consumer" -name cableinfo -o -name cable_info_tests -o -name embed)" ] ||
    fail "an embedded checkout builds more than the library"
}

check_program_files() {
  local page file
  [ "$("$1/bin/cableinfo" --version)" = "cableinfo $version" ] || fail "the installed program fails"
  for page in docs/man/*.1; do
    [ -f "$1/share/man/man1/${page##*/}" ] || fail "$page: not installed"
  done
  for file in bash-completion/completions/cableinfo zsh/site-functions/_cableinfo \
    fish/vendor_completions.d/cableinfo.fish doc/cableinfo/COPYRIGHT doc/cableinfo/cableinfo.md \
    doc/cableinfo/port.schema.json doc/cableinfo/examples/fabric.jsonl; do
    [ -f "$1/share/$file" ] || fail "$file: not installed"
  done
}

for linkage in static shared; do
  shared=OFF
  [ $linkage = static ] || shared=ON
  build=build/install-$linkage

  # The sequence of README.md, in an empty home.
  echo "Installation in ~/.local, $linkage library"
  home=$temporary/$linkage-home
  prefix=$home/.local
  quietly cmake --preset release -B "$build" -DCABLE_INFO_BUILD_TESTS=OFF \
    -DCABLE_INFO_BUILD_EXAMPLES=OFF -DBUILD_SHARED_LIBS=$shared -DCABLE_INFO_WERROR=ON
  quietly cmake --build "$build" -j "$(nproc)"
  quietly cmake --install "$build" --prefix "$prefix"
  check_program_files "$prefix"
  check_headers "$prefix"
  [ $linkage = static ] || check_shared_library "$prefix"
  quietly env CMAKE_PREFIX_PATH="$prefix" cmake -G Ninja -S tests/consumer -B "$home/consumer" \
    -DCABLE_INFO_VERSION="${version%.*}"

  echo "The same, moved, $linkage library"
  tree=$temporary/$linkage-moved  # nothing may remember where it was installed
  cp -a "$prefix" "$tree"
  quietly cmake --build "$build" --target uninstall
  left=$(find "$prefix" -not -type d -o -name 'cable*info*')
  [ -z "$left" ] || fail "uninstall leaves $left"
  [ "$("$tree/bin/cableinfo" --version)" = "cableinfo $version" ] || fail "the moved program fails"
  consume "$temporary/$linkage-config" -DCMAKE_PREFIX_PATH="$tree" -DCABLE_INFO_VERSION="$version"
  PKG_CONFIG_PATH=$tree/lib/pkgconfig consume_with_pkg_config

  echo "A checkout inside another project, $linkage library"
  # In a folder and with options that let ccache reuse what has been compiled.
  embedded=build/embedded-$linkage
  rm -rf "$embedded"
  consume "$embedded" -DCABLE_INFO_SOURCE="$PWD" -DBUILD_SHARED_LIBS=$shared \
    -DCMAKE_BUILD_TYPE=Release -DCABLE_INFO_WERROR=ON
  check_embedded_alone "$embedded"
done
echo "Installed, embedded and uninstalled: all good."
