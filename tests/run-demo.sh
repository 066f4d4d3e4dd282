#!/usr/bin/env bash
# Plays the demo scenario on a fresh copy of the demo quest's folder: a game
# writes its character into the quest file, and a test must leave the
# checked-in quest as it was. Its media are made at build time, into the
# build folder, and join the copy.
set -euo pipefail
bin=$1 demo=$2 media=$3
WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
cp -r "$demo"/. "$WORK"/
cp -r "$media"/. "$WORK"/
mkdir -p "$WORK/home"
cd "$WORK"
exec "$bin" script demo-scenario.txt --app-dir . --home "$WORK/home"
