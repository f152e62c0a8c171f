#!/bin/bash
# small-volume.sh up|down DIR: a 2 MiB tmpfs at DIR for the disk-full tests
# of the movie writers. Mounting needs root; without it the volume is not
# made and those tests skip with a message. The marker file tells the tests
# that DIR really is the small volume.
set -u
cmd=$1 dir=$2
case $cmd in
  up)
    mkdir -p "$dir"
    if mountpoint -q "$dir"; then umount "$dir"; fi
    if [ "$(id -u)" != 0 ]; then
      echo "small-volume: not root, no 2 MiB volume; disk-full tests will skip"
      exit 0
    fi
    mount -t tmpfs -o size=2m velmora-small "$dir" || { echo "small-volume: mount failed; disk-full tests will skip"; exit 0; }
    touch "$dir/small-volume"
    ;;
  down)
    if mountpoint -q "$dir"; then umount "$dir"; fi
    ;;
esac
exit 0
