#!/usr/bin/env bash
# Installs what is missing, builds, makes the demo account year the first
# time, and starts Tessel on the embedded store.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
bash scripts/build.sh
build="${TESSEL_BUILD_DIR:-build}"

if ! "$build/bin/tessel-admin" list | grep -qx "TesselDemo"; then
  echo "Making the demo account year TesselDemo (log on as ADMIN, password demo)..."
  "$build/bin/tessel-admin" demo TesselDemo --rows 400 --password demo 2>/dev/null \
    || "$build/bin/tessel-admin" create TesselDemo --password demo --company "TESSEL DEMO PRESS"
fi
exec "$build/bin/tessel" "$@"
