#!/usr/bin/env bash
# The whole suite: install what is missing, build, run every test through ctest.
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-deps.sh
scripts/build.sh
cd build
ctest --output-on-failure -j"$(nproc)"
