#!/usr/bin/env bash
# Builds everything with sanitizers and runs all tests, offscreen. Arguments go to ctest:
#   ./test.sh -R WalkTree
set -euo pipefail
cd "$(dirname "$0")"

tools/install-dependencies.sh
tools/check-format.sh

jobs=$(nproc)
cmake --preset debug >/dev/null
cmake --build --preset debug -- -j "$jobs" --quiet

export QT_QPA_PLATFORM=offscreen
export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0"
if ctest --preset debug -j "$jobs" --progress "$@"; then
  echo "test.sh: all tests passed"
else
  echo "test.sh: FAILED" >&2
  exit 1
fi
