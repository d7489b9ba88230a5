#!/usr/bin/env bash
# How fast the program is beside tools that do the same work: one table of ratios, from one run.
#   bench/compare.sh [ROUNDS]      (5 when not given)
# Every row is measured in turn, ours, theirs, ours, theirs, on a disk whose cache is warm, and
# counts by its medians. Where we put what we wrote on the disk, the other tool is followed by a
# "sync -f" in its time. SKYVAULT_BENCH_DIR chooses the disk (3 GB needed); /var/tmp when not set.
# Ends with 1 when a limit is missed.
set -euo pipefail
export LC_ALL=C.UTF-8 QT_LOGGING_RULES="*=false"
cd "$(dirname "$0")/.."
rounds=${1:-5}

tools/install-dependencies.sh
cmake --preset release >/dev/null
cmake --build --preset release --target skyvault-bench-{op,scenery,start,keys,pictures,mail} skyvault-sample -- --quiet
op=$PWD/build/release/bench/skyvault-bench-op
start=$PWD/build/release/bench/skyvault-bench-start
scenery=$PWD/build/release/bench/skyvault-bench-scenery
keys=$PWD/build/release/bench/skyvault-bench-keys
pictures=$PWD/build/release/bench/skyvault-bench-pictures
mail=$PWD/build/release/bench/skyvault-bench-mail
sample=$PWD/build/release/share/sample/skyvault-sample

work=$(mktemp -d "${SKYVAULT_BENCH_DIR:-/var/tmp}/skyvault-compare-XXXXXX")
screen=
servers=
stop_servers() { [ -z "$servers" ] || { exec {hold}>&-; wait "$servers" || true; servers=; }; }
trap 'stop_servers; rm -rf "$work"; [ -z "$screen" ] || kill "$screen"' EXIT
missed=0

# The window as its users have it: on an X server, one without a screen where there is none.
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  Xvfb -displayfd 3 -screen 0 1600x1200x24 3>"$work/display" >/dev/null 2>&1 &
  screen=$!
  for _ in {1..100}; do [ -s "$work/display" ] && break; sleep 0.1; done
  DISPLAY=:$(cat "$work/display")
  export DISPLAY
fi

