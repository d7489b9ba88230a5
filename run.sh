#!/usr/bin/env bash
# Builds FS Skyvault and starts it.
#   ./run.sh            on your simulator; on a made-up one when nothing is set up yet
#   ./run.sh --own      on your simulator in any case (the first start asks for its folder)
#   ./run.sh --sample   on the made-up simulator below build/sample/
# Without a screen it takes the tour instead and leaves its pictures in build/tour/.
set -euo pipefail
cd "$(dirname "$0")"

tools/install-dependencies.sh
[ -e build/release/src/fsskyvault ] || echo "Building FS Skyvault: some minutes the first time"
# On a terminal one line that counts the steps.
quiet=--quiet
[ ! -t 1 ] || quiet=
cmake --preset release >/dev/null
cmake --build --preset release --target fsskyvault skyvault-data skyvault-sample skyvault-tour -- $quiet

if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  echo "No screen here: taking the tour offscreen, pictures in build/tour/"
  exec env QT_QPA_PLATFORM=offscreen build/release/tools/skyvault-tour build/tour
fi

settings="${XDG_CONFIG_HOME:-${HOME:-}/.config}/FSSkyvault"
choice=${1:-}
if [ -z "$choice" ]; then
  choice=--own
  [ -n "${SKYVAULT_DRIVES:-}" ] || [ -e "$settings" ] || choice=--sample
fi
case "$choice" in
  --own) ;;
  --sample)
    sample="$PWD/build/sample"
    # Made once; what you change in it stays until you delete the folder.
    [ -e "$sample/config" ] || build/release/share/sample/skyvault-sample "$sample"
    export SKYVAULT_DRIVES="$sample/dosdevices"
    export XDG_CONFIG_HOME="$sample/config" XDG_CACHE_HOME="$sample/cache" XDG_DATA_HOME="$sample/data"
    unset TEMP
    echo "Starting on the made-up simulator in build/sample/ (./run.sh --own for yours)"
    ;;
  *)
    echo "usage: $0 [--own | --sample]" >&2
    exit 2
    ;;
esac
exec build/release/src/fsskyvault
