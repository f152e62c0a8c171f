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
shot="$VELMORA_STATE/velmora-screen.png"
if [ -f "$bin/velmora.exe" ]; then
  wine "$bin/velmora.exe" /demo "$VELMORA_STATE/demo" || true
fi
import -display "$DISPLAY" -window root "$shot" 2>/dev/null || true
echo "No display here: Velmora ran on the private display $DISPLAY."
echo "Files: $VELMORA_STATE/demo   Screenshot: $shot"