median() { sort -g | awk '{ v[NR] = $1 } END { print NR % 2 ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

# row NAME OURS THEIRS RATIO LIMIT
row() {
  local verdict=ok
  awk "BEGIN { exit !($4 <= $5) }" || { verdict=MISSED; missed=1; }
  printf '| %-58s | %12s | %12s | %6.2f | %6s | %-6s |\n' "$1" "$2" "$3" "$4" "$5" "$verdict"
}

# beside NAME LIMIT OURS THEIRS [PREPARE]: the last three are functions; PREPARE is not measured.
# Leaves the medians in ours_took and theirs_took.
beside() {
  local name=$1 limit=$2 ours=$3 theirs=$4 prepare=${5:-:} a=() b=() i
  for ((i = 0; i <= rounds; i++)); do
    "$prepare"; sync -f "$work"; local x; x=$("$ours")
    "$prepare"; sync -f "$work"; local y; y=$("$theirs")
    # The first round only warms the cache.
    ((i == 0)) || { a+=("$x"); b+=("$y"); }
  done
  ours_took=$(printf '%s\n' "${a[@]}" | median)
  theirs_took=$(printf '%s\n' "${b[@]}" | median)
  ratio "$name" "$ours_took" "$theirs_took" "$limit"
}
# ratio NAME OURS THEIRS LIMIT: a row of seconds.
ratio() { row "$1" "$(seconds "$2")" "$(seconds "$3")" "$(awk "BEGIN { print $2 / $3 }")" "$4"; }
seconds() { awk "BEGIN { printf $1 < 1 ? \"%.1f ms\" : \"%.2f s\", $1 < 1 ? $1 * 1000 : $1 }"; }

# times COMMAND...: the median of its rounds.
times() {
  local i all=()
  "$@" >/dev/null
  for ((i = 0; i < rounds; i++)); do all+=("$("$@")"); done
  printf '%s\n' "${all[@]}" | median
}

files=1500 bytes=235000000
echo "Making the loads in $work ..." >&2
"$sample" large-tree "$work/tree" $files $bytes
"$sample" large-zip "$work/large.zip" $files $bytes

printf '| %-58s | %12s | %12s | %6s | %6s | %-6s |\n' "operation" "ours" "theirs" "ratio" "limit" ""
printf '|%s|%s:|%s:|%s:|%s:|%s|\n' "$(printf '%.0s-' {1..60})" -------------{,} -------{,} --------

# flushed FOLDER COMMAND...: the command's time with the flush of the folder's disk.
flushed() { "$op" time sh -c 'folder=$1; shift; "$@" && sync -f "$folder"' sh "$@"; }

# Copying and searching 1,500 files, 235 MB.
fresh() { rm -rf "$work/to"; mkdir "$work/to"; }
ours_copy() { "$op" "$work/run" copy "$work/tree" "$work/to"; }
theirs_copy() { flushed "$work/to" cp -a "$work/tree/." "$work/to"; }
beside "copy 1,500 files, 235 MB / cp -a, sync -f" 1.1 ours_copy theirs_copy fresh
ours_size() { "$op" "$work/run" size "$work/tree"; }
theirs_size() { "$op" time find "$work/tree" -type f -printf '%s\n'; }
beside "size of the same / find -printf %s" 1.5 ours_size theirs_size
ours_find() { "$op" "$work/run" find "$work/tree"; }
theirs_find() { "$op" time find "$work/tree" -type f -iname '*.bgl'; }
beside "search in the same / find -iname" 1.5 ours_find theirs_find

# To the simulator: the add-on lies in the Hangar, its shared files beside it.
mkdir -p "$work/run/drive_c/Hangar/Aircraft" "$work/run/drive_c/Hangar/Main/big"
hangar=$work/run/drive_c/Hangar simulator=$work/run/drive_c/FS
cp -a "$work/tree/BigPlane" "$hangar/Aircraft/big"
cp -a "$work/tree/"{Gauges,Sound,Texture,Effects} "$hangar/Main/big/"
empty_simulator() { rm -rf "$simulator" "$work/to"; mkdir -p "$simulator"/{aircraft,Gauges,Sound,Texture,Effects} "$work/to"; }
ours_to_fs() { "$op" "$work/run" to-fs big; }
theirs_to_fs() { flushed "$work/to" cp -a "$hangar/Aircraft/big" "$hangar/Main/big/." "$work/to"; }
beside "\"To FS2002...\" of the same / cp -a, sync -f" 1.1 ours_to_fs theirs_to_fs empty_simulator
rm -rf "$hangar" "$simulator" "$work/to"

# Installing it from its archive: unpacking, searching, placing, listing.
no_hangar() { rm -rf "$hangar" "$work/to"; }
ours_install() { "$op" "$work/run" install "$work/large.zip"; }
theirs_install() { flushed "$work" unzip -q "$work/large.zip" -d "$work/to"; }
beside "install the same from its archive / unzip, sync -f" 0.8 ours_install theirs_install no_hangar
no_hangar

# Packing it.
no_archives() { rm -f "$work/ours.zip" "$work/theirs.zip"; }
ours_package() { "$op" "$work/run" package "$work/tree" "$work/ours.zip"; }
theirs_package() { flushed "$work" sh -c 'cd "$1" && zip -9 -q -r "$2" .' zip "$work/tree" "$work/theirs.zip"; }
beside "pack the same at level 9 / zip -9 -r, sync -f" 0.3 ours_package theirs_package no_archives
no_archives; ours_package >/dev/null; theirs_package >/dev/null
own_bytes=$(stat -c %s "$work/ours.zip") zip_bytes=$(stat -c %s "$work/theirs.zip")
row "size of the archive" "$own_bytes" "$zip_bytes" "$(awk "BEGIN { print $own_bytes / $zip_bytes }")" 1.005

# The same as an aircraft of the Hangar, from the click to the thinned folder, and back.
packages=$work/run/drive_c/Packs
in_hangar() {
  rm -rf "$hangar" "$packages"; mkdir -p "$hangar"/{Aircraft,Main/big}
  cp -a "$work/tree/BigPlane" "$hangar/Aircraft/big"
  cp -a "$work/tree/"{Gauges,Sound,Texture,Effects} "$hangar/Main/big/"
}
compressed=()
for ((i = 0; i <= rounds; i++)); do
  in_hangar; sync -f "$work"
  x=$("$op" "$work/run" compress big)
  ((i == 0)) || compressed+=("$x")
done
ratio "compress the same, verified and thinned / zip -9 -r, sync -f" \
  "$(printf '%s\n' "${compressed[@]}" | median)" "$theirs_took" 0.3
own_bytes=$(stat -c %s "$packages/big.zip")
row "size of the Package" "$own_bytes" "$zip_bytes" "$(awk "BEGIN { print $own_bytes / $zip_bytes }")" 1
mv "$packages/big.zip" "$work/big.zip"
mv "$hangar" "$work/thin"
in_package() {
  rm -rf "$hangar" "$packages" "$work/to"; mkdir "$packages"
  cp -a "$work/thin" "$hangar"; cp "$work/big.zip" "$packages/"
}
ours_uncompress() { "$op" "$work/run" uncompress big; }
# unzip warns of the backslashes that the simulator's own archivers write, and ends with 1.
theirs_uncompress() {
  flushed "$work" sh -c 'unzip -q "$1" -d "$2" 2>/dev/null || [ $? -eq 1 ]' unzip "$work/big.zip" "$work/to"
}
beside "uncompress the same / unzip, sync -f" 0.5 ours_uncompress theirs_uncompress in_package
rm -rf "$hangar" "$packages" "$work/to" "$work/thin" "$work/tree" "$work/"{big,large}.zip; no_archives

# The same with 16,000 files of a few bytes, as sceneries have them.
"$sample" large-tree "$work/tree" 16000 2000000
"$sample" large-zip "$work/large.zip" 16000 2000000
beside "install 16,000 small files / unzip, sync -f" 1.3 ours_install theirs_install no_hangar
no_hangar
beside "pack the same at level 9 / zip -9 -r, sync -f" 0.8 ours_package theirs_package no_archives
no_archives
beside "copy the same / cp -a, sync -f" 1.0 ours_copy theirs_copy fresh
rm -rf "$work/tree" "$work/large.zip" "$work/to"

# Many aircraft.
many() { rm -rf "$work/$1"; "$sample" aircraft "$work/$1/drive_c/FS/aircraft" "$2"; }
many run5000 5000
many run20000 20000
ours_scan() { "$op" "$work/run5000" scan; }
theirs_scan() { "$op" time find "$work/run5000/drive_c/FS/aircraft" -iname aircraft.cfg; }
beside "scan 5,000 aircraft folders / find -iname" 3 ours_scan theirs_scan
few=$(times ours_scan) all=$(times "$op" "$work/run20000" scan)
row "scan 20,000 / four times the scan of 5,000" "$(seconds "$all")" "$(seconds "$few") * 4" "$(awk "BEGIN { print $all / (4 * $few) }")" 1.25
for kind in aircraft panels sounds; do
  ours_import() { "$op" "$work/run5000" import "$kind" | tee -a "$work/imports"; }
  case $kind in aircraft) config=aircraft.cfg ;; panels) config=panel.cfg ;; sounds) config=sound.cfg ;; esac
  theirs_import() { "$op" time find "$work/run5000/drive_c/FS/aircraft" -iname "$config"; }
  : >"$work/imports"
  beside "import 5,000 $kind / find -iname" 2.2 ours_import theirs_import
  ratio "import again / the first time" "$(tail -n +2 "$work/imports" | cut -d' ' -f2 | median)" "$ours_took" 1
