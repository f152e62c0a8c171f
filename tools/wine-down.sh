#!/bin/bash
# Ends what tools/wine-up.sh and tools/pulse-up.sh started for this
# $VELMORA_STATE: Wine's server with every Wine process of the prefix, the
# private Xvfb, PulseAudio and its keep-alive stream. Arguments name what to
# end (wine, xvfb, pulse; none: all). It first waits, up to ten minutes, until
# no script that marked itself with environment_in_use runs any more, so a
# test run in parallel is not cut off; one that starts afterwards brings the
# environment up again.
#   wine-down.sh --running        prints which of wine, xvfb, pulse run now;
#   wine-down.sh --except "LIST"  ends all but those, e.g. what --running
#                                 printed before a run.
. "$(dirname "$0")/wine-env.sh"

alive() { [ -f "$VELMORA_STATE/$1" ] && [ "$(ps -o comm= -p "$(cat "$VELMORA_STATE/$1")")" = "$2" ]; }
running() {
  prefix_server_pid >/dev/null && echo wine
  xdpyinfo -display "$DISPLAY" >/dev/null 2>&1 && echo xvfb
  alive pulse.pid pulseaudio && echo pulse
}
if [ "${1:-}" = --running ]; then running; exit 0; fi
what=${*:-wine xvfb pulse}
if [ "${1:-}" = --except ]; then
  what=
  for part in wine xvfb pulse; do grep -qx "$part" <<<"${2:-}" || what+=" $part"; done
  [ -n "$what" ] || exit 0
fi

users() {
  local f
  for f in "$VELMORA_STATE"/users/*; do
    [ -f "$f" ] || continue
    # ps, not kill -0: an ended script's number may come back as a thread id.
    if ps -p "${f##*/}" >/dev/null 2>&1; then echo "${f##*/}"; else rm -f "$f"; fi
  done
}
# The up-scripts' locks keep new users from bringing anything up meanwhile;
# they are only held while nobody uses the environment, so that a user who
# needs wine-up.sh again is never blocked by this wait.
exec 8>"$VELMORA_STATE/pulse-up.lock" 9>"$VELMORA_STATE/up.lock"
for _ in $(seq 600); do
  if [ -z "$(users)" ]; then
    flock 9 && flock 8
    [ -z "$(users)" ] && break
    flock -u 8; flock -u 9
  fi
  sleep 1
done
if [ -n "$(users)" ]; then
  echo "wine-down: still in use by $(users | tr '\n' ' ')- left running" >&2
  exit 1
fi

stop() {  # pid file, program name
  alive "$1" "$2" || { rm -f "$VELMORA_STATE/$1"; return 0; }
  local pid
  pid=$(cat "$VELMORA_STATE/$1")
  kill "$pid"
  for _ in $(seq 50); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
  rm -f "$VELMORA_STATE/$1"
}
for w in $what; do
  case $w in
    # -k ends every Wine process of the prefix (services, desktop, recorder) with the server.
    wine) if prefix_server_pid >/dev/null; then wineserver -k 8>&- 9>&-; wineserver -w 8>&- 9>&-; fi ;;
    xvfb) stop xvfb.pid Xvfb ;;
    pulse) stop keepalive.pid pacat; stop pulse.pid pulseaudio ;;
    *) echo "wine-down: unknown part '$w' (wine, xvfb, pulse)" >&2; exit 2 ;;
  esac
done
