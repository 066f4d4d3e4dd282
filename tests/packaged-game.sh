#!/usr/bin/env bash
# Packages the demo quest through the packager's window and runs the game
# folder it makes, as a friend would: the copied executable itself, from its
# own folder.
#   packaged-game.sh folder  BIN DEMO MEDIA   Check1 clear: the folder's files, game.dat
#                                            line by line, and the copy played headless
#   packaged-game.sh runtime BIN DEMO MEDIA   Check1 set: every library resolves into the
#                                            folder, licenses/ names each one's package and
#                                            holds its copyright file, and the copy runs with
#                                            the system's Qt hidden (skipped, exit 77, where
#                                            no namespace can be made)
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
  # The program's own modules (its window and its MIDI voice) go beside the
  # copy, and its licence in licenses/, alone.
  [ "$listing" = "$name|$name.fbw|fablewright-sound.so|fablewright-window.so|game.dat|licenses|" ] ||
    fail "the folder holds: $listing"
  [ "$(ls -A "$game/licenses")" = LICENSE ] || fail "licenses/ holds: $(ls -A "$game/licenses")"
  cmp -s "$here/../LICENSE" "$game/licenses/LICENSE" || fail "licenses/LICENSE is not the program's LICENSE"
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

# -- licenses/: README.txt has a line for each library, plugin and the
# soundfont in the folder, and for nothing else, naming its package, its
# source and version, and a copyright file that licenses/ holds.
readme=$game/licenses/README.txt
cmp -s "$here/../LICENSE" "$game/licenses/LICENSE" || fail "licenses/LICENSE is not the program's LICENSE"
shipped=$(cd "$game" && find lib plugins soundfont.sf2 -type f | sort)
entries=$(sed -n 's/^\([^ ]*\): .*/\1/p' "$readme" | sort)
diff <(echo "$shipped") <(echo "$entries") || fail "licenses/README.txt does not name exactly the folder's libraries"
line_re='^[^ ]+: [^ ,]+, source [^ ]+ [^ ,]+, licence in ([^ ]+)$'
while read -r line; do
  [[ $line =~ $line_re ]] || fail "an entry without its package, source or licence: $line"
  [ -s "$game/licenses/${BASH_REMATCH[1]}" ] || fail "no ${BASH_REMATCH[1]} for: $line"
done < <(grep -E '^(lib|plugins|soundfont)' "$readme")
grep -Eq '^soundfont.sf2: [a-z0-9-]*soundfont[a-z0-9-]*, ' "$readme" || fail "the soundfont's package is not named"
echo "licenses/: $(ls "$game/licenses" | wc -l) files, $(du -sk "$game/licenses" | cut -f1) KB, for $(echo "$shipped" | wc -l) files"

# The system's Qt out of reach: in a mount namespace of our own, an empty file
# covers each of Qt's libraries and an empty folder its plugins.
if ! unshare -rm true 2>/dev/null; then
  echo "SKIP: no unprivileged user and mount namespace can be made here, so the system's Qt cannot be hidden"
  exit 77
fi
export GAME="$game" NAME="$name" BIN="$bin" HERE="$here"
unshare -rm bash -euo pipefail -c '
  empty=$(mktemp)
  for lib in /usr/lib/x86_64-linux-gnu/libQt6*.so.6.*; do mount --bind "$empty" "$lib"; done
  mount -t tmpfs tmpfs /usr/lib/x86_64-linux-gnu/qt6
  if python3 -c "import ctypes; ctypes.CDLL(\"libQt6Core.so.6\")" 2>/dev/null; then
    echo "FAIL: the system Qt is still in reach"; exit 1
  fi
  (cd "$GAME" && "./$NAME" script "$HERE/packaging/play-packaged-demo.txt" --home "$HOME")
  QT_QPA_PLATFORM=offscreen "$HERE/packaging/window-check.sh" libqoffscreen
  # On X11, as on a friend'"'"'s desktop, where a virtual X server can be had.
  if command -v xvfb-run >/dev/null; then
    # libxkbcommon hands strndup a keymap name that ends at its length, not
    # at a NUL, which the sanitizers'"'"' strict string checks read past.
    [ -n "${ASAN_OPTIONS:-}" ] && export ASAN_OPTIONS="$ASAN_OPTIONS:strict_string_checks=0"
    env -u QT_QPA_PLATFORM xvfb-run -a -s "-screen 0 1024x768x24" "$HERE/packaging/window-check.sh" libqxcb
  fi
  echo "the packaged game ran with the system Qt hidden"
'
