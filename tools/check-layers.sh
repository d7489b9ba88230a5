#!/usr/bin/env bash
# Fails when a source includes a room that it may not know. Each line of the table: a room, then the
# rooms whose headers it may include besides its own. A room is the folder of a file below src/.
#   tools/check-layers.sh [SRC]
set -euo pipefail
cd "${1:-$(dirname "$0")/../src}"

table='
base
platform          base
ui/model          base
core              base platform ui/model
ui/dialogs        base platform ui/model core
pictures          base platform ui/model core
aircraft          base platform ui/model core ui/dialogs pictures
scenery           base platform ui/model core ui/dialogs pictures
packaging         base platform ui/model core ui/dialogs aircraft scenery
mail              base platform ui/model core ui/dialogs packaging scenery
ui                base platform ui/model core ui/dialogs aircraft scenery packaging pictures mail
ui/qt             base platform ui/model
platform/disk     base platform
platform/zip      base platform platform/disk
platform/desktop  base platform platform/disk platform/mail
platform/x11      base platform
platform/mail     base platform platform/disk platform/desktop
platform/wmf
'
# main.cpp and nobody else chooses implementations, so it may include every room.

find . -mindepth 2 \( -name '*.cpp' -o -name '*.h' \) -printf '%P\n' | sort |
  xargs awk -v table="$table" '
    BEGIN {
      lines = split(table, line, "\n")
      for (i = 1; i <= lines; ++i) {
        words = split(line[i], word, " ")
        if (words == 0) continue
        known[word[1]] = 1
        for (w = 1; w <= words; ++w) allowed[word[1], word[w]] = 1
      }
    }
    FNR == 1 {
      room = FILENAME
      sub("/[^/]*$", "", room)
      if (!(room in known)) { print FILENAME ": the room \"" room "\" is not in the table"; bad = 1 }
    }
    /^[ \t]*#[ \t]*include[ \t]*"/ {
      split($0, part, "\"")
      other = part[2]
      if (!sub("/[^/]*$", "", other)) other = room
      if (!((room, other) in allowed)) {
        print FILENAME ":" FNR ": " room " may not include " part[2]
        bad = 1
      }
    }
    END { exit bad }'
