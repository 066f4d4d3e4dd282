#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the benchmarks need,
# and only those that are missing, so a warm machine pays nothing. The
# Liberation fonts have the widths of the Windows fonts the forms are laid
# out for, so a label's text fits its place in the window. Python drives the
# terminal player's test through a pseudo-terminal. The desktop files are
# checked with Debian's own validators and MIME compiler and GIO's file
# types, and dpkg-dev reads the Debian package's library dependencies and
# gives the hardening flags. The package itself is checked with lintian,
# hardening-check (devscripts, without its recommends) and man-db's man.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(
  g++ cmake make pkg-config
  # Compiles are cached: a rebuild of the same sources costs a lookup a file.
  ccache
  libgtest-dev libgmock-dev libbenchmark-dev libinih-dev
  libfluidsynth-dev libasound2-dev timgm6mb-soundfont
  # MP3 lengths for the players without a window (opened at the first MP3).
  libmpg123-dev
  libedit-dev python3
  qt6-base-dev qt6-multimedia-dev qt6-svg-dev
  libgraphviz-dev graphviz
  gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-libav
  fonts-liberation2 fonts-dejavu-core
  desktop-file-utils appstream libxml2-utils shared-mime-info libglib2.0-bin dpkg-dev
  lintian devscripts man-db groff-base
  # The packager points a game folder's copy of the program at its own libraries.
  patchelf
  # bench/startup.sh times whole starts of the program side by side.
  hyperfine
  # The window's start measured on a real X server too (bench/window-start.sh).
  xvfb xauth
  # The fuzz targets: clang with libFuzzer and the sanitizers' runtimes.
  clang libclang-rt-14-dev
  # The web version: emscripten builds it, Chromium plays it in the browser test.
  emscripten chromium
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  if [ "$(id -u)" -ne 0 ]; then SUDO=sudo; else SUDO=; fi
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -qq
  $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# node and npm run the web build's script runner and drive the browser test;
# a machine may have its own node already (not Debian's), which serves.
node_missing=()
command -v node >/dev/null || node_missing+=(nodejs)
command -v npm >/dev/null || node_missing+=(npm)
if [ ${#node_missing[@]} -gt 0 ]; then
  echo "Installing: ${node_missing[*]}"
  if [ "$(id -u)" -ne 0 ]; then SUDO=sudo; else SUDO=; fi
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -qq
  $SUDO apt-get install -y -qq --no-install-recommends "${node_missing[@]}"
fi

# The browser test's client for the DevTools protocol, from npm's registry
# at the versions tests/web/package-lock.json fixes; it downloads no browser.
if [ ! -f tests/web/node_modules/puppeteer-core/package.json ]; then
  (cd tests/web && npm ci --no-audit --no-fund --loglevel=error)
fi
