#!/usr/bin/env bash
# Configures and builds Tessel into build/ (or $TESSEL_BUILD_DIR).
set -euo pipefail
cd "$(dirname "$0")/.."
build="${TESSEL_BUILD_DIR:-build}"
jobs="${TESSEL_JOBS:-$(nproc)}"
if [ ! -f "$build/build.ninja" ]; then
  cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
fi
cmake --build "$build" -j "$jobs"