done
rm -rf "$work/run5000"

# Deleting a large one.
"$sample" large-tree "$work/tree" 20000 2000000
one_to_go() { rm -rf "$simulator"; mkdir -p "$simulator/aircraft"; cp -a "$work/tree" "$simulator/aircraft/big"; }
ours_delete() { "$op" "$work/run" delete big; }
theirs_delete() { "$op" time rm -r "$simulator/aircraft/big"; }
beside "delete an aircraft of 20,000 files / rm -r" 1.2 ours_delete theirs_delete one_to_go
rm -rf "$work/tree" "$simulator"

list() { "$sample" list "$work/run20000/drive_c/FS/SKV_AC.lst" 'C:\FS\aircraft\' "$1"; times "$op" "$work/run20000" load; }
few=$(list 10000) all=$(list 32767)
row "load a list of 10,000 aircraft / 100 ms" "$(seconds "$few")" "100 ms" "$(awk "BEGIN { print $few / 0.1 }")" 1
row "load 32,767 / 3.28 times the load of 10,000" "$(seconds "$all")" "$(seconds "$few") * 3.28" "$(awk "BEGIN { print $all / (3.2767 * $few) }")" 1.25
rm -rf "$work/run20000"

# Ten prefixes of 50,000 files, each with a registry of some 5 MB: in two of them lies a simulator.
prefixes=$work/home/.local/share/wineprefixes
make_prefix() {
  mkdir -p "$prefixes/p0/dosdevices" "$prefixes/p0/drive_c/windows"
  ln -s ../drive_c "$prefixes/p0/dosdevices/c:"
  ln -s / "$prefixes/p0/dosdevices/z:"
  (cd "$prefixes/p0/drive_c/windows" && seq -f 'd%03g' 500 | xargs mkdir &&
    for folder in d*; do seq -f "$folder/f%g" 100; done | xargs touch)
  awk 'BEGIN {
    print "WINE REGISTRY Version 2"
    for (i = 0; i < 45000; ++i)
      printf "\n[Software\\\\Classes\\\\CLSID\\\\{%08x}] 1\n#time=1d6\n@=\"A class of this machine\"\n", i
  }' >"$prefixes/p0/system.reg"
  for i in {1..9}; do cp -al "$prefixes/p0" "$prefixes/p$i"; done
  local simulator
  for simulator in "p4/drive_c/Program Files/Microsoft Games/FS2002" "p9/drive_c/Flight"; do
    mkdir -p "$prefixes/$simulator"
    touch "$prefixes/$simulator/Scenery.cfg"
  done
  cp --remove-destination "$prefixes/p0/system.reg" "$prefixes/p9/system.reg"
  printf '\n[Software\\\\Microsoft\\\\Microsoft Games\\\\Flight Simulator\\\\8.0] 1\n"EXE Path"="C:\\\\Flight"\n' \
    >>"$prefixes/p9/system.reg"
}
make_prefix
mkdir -p "$work/finder/drive_c"
find_simulators() { HOME=$work/home "$op" "$work/finder" find-simulators; }
found=$(times find_simulators)
ratio "find the simulators of ten prefixes of 50,000 files / 200 ms" "$found" 0.2 1
rm -rf "$work/home" "$work/finder"

