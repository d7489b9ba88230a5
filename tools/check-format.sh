#!/usr/bin/env bash
# Fails when a source is not laid out as .clang-format says. Passes with a word when clang-format is
# not installed: it is no part of the program.
#   tools/check-format.sh [FILE...]
set -euo pipefail
cd "$(dirname "$0")/.."

if ! command -v clang-format >/dev/null; then
  echo "clang-format is not installed; the layout of the sources is not checked"
  exit 0
fi
if [ $# -gt 0 ]; then
  clang-format --dry-run -Werror "$@"
else
  git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format --dry-run -Werror
fi
