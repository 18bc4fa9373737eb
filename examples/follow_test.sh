#!/usr/bin/env bash
# A file that grows line by line, and in the middle of lines, shows what the whole file shows; a correction of the last
# bar takes the place of the first line of its date.
#   usage: follow_test.sh PROGRAM PRICES
set -euo pipefail
program=$1 prices=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
head -n 300 "$prices" > "$folder/whole.csv"
"$program" "$folder/whole.csv" > "$folder/expected"

head -c 9000 "$folder/whole.csv" > "$folder/growing.csv"
"$program" "$folder/growing.csv" 60 > "$folder/seen" &
for piece in 9001:9099 9100:12000 12001:1000000; do
  sleep 0.3
  head -c ${piece#*:} "$folder/whole.csv" | tail -c +${piece%:*} >> "$folder/growing.csv"
done
for try in $(seq 300); do
  if cmp -s "$folder/expected" "$folder/seen"; then break; fi
  sleep 0.1
done
kill %1
diff "$folder/expected" "$folder/seen"

{ head -n 299 "$folder/whole.csv"; tail -n 1 "$folder/whole.csv" | sed 's/\(.*\),.*,\(.*\)/\1,1.0,\2/'; tail -n 1 "$folder/whole.csv"; } > "$folder/corrected.csv"
"$program" "$folder/corrected.csv" | sed '300d' | diff "$folder/expected" -
