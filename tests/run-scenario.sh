#!/usr/bin/env bash
# Runs one scenario script on a fresh copy of the fixtures.
# The script sees ${WORK} (the copy) and ${FIXTURES} (the originals). A comment
# line "# app-dir: SUB" makes ${WORK}/SUB what App.Path reports; otherwise
# ${WORK} itself.
set -euo pipefail
bin=$1 script=$2
here=$(cd "$(dirname "$0")" && pwd)
export FIXTURES="$here/fixtures"
WORK=$(mktemp -d)
export WORK
trap 'rm -rf "$WORK"' EXIT
[ -d "$FIXTURES" ] && cp -r "$FIXTURES"/. "$WORK"/
mkdir -p "$WORK/home"
sub=$(sed -n 's/^# app-dir: *//p' "$script" | head -n 1)
home=$(sed -n 's/^# home: *//p' "$script" | head -n 1)
exec "$bin" script "$script" --app-dir "$WORK/$sub" --home "$WORK/${home:-home}"
