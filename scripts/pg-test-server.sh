#!/usr/bin/env bash
# A throwaway PostgreSQL server on loopback for the tests.
#   pg-test-server.sh start DIR PORT   prints the environment to use it
#   pg-test-server.sh stop DIR
#   pg-test-server.sh halt DIR         stops the server, keeps its data
#   pg-test-server.sh resume DIR PORT  starts a halted server again
set -euo pipefail
cmd="$1"; dir="$2"
bindir=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n1)
[ -n "$bindir" ] || { echo "PostgreSQL server binaries not found" >&2; exit 1; }

as_pg() {
  if [ "$(id -u)" -eq 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi
}

run_server() {
  as_pg "$bindir/pg_ctl" -D "$dir/data" -l "$dir/server.log" -w -t 60 start \
    -o "-c listen_addresses=127.0.0.1 -c port=$1 -c unix_socket_directories=$dir -c fsync=off -c synchronous_commit=off -c full_page_writes=off -c max_connections=200" \
    >/dev/null || { cat "$dir/server.log" >&2; exit 1; }
}

case "$cmd" in
  start)
    port="$3"
    rm -rf "$dir"; mkdir -p "$dir"
    [ "$(id -u)" -eq 0 ] && chown postgres: "$dir"
    as_pg "$bindir/initdb" -D "$dir/data" -U postgres -A trust -E UTF8 --no-locale >"$dir/initdb.log" 2>&1 \
      || { cat "$dir/initdb.log" >&2; exit 1; }
    run_server "$port"
    echo "export TESSEL_TEST_PG_HOST=127.0.0.1 TESSEL_TEST_PG_PORT=$port TESSEL_TEST_PG_USER=postgres"
    ;;
  halt)
    as_pg "$bindir/pg_ctl" -D "$dir/data" -m fast -w stop >/dev/null
    ;;
  resume)
    run_server "$3"
    ;;
  stop)
    if [ -d "$dir/data" ]; then as_pg "$bindir/pg_ctl" -D "$dir/data" -m fast -w stop >/dev/null 2>&1 || true; fi
    rm -rf "$dir"
    ;;
  *) echo "usage: $0 start DIR PORT | stop DIR" >&2; exit 2 ;;
esac
