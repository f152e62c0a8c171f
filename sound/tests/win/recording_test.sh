#!/bin/bash
# Records through WaveInExe.exe, driven by recorder_driver.exe acting as the
# application, while a known tone plays into the private PulseAudio sink
# "rec", and checks the wave files with sox:
#  1. two runs, each with its own rate, sample size and start: the wave file
#     has the label's format (mono: stereo labels parse to one channel), the
#     exact length, the 1 kHz tone, and the tone where it reached the sink,
#     within 50 ms: sound starts with the pictures, also when the start
#     request comes 1.2 s late;
#  2. with no sound server there is no wave-in device: the recorder answers
#     6, the application shows its failure message, no file is left.
# Usage: recording_test.sh <folder with WaveInExe.exe and recorder_driver.exe>
set -u
bin=$(cd "$1" && pwd)
tools=$(cd "$(dirname "$0")/../../../tools" && pwd)
. "$tools/wine-env.sh"
environment_in_use
"$tools/wine-up.sh" || exit 1
"$tools/pulse-up.sh" || exit 1
work=$(mktemp -d "$VELMORA_STATE/recording-test.XXXXXX")
player=
cleanup() { [ -n "$player" ] && kill "$player" 2>/dev/null; rm -rf "$work"; }
trap cleanup EXIT
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
winpath() { echo "Z:${1//\//\\}"; }
driver() { (cd "$bin" && wine recorder_driver.exe WaveInExe.exe "$@" | stdbuf -oL tr -d '\r'); }
field() { awk -v k="$1" -F: '$1 ~ "^"k {gsub(/ /, "", $2); print $2}'; }

# --- 1. format and start time ---------------------------------------------
# The tone file starts with 500 ms of silence and paplay is started so that
# the tone reaches the sink `offset` ms after the planned start. When it
# really does is taken from paplay itself: the moment the server reports the
# stream started, plus the 500 ms of silence. (Process start-up on a busy
# machine varies by tens of milliseconds; that must not count against the
# recorder.) A request that arrives 1.2 s after its planned start (a slow
# mixer switch) still records, with silence for the missed head.
sox -n -r 44100 -c 2 "$work/late.wav" synth 3 sine 1000 vol 0.5 pad 0.5 0
# A new record stream first hears what the sink played just before it
# connected; a case must not begin while the last tone can still be heard.
wait_quiet() {
  local peak
  for _ in $(seq 40); do
    peak=$(timeout 0.3 parec --device=rec.monitor --raw --format=s16le --channels=1 --rate=8000 |
      sox -t raw -r 8000 -e signed -b 16 -c 1 - -n stat 2>&1 | field 'Maximum +amplitude')
    awk -v p="${peak:-1}" 'BEGIN { exit !(p < 0.01) }' && return 0
  done
  fail "the sink did not fall quiet"
}
timing_case() {  # <label> <rate> <bits> <lead ms> <offset ms> <seconds>
  # Each case its own files: paplay reports "Stream started" again after an
  # underrun, and an earlier case's reader may still be listening.
  local label=$1 rate=$2 bits=$3 lead=$4 offset=$5 seconds=$6
  local wav="$work/timing$4.wav" out="$work/timing$4.out" started="$work/started$4"
  wait_quiet
  (driver "$label" "$seconds" "$(winpath "$wav")" "$lead" >"$out") & drv=$!
  for _ in $(seq 100); do grep -q planned_unix_ms "$out" 2>/dev/null && break; sleep 0.05; done
  planned=$(sed -n 's/^planned_unix_ms=//p' "$out")
  [ -n "$planned" ] || fail "lead $lead: no planned start from the driver: $(cat "$out")"
  if [ -n "$planned" ]; then
    sleep "$(echo "d = ($planned + $offset - 500 - $(date +%s%3N)) / 1000; if (d < 0) 0 else d" | bc -l)"
    (LC_ALL=C paplay -v --device=rec --latency-msec=10 "$work/late.wav" 2>&1 |
      while IFS= read -r line; do
        [[ $line == *"Stream started"* && ! -f $started ]] && date +%s%3N >"$started"
      done) & player=$!
  fi
  wait "$drv"
  grep -q '^outcome=complete' "$out" || fail "lead $lead: timing recording: $(cat "$out")"
  if [ -f "$wav" ] && [ -f "$started" ]; then
    expected=$(echo "$(cat "$started") + 500 - $planned" | bc -l)
    sox "$wav" "$work/trimmed.wav" silence 1 0.002 5%
    onset=$(echo "($(sox --i -D "$wav") - $(sox --i -D "$work/trimmed.wav")) * 1000" | bc -l)
    printf 'lead %s ms: tone reached the sink %.1f ms after the planned start, found at %.1f ms in the wave file\n' \
      "$lead" "$expected" "$onset"
    awk -v o="$onset" -v e="$expected" 'BEGIN { d = o - e; exit !(d > -50 && d < 50) }' ||
      fail "lead $lead: the tone is at $onset ms in the wave file, not $expected +- 50 ms"
    format="$(sox --i -r "$wav")/$(sox --i -b "$wav")/$(sox --i -c "$wav")/$(sox --i -s "$wav")"
    [ "$format" = "$rate/$bits/1/$((seconds * rate))" ] ||
      fail "lead $lead: rate/bits/channels/samples $format, want $rate/$bits/1/$((seconds * rate))"
    st=$(sox "$work/trimmed.wav" -n stat 2>&1)
    rms=$(field 'RMS +amplitude' <<<"$st"); freq=$(field 'Rough +frequency' <<<"$st")
    awk -v a="$rms" -v f="$freq" 'BEGIN { exit !(a > 0.3 && a < 0.4 && f > 950 && f < 1050) }' ||
      fail "lead $lead: the 1 kHz tone is not in the recording (rms $rms, frequency $freq)"
  else
    fail "lead $lead: no wave file or no stream start from paplay"
  fi
  kill "$player" 2>/dev/null; wait "$player" 2>/dev/null; player=
}
timing_case 1 11025 8 1500 250 2
timing_case 10 44100 16 -1200 2000 3

# --- 2. no device -----------------------------------------------------------
out=$(PULSE_SERVER=unix:$work/no-such-server driver 1 1 "$(winpath "$work/nodev.wav")" 2>/dev/null)
grep -q '^outcome=failed' <<<"$out" && grep -q '^message=録音部分にエラーが発生しました。' <<<"$out" ||
  fail "no device: $out"
[ ! -e "$work/nodev.wav" ] && [ ! -e "$work/nodev.wav.wavtemp" ] || fail "no device: files left behind"

[ "$failures" = 0 ] && echo "PASS recording" || echo "$failures failure(s)"
exit $((failures > 0))
