#!/usr/bin/env bash
# Checks the formatting of all sources with clang-format, the sources with cppcheck and clang-tidy,
# and the page with Prettier and ESLint.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need "${build_packages[@]}" libgtest-dev libbenchmark-dev clang-format clang-tidy cppcheck
git ls-files -z '*.h' '*.cpp' | xargs -0 clang-format --dry-run --Werror

command -v npm >/dev/null || need nodejs npm
(cd cli/page && npm ci --silent && npx prettier --check --log-level warn . && npx eslint .)

# Headers are checked through the sources that include them.
git ls-files '*.cpp' | cppcheck --file-list=- --quiet --error-exitcode=1 -j "$(nproc)" \
  --language=c++ --std=c++20 --library=googletest -I . -I tests \
  --enable=warning,style,performance,portability --suppressions-list=cppcheck-suppressions.txt

cmake --preset debug -DCMAKE_EXPORT_COMPILE_COMMANDS=ON >/dev/null
git ls-files -z 'cable_info/*.cpp' 'cli/*.cpp' 'examples/*.cpp' |
  xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/debug --quiet
