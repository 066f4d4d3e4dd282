#!/usr/bin/env bash
# The files that make the program a desktop citizen, checked the way a
# desktop reads them: the menu entry, the software-centre metainfo, the MIME
# types (compiled by shared-mime-info's own tool), an install into a staging
# folder, and the Debian package made from the same rules.
#   desktop-files.sh entry|metainfo|mime|install|double-click|deb|lintian SOURCE_DIR BUILD_DIR APP_ID VERSION
set -euo pipefail
mode=$1 src=$2 build=$3 id=$4 version=$5
desk=$src/desktop
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }
# The program's modules, in the architecture's own library folder.
modules=lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/fablewright

# Every file an install puts down, relative to the prefix.
expected_files() {
  printf '%s\n' bin/fablewright \
    "$modules/fablewright-map.so" \
    "$modules/fablewright-sound.so" \
    "$modules/fablewright-window.so" \
    share/doc/fablewright/copyright \
    share/doc/fablewright/changelog.gz \
    share/man/man1/fablewright.1.gz \
    share/lintian/overrides/fablewright \
    "share/applications/$id.desktop" \
    "share/metainfo/$id.metainfo.xml" \
    "share/mime/packages/$id.xml" \
    share/icons/hicolor/scalable/apps/fablewright.svg | sort
}

# The value of KEY in the desktop entry.
entry_key() { sed -n "s/^$1=//p" "$desk/$id.desktop"; }

# The MIME types the package defines, one a line.
mime_types() {
  xmllint --xpath "//*[local-name()='mime-type']/@type" "$desk/fablewright-mime.xml" |
    sed 's/ type="\([^"]*\)"/\1\n/g' | sed '/^$/d'
}

# The Debian package, made from the build's install rules into the build
# folder, where `lintian` finds the one `deb` made.
deb_dir=$build/package-check
make_deb() {
  rm -rf "$deb_dir"
  (cd "$work" && cpack -G DEB --config "$build/CPackConfig.cmake" -B "$deb_dir" >/dev/null) || fail "cpack failed"
  local deb
  deb=$(find "$deb_dir" -maxdepth 1 -name '*.deb')
  [ -n "$deb" ] || fail "cpack made no .deb"
  echo "$deb"
}

case $mode in
entry)
  # Warnings and hints count as failures: a clean entry prints nothing.
  out=$(desktop-file-validate "$desk/$id.desktop" 2>&1) || fail "desktop-file-validate: $out"
  [ -z "$out" ] || fail "desktop-file-validate: $out"
  [ "$(entry_key Exec)" = "fablewright %f" ] || fail "Exec must pass the file: $(entry_key Exec)"
  [ "$(entry_key Icon)" = fablewright ] || fail "Icon is not the installed icon"
  # Every type the entry claims is one the MIME package defines.
  claimed=$(entry_key MimeType | tr ';' '\n' | sed '/^$/d')
  [ -n "$claimed" ] || fail "the entry claims no MIME type"
  for t in $claimed; do mime_types | grep -qx "$t" || fail "the entry claims $t, which no package defines"; done
  echo "desktop entry: valid"
  ;;