# The window.
many window 1000
"$sample" list "$work/window/drive_c/FS/SKV_AC.lst" 'C:\FS\aircraft\' 1000
ours_start() { "$start" program "$work/window"; }
theirs_start() { "$start" empty; }
start_row() {
  local rounds=31  # a start is short, and no two are alike
  beside "start to a window with 1,000 aircraft / empty Qt window" 1.5 ours_start theirs_start
}
start_row
rm -rf "$work/window"

selected=$(times "$keys" "$work/lists" select 10000)
ratio "select an aircraft beside 10,000 panels, sounds / 10 ms" "$selected" 0.01 1
rm -rf "$work/lists"
moved=$(times "$keys" "$work/areas" move 999)
row "move one of 999 areas, to the painted list / 5 ms" "$(seconds "$moved")" "5 ms" "$(awk "BEGIN { print $moved / 0.005 }")" 1
rm -rf "$work/areas"

# Sceneries, one large and many.
"$sample" large-scenery-zip "$work/large.zip" $files $bytes
library=$work/run/drive_c/Library
no_library() { rm -rf "$library" "$work/to"; }
ours_install_scenery() { "$op" "$work/run" install-scenery "$work/large.zip"; }
beside "install a scenery of 235 MB / unzip, sync -f" 0.5 ours_install_scenery theirs_install no_library
no_library
mkdir -p "$library/Scenery"
unzip -q "$work/large.zip" -d "$library/Scenery"
rm "$work/large.zip"
ours_add() { "$op" "$work/run" add-scenery BigScenery; }
theirs_add() { flushed "$work/to" cp -a "$library/Scenery/BigScenery" "$work/to"; }
beside "\"Add to FS2002\" of the same / cp -a, sync -f" 0.8 ours_add theirs_add empty_simulator
rm -rf "$library" "$simulator" "$work/to"

