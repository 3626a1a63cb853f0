#!/usr/bin/env bash
# Every command of kigumi and the solver under the address and undefined-behaviour sanitizers, each
# to its clean exit: nothing may leak. The windows are in the tests, which run with the same check.
set -eu
cd "$(dirname "$0")/.."
export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen
. .ci/packages
need_packages
build_preset asan kigumi frameslv symbol_font
bin=$PWD/build-asan/bin
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
count=0

# Runs a program that is to end with the status named first.
expect() {
    local wanted=$1 status=0
    shift
    "$@" >said.txt 2>&1 || status=$?
    if [ "$status" -ne "$wanted" ] || grep -q 'Sanitizer\|runtime error' said.txt; then
        echo "status $status: $*"
        cat said.txt
        exit 1
    fi
    count=$((count + 1))
}

roles=(--fix bottom --load top:0,0,-200)
expect 0 "$bin/kigumi" generate -o a.jik NX=5 NY=4 N_Sou=2 SumiType=1
expect 0 "$bin/kigumi" info a.jik
for ending in bon ydu tgk dxf dat w3d; do
    expect 0 "$bin/kigumi" convert a.jik -o "a.$ending" "${roles[@]}"
done
expect 0 "$bin/kigumi" solve a.jik --dir . "${roles[@]}"
for mode in wire force band width heni solid; do
    expect 0 "$bin/kigumi" draw --dir . --mode "$mode" -o "$mode.png" --labels nodes,members,fix,load --legend
done
for mode in axis perspective; do
    expect 0 "$bin/kigumi" draw a.jik --mode "$mode" -o "$mode.svg"
    expect 0 "$bin/kigumi" draw a.jik --mode "$mode" -o "$mode.pdf"
done
expect 0 "$bin/kigumi" listing --dir . -o a.txt
for csv in members stress heni; do
    expect 0 "$bin/kigumi" listing --dir . --csv "$csv" -o "$csv.csv"
done
expect 0 "$bin/kigumi" report --dir . a.jik -o a.pdf
expect 0 "$bin/kigumi" demo
expect 1 "$bin/kigumi" info missing.jik
expect 1 "$bin/kigumi" listing --dir missing -o b.txt
expect 2 "$bin/kigumi" frobnicate
for threads in 1 2; do
    expect 0 "$bin/frameslv" --modal 3 --buckling 2 --threads "$threads"
done
echo "$count programs ended cleanly"
