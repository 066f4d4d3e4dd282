#!/usr/bin/env bash
# The whole suite: install what is missing, build the web version and the
# program, run every test through ctest (the scenarios on both, the browser
# test in Chromium).
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-deps.sh
scripts/build-web.sh
scripts/build.sh
cd build
ctest --output-on-failure -j"$(nproc)"