read -r ours theirs < <("$scenery" "$work/areas" read 999)
row "read 999 areas of 22 values into rows / QSettings" "$(seconds "$ours")" "$(seconds "$theirs")" "$(awk "BEGIN { print $ours / $theirs }")" 1.0
read -r few _ < <("$scenery" "$work/areas" read 333)
row "read 999 areas / three times the read of 333" "$(seconds "$ours")" "$(seconds "$few") * 3" "$(awk "BEGIN { print $ours / (3 * $few) }")" 1.25
read -r ours theirs < <("$scenery" "$work/areas" save 999)
row "save 999 areas / 3 plain writes + 5 ms" "$(seconds "$ours")" "$(seconds "$theirs") * 3" "$(awk "BEGIN { print $ours / (3 * $theirs + 0.005) }")" 1
read -r few _ < <("$scenery" "$work/areas" save 333)
row "save 999 areas / three times the save of 333" "$(seconds "$ours")" "$(seconds "$few") * 3" "$(awk "BEGIN { print $ours / (3 * $few) }")" 1.25
cached=$("$scenery" "$work/areas" cache 999)
row "load the cache of 999 areas / 20 ms" "$(seconds "$cached")" "20 ms" "$(awk "BEGIN { print $cached / 0.02 }")" 1
listed=$("$scenery" "$work/areas" library 5000)
row "load a library of 5,000 with its places / 60 ms" "$(seconds "$listed")" "60 ms" "$(awk "BEGIN { print $listed / 0.06 }")" 1
rm -rf "$work/areas"

