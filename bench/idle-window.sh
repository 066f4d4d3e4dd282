#!/usr/bin/env bash
# What an idle game window costs: the window (offscreen) opens QUEST, waits
# out the splash and the first page, then its CPU time is read from /proc
# over 10 seconds. Usage: bench/idle-window.sh build/fablewright QUEST.fbw
set -euo pipefail
bin=$1 quest=$2
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
QT_QPA_PLATFORM=offscreen "$bin" "$quest" --home "$home" >/dev/null 2>&1 &
pid=$!
sleep 6
ticks() { read -r -a f < "/proc/$pid/stat"; echo $((f[13] + f[14])); }
t0=$(ticks)
sleep 10
t1=$(ticks)
kill "$pid"
wait "$pid" 2>/dev/null || true
hz=$(getconf CLK_TCK)
echo "CPU over 10 s: $(( (t1 - t0) * 1000 / hz )) ms, $(awk "BEGIN { printf \"%.2f\", ($t1 - $t0) * 10 / $hz }")% of a core"
