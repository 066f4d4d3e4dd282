#!/usr/bin/env bash
# Builds the program and runs its main job on the bundled demo quest.
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-deps.sh
scripts/build.sh
exec build/fablewright script quests/demo/demo-scenario.txt --transcript \
  --app-dir quests/demo --home build/demo-home
