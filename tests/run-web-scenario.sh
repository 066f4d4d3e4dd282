#!/usr/bin/env bash
# Runs one scenario script twice, with the desktop's program and with the web
# build's script runner under node, each on a fresh copy of the fixtures in
# the same folder, with the transcript. Passes when both pass and print the
# same, byte for byte. The arguments: the native program, the web build's
# runner, the script, and for the demo its folder and media.
set -euo pipefail
native=$1 web=$2 script=$3 demo=${4:-} media=${5:-}
here=$(cd "$(dirname "$0")" && pwd)
out=$(mktemp -d)
WORK=$(mktemp -d)
trap 'rm -rf "$WORK" "$out"' EXIT

run() {
  rm -rf "$WORK" && mkdir -p "$WORK/home"
  if [ -n "$demo" ]; then
    cp -r "$demo"/. "$WORK"/ && cp -r "$media"/. "$WORK"/
    (cd "$WORK" && "$1" script "$script" --transcript --app-dir . --home "$WORK/home")
  else
    export FIXTURES="$here/fixtures" WORK
    cp -r "$FIXTURES"/. "$WORK"/
    sub=$(sed -n 's/^# app-dir: *//p' "$script" | head -n 1)
    home=$(sed -n 's/^# home: *//p' "$script" | head -n 1)
    "$1" script "$script" --transcript --app-dir "$WORK/$sub" --home "$WORK/${home:-home}"
  fi
}

set +e
run "$native" >"$out/native" 2>&1; native_code=$?
run "$web" >"$out/web" 2>&1; web_code=$?
set -e
cat "$out/web"
if [ "$native_code" != 0 ] || [ "$web_code" != 0 ]; then
  echo "exit codes: native $native_code, web $web_code" >&2
  exit 1
fi
if ! diff -u "$out/native" "$out/web" >&2; then
  echo "the web build printed otherwise than the desktop's program" >&2
  exit 1
fi
