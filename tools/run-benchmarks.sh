#!/bin/bash
# Runs every benchmark program: bench_* in BENCH_DIR/bin natively, and
# bench_*.exe in WIN_DIR/bin under Wine. Extra arguments go to every program
# (for example --benchmark_filter=...). Exit status: 0 only if all ran.
# What the Windows programs bring up (Xvfb, Wine's server) is ended at the
# end unless it ran before or VELMORA_KEEP=1.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# The Windows programs get a Full HD screen and a Wine prefix of their own
# (display number + 100, state in bench/ of the usual state), so that tests
# running meanwhile keep their screen. The first run makes the prefix.
. "$here/wine-env.sh"
export VELMORA_STATE=$VELMORA_STATE/bench VELMORA_SCREEN=${VELMORA_BENCH_SCREEN:-1920x1080x24}
export VELMORA_DISPLAY=${VELMORA_BENCH_DISPLAY:-:$((${VELMORA_DISPLAY#:} + 100))}
before=$("$here/wine-down.sh" --running)
trap '[ "${VELMORA_KEEP:-}" = 1 ] || "$here/wine-down.sh" --except "$before"' EXIT
if [ $# -lt 2 ]; then
  echo "usage: $0 BENCH_DIR WIN_DIR [benchmark flags...]" >&2
  exit 2
fi
bench_dir=$1 win_dir=$2
shift 2
status=0 ran=0
for prog in "$bench_dir"/bin/bench_*; do
  [ -f "$prog" ] && [ -x "$prog" ] && [[ "$prog" != *.exe ]] || continue
  echo "=== $(basename "$prog") (native)"
  "$prog" "$@" || status=1
  ran=$((ran + 1))
done
# Sound as on a user's machine: without a server, every program that asks for
# the mixer probes each audio driver in turn (slow, and noisy on stderr).
ls "$win_dir"/bin/bench_*.exe >/dev/null 2>&1 && { "$here/pulse-up.sh" >/dev/null 2>&1 || true; }
for prog in "$win_dir"/bin/bench_*.exe; do
  [ -f "$prog" ] || continue
  echo "=== $(basename "$prog") (Windows, under Wine)"
  "$here/wine-run.sh" "$prog" "$@" || status=1
  ran=$((ran + 1))
done
if [ $ran = 0 ]; then
  echo "no benchmark programs in $bench_dir/bin or $win_dir/bin" >&2
  status=1
fi
exit $status
