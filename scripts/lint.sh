#!/usr/bin/env bash
# Checks the formatting of all sources with clang-format, the sources with cppcheck and clang-tidy,
# and the page with Prettier and ESLint.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need "${build_packages[@]}" libgtest-dev libbenchmark-dev clang-format clang-tidy cppcheck \
  libclang-dev llvm-dev
command -v npm >/dev/null || need nodejs npm
git ls-files -z '*.h' '*.cpp' | xargs -0 clang-format --dry-run --Werror

check_page() {
  cd cli/page && npm ci --silent && npx prettier --check --log-level warn . && npx eslint .
}

# Headers are checked through the sources that include them.
check_with_cppcheck() {
  git ls-files '*.cpp' | cppcheck --file-list=- --quiet --error-exitcode=1 -j "$(nproc)" \
    --language=c++ --std=c++20 --library=googletest -I . -I tests \
    --enable=warning,style,performance,portability --suppressions-list=cppcheck-suppressions.txt
}

# Without precompiled headers, which would hide missing includes. The largest sources first, so that
# no long one runs alone at the end.
check_with_clang_tidy() {
  cmake --preset debug -DCMAKE_EXPORT_COMPILE_COMMANDS=ON -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON \
    >/dev/null
  local plugin=$PWD/build/debug/lint_own_code.so
  g++ -std=c++17 -fno-rtti -fPIC -shared -isystem "$(llvm-config --includedir)" \
    scripts/lint_own_code.cpp -o "$plugin"
  git ls-files 'cable_info/*.cpp' 'cli/*.cpp' 'examples/*.cpp' | xargs ls -S |
    xargs -n 1 -P "$(nproc)" clang-tidy -load "$plugin" -p build/debug --quiet
}

check_page &  # mostly waits for the registry
page=$!
check_with_cppcheck &
cppcheck=$!
check_with_clang_tidy
wait "$cppcheck"
wait "$page"
