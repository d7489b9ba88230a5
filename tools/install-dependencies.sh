#!/usr/bin/env bash
# Installs what building, testing and measuring need from Debian's packages. Says nothing and needs
# no rights when everything is there already.
set -euo pipefail

packages=(
  g++ cmake ninja-build ccache pkgconf          # build
  qt6-base-dev qt6-svg-dev                      # the window
  qt6-l10n-tools qt6-translations-l10n          # in German, Qt's own words too
  libzip-dev libdeflate-dev zlib1g-dev          # archives
  libunarr-dev                                  # archives by rarer methods
  libcurl4-openssl-dev ca-certificates          # mail servers, the version check
  qtkeychain-qt6-dev                            # passwords in the desktop's keeping
  libjpeg62-turbo-dev qt6-image-formats-plugins # pictures
  libgmime-3.0-dev libglib2.0-dev libxml2-dev   # mails, and those that are written in HTML
  libicu-dev                                    # letters, code pages
  libxcb1-dev libxcb-composite0-dev             # windows of other programs
  libwmf-dev libseccomp-dev                     # metafiles, drawn in a process that may do little
  libgtest-dev libbenchmark-dev                 # tests, measuring
  dovecot-pop3d python3-aiosmtpd openssl        # the mail servers of the tests
  xvfb xdotool fonts-dejavu-core                # the window without a screen
  openbox                                       # tests: windows as other programs have them
  librsvg2-bin dpkg-dev                         # icons, the Debian package
  desktop-file-utils appstream                  # what a desktop is told, validated
  zip unzip libjpeg-turbo-progs                 # the programs that we measure ourselves beside
)

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) || status=
  [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null; then
    echo "These packages are missing and only root can install them. Run as root:" >&2
    echo "  apt-get install --no-install-recommends ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get install -y -qq --no-install-recommends "${missing[@]}"
