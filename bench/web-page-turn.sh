#!/usr/bin/env bash
# A page turn in the web build against the desktop's, by the same scenario:
# the demo quest (without its media, so no movie covers the page) turned
# TURNS times between the iron gate and the wall, run by the desktop's
# `fablewright script` and by the web build's script runner under node, each
# also with no turns, side by side in one hyperfine run. A turn's time is the
# difference over the turns, which leaves out each program's start.
# Usage: bench/web-page-turn.sh build/fablewright build-web/fablewright-node [TURNS] [RUNS]
set -euo pipefail
native=$(realpath "$1") web=$(realpath "$2") turns=${3:-400} runs=${4:-5}
here=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$here/quests/demo/demo.fbw" "$work/"
mkdir -p "$work/home"
script() {  # the scenario with $1 round trips
  printf '%s\n' start 'rnd 0.6 0.5 0.5' 'answer dialog FrmGame.questfile demo.fbw' 'click FrmGame.Image1' 'wait 0.05' \
    'click FrmGame.Command9' 'select FrmGame.Option2' 'click FrmGame.Picture1' 'wait 0.01' \
    'select FrmGame.Option2' 'click FrmGame.Picture1' 'wait 0.01' 'select FrmGame.Option1' 'click FrmGame.Picture1' 'wait 0.01'
  for ((i = 0; i < $1; i++)); do
    printf '%s\n' 'select FrmGame.Option2' 'click FrmGame.Picture1' 'wait 0.01' 'select FrmGame.Option1' 'click FrmGame.Picture1' 'wait 0.01'
  done
  printf '%s\n' 'expect FrmGame.pg.Caption == "5"'
}
script 0 >"$work/none.txt"
script $((turns / 2)) >"$work/turns.txt"
cd "$work"
for s in none turns; do
  for bin in "$native" "$web"; do
    "$bin" script $s.txt --app-dir . --home home | grep -q '1 passed, 0 failed' || { echo "$bin failed $s.txt" >&2; exit 1; }
  done
done
hyperfine --warmup 1 --runs "$runs" --export-json times.json \
  "$native script none.txt --app-dir . --home home" "$native script turns.txt --app-dir . --home home" \
  "$web script none.txt --app-dir . --home home" "$web script turns.txt --app-dir . --home home" >/dev/null
python3 - times.json "$turns" <<'PY'
import json, sys
r = [x["median"] for x in json.load(open(sys.argv[1]))["results"]]
turns = int(sys.argv[2])
native, web = (r[1] - r[0]) / turns, (r[3] - r[2]) / turns
print(f"page turn, desktop's script runner: {native * 1e6:.0f} us; web build under node: {web * 1e6:.0f} us: "
      f"{web / native:.2f} x (limit 3 x)")
print(f"start and demo's first page: desktop {r[0] * 1000:.0f} ms, web under node {r[2] * 1000:.0f} ms")
PY
