#!/usr/bin/env bash
# Installs what is missing, builds, starts a throwaway PostgreSQL server on
# loopback, runs every test on both engines, and stops the server.
set -euo pipefail
cd "$(dirname "$0")/.."
root="$(pwd)"
bash scripts/deps.sh
build="${TESSEL_BUILD_DIR:-build}"
# Warnings fail the run here, though a developer's own build only shows them.
if [ -f "$build/CMakeCache.txt" ]; then
  cmake -S . -B "$build" -DTESSEL_WERROR=ON >/dev/null
else
  cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTESSEL_WERROR=ON >/dev/null
fi
bash scripts/build.sh

pgdir=$(mktemp -d /tmp/tessel-pg-XXXXXX)
trap 'bash "$root/scripts/pg-test-server.sh" stop "$pgdir"' EXIT
# A free loopback port: try a few at random.
for attempt in 1 2 3 4 5; do
  port="${TESSEL_TEST_PG_PORT_TO_USE:-$(( 20000 + RANDOM % 20000 ))}"
  if env_lines="$(bash "$root/scripts/pg-test-server.sh" start "$pgdir" "$port")"; then
    eval "$env_lines"
    break
  fi
  [ "$attempt" -eq 5 ] && { echo "could not start the PostgreSQL test server" >&2; exit 1; }
done
export TESSEL_REQUIRE_PG=1
export QT_QPA_PLATFORM=offscreen

cd "$build"
ctest --output-on-failure -j "${TESSEL_TEST_JOBS:-2}" "$@"
