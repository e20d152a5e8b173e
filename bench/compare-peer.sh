#!/usr/bin/env bash
# Merge printing against the peer in one run: the same one-page Letter flyer for N listings,
# printed by the peer's batch merge (../shared/peers/run-glabels.sh, which installs it) and by
# bench_merge (our engine, the flyer built item for item), alternating, ROUNDS times per N.
# Times on this machine vary with what else runs, so only results of the same round compare.
#
#   bench/compare-peer.sh [--peers DIR] [--build DIR] [--rounds R] N [N ...]
#   e.g. bench/compare-peer.sh 100 1000
#
# One line per run: who, N, round, pages/s, peak RSS MB, PDF MB (the peer's line also says
# whether its PDF passed the peer's own check).
set -euo pipefail
cd "$(dirname "$0")/.."
PEERS=../shared/peers
BUILD=build/release
ROUNDS=2
SIZES=()
while [ $# -gt 0 ]; do
  case "$1" in
    --peers) PEERS=$2; shift 2 ;;
    --build) BUILD=$2; shift 2 ;;
    --rounds) ROUNDS=$2; shift 2 ;;
    -h|--help) sed -n '2,11p' "$0"; exit 0 ;;
    *) [[ "$1" =~ ^[1-9][0-9]*$ ]] || { echo "not a record count: $1" >&2; exit 2; }
       SIZES+=("$1"); shift ;;
  esac
done
[ ${#SIZES[@]} -gt 0 ] || SIZES=(100 1000)
[ -x "$PEERS/run-glabels.sh" ] || { echo "no peer script at $PEERS/run-glabels.sh" >&2; exit 2; }

export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=true
cmake -S . -B "$BUILD" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$BUILD" --target bench_merge --parallel "$(nproc)" >/dev/null

WORK=$(mktemp -d "${TMPDIR:-/tmp}/pagewright-peer.XXXXXX")
trap 'rm -rf "$WORK"' EXIT
printf '%-10s %7s %5s %9s %12s %8s\n' who N round pages/s "peak RSS MB" "PDF MB"
for n in "${SIZES[@]}"; do
  for ((r = 1; r <= ROUNDS; r++)); do
    # The peer: its own script times its batch merge with /usr/bin/time and checks the PDF.
    line=$("$PEERS/run-glabels.sh" "$n" "$WORK/peer-$n" 2>"$WORK/peer.err" | tail -1) ||
      { echo "peer run failed:" >&2; tail -5 "$WORK/peer.err" >&2; exit 1; }
    field() { sed -n "s/.* $1=\([^ ]*\).*/\1/p" <<<"$line"; }
    printf '%-10s %7d %5d %9s %12s %8s  verify=%s\n' peer "$n" "$r" "$(field pages_per_s)" \
      "$(field peak_rss_mib)" "$(field pdf_mib)" "$(field verify)"
    # Ours: bench_merge prints "N photos threads pages seconds pages/s pages/cpu-s peakMB pdfMB".
    read -r _ _ _ pages secs pps _ rss pdf < <("$BUILD/bench/bench_merge" --n "$n" --modes shared \
      --work "$WORK/ours" | tail -1)
    printf '%-10s %7d %5d %9s %12s %8s  pages=%s in %s s\n' pagewright "$n" "$r" "$pps" "$rss" "$pdf" "$pages" "$secs"
  done
done
