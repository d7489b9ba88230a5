#!/usr/bin/env bash
# Does what a newcomer does, on a Debian 12 that holds nothing but its base system: a chroot in which
# ./run.sh, ./test.sh and tools/make-deb.sh have to find, or to install, all that they need. The
# package is installed, started and removed in a second chroot, which has not seen a compiler.
#   tools/bare-machine.sh [WORK]      WORK: an empty or a former folder for it, build/bare by default
# The packages come from where this machine has its own. The checkout lies at its own path in the
# chroot, and the compiler's cache is this machine's, so that nothing is compiled a second time.
# Where no chroot is to be had (no root, no mounts, no debootstrap), it says so and ends well.
set -euo pipefail
cd "$(dirname "$0")/.."

checkout=$PWD
work=$(realpath -m "${1:-build/bare}")

without() {
  echo "bare-machine.sh: no bare Debian was tried here: $*"
  exit 0
}

if [ -z "${bare_namespace:-}" ]; then
  [ "$(id -u)" -eq 0 ] || without "a chroot wants root"
  unshare --mount --pid --fork true 2>/dev/null || without "this machine mounts nothing"
  if ! command -v debootstrap >/dev/null; then
    { apt-get update -qq && apt-get install -y -qq --no-install-recommends debootstrap; } \
      >/dev/null 2>&1 || without "debootstrap is not to be had"
  fi
  # All mounts and processes end with this script, however it ends.
  bare_namespace=yes exec unshare --mount --pid --fork --kill-child --mount-proc "$0" "$@"
fi

# Where this machine has its packages: the first source of Debian itself.
source=$(apt-get indextargets --format '$(SITE) $(RELEASE) $(SIGNED_BY)' 'Created-By: Packages' |
  awk '$2 == "bookworm"' | head -1)
read -r mirror release keyring <<<"$source"
[ -n "$mirror" ] || without "this machine has no package source of Debian 12"
[ -f "${keyring:-}" ] || keyring=/usr/share/keyrings/debian-archive-keyring.gpg
[ -f "$keyring" ] || without "the keys of Debian's packages are not here"

step() { echo "== $* ($((SECONDS / 60)) min $((SECONDS % 60)) s)"; }

fail() {
  echo "bare-machine.sh: FAILED: $*" >&2
  exit 1
}

# Everything that a chroot prints goes into a file, whose end is shown when it fails.
inside() {
  local root=$1 log=$2
  shift 2
  chroot "$root" /usr/bin/env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 \
    DEBIAN_FRONTEND=noninteractive CCACHE_DIR=/ccache "$@" >"$log" 2>&1 </dev/null && return
  tail -40 "$log" >&2
  return 1
}