# Pictures. Ours is the call in a running program, with its flush; cjpeg is started, reads the pixels
# and is flushed.
"$pictures" draw "$work/picture.ppm"
no_picture() { rm -f "$work"/*.jpg; }
ours_save() { "$pictures" save "$work/picture.ppm"; }
theirs_save() { flushed "$work" cjpeg -quality 70 -outfile "$work/theirs.jpg" "$work/picture.ppm"; }
beside "save 1920 x 1080 as JPEG / cjpeg -quality 70, sync -f" 1.1 ours_save theirs_save no_picture
read -r ours theirs < <("$pictures" resample)
row "Resample 1600 x 1200 to 3200 x 2400 / Qt's smooth scaling" "$(seconds "$ours")" "$(seconds "$theirs")" "$(awk "BEGIN { print $ours / $theirs }")" 1.0
rm -f "$work/picture.ppm" "$work"/*.jpg

# Memory.
"$sample" large-zip "$work/huge.zip" 40 2000000000
read -r _ rise < <("$op" "$work/run" unpack "$work/huge.zip" "$work/to")
row "peak of memory while unpacking 2 GB, above idle / 64 MB" "$(printf '%.1f MB' "$rise")" "64 MB" "$(awk "BEGIN { print $rise / 64 }")" 1
rm -rf "$work/huge.zip" "$work/to"

# Mail, to and from servers on this machine. curl moves the mail as it is; we make it of the Package
# and take it apart.
mail_rows() {
  local rounds=2 pop smtp ca=$work/servers/ca.pem i
  mkfifo "$work/hold"
  mkdir "$work/servers" "$work/to"
  chmod 755 "$work"  # for Dovecot, which serves under another name
  /usr/bin/python3 -W ignore tests/platform/mail/mail_servers.py "$work/servers" \
    <"$work/hold" >"$work/ports" 2>/dev/null &
  servers=$!
  exec {hold}>"$work/hold"
  for _ in {1..300}; do [ -s "$work/ports" ] && break; sleep 0.1; done
  read -r pop _ smtp _ <"$work/ports"

  head -c 100000000 /dev/urandom >"$work/Large.zip"
  {
    printf '%s\r\n' 'From: ann@example.com' 'Subject: /FSSkyvaultPack/AC/Large.zip' \
      'MIME-Version: 1.0' 'Content-Type: multipart/mixed; boundary=B' '' '--B' '' 'Hello' '--B' \
      'Content-Type: application/zip; name=Large.zip' 'Content-Transfer-Encoding: base64' \
      'Content-Disposition: attachment; filename=Large.zip' ''
    base64 -w 76 "$work/Large.zip" | sed 's/$/\r/'
    printf '%s\r\n' '--B--'
  } >"$work/mail"
  local by_curl=(curl -sS --ssl-reqd --cacert "$ca" -u 'pilot:secret word')

  no_letters() { rm -f "$work/servers/out/"*; }
  ours_send() { TMPDIR=$work "$mail" send "localhost:$smtp" "$ca" "$work/Large.zip"; }
  theirs_send() {
    "$op" time "${by_curl[@]}" -T "$work/mail" --mail-from ann@example.com \
      --mail-rcpt bob@example.com "smtp://localhost:$smtp"
  }
  beside "send a Package of 100 MB / curl" 1.3 ours_send theirs_send no_letters
  peak "sending" "$(TMPDIR=$work "$mail" memory send "localhost:$smtp" "$ca" "$work/Large.zip")"
  no_letters

  letter() { install -m 666 "$1" "$work/servers/maildir/new/$2"; }
  letter "$work/mail" 1
  nothing_fetched() { rm -f "$work/to/"* "$work/got"; }
  ours_fetch() { TMPDIR=$work "$mail" fetch "localhost:$pop" "$ca" "$work/to"; }
  theirs_fetch() { flushed "$work" "${by_curl[@]}" -o "$work/got" "pop3://localhost:$pop/1"; }
  beside "fetch a Package of 100 MB / curl, sync -f" 1.3 ours_fetch theirs_fetch nothing_fetched
  peak "fetching" "$(TMPDIR=$work "$mail" memory fetch "localhost:$pop" "$ca" "$work/to")"
  nothing_fetched
  rm -f "$work/mail" "$work/Large.zip" "$work/servers/maildir/"{new,cur}/*

  printf '%s\r\n' 'From: ann@example.com' 'Subject: /FSSkyvaultPack/AC/Rome.zip' '' 'Hello' >"$work/ours"
  printf '%s\r\n' 'From: ann@example.com' 'Subject: Lunch?' '' 'Hello' >"$work/other"
  for ((i = 0; i < 4990; i++)); do letter "$work/other" "other$i"; done
  our_mails() { for ((i = 0; i < 10; i++)); do letter "$work/ours" "ours$RANDOM$RANDOM"; done; }
  ours_mailbox() { TMPDIR=$work "$mail" run "localhost:$pop" "$ca"; }
  theirs_mailbox() { /usr/bin/python3 bench/mailbox_by_hand.py "$pop" "$ca"; }
  beside "mailbox of 5,000, 10 of ours / the commands by hand" 1.5 ours_mailbox theirs_mailbox our_mails
  stop_servers
}

# An mbox of 20,000 mails, each with a file of 100 KB in it; one in a hundred is ours.
mbox_row() {
  /usr/bin/python3 - "$work/mbox" <<'END'
import base64, os, sys
file = base64.encodebytes(os.urandom(75000)).decode()
with open(sys.argv[1], "w") as mbox:
    for i in range(20000):
        subject = "/FSSkyvaultPack/AC/Rome.zip" if i % 100 == 0 else "Lunch?"
        mbox.write(f"From - Mon Nov 02 2026\nFrom: ann@example.com\nSubject: {subject}\n\n{file}\n")
END
  ours_mbox() { TMPDIR=$work "$mail" outlook - - "$work/mbox"; }
  # Into a pipe: grep stops at the first line when nobody reads what it counts.
  theirs_mbox() { "$op" time sh -c "grep -c '^From ' '$work/mbox' | cat"; }
  beside "mails of an mbox, 20,000 in 2 GB / grep -c '^From '" 2 ours_mbox theirs_mbox
  rm -f "$work/mbox"
}
# peak WHAT BYTES
peak() { row "peak of memory while $1 it, above idle / 64 MB" "$(awk "BEGIN { printf \"%.1f MB\", $2 / 1e6 }")" "64 MB" "$(awk "BEGIN { print $2 / 64e6 }")" 1; }
mbox_row
if [ -x /usr/sbin/dovecot ] && /usr/bin/python3 -c 'import aiosmtpd' 2>/dev/null; then
  mail_rows
else
  echo "The rows of mail are left out: they want Dovecot and aiosmtpd." >&2
fi

exit $missed
