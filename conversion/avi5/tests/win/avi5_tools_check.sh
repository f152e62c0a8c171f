#!/bin/bash
# Writes sample AVIs through AVI5.DLL under Wine, then checks them natively
# with ffprobe (strict about indexes), ffmpeg (decoded pixels against the
# frames written) and sox (the merged tone's frequency and length).
# It also writes an AVI past 4 GiB whose last frame must decode (about 30 s,
# 5.4 GB in /tmp, skipped when less than 8 GiB are free or VELMORA_BIG_AVI=0);
# VELMORA_BIG_MERGE=1 also merges the tone into it (another ~5.4 GB and
# about a minute), reading and writing RIFF AVIX pieces through the DLL.
set -u
samples=$1
root=${VELMORA_SOURCE_DIR:-$(cd "$(dirname "$0")/../../../.." && pwd)}
work=$(mktemp -d /tmp/velmora-avi5-check.XXXXXX)
trap 'rm -rf "$work"' EXIT
fail=0
bad() { echo "FAIL: $*"; fail=1; }

winpath() { echo "Z:${1//\//\\}"; }

# ffprobe field of the first stream of a kind
probe() {  # file stream-selector entries
  ffprobe -v error -err_detect explode -select_streams "$2" -count_frames \
    -show_entries "stream=$3" -of default=nw=1:nk=1 "$1"
}

# Compares decoded frames with the expected bytes; names the first differing
# frame and offset.
compare() {  # name avi expected frame-bytes [pix_fmt]
  local out="$work/$1.decoded"
  local fmt=()
  [ -n "${5:-}" ] && fmt=(-pix_fmt "$5")
  if ! ffmpeg -v error -err_detect explode -i "$2" -map 0:v -f rawvideo "${fmt[@]}" -y "$out" 2>"$work/ff.err"; then
    bad "$1: ffmpeg could not decode: $(head -3 "$work/ff.err")"; return
  fi
  local diff
  diff=$(cmp "$out" "$3" 2>&1 | head -1)
  if [ -n "$diff" ]; then
    local byte
    byte=$(sed -nE 's/.* byte ([0-9]+).*/\1/p' <<<"$diff")
    if [ -n "$byte" ]; then
      bad "$1: frame $(((byte - 1) / $4)) differs at offset $(((byte - 1) % $4))"
    else
      bad "$1: $diff (decoded $(stat -c %s "$out") bytes, expected $(stat -c %s "$3"))"
    fi
  fi
}

sox -n -r 22050 -c 1 -b 16 "$work/tone.wav" synth 2.5 sine 440 vol 0.5 || { echo "sox failed"; exit 1; }
"$root/tools/wine-run.sh" "$samples" "$(winpath "$work")" "$(winpath "$work/tone.wav")" || bad "sample writer exited with $?"

w=37 h=21
for bits in 8 16 24 32; do
  f="$work/d$bits.avi"
  got=$(probe "$f" v:0 codec_name,codec_tag_string,nb_read_frames,r_frame_rate,width,height:stream_tags=title | tr '\n' ' ')
  [ "$got" = "rawvideo [0][0][0][0] $w $h 12/1 12 AVIFile " ] || bad "d$bits: ffprobe says '$got'"
  px=$((bits == 8 ? 3 : bits / 8))
  compare "d$bits" "$f" "$work/d$bits.raw" $((w * h * px)) "$([ "$bits" = 8 ] && echo bgr24)"
done

# The test compressor stores frames unchanged. Whatever the sequence calls
# report, the first frame must be a key frame (the flags of later frames
# are checked natively with a compressor that reports them).
got=$(probe "$work/c24.avi" v:0 codec_tag_string,nb_read_frames | tr '\n' ' ')
[ "$got" = "[0][0][0][0] 12 " ] || bad "c24: ffprobe says '$got'"
handler=$(dd if="$work/c24.avi" bs=1 skip=$((0x70)) count=4 2>/dev/null)
[ "$handler" = "VTST" ] || bad "c24: strh handler '$handler'"
keys=$(ffprobe -v error -select_streams v:0 -show_entries packet=flags -of csv=p=0 "$work/c24.avi" | head -1)
[ "$keys" = "K_" ] || bad "c24: first frame flags '$keys'"
compare c24 "$work/c24.avi" "$work/c24.raw" $((w * h * 3))

