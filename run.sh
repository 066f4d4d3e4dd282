#!/usr/bin/env bash
# Builds the program and runs its main job on the bundled demo quest.
# On a desktop it opens the game window with the demo quest open;
# at a terminal without a display it plays The Lantern Road there (type an
# option's number); without either (a pipe, a CI job) it plays the demo
# scenario headless and prints the transcript as it goes. Media names in a quest are taken from the
# current folder, so all run in the quest's own folder.
#
# A game writes its character into the quest file and its saved games beside
# it, so it plays a copy in build/demo-play, kept from run to run so that the
# saves stay; --fresh starts again from the checked-in quest. --web builds the
# web version instead and serves the demo to a browser on 127.0.0.1. The scenario
# (in a pipe) always runs on a fresh copy of its own.
set -euo pipefail
cd "$(dirname "$0")"
fresh=no web=no
for arg in "$@"; do
  case "$arg" in
    --fresh) fresh=yes ;;
    --web) web=yes ;;
    *) echo "Usage: ./run.sh [--fresh] [--web]" >&2; exit 2 ;;
  esac
done
scripts/install-deps.sh
# --web: the web version, built and served on this machine alone; open the
# address it prints in a browser. Saved games stay in that browser.
if [ "$web" = yes ]; then
  scripts/build-web.sh
  exec node web/serve.js build-web/site "${FABLEWRIGHT_WEB_PORT:-8028}"
fi
scripts/build.sh
mkdir -p build/demo-home
if [ -t 0 ] && [ -t 1 ]; then
  if [ "$fresh" = yes ]; then rm -rf build/demo-play; fi
  if [ ! -f build/demo-play/demo.fbw ]; then
    mkdir -p build/demo-play
    cp -r quests/demo/. build/demo-play/
  fi
  # The media are made by the build, and may be newer than the copy.
  cp -r build/demo-media/. build/demo-play/
  cd build/demo-play
  if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec ../fablewright demo.fbw --app-dir . --home ../demo-home
  fi
  exec ../fablewright play demo.fbw --app-dir . --home ../demo-home
fi
# The scenario checks what a new game shows, so it always starts afresh, in
# a folder of its own.
rm -rf build/demo-scenario
cp -r quests/demo build/demo-scenario
cp -r build/demo-media/. build/demo-scenario/
cd build/demo-scenario
exec ../fablewright script demo-scenario.txt --transcript --app-dir . --home ../demo-home
