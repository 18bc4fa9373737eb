#!/usr/bin/env bash
# Makes the pictures of the README out of the bundled prices.
#   usage: scripts/pictures.sh [QV]     (build/release/cli/qv)
set -euo pipefail
cd "$(dirname "$0")/.."
qv=${1:-build/release/cli/qv}
mkdir -p docs/pictures
"$qv" chart data/text/SPX.CSV --last 160 --title 'S&P 500' --volume 'bollinger(2,20)' 'sma(50)' 'rsi(14)' \
  'macd(12,26,9)' -o docs/pictures/spx.svg
"$qv" backtest data/text/SPX.CSV --long 'sma(20) crosses above sma(100)' --exit 'sma(20) crosses below sma(100)' \
  --cost 5bp --from 2010-01-01 --chart docs/pictures/trades.svg >/dev/null
