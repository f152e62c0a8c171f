#!/bin/bash
# Runs the /record save-mode and /convert tests under Wine with their AVIs
# kept, then checks each AVI natively with ffprobe, strict about the index:
# the frame count in its name (MODE-FRAMES.avi) must be what ffprobe counts,
# and the first frame must decode. Where the test also kept the frames it
# expects (MODE-FRAMES.raw), ffmpeg's decoded frames must equal them.
set -u
tests=$1
root=${VELMORA_SOURCE_DIR:-$(cd "$(dirname "$0")/../.." && pwd)}
work=$(mktemp -d /tmp/velmora-save-check.XXXXXX)
trap 'rm -rf "$work"' EXIT
fail=0
bad() { echo "FAIL: $*"; fail=1; }

VELMORA_KEEP_AVIS="Z:${work//\//\\}" "$root/tools/wine-run.sh" "$tests" --gtest_brief=1 || bad "the tests under Wine failed"

count=0
for f in "$work"/*.avi; do
  [ -e "$f" ] || continue
  count=$((count + 1))
  name=$(basename "$f" .avi)
  want=${name##*-}
  got=$(ffprobe -v error -err_detect explode -select_streams v:0 -count_frames \
    -show_entries stream=nb_read_frames -of default=nw=1:nk=1 "$f" 2>"$work/probe.err")
  [ "$got" = "$want" ] || bad "$name: ffprobe counts '$got' frames ($(head -2 "$work/probe.err"))"
  ffmpeg -v error -err_detect explode -i "$f" -frames:v 1 -f null - 2>"$work/ff.err" ||
    bad "$name: first frame does not decode: $(head -2 "$work/ff.err")"
  raw="$work/$name.raw"
  [ -e "$raw" ] || continue
  fmt=()
  [ "$(ffprobe -v error -select_streams v:0 -show_entries stream=pix_fmt -of csv=p=0 "$f")" = pal8 ] &&
    fmt=(-pix_fmt bgr24)
  ffmpeg -v error -err_detect explode -i "$f" -map 0:v -f rawvideo "${fmt[@]}" -y "$work/decoded" 2>"$work/ff.err" ||
    { bad "$name: ffmpeg could not decode: $(head -2 "$work/ff.err")"; continue; }
  byte=$(cmp "$work/decoded" "$raw" 2>&1 | sed -nE 's/.*differ: (byte|char) ([0-9]+).*/\2/p')
  frame=$(($(stat -c %s "$raw") / want))
  [ -z "$byte" ] || bad "$name: frame $(((byte - 1) / frame)) differs at offset $(((byte - 1) % frame))"
  [ "$(stat -c %s "$work/decoded")" = "$(stat -c %s "$raw")" ] ||
    bad "$name: decoded $(stat -c %s "$work/decoded") bytes, expected $(stat -c %s "$raw")"
done
[ "$count" = 8 ] || bad "expected 8 AVIs to check, found $count"
[ $fail = 0 ] && echo "all save-mode AVIs pass ffprobe"
exit $fail
