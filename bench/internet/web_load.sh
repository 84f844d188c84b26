#!/usr/bin/env bash
# Load on the station's web server while the station plays, and the page's
# first paint on a 100k-row library. Run by hand from the source folder
# after a build; needs wrk and chromium (apt-get install wrk chromium).
#
#   bench/internet/web_load.sh [build-dir]
set -euo pipefail

build=${1:-build}
tavora=$build/src/app/tavora
home=$(mktemp -d)
trap 'kill $station 2>/dev/null; wait $station 2>/dev/null; rm -rf "$home"' EXIT
port=$(python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])')
url=http://127.0.0.1:$port

echo "== making a demo station in $home"
"$tavora" --install --home "$home" >/dev/null
timeout 900 "$tavora" --demo --home "$home" --output null >"$home/demo.txt" 2>&1 &
station=$!
# The demo plays once its library is made; stop it, then play with the web on.
until grep -q 'idle, library' "$home/demo.txt"; do sleep 2; done
kill -TERM $station; wait $station || true

echo "== the station plays with its web page on $url"
"$tavora" --headless --home "$home" --output null --web "127.0.0.1:$port" >"$home/air.txt" 2>&1 &
station=$!
until curl -sf "$url/api/now-playing" | grep -q '"mode":"running"'; do sleep 1; done

echo "== wrk: 50 connections, 2 threads, 20 s on /api/now-playing"
wrk -t2 -c50 -d20s --latency "$url/api/now-playing"

echo "== the air during the load"
kill -TERM $station; wait $station || true
grep -E '^(AIR|END)' "$home/air.txt" | tail -4

echo "== first paint on a 100k-row library"
sqlite3 "$home/qx1.mdb" "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 100000)
  INSERT INTO Recordings1 (Title, Artist, Category)
  SELECT 'Bench Song ' || i, 'Bench Artist ' || (i % 997), 'POP' FROM n;"
sqlite3 "$home/qx1.mdb" "SELECT count(*) || ' rows' FROM Recordings1"
"$tavora" --headless --home "$home" --output null --web "127.0.0.1:$port" >/dev/null 2>&1 &
station=$!
until curl -sf "$url/api/now-playing" >/dev/null; do sleep 1; done
profile=$(mktemp -d -p "$home")
chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run \
    --disable-background-networking --disable-component-update --disable-sync \
    --user-data-dir="$profile" --timeout=5000 --dump-dom "$url/" 2>/dev/null |
    grep -o 'data-[a-z-]*-ms="[0-9]*"' || echo "no timing marks in the page"
