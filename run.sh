#!/usr/bin/env bash
# Builds the program and runs its main job on the bundled demo quest.
# On a desktop it opens the game window (Load Quest offers the demo's folder);
# at a terminal without a display it plays The Lantern Road there (type an
# option's number); without either (a pipe, a CI job) it plays the demo
# scenario headless and prints the transcript as it goes. Media names in a quest are taken from the
# current folder, so all run in the quest's own folder.
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-deps.sh
scripts/build.sh
# A game writes its character into the quest file, so it plays a copy.
rm -rf build/demo-play
cp -r quests/demo build/demo-play
cp -r build/demo-media/. build/demo-play/
mkdir -p build/demo-home
cd build/demo-play
if [ -t 0 ] && [ -t 1 ]; then
  if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec ../fablewright --app-dir . --home ../demo-home
  fi
  exec ../fablewright play demo.fbw --app-dir . --home ../demo-home
fi
exec ../fablewright script demo-scenario.txt --transcript --app-dir . --home ../demo-home
