#!/usr/bin/env bash
# Starts the packaged game's window and checks what it loads: the platform
# plugin named, the folder's own Qt, and the first page's sound played
# through the folder's GStreamer; nothing of Qt's from outside the folder.
# Reads GAME, NAME and HOME; the platform comes from the environment
# (QT_QPA_PLATFORM, or the X display xvfb-run gives).
set -euo pipefail
plugin=$1
fail() { echo "FAIL: $*"; exit 1; }
cd "$GAME"
"./$NAME" --home "$HOME" 2>"$HOME/window.err" &
pid=$!
for wanted in "$plugin" libgstwavparse; do
  for _ in $(seq 100); do
    grep -q "$wanted" "/proc/$pid/maps" 2>/dev/null && break
    sleep 0.1
  done
done
sleep 1
maps=$(cat "/proc/$pid/maps" 2>/dev/null || true)
kill -0 "$pid" 2>/dev/null || fail "the window ended by itself: $(cat "$HOME/window.err")"
kill "$pid" 2>/dev/null || true
wait "$pid" 2>/dev/null || true
grep -q "$GAME/plugins/platforms/$plugin.so" <<<"$maps" || fail "no $plugin from the folder: $(cat "$HOME/window.err")"
grep -q "$GAME/lib/libQt6Widgets.so.6" <<<"$maps" || fail "the folder's Qt is not the one loaded"
grep -q "$GAME/lib/gstreamer-1.0/libgstwavparse.so" <<<"$maps" || fail "the first page's sound did not reach the folder's GStreamer"
if grep -E "libQt6|/qt6/plugins" <<<"$maps" | grep -v -F "$GAME/"; then fail "a Qt file from outside the folder"; fi
echo "the window ran on $plugin"