metainfo)
  file=$desk/$id.metainfo.xml
  out=$(appstreamcli validate --no-net "$file" 2>&1) || fail "appstreamcli: $out"
  # Beyond the validator's own verdict, every hint is a fault, except that it
  # does not know the project's top-level domain.
  issues=$(printf '%s\n' "$out" | grep -E '^[EWIP]: ' | grep -v ' cid-maybe-not-rdns ' | grep -v '^P: ' || true)
  [ -z "$issues" ] || fail "appstreamcli: $issues"
  [ "$(xmllint --xpath 'string(/component/id)' "$file")" = "$id" ] || fail "the component id is not $id"
  [ "$(xmllint --xpath 'string(/component/launchable)' "$file")" = "$id.desktop" ] ||
    fail "the launchable is not the installed entry"
  [ "$(xmllint --xpath 'string(/component/project_license)' "$file")" = MIT ] || fail "the project licence is not MIT"
  [[ $(xmllint --xpath 'string(/component/url[@type="bugtracker"])' "$file") == https://bugs.example.org/* ]] ||
    fail "no bug tracker on the example domain"
  # The screenshots are the pictures of docs/screenshots/, at their own sizes.
  count=$(xmllint --xpath 'count(/component/screenshots/screenshot)' "$file")
  [ "$count" -ge 3 ] || fail "only $count screenshots"
  for i in $(seq "$count"); do
    image="/component/screenshots/screenshot[$i]/image"
    name=$(basename "$(xmllint --xpath "string($image)" "$file")")
    png=$src/docs/screenshots/$name
    [ -f "$png" ] || fail "screenshot $name is not in docs/screenshots"
    size=$(python3 -c 'import struct,sys; print("%dx%d" % struct.unpack(">II", open(sys.argv[1],"rb").read(24)[16:24]))' "$png")
    [ "$size" = "$(xmllint --xpath "string($image/@width)" "$file")x$(xmllint --xpath "string($image/@height)" "$file")" ] ||
      fail "screenshot $name is $size, the metainfo says otherwise"
  done
  newest=$(xmllint --xpath 'string(/component/releases/release[1]/@version)' "$file")
  [ "$newest" = "$version" ] || fail "the newest release is $newest, the program is $version"
  echo "metainfo: valid"
  ;;
mime)
  xmllint --noout "$desk/fablewright-mime.xml"
  # Compiled together with the freedesktop.org types, as update-mime-database
  # does on an installed system, so a clash or a typo in an element shows.
  mkdir -p "$work/mime/packages"
  cp /usr/share/mime/packages/freedesktop.org.xml "$work/mime/packages/"
  cp "$desk/fablewright-mime.xml" "$work/mime/packages/$id.xml"
  out=$(update-mime-database -V "$work/mime" 2>&1) || fail "update-mime-database: $out"
  if printf '%s\n' "$out" | grep -i -E 'warning|error|unknown'; then fail "update-mime-database complained"; fi
  for pair in quest:fbw saved-game:sav character:cha; do
    type=application/x-fablewright-${pair%%:*}
    grep -qx "50:$type:\*\.${pair##*:}" "$work/mime/globs2" || fail "$type has no glob *.${pair##*:}"
    grep -qx "$type text/plain" "$work/mime/subclasses" || fail "$type is not text"
  done
  # A saved game and a character file are told by their first section from
  # other programs' files of the same extension.
  for pair in 'saved-game:[saved game]' 'character:[CharacterData]'; do
    grep -a -A1 "^\[60:application/x-fablewright-${pair%%:*}\]\$" "$work/mime/magic" | grep -aqF "${pair#*:}" ||
      fail "no magic ${pair#*:} for application/x-fablewright-${pair%%:*}"
  done
  [ "$(mime_types | wc -l)" -eq 3 ] || fail "the package defines other than three types"
  echo "MIME types: valid"
  ;;
install)
  cmake --install "$build" --prefix "$work/stage" >/dev/null
  (cd "$work/stage" && find . -type f | sed 's|^\./||' | sort) > "$work/found"
  diff <(expected_files) "$work/found" || fail "the install put down other files than these"
  for f in "$id.desktop" "$id.metainfo.xml"; do
    cmp -s "$desk/$f" "$(find "$work/stage/share" -name "$f")" || fail "$f installed changed"
  done
  cmp -s "$desk/../art/fablewright.svg" "$work/stage/share/icons/hicolor/scalable/apps/fablewright.svg" ||
    fail "the icon installed changed"
  cmp -s "$desk/fablewright-mime.xml" "$work/stage/share/mime/packages/$id.xml" || fail "the MIME package changed"
  [ -x "$work/stage/bin/fablewright" ] || fail "the program is not executable"
  [ "$("$work/stage/bin/fablewright" --version | head -1)" = "fablewright $version" ] ||
    fail "the installed program does not run"
  # The installed program finds its window module in the library folder.
  (cd "$work" && QT_QPA_PLATFORM=offscreen LD_DEBUG=files LD_DEBUG_OUTPUT="$work/trace" \
    timeout -s KILL 4 "$work/stage/bin/fablewright" --home "$work/home" >/dev/null 2>&1) || true
  grep -q "file=$work/stage/$modules/fablewright-window.so " "$work"/trace.* ||
    fail "the installed program did not load its window module"
  # DESTDIR, as a distribution's packaging stages it.
  DESTDIR=$work/dest cmake --install "$build" --prefix /usr >/dev/null
  (cd "$work/dest/usr" && find . -type f | sed 's|^\./||' | sort) > "$work/found"
  diff <(expected_files) "$work/found" || fail "the DESTDIR install differs"
  echo "install: every file in its place"
  ;;
