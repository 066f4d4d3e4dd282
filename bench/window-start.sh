#!/usr/bin/env bash
# The game window's start to its first painted frame against a minimal Qt
# Widgets window, in the same run: offscreen, then on an X server (Xvfb).
# Usage: bench/window-start.sh [build/fablewright-bench]
set -euo pipefail
bench=${1:-build/fablewright-bench}
echo "== offscreen"
env -u DISPLAY QT_QPA_PLATFORM=offscreen "$bench" --benchmark_filter=BM_FirstFrame
echo "== Xvfb"
env -u QT_QPA_PLATFORM xvfb-run -a -s "-screen 0 1920x1080x24" "$bench" --benchmark_filter=BM_FirstFrame
