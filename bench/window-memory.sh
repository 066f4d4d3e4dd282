#!/usr/bin/env bash
# What the game window holds in memory once the demo's first page is on
# screen with its tune and its rain playing: the window (offscreen) opens a
# fresh copy of the demo, waits out the splash and the page, and its resident
# set is read from /proc.
# Usage: bench/window-memory.sh build/fablewright quests/demo build/demo-media
set -euo pipefail
bin=$(realpath "$1") demo=$2 media=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$demo"/. "$work"/
cp -r "$media"/. "$work"/
mkdir -p "$work/home"
cd "$work"
QT_QPA_PLATFORM=offscreen "$bin" demo.fbw --app-dir . --home "$work/home" >/dev/null 2>&1 &
pid=$!
sleep 6
rss=$(awk '/^VmRSS/ { print $2 }' "/proc/$pid/status")
hwm=$(awk '/^VmHWM/ { print $2 }' "/proc/$pid/status")
kill "$pid"
wait "$pid" 2>/dev/null || true
echo "resident: $((rss / 1024)) MB (peak $((hwm / 1024)) MB)"
