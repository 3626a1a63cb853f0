#!/usr/bin/env bash
# Fuzzes one reader: bench/fuzz.sh TARGET SECONDS. Without arguments it names the targets. New
# inputs go to build-fuzz/corpus/TARGET, those that break something to build-fuzz/found.
set -eu
cd "$(dirname "$0")/.."
. .ci/packages
need_packages clang-14 libclang-rt-14-dev >&2
build_preset fuzz kigumi_fuzz symbol_font >/dev/null
[ $# -eq 2 ] || exec build-fuzz/bin/kigumi_fuzz
mkdir -p "build-fuzz/corpus/$1" build-fuzz/found
exec nice -n 19 build-fuzz/bin/kigumi_fuzz "--target=$1" -max_total_time="$2" \
    -timeout=20 -rss_limit_mb=3000 -max_len=20000 -print_final_stats=1 -verbosity=1 \
    -artifact_prefix="build-fuzz/found/$1-" "build-fuzz/corpus/$1" "tests/fuzz/corpus/$1"
