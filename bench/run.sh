#!/bin/sh
# Measures the launcher beside its peers and writes the tables and plots of docs/performance.md.
# "bench/run.sh --help" tells the options. What the page shows is a run without any, as root, on a
# quiet machine with strace, bfs, fd-find, makeself and two Javas.
set -eu
cd "$(dirname "$0")/.."
case " $* " in
  *" --help "* | *" -h "*) exec python3 -B bench/run.py --help ;;
esac
cmake --preset release >/dev/null
cmake --build --preset release --target corvane-launcher corvane-pack verify_jar verify_java8_jar \
  bench_floor bench_java bench_scan bench_forgetful >/dev/null
exec python3 -B bench/run.py build/release "$@"
