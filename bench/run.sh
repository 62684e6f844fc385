#!/bin/sh
# Measures the launcher beside its peers and writes docs/performance.md's table and plots.
#
#   bench/run.sh [--rounds N] [--files N] [--before STUB] [--no-docs]
#
# --rounds  how often each command runs (default 40)       --files   the largest tree (default 200000)
# --before  a stub of an earlier state, to compare with    --no-docs prints the table only
#
# Needs Python 3; peers that are not installed are left out. Run it on a quiet machine.
set -eu
cd "$(dirname "$0")/.."
cmake --preset release >/dev/null
cmake --build --preset release --target corvane-launcher corvane-launcher-any corvane-pack verify_jar \
  textbox_setup_jar bench_floor bench_java bench_scan >/dev/null
exec python3 -B bench/run.py build/release "$@"
