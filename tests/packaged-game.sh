#!/usr/bin/env bash
# Packages the demo quest through the packager's window and runs the game
# folder it makes, as a friend would: the copied executable itself, from its
# own folder.
#   packaged-game.sh folder  BIN DEMO MEDIA   Check1 clear: the folder's files, game.dat
#                                            line by line, and the copy played headless
#   packaged-game.sh runtime BIN DEMO MEDIA   Check1 set: every library resolves into the
#                                            folder, and the copy runs with the system's Qt
#                                            hidden (skipped, exit 77, where no namespace
#                                            can be made)
set -euo pipefail
mode=$1
bin=$(realpath "$2") demo=$(realpath "$3") media=$(realpath "$4")
here=$(cd "$(dirname "$0")" && pwd)
WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
mkdir -p "$WORK/home" "$WORK/games" "$WORK/run"
chmod 700 "$WORK/run"
export HOME="$WORK/home" XDG_RUNTIME_DIR="$WORK/run" XDG_CACHE_HOME="$WORK/home/.cache" XDG_CONFIG_HOME="$WORK/home/.config"
export DEMO="$demo" MEDIA="$media" OUT="$WORK/games"
name="Lantern Road Demo"
game="$WORK/games/$name"

fail() { echo "FAIL: $*"; exit 1; }

export CHECK1=$([ "$mode" = runtime ] && echo 1 || echo 0)
"$bin" script "$here/packaging/package-demo.txt" --home "$WORK/home"

# game.dat, line by line: three sections, four keys, in the order a new one is written.
expected=$(printf '%s\n' "[Image]" "Background=gate.bmp" "MenuButton=cafe.bmp" "[loaddat]" \
  "QuestFile=$name.fbw" "[Game Data]" "Title=$name")
[ "$(tr -d '\r' < "$game/game.dat")" = "$expected" ] || fail "game.dat reads: $(cat -A "$game/game.dat")"
[ -x "$game/$name" ] || fail "the executable's copy has no run bit"
cmp -s "$demo/demo.fbw" "$game/$name.fbw" || fail "the quest is not a copy of the saved quest"

# The author brings the quest's media.
cp "$media"/. "$game"/ -r

play_headless() {
  (cd "$game" && "./$name" script "$here/packaging/play-packaged-demo.txt" --home "$WORK/home")
}

if [ "$mode" = folder ]; then
  listing=$(cd "$game" && ls -A | grep -v -F -x -f <(ls -A "$media") | tr '\n' '|')
  [ "$listing" = "$name|$name.fbw|game.dat|" ] || fail "the folder holds: $listing"
  play_headless
  exit 0
fi

# -- The runtime. Every library the copy or a plugin needs resolves to the
# folder's own copy, with no library path to help.
c_library='^(linux-vdso|/lib64/ld-linux|ld-linux|libc\.so|libm\.so|libmvec\.so|libpthread\.so|libdl\.so|librt\.so|libresolv\.so|libutil\.so)'
check_resolved() {
  local file=$1 line lib path
  while read -r line; do
    lib=${line%% *}
    [[ $lib =~ $c_library ]] && continue
    path=$(sed -n 's/.*=> \(.*\) (0x.*/\1/p' <<<"$line")
    [[ $path == "$game/"* ]] || fail "$(basename "$file") finds $lib at ${path:-nowhere}"
  done < <(env -u LD_LIBRARY_PATH ldd "$file" | sed 's/^\s*//')
}
check_resolved "$game/$name"
plugins=("$game"/plugins/*/*.so "$game"/lib/gstreamer-1.0/*.so)
[ -f "$game/plugins/platforms/libqxcb.so" ] || fail "no X11 platform plugin"
[ -f "$game/plugins/platforms/libqoffscreen.so" ] || fail "no offscreen platform plugin"
[ -f "$game/plugins/multimedia/libgstreamermediaplugin.so" ] || fail "no multimedia plugin"
[ -f "$game/lib/gstreamer-1.0/libgstwavparse.so" ] || fail "no GStreamer plugin to read a WAV file"
for plugin in "${plugins[@]}"; do check_resolved "$plugin"; done
[ -f "$game/qt.conf" ] && [ -f "$game/soundfont.sf2" ] || fail "no qt.conf or soundfont"

# The system's Qt out of reach: in a mount namespace of our own, an empty file
# covers each of Qt's libraries and an empty folder its plugins.
if ! unshare -rm true 2>/dev/null; then
  echo "SKIP: no unprivileged user and mount namespace can be made here, so the system's Qt cannot be hidden"
  exit 77
fi
export GAME="$game" NAME="$name" BIN="$bin" HERE="$here"
unshare -rm bash -euo pipefail -c '
  fail() { echo "FAIL: $*"; exit 1; }
  empty=$(mktemp)
  for lib in /usr/lib/x86_64-linux-gnu/libQt6*.so.6.*; do mount --bind "$empty" "$lib"; done
  mount -t tmpfs tmpfs /usr/lib/x86_64-linux-gnu/qt6
  if "$BIN" --version >/dev/null 2>&1; then fail "the system'"'"'s Qt is still in reach"; fi
  cd "$GAME"
  "./$NAME" script "$HERE/packaging/play-packaged-demo.txt" --home "$HOME"
  # The window, offscreen: every Qt file the running game maps is the folder'"'"'s own.
  QT_QPA_PLATFORM=offscreen "./$NAME" --home "$HOME" 2>"$HOME/window.err" &
  pid=$!
  for _ in $(seq 100); do
    grep -q libqoffscreen "/proc/$pid/maps" 2>/dev/null && break
    sleep 0.1
  done
  # The first page plays its rain through GStreamer meanwhile.
  for _ in $(seq 100); do
    grep -q libgstwavparse "/proc/$pid/maps" 2>/dev/null && break
    sleep 0.1
  done
  sleep 1
  maps=$(cat "/proc/$pid/maps" 2>/dev/null || true)
  kill -0 "$pid" 2>/dev/null || fail "the window ended by itself: $(cat "$HOME/window.err")"
  kill "$pid" 2>/dev/null || true
  wait "$pid" 2>/dev/null || true
  grep -q "$GAME/plugins/platforms/libqoffscreen.so" <<<"$maps" || fail "the window did not come up: $(cat "$HOME/window.err")"
  grep -q "$GAME/lib/libQt6Widgets.so.6" <<<"$maps" || fail "the folder'"'"'s Qt is not the one loaded"
  grep -q "$GAME/lib/gstreamer-1.0/libgstwavparse.so" <<<"$maps" || fail "the first page'"'"'s sound did not reach the folder'"'"'s GStreamer"
  if grep -E "libQt6|/qt6/plugins" <<<"$maps" | grep -v -F "$GAME/"; then fail "a Qt file from outside the folder"; fi
  echo "the packaged game ran with the system'"'"'s Qt hidden"
'
