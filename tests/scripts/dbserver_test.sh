#!/usr/bin/env bash
# The private server script: start, a second start that does nothing, a stale pid file
# after a crash, a stored port that another server took meanwhile, stop that ends only
# its own server, status codes. Every start asks for a free port: another server may hold 3307.
set -u
here=$(cd "$(dirname "$0")/../.." && pwd)
dbserver="$here/scripts/dbserver"
dir=$(mktemp -d)
other=$(mktemp -d)
trap 'for d in "$dir" "$other"; do "$dbserver" --dir "$d" stop >/dev/null 2>&1; rm -rf "$d"; done' EXIT
passed=0; failed=0
check() { if eval "$2"; then passed=$((passed+1)); else failed=$((failed+1)); echo "FAILED: $1"; fi; }
start() { "$dbserver" --dir "$dir" --port auto start; }
connects() { mariadb --no-defaults -h127.0.0.1 -P"$(cat "$dir/port")" -u"$user" -p"$pw" -N -e "$1"; }

start >/dev/null
check "starts" '"$dbserver" --dir "$dir" status >/dev/null'
check "option file has the group" 'grep -q "^\[fondarix\]" "$dir/fondarix.cnf" && grep -q "^password=." "$dir/fondarix.cnf"'
pid=$(cat "$dir/mariadbd.pid")
check "second start is a no-op" 'start | grep -q "already running" && [ "$(cat "$dir/mariadbd.pid")" = "$pid" ]'
user=$(sed -n 's/^user=//p' "$dir/fondarix.cnf"); pw=$(sed -n 's/^password=//p' "$dir/fondarix.cnf")
check "account works over TCP" 'connects "SELECT @@character_set_server, @@lower_case_table_names" | grep -q "cp1250.1"'

# A crash leaves a stale pid file behind; the next start must not be fooled by it.
kill -9 "$pid"; sleep 0.5
check "stale pid is not running" '! "$dbserver" --dir "$dir" status >/dev/null'
port=$(cat "$dir/port")
start >/dev/null
check "starts again after a crash, on its port" '"$dbserver" --dir "$dir" status >/dev/null && [ "$(cat "$dir/mariadbd.pid")" != "$pid" ] && [ "$(cat "$dir/port")" = "$port" ]'
check "same account after restart" 'connects "SELECT 1" >/dev/null'

# Another server takes the stored port while this one is down: auto moves to a free one.
"$dbserver" --dir "$dir" stop >/dev/null
"$dbserver" --dir "$other" --port "$port" start >/dev/null
start >/dev/null
check "a taken stored port is left to the other server" '[ "$(cat "$dir/port")" != "$port" ] && grep -q "^port=$(cat "$dir/port")$" "$dir/fondarix.cnf"'
check "account works on the new port" 'connects "SELECT 1" >/dev/null'
"$dbserver" --dir "$other" stop >/dev/null

# A test holding the server in use: stop waits until it is done.
( flock 8; sleep 4; touch "$dir/test-done" ) 8>"$dir/inuse.lock" &
sleep 0.5
"$dbserver" --dir "$dir" stop >/dev/null
check "stop waits for the test using the server" '[ -f "$dir/test-done" ]'
check "stops" '! "$dbserver" --dir "$dir" status >/dev/null'
"$dbserver" --dir "$dir" status >/dev/null; rc=$?
check "status of a stopped server is 3" '[ $rc -eq 3 ]'
# A pid file naming another program: stop must leave that program alone.
sleep 300 & foreign=$!
echo "$foreign" >"$dir/mariadbd.pid"
"$dbserver" --dir "$dir" stop >/dev/null
check "stop leaves a foreign pid alone" 'kill -0 $foreign 2>/dev/null'
kill $foreign 2>/dev/null

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
