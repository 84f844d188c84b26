#!/bin/sh
# Installs a station with auto start on and an empty library, runs it
# headless to the null output, waits for the Run's refusal as a DIALOG line,
# sends SIGTERM and expects a clean exit with the END line, the session file
# written and the library's backup made.
set -eu
tavora=$1
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

"$tavora" --install --home "$dir/station" >/dev/null
sqlite3 "$dir/station/Setup.mdb" "update Setup set [Use Schedule] = -1"
"$tavora" --headless --home "$dir/station" --output null >"$dir/out" 2>"$dir/err" &
pid=$!
tries=0
until grep -q '^DIALOG .* "NOT ENOUGH RECORDS!" .* -> OK$' "$dir/out"; do
    tries=$((tries + 1))
    if [ $tries -gt 300 ] || ! kill -0 $pid 2>/dev/null; then
        echo "no dialog from the auto start:"; cat "$dir/err" "$dir/out"; exit 1
    fi
    sleep 0.1
done
kill -TERM $pid
status=0
wait $pid || status=$?
cat "$dir/err"
[ $status -eq 0 ] || { echo "exit status $status"; exit 1; }
grep -q "^tavora: stopped$" "$dir/err"
grep -q "^END .* aired=0 picks=0 fallbacks=0 dead_air_s=0.0 longest_dead_air_s=0.0$" "$dir/out"
[ -s "$dir/station/qxbp.ini" ] || { echo "no qxbp.ini"; exit 1; }
[ -s "$dir/station/qxlast.mdb" ] || { echo "no backup qxlast.mdb"; exit 1; }
