#!/usr/bin/env bash
# Makes docs/page.png, the picture of a page: that of the sample fabric and its faults.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

need "${build_packages[@]}" python3 chromium chromium-driver
cmake --preset release -DCABLE_INFO_BUILD_TESTS=OFF
cmake --build --preset release --target cableinfo

page=$PWD/build/page.html
(cd examples && ../build/release/cli/cableinfo page -q fabric.jsonl faults.jsonl -o "$page")
PYTHONPATH=tests/page python3 -B - "$page" docs/page.png <<'END'
import pathlib
import sys

from browser import Browser

page, picture = map(pathlib.Path, sys.argv[1:])
with Browser() as browser:
    browser.resize(1280, 900)
    browser.open(page)
    browser.screenshot(picture)
END
