#!/bin/bash
# with_tone.sh <command...>: runs a command while a 1 kHz tone at half scale
# plays into the private PulseAudio sink "rec" (whose monitor is what
# wave-in records). paplay keeps a deep buffer, so the tone has no gaps even
# on a busy machine, unlike a player inside Wine.
tools=$(cd "$(dirname "$0")/../../../tools" && pwd)
. "$tools/wine-env.sh"
environment_in_use
"$tools/pulse-up.sh" || exit 1
tone=$(mktemp --suffix=.wav "$VELMORA_STATE/tone.XXXXXX")
sox -n -r 44100 -c 2 "$tone" synth 120 sine 1000 vol 0.5
paplay --device=rec "$tone" & player=$!
trap 'kill $player 2>/dev/null; rm -f "$tone"' EXIT
sleep 0.3
"$@"
