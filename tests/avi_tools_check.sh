#!/bin/bash
# Runs a Windows test program under Wine, then checks the AVIs it kept with
# tools nobody here wrote, strict about indexes. Every AVI is kept as
# NAME-FRAMES.avi: ffprobe must count FRAMES frames and the first frame must
# decode; where NAME-FRAMES.raw is kept beside it (the frames as a decoder
# returns them: rows top-down, packed, 8-bit pixels as bgr24), ffmpeg's
# decoded frames must equal it byte for byte.
#
#   avi_tools_check.sh COUNT PROGRAM          a GoogleTest program that keeps
#       its AVIs where VELMORA_KEEP_AVIS says; COUNT AVIs must be kept
#   avi_tools_check.sh COUNT PROGRAM --avi5   AVI5.DLL's sample writer, with
#       the checks only its samples need: the merged tone's frequency and
#       length (sox), another writer's AVI through the merge, and an AVI past
#       4 GiB whose last frame must decode (about 30 s, 5.4 GB in /tmp,
#       skipped when less than 8 GiB are free or VELMORA_BIG_AVI=0);
#       VELMORA_BIG_MERGE=1 also merges the tone into it (another ~5.4 GB
#       and about a minute), reading and writing RIFF AVIX pieces.
set -u
want_count=$1 program=$2 mode=${3:-}
root=${VELMORA_SOURCE_DIR:-$(cd "$(dirname "$0")/.." && pwd)}
work=$(mktemp -d /tmp/velmora-avi-check.XXXXXX)
trap 'rm -rf "$work"' EXIT
fail=0
bad() { echo "FAIL: $*"; fail=1; }
winpath() { echo "Z:${1//\//\\}"; }
wine_run() { "$root/tools/wine-run.sh" "$program" "$@"; }

# Decodes the last frame of a big AVI and compares it with the kept one.
last_frame_check() {  # what avi last-index
  ffmpeg -v error -err_detect explode -i "$2" -map 0:v -vf "select=eq(n\\,$3)" -frames:v 1 \
    -f rawvideo -y "$work/big_last.decoded" || bad "$1: last frame not decoded"
  cmp -s "$work/big_last.decoded" "$work/big_last.raw" || bad "$1: last frame differs"
}

if [ "$mode" = --avi5 ]; then
  sox -n -r 22050 -c 1 -b 16 "$work/tone.wav" synth 2.5 sine 440 vol 0.5 || { echo "sox failed"; exit 1; }
  wine_run "$(winpath "$work")" "$(winpath "$work/tone.wav")" || bad "the sample writer failed"
else
  VELMORA_KEEP_AVIS=$(winpath "$work") wine_run --gtest_brief=1 || bad "the tests under Wine failed"
fi

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
[ "$count" = "$want_count" ] || bad "expected $want_count AVIs to check, found $count"
[ "$mode" = --avi5 ] || { [ $fail = 0 ] && echo "all kept AVIs pass ffprobe"; exit $fail; }

probe() {  # file stream-selector entries
  ffprobe -v error -err_detect explode -select_streams "$2" -show_entries "stream=$3" \
    -of default=nw=1:nk=1 "$1" | tr '\n' ' '
}
for bits in 8 16 24 32; do
  got=$(probe "$work/d$bits-12.avi" v:0 codec_name,codec_tag_string,r_frame_rate:stream_tags=title)
  [ "$got" = "rawvideo [0][0][0][0] 12/1 AVIFile " ] || bad "d$bits: ffprobe says '$got'"
done

# The test compressor stores frames unchanged. Whatever the sequence calls
# report, the first frame must be a key frame (the flags of later frames
# are checked natively with a compressor that reports them).
handler=$(dd if="$work/c24-12.avi" bs=1 skip=$((0x70)) count=4 2>/dev/null)
[ "$handler" = "VTST" ] || bad "c24: strh handler '$handler'"
keys=$(ffprobe -v error -select_streams v:0 -show_entries packet=flags -of csv=p=0 "$work/c24-12.avi" | head -1)
[ "$keys" = "K_" ] || bad "c24: first frame flags '$keys'"

# Wine's MS-RLE encoder ends each frame with an end-of-line code after the
# last line, which ffmpeg's decoder remarks on ("Next line is beyond picture
# bounds"); the pixels still decode exactly.
got=$(probe "$work/rle8-12.avi" v:0 codec_name)
[ "$got" = "msrle " ] || bad "rle8: ffprobe says '$got'"

