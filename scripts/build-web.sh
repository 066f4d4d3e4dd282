#!/usr/bin/env bash
# Builds the web version with emscripten into build-web/: the script runner
# for node and the page in build-web/site/.
set -euo pipefail
cd "$(dirname "$0")/.."
# emcc's optimizer needs Debian's acorn, which the machine's own node does
# not look for.
export NODE_PATH=/usr/share/nodejs
source scripts/compile-cache.sh
# emcc is wrapped from inside (EM_COMPILER_WRAPPER), not from CMake.
unset CMAKE_CXX_COMPILER_LAUNCHER CMAKE_C_COMPILER_LAUNCHER
emcmake cmake -S . -B build-web -DCMAKE_BUILD_TYPE=Release >/dev/null 2>&1 || emcmake cmake -S . -B build-web -DCMAKE_BUILD_TYPE=Release
cmake --build build-web -j"$(nproc)"
