#!/usr/bin/env bash
# The terminal player's start to its first prompt, against `cat` of the same
# quest, side by side in one hyperfine run, each command started straight,
# without a shell (so the paths take no blanks). The player's input is empty
# (hyperfine's own), so a
# run is: process start, the program put together, the splash's words (the
# terminal does not wait out its pause), the quest opened and its first page
# shown, the first prompt, and the end at the end of the input. The same run times
# `--version` (the start alone) and `ini get` (the start and one read).
# Usage: bench/startup.sh build/fablewright QUEST.fbw [RUNS]
set -euo pipefail
bin=$(realpath "$1") quest=$(realpath "$2") runs=${3:-10}
home=$(mktemp -d)
# Media names in a quest are taken from the current folder.
cd "$(dirname "$quest")"
trap 'rm -rf "$home"' EXIT
json=$home/startup.json
env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM \
  hyperfine --shell=none --warmup 2 --runs "$runs" --export-json "$json" \
  "cat $quest" \
  "$bin --version" \
  "$bin ini get $quest 1 Location --home $home" \
  "$bin play $quest --silent --home $home" \
  "$bin play $quest --home $home" </dev/null
python3 - "$json" <<'PY'
import json, sys
results = json.load(open(sys.argv[1]))["results"]
cat = results[0]["median"]
print(f"\nmedians, against cat of the quest ({cat * 1000:.2f} ms):")
for r in results:
    m = r["median"]
    print(f"  {m * 1000:9.2f} ms  {m / cat:8.1f} x cat   {r['command']}")
PY
