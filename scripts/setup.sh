#!/usr/bin/env bash
# Installs every Debian package Quarrydex needs to build, run and test, and any further
# packages named on the command line (scripts/fuzz.sh asks for Clang this way, so the
# ordinary build does not pay for it).
# Idempotent: packages already present are left alone, so a second run is quick.
set -euo pipefail

packages=(
  # toolchain
  build-essential cmake ninja-build pkg-config git
  # core
  libvips-dev libheif-dev nlohmann-json3-dev
  # application and user interface
  qt6-base-dev qt6-declarative-dev qt6-multimedia-dev qt6-svg-dev
  qml6-module-qtquick qml6-module-qtquick-controls qml6-module-qtquick-layouts
  qml6-module-qtquick-window qml6-module-qtquick-templates qml6-module-qtquick-dialogs
  qml6-module-qtqml-workerscript qml6-module-qtmultimedia qml6-module-qtcore
  qml6-module-qt-labs-settings qml6-module-qt-labs-platform qml6-module-qttest
  qml6-module-qt-labs-folderlistmodel
  # the camera: Qt Multimedia's GStreamer backend (camera source, conversion, capture)
  gstreamer1.0-plugins-base gstreamer1.0-plugins-good
  fonts-materialdesignicons-webfont
  # tests and benchmarks
  libgtest-dev libgmock-dev libbenchmark-dev libjpeg-turbo-progs liblcms2-dev
  desktop-file-utils appstream
)
packages+=("$@")

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing missing packages: ${missing[*]}"
if [ "$(id -u)" -eq 0 ]; then
  as_root=()
elif command -v sudo >/dev/null 2>&1; then
  as_root=(sudo)
else
  echo "These packages are missing and this user cannot install them: ${missing[*]}" >&2
  echo "Run this script as root, or install sudo." >&2
  exit 1
fi

export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -q
"${as_root[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
