#!/bin/sh
# The desktop on Qt's offscreen platform stops cleanly on SIGTERM, as the
# headless station does: once while it plays its demo library (the status
# file written during the run, the session file at the stop), and once
# while a question holds it at start-up (the library is missing), which
# the stop answers as the question's close box does.
set -eu
tavora=$1
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
export QT_QPA_PLATFORM=offscreen

# Starts the desktop, waits for a file to appear, sends SIGTERM and expects
# exit status 0 with the stop's last line within ten seconds.
stop_when() {
    "$tavora" --home "$dir/station" --output null >"$dir/out" 2>"$dir/err" &
    pid=$!
    tries=0
    until [ -e "$1" ] && grep -q "^tavora: starting the station" "$dir/err"; do
        tries=$((tries + 1))
        if [ $tries -gt 1800 ] || ! kill -0 $pid 2>/dev/null; then
            echo "no $1:"; cat "$dir/err"; kill $pid 2>/dev/null; exit 1
        fi
        sleep 0.1
    done
    sleep 1
    kill -TERM $pid
    (sleep 10; kill -KILL $pid 2>/dev/null) &
    killer=$!
    status=0
    wait $pid || status=$?
    kill $killer 2>/dev/null || true
    cat "$dir/err"
    [ $status -eq 0 ] || { echo "exit status $status"; exit 1; }
    grep -q "^tavora: stopped$" "$dir/err"
}

"$tavora" --install --home "$dir/station" >/dev/null
rm -f "$dir/station/qxbp.ini"
stop_when "$dir/station/tqxstat.txt"
grep -q "^tavora: idle, library " "$dir/err"
[ -s "$dir/station/qxbp.ini" ] || { echo "no qxbp.ini"; exit 1; }

sqlite3 "$dir/station/Setup.mdb" "update Setup set [Active Database] = 'c:\\tavora\\gone.mdb'"
stop_when "$dir/station/qx1.mdb"
! grep -q "^tavora: idle" "$dir/err"
