# Source me. Environment for running Velmora's Windows programs under Wine:
# a private Xvfb display, a Japanese 64-bit prefix made once and reused, a
# private PulseAudio server. All state lives under $VELMORA_STATE.
export VELMORA_TOOLS=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
export VELMORA_STATE=${VELMORA_STATE:-${XDG_CACHE_HOME:-$HOME/.cache}/velmora}
export VELMORA_DISPLAY=${VELMORA_DISPLAY:-:73}
export DISPLAY=$VELMORA_DISPLAY
# Size and depth of the private screen (the benchmarks ask for Full HD).
export VELMORA_SCREEN=${VELMORA_SCREEN:-1280x800x24}
export WINEPREFIX=${VELMORA_WINEPREFIX:-$VELMORA_STATE/prefix}
export WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all}
# No Mono/Gecko install prompts; and no debugger, so that a program that
# crashes ends at once with a failing exit code instead of waiting on a crash
# dialog nobody sees on the private screen.
export WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d"
export LANG=ja_JP.UTF-8 LC_ALL=ja_JP.UTF-8         # => GetACP() = 932, LCID 0411
export PULSE_SERVER=unix:$VELMORA_STATE/pulse.sock
mkdir -p "$VELMORA_STATE"

# The pid of the wineserver of $WINEPREFIX, if one runs. It works in a folder
# named after the prefix's device and inode, which tells it apart from the
# servers of other prefixes (other users, other VELMORA_STATEs).
prefix_server_pid() {
  [ -d "$WINEPREFIX" ] || return 1
  local dir p
  dir=$(printf 'server-%x-%x' $(stat -c '%d %i' "$WINEPREFIX"))
  for p in $(pgrep wineserver); do
    case $(readlink "/proc/$p/cwd") in */"$dir") echo "$p"; return 0 ;; esac
  done
  return 1
}

# Marks the calling script as using this environment while it runs, so that
# tools/wine-down.sh waits for it. The mark needs no removal: a mark whose
# process has ended counts for nothing.
environment_in_use() {
  mkdir -p "$VELMORA_STATE/users"
  : >"$VELMORA_STATE/users/$$"
}
