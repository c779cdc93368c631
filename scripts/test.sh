#!/usr/bin/env bash
# Installs what is missing, builds, starts a throwaway PostgreSQL server on
# loopback, runs every test on both engines, and stops the server.
set -euo pipefail
cd "$(dirname "$0")/.."
root="$(pwd)"
bash scripts/deps.sh
bash scripts/build.sh
build="${TESSEL_BUILD_DIR:-build}"

pgdir=$(mktemp -d /tmp/tessel-pg-XXXXXX)
port="${TESSEL_TEST_PG_PORT_TO_USE:-$(( 20000 + RANDOM % 20000 ))}"
trap 'bash "$root/scripts/pg-test-server.sh" stop "$pgdir"' EXIT
eval "$(bash "$root/scripts/pg-test-server.sh" start "$pgdir" "$port")"
export TESSEL_REQUIRE_PG=1
export QT_QPA_PLATFORM=offscreen

cd "$build"
ctest --output-on-failure -j "${TESSEL_TEST_JOBS:-2}" "$@"
