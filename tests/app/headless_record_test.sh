#!/bin/sh
# Runs a fresh station headless with --record on its LAN MP3 profile for a few
# seconds of the null output, stops it with SIGTERM and expects the recording,
# closed properly, at the profile's place (c:\qxlan.asf, beside the install
# folder), as MP3 that ffprobe reads to its length. A missing profile is a
# clear refusal.
set -eu
tavora=$1
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

"$tavora" --install --home "$dir/station" >/dev/null
if "$tavora" --headless --home "$dir/station" --output null --record nothing 2>"$dir/err"; then
    echo "a missing profile was taken"; exit 1
fi
grep -q "^tavora: no recorder profile nothing (a .asd file)$" "$dir/err"

"$tavora" --headless --home "$dir/station" --output null --record mp3lanf >"$dir/out" 2>"$dir/err" &
pid=$!
tries=0
until grep -q '^tavora: recorder: recording to c:\\qxlan.asf (LAN, MP3)$' "$dir/err"; do
    tries=$((tries + 1))
    if [ $tries -gt 300 ] || ! kill -0 $pid 2>/dev/null; then
        echo "the recording did not start:"; cat "$dir/err" "$dir/out"; exit 1
    fi
    sleep 0.1
done
sleep 3
kill -TERM $pid
status=0
wait $pid || status=$?
[ $status -eq 0 ] || { echo "exit status $status"; cat "$dir/err"; exit 1; }
codec=$(ffprobe -v error -show_entries stream=codec_name -of csv=p=0 "$dir/qxlan.asf")
[ "$codec" = "mp3" ] || { echo "codec '$codec'"; exit 1; }
seconds=$(ffprobe -v error -show_entries format=duration -of csv=p=0 "$dir/qxlan.asf")
awk -v s="$seconds" 'BEGIN { exit !(s >= 2.5) }' || { echo "only $seconds s recorded"; exit 1; }
