#!/bin/bash
# Saves a picture of velmora.exe's main window, as it opens under Wine on the
# private display, to $2 (PNG). $1: the folder holding velmora.exe.
set -e
bin=$(cd "$1" && pwd)
out=$2
here=$(cd "$(dirname "$0")" && pwd)
"$here/wine-up.sh"
. "$here/wine-env.sh"

wine "$bin/velmora.exe" </dev/null >/dev/null 2>&1 &
pid=$!
trap 'kill $pid 2>/dev/null || true' EXIT
# The window, then its controls painted: two pictures in a row that agree
# (the live preview may differ in a few pixels) mean it is all there.
id=
for _ in $(seq 1 240); do
  id=$(xdotool search --onlyvisible --name '^Velmora$' 2>/dev/null | head -1) && [ -n "$id" ] && break
  sleep 0.25
done
[ -n "$id" ] || { echo "velmora.exe showed no window" >&2; exit 1; }
# Taken from the root window, so a tool tip shown over the window is in the
# picture as a user sees it (a window's own image leaves covered parts black).
geometry=$(xwininfo -id "$id" | awk '/Width:/{w=$2} /Height:/{h=$2} /Absolute upper-left X:/{x=$4} /Absolute upper-left Y:/{y=$4} END{print w "x" h "+" x "+" y}')
prev=$(mktemp --suffix=.png)
for _ in $(seq 1 120); do
  sleep 0.5
  import -display "$DISPLAY" -window root -crop "$geometry" +repage "$out" 2>/dev/null || continue
  differ=$(compare -metric AE "$prev" "$out" null: 2>&1 || true)
  cp "$out" "$prev"
  [ "${differ%% *}" -lt 200 ] 2>/dev/null && break
done
rm -f "$prev"
# Closed as a user closes it, so it writes its position file and ends.
xdotool windowfocus "$id" key alt+F4 2>/dev/null || true
for _ in $(seq 1 80); do kill -0 $pid 2>/dev/null || break; sleep 0.25; done
echo "$out"