# Wine's MS-RLE encoder ends each frame with an end-of-line code after the
# last line, which ffmpeg's decoder remarks on ("Next line is beyond picture
# bounds"); the pixels still decode exactly.
got=$(probe "$work/rle8.avi" v:0 codec_name,nb_read_frames | tr '\n' ' ')
[ "$got" = "msrle 12 " ] || bad "rle8: ffprobe says '$got'"
compare rle8 "$work/rle8.avi" "$work/rle8.raw" $((w * h * 3)) bgr24

# Merged sound: the tone comes out at its frequency and full length.
m="$work/m24.avi"
got=$(probe "$m" a:0 codec_name,sample_rate,channels | tr '\n' ' ')
[ "$got" = "pcm_s16le 22050 1 " ] || bad "m24: sound stream '$got'"
compare m24 "$m" "$work/d24.raw" $((w * h * 3))
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
calls=$("$root/tools/wine-run.sh" "$samples" merge "$(winpath "$o")" "$(winpath "$work/tone.wav")" | tr -d '\r')
[ "$calls" = 20 ] || bad "other: $calls progress reports for 20 frames"
ffmpeg -v error -err_detect explode -i "$o" -map 0:v -f framemd5 - | grep -v '^#' > "$work/after.md5"
cmp -s "$work/before.md5" "$work/after.md5" || bad "other: frames changed by the merge"
keys=$(ffprobe -v error -select_streams v -show_entries packet=flags -of csv=p=0 "$o" | head -6 | tr -d '\n')
[ "$keys" = "K_________K_" ] || bad "other: key flags '$keys'"

if [ "${VELMORA_BIG_AVI:-1}" != 0 ]; then
  avail=$(df --output=avail -B1 /tmp | tail -1)
  if [ "$avail" -lt $((8 << 30)) ]; then
    echo "SKIP big AVI: less than 8 GiB free in /tmp"
  else
    start=$(date +%s.%N)
    frames=$("$root/tools/wine-run.sh" "$samples" big "$(winpath "$work")" | tr -d '\r')
    end=$(date +%s.%N)
    size=$(stat -c %s "$work/big.avi")
    echo "big AVI: $frames frames, $size bytes, written in $(echo "$end - $start" | bc) s"
    [ "$size" -gt $((4 << 30)) ] || bad "big: only $size bytes"
    got=$(ffprobe -v error -err_detect explode -select_streams v:0 -show_entries stream=nb_frames \
      -of default=nw=1:nk=1 "$work/big.avi")
    [ "$got" = "$frames" ] || bad "big: ffprobe counts '$got' frames"
    last=$((frames - 1))
    ffmpeg -v error -err_detect explode -i "$work/big.avi" -vf "select=eq(n\\,$last)" -frames:v 1 \
      -f rawvideo -y "$work/big_last.decoded" || bad "big: last frame not decoded"
    cmp -s "$work/big_last.decoded" "$work/big_last.raw" || bad "big: last frame differs"
    if [ "${VELMORA_BIG_MERGE:-0}" = 1 ] && [ "$avail" -gt $((14 << 30)) ]; then
      start=$(date +%s.%N)
      calls=$("$root/tools/wine-run.sh" "$samples" merge "$(winpath "$work/big.avi")" "$(winpath "$work/tone.wav")" | tr -d '\r')
      end=$(date +%s.%N)
      echo "big AVI sound merge: $calls progress reports in $(echo "$end - $start" | bc) s"
      [ "$calls" = 100 ] || bad "big merge: $calls progress reports for $frames frames (one per hundredth)"
      got=$(ffprobe -v error -err_detect explode -show_entries stream=codec_type,nb_frames \
        -of csv=p=0 "$work/big.avi" | tr '\n' ' ')
      [ "$got" = "video,$frames audio,55125 " ] || bad "big merge: streams '$got'"
      ffmpeg -v error -err_detect explode -i "$work/big.avi" -map 0:v -vf "select=eq(n\\,$last)" -frames:v 1 \
        -f rawvideo -y "$work/big_last.decoded" || bad "big merge: last frame not decoded"
      cmp -s "$work/big_last.decoded" "$work/big_last.raw" || bad "big merge: last frame differs"
    fi
    rm -f "$work/big.avi"
  fi
fi

[ $fail = 0 ] && echo "all AVI5 tool checks passed"
exit $fail
