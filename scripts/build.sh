#!/usr/bin/env bash
# Configures and builds into build/ (Release with debug info).
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/compile-cache.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc)"
