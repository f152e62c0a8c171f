#!/bin/bash
# `make run`: starts velmora.exe under Wine. On the user's display when there
# is one; otherwise on the private Xvfb, where a screenshot shows what ran.
set -e
bin=$(cd "$1" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
if [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; then
  export VELMORA_DISPLAY=$DISPLAY
  . "$here/wine-env.sh"
  "$here/wine-up.sh"
  exec wine "$bin/velmora.exe"
fi
"$here/wine-up.sh"
. "$here/wine-env.sh"
shot="$VELMORA_STATE/demo/demo-frame.png"
demo="$VELMORA_STATE/demo"
if [ -f "$bin/velmora.exe" ]; then
  # A short recording of a painted window, then the same movie as an AVI.
  wine "$bin/velmora.exe" /demo "$demo" </dev/null 2>/dev/null || true
  rm -f "$demo/demo.avi"
  wine "$bin/velmora.exe" /convert "$(winepath -w "$demo/demo.QRK")" "$(winepath -w "$demo/demo.avi")" \
    </dev/null 2>/dev/null || true
  [ -f "$demo/demo.avi" ] && ffprobe -v error -show_entries stream=codec_name,width,height,nb_frames \
    -of compact "$demo/demo.avi" 2>/dev/null || true
fi
# The recording's middle frame, as a picture of what was recorded.
rm -f "$shot"
ffmpeg -v error -i "$demo/demo.avi" -vf 'select=eq(n\,22)' -frames:v 1 "$shot" 2>/dev/null ||
  import -display "$DISPLAY" -window root "$shot" 2>/dev/null || true
window_shot="$VELMORA_STATE/demo/main-window.png"
"$here/main-window-shot.sh" "$bin" "$window_shot" >/dev/null || true
echo "No display here: Velmora ran on the private display $DISPLAY."
echo "Files: $demo   A frame of the recording: $shot"
echo "The main window: $window_shot"
