#!/usr/bin/env bash
# Installs the Debian packages Tessel needs to build, run and test.
# Does nothing when they are already there.
set -euo pipefail

packages=(
  cmake ninja-build g++ ccache pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-charts-dev libqt6opengl6-dev libqt6sql6-sqlite libqt6sql6-psql libgl1-mesa-dev
  libsqlite3-dev libxlsxwriter-dev
  postgresql
  xvfb xauth poppler-utils fonts-dejavu-core
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing: ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
