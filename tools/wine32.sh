#!/usr/bin/env bash
# Runs a 32-bit Windows program under Wine on a 64-bit machine without changing what is installed
# there: in a 32-bit Debian of its own below build/. Usage: wine32.sh PROGRAM [ARGUMENT...]
# Needs root and debootstrap; the first run downloads about 200 MB.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
debian=$root/build/debian32

if [ ! -x "$debian/usr/bin/wine" ]; then
  rm -rf "$debian"
  debootstrap --arch=i386 --variant=minbase bookworm "$debian" http://deb.debian.org/debian >&2
  cp /etc/resolv.conf "$debian/etc/"
  cp -r /etc/apt/apt.conf.d/. "$debian/etc/apt/apt.conf.d/"
  chroot "$debian" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive chroot "$debian" \
    apt-get install -y -qq --no-install-recommends wine wine32 fonts-liberation >/dev/null
fi

# The mounts are this process's own and vanish with it.
export DEBIAN32=$debian REPOSITORY=$root FOLDER=$PWD
exec unshare --mount bash -c '
  mount -t proc proc "$DEBIAN32/proc"
  mount --rbind /dev "$DEBIAN32/dev"
  mkdir -p "$DEBIAN32$REPOSITORY"
  mount --bind "$REPOSITORY" "$DEBIAN32$REPOSITORY"
  exec chroot "$DEBIAN32" env HOME=/root sh -c '\''cd "$FOLDER" && exec wine "$@"'\'' sh "$@"' sh "$@"
