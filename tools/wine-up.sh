#!/bin/bash
# Brings up what Windows programs need, idempotently and safely from parallel
# callers: the private Xvfb, the Japanese prefix and a persistent wineserver.
# Takes ~15 s the first time (prefix creation), well under a second afterwards.
. "$(dirname "$0")/wine-env.sh"
set -e

exec 9>"$VELMORA_STATE/up.lock"
flock 9

display_up() { xdpyinfo -display "$DISPLAY" >/dev/null 2>&1; }
if ! display_up; then
  num=${DISPLAY#:}
  rm -f "/tmp/.X${num}-lock" "/tmp/.X11-unix/X${num}"
  # No screen saver: a long session or test run must never grab a blanked screen.
  setsid Xvfb "$DISPLAY" -screen 0 "$VELMORA_SCREEN" -s 0 -nolisten tcp </dev/null >"$VELMORA_STATE/xvfb.log" 2>&1 9>&- &
  echo $! >"$VELMORA_STATE/xvfb.pid"
  for _ in $(seq 100); do display_up && break; sleep 0.1; done
  display_up || { echo "wine-up: Xvfb $DISPLAY did not start" >&2; exit 1; }
fi

if [ ! -f "$WINEPREFIX/.velmora-ready" ]; then
  echo "wine-up: creating the Japanese Wine prefix in $WINEPREFIX" >&2
  rm -rf "$WINEPREFIX"
  wineboot -i </dev/null >"$VELMORA_STATE/wineboot.log" 2>&1 9>&- || true
  # Font aliases so that the usual Japanese faces resolve to Noto CJK (regedit wants UTF-16).
  iconv -f UTF-8 -t UTF-16 "$VELMORA_TOOLS/wine/jpfonts.reg" >"$VELMORA_STATE/jpfonts.reg"
  wine regedit /S "$(winepath -w "$VELMORA_STATE/jpfonts.reg")" </dev/null >/dev/null 2>&1 9>&-
  # No window manager on Xvfb: let Wine draw captions itself.
  wine reg add 'HKCU\Software\Wine\X11 Driver' /v Decorated /t REG_SZ /d N /f </dev/null >/dev/null 2>&1 9>&-
  wineserver -w 9>&-
  touch "$WINEPREFIX/.velmora-ready"
fi

# Caption-button glyphs (Wine draws captions with Marlett; Debian keeps it in fonts-wine).
fonts="$WINEPREFIX/drive_c/windows/Fonts"
if [ ! -f "$fonts/marlett.ttf" ] && [ -f /usr/share/wine/fonts/marlett.ttf ]; then
  cp /usr/share/wine/fonts/marlett.ttf "$fonts/"
fi

# A persistent wineserver makes each later program start in ~0.1 s instead of seconds.
# (Every child started while the lock is held closes fd 9, or a daemon would keep the lock.)
if ! prefix_server_pid >/dev/null; then
  setsid wineserver -p </dev/null >/dev/null 2>&1 9>&- || true
fi