double-click)
  # What a file manager does with the installed files: GIO (GNOME's file
  # manager's library) names each file's type from the compiled MIME
  # database and picks the entry that opens it, from the desktop entries'
  # cache, as Debian's triggers build both after an install.
  stage=$work/stage
  cmake --install "$build" --prefix "$stage" >/dev/null
  # Both note that the staged folder is not on this shell's search path: true,
  # and the reason for the desktop of its own below.
  out=$(update-mime-database "$stage/share/mime" 2>&1) || fail "update-mime-database: $out"
  out=$(update-desktop-database "$stage/share/applications" 2>&1) || fail "update-desktop-database: $out"
  # The entry is registered for the quest type itself, not through text.
  grep -qx "application/x-fablewright-quest=$id.desktop;" "$stage/share/applications/mimeinfo.cache" ||
    fail "the entry is not registered for quests: $(cat "$stage/share/applications/mimeinfo.cache")"
  mkdir -p "$work/files" "$work/home"
  printf '[Story Info]\r\nTitle=A\r\n[1]\r\nPage Text=B\r\n' > "$work/files/road.fbw"
  printf '[saved game]\r\nroom=A\r\n' > "$work/files/first.sav"
  printf '[CharacterData]\r\nCharName=A\r\n' > "$work/files/hero.cha"
  printf '$FL2@(#) SPSS DATA FILE' > "$work/files/survey.sav"
  # A desktop of its own: the staged files and the system's, nothing of the
  # real home. GIO skips an entry whose program is not on the PATH.
  desktop() {
    env -i PATH="$stage/bin:/usr/bin:/bin" HOME="$work/home" XDG_DATA_HOME="$work/home/data" \
      XDG_CONFIG_HOME="$work/home/config" XDG_DATA_DIRS="$stage/share:/usr/share" "$@"
  }
  type_of() { desktop gio info -a standard::content-type "$work/files/$1" | sed -n 's/.*content-type: //p'; }
  [ "$(type_of road.fbw)" = application/x-fablewright-quest ] || fail "a quest reads as $(type_of road.fbw)"
  [ "$(type_of first.sav)" = application/x-fablewright-saved-game ] || fail "a saved game reads as $(type_of first.sav)"
  [ "$(type_of hero.cha)" = application/x-fablewright-character ] || fail "a character reads as $(type_of hero.cha)"
  [ "$(type_of survey.sav)" = application/x-spss-sav ] || fail "another program's .sav became ours"
  opener=$(desktop gio mime application/x-fablewright-quest | sed -n "s/^Default application for .*: //p")
  [ "$opener" = "$id.desktop" ] || fail "a double click on a quest opens $opener"
  echo "double click: a quest opens in $opener"
  ;;
deb)
  deb=$(make_deb)
  dpkg-deb -c "$deb" | awk '{print $6}' | grep -v '/$' | sed 's|^\./usr/||' | sort > "$work/found"
  diff <(expected_files) "$work/found" || fail "the package holds other files than these"
  [ "$(dpkg-deb -f "$deb" Package)" = fablewright ] || fail "package name"
  [ "$(dpkg-deb -f "$deb" Version)" = "$version" ] || fail "package version"
  dpkg-deb -f "$deb" Depends | grep -q 'libqt6widgets6' || fail "Depends lacks Qt: $(dpkg-deb -f "$deb" Depends)"
  dpkg-deb -f "$deb" Depends | grep -q 'libfluidsynth3' || fail "Depends lacks FluidSynth"
  # No maintainer scripts, and no trigger: it installs no shared library
  # where the loader looks.
  dpkg-deb -e "$deb" "$work/control"
  [ "$(ls "$work/control" | tr '\n' ' ')" = "control md5sums " ] || fail "control files: $(ls "$work/control")"
  dpkg-deb -x "$deb" "$work/root"
  # The manual page renders clean, as man-db and groff read it.
  page=$work/root/usr/share/man/man1/fablewright.1.gz
  out=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 >/dev/null) ||
    fail "man could not render the page: $out"
  [ -z "$out" ] || fail "man warns: $out"
  out=$(zcat "$page" | groff -ww -z -man 2>&1)
  [ -z "$out" ] || fail "groff warns: $out"
  # Debian's hardening, on the program and every module: the features of
  # Debian 12's dpkg-buildflags (control flow protection comes with later
  # releases). A module calls nothing fortify could guard at build time (see
  # desktop/lintian-overrides), so that check stands on the program, built
  # with the same flags.
  for f in bin/fablewright "$modules"/fablewright-{window,sound,map}.so; do
    checks=(--nocfprotection)
    [[ $f == bin/* ]] || checks+=(--nofortify)
    out=$(hardening-check "${checks[@]}" "$work/root/usr/$f") || fail "hardening-check: $out"
  done
  hardening-check --nocfprotection --verbose "$work/root/usr/bin/fablewright" |
    grep -q 'Fortify Source functions: yes' || fail "the program uses no fortified call"
  echo "package: $(basename "$deb"), hardened, no maintainer scripts"
  ;;
lintian)
  # Every error and warning fails, and so does an info tag that is neither
  # fixed nor overridden in desktop/lintian-overrides (shipped in the package).
  deb=$(find "$deb_dir" -maxdepth 1 -name '*.deb')
  [ -n "$deb" ] || fail "no package: desktop.deb makes it"
  lintian --display-info --fail-on error,warning,info "$deb" || fail "lintian"
  echo "lintian: clean"
  ;;
*)
  fail "unknown mode $mode"
  ;;
esac
