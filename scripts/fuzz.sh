#!/usr/bin/env bash
# Builds the fuzz targets with clang and libFuzzer into build-fuzz/ and runs
# each for SECONDS seconds (default 20) on its checked-in corpus. Inputs it
# finds go to a scratch folder, never into fuzz/corpus; a crash leaves its
# input in build-fuzz/findings/ and fails the script.
#   scripts/fuzz.sh            the short run CI makes
#   scripts/fuzz.sh 3600       an hour for each target
#   scripts/fuzz.sh 600 profile saved_game    only these targets
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
seconds=${1:-20}
shift || true
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(profile media saved_game game_dat script quest_check)

source scripts/compile-cache.sh
cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
  -DFABLEWRIGHT_FUZZ=ON >/dev/null
cmake --build build-fuzz -j"$(nproc)" --target "${targets[@]/%/_fuzz}"

# The largest input each target is given: a media header, a quest.
declare -A max_len=([profile]=4096 [media]=16384 [saved_game]=4096 [game_dat]=4096 [script]=4096 [quest_check]=16384)
export ASAN_OPTIONS=halt_on_error=1:detect_leaks=1
# The targets that play write their files through the store, which syncs
# each: in memory that costs nothing, and the runs make many more inputs.
[ -d /dev/shm ] && export TMPDIR=/dev/shm
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
mkdir -p build-fuzz/findings
for t in "${targets[@]}"; do
  scratch=$(mktemp -d)
  echo "== ${t}_fuzz for ${seconds} s"
  if ! build-fuzz/fuzz/${t}_fuzz -max_total_time="$seconds" -max_len="${max_len[$t]}" -timeout=10 \
      -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$root/build-fuzz/findings/${t}-" \
      "$scratch" "fuzz/corpus/$t" 2>&1 | tail -n 12; then
    rm -rf "$scratch"
    echo "${t}_fuzz found a fault; its input is in build-fuzz/findings/" >&2
    exit 1
  fi
  rm -rf "$scratch"
done
