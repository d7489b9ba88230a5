#!/usr/bin/env bash
# Takes the pictures of share/screenshots anew, which the manual, the README and software centres
# show. They come from a tour through the program; each is its stage of this name.
#   tools/take-pictures.sh [PICTURES OF A TOUR]       else the tour of build/release is taken
set -euo pipefail
cd "$(dirname "$0")/.."

# picture=stage. A picture that the text shows and that is missing here stops the manual's build.
pictures=(
  first-start=first-start
  aircraft=aircraft
  edit=edit
  panel=panel
  name=name
  hangar=installed
  compressed=compressed
  picture-menu=picture-menu
  scenery=scenery-moved
  scenery-options=scenery-options
  mail-accounts=mail-accounts
  mail-package=mail-package
)

command -v pngquant >/dev/null || { echo "pngquant is needed for small pictures" >&2; exit 1; }
tour=${1:-}
if [ -z "$tour" ]; then
  tour=$(mktemp -d)
  trap 'rm -rf "$tour"' EXIT
  QT_QPA_PLATFORM=offscreen build/release/tools/skyvault-tour "$tour" >/dev/null
fi
for pair in "${pictures[@]}"; do
  stages=("$tour"/[0-9]*[0-9]-"${pair#*=}".png)
  [ -e "${stages[0]}" ] || { echo "The tour has no picture ${pair#*=}" >&2; exit 1; }
  pngquant --quality 60-95 --speed 1 --strip --force --output "share/screenshots/${pair%%=*}.png" \
    64 -- "${stages[0]}"
done
