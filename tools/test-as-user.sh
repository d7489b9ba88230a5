#!/usr/bin/env bash
# Runs the tests that ./test.sh has built and run as root once more as an ordinary user, for whom
# permissions count. Arguments go to ctest.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "$(id -u)" -ne 0 ]; then
  echo "test-as-user.sh: nothing to do, ./test.sh has run as an ordinary user here"
  exit 0
fi
as_user=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
if ! "${as_user[@]}" test -r CMakeLists.txt 2>/dev/null; then
  echo "test-as-user.sh: the tests did not run as an ordinary user: this folder is root's alone"
  exit 0
fi

home=$(mktemp -d)
# As if that user had built: tests write below the build, and look at who owns what.
chown -R nobody:nogroup build/debug "$home"
trap 'rm -rf "$home"; chown -R root:root build/debug' EXIT
export HOME=$home TMPDIR=$home XDG_RUNTIME_DIR=$home QT_QPA_PLATFORM=offscreen
export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0"
chmod 700 "$home"
"${as_user[@]}" ctest --preset debug -j "$(nproc)" --progress "$@" ||
  { echo "test-as-user.sh: FAILED" >&2; exit 1; }
