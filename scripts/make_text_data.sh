#!/bin/sh
# Makes data/text/SPX.CSV from a CSV file with the columns date, open, high, low, close, adjclose and
# volume, oldest first. The bundled file comes from sp500-2000.csv of the npm package vega-datasets.
#   usage: scripts/make_text_data.sh sp500-2000.csv
set -eu
[ $# -eq 1 ] || { echo "usage: $0 sp500-2000.csv" >&2; exit 2; }
out=$(dirname "$0")/../data/text
mkdir -p "$out"
# Prices are index points with two decimals; the source's further digits are the noise of single-precision
# numbers. The adjusted close of an index is its close.
LC_ALL=C awk -F, '
  NR == 1 { print "Date,Open,High,Low,Close,Volume"; next }
  { printf "%s,%.2f,%.2f,%.2f,%.2f,%.0f\n", $1, $2, $3, $4, $5, $7 }
' "$1" > "$out/SPX.CSV"
cat > "$out/txtinfo.txt" <<'LAYOUT'
delimit  = ,
skip     = 1
dt       = 1
ti       = 0
op       = 2
hi       = 3
lo       = 4
cl       = 5
vol      = 6
oi       = 0
dtformat = YMD
LAYOUT
