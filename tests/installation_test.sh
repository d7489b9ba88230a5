#!/usr/bin/env bash
# Installs the built program into a throw-away folder, looks at what came, and starts it from there
# on a made-up simulator: the window comes, Help opens the manual, and Ctrl+Q ends the run in order.
#   tests/installation_test.sh BUILD
set -euo pipefail

# Whatever hangs, this ends it with all that it has started.
[ -n "${bounded:-}" ] || bounded=yes exec timeout 100 "$0" "$@"

build=$(realpath "$1")
source=$(realpath "$(dirname "$0")/..")
work=$(mktemp -d)
x_server=
program=
trap 'kill $program $x_server 2>/dev/null; rm -rf "$work"' EXIT

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

cmake --install "$build" --prefix "$work/usr" >/dev/null
cd "$work/usr"

# Nothing of ours is missing, and no test, bench or sample has come along.
icons=$(for size in 16 22 24 32 48 64 128 256 512; do
  echo "share/icons/hicolor/${size}x$size/apps/fsskyvault.png"
done)
lib=$(sed -n 's/^CMAKE_INSTALL_LIBDIR:[A-Z]*=//p' "$build/CMakeCache.txt")
helper=
[ ! -e "$build/src/skyvault-wmf" ] || helper=libexec/fsskyvault/skyvault-wmf
diff <(find . -type f -printf '%P\n' | sort) <(grep . <<END | sort
bin/fsskyvault
$lib/fsskyvault/skyvault-net.so
$helper
share/applications/fsskyvault.desktop
share/doc/fsskyvault/changelog.gz
share/doc/fsskyvault/copyright
share/fsskyvault/Skyvault.doc
share/fsskyvault/Skyvault.html
$icons
share/icons/hicolor/scalable/apps/fsskyvault.svg
share/man/man1/fsskyvault.1.gz
share/metainfo/org.example.fsskyvault.metainfo.xml
END
) || fail "these files differ from what an installation consists of"

# What the program loads and calls lies where it looks.
for part in "$lib/fsskyvault/skyvault-net.so" $helper; do
  grep -qaF "../$part" bin/fsskyvault || fail "the program looks for $part in another place"
done

said=$(desktop-file-validate share/applications/fsskyvault.desktop) && [ -z "$said" ] ||
  fail "the desktop entry: $said"
# A hint does not make it fail; nothing but this line does it say of a file without one.
said=$(LC_ALL=C.UTF-8 appstreamcli validate --no-net --pedantic share/metainfo/*.xml) &&
  [[ $said = *"Validation was successful." && $said != *$'\n'* ]] || fail "the metainfo: $said"
gzip -dc share/man/man1/fsskyvault.1.gz | grep -q '^\.TH FSSKYVAULT 1' || fail "the man page"
for icon in $icons; do
  width=$(od -An -tu4 --endian=big -j16 -N4 "$icon" | tr -d ' ')
  [[ $icon = *"/${width}x"* ]] || fail "$icon is $width pixels wide"
done

# The manual begins as word processors know it, every group of it is closed, and the pictures that
# its text names are in it.
manual=share/fsskyvault/Skyvault.doc
[ "$(head -c 6 $manual)" = '{\rtf1' ] || fail "the manual is no rich text"
braces=$(sed 's/\\[\\{}]//g' $manual | tr -cd '{}' | sed 's/{/+1/g; s/}/-1/g')
[ $((0$braces)) -eq 0 ] || fail "the manual's groups are not closed"
pictures=$(grep -c '^!\[' "$source/share/manual.md")
[ "$(grep -o '\\pngblip' $manual | wc -l)" -eq "$pictures" ] || fail "pictures of the manual"
page=share/fsskyvault/Skyvault.html
[ "$(grep -o '<img alt="[^"]\+" src="data:image/png;base64,iVBOR' $page | wc -l)" -eq "$pictures" ] ||
  fail "pictures of the manual's page"

# ---- the start

"$build/share/sample/skyvault-sample" "$work/home" >/dev/null
export HOME="$work/home" WINEPREFIX="$work/home" QT_QPA_PLATFORM=xcb
export XDG_CONFIG_HOME="$HOME/config" XDG_CACHE_HOME="$HOME/cache" XDG_DATA_HOME="$HOME/data"
unset SKYVAULT_DRIVES TEMP WAYLAND_DISPLAY
# What the X server's libraries keep is no fault of ours; the tests of the window look for leaks.
export ASAN_OPTIONS=detect_leaks=0

# What the program opens with the desktop's programs, it tells this one.
mkfifo "$work/display" "$work/opened"
mkdir "$work/path"
printf '#!/bin/sh\necho "$1" >"%s"\n' "$work/opened" >"$work/path/xdg-open"
# The desktop has no program for any document, until it is told of one.
printf '#!/bin/sh\ncat "%s" 2>/dev/null\n' "$work/word-processor" >"$work/path/xdg-mime"
chmod +x "$work/path/xdg-open" "$work/path/xdg-mime"
PATH="$work/path:$PATH"

# Without a screen, and with one that cannot be reached: a sentence and a status, and nothing begun.
for screen in "" ":12345"; do
  status=0
  DISPLAY=$screen QT_QPA_PLATFORM= bin/fsskyvault 2>"$work/errors" || status=$?
  [ $status -eq 1 ] || fail "without a screen the program ends with $status"
  [[ $(cat "$work/errors") = "fsskyvault needs a screen, and "*"${screen:-DISPLAY}"*"." ]] &&
    [ "$(wc -l <"$work/errors")" -eq 1 ] || fail "without a screen: $(cat "$work/errors")"
done

Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$work/display" 2>/dev/null &
x_server=$!
read -r number <"$work/display"
export DISPLAY=":$number"

bin/fsskyvault 2>"$work/errors" &
program=$!
# Ends when there is such a window; the test's own time limit ends a wait in vain.
window=$(xdotool search --sync --onlyvisible --name '^FS Skyvault - [0-9]' | head -1)
kill -0 $program || fail "the program is gone: $(cat "$work/errors")"

# A second start finds the first one and ends.
bin/fsskyvault || fail "the second start"

for manual in Skyvault.html Skyvault.doc; do
  xdotool windowfocus --sync "$window" key alt+h key u
  read -r opened <"$work/opened"
  [ "$opened" = "$work/usr/share/fsskyvault/$manual" ] || fail "the manual opened is $opened"
  echo writer.desktop >"$work/word-processor"
done

xdotool windowfocus --sync "$window" key ctrl+q
wait $program || fail "the program ended with $?: $(cat "$work/errors")"
program=
grep -q '^MainWidth=' "$XDG_CONFIG_HOME/FSSkyvault/settings.ini" || fail "the end stored nothing"
