#!/bin/sh
# Runs a test program with its scratch folder on a disk of 2 MB that nobody else sees and that goes with it.
# Usage: SmallDisk.sh PROGRAM ARGUMENTS... Exit code 77: this system lets nobody mount such a disk.
rights=
[ "$(id -u)" = 0 ] || rights=--map-root-user
if ! unshare $rights --mount sh -c 'mount -t tmpfs tmpfs /mnt' 2>/dev/null; then
  echo "skipped: a disk can't be mounted here, neither as root nor in a user namespace"
  exit 77
fi
exec unshare $rights --mount sh -c '
  disk=$(mktemp -d) && mount -t tmpfs -o size=2m tmpfs "$disk" && TMPDIR=$disk "$@"
  result=$?
  umount "$disk"
  rmdir "$disk"
  exit $result' sh "$@"
