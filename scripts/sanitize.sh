#!/usr/bin/env bash
# The whole suite again under AddressSanitizer, LeakSanitizer and
# UndefinedBehaviorSanitizer, in build-asan/. Any report fails its test, and so
# this script. Leaks inside system libraries are listed in scripts/lsan.supp;
# ours are fixed, never suppressed.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)

source scripts/compile-cache.sh
cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DFABLEWRIGHT_SANITIZE=ON >/dev/null
cmake --build build-asan -j"$(nproc)"

# detect_leaks is on by default on Linux; it is named so that nobody wonders. The
# slow unwinder on malloc gives leaks whole stacks, which the suppressions need.
export ASAN_OPTIONS=halt_on_error=1:exitcode=23:print_stacktrace=1:detect_leaks=1:fast_unwind_on_malloc=0:strict_string_checks=1:detect_stack_use_after_return=1:check_initialization_order=1
export UBSAN_OPTIONS=halt_on_error=1:exitcode=24:print_stacktrace=1
export LSAN_OPTIONS=exitcode=23:print_suppressions=0:suppressions=$root/scripts/lsan.supp

# Tests whose time grows with the size of their case (a fight fought
# thousands of times) take a smaller one here, where the instrumented build
# runs some fifty times slower; the plain suite runs the full cases.
export FABLEWRIGHT_SMALL_CASES=1
# The benchmarks' smoke run without the two that draw the map of 100 pages:
# there Graphviz's drawing takes minutes under the sanitizers' interceptors,
# and the map's own code is run by its tests.
export FABLEWRIGHT_BENCH_SMOKE='^BM_([^M]|M[^a]|Map[^PR]).*/100$'

# The tests that play real sound and movies through Qt Multimedia run in the
# plain suite only: under the sanitizers' timing, Qt's GStreamer plugin can
# deadlock inside QMediaPlayer::setSource (its pad-added handler and the
# state change wait on each other's locks), a fault of the plugin seen only
# under the sanitizers.
cd build-asan
ctest --output-on-failure -j"$(nproc)" -E '^(QtMedia|QtMoviePanel)\.' "$@"