# Merged sound: the tone comes out at its frequency and full length.
m="$work/m24-12.avi"
got=$(probe "$m" a:0 codec_name,sample_rate,channels)
[ "$got" = "pcm_s16le 22050 1 " ] || bad "m24: sound stream '$got'"
ffmpeg -v error -err_detect explode -i "$m" -map 0:a -y "$work/out.wav" || bad "m24: no sound extracted"
stat=$(sox "$work/out.wav" -n stat 2>&1)
freq=$(awk -F: '/Rough   frequency/ {gsub(/ /,"",$2); print $2}' <<<"$stat")
len=$(awk -F: '/Length \(seconds\)/ {gsub(/ /,"",$2); print $2}' <<<"$stat")
awk -v f="$freq" 'BEGIN { exit !(f > 430 && f < 450) }' || bad "m24: tone at '$freq' Hz"
[ "$len" = "2.500000" ] || bad "m24: sound lasts '$len' s"

# An AVI from another writer (ffmpeg, MPEG-4 with key frames every 5):
# the merge keeps its frames and their key-frame flags.
o="$work/other.avi"
ffmpeg -v error -y -f lavfi -i testsrc=size=64x48:rate=10 -t 2 -c:v mpeg4 -g 5 "$o" || bad "ffmpeg could not make an MPEG-4 AVI"
ffmpeg -v error -i "$o" -map 0:v -f framemd5 - | grep -v '^#' > "$work/before.md5"
calls=$(wine_run merge "$(winpath "$o")" "$(winpath "$work/tone.wav")" | tr -d '\r')
[ "$calls" = 20 ] || bad "other: $calls progress reports for 20 frames"
ffmpeg -v error -err_detect explode -i "$o" -map 0:v -f framemd5 - | grep -v '^#' > "$work/after.md5"
cmp -s "$work/before.md5" "$work/after.md5" || bad "other: frames changed by the merge"
keys=$(ffprobe -v error -select_streams v -show_entries packet=flags -of csv=p=0 "$o" | head -6 | tr -d '\n')
[ "$keys" = "K_________K_" ] || bad "other: key flags '$keys'"

avail=$(df --output=avail -B1 /tmp | tail -1)
if [ "${VELMORA_BIG_AVI:-1}" = 0 ]; then
  :
elif [ "$avail" -lt $((8 << 30)) ]; then
  echo "SKIP big AVI: less than 8 GiB free in /tmp"
else
  big="$work/big.avi"
  start=$(date +%s.%N)
  frames=$(wine_run big "$(winpath "$work")" | tr -d '\r')
  echo "big AVI: $frames frames, $(stat -c %s "$big") bytes, written in $(echo "$(date +%s.%N) - $start" | bc) s"
  [ "$(stat -c %s "$big")" -gt $((4 << 30)) ] || bad "big: only $(stat -c %s "$big") bytes"
  got=$(ffprobe -v error -err_detect explode -select_streams v:0 -show_entries stream=nb_frames \
    -of default=nw=1:nk=1 "$big")
  [ "$got" = "$frames" ] || bad "big: ffprobe counts '$got' frames"
  last_frame_check big "$big" $((frames - 1))
  if [ "${VELMORA_BIG_MERGE:-0}" = 1 ] && [ "$avail" -gt $((14 << 30)) ]; then
    start=$(date +%s.%N)
    calls=$(wine_run merge "$(winpath "$big")" "$(winpath "$work/tone.wav")" | tr -d '\r')
    echo "big AVI sound merge: $calls progress reports in $(echo "$(date +%s.%N) - $start" | bc) s"
    [ "$calls" = 100 ] || bad "big merge: $calls progress reports for $frames frames (one per hundredth)"
    got=$(ffprobe -v error -err_detect explode -show_entries stream=codec_type,nb_frames \
      -of csv=p=0 "$big" | tr '\n' ' ')
    [ "$got" = "video,$frames audio,55125 " ] || bad "big merge: streams '$got'"
    last_frame_check "big merge" "$big" $((frames - 1))
  fi
fi

[ $fail = 0 ] && echo "all AVI5 tool checks passed"
exit $fail
