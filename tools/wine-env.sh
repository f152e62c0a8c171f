# Source me. Environment for running Velmora's Windows programs under Wine:
# a private Xvfb display, a Japanese 64-bit prefix made once and reused, a
# private PulseAudio server. All state lives under $VELMORA_STATE.
export VELMORA_TOOLS=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
export VELMORA_STATE=${VELMORA_STATE:-${XDG_CACHE_HOME:-$HOME/.cache}/velmora}
export VELMORA_DISPLAY=${VELMORA_DISPLAY:-:73}
export DISPLAY=$VELMORA_DISPLAY
export WINEPREFIX=${VELMORA_WINEPREFIX:-$VELMORA_STATE/prefix}
export WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES="mscoree,mshtml="          # no Mono/Gecko install prompts
export LANG=ja_JP.UTF-8 LC_ALL=ja_JP.UTF-8         # => GetACP() = 932, LCID 0411
export PULSE_SERVER=unix:$VELMORA_STATE/pulse.sock
mkdir -p "$VELMORA_STATE"
