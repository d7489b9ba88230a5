#!/usr/bin/env bash
# Makes the Debian package build/release/fsskyvault_VERSION_ARCHITECTURE.deb. Install and remove it with
#   sudo apt install ./build/release/fsskyvault_*.deb
#   sudo apt remove fsskyvault
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install-dependencies.sh
cmake --preset release --fresh >/dev/null
cmake --build --preset release --target fsskyvault skyvault-data -- --quiet
rm -f build/release/fsskyvault_*.deb
# Its progress is silent, its errors are not.
said=$(cpack --config build/release/CPackConfig.cmake 2>&1) || { echo "$said" >&2; exit 1; }
package=$(ls build/release/fsskyvault_*.deb)
# Debian's own check, where it is installed.
if command -v lintian >/dev/null; then
  lintian --fail-on error,warning "$package"
fi
echo "$package"