# A copy of the base system with this machine's sources and what programs expect to be mounted.
furnish() {
  local root=$1
  rm -rf --one-file-system "$root"
  mkdir -p "$root"
  tar -C "$root" -xf "$work/base.tar"
  rm -rf "$root"/etc/apt/sources.list "$root"/etc/apt/sources.list.d "$root"/etc/apt/apt.conf.d
  cp -a /etc/apt/sources.list.d /etc/apt/apt.conf.d "$root/etc/apt/"
  [ ! -f /etc/apt/sources.list ] || cp -a /etc/apt/sources.list "$root/etc/apt/"
  # Packages that are fetched once serve both chroots and the next run.
  rm -f "$root"/etc/apt/apt.conf.d/docker-clean
  echo 'Binary::apt-get::APT::Keep-Downloaded-Packages "true";' >"$root/etc/apt/apt.conf.d/99keep"
  # No hooks of this machine's own programs.
  grep -lE '^ *(DPkg|APT::Update)::' "$root"/etc/apt/apt.conf.d/* | xargs -r rm
  cp -L /etc/resolv.conf /etc/hosts "$root/etc/"
  # Nobody needs these files after a power cut.
  echo force-unsafe-io >"$root/etc/dpkg/dpkg.cfg.d/unsafe-io"
  # A chroot starts no services.
  printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
  chmod +x "$root/usr/sbin/policy-rc.d"
  mount -t proc proc "$root/proc"
  mount --rbind /dev "$root/dev"
  mount -t tmpfs -o mode=1777 tmpfs "$root/dev/shm"
  mkdir -p "$root/ccache" "$root/var/cache/apt/archives" "$work/archives/partial"
  mount --bind "$work/archives" "$root/var/cache/apt/archives"
}

mkdir -p "$work"
if [ ! -e "$work/base.tar" ]; then
  step "the base system"
  rm -rf "$work/base"
  debootstrap --variant=minbase --keyring="$keyring" "$release" "$work/base" "$mirror" \
    >"$work/debootstrap.log" 2>&1 || { tail "$work/debootstrap.log" >&2; fail "debootstrap"; }
  tar -C "$work/base" -cf "$work/base.tar.new" .
  mv "$work/base.tar.new" "$work/base.tar"
  rm -rf "$work/base"
fi

machine=$work/machine
furnish "$machine"
cache=$(ccache --get-config cache_dir 2>/dev/null || true)
if [ -d "$cache" ]; then mount --bind "$cache" "$machine/ccache"; fi
# What git knows of the checkout, as it stands here now; no build, and nothing that is ignored.
mkdir -p "$machine$checkout"
git ls-files -z | xargs -0 sh -c 'for f; do [ ! -e "$f" ] || printf "%s\0" "$f"; done' sh |
  tar -c --null -T - | tar -x -C "$machine$checkout"

step "./run.sh"
inside "$machine" "$work/run.log" sh -c "cd '$checkout' && ./run.sh" || fail "./run.sh"
pictures=$(find "$machine$checkout/build/tour" -name '*.png' | wc -l)
[ "$pictures" -gt 40 ] || fail "the tour left $pictures pictures"

step "./test.sh"
inside "$machine" "$work/test.log" sh -c "cd '$checkout' && ./test.sh" || fail "./test.sh"
tail -1 "$work/test.log"

step "tools/make-deb.sh"
inside "$machine" "$work/deb.log" sh -c "cd '$checkout' && tools/make-deb.sh" ||
  fail "tools/make-deb.sh"
package=$machine$(tail -1 "$work/deb.log" | sed "s#^#$checkout/#")
[ -f "$package" ] || fail "tools/make-deb.sh names no package"

step "the package on a machine of its own"
desktop=$work/desktop
furnish "$desktop"
cp "$package" "$desktop/root/fsskyvault.deb"
inside "$desktop" "$work/install.log" sh -c '
  apt-get update -qq && dpkg-query -W -f "\${Package}\n" | sort >/root/before &&
  apt-get install -y -qq --no-install-recommends /root/fsskyvault.deb &&
  ! ldd /usr/bin/fsskyvault /usr/lib/*/fsskyvault/skyvault-net.so \
        /usr/libexec/fsskyvault/skyvault-wmf | grep "not found"' || fail "the package's installation"
# It starts and goes on until it is told to end, which it does in order.
inside "$desktop" "$work/start.log" sh -c '
  export QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=/tmp HOME=/tmp/home
  mkdir -p /tmp/home
  timeout --signal=TERM 10 fsskyvault; [ $? -eq 124 ]' || fail "the installed program"
inside "$desktop" "$work/remove.log" sh -c '
  apt-get purge -y -qq fsskyvault &&
  left=$(find /usr /etc /var/lib -iname "*skyvault*" ! -path "*/apt/*") &&
  [ -z "$left" ] || { echo "left over: $left"; exit 1; }' || fail "the package's removal"

# The copies would only fill the disk; base system and fetched packages make the next run faster.
umount -R "$machine/proc" "$machine/dev" "$desktop/proc" "$desktop/dev" 2>/dev/null || true
umount "$machine/ccache" "$machine/var/cache/apt/archives" "$desktop/var/cache/apt/archives" \
  2>/dev/null || true
mountpoint -q "$machine/ccache" || mountpoint -q "$machine/var/cache/apt/archives" ||
  mountpoint -q "$machine/dev" || rm -rf --one-file-system "$machine" "$desktop"
step "a bare Debian builds, tests, packages, installs and removes the program"
