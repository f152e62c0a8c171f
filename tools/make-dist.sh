#!/bin/bash
# `make dist`: the shipping folder — programs, DLLs, settings\ and help\ — as
# a zip. Test and benchmark programs stay behind.
set -euo pipefail
bin=$1 out=$2
root=$(cd "$(dirname "$0")/.." && pwd)
stage="$out/Velmora"
rm -rf "$stage" && mkdir -p "$stage/settings" "$stage/help"
for f in velmora.exe QRX.dll AVI5.DLL WaveInExe.exe QRKPlayer.exe; do
  if [ -f "$bin/$f" ]; then cp "$bin/$f" "$stage/"; else echo "make-dist: $f not built yet" >&2; fi
done
cp "$root"/help/*.htm "$stage/help/" 2>/dev/null || true
(cd "$out" && rm -f Velmora.zip && zip -qr Velmora.zip Velmora)
echo "$out/Velmora.zip"
