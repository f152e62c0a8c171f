#!/bin/bash
# Installs the Debian packages Velmora needs to build and test, only those missing.
# Idempotent; safe to run before every build. Uses sudo when not root.
set -euo pipefail

PACKAGES=(
  cmake make g++ clang libclang-rt-14-dev googletest libgtest-dev libbenchmark-dev
  g++-mingw-w64-x86-64-posix wine wine64 fonts-wine
  xvfb xdotool x11-utils imagemagick fonts-noto-cjk locales
  pulseaudio pulseaudio-utils sox ffmpeg zip bc
)

SUDO=""
if [ "$(id -u)" != 0 ]; then SUDO=sudo; fi

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -gt 0 ]; then
  echo "installing: ${missing[*]}"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

# Wine must run in the Japanese locale (code page 932); glibc needs the locale generated.
if ! locale -a 2>/dev/null | grep -qi '^ja_JP\.utf-\?8$'; then
  $SUDO sed -i 's/^# *ja_JP.UTF-8 UTF-8/ja_JP.UTF-8 UTF-8/' /etc/locale.gen
  grep -q '^ja_JP.UTF-8 UTF-8' /etc/locale.gen || echo 'ja_JP.UTF-8 UTF-8' | $SUDO tee -a /etc/locale.gen >/dev/null
  $SUDO locale-gen >/dev/null
fi
