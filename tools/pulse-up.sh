#!/bin/bash
# Brings up, idempotently, a private PulseAudio for the sound tests: a daemon
# on $VELMORA_STATE/pulse.sock with a null sink "rec" whose monitor is the
# default source (so whatever is played into "rec" is what wave-in records),
# and a silent low-latency keep-alive stream into "rec": without it the null
# sink renders in ~2 s blocks and wave-in buffers arrive in bursts.
# (Run as root, pulseaudio prints a warning and works.)
. "$(dirname "$0")/wine-env.sh"
set -e

exec 8>"$VELMORA_STATE/pulse-up.lock"
flock 8

export PULSE_RUNTIME_PATH=$VELMORA_STATE/pulse-runtime PULSE_STATE_PATH=$VELMORA_STATE/pulse-state
mkdir -p "$PULSE_RUNTIME_PATH" "$PULSE_STATE_PATH"
alive() { [ -f "$1" ] && kill -0 "$(cat "$1")" 2>/dev/null; }
pulse_ok() { pactl info >/dev/null 2>&1 && pactl list short sinks 2>/dev/null | grep -q $'\trec\t'; }

if ! pulse_ok; then
  if alive "$VELMORA_STATE/pulse.pid"; then kill "$(cat "$VELMORA_STATE/pulse.pid")" 2>/dev/null || true; sleep 0.2; fi
  rm -f "$VELMORA_STATE/pulse.sock"
  # Daemons must not inherit the lock descriptors, or they would hold the locks forever.
  setsid pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no --disallow-exit \
    -L "module-native-protocol-unix socket=$VELMORA_STATE/pulse.sock auth-anonymous=1" \
    -L "module-null-sink sink_name=rec rate=44100 channels=2 sink_properties=device.description=rec" \
    </dev/null >"$VELMORA_STATE/pulse.log" 2>&1 8>&- 9>&- &
  echo $! >"$VELMORA_STATE/pulse.pid"
  for _ in $(seq 100); do pulse_ok && break; sleep 0.1; done
  pulse_ok || { echo "pulse-up: PulseAudio did not start (see $VELMORA_STATE/pulse.log)" >&2; exit 1; }
fi
pactl set-default-sink rec
pactl set-default-source rec.monitor

if ! alive "$VELMORA_STATE/keepalive.pid"; then
  setsid pacat --device=rec --raw --latency-msec=20 </dev/zero >/dev/null 2>&1 8>&- 9>&- &
  echo $! >"$VELMORA_STATE/keepalive.pid"
  sleep 0.5   # let the sink settle into short blocks before anyone records
fi
