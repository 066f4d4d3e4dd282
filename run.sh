#!/usr/bin/env bash
# Builds the program and runs its main job on the bundled demo quest: the
# demo scenario, played headless with the transcript printed as it goes.
# Media names in a quest are taken from the current folder, so it runs there.
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-deps.sh
scripts/build.sh
mkdir -p build/demo-home
cd quests/demo
exec ../../build/fablewright script demo-scenario.txt --transcript --app-dir . --home ../../build/demo-home
